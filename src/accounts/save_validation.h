#pragma once

#include <optional>

#include "data/dten.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::accounts {

/// How a save goes on after its checks.
enum class SaveWay {
  Refused,        ///< told, and the focus is where it belongs
  RefusedParent,  ///< told; the save still comes to its end
  NewAccount,
  GuardedEdit,  ///< an edit whose parent was looked up
  PlainEdit,    ///< an edit under the parent of the last new account, where nothing was looked up
};

/// The checks ahead of a save, in their order. None of them writes to the database, and a refusal leaves the
/// form in its mode with everything that was typed.
///
/// On the way it copies the selectors into BranchValue, PositionValue, GroupValue and EntityTypeValue of the
/// screen, and keeps the parent of a new account in LastNewParentID. Duplicate codes and relations aren't
/// found here: they come to light at the writes.
///
/// The look-ups of a guarded edit, rssqlChkChillds and rssqlChkTrans, stay open as long as this object lives:
/// the length of a save.
class SaveValidation {
 public:
  SaveValidation(mainform::MainScreen& screen, shell::Shell& shell, data::DtEn& gateway)
      : screen_(screen), shell_(shell), gateway_(gateway) {}

  /// Throws data::DataError, and std::range_error for a selected ID past 16 bits.
  [[nodiscard]] SaveWay check();

 private:
  [[nodiscard]] bool refuse(std::string_view message, std::string_view title);
  [[nodiscard]] bool hasRequiredFields();
  [[nodiscard]] bool mayHaveThisCode();
  void copySelectors();
  [[nodiscard]] SaveWay checkParent();

  mainform::MainScreen& screen_;
  shell::Shell& shell_;
  data::DtEn& gateway_;
  std::optional<data::OpenRows> below_;
  std::optional<data::OpenRows> documents_;
};

}  // namespace ledgertree::accounts
