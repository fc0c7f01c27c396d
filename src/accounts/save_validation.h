#pragma once

#include <optional>
#include <string_view>

#include "accounts/typed_account.h"
#include "data/dten.h"
#include "shell/shell.h"

namespace ledgertree::accounts {

/// How a save continues after its checks.
enum class SaveWay {
  Refused,        ///< reported
  RefusedParent,  ///< reported; the save still runs to its end
  NewAccount,
  GuardedEdit,  ///< an edit whose parent was looked up
  PlainEdit,    ///< an edit under the parent of the last new account, without look-ups
};

/// The first required field that is blank, of code, title and date.
[[nodiscard]] std::optional<FieldFault> missingField(const TypedAccount& typed);

/// The checks of an edit that read the database. They write nothing, report what they refuse, and throw
/// data::DataError. Duplicate codes and relations aren't found here, but by the writes.
///
/// The look-ups of a guarded edit, rssqlChkChillds and rssqlChkTrans, stay open during the lifetime of this
/// object, which is that of the save.
class SaveValidation {
 public:
  SaveValidation(shell::Shell& shell, data::DtEn& gateway) : shell_(shell), gateway_(gateway) {}

  /// The code of an account can't change once there are documents below it.
  [[nodiscard]] bool mayHaveThisCode(const data::Account& account);
  /// The parent must be neither the account itself, nor below it, nor have documents. Under `lastNewParent`,
  /// that of the last new account, only the first is checked.
  [[nodiscard]] SaveWay checkParent(const data::Account& account, std::int32_t lastNewParent);

 private:
  [[nodiscard]] SaveWay refuseParent(std::string_view message);

  shell::Shell& shell_;
  data::DtEn& gateway_;
  std::optional<data::OpenRows> below_;
  std::optional<data::OpenRows> documents_;
};

}  // namespace ledgertree::accounts
