#include "shell/control/ledger_tree_control_session.h"

#include <stdexcept>
#include <utility>

#include "data/connection_text.h"
#include "data/permissions.h"
#include "data/system_parameters.h"
#include "ledgertree/ledger_tree_control.h"

namespace ledgertree {

namespace {

constexpr const char* kWaiting =
    "سرفصل حسابها منتظر پاسخ پايگاه داده است. پس از رسيدن پاسخ دوباره تلاش نماييد.";
constexpr const char* kInTheMiddle =
    "سرفصل حسابها در ميان کار ديگري است و پايگاه داده آن اکنون عوض نميشود. آن کار را به پايان برسانيد و "
    "دوباره تلاش نماييد.";

std::unique_ptr<ControlSession>& processSession() {
  static std::unique_ptr<ControlSession> session;
  return session;
}

}  // namespace

ControlSession::ControlSession(std::unique_ptr<ui::Desktop> desktop)
    : desktop_(std::move(desktop)), shell_(*desktop_) {
  shell_.news.onFirst = [this] { tellNews(); };
}

LedgerTreeControl ControlSession::makeControl() { return LedgerTreeControl(*this); }

void ControlSession::tellNews() {
  desktop_->whenIdle([this] {
    if (form_ && form_->inAct()) return;
    // A copy: the host may replace the listener during the call.
    const auto listener = onEvent;
    for (const ChartEvent& event : shell_.news.take())
      if (listener) listener(event);
  });
}

ControlSession& ControlSession::process() {
  if (!processSession())
    throw std::logic_error("install a desktop before the first LedgerTreeControl is made");
  return *processSession();
}

ControlSession& ControlSession::install(std::unique_ptr<ui::Desktop> desktop) {
  if (processSession()) throw std::logic_error("a desktop is installed already");
  processSession() = std::make_unique<ControlSession>(std::move(desktop));
  return *processSession();
}

mainform::FormMain& ControlSession::loadedForm() {
  if (!form_) {
    auto form = std::make_unique<mainform::FormMain>(shell_);
    form->load();
    form->onRest = [this] {
      if (!shell_.news.empty()) tellNews();
    };
    form->onClosed = [this] { formClosed(); };
    form_ = std::move(form);
  }
  return *form_;
}

void ControlSession::requireAnswered() const {
  if (desktop_->waiting()) throw std::runtime_error(kWaiting);
}

std::vector<data::Command> ControlSession::questionsOfStart() const {
  std::vector<data::Command> questions{
      data::permissionQuestion(shell_.context.gUserID, data::Permission::ShowChart)};
  if (!form_)
    for (data::Command& parameter : data::systemParameterQuestions())
      questions.push_back(std::move(parameter));
  return questions;
}

bool ControlSession::makeWay(const std::string& connectionText, bool forAnotherRecord) {
  if (!form_) return true;
  const bool elsewhere = !data::sameDatabase(form_->loadedFrom(), connectionText);
  if (!elsewhere && !forAnotherRecord) return true;
  if (elsewhere) {
    static_cast<void>(shell_.providers.open(connectionText));  // refuses a malformed text, without opening it
    if (form_->inAct()) throw std::runtime_error(kInTheMiddle);
  }
  if (!form_->mayLeave()) return false;
  if (elsewhere && form_) form_->close();
  return true;
}

void ControlSession::dropUnshown() {
  if (!form_) return;
  cameUp_ = cameUp_ || form_->isShown();
  if (!cameUp_) form_.reset();
}

void ControlSession::formClosed() {
  form_.reset();
  cameUp_ = false;
  if (!shell_.news.empty()) tellNews();
  // Later, since the form closes during a user's action on it.
  desktop_->whenIdle([this] {
    if (onLeft && !form_) onLeft();
  });
}

}  // namespace ledgertree
