#include "coding/recoding/auto_codding.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "coding/recoding/outlook.h"
#include "data/data_error.h"
#include "data/quote_text.h"
#include "shell/lookup/all_chosen.h"
#include "shell/work_progress.h"
#include "text/characters.h"

namespace ledgertree::coding {

namespace {

using namespace std::chrono_literals;

constexpr ui::Size kDesignSize{7350, 4350};
/// The longest that the screen may freeze for one batch of codes; after a slower one, batches are half as
/// large.
constexpr std::chrono::seconds kLongestFreeze{1};

constexpr std::string_view kWarning = "هشدار";
constexpr std::string_view kBadSample =
    "نمونه اولين كد فرزند بايد فقط از ارقام تشكيل شده و حداكثر 14 رقم باشد. هيچ كدي تغيير نكرد.";

constexpr std::string_view kChanged =
    "پس از پيش نمايش، کاربر ديگري اين حسابها يا کدهاي آنها را تغيير داده است. هيچ كدي تغيير نكرد؛ پيش نمايش "
    "را "
    "دوباره ببينيد.";

constexpr std::string_view kGoOn =
    "پس از رفع اشكال، بي آنكه اين صفحه را ببنديد، همين فرمان را با همين حساب مادر و همين نمونه دوباره "
    "اجرا كنيد تا كار از نخستين حساب باقيمانده ادامه يابد.";

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
      cmdPreview(*this, "cmdPreview", {225, 690, 3150, 330}, "پيش نمايش..."),
      klmFlatButton1(*this, "klmFlatButton1", {225, 1290, 1725, 405}, "تفصيلي اتوماتيک"),
      cmdPreviewLevel(*this, "cmdPreviewLevel", {225, 1830, 1725, 405}, "پيش نمايش..."),
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
  cmdPreview.setVisible(shell_.isOffered(Offer::Preview));
  cmdPreview.setAccessibleName("پيش نمايش کدينگ خودکار");
  cmdPreviewLevel.setVisible(cmdPreview.visible() && klmFlatButton1.visible());
  cmdPreviewLevel.setAccessibleName("پيش نمايش تفصيلي اتوماتيک");
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
  // No default button: none of the commands can be undone, and Enter must not start one.
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
  cmdAutoCodding.onClick = [this] {
    runConfirmed(kNoWayBack, [this] {
      if (const auto numbering = ofChildren()) recode(*numbering, nullptr);
    });
  };
  klmFlatButton1.onClick = [this] {
    const Numbering numbering = numberingOfSecondLevel();
    runConfirmed(numbering.question, [&] { recode(numbering, nullptr); });
  };
  cmdPreview.onClick = [this] { preview([this] { return ofChildren(); }, cmdAutoCodding); };
  cmdPreviewLevel.onClick = [this] { preview(numberingOfSecondLevel, klmFlatButton1); };
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
  cmdPreview.setEnabled(cmdAutoCodding.enabled());
}

void frmAutoCodding::runConfirmed(std::string_view question, const std::function<void()>& operation) {
  if (working_) return;
  const shell::UnderWay underWay(working_);
  if (!shell::allChosen(shell_, {&klmMotherAcc})) return;
  if (!shell_.confirms(kWarning, question)) return;
  const shell::Hourglass hourglass(desktop());
  operation();
}

std::optional<Numbering> frmAutoCodding::ofChildren() {
  const auto counter = CodeCounter::startingAt(txtSimpleCode.text());
  if (counter) return numberingOfChildren(klmMotherAcc.AccountID(), txtMotherCode.text(), *counter);
  shell_.showErrorNotice(shell::kTitleError, kBadSample);
  return std::nullopt;
}

void frmAutoCodding::preview(const std::function<std::optional<Numbering>()>& wish,
                             const ui::PushButton& command) {
  if (working_) return;
  const shell::UnderWay underWay(working_);
  if (!shell::allChosen(shell_, {&klmMotherAcc})) return;
  const auto numbering = wish();
  if (!numbering) return;
  const auto gateway = shell_.dtEn();
  Outlook seen;
  {
    const shell::Hourglass hourglass(desktop());
    seen = outlookOf(*gateway, *numbering, remaining(*gateway, *numbering));
  }
  if (!shell::showPreview(shell_, previewOf(*gateway, seen, command.caption()))) return;
  if (!shell_.confirms(kWarning, numbering->question)) return;
  const shell::Hourglass hourglass(desktop());
  recode(*numbering, &seen);
}

std::vector<NewCode> frmAutoCodding::remaining(data::DtEn& gateway, const Numbering& numbering) const {
  if (!resumes(numbering)) return numbering.codes(gateway);
  return {unfinished_->codes.begin() + static_cast<std::ptrdiff_t>(unfinished_->done),
          unfinished_->codes.end()};
}

void frmAutoCodding::recode(const Numbering& numbering, const Outlook* seen) {
  const auto gateway = shell_.dtEn();
  if (!resumes(numbering)) {
    unfinished_.reset();
    Recoding fresh{.command = numbering.command, .codes = numbering.codes(*gateway)};
    if (seen != nullptr) {
      const Outlook now{.codes = fresh.codes, .collisions = collisionsOf(*gateway, fresh.codes)};
      if (!now.sameChart(*seen)) return shell_.showErrorNotice(shell::kTitleProblem, kChanged);
    }
    const auto tooLong = std::find_if(fresh.codes.begin(), fresh.codes.end(), isTooLong);
    if (tooLong != fresh.codes.end()) return refuseLongCode(shell_, tooLong->code);
    unfinished_ = std::move(fresh);
  }
  try {
    writeCodes(*gateway);
    unfinished_.reset();
  } catch (const std::exception& failure) {
    if (unfinished_->done != 0 || inDoubt(failure) != 0) return tellHowFar(failure);
    unfinished_.reset();
    throw;
  }
  if (numbering.ofMother) readMotherAgain();
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
    const bool slow = std::chrono::steady_clock::now() - begin > kLongestFreeze;
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

/// The mother account may itself have got a new code; the old one must not go into the codes of its children.
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
