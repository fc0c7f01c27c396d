#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "support/scripted_desktop.h"
#include "ui/key.h"
#include "ui/lookup_field.h"

namespace ledgertree::testing {

/// A key by its name in tooltips. Throws std::invalid_argument for an unknown name.
[[nodiscard]] ui::KeyChord chordOf(const std::string& name);

/// The first word of a step, and the rest, where blanks at the ends are written in apostrophes.
[[nodiscard]] std::pair<std::string, std::string> cut(const std::string& step);

/// Runs a section of a text file below tests/, one step per line: what a user does | what is
/// seen then | what was told meanwhile; missing cells are empty. `told` returns what was
/// told since its last call, each followed by a blank.
void walk(const std::string& file, const std::string& section,
          const std::function<void(const std::string&)>& act, const std::function<std::string()>& seen,
          const std::function<std::string()>& told);

/// A user at a look-up, or the program that owns it. "Seen" are the selected row, as `held` formats
/// it, and the input line, with "_" while typing and "!" if it was left unchosen; in parentheses,
/// the row's details; and after "/" the open list, with the row that Enter picks in brackets, "..."
/// while it searches, "more" if more rows can come.
class LookupWalk {
 public:
  using Act = std::function<void(const std::string& about)>;

  LookupWalk(ui::LookupField& field, std::function<std::string()> held, std::function<std::string()> told);

  void go(const std::string& file, const std::string& section);

  /// Steps that aren't keys, by their first word: "type x", and what the story adds.
  std::map<std::string, Act> acts;

 private:
  void act(const std::string& step);
  [[nodiscard]] std::string seen() const;

  ui::LookupField& field_;
  std::function<std::string()> held_;
  std::function<std::string()> told_;
  std::string unused_;  ///< reported for a key that the field doesn't use
};

/// Opens a look-up's list, searches if a text is given, and picks the row; -1 empties it.
void pickRow(ui::LookupField& field, ScriptedDesktop& desktop, std::int32_t id,
             const std::string& typed = "");

}  // namespace ledgertree::testing
