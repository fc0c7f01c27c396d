#pragma once

#include <optional>
#include <string_view>

#include "accounts/typed_account.h"
#include "data/dten.h"
#include "shell/shell.h"

namespace ledgertree::accounts {

/// How a save goes on after its checks.
enum class SaveWay {
  Refused,        ///< told
  RefusedParent,  ///< told; the save still comes to its end
  NewAccount,
  GuardedEdit,  ///< an edit whose parent was looked up
  PlainEdit,    ///< an edit under the parent of the last new account, where nothing was looked up
};

/// The first required field that is blank, of code, title and date.
[[nodiscard]] std::optional<FieldFault> missingField(const TypedAccount& typed);

/// The checks of an edit, which look into the database. They write nothing, tell of what they refuse, and
/// throw data::DataError. Duplicate codes and relations aren't found here: they come to light at the writes.
///
/// The look-ups of a guarded edit, rssqlChkChillds and rssqlChkTrans, stay open as long as this object lives:
/// the length of a save.
class SaveValidation {
 public:
  SaveValidation(shell::Shell& shell, data::DtEn& gateway) : shell_(shell), gateway_(gateway) {}

  /// The code of an account stays as it is once there are documents under it.
  [[nodiscard]] bool mayHaveThisCode(const data::Account& account);
  /// The parent is neither the account, nor below it, nor one with documents. Under `lastNewParent`, that of
  /// the last new account, only the first is asked.
  [[nodiscard]] SaveWay checkParent(const data::Account& account, std::int32_t lastNewParent);

 private:
  [[nodiscard]] SaveWay refuseParent(std::string_view message);

  shell::Shell& shell_;
  data::DtEn& gateway_;
  std::optional<data::OpenRows> below_;
  std::optional<data::OpenRows> documents_;
};

}  // namespace ledgertree::accounts
