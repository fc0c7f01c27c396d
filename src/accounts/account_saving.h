#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string_view>
#include <vector>

#include "accounts/save_validation.h"
#include "accounts/typed_account.h"
#include "accounts/unanswered_save.h"
#include "data/as_read.h"
#include "data/data_error.h"
#include "data/dten.h"
#include "mainform/account_record.h"
#include "mainform/account_tree.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::accounts {

/// The command cmdSave: checks the account on the screen, writes its row, its relation and the state of
/// everything below it, and shows what the database then holds.
///
/// A save is several statements, each committed by itself. If one fails, a notice says what was written and
/// what wasn't, and the form is left so that another save does the rest: a new account whose row is already
/// written is being edited from then on. If the database didn't answer, the screen looks for the new account
/// itself, after the notice and again before the account is next saved.
///
/// Another user's changes since the account was read are never overwritten unnoticed: each write compares the
/// account with what was read, atomically. A save that meets such a change shows both versions of the
/// account, and starts over with the user's decision.
class AccountSaving {
 public:
  AccountSaving(mainform::MainScreen& screen, shell::Shell& shell, mainform::AccountRecord& record,
                mainform::AccountTree& tree);

  /// Handles a click on cmdSave. Doesn't throw.
  void save();

 private:
  /// How far a save got.
  enum class Written {
    Nothing,
    Unclear,  ///< the account's row is being written: not done, unless the failure leaves that open
    Account,
    Relation,
    Everything
  };
  struct Progress {
    Written written = Written::Nothing;
    SaveWay way = SaveWay::Refused;
    std::int32_t account = -1;
    UnansweredSave::Sent sent;  ///< of a new account, set before its write
    data::Account typed;
    /// What the database holds of the account, as far as this screen knows.
    std::optional<data::Account> stored;
  };

  void run(Progress& progress);
  /// The checks before the first write, in order. A refusal is reported, and the form keeps its mode and
  /// everything that was typed. Stores the picked IDs in BranchValue, PositionValue, GroupValue and
  /// EntityTypeValue of the screen, and the parent of a new account in LastNewParentID. Throws
  /// data::DataError, and std::range_error for a picked ID beyond 16 bits.
  [[nodiscard]] SaveWay check(SaveValidation& validation, const TypedAccount& typed);
  /// Reports what is wrong with a field, and moves the focus there.
  [[nodiscard]] SaveWay refuse(std::string_view title, const FieldFault& fault);
  void keepPicked(const data::Account& account);
  /// Asks for confirmation if the account's class no longer exists and the save would remove something with
  /// it.
  [[nodiscard]] bool mayDropLostClass(const data::Account& account, SaveWay way);
  /// Returns the account's ID; nothing if its code already exists, which is reported.
  [[nodiscard]] std::optional<std::int32_t> writeAccount(data::DtEn& gateway, const Progress& progress,
                                                         const data::Account& account);
  /// Writes the relation; what the account loses by that is also cleared on the screen.
  void giveRelation(data::DtEn& gateway, data::Account& account, Progress& progress);
  void writeDescendants(data::DtEn& gateway, const data::Account& account);
  /// Shows what the database now holds of the account.
  void refresh(data::DtEn& gateway, SaveWay way, const data::Account& account);
  [[nodiscard]] std::vector<data::Command> questionsOfRefresh(SaveWay way, const data::Account& account);
  void recover(const Progress& progress, const std::exception& failure);
  /// The save has met another user's change. True if it can start over with the user's decision; otherwise
  /// the user has been told everything.
  [[nodiscard]] bool meet(const Progress& progress, const data::DataError& failure);
  [[nodiscard]] bool settle(const Progress& progress);
  void keepStored(const Progress& progress);
  /// Switches a new account that is already written to editing: another insert would fail on its code.
  void goOnAsEdit(std::int32_t account);
  /// Whether the account in doubt exists. If so it is being edited, and the user has been told.
  [[nodiscard]] bool foundAfterAll(data::DtEn& gateway);
  /// Follows the notice of a save without an answer.
  void lookForAccount(const UnansweredSave::Sent& sent);
  /// The message for a save that failed at that step.
  [[nodiscard]] static std::string_view outcome(Written written, const std::exception& failure);

  mainform::MainScreen& screen_;
  shell::Shell& shell_;
  mainform::AccountRecord& record_;
  mainform::AccountTree& tree_;
  UnansweredSave unanswered_;
};

}  // namespace ledgertree::accounts
