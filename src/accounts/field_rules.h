#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "coding/proposal/code_proposal.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::accounts {

/// The rules by which some fields of the record follow others: the parent brings its code, type and nature,
/// the class decides what the entity selector offers, the radio groups set three small numbers, the ceilings
/// group their digits, and the code accepts the keys that the settings allow. It handles the events of those
/// controls, and writes nothing to the database.
class FieldRules {
 public:
  FieldRules(mainform::MainScreen& screen, shell::Shell& shell);

  /// The picked parent brings its code, type, nature and a proposed code; only in ModeNew and ModeEdit. Reads
  /// tblAccount through rssqlBufferQuery. Throws data::DataError.
  void parentRule();
  /// The class picked in sltEntityType names the views of sltEntity. A picked entity is kept only if the new
  /// class has the same major view; without a row in tblAccountClass, which ClassIsGone of the screen says,
  /// none is kept. Reads through rssqlAccountManager. Throws data::DataError, and then no entity can be
  /// picked until a class is chosen again.
  void classRule();
  /// The same in two steps, for a class that isn't on the screen yet: reads it, and returns what applies it.
  [[nodiscard]] std::function<void()> ruleOfClass(std::int32_t classID);
  /// The own part of a code that is proposed for an account below a parent, -1 for the top, from the current
  /// text of txtMotherCode and txtTitle; see coding::CodeProposal.
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
  /// Puts a proposed code for an account under sltParent into txtCode.
  void proposeCode();
  /// Type and nature of an existing account; the user may choose others afterwards.
  void inherit(std::int32_t parentID);
  /// Drops all keys but backspace and the characters from `first` to 9.
  static void letPass(ui::KeyPress& key, char32_t first);
  void groupDigits(ui::TextField& ceiling);

  mainform::MainScreen& screen_;
  shell::Shell& shell_;
  coding::CodeProposal proposal_;
  /// Whether the key being released in a ceiling is a backspace.
  bool afterBackspace_ = false;
};

}  // namespace ledgertree::accounts
