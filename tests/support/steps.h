#pragma once

#include <functional>
#include <map>
#include <string>

#include "ui/key.h"
#include "ui/lookup_field.h"

namespace ledgertree::testing {

/// A key by the name that a tooltip has for it. Throws std::invalid_argument where no key is called so.
[[nodiscard]] ui::KeyChord chordOf(const std::string& name);

/// Goes through a section of a text file below tests/, a step a line: what a person does | what is seen then
/// | what was told meanwhile. `told` gives what was told since it was last asked, with a blank behind each.
void walk(const std::string& file, const std::string& section,
          const std::function<void(const std::string&)>& act, const std::function<std::string()>& seen,
          const std::function<std::string()>& told);

/// A person at a look-up, or the program that it belongs to. Seen are the row that is held, as `held` writes
/// it, and the line, with "_" while one types in it and "!" where it was left unchosen; what explains the
/// row, in parentheses; and behind "/" the open list, with the row that Enter picks in brackets, "..." while
/// it searches, "more" where more rows can come.
class LookupWalk {
 public:
  using Act = std::function<void(const std::string& about)>;

  LookupWalk(ui::LookupField& field, std::function<std::string()> held, std::function<std::string()> told);

  void go(const std::string& file, const std::string& section);

  /// What a step begins with, where it is no key: "type x", and what the story adds.
  std::map<std::string, Act> acts;

 private:
  void act(const std::string& step);
  [[nodiscard]] std::string seen() const;

  ui::LookupField& field_;
  std::function<std::string()> held_;
  std::function<std::string()> told_;
  std::string unused_;  ///< told of a key that the field has no use for
};

}  // namespace ledgertree::testing
