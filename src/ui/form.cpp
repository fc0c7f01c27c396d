#include "ui/form.h"

#include <algorithm>
#include <stdexcept>

#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/desktop.h"
#include "ui/tree.h"

namespace ledgertree::ui {

/// Outlives a form that is destroyed in the middle of an act.
struct FormLife {
  Form* form = nullptr;  ///< null once the form is gone
  int acts = 0;
  bool closing = false;

  static void endAct(const std::shared_ptr<FormLife>& life) {
    if (--life->acts != 0 || life->form == nullptr) return;
    if (life->closing) return life->form->finishClose();
    if (life->form->onRest) life->form->onRest();
  }
};

Form::Form(Surroundings surroundings, std::string name, std::string caption, Size designSize)
    : surroundings_(std::move(surroundings)),
      life_(std::make_shared<FormLife>()),
      name_(std::move(name)),
      caption_(std::move(caption)),
      designSize_(designSize),
      size_(designSize),
      smallestSize_(designSize) {
  life_->form = this;
}

Form::~Form() {
  life_->form = nullptr;
  surroundings_.desktop.close(*this);
}

void Form::setCaption(std::string caption) {
  caption_ = std::move(caption);
  notify(FormChange::Caption);
}

Control* Form::find(std::string_view name) const {
  const auto found = std::find_if(controls_.begin(), controls_.end(),
                                  [&](const Control* control) { return control->name() == name; });
  return found == controls_.end() ? nullptr : *found;
}

void Form::hide() { surroundings_.desktop.hide(*this); }

void Form::close() {
  const Act act(*this);
  life_->closing = true;
}

void Form::finishClose() {
  life_->closing = false;
  call([this] { unload(); });
  surroundings_.desktop.close(*this);
  if (onClosed) {
    // A copy: the owner may destroy the form, and its members with it.
    const auto closed = onClosed;
    closed();
  }
}

void Form::resize(Size size) {
  if (size == size_) return;
  const Act act(*this);
  size_ = size;
  call([this] { resized(); });
  if (act.formAlive()) notify(FormChange::Size);
}

bool Form::beginCommand() {
  if (!onCommand) return true;
  const Act act(*this);
  bool ready = false;
  call([this, &ready] {
    onCommand();
    ready = true;
  });
  return ready && act.formAlive();
}

bool Form::press(const KeyChord& chord) {
  if (desktop().waiting()) return true;
  const Act act(*this);
  // The pending work may be what puts a button within reach.
  if (hasShortcut(chord) && !beginCommand()) return true;
  for (Control* control : controls_) {
    auto* button = dynamic_cast<PushButton*>(control);
    if (button == nullptr || button->shortcut().empty() || button->shortcut() != chord) continue;
    if (!button->withinReach()) continue;
    // A click would take the focus, and so end what is being typed.
    if (focused_ != nullptr) focused_->focusLeft();
    if (act.formAlive()) button->click();
    return true;
  }
  for (const Shortcut& shortcut : shortcuts_) {
    if (!shortcut.is(chord)) continue;
    call(shortcut.procedure);
    return true;
  }
  PushButton* button = nullptr;
  if (chord == KeyChord::of(Key::Escape)) button = cancelButton_;
  if (chord == KeyChord::of(Key::Enter)) button = defaultButton_;
  if (button == nullptr || !button->withinReach()) return false;
  button->click();
  return true;
}

bool Form::hasShortcut(const KeyChord& chord) const {
  const auto ofButton = [&](const Control* control) {
    const auto* button = dynamic_cast<const PushButton*>(control);
    return button != nullptr && !button->shortcut().empty() && button->shortcut() == chord;
  };
  return std::any_of(controls_.begin(), controls_.end(), ofButton) ||
         std::any_of(shortcuts_.begin(), shortcuts_.end(),
                     [&](const Shortcut& own) { return own.is(chord); });
}

void Form::setShown(bool shown) {
  shown_ = shown;
  if (!shown) focused_ = nullptr;
}

void Form::focusMoved(Control* control) {
  if (focused_ == control || desktop().waiting()) return;
  const Act act(*this);
  Control* left = focused_;
  focused_ = control;
  if (left != nullptr) left->focusLeft();
  if (!act.formAlive()) return;
  if (left != nullptr && left->onLostFocus) call(left->onLostFocus);
  if (!act.formAlive() || control == nullptr || focused_ != control) return;
  if (control->onGotFocus) call(control->onGotFocus);
}

void Form::removeObserver(FormObserver& observer) { std::erase(observers_, &observer); }

void Form::call(const std::function<void()>& procedure) {
  // The procedure may destroy the form, so copy everything that is needed afterwards.
  const Act act(*this);
  const auto onFailure = surroundings_.onFailure;
  const auto running = procedure;
  try {
    running();
  } catch (const std::exception& failure) {
    if (onFailure) onFailure(failure);
  } catch (...) {
    // A third-party component may throw anything.
    if (onFailure) onFailure(std::runtime_error("خطاي ناشناخته اي رخ داد. دوباره تلاش نماييد."));
  }
}

bool Form::inAct() const { return life_->acts > 0; }

void Form::remove(Control& control) {
  std::erase(controls_, &control);
  if (focused_ == &control) focused_ = nullptr;
}

void Form::notify(Control& control, Change change) {
  for (FormObserver* observer : observers_) observer->controlChanged(control, change);
}

void Form::notify(Tree& tree, const TreeChange& change) {
  for (FormObserver* observer : observers_) observer->treeChanged(tree, change);
}

void Form::notify(FormChange change) {
  for (FormObserver* observer : observers_) observer->formChanged(change);
}

void Form::notify(Timer& timer) {
  for (FormObserver* observer : observers_) observer->timerRestarted(timer);
}

Form::Act::Act(Form& form) : Procedure(form.desktop()), life_(form.life_) { ++life_->acts; }

Form::Act::~Act() { FormLife::endAct(life_); }

bool Form::Act::formAlive() const { return life_->form != nullptr; }

}  // namespace ledgertree::ui
