#include "ui/text_field.h"

#include <algorithm>

#include "text/utf8.h"
#include "ui/control_visitor.h"

namespace ledgertree::ui {

void TextField::setText(std::string text) {
  if (text_ == text) return;
  text_ = std::move(text);
  caret_ = text::charactersOf(text_).size();
  changed(Change::Text);
}

void TextField::setCaret(std::size_t caret) {
  caret_ = std::min(caret, text::charactersOf(text_).size());
  changed(Change::Caret);
}

void TextField::setLocked(bool locked) {
  if (locked_ == locked) return;
  locked_ = locked;
  changed(Change::Enabled);
}

char32_t TextField::filter(char32_t character) {
  if (!withinReach() || locked_) return 0;
  KeyPress press{.character = latinDigits_ ? latinDigit(character) : character};
  if (onKeyPress) {
    const auto procedure = onKeyPress;
    form().call([&] { procedure(press); });
  }
  return press.character;
}

void TextField::edited(std::string text, std::size_t caret) {
  if (!withinReach() || locked_) return;
  const bool same = text == text_;
  text_ = std::move(text);
  caret_ = std::min(caret, text::charactersOf(text_).size());
  if (!same) raise(onChange);
}

void TextField::keyUp() {
  if (withinReach() && !locked_) raise(onKeyUp);
}

void TextField::type(std::string_view text) {
  const Form::Act act(form());
  for (const char32_t typed : text::charactersOf(text)) {
    const char32_t character = filter(typed);
    if (!act.formAlive()) return;
    auto characters = text::charactersOf(text_);
    if (character != 0 && (maximumLength_ == 0 || characters.size() < maximumLength_)) {
      characters.insert(std::min(caret_, characters.size()), 1, character);
      edited(text::textOf(characters), caret_ + 1);
      if (!act.formAlive()) return;
      changed(Change::Text);
    }
    keyUp();
    if (!act.formAlive()) return;
  }
}

void TextField::press(Key key) {
  const Form::Act act(form());
  auto characters = text::charactersOf(text_);
  const std::size_t caret = std::min(caret_, characters.size());
  const bool backspace = key == Key::Backspace && filter(kBackspaceCharacter) != 0;
  if (!act.formAlive()) return;
  if (backspace && caret > 0) {
    characters.erase(caret - 1, 1);
    edited(text::textOf(characters), caret - 1);
  } else if (key == Key::Delete && caret < characters.size()) {
    characters.erase(caret, 1);
    edited(text::textOf(characters), caret);
  } else if (key == Key::Left || key == Key::Right || key == Key::Home || key == Key::End) {
    if (key == Key::Left && caret > 0) caret_ = caret - 1;
    if (key == Key::Right) caret_ = std::min(caret + 1, characters.size());
    if (key == Key::Home) caret_ = 0;
    if (key == Key::End) caret_ = characters.size();
  }
  if (!act.formAlive()) return;
  changed(Change::Text);
  keyUp();
}

void TextField::paste(std::string_view text) {
  const Form::Act act(form());
  auto characters = text::charactersOf(text);
  if (maximumLength_ != 0 && characters.size() > maximumLength_) characters.resize(maximumLength_);
  const std::size_t caret = characters.size();
  edited(text::textOf(characters), caret);
  if (act.formAlive()) changed(Change::Text);
}

void TextField::accept(ControlVisitor& visitor) { visitor.visit(*this); }

}  // namespace ledgertree::ui
