#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::coding {
class CodeProposal;
}

namespace ledgertree::accounts {

/// The rules by which fields of the record follow others: the parent brings its code, its type and its
/// nature, the class decides what the entity selector offers, the radio groups stand for three small numbers,
/// the ceilings group their digits, and the code takes the keys that the settings allow. It listens to those
/// controls of the screen, and writes nothing to the database.
class FieldRules {
 public:
  FieldRules(mainform::MainScreen& screen, shell::Shell& shell, coding::CodeProposal& proposal);

  /// The picked parent brings its code, its type, its nature and a proposal; in ModeNew and ModeEdit alone.
  /// Reads tblAccount through rssqlBufferQuery. Throws data::DataError.
  void parentRule();
  /// The class picked in sltEntityType names the views of sltEntity; a picked entity survives only a class
  /// with the same major view, and none a class without a row in tblAccountClass, which ClassIsGone of the
  /// screen tells. Reads through rssqlAccountManager. Throws data::DataError, and then no entity can be
  /// picked until a class is chosen again.
  void classRule();
  /// The same in two steps, for a class that isn't on the screen yet: reads it, and gives what follows it.
  [[nodiscard]] std::function<void()> ruleOfClass(std::int32_t classID);
  /// Puts a proposal for the account of sltParent into txtCode.
  void proposeCode();

 private:
  struct EntityClass {
    std::string viewMajor;
    std::string viewMinor;
    std::string name;
  };
  [[nodiscard]] std::optional<EntityClass> readClass(std::int32_t classID);
  void offerEntitiesOf(const std::optional<EntityClass>& chosen, bool gone);
  void offerNoEntity();
  void wireRadios();
  void wireSelectors();
  void wireKeys();
  void wireLayout();
  /// Type and nature of an account that has a row; the person may choose others afterwards.
  void inherit(std::int32_t parentID);
  /// Drops the keys that are neither backspace nor among the characters from `first` to 9.
  static void letPass(ui::KeyPress& key, char32_t first);
  void groupDigits(ui::TextField& ceiling);

  mainform::MainScreen& screen_;
  shell::Shell& shell_;
  coding::CodeProposal& proposal_;
  /// The key that is on its way up in a ceiling.
  bool afterBackspace_ = false;
};

}  // namespace ledgertree::accounts
