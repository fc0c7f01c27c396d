#include "accounts/account_saving.h"

#include <exception>
#include <string>
#include <utility>

#include "accounts/account_differences.h"
#include "accounts/relation_cases.h"
#include "data/ahead.h"
#include "data/numbers.h"
#include "shell/lookup/all_chosen.h"

namespace ledgertree::accounts {

using data::AccountCall;
using mainform::FormMode;

namespace {

constexpr std::string_view kCodeExists = "عمليات ثبت بدليل وحود حسابي با كد مورد نظر با موفقيت انجام نشد";

constexpr std::string_view kNothingYet = " هنوز چيزي ثبت نشده است.";
constexpr std::string_view kRowIsWritten =
    " خود حساب پيش از آن ثبت شد، ولي رابطه آن با گروه، نوع موجوديت و موجوديت هنوز ثبت نشده است.";
/// How often a save starts over because of other users' changes.
constexpr int kMostRounds = 20;

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

bool isMeeting(const data::DataError& failure) {
  return failure.number() == data::kAccountChanged || failure.number() == data::kParentChanged;
}

}  // namespace

AccountSaving::AccountSaving(mainform::MainScreen& screen, shell::Shell& shell,
                             mainform::AccountRecord& record, mainform::AccountTree& tree)
    : screen_(screen), shell_(shell), record_(record), tree_(tree) {
  screen_.cmdSave.onClick = [this] { save(); };
}

void AccountSaving::save() {
  if (record_.refusedElsewhere()) return;
  // Changes that need no decision may follow one another, but the save has to end.
  for (int rounds = 0; rounds < kMostRounds; ++rounds) {
    Progress progress;
    try {
      return run(progress);
    } catch (const data::DataError& failure) {
      if (!isMeeting(failure) || rounds + 1 == kMostRounds) return recover(progress, failure);
      if (!meet(progress, failure)) return;
    } catch (const std::exception& failure) {
      return recover(progress, failure);
    }
  }
}

bool AccountSaving::meet(const Progress& progress, const data::DataError& failure) {
  try {
    keepStored(progress);
    // The host has shown another account: what was typed is gone.
    if (screen_.RecordTurn == progress.sent.record && failure.number() == data::kAccountChanged)
      return settle(progress);
    shell_.showErrorNotice(shell::kTitleSaveError, failure.what());
    if (screen_.RecordTurn != progress.sent.record) return false;
    screen_.sltParent.ReloadAccounts();
    mainform::readPlaceOfParent(screen_, *shell_.dtEn());
  } catch (const std::exception& second) {
    recover(progress, second);
  }
  return false;
}

bool AccountSaving::settle(const Progress& progress) {
  const auto gateway = shell_.dtEn();
  const data::Account& read = progress.stored.value();
  const auto theirs = record_.readAgain(read.id);
  if (!theirs) {
    shell_.showErrorNotice(shell::kTitleSaveError, data::kAccountIsGone);
    return false;
  }
  data::Account merged = progress.typed;
  if (othersChanged(differences(read, *theirs, progress.typed))) {
    const bool rowIsWritten = progress.written == Written::Account;
    frmAccountDifferences screen(shell_);
    const auto decided = screen.merge(read, *theirs, progress.typed, AccountTexts(screen_, *gateway),
                                      rowIsWritten ? kRowIsWritten : kNothingYet);
    if (!decided || screen_.RecordTurn != progress.sent.record) return false;
    merged = *decided;
    merged.id = read.id;
    record_.goOnWith(merged, *theirs);
    return true;
  }
  screen_.AsRead = theirs;
  return true;
}

/// The next save is compared with what an unfinished one has written.
void AccountSaving::keepStored(const Progress& progress) {
  if (screen_.RecordTurn != progress.sent.record) return;
  const bool rowIsWritten = progress.written == Written::Account || progress.written == Written::Relation;
  if (rowIsWritten && progress.way == SaveWay::NewAccount) goOnAsEdit(progress.account);
  if (progress.stored) screen_.AsRead = progress.stored;
}

/// Leaves the form so that the next save can finish the job.
void AccountSaving::recover(const Progress& progress, const std::exception& failure) {
  keepStored(progress);
  shell_.showErrorNotice(shell::kTitleSaveError, std::string(failure.what()) + "\n" +
                                                     std::string(outcome(progress.written, failure)));
  // Another read may wait as long as the one that failed: first report that failure.
  if (progress.written == Written::Everything) {
    try {
      record_.showAccount(progress.account);
    } catch (const std::exception&) {
      // The record is blank then, and the notice has said that it couldn't be read.
    }
  }
  const bool isNew = progress.way == SaveWay::NewAccount;
  if (isNew && progress.written == Written::Unclear && UnansweredSave::mayBeDone(failure))
    lookForAccount(progress.sent);
}

void AccountSaving::goOnAsEdit(std::int32_t account) {
  screen_.txtID.setText(std::to_string(account));
  screen_.formMode = FormMode::ModeEdit;
  record_.applyFormMode();
}

bool AccountSaving::foundAfterAll(data::DtEn& gateway) {
  const auto account = unanswered_.find(gateway);
  unanswered_.forget();
  if (!account) return false;
  goOnAsEdit(*account);
  shell_.news.add(ChartEvent::Kind::Created, {*account});
  shell_.showErrorNotice(shell::kTitleSaveError, kFound);
  return true;
}

void AccountSaving::lookForAccount(const UnansweredSave::Sent& sent) {
  unanswered_.remember(sent);
  // The host may have shown another account during the notice.
  if (screen_.RecordTurn != sent.record) return;
  try {
    const shell::Hourglass hourglass(screen_.desktop());
    if (!foundAfterAll(*shell_.dtEn())) unanswered_.remember(sent);
  } catch (const std::exception&) {
    // The connection isn't back yet, and the user knows of the doubt. The next save looks again.
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
  const bool isNew = screen_.formMode == FormMode::ModeNew;
  // Read once: the host may show another account during a notice.
  const TypedAccount typed = readTypedAccount(screen_, isNew ? AccountCall::Insert : AccountCall::Update);
  data::Account account = typed.account;
  progress.sent = {.record = screen_.RecordTurn,
                   .code = account.code,
                   .title = account.title,
                   .parentID = account.parentID};
  progress.typed = account;
  if (!isNew) progress.stored = screen_.AsRead;

  SaveValidation validation(shell_, *gateway);
  progress.way = check(validation, typed);
  if (progress.way == SaveWay::Refused) return;
  if (progress.way == SaveWay::RefusedParent) return screen_.cmdNew.focus();

  if (!mayDropLostClass(account, progress.way)) return;

  if (isNew && unanswered_.isAbout(progress.sent) && foundAfterAll(*gateway)) return;
  progress.written = Written::Unclear;
  const auto operation =
      shell_.operation(*gateway, isNew ? data::OperationKind::NewAccount : data::OperationKind::EditAccount);
  const auto written = writeAccount(*gateway, progress, account);
  if (!written) return screen_.cmdNew.focus();
  progress.account = account.id = *written;
  const auto relation = progress.stored ? progress.stored->relation : std::nullopt;
  progress.stored = data::asStored(account);
  progress.stored->relation = relation;
  progress.written = Written::Account;
  shell_.news.add(isNew ? ChartEvent::Kind::Created : ChartEvent::Kind::Changed, {account.id});
  giveRelation(*gateway, account, progress);
  progress.written = Written::Relation;
  if (!isNew) writeDescendants(*gateway, account);
  progress.written = Written::Everything;
  refresh(*gateway, progress.way, account);
  screen_.cmdNew.focus();
}

SaveWay AccountSaving::check(SaveValidation& validation, const TypedAccount& typed) {
  const data::Account& account = typed.account;
  if (const auto missing = missingField(typed)) return refuse(shell::kTitleProblem, *missing);
  if (!shell::allChosen(shell_, {&screen_.sltParent, &screen_.sltGroup, &screen_.sltBranch,
                                 &screen_.sltPosition, &screen_.sltEntityType, &screen_.sltEntity}))
    return SaveWay::Refused;
  const bool edit = screen_.formMode == FormMode::ModeEdit;
  if (edit && !screen_.settings.EditCodeAllowed && !validation.mayHaveThisCode(account))
    return SaveWay::Refused;
  keepPicked(account);
  if (!edit && screen_.formMode != FormMode::ModeNew) return SaveWay::Refused;
  if (!edit) screen_.LastNewParentID = account.parentID;
  const SaveWay way = edit ? validation.checkParent(account, screen_.LastNewParentID) : SaveWay::NewAccount;
  if (way == SaveWay::RefusedParent || !typed.fault) return way;
  return refuse(shell::kTitleSaveError, *typed.fault);
}

SaveWay AccountSaving::refuse(std::string_view title, const FieldFault& fault) {
  shell_.showErrorNotice(title, fault.message);
  focusField(screen_, fault.member);
  return SaveWay::Refused;
}

void AccountSaving::keepPicked(const data::Account& account) {
  screen_.BranchValue = data::toInt16(account.branchID);
  screen_.PositionValue = data::toInt16(account.positionID);
  screen_.GroupValue = data::toInt16(account.groupID);
  screen_.EntityTypeValue = data::toInt16(account.relation->classID);
}

bool AccountSaving::mayDropLostClass(const data::Account& account, SaveWay way) {
  if (!screen_.ClassIsGone) return true;
  const std::string_view lost = lostWithClass(account, way, screen_.settings);
  if (lost.empty()) return true;
  const std::uint32_t turn = screen_.RecordTurn;
  const bool confirmed =
      shell_.confirms("ثبت حساب", "نوع موجوديت " + std::to_string(account.relation->classID) +
                                      " ديگر تعريف نشده است. اگر ثبت کنيد، " + std::string(lost) +
                                      " اين حساب از ميان ميرود. آيا ثبت شود؟");
  // The host may have shown another account meanwhile.
  if (confirmed && screen_.RecordTurn == turn) return true;
  screen_.sltEntityType.focus();
  return false;
}

std::optional<std::int32_t> AccountSaving::writeAccount(data::DtEn& gateway, const Progress& progress,
                                                        const data::Account& account) {
  const bool isNew = progress.way == SaveWay::NewAccount;
  data::AsRead read{.account = progress.stored};
  // A picker that couldn't read its account doesn't have its code.
  if (!screen_.sltParent.AccountTitle().empty()) {
    read.parentID = account.parentID;
    read.parentCode = screen_.sltParent.AccountCode();
    const auto& place = screen_.ParentAsRead;
    if (place && place->id == read.parentID) read.parentsParent = place->parentID;
  }
  gateway.cnMainData.handOver(read);
  const std::int32_t result =
      isNew ? gateway.spAccountInsertAccount(account) : gateway.spAccountUpdateAccounts(account);
  const bool refused = isNew ? result < 1 : result == 0;
  if (!refused) return isNew ? result : account.id;
  shell_.showErrorNotice(shell::kTitleSaveError, kCodeExists);
  return std::nullopt;
}

void AccountSaving::giveRelation(data::DtEn& gateway, data::Account& account, Progress& progress) {
  const RelationOutcome outcome =
      writeRelation(gateway, account, progress.way, screen_.settings, progress.stored.value());
  if (outcome.reset != Reset::None) {
    account.groupID = -1;
    screen_.sltGroup.Clear();
    screen_.GroupValue = -1;
  }
  if (outcome.reset == Reset::GroupAndEntity) {
    screen_.sltEntityType.Clear();
    screen_.EntityTypeValue = -1;
    screen_.sltEntity.Clear();
    screen_.sltEntity.setIsActive(false);
  }
  if (!outcome.message.empty()) shell_.showErrorNotice(shell::kTitleSaveError, outcome.message);
}

/// Closes or reopens everything below an account, at any depth, as the account is.
void AccountSaving::writeDescendants(data::DtEn& gateway, const data::Account& account) {
  const std::string_view statement = account.isClosed == 1
                                         ? "Update tblAccount Set IsClosed = 1  Where ID in (Select ChildID "
                                           "From tblAccountParent Where ID = "
                                         : "Update tblAccount Set IsClosed = 0  Where ID in (Select ChildID "
                                           "From tblAccountParent Where ID = ";
  gateway.cnMainData.Execute(std::string(statement) + std::to_string(account.id) + ")");
}

/// In the order in which `refresh` asks, as far as it is known from what was saved.
std::vector<data::Command> AccountSaving::questionsOfRefresh(SaveWay way, const data::Account& account) {
  std::vector<data::Command> questions;
  const auto add = [&questions](std::vector<data::Command> more) {
    questions.insert(questions.end(), more.begin(), more.end());
  };
  const bool treeFirst = way == SaveWay::GuardedEdit;
  if (treeFirst) add(tree_.questionsOfRefresh(account.id));
  if (!treeFirst) screen_.sltAccount.addQuestion(account.id, questions);
  if (way == SaveWay::PlainEdit) screen_.sltAccount.addQuestion(account.id, questions);
  add(record_.questionsOf(account));
  if (!treeFirst) add(tree_.questionsOfRefresh(account.id));
  return questions;
}

void AccountSaving::refresh(data::DtEn& gateway, SaveWay way, const data::Account& account) {
  const data::Ahead ahead(gateway.cnMainData, questionsOfRefresh(way, account));
  switch (way) {
    case SaveWay::GuardedEdit:
      tree_.refreshTree();
      record_.showAccount(account.id);
      return screen_.treeAccount.focus();
    case SaveWay::PlainEdit:
      screen_.sltAccount.ReloadAccounts();
      break;
    default:
      break;
  }
  screen_.sltAccount.setAccountID(account.id);
  record_.showAccount(screen_.sltAccount.AccountID());
  tree_.refreshTree();
}

}  // namespace ledgertree::accounts
