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

/// The command cmdSave: checks the account on the screen, writes its row, its relation and the state of what
/// is below it, and shows what the database holds then.
///
/// A save is several statements, each final when it ends. Where one fails, a notice tells what was written
/// and what wasn't, and the form stands so that another save does the rest: a new account whose row is
/// written already is under edit from then on. Where the database didn't answer, the screen looks for the new
/// account itself, behind the notice, and again ahead of the next save of it.
///
/// What somebody else has changed since the account was read is never written over untold: each write of the
/// account is compared with what was read, in one with it. A save that meets such a change shows what both
/// have made of the account, and begins anew with what the person has decided.
class AccountSaving {
 public:
  AccountSaving(mainform::MainScreen& screen, shell::Shell& shell, mainform::AccountRecord& record,
                mainform::AccountTree& tree);

  /// What a click on cmdSave does. No failure leaves it.
  void save();

 private:
  /// How far a save came.
  enum class Written {
    Nothing,
    Unclear,  ///< the account's row is being written: not done, unless the failure leaves it open
    Account,
    Relation,
    Everything
  };
  struct Progress {
    Written written = Written::Nothing;
    SaveWay way = SaveWay::Refused;
    std::int32_t account = -1;
    UnansweredSave::Sent sent;  ///< of a new account, ahead of its write
    data::Account typed;
    /// What the database holds of the account, as far as this screen knows.
    std::optional<data::Account> stored;
  };

  void run(Progress& progress);
  /// The checks ahead of the first write, in their order. A refusal is told, and leaves the form in its mode
  /// with everything that was typed. On the way it keeps what was picked in BranchValue, PositionValue,
  /// GroupValue and EntityTypeValue of the screen, and the parent of a new account in LastNewParentID. Throws
  /// data::DataError, and std::range_error for a picked ID past 16 bits.
  [[nodiscard]] SaveWay check(SaveValidation& validation, const TypedAccount& typed);
  /// Tells what is wrong with a field, and leads the person there.
  [[nodiscard]] SaveWay refuse(std::string_view title, const FieldFault& fault);
  void keepPicked(const data::Account& account);
  /// Asks the person where the class of the account is gone and the save would take something with it.
  [[nodiscard]] bool mayDropLostClass(const data::Account& account, SaveWay way);
  /// The account's ID; nothing where its code exists, which is told.
  [[nodiscard]] std::optional<std::int32_t> writeAccount(data::DtEn& gateway, const Progress& progress,
                                                         const data::Account& account);
  /// Writes the relation; what that takes from the account leaves it, and the screen.
  void giveRelation(data::DtEn& gateway, data::Account& account, Progress& progress);
  void writeDescendants(data::DtEn& gateway, const data::Account& account);
  /// Shows what the database holds of the account now.
  void refresh(data::DtEn& gateway, SaveWay way, const data::Account& account);
  [[nodiscard]] std::vector<data::Command> questionsOfRefresh(SaveWay way, const data::Account& account);
  void recover(const Progress& progress, const std::exception& failure);
  /// The save has met another's change. True where it can begin anew, with what the person has decided; else
  /// the person knows all there is to know.
  [[nodiscard]] bool meet(const Progress& progress, const data::DataError& failure);
  [[nodiscard]] bool settle(const Progress& progress);
  void keepStored(const Progress& progress);
  /// Puts a new account that is written already under edit: another insert would be refused for its code.
  void goOnAsEdit(std::int32_t account);
  /// Whether the account in doubt is there. It is under edit then, and the person knows.
  [[nodiscard]] bool foundAfterAll(data::DtEn& gateway);
  /// Behind the notice of a save without an answer.
  void lookForAccount(const UnansweredSave::Sent& sent);
  /// What the person is told of a save that failed there.
  [[nodiscard]] static std::string_view outcome(Written written, const std::exception& failure);

  mainform::MainScreen& screen_;
  shell::Shell& shell_;
  mainform::AccountRecord& record_;
  mainform::AccountTree& tree_;
  UnansweredSave unanswered_;
};

}  // namespace ledgertree::accounts
