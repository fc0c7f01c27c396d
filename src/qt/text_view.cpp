#include "qt/text_view.h"

#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QScrollBar>
#include <QValidator>
#include <map>

#include "qt/appearance.h"
#include "qt/text.h"
#include "ui/key.h"

namespace ledgertree::qt {

namespace {

/// What an edit of a one-line field may contain: at most the limit, no line breaks or control characters, and
/// Latin digits if the field wants them. Pastes and keys both pass it.
class FieldRule : public QValidator {
 public:
  FieldRule(LineEditor& editor, bool latinDigits, const int& echo)
      : QValidator(&editor), editor_(editor), latinDigits_(latinDigits), echo_(echo) {}

  State validate(QString& input, int& caret) const override {
    if (echo_ > 0) return Acceptable;  // a program's text is shown as it is
    tidy(input);
    const std::size_t count = charactersBefore(input, input.size());
    if (editor_.limit == 0 || count <= editor_.limit) return Acceptable;
    // The inserted text ends at the caret: cut it there.
    const std::size_t behind = charactersBefore(input, caret);
    const std::size_t excess = std::min(count - editor_.limit, behind);
    const qsizetype from = unitsOf(input, behind - excess);
    input.remove(from, caret - from);
    caret = static_cast<int>(from);
    return Acceptable;
  }

 private:
  void tidy(QString& input) const {
    for (QChar& unit : input) {
      if (unit.category() == QChar::Other_Control || unit == QChar::LineSeparator ||
          unit == QChar::ParagraphSeparator)
        unit = QLatin1Char(' ');
      if (latinDigits_) unit = QChar(static_cast<char16_t>(ui::latinDigit(unit.unicode())));
    }
  }

  LineEditor& editor_;
  bool latinDigits_;
  const int& echo_;
};

bool isPlainBackspace(const QKeyEvent& event) {
  return event.key() == Qt::Key_Backspace &&
         (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
}

/// How an editor handles a key. True if its own handling must be skipped.
template <typename Editor>
bool typeKey(Editor& editor, QKeyEvent& event, bool readOnly, const std::function<void(char32_t)>& put) {
  const QPointer<Editor> self(&editor);
  // Copies: the form, and everything that belongs to it, may be destroyed during a call.
  const Typist typist = editor.typist;
  if (typist.key && typist.key(event)) return true;
  if (self.isNull()) return true;
  const std::u32string typed = typist.characters ? typist.characters(event) : std::u32string();
  if (!typed.empty() && !readOnly) {
    event.accept();
    for (const char32_t character : typed) {
      const char32_t passed = typist.filter ? typist.filter(character) : character;
      if (self.isNull()) return true;
      if (passed != 0) put(passed);
      if (self.isNull()) return true;
    }
    return true;
  }
  if (isPlainBackspace(event) && !readOnly && typist.filter && typist.filter(ui::kBackspaceCharacter) == 0) {
    event.accept();
    return true;
  }
  return self.isNull();
}

/// Input-method text passes the same filter as keys. `handle` is the toolkit's handler.
void typeByMethod(const Typist& typist, bool readOnly, QInputMethodEvent& event,
                  const std::function<void(QInputMethodEvent&)>& handle) {
  if (event.commitString().isEmpty() || readOnly) return handle(event);
  const Typist copied = typist;  // the form may be destroyed meanwhile
  std::u32string kept;
  for (const char32_t character : event.commitString().toStdU32String()) {
    const char32_t passed = copied.filter ? copied.filter(character) : character;
    if (passed != 0) kept += passed;
  }
  QInputMethodEvent filtered(event.preeditString(), event.attributes());
  filtered.setCommitString(QString::fromStdU32String(kept), event.replacementStart(),
                           event.replacementLength());
  handle(filtered);
  if (copied.keyUp) copied.keyUp();
}

}  // namespace

void nameEditingCommands(QMenu& menu) {
  static const std::map<QString, const char*> kNames = {
      {QStringLiteral("undo"), "واگرد"},
      {QStringLiteral("redo"), "ازنو"},
      {QStringLiteral("cut"), "برش"},
      {QStringLiteral("copy"), "رونوشت"},
      {QStringLiteral("paste"), "چسباندن"},
      {QStringLiteral("delete"), "حذف"},
      {QStringLiteral("select-all"), "انتخاب همه"},
  };
  menu.setAttribute(Qt::WA_WindowPropagation);
  menu.setLayoutDirection(Qt::RightToLeft);
  dress(menu);
  for (QAction* action : menu.actions()) {
    // In some versions of the toolkit, a line editor's actions have no name, only their English text.
    QString command = action->objectName().remove(QLatin1String("edit-"));
    if (command.isEmpty())
      command = action->text().section(QLatin1Char('\t'), 0, 0).remove(QLatin1Char('&')).toLower();
    const auto name = kNames.find(command.replace(QLatin1Char(' '), QLatin1Char('-')));
    if (name == kNames.end()) continue;
    const qsizetype keys = action->text().indexOf(QLatin1Char('\t'));
    action->setText(QString::fromUtf8(name->second) + (keys < 0 ? QString() : action->text().mid(keys)));
  }
}

LanguageTag::LanguageTag(QWidget& editor) : QLabel(&editor) {
  setToolTip(literalTip(QString::fromUtf8("زبان صفحه کليد؛ تغيير با F8")));
  setAccessibleName(QString::fromUtf8("زبان صفحه کليد"));
  setAlignment(Qt::AlignCenter);
  setCursor(Qt::ArrowCursor);
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::Window);
  setContentsMargins(3, 0, 3, 0);
  QLabel::hide();
}

void LanguageTag::show(std::optional<KeyboardLayout> layout) {
  if (!layout) return QLabel::hide();
  const bool own = *layout == KeyboardLayout::Own;
  setText(own                                  ? QStringLiteral("EN")
          : *layout == KeyboardLayout::Persian ? QString::fromUtf8("فا")
                                               : QString::fromUtf8("ع"));
  QPalette colours = palette();
  colours.setColor(QPalette::Window, own ? QColor(0xE3, 0xE7, 0xEC) : QColor(0x2F, 0x6F, 0xB7));
  colours.setColor(QPalette::WindowText, own ? QColor(0x1B, 0x22, 0x2C) : QColor(Qt::white));
  setPalette(colours);
  QFont small = parentWidget()->font();
  if (small.pixelSize() > 0) {
    small.setPixelSize(std::max(small.pixelSize() * 7 / 8, 7));
  } else {
    small.setPointSizeF(small.pointSizeF() * 0.88);
  }
  setFont(small);
  QLabel::show();
  place();
}

void LanguageTag::place(int inset) {
  if (isHidden()) return;
  const QWidget& editor = *parentWidget();
  const int border = 3;
  const QSize size(sizeHint().width(), std::min(sizeHint().height(), editor.height() - 2 * border));
  const bool rightToLeft = editor.layoutDirection() == Qt::RightToLeft;
  setGeometry(rightToLeft ? border + inset : editor.width() - border - inset - size.width(),
              editor.height() - border - size.height(), size.width(), size.height());
}

template <typename Toolkit>
void TypedEditor<Toolkit>::keyPressEvent(QKeyEvent* event) {
  if (!typeKey(*this, *event, this->isReadOnly(), [this](char32_t character) { put(character); }))
    Toolkit::keyPressEvent(event);
}

template <typename Toolkit>
void TypedEditor<Toolkit>::keyReleaseEvent(QKeyEvent* event) {
  Toolkit::keyReleaseEvent(event);
  const auto keyUp = typist.keyUp;
  if (!event->isAutoRepeat() && keyUp) keyUp();
}

template <typename Toolkit>
void TypedEditor<Toolkit>::inputMethodEvent(QInputMethodEvent* event) {
  typeByMethod(typist, this->isReadOnly(), *event,
               [this](QInputMethodEvent& passed) { Toolkit::inputMethodEvent(&passed); });
}

template <typename Toolkit>
void TypedEditor<Toolkit>::contextMenuEvent(QContextMenuEvent* event) {
  QMenu* menu = this->createStandardContextMenu();
  menu->setAttribute(Qt::WA_DeleteOnClose);
  if (typist.menu) typist.menu(*menu);
  nameEditingCommands(*menu);
  menu->popup(event->globalPos());
}

template class TypedEditor<QLineEdit>;
template class TypedEditor<QTextEdit>;

void LineEditor::put(char32_t character) {
  const QString text = this->text();
  const std::size_t left =
      charactersBefore(text, text.size()) - charactersBefore(selectedText(), selectedText().size());
  if (limit != 0 && left >= limit) return;
  insert(QString::fromUcs4(&character, 1));
}

void TextEditor::put(char32_t character) {
  const QString text = toPlainText();
  const QString selected = textCursor().selectedText();
  if (limit != 0 &&
      charactersBefore(text, text.size()) - charactersBefore(selected, selected.size()) >= limit)
    return;
  textCursor().insertText(QString::fromUcs4(&character, 1));
  ensureCursorVisible();
}

void TextEditor::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && !isReadOnly() && (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0) {
    event->accept();
    const auto filter = typist.filter;
    if (!filter || filter(U'\r') != 0) put(U'\n');
    return;
  }
  TypedEditor::keyPressEvent(event);
}

void TextEditor::insertFromMimeData(const QMimeData* source) {
  if (isReadOnly() || !source->hasText()) return;
  QString text = source->text();
  text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  for (QChar& unit : text) {
    if (unit.category() == QChar::Other_Control && unit != QLatin1Char('\n') && unit != QLatin1Char('\t'))
      unit = QLatin1Char(' ');
  }
  if (limit != 0) {
    const QString present = toPlainText();
    const QString selected = textCursor().selectedText();
    const std::size_t used =
        charactersBefore(present, present.size()) - charactersBefore(selected, selected.size());
    text.truncate(unitsOf(text, limit > used ? limit - used : 0));
  }
  textCursor().insertText(text);
  ensureCursorVisible();
}

TextFieldView::TextFieldView(ui::TextField& control, QWidget& parent, std::function<KeyboardLayout()> layout)
    : ViewOf(control), layout_(std::move(layout)) {
  if (control.multiline()) {
    makeText(parent);
  } else {
    makeLine(parent);
  }
  tag_ = new LanguageTag(widget());
  widget().installEventFilter(this);
  if (control.leftToRight()) widget().setLayoutDirection(Qt::LeftToRight);
  // The alignment is the field's, whatever its first letter is.
  if (line_ != nullptr)
    line_->setAlignment((control.leftToRight() ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignAbsolute |
                        Qt::AlignVCenter);
  sync(ui::Change::Text);
  sync(ui::Change::Enabled);
}

void TextFieldView::makeLine(QWidget& parent) {
  line_ = new LineEditor(parent);
  line_->typist = typist();
  line_->limit = control().maximumLength();
  line_->setValidator(new FieldRule(*line_, control().latinDigits(), echo_));
  connect(line_, &QLineEdit::textEdited, this, [this] { personEdited(); });
  connect(line_, &QLineEdit::cursorPositionChanged, this, [this] { personMovedCaret(); });
}

void TextFieldView::makeText(QWidget& parent) {
  text_ = new TextEditor(parent);
  text_->typist = typist();
  text_->limit = control().maximumLength();
  QTextOption direction = text_->document()->defaultTextOption();
  direction.setTextDirection(control().leftToRight() ? Qt::LeftToRight : Qt::RightToLeft);
  text_->document()->setDefaultTextOption(direction);
  text_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  connect(text_, &QTextEdit::textChanged, this, [this] { personEdited(); });
  connect(text_, &QTextEdit::cursorPositionChanged, this, [this] { personMovedCaret(); });
}

Typist TextFieldView::typist() {
  return {
      .characters = [this](const QKeyEvent& event) { return typedCharacters(event, layout_()); },
      .filter = [this](char32_t character) { return attached() ? control().filter(character) : char32_t{0}; },
      .key = {},
      .keyUp =
          [this] {
            if (attached()) control().keyUp();
          }};
}

QWidget& TextFieldView::widget() {
  if (text_ != nullptr) return *text_;
  return *line_;
}

QString TextFieldView::shownText() const {
  if (line_ != nullptr) return line_->text();
  // A document's plain text loses non-breaking spaces; its raw text keeps them.
  QString text = text_->document()->toRawText();
  for (QChar& unit : text) {
    if (unit == QChar::ParagraphSeparator || unit == QChar::LineSeparator) unit = QLatin1Char('\n');
  }
  return text;
}

QString TextFieldView::heldText() const {
  QString text = toQt(control().text());
  if (text_ != nullptr)
    text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
  return text;
}

int TextFieldView::shownCaret() const {
  return text_ != nullptr ? text_->textCursor().position() : line_->cursorPosition();
}

void TextFieldView::personEdited() {
  if (echo_ > 0 || !attached()) return;
  const QString text = shownText();
  control().edited(fromQt(text), charactersBefore(text, shownCaret()));
  // Undo on screen an edit that the field didn't accept, because it went out of reach.
  if (attached()) syncText();
}

void TextFieldView::personMovedCaret() {
  if (echo_ > 0 || !attached() || heldText() != shownText()) return;
  const Echo echo(echo_);
  control().setCaret(charactersBefore(shownText(), shownCaret()));
}

void TextFieldView::syncText() {
  const Echo echo(echo_);
  const QString text = heldText();
  const bool sameText = text == shownText();
  // A field without the focus shows the beginning of its text, wherever its caret is.
  const bool resting = !widget().hasFocus();
  const int caret = resting ? 0 : static_cast<int>(unitsOf(text, control().caret()));
  if (sameText && caret == shownCaret()) return;
  if (line_ != nullptr) {
    if (!sameText) line_->setText(text);
    line_->setCursorPosition(caret);
    return;
  }
  if (!sameText) text_->setPlainText(text);
  QTextCursor cursor = text_->textCursor();
  cursor.setPosition(std::min(caret, static_cast<int>(text.size())));
  text_->setTextCursor(cursor);
}

bool TextFieldView::eventFilter(QObject* watched, QEvent* event) {
  // Tab selects the whole line, a click sets the caret; otherwise the caret returns to where it was.
  if (event->type() == QEvent::FocusIn && attached() &&
      static_cast<QFocusEvent*>(event)->reason() == Qt::OtherFocusReason)
    syncText();
  return ControlView::eventFilter(watched, event);
}

void TextFieldView::sync(ui::Change change) {
  if (change == ui::Change::Text || (change == ui::Change::Caret && echo_ == 0)) syncText();
  if (change != ui::Change::Enabled) return;
  const bool locked = control().locked();
  if (line_ != nullptr) line_->setReadOnly(locked);
  if (text_ != nullptr) text_->setReadOnly(locked);
  // A locked field looks like one: the background shows through.
  QPalette colours = widget().parentWidget()->palette();
  if (locked) colours.setColor(QPalette::Base, colours.color(QPalette::Disabled, QPalette::Base));
  widget().setPalette(colours);
}

void TextFieldView::showLanguage(std::optional<KeyboardLayout> layout) {
  if (!attached() || control().locked()) layout.reset();
  tag_->show(layout);
  moved();
}

void TextFieldView::moved() {
  if (line_ != nullptr) {
    const int room = tag_->isHidden() ? 0 : tag_->sizeHint().width() + 2;
    const bool rightToLeft = line_->layoutDirection() == Qt::RightToLeft;
    line_->setTextMargins(rightToLeft ? room : 0, 0, rightToLeft ? 0 : room, 0);
  }
  tag_->place(text_ != nullptr ? text_->verticalScrollBar()->sizeHint().width() : 0);
}

}  // namespace ledgertree::qt
