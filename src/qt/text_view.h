#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTextEdit>
#include <functional>

#include "qt/control_view.h"
#include "ui/text_field.h"

namespace ledgertree::qt {

/// What an editor asks while the user types. Each function may destroy the form that the editor is on.
struct Typist {
  /// The characters that a key inserts in the keyboard's layout; empty for a key that inserts none.
  std::function<std::u32string(const QKeyEvent&)> characters;
  /// The character after the form's filter; 0 drops it.
  std::function<char32_t(char32_t)> filter;
  /// Handles a key of special meaning; true if it did.
  std::function<bool(QKeyEvent&)> key;
  std::function<void()> keyUp;
  /// Adds entries to the context menu.
  std::function<void(QMenu&)> menu{};
};

/// The indicator inside an editor of the language that its keys write: "فا", "ع" or "EN".
class LanguageTag : public QLabel {
 public:
  explicit LanguageTag(QWidget& editor);
  void show(std::optional<KeyboardLayout> layout);
  /// Moves to the end of the line, or to the lower corner of a taller editor.
  void place(int inset = 0);
};

/// An editor of the toolkit, QLineEdit or QTextEdit, with each key passed through the filter and a Persian
/// context menu.
template <typename Toolkit>
class TypedEditor : public Toolkit {
 public:
  using Toolkit::Toolkit;
  Typist typist;
  /// Cuts what an edit, including a paste, inserts beyond the limit; 0 for no limit.
  std::size_t limit = 0;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  /// Replaces the selected characters with one that passed the filter.
  virtual void put(char32_t character) = 0;
};

class LineEditor : public TypedEditor<QLineEdit> {
 public:
  explicit LineEditor(QWidget& parent) : TypedEditor(&parent) {}

 private:
  void put(char32_t character) override;
};

/// The same, for several lines.
class TextEditor : public TypedEditor<QTextEdit> {
 public:
  explicit TextEditor(QWidget& parent) : TypedEditor(&parent) {
    setTabChangesFocus(true);
    setAcceptRichText(false);
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  void put(char32_t character) override;
};

/// Translates the editing commands of an editor's context menu to Persian.
void nameEditingCommands(QMenu& menu);

class TextFieldView : public ViewOf<ui::TextField> {
 public:
  /// `layout` returns the keyboard's current layout.
  TextFieldView(ui::TextField& control, QWidget& parent, std::function<KeyboardLayout()> layout);
  [[nodiscard]] QWidget& widget() override;
  [[nodiscard]] QWidget* focusWidget() override { return &widget(); }
  void sync(ui::Change change) override;
  void showLanguage(std::optional<KeyboardLayout> layout) override;
  void moved() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void makeLine(QWidget& parent);
  void makeText(QWidget& parent);
  [[nodiscard]] Typist typist();
  void syncText();
  void personEdited();
  void personMovedCaret();
  [[nodiscard]] QString shownText() const;
  /// The control's text as the editor has it, with one kind of line break.
  [[nodiscard]] QString heldText() const;
  [[nodiscard]] int shownCaret() const;

  std::function<KeyboardLayout()> layout_;
  LineEditor* line_ = nullptr;
  TextEditor* text_ = nullptr;
  LanguageTag* tag_ = nullptr;
  int echo_ = 0;
};

}  // namespace ledgertree::qt
