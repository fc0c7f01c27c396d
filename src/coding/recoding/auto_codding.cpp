#include "coding/recoding/auto_codding.h"

#include <chrono>

#include "coding/recoding/code_counter.h"
#include "data/numbers.h"
#include "data/quote_text.h"
#include "shell/work_progress.h"
#include "text/characters.h"

namespace ledgertree::coding {

namespace {

using namespace std::chrono_literals;

constexpr ui::Size kDesignSize{7350, 4350};
constexpr std::size_t kLongestCode = 20;
/// Of the series on the second level, six digits.
constexpr std::string_view kFirstOfSecondLevel = "000001";

constexpr std::string_view kWarning = "هشدار";
constexpr std::string_view kNoWayBack = "پس از انجام اين عمليات، امكان بازگشت وجود ندارد. آيا ادامه مي دهيد؟";
constexpr std::string_view kNoWayBackFromCodes =
    "پس از اعمال كدينگ اتوماتيك، امكان بازگشت وجود ندارد. آيا ادامه مي دهيد؟";
constexpr std::string_view kBadSample =
    "نمونه اولين كد فرزند بايد فقط از ارقام تشكيل شده و حداكثر 14 رقم باشد. هيچ كدي تغيير نكرد.";

void refuseLongCode(shell::Shell& shell, const std::string& code) {
  shell.showErrorNotice(shell::kTitleError,
                        "كد «" + code + "» بيش از 20 حرف دارد و ثبت نميشود. هيچ كدي تغيير نكرد.");
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
  klmFlatButton1.setVisible(shell_.offersHiddenCommands);
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
  const auto typePersian = [this] { desktop().chooseKeyboardLayout(shell_.context.gKeyboardLayout); };
  klmMotherAcc.onGotFocus = typePersian;
  txtSimpleCode.onGotFocus = typePersian;
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
  if (shell_.askConfirmNotice(kWarning, question) != shell::Answer::Yes) return;
  const shell::Hourglass hourglass(desktop());
  operation();
}

void frmAutoCodding::numberChildren() {
  auto counter = CodeCounter::startingAt(txtSimpleCode.text());
  if (!counter) {
    shell_.showErrorNotice(shell::kTitleError, kBadSample);
    return;
  }
  const std::string mother = txtMotherCode.text();
  const auto gateway = shell_.dtEn();
  const data::OpenRows rows(gateway->rssqlAccounts,
                            klmMotherAcc.IsEmpty()
                                ? std::string("Select * From tblAccount Where ParentID Is Null Order By Code")
                                : "Select * From tblAccount Where ParentID = " +
                                      std::to_string(klmMotherAcc.AccountID()) + " Order By Code");
  const std::int32_t all = rows->RecordCount();
  if (all > 0 && text::characterCount(mother) + counter->widthAfter(all - 1) > kLongestCode) {
    refuseLongCode(shell_, mother + counter->number());
    return;
  }
  shell::WorkProgress progress(*this, progressBar, all);
  for (std::int32_t done = 0; !rows->Eof(); rows->MoveNext(), progress.advance(++done)) {
    write(*gateway, {.account = rows->Fields("ID").toInt32(), .code = mother + counter->number()});
    counter->raise();
  }
}

void frmAutoCodding::numberSecondLevel() {
  const auto gateway = shell_.dtEn();
  const std::vector<NewCode> accounts = secondLevel(*gateway);
  for (const NewCode& account : accounts) {
    if (text::characterCount(account.code) <= kLongestCode) continue;
    refuseLongCode(shell_, account.code);
    return;
  }
  {
    shell::WorkProgress progress(*this, progressBar, static_cast<std::int32_t>(accounts.size()));
    std::int32_t done = 0;
    for (const NewCode& account : accounts) {
      write(*gateway, account);
      progress.advance(++done);
    }
  }
  readMotherAgain();
}

/// The codes that the accounts of the level will have; one whose parent is gone keeps its own.
std::vector<frmAutoCodding::NewCode> frmAutoCodding::secondLevel(data::DtEn& gateway) {
  std::vector<NewCode> accounts;
  auto counter = CodeCounter::startingAt(kFirstOfSecondLevel);
  const data::OpenRows rows(gateway.rssqlAccounts,
                            "Select * From tblAccount Where Nolevel=2 Order By Left(Code,6),Code");
  for (; !rows->Eof(); rows->MoveNext()) {
    const data::OpenRows parent(
        gateway.rssqlAccGroupL,
        "Select * From tblAccount Where ID=" +
            std::to_string(data::toNumber(rows->Fields("ParentID").toText()).asInt32()));
    if (parent->Eof()) continue;
    accounts.push_back({.account = rows->Fields("ID").toInt32(),
                        .code = parent->Fields("Code").toText() + counter->number()});
    counter->raise();
  }
  return accounts;
}

void frmAutoCodding::write(data::DtEn& gateway, const NewCode& account) {
  gateway.cnMainData.Execute("Update tblAccount  Set Code = " + data::quoteText(account.code) +
                             " Where ID = " + std::to_string(account.account));
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
  const std::string account = std::to_string(klmMotherAcc.AccountID());
  const std::string name(column);
  const auto gateway = shell_.dtEn();
  gateway->cnMainData.Execute(
      "Update tblAccount  Set " + name + " = (select max(" + name + ") from tblAccount Where ID= " + account +
      " )  Where ID In ( Select ChildID From tblAccountParent Where ID = " + account + ")");
}

void showAutoCodding(shell::Shell& shell) {
  frmAutoCodding form(shell);
  shell.desktop().showModal(form);
}

}  // namespace ledgertree::coding
