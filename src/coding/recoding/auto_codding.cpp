#include "coding/recoding/auto_codding.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "data/ahead.h"
#include "data/data_error.h"
#include "data/numbers.h"
#include "data/quote_text.h"
#include "shell/lookup/all_chosen.h"
#include "shell/work_progress.h"
#include "text/characters.h"

namespace ledgertree::coding {

namespace {

using namespace std::chrono_literals;

constexpr ui::Size kDesignSize{7350, 4350};
constexpr std::size_t kLongestCode = 20;
/// The longest that the screen stands still for the codes of one packet; longer, and the next is half as
/// large.
constexpr std::chrono::seconds kLongestStandstill{1};
/// Of the series on the second level, six digits.
constexpr std::string_view kFirstOfSecondLevel = "000001";

constexpr std::string_view kWarning = "هشدار";
constexpr std::string_view kNoWayBack = "پس از انجام اين عمليات، امكان بازگشت وجود ندارد. آيا ادامه مي دهيد؟";
constexpr std::string_view kNoWayBackFromCodes =
    "پس از اعمال كدينگ اتوماتيك، امكان بازگشت وجود ندارد. آيا ادامه مي دهيد؟";
constexpr std::string_view kBadSample =
    "نمونه اولين كد فرزند بايد فقط از ارقام تشكيل شده و حداكثر 14 رقم باشد. هيچ كدي تغيير نكرد.";

constexpr std::string_view kGoOn =
    "پس از رفع اشكال، بي آنكه اين صفحه را ببنديد، همين فرمان را با همين حساب مادر و همين نمونه دوباره "
    "اجرا كنيد تا كار از نخستين حساب باقيمانده ادامه يابد.";

void refuseLongCode(shell::Shell& shell, const std::string& code) {
  shell.showErrorNotice(shell::kTitleError,
                        "كد «" + code + "» بيش از 20 حرف دارد و ثبت نميشود. هيچ كدي تغيير نكرد.");
}

std::string parentStatement(const data::RecordHandle& account) {
  return "Select * From tblAccount Where ID=" +
         std::to_string(data::toNumber(account.Fields("ParentID").toText()).asInt32());
}

}  // namespace

frmAutoCodding::frmAutoCodding(shell::Shell& shell)
    : ui::Form(shell.surroundings(), "frmAutoCodding",
               "اعمال كدينگ خودكار، همسان سازي كدينگ و ماهيت و نوع حساب", kDesignSize),
      lbl1(*this, "lbl1", {5325, 255, 1800, 270}, "حساب مادر:"),
      klmMotherAcc(*this, shell, "klmMotherAcc", {2025, 225, 3225, 330}),
      txtMotherCode(*this, "txtMotherCode", {225, 225, 1725, 330}),
      Label1(*this, "Label1", {5325, 720, 1800, 270}, "نمونه اولين كد فرزند:"),
      txtSimpleCode(*this, "txtSimpleCode", {3525, 690, 1725, 330}),
      cmdAutoCodding(*this, "cmdAutoCodding", {2025, 1290, 5100, 405}, "اعمال کدينگ خودکار حسابداري"),
      klmFlatButton1(*this, "klmFlatButton1", {225, 1290, 1725, 405}, "تفصيلي اتوماتيک"),
      cmdAccountType(*this, "cmdAccountType", {2025, 1830, 5100, 405}, "همسان سازي نوع حساب"),
      cmdRemanedType(*this, "cmdRemanedType", {2025, 2370, 5100, 405}, "همسان سازي ماهيت حساب"),
      cmdCancel(*this, "cmdCancel", {225, 3720, 1500, 405}, "انصراف"),
      progressBar(*this, "ProgressBar", {225, 3090, 6900, 330}),
      Timer1(*this, "Timer1", 500ms),
      shell_(shell) {
  loadControls();
  listen();
  enableButtons();
}

void frmAutoCodding::loadControls() {
  shell_.chooseKeyboardLayout();
  klmMotherAcc.setClosingFlag(false);
  klmFlatButton1.setVisible(shell_.isOffered(Offer::HiddenCommands));
  progressBar.setVisible(false);
  for (ui::TextField* code : {&txtMotherCode, &txtSimpleCode}) {
    code->setMaximumLength(kLongestCode);
    code->setLatinDigits(true);
    code->setLeftToRight(true);
  }
  klmMotherAcc.setAccessibleName("حساب مادر");
  txtMotherCode.setAccessibleName("کد حساب مادر");
  txtSimpleCode.setAccessibleName("نمونه اولين كد فرزند");
  progressBar.setAccessibleName("پيشرفت کار");
  setFirstFocus(klmMotherAcc);
  // None of the commands has a way back: Enter presses none of them by itself.
  setCancelButton(cmdCancel);
}

void frmAutoCodding::listen() {
  shell_.switchLayoutAt(klmMotherAcc);
  shell_.switchLayoutAt(txtSimpleCode);
  klmMotherAcc.onAccountChange = [this] { txtMotherCode.setText(klmMotherAcc.AccountCode()); };
  txtSimpleCode.onKeyPress = [](ui::KeyPress& key) {
    const bool passes =
        (key.character >= U'.' && key.character <= U'9') || key.character == ui::kBackspaceCharacter;
    if (!passes) key.character = 0;
  };
  cmdAutoCodding.onClick = [this] { runConfirmed(kNoWayBack, [this] { numberChildren(); }); };
  klmFlatButton1.onClick = [this] { runConfirmed(kNoWayBackFromCodes, [this] { numberSecondLevel(); }); };
  cmdAccountType.onClick = [this] { runConfirmed(kNoWayBack, [this] { copyToDescendants("IsPermanent"); }); };
  cmdRemanedType.onClick = [this] {
    runConfirmed(kNoWayBack, [this] { copyToDescendants("AccountNatureID"); });
  };
  cmdCancel.onClick = [this] { close(); };
  Timer1.onTick = [this] { enableButtons(); };
}

void frmAutoCodding::enableButtons() {
  cmdAccountType.setEnabled(!klmMotherAcc.IsEmpty());
  cmdRemanedType.setEnabled(!klmMotherAcc.IsEmpty());
  cmdAutoCodding.setEnabled(!text::trimmed(txtSimpleCode.text()).empty());
}

void frmAutoCodding::runConfirmed(std::string_view question, const std::function<void()>& operation) {
  if (working_) return;
  const shell::UnderWay underWay(working_);
  if (!shell::allChosen(shell_, {&klmMotherAcc})) return;
  if (shell_.askConfirmNotice(kWarning, question) != shell::Answer::Yes) return;
  const shell::Hourglass hourglass(desktop());
  operation();
}

void frmAutoCodding::numberChildren() {
  const auto counter = CodeCounter::startingAt(txtSimpleCode.text());
  if (!counter) {
    shell_.showErrorNotice(shell::kTitleError, kBadSample);
    return;
  }
  const auto gateway = shell_.dtEn();
  const std::string statement =
      klmMotherAcc.IsEmpty()
          ? std::string("Select * From tblAccount Where ParentID Is Null Order By Code")
          : "Select * From tblAccount Where ParentID = " + std::to_string(klmMotherAcc.AccountID()) +
                " Order By Code";
  recode(*gateway, statement + "\n" + txtMotherCode.text() + "\n" + txtSimpleCode.text(),
         [&] { return children(*gateway, statement, *counter); });
}

std::vector<frmAutoCodding::NewCode> frmAutoCodding::children(data::DtEn& gateway,
                                                              const std::string& statement,
                                                              CodeCounter counter) {
  const std::string mother = txtMotherCode.text();
  std::vector<NewCode> accounts;
  const data::OpenRows rows(gateway.rssqlAccounts, statement);
  for (; !rows->Eof(); rows->MoveNext(), counter.raise())
    accounts.push_back({.account = rows->Fields("ID").toInt32(), .code = mother + counter.number()});
  return accounts;
}

void frmAutoCodding::numberSecondLevel() {
  const auto gateway = shell_.dtEn();
  recode(*gateway, "second level", [&] { return secondLevel(*gateway); });
  readMotherAgain();
}

/// The codes that the accounts of the level will have; one whose parent is gone keeps its own.
std::vector<frmAutoCodding::NewCode> frmAutoCodding::secondLevel(data::DtEn& gateway) {
  std::vector<NewCode> accounts;
  auto counter = CodeCounter::startingAt(kFirstOfSecondLevel);
  const data::OpenRows rows(gateway.rssqlAccounts,
                            "Select * From tblAccount Where Nolevel=2 Order By Left(Code,6),Code");
  std::vector<data::Command> parents;
  for (; !rows->Eof(); rows->MoveNext()) parents.push_back({.statement = parentStatement(*rows)});
  const data::Ahead ahead(gateway.cnMainData, std::move(parents));
  for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext()) {
    const data::OpenRows parent(gateway.rssqlAccGroupL, parentStatement(*rows));
    if (parent->Eof()) continue;
    accounts.push_back({.account = rows->Fields("ID").toInt32(),
                        .code = parent->Fields("Code").toText() + counter->number()});
    counter->raise();
  }
  return accounts;
}

void frmAutoCodding::recode(data::DtEn& gateway, std::string command,
                            const std::function<std::vector<NewCode>()>& codes) {
  if (!unfinished_ || unfinished_->command != command) {
    unfinished_.reset();
    Recoding fresh{.command = std::move(command), .codes = codes()};
    const auto tooLong = std::find_if(fresh.codes.begin(), fresh.codes.end(), [](const NewCode& account) {
      return text::characterCount(account.code) > kLongestCode;
    });
    if (tooLong != fresh.codes.end()) return refuseLongCode(shell_, tooLong->code);
    unfinished_ = std::move(fresh);
  }
  try {
    writeCodes(gateway);
    unfinished_.reset();
  } catch (const std::exception& failure) {
    if (unfinished_->done != 0 || inDoubt(failure) != 0) return tellHowFar(failure);
    unfinished_.reset();
    throw;
  }
}

void frmAutoCodding::writeCodes(data::DtEn& gateway) {
  auto& [command, codes, done, together] = *unfinished_;
  const auto operation = shell_.operation(gateway, data::OperationKind::Recode);
  shell::WorkProgress progress(*this, progressBar, static_cast<std::int32_t>(codes.size()));
  together = gateway.cnMainData.together();
  while (done < codes.size()) {
    const auto begin = std::chrono::steady_clock::now();
    std::vector<std::string> statements;
    for (std::size_t next = done; next < std::min(done + together, codes.size()); ++next)
      statements.push_back("Update tblAccount  Set Code = " + data::quoteText(codes[next].code) +
                           " Where ID = " + std::to_string(codes[next].account));
    const data::Answers answers = gateway.cnMainData.Execute(statements);
    for (std::size_t ran = 0; ran < answers.ran.size(); ++ran)
      shell_.news.add(ChartEvent::Kind::Recoded, {codes[done++].account});
    if (answers.failure) std::rethrow_exception(answers.failure);
    const bool slow = std::chrono::steady_clock::now() - begin > kLongestStandstill;
    if (slow && together > 1) together /= 2;
    progress.advance(static_cast<std::int32_t>(done));
  }
}

std::size_t frmAutoCodding::inDoubt(const std::exception& failure) const {
  const auto& [command, codes, done, together] = *unfinished_;
  const auto* error = dynamic_cast<const data::DataError*>(&failure);
  if (error == nullptr || !error->leavesOpen() || together == 1) return 0;
  return std::min(together, codes.size() - done);
}

void frmAutoCodding::tellHowFar(const std::exception& failure) {
  const auto& [command, codes, done, together] = *unfinished_;
  const auto text = [](std::size_t number) { return std::to_string(number); };
  const std::size_t open = inDoubt(failure);
  std::string far = (open == 0 ? "كد " : "كد دست كم ") + text(done) + " حساب از " + text(codes.size());
  far += open == 0 ? " حساب تغيير كرد و آخرين كد تازه «" + codes[done - 1].code + "» است. "
                   : " حساب تغيير كرد و شايد كد تا " + text(open) + " حساب پس از آن هم تغيير كرده باشد. ";
  shell_.showErrorNotice(shell::kTitleError, std::string(failure.what()) + "\n" + far + std::string(kGoOn));
}

/// The mother account may be one of those that got a new code. Its old one must not go into the codes of its
/// children.
void frmAutoCodding::readMotherAgain() {
  if (klmMotherAcc.IsEmpty()) return;
  const std::string old = klmMotherAcc.AccountCode();
  klmMotherAcc.ReloadAccounts();
  if (klmMotherAcc.AccountCode() != old) txtMotherCode.setText(klmMotherAcc.AccountCode());
}

void frmAutoCodding::copyToDescendants(std::string_view column) {
  const std::int32_t mother = klmMotherAcc.AccountID();
  const std::string account = std::to_string(mother);
  const std::string name(column);
  const auto gateway = shell_.dtEn();
  const auto operation = shell_.operation(*gateway, data::OperationKind::CopyToDescendants);
  gateway->cnMainData.Execute(
      "Update tblAccount  Set " + name + " = (select max(" + name + ") from tblAccount Where ID= " + account +
      " )  Where ID In ( Select ChildID From tblAccountParent Where ID = " + account + ")");
  shell_.news.add(ChartEvent::Kind::ChangedBelow, {mother});
}

void showAutoCodding(shell::Shell& shell) {
  frmAutoCodding form(shell);
  shell.desktop().showModal(form);
}

}  // namespace ledgertree::coding
