#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "coding/proposal/code_proposal.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::accounts {

/// The rules by which fields of the record follow others: the parent brings its code, its type and its
/// nature, the class decides what the entity selector offers, the radio groups stand for three small numbers,
/// the ceilings group their digits, and the code takes the keys that the settings allow. It listens to those
/// controls of the screen, and writes nothing to the database.
class FieldRules {
 public:
  FieldRules(mainform::MainScreen& screen, shell::Shell& shell);

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
  /// The own part that is proposed for the code of an account below a parent, -1 for the top, by what
  /// txtMotherCode and txtTitle hold at this moment; see coding::CodeProposal.
  [[nodiscard]] std::string proposedCode(std::int32_t parentID);

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
  /// Puts a proposal for the account of sltParent into txtCode.
  void proposeCode();
  /// Type and nature of an account that has a row; the person may choose others afterwards.
  void inherit(std::int32_t parentID);
  /// Drops the keys that are neither backspace nor among the characters from `first` to 9.
  static void letPass(ui::KeyPress& key, char32_t first);
  void groupDigits(ui::TextField& ceiling);

  mainform::MainScreen& screen_;
  shell::Shell& shell_;
  coding::CodeProposal proposal_;
  /// The key that is on its way up in a ceiling.
  bool afterBackspace_ = false;
};

}  // namespace ledgertree::accounts
