#include "ui/lookup_field.h"

#include <map>
#include <sstream>

#include "small_form.h"

namespace ledgertree::testing {
namespace {

using ui::Key;

class LookupFieldStory : public FormStory {
 protected:
  using Act = std::function<void(const std::string& rest)>;

  [[nodiscard]] std::string seen() const {
    std::string text = std::to_string(field.id()) + ":";
    if (field.typing() || !field.text().empty()) text += " " + field.text();
    text += field.unchosen() ? "!" : field.typing() ? "_" : "";
    if (!field.listOpen()) return text;
    text += " /";
    for (int row = 0; row < static_cast<int>(field.rows().size()); ++row) {
      const std::string name = field.rows()[static_cast<std::size_t>(row)].text;
      text += row == field.highlighted() ? " [" + name + "]" : " " + name;
    }
    return text + (field.searching() ? " ..." : "") + (field.hasMore() ? " more" : "");
  }
  void go(const std::string& section) {
    FormStory::go(
        section, [this](const std::string& step) { act(step); }, [this] { return seen(); });
  }

  WishingField& field = form->field;

 private:
  /// A key, or a word with what it is about behind it.
  void act(const std::string& step) {
    const std::size_t end = std::min(step.find(' '), step.size());
    const std::string word = step.substr(0, end);
    const std::string rest = step.substr(std::min(end + 1, step.size()));
    if (const auto known = acts.find(word); known != acts.end()) {
      known->second(rest);
    } else if (!field.press(chord(word).key)) {
      told += "unused ";
    }
    told += std::exchange(field.wishes, {});
  }
  /// The row of a name; its ID is the place of its first letter, "a" being 7.
  static ui::LookupRow rowOf(const std::string& name) {
    return name.empty() ? ui::LookupRow() : ui::LookupRow{name[0] - 'a' + 7, name, ""};
  }
  void showRows(const std::string& words) {
    std::vector<ui::LookupRow> rows;
    std::istringstream stream(words);
    for (std::string word; stream >> word;)
      if (word.size() == 1) rows.push_back(rowOf(word));
    const auto said = [&words](const char* word) { return words.find(word) != std::string::npos; };
    field.showRows(rows, said("behind"), said("more"), said("..."));
  }
  void tryEverything() {
    field.type("q");
    field.edited("q");
    field.openList();
    field.reachedEnd();
    for (const Key key : {Key::Down, Key::F4, Key::Delete, Key::Backspace, Key::Enter}) field.press(key);
  }

  const std::map<std::string, Act> acts{
      {"rows", [this](auto& rest) { showRows(rest); }},
      {"hold", [this](auto& rest) { field.hold(rowOf(rest)); }},
      {"type", [this](auto& rest) { field.type(rest); }},
      {"edit",
       [this](auto& rest) { field.edited(rest[0] == '\'' ? rest.substr(1, rest.size() - 2) : rest); }},
      {"pick", [this](auto& rest) { field.pick(std::stoi(rest)); }},
      {"open", [this](auto&) { field.openList(); }},
      {"end", [this](auto&) { field.reachedEnd(); }},
      {"means", [this](auto& rest) { field.one = rowOf(rest); }},
      {"leave", [this](auto&) { field.leave(); }},
      {"closer", [this](auto&) { field.lookCloser(); }},
      {"detail", [this](auto& rest) { field.setDetail(rest); }},
      {"active", [this](auto& rest) { field.setActive(rest == "on"); }},
      {"enable", [this](auto& rest) { form->frame.setEnabled(rest == "on"); }},
      {"show", [this](auto& rest) { form->frame.setVisible(rest == "on"); }},
      {"everything", [this](auto&) { tryEverything(); }}};
};

TEST_F(LookupFieldStory, KeysLeadThroughTheList) { go("keys in a look-up"); }

TEST_F(LookupFieldStory, WhatIsTypedIsASearchUntilARowIsPicked) { go("typing in a look-up"); }

TEST_F(LookupFieldStory, OutOfReachItTakesNothingAndLookingCloserNeedsARowInSight) {
  field.onKeyDown = [this](int code) { told += std::to_string(code) + " "; };
  go("a look-up out of reach");
  EXPECT_EQ(field.detail(), "") << "another row, another detail";
  told.clear();
  for (const Key one : {Key::Down, Key::Enter, Key::Escape, Key::Delete, Key::Backspace}) field.press(one);
  EXPECT_EQ(told, "13 46 ");
}

}  // namespace
}  // namespace ledgertree::testing
