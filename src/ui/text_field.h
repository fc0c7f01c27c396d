#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "ui/control.h"
#include "ui/key.h"

namespace ledgertree::ui {

/// A key that is about to put a character into a field. A procedure drops it by setting `character` to 0.
struct KeyPress {
  char32_t character = 0;  ///< kBackspaceCharacter for backspace
};

/// A field of one line or several. Places in the text count characters.
class TextField : public Control {
 public:
  using Control::Control;

  [[nodiscard]] const std::string& text() const { return text_; }
  /// A program's text isn't cut to the greatest length; the caret goes to its end.
  void setText(std::string text);
  /// The place of the caret, 0 ahead of the first character.
  [[nodiscard]] std::size_t caret() const { return caret_; }
  void setCaret(std::size_t caret);
  /// The greatest number of characters that a person can put in; 0 for no limit.
  [[nodiscard]] std::size_t maximumLength() const { return maximumLength_; }
  void setMaximumLength(std::size_t length) { maximumLength_ = length; }
  [[nodiscard]] bool locked() const { return locked_; }
  /// A locked field shows its text and takes no typing; the focus may rest in it.
  void setLocked(bool locked);
  [[nodiscard]] bool multiline() const { return multiline_; }
  void setMultiline(bool multiline) { multiline_ = multiline; }
  /// Persian and Arabic digits arrive as 0 to 9, ahead of the key filter.
  [[nodiscard]] bool latinDigits() const { return latinDigits_; }
  void setLatinDigits(bool latinDigits) { latinDigits_ = latinDigits; }
  /// Codes and numbers read from left to right, also on a right-to-left screen.
  [[nodiscard]] bool leftToRight() const { return leftToRight_; }
  void setLeftToRight(bool leftToRight) { leftToRight_ = leftToRight; }

  // A person.
  /// Types character by character at the caret, each through the key filter, with its key up at the end.
  void type(std::string_view text);
  /// Backspace, Delete, Left, Right, Home and End work on the text; every key ends with its key up.
  void press(Key key);
  /// The whole text replaced at once, as by a paste: no key filter.
  void paste(std::string_view text);

  // The renderer, which has an editor of its own, in the order of a key: filter, edited (where the text
  // changed), keyUp.
  /// The character that the key puts in, after the digits' rule and the filter of the form; 0 where it is
  /// dropped.
  [[nodiscard]] char32_t filter(char32_t character);
  void edited(std::string text, std::size_t caret);
  void keyUp();

  /// Ahead of each character and of backspace.
  Event<KeyPress&> onKeyPress;
  /// A person changed the text.
  Event<> onChange;
  Event<> onKeyUp;
  void accept(ControlVisitor& visitor) override;

 private:
  std::string text_;
  std::size_t caret_ = 0;
  std::size_t maximumLength_ = 0;
  bool locked_ = false;
  bool multiline_ = false;
  bool latinDigits_ = false;
  bool leftToRight_ = false;
};

}  // namespace ledgertree::ui
