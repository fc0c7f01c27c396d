#include "support/steps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "support/text_table.h"

namespace ledgertree::testing {

std::pair<std::string, std::string> cut(const std::string& step) {
  const std::size_t end = std::min(step.find(' '), step.size());
  std::string about = step.substr(std::min(end + 1, step.size()));
  if (about.size() > 1 && about.front() == '\'' && about.back() == '\'')
    about = about.substr(1, about.size() - 2);
  return {step.substr(0, end), about};
}

ui::KeyChord chordOf(const std::string& name) {
  if (name.starts_with("Ctrl+"))
    return {.ctrl = true, .shift = name.starts_with("Ctrl+Shift+"), .letter = name.back()};
  constexpr int kKeys = static_cast<int>(ui::Key::F12) + 1;
  for (int place = 0; place < 2 * kKeys; ++place) {
    const ui::KeyChord chord{.shift = place >= kKeys, .key = static_cast<ui::Key>(place % kKeys)};
    if (chord.text() == name) return chord;
  }
  throw std::invalid_argument("no key is called " + name);
}

void walk(const std::string& file, const std::string& section,
          const std::function<void(const std::string&)>& act, const std::function<std::string()>& seen,
          const std::function<std::string()>& told) {
  static_cast<void>(told());
  for (const auto& row : tableOf(file, section)) {
    SCOPED_TRACE(section + ": " + row[0]);
    act(row[0]);
    EXPECT_EQ(seen(), row.size() > 1 ? row[1] : "");
    EXPECT_EQ(told(), row.size() > 2 ? row[2] + " " : "");
  }
}

LookupWalk::LookupWalk(ui::LookupField& field, std::function<std::string()> held,
                       std::function<std::string()> told)
    : acts{{"type", [&field](auto& text) { field.type(text); }},
           {"edit", [&field](auto& text) { field.edited(text); }},
           {"pick", [&field](auto& row) { field.pick(std::stoi(row)); }},
           {"open", [&field](auto&) { field.openList(); }},
           {"end", [&field](auto&) { field.reachedEnd(); }},
           {"leave", [&field](auto&) { field.leave(); }},
           {"closer", [&field](auto&) { field.lookCloser(); }}},
      field_(field),
      held_(std::move(held)),
      told_(std::move(told)) {}

void LookupWalk::go(const std::string& file, const std::string& section) {
  walk(
      file, section, [this](const std::string& step) { act(step); }, [this] { return seen(); },
      [this] { return std::exchange(unused_, {}) + told_(); });
}

void LookupWalk::act(const std::string& step) {
  const auto [name, about] = cut(step);
  if (const auto known = acts.find(name); known != acts.end()) {
    known->second(about);
  } else if (!field_.press(chordOf(step).key)) {
    unused_ = "unused ";
  }
}

std::string LookupWalk::seen() const {
  std::string text = held_() + ":";
  if (field_.typing() || !field_.text().empty()) text += " " + field_.text();
  text += field_.unchosen() ? "!" : field_.typing() ? "_" : "";
  if (!field_.detail().empty()) text += " (" + field_.detail() + ")";
  if (!field_.listOpen()) return text;
  text += " /";
  for (int row = 0; row < static_cast<int>(field_.rows().size()); ++row) {
    const std::string& name = field_.rows()[static_cast<std::size_t>(row)].text;
    text += (row == 0 ? " " : ", ") + (row == field_.highlighted() ? "[" + name + "]" : name);
  }
  return text + (field_.searching() ? " ..." : "") + (field_.hasMore() ? " more" : "");
}

void pickRow(ui::LookupField& field, ScriptedDesktop& desktop, std::int32_t id, const std::string& typed) {
  if (id == -1) return static_cast<void>(field.press(ui::Key::Delete));
  field.openList();
  if (!typed.empty()) field.type(typed);
  desktop.settle();
  const auto& rows = field.rows();
  const auto row = std::find_if(rows.begin(), rows.end(), [&](const auto& one) { return one.id == id; });
  ASSERT_NE(row, rows.end()) << "no row " << id << " in " << field.name();
  field.pick(static_cast<int>(row - rows.begin()));
}

}  // namespace ledgertree::testing
