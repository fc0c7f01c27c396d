#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "ui/control.h"
#include "ui/key.h"

namespace ledgertree::ui {

/// A key that is about to insert a character. A handler drops it by setting `character` to 0.
struct KeyPress {
  char32_t character = 0;  ///< kBackspaceCharacter for backspace
};

/// A text field of one line or several. Positions count characters.
class TextField : public Control {
 public:
  using Control::Control;

  [[nodiscard]] const std::string& text() const { return text_; }
  /// A program's text isn't cut to the maximum length. The caret moves to its end.
  void setText(std::string text);
  /// The caret's position, 0 before the first character.
  [[nodiscard]] std::size_t caret() const { return caret_; }
  void setCaret(std::size_t caret);
  /// The maximum number of characters that a user can enter; 0 for no limit.
  [[nodiscard]] std::size_t maximumLength() const { return maximumLength_; }
  void setMaximumLength(std::size_t length) { maximumLength_ = length; }
  [[nodiscard]] bool locked() const { return locked_; }
  /// A locked field shows its text but takes no typing. It can have the focus.
  void setLocked(bool locked);
  [[nodiscard]] bool multiline() const { return multiline_; }
  void setMultiline(bool multiline) { multiline_ = multiline; }
  /// Persian and Arabic digits become 0 to 9 before the key filter sees them.
  [[nodiscard]] bool latinDigits() const { return latinDigits_; }
  void setLatinDigits(bool latinDigits) { latinDigits_ = latinDigits; }
  /// Codes and numbers run from left to right, on a right-to-left screen too.
  [[nodiscard]] bool leftToRight() const { return leftToRight_; }
  void setLeftToRight(bool leftToRight) { leftToRight_ = leftToRight; }

  // User actions.
  /// Types character by character at the caret: each goes through the key filter, and its key is released.
  void type(std::string_view text);
  /// Backspace, Delete, Left, Right, Home and End edit; the release of every key is reported.
  void press(Key key);
  /// Replaces the whole text at once, as a paste does, without the key filter.
  void paste(std::string_view text);

  // Called by the renderer, which has its own editor. The order for a key is filter, edited (if the text
  // changed), keyUp.
  /// The character that the key inserts, after conversion of digits and the form's filter; 0 if dropped.
  [[nodiscard]] char32_t filter(char32_t character);
  void edited(std::string text, std::size_t caret);
  void keyUp();

  /// Called before each character and backspace.
  Event<KeyPress&> onKeyPress;
  /// The user changed the text.
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
