#include "accounts/account_saving.h"

#include <exception>
#include <string>
#include <utility>

#include "accounts/relation_cases.h"
#include "data/catalogue.h"
#include "data/data_error.h"

namespace ledgertree::accounts {

namespace {

constexpr std::string_view kCodeExists = "عمليات ثبت بدليل وحود حسابي با كد مورد نظر با موفقيت انجام نشد";

constexpr std::string_view kNothingWritten = "چيزي ثبت نشد. پس از رفع اشکال دوباره ثبت کنيد.";
constexpr std::string_view kUnclear =
    "اگر ارتباط در ميان ثبت قطع شده باشد، معلوم نيست که حساب ثبت شده است يا نه. پيش از ثبت دوباره درخت "
    "حسابها را ببينيد.";
constexpr std::string_view kUnanswered =
    "معلوم نيست که حساب ثبت شده است يا نه. پيش از ثبت دوباره درخت حسابها را ببينيد.";
constexpr std::string_view kFound =
    "حسابي که معلوم نبود ثبت شده باشد در پايگاه داده هست و اکنون در حال اصلاح آن هستيد. رابطه آن با گروه، "
    "نوع "
    "موجوديت و موجوديت هنوز ثبت نشده است؛ دوباره ثبت کنيد.";
constexpr std::string_view kWithoutRelation =
    "خود حساب ثبت شد، ولي رابطه آن با گروه، نوع موجوديت و موجوديت کامل ثبت نشد و وضعيت زيرشاخه هاي "
    "آن تغيير نکرد. پس از رفع اشکال دوباره ثبت کنيد.";
constexpr std::string_view kWithoutDescendants =
    "خود حساب و رابطه هاي آن ثبت شد، ولي وضعيت زيرشاخه هاي آن تغيير نکرد. پس از رفع اشکال دوباره "
    "ثبت کنيد.";
constexpr std::string_view kNotReadBack =
    "حساب بطور کامل ثبت شد، ولي خواندن دوباره آن ممکن نشد. پس از رفع اشکال درخت حسابها را بازسازي کنيد.";

}  // namespace

AccountSaving::AccountSaving(mainform::MainScreen& screen, shell::Shell& shell,
                             mainform::AccountRecord& record, mainform::AccountTree& tree)
    : screen_(screen), shell_(shell), record_(record), tree_(tree) {
  screen_.cmdSave.onClick = [this] { save(); };
}

void AccountSaving::save() {
  if (record_.refusedElsewhere()) return;
  Progress progress;
  try {
    run(progress);
  } catch (const std::exception& failure) {
    recover(progress, failure);
  }
}

/// Puts the form where the next save can do the rest.
void AccountSaving::recover(const Progress& progress, const std::exception& failure) {
  const bool rowIsWritten = progress.written == Written::Account || progress.written == Written::Relation;
  if (rowIsWritten && progress.way == SaveWay::NewAccount) goOnAsEdit(progress.account);
  if (progress.written == Written::Everything) {
    try {
      record_.showAccount(progress.account);
    } catch (const std::exception&) {
      // The record is blank then; the notice below says so.
    }
  }
  shell_.showErrorNotice(shell::kTitleSaveError, std::string(failure.what()) + "\n" +
                                                     std::string(outcome(progress.written, failure)));
  const bool isNew = progress.way == SaveWay::NewAccount;
  if (isNew && progress.written == Written::Unclear && UnansweredSave::mayBeDone(failure))
    lookForAccount(progress.sent);
}

void AccountSaving::goOnAsEdit(std::int32_t account) {
  screen_.txtID.setText(std::to_string(account));
  screen_.formMode = mainform::FormMode::ModeEdit;
  record_.applyFormMode();
}

bool AccountSaving::foundAfterAll(data::DtEn& gateway) {
  const auto account = unanswered_.find(gateway);
  unanswered_.forget();
  if (!account) return false;
  goOnAsEdit(*account);
  shell_.showErrorNotice(shell::kTitleSaveError, kFound);
  return true;
}

void AccountSaving::lookForAccount(const UnansweredSave::Sent& sent) {
  unanswered_.remember(sent);
  // The host may have shown another account while the notice was up.
  const bool stillThere = screen_.formMode == mainform::FormMode::ModeNew && wholeCode(screen_) == sent.code;
  if (!stillThere) return;
  try {
    const shell::Hourglass hourglass(screen_.desktop());
    if (!foundAfterAll(*shell_.dtEn())) unanswered_.remember(sent);
  } catch (const std::exception&) {
    // The connection isn't there yet, and the person knows of the doubt. The next save looks again.
  }
}

std::string_view AccountSaving::outcome(Written written, const std::exception& failure) {
  switch (written) {
    case Written::Nothing:
      break;
    case Written::Unclear: {
      if (!UnansweredSave::mayBeDone(failure)) return kNothingWritten;
      const auto* error = dynamic_cast<const data::DataError*>(&failure);
      return error->reason() == data::DataError::Reason::Connection ? kUnclear : kUnanswered;
    }
    case Written::Account:
      return kWithoutRelation;
    case Written::Relation:
      return kWithoutDescendants;
    case Written::Everything:
      return kNotReadBack;
  }
  return kNothingWritten;
}

void AccountSaving::run(Progress& progress) {
  const auto gateway = shell_.dtEn();
  SaveValidation validation(screen_, shell_, *gateway);
  progress.way = validation.check();
  if (progress.way == SaveWay::Refused) return;
  if (progress.way == SaveWay::RefusedParent) return screen_.cmdNew.focus();

  const bool isNew = progress.way == SaveWay::NewAccount;
  const auto typed = readTypedAccount(
      screen_, shell_,
      isNew ? data::procedures::spAccountInsertAccount : data::procedures::spAccountUpdateAccounts);
  if (!typed || !mayDropLostClass(progress.way)) return;
  // Read ahead of the notices of the relation: the host may show another account while one is up.
  const bool closed = screen_.OptClose.value();

  progress.sent = {.code = typed->code, .title = typed->title, .parentID = screen_.LastNewParentID};
  if (isNew && unanswered_.isAbout(typed->code, typed->title) && foundAfterAll(*gateway)) return;
  progress.written = Written::Unclear;
  const auto account = writeAccount(*gateway, progress.way, *typed);
  if (!account) return screen_.cmdNew.focus();
  progress.account = *account;
  progress.written = Written::Account;
  writeRelation(screen_, shell_, *gateway, *account, progress.way);
  progress.written = Written::Relation;
  if (!isNew) writeDescendants(*gateway, *account, closed);
  progress.written = Written::Everything;
  refresh(progress);
  screen_.cmdNew.focus();
}

bool AccountSaving::mayDropLostClass(SaveWay way) {
  const std::string_view lost = lostWithClass(screen_, way);
  if (lost.empty()) return true;
  const auto shown = [this] { return std::pair(screen_.formMode, accountOnScreen(screen_)); };
  const auto before = shown();
  const auto answer =
      shell_.askConfirmNotice("ثبت حساب", "نوع موجوديت " + std::to_string(screen_.EntityTypeValue) +
                                              " ديگر تعريف نشده است. اگر ثبت کنيد، " + std::string(lost) +
                                              " اين حساب از ميان ميرود. آيا ثبت شود؟");
  // The host may have put another account on the screen meanwhile.
  if (answer == shell::Answer::Yes && shown() == before) return true;
  screen_.sltEntityType.focus();
  return false;
}

std::optional<std::int32_t> AccountSaving::writeAccount(data::DtEn& gateway, SaveWay way,
                                                        const TypedAccount& typed) {
  const bool isNew = way == SaveWay::NewAccount;
  const std::int32_t onScreen = isNew ? -1 : accountOnScreen(screen_);
  const std::int32_t result =
      isNew ? gateway.spAccountInsertAccount({.createDate = screen_.datCreate.englishdate(),
                                              .farsiCreateDate = screen_.datCreate.farsidate(),
                                              .accountGroupID = screen_.GroupValue,
                                              .isPermanent = screen_.PermanentValue,
                                              .accountNatureID = screen_.NatureValue,
                                              .parentID = screen_.LastNewParentID,
                                              .title = typed.title,
                                              .code = typed.code,
                                              .isClosed = screen_.ClosedValue,
                                              .contractID = screen_.BranchValue,
                                              .positionID = screen_.PositionValue,
                                              .notes = typed.notes,
                                              .maxDebit = typed.maxDebit,
                                              .maxCredit = typed.maxCredit})
            : gateway.spAccountUpdateAccounts({.id = onScreen,
                                               .parentID = screen_.sltParent.AccountID(),
                                               .accountGroupID = screen_.GroupValue,
                                               .isPermanent = screen_.PermanentValue,
                                               .accountNatureID = screen_.NatureValue,
                                               .title = typed.title,
                                               .code = typed.code,
                                               .isClosed = screen_.ClosedValue,
                                               .contractID = screen_.BranchValue,
                                               .positionID = screen_.PositionValue,
                                               .notes = typed.notes,
                                               .maxDebit = typed.maxDebit,
                                               .maxCredit = typed.maxCredit});
  const bool refused = isNew ? result < 1 : result == 0;
  if (refused) {
    shell_.showErrorNotice(shell::kTitleSaveError, kCodeExists);
    return std::nullopt;
  }
  return isNew ? result : onScreen;
}

/// What is below an account is open or closed as it is, at any depth.
void AccountSaving::writeDescendants(data::DtEn& gateway, std::int32_t account, bool closed) {
  const std::string_view statement = closed
                                         ? "Update tblAccount Set IsClosed = 1  Where ID in (Select ChildID "
                                           "From tblAccountParent Where ID = "
                                         : "Update tblAccount Set IsClosed = 0  Where ID in (Select ChildID "
                                           "From tblAccountParent Where ID = ";
  gateway.cnMainData.Execute(std::string(statement) + std::to_string(account) + ")");
}

void AccountSaving::refresh(const Progress& progress) {
  switch (progress.way) {
    case SaveWay::GuardedEdit:
      tree_.refreshTree();
      record_.showAccount(progress.account);
      return screen_.treeAccount.focus();
    case SaveWay::PlainEdit:
      screen_.sltAccount.ReloadAccounts();
      break;
    default:
      break;
  }
  screen_.sltAccount.setAccountID(progress.account);
  record_.showAccount(screen_.sltAccount.AccountID());
  tree_.refreshTree();
}

}  // namespace ledgertree::accounts
