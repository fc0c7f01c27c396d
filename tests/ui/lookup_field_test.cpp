#include "ui/lookup_field.h"

#include <sstream>

#include "small_form.h"

namespace ledgertree::testing {
namespace {

using ui::Key;

class LookupFieldStory : public FormStory {
 protected:
  LookupFieldStory() {
    walk.acts["rows"] = [this](auto& words) { showRows(words); };
    walk.acts["hold"] = [this](auto& name) { field.hold(rowOf(name)); };
    walk.acts["means"] = [this](auto& name) { field.one = rowOf(name); };
    walk.acts["title"] = [this](auto& text) { field.setTitle(text); };
    walk.acts["detail"] = [this](auto& text) { field.setDetail(text); };
    walk.acts["active"] = [this](auto& how) { field.setActive(how == "on"); };
    walk.acts["enable"] = [this](auto& how) { form->frame.setEnabled(how == "on"); };
    walk.acts["show"] = [this](auto& how) { form->frame.setVisible(how == "on"); };
    walk.acts["everything"] = [this](auto&) { tryEverything(); };
  }

  WishingField& field = form->field;
  LookupWalk walk{field, [this] { return std::to_string(field.id()); },
                  [this] { return std::exchange(told, {}) + std::exchange(field.wishes, {}); }};

 private:
  /// The row with a name; its ID is the position of its first letter, "a" being 7.
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
};

TEST_F(LookupFieldStory, KeysLeadThroughTheList) { walk.go("ui/steps.txt", "keys in a look-up"); }

TEST_F(LookupFieldStory, WhatIsTypedIsASearchUntilARowIsPicked) {
  walk.go("ui/steps.txt", "typing in a look-up");
}

TEST_F(LookupFieldStory, WhoeverDrawsItIsToldWhereSomethingIsAnotherWay) {
  form->addObserver(*this);
  walk.go("ui/steps.txt", "changes of a look-up");
}

TEST_F(LookupFieldStory, OutOfReachItTakesNothingAndLookingCloserNeedsARowInSight) {
  field.onKeyDown = [this](int code) { told += std::to_string(code) + " "; };
  walk.go("ui/steps.txt", "a look-up out of reach");
  EXPECT_EQ(field.detail(), "") << "another row, another detail";
  told.clear();
  for (const Key one : {Key::Down, Key::Enter, Key::Escape, Key::Delete, Key::Backspace}) field.press(one);
  EXPECT_EQ(told, "13 46 ");
}

}  // namespace
}  // namespace ledgertree::testing
