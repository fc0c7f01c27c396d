#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTextEdit>
#include <functional>

#include "qt/control_view.h"
#include "ui/text_field.h"

namespace ledgertree::qt {

/// What an editor asks while a person types in it. Each may end the form that the editor stands on.
struct Typist {
  /// The characters that a key puts in, in the keyboard's layout; empty for a key that puts none.
  std::function<std::u32string(const QKeyEvent&)> characters;
  /// The character after the form's filter; 0 drops it.
  std::function<char32_t(char32_t)> filter;
  /// A key of its own meaning; true where it is done with.
  std::function<bool(QKeyEvent&)> key;
  std::function<void()> keyUp;
  /// Adds to the menu of the right button.
  std::function<void(QMenu&)> menu{};
};

/// The mark inside an editor that says which language its keys write: "فا", "ع" or "EN".
class LanguageTag : public QLabel {
 public:
  explicit LanguageTag(QWidget& editor);
  void show(std::optional<KeyboardLayout> layout);
  /// Goes to the end of the line, or to the lower corner of a taller editor.
  void place(int inset = 0);
};

/// An editor of the toolkit, QLineEdit or QTextEdit, that lets each key through the filter. The menu of its
/// right button is Persian.
template <typename Toolkit>
class TypedEditor : public Toolkit {
 public:
  using Toolkit::Toolkit;
  Typist typist;
  /// Cuts what an edit puts in beyond the limit, also by a paste; 0 for no limit.
  std::size_t limit = 0;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  /// Puts a character that passed the filter in place of the selected ones.
  virtual void put(char32_t character) = 0;
};

class LineEditor : public TypedEditor<QLineEdit> {
 public:
  explicit LineEditor(QWidget& parent) : TypedEditor(&parent) {}

 private:
  void put(char32_t character) override;
};

/// The same over several lines.
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

/// Gives the editing commands of an editor's menu their Persian names.
void nameEditingCommands(QMenu& menu);

class TextFieldView : public ViewOf<ui::TextField> {
 public:
  /// `layout` tells the keyboard's layout of the moment.
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
  /// The control's text as the editor has it: with one kind of line break.
  [[nodiscard]] QString heldText() const;
  [[nodiscard]] int shownCaret() const;

  std::function<KeyboardLayout()> layout_;
  LineEditor* line_ = nullptr;
  TextEditor* text_ = nullptr;
  LanguageTag* tag_ = nullptr;
  int echo_ = 0;
};

}  // namespace ledgertree::qt
