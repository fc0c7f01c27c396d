#include "shell/control/ledger_tree_control_session.h"

#include <stdexcept>

namespace ledgertree {

namespace {

std::unique_ptr<ControlSession>& processSession() {
  static std::unique_ptr<ControlSession> session;
  return session;
}

}  // namespace

ControlSession::ControlSession(std::unique_ptr<ui::Desktop> desktop)
    : desktop_(std::move(desktop)), shell_(*desktop_) {}

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
    form->onClosed = [this] { formClosed(); };
    form_ = std::move(form);
  }
  return *form_;
}

void ControlSession::formClosed() {
  form_.reset();
  // Later, since the form closes in the middle of what a person does to it.
  desktop_->whenIdle([this] {
    if (onLeft && !form_) onLeft();
  });
}

}  // namespace ledgertree
