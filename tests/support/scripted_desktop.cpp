#include "support/scripted_desktop.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "ui/control.h"
#include "ui/lookup_field.h"
#include "ui/timer.h"

namespace ledgertree::testing {

void ScriptedDesktop::inModal(std::string formName, Person person) {
  scripts_.push_back({std::move(formName), std::move(person)});
}

std::vector<std::string> ScriptedDesktop::surprises() const {
  auto surprises = unscripted_;
  for (const Script& script : scripts_) surprises.push_back("never shown: " + script.form);
  return surprises;
}

void ScriptedDesktop::tick() {
  settle();
  for (ui::Form* form : std::vector(shownForms))
    for (ui::Timer* timer : std::vector(form->timers())) timer->tick();
  settle();
}

/// Whether a look-up on the screen is waiting for rows, perhaps from another thread.
bool ScriptedDesktop::searching() const {
  return std::any_of(shownForms.begin(), shownForms.end(), [](ui::Form* form) {
    return std::any_of(form->controls().begin(), form->controls().end(), [](ui::Control* control) {
      const auto* const field = dynamic_cast<ui::LookupField*>(control);
      return field != nullptr && field->searching();
    });
  });
}

void ScriptedDesktop::settle() {
  const auto end = std::chrono::steady_clock::now() + patience;
  for (;;) {
    std::function<void()> procedure;
    {
      const std::lock_guard guard(idleLock_);
      if (!idle_.empty()) {
        procedure = std::move(idle_.front());
        idle_.pop_front();
      } else if (!searching() || std::chrono::steady_clock::now() > end) {
        return;
      }
    }
    if (procedure) procedure();
    if (!procedure) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

void ScriptedDesktop::bringUp(ui::Form& form) {
  if (std::find(shownForms.begin(), shownForms.end(), &form) == shownForms.end()) shownForms.push_back(&form);
  form.setShown(true);
}

void ScriptedDesktop::takeOff(ui::Form& form) {
  if (std::erase(shownForms, &form) > 0) form.setShown(false);
}

void ScriptedDesktop::show(ui::Form& form) {
  if (refusal != 0) throw ui::DesktopError(refusal, "the host accepts only modal forms");
  showings.push_back(form.name());
  bringUp(form);
}

void ScriptedDesktop::showModal(ui::Form& form) {
  showings.push_back(form.name() + "!");
  const Apart apart(*this);
  bringUp(form);
  const auto script = std::find_if(scripts_.begin(), scripts_.end(),
                                   [&](const Script& one) { return one.form == form.name(); });
  if (script == scripts_.end()) {
    unscripted_.push_back("unexpected: " + form.name());
  } else {
    const Person person = std::move(script->person);
    scripts_.erase(script);
    person(form);
  }
  const bool stillUp = std::find(shownForms.begin(), shownForms.end(), &form) != shownForms.end();
  if (stillUp) form.closeByPerson();
  takeOff(form);
}

void ScriptedDesktop::close(ui::Form& form) { takeOff(form); }

void ScriptedDesktop::hide(ui::Form& form) { takeOff(form); }

void ScriptedDesktop::popUpMenu(ui::Form&, ui::MenuEntry& menu, ui::Twips left, ui::Twips top) {
  poppedUp = &menu;
  poppedUpLeft = left;
  poppedUpTop = top;
}

void ScriptedDesktop::setCursor(ui::CursorShape shape) {
  cursor = shape;
  if (shape == ui::CursorShape::Hourglass) ++hourglasses;
}

void ScriptedDesktop::moveFocus(ui::Control& control) { control.form().focusMoved(&control); }

void ScriptedDesktop::repaint(ui::Form&) {
  ++repaints;
  if (onRepaint) onRepaint();
}

bool ScriptedDesktop::showWait(std::string_view text, std::string_view wayOut) {
  waits.emplace_back(std::string(text.substr(0, text.find(" ("))) + "|" + std::string(wayOut));
  if (onWait) onWait();
  return std::exchange(escape, false) && !wayOut.empty();
}

void ScriptedDesktop::whenIdle(std::function<void()> procedure) {
  const std::lock_guard guard(idleLock_);
  idle_.push_back(std::move(procedure));
}

}  // namespace ledgertree::testing
