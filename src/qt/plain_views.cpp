#include "qt/plain_views.h"

#include <QFontInfo>
#include <QGroupBox>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionProgressBar>
#include <QStylePainter>
#include <algorithm>
#include <functional>

#include "qt/spoken_role.h"
#include "qt/text.h"

namespace ledgertree::qt {

namespace {

/// Enter presses the focused button, as Space does.
class Button : public QPushButton {
 public:
  using QPushButton::QPushButton;
  std::function<void(ui::Key)> onKey;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
      return QPushButton::keyPressEvent(event);
    event->accept();
    if (!event->isAutoRepeat() && onKey) onKey(ui::Key::Enter);
  }
};

/// A button that shows the state of its control and never toggles itself.
class Radio : public QRadioButton {
 public:
  using QRadioButton::QRadioButton;
  std::function<void(int)> onArrow;

 protected:
  void nextCheckState() override {}
  void keyPressEvent(QKeyEvent* event) override {
    const bool back = event->key() == Qt::Key_Up || event->key() == Qt::Key_Right;
    const bool forth = event->key() == Qt::Key_Down || event->key() == Qt::Key_Left;
    if (!back && !forth) return QRadioButton::keyPressEvent(event);
    event->accept();
    if (onArrow) onArrow(back ? -1 : 1);
  }
};

/// Tab stops at the chosen button of a group, from which the arrow keys move on; at all of them if none is
/// chosen.
void giveOneTabStop(const QWidget& frame) {
  const auto group = frame.findChildren<Radio*>(Qt::FindDirectChildrenOnly);
  const bool chosen =
      std::any_of(group.begin(), group.end(), [](const Radio* one) { return one->isChecked(); });
  for (Radio* one : group)
    one->setFocusPolicy(chosen && !one->isChecked() ? Qt::ClickFocus : Qt::StrongFocus);
}

class Box : public QCheckBox {
 public:
  using QCheckBox::QCheckBox;

 protected:
  void nextCheckState() override {}
};

/// A thin border with the title on its upper edge, on the right. The controls' bounds are relative to the
/// corner of the widget, not of the border.
class Panel : public QGroupBox {
 public:
  using QGroupBox::QGroupBox;

 protected:
  void paintEvent(QPaintEvent*) override {
    if (isFlat()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const int text =
        title().isEmpty() ? 0 : fontMetrics().horizontalAdvance(title()) + fontMetrics().averageCharWidth();
    const double top = title().isEmpty() ? 0.5 : fontMetrics().height() / 2.0;
    const QRectF border(0.5, top, width() - 1.0, height() - 0.5 - top);
    const QRect titlePlace(width() - text - fontMetrics().height() / 2, 0, text, fontMetrics().height());
    if (text > 0) painter.setClipRegion(QRegion(rect()).subtracted(titlePlace));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRoundedRect(border, 3, 3);
    painter.setClipping(false);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(titlePlace, Qt::AlignCenter, title());
  }
};

/// A text that is too wide ends in an ellipsis; a screen reader says it whole.
class Line : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent* event) override {
    if (wordWrap() || fontMetrics().horizontalAdvance(text()) <= width()) return QLabel::paintEvent(event);
    QPainter painter(this);
    style()->drawItemText(&painter, rect(), QStyle::visualAlignment(layoutDirection(), alignment()),
                          palette(), isEnabled(), fontMetrics().elidedText(text(), Qt::ElideRight, width()),
                          foregroundRole());
  }
};

/// The bar's text as it is, without the toolkit's placeholders for numbers.
class Bar : public QProgressBar {
 public:
  using QProgressBar::QProgressBar;
  QString words;
  [[nodiscard]] QString text() const override { return words; }

 protected:
  /// Draws the text itself: from right to left, the style would draw it white on white.
  void paintEvent(QPaintEvent*) override {
    QStylePainter painter(this);
    QStyleOptionProgressBar look;
    initStyleOption(&look);
    look.textVisible = false;
    painter.drawControl(QStyle::CE_ProgressBar, look);
    const int done = static_cast<int>(std::int64_t{width()} * std::clamp(value(), 0, maximum()) / maximum());
    const QRect filled(isRightToLeft() ? width() - done : 0, 0, done, height());
    drawWords(painter, filled, QPalette::HighlightedText);
    drawWords(painter, QRegion(rect()) - filled, QPalette::Text);
  }

 private:
  void drawWords(QPainter& painter, const QRegion& where, QPalette::ColorRole colour) const {
    painter.setLayoutDirection(layoutDirection());
    painter.setClipRegion(where);
    painter.setPen(palette().color(colour));
    painter.drawText(rect(), Qt::AlignCenter, words);
  }
};

}  // namespace

LabelView::LabelView(ui::Label& control, QWidget& parent) : ViewOf(control), label_(new Line(&parent)) {
  label_->setTextFormat(Qt::PlainText);
  label_->setWordWrap(control.wraps());
  label_->setAlignment(Qt::AlignLeading | (control.wraps() ? Qt::AlignTop : Qt::AlignVCenter));
  sync(ui::Change::Caption);
}

void LabelView::sync(ui::Change change) {
  if (change == ui::Change::Caption) label_->setText(toQt(control().caption()));
}

void LabelView::rescaled(const Scale&) {
  if (!attached() || !control().strong()) return;
  QFont font = label_->parentWidget()->font();
  font.setBold(true);
  label_->setFont(font);
}

PushButtonView::PushButtonView(ui::PushButton& control, QWidget& parent) : ViewOf(control) {
  auto* button = new Button(literalCaption(control.caption()), &parent);
  button_ = button;
  button->setAutoDefault(false);
  button->onKey = [this](ui::Key key) {
    if (attached()) this->control().press(key);
  };
  connect(button, &QPushButton::clicked, this, [this] {
    if (attached()) this->control().click();
  });
}

RadioButtonView::RadioButtonView(ui::RadioButton& control, QWidget& parent) : ViewOf(control) {
  auto* button = new Radio(&parent);
  button_ = button;
  button->setAutoExclusive(false);
  setSpokenRole(*button, QAccessible::RadioButton);
  button->setText(literalCaption(control.caption()));  // updates the accessible name, under that role
  button->onArrow = [this](int step) { chooseNeighbour(step); };
  connect(button, &QRadioButton::clicked, this, [this] {
    if (attached()) this->control().click();
  });
  sync(ui::Change::Value);
}

void RadioButtonView::sync(ui::Change change) {
  if (change != ui::Change::Value) return;
  button_->setChecked(control().value());
  giveOneTabStop(*button_->parentWidget());
}

void RadioButtonView::chooseNeighbour(int step) {
  if (!attached()) return;
  std::vector<ui::RadioButton*> group;
  for (ui::Control* other : control().form().controls()) {
    auto* radio = dynamic_cast<ui::RadioButton*>(other);
    if (radio != nullptr && radio->frame() == control().frame() && radio->withinReach())
      group.push_back(radio);
  }
  const auto self = std::find(group.begin(), group.end(), &control());
  if (self == group.end() || group.size() < 2) return;
  const auto count = static_cast<std::ptrdiff_t>(group.size());
  ui::RadioButton* next = group[static_cast<std::size_t>((self - group.begin() + step + count) % count)];
  const ui::Form::Act act(next->form());
  next->focus();
  if (act.formAlive()) next->click();
}

CheckBoxView::CheckBoxView(ui::CheckBox& control, QWidget& parent)
    : ViewOf(control), box_(new Box(literalCaption(control.caption()), &parent)) {
  connect(box_, &QCheckBox::clicked, this, [this] {
    if (attached()) this->control().click();
  });
  sync(ui::Change::Value);
}

void CheckBoxView::sync(ui::Change change) {
  if (change == ui::Change::Value) box_->setChecked(control().value() != 0);
}

FrameView::FrameView(ui::Frame& control, QWidget& parent)
    : ViewOf(control), panel_(new Panel(toQt(control.caption()), &parent)) {
  panel_->setFocusPolicy(Qt::NoFocus);
  static_cast<Panel*>(panel_)->setFlat(!control.bordered());
  if (control.scrolledWidth() == 0) return;
  scroll_ = new FormScrollArea(panel_);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setFocusPolicy(Qt::NoFocus);
  scroll_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  content_ = new QWidget;
  scroll_->setWidget(content_);
  // It follows the viewport's height, which isn't known before the window is shown.
  scroll_->setWidgetResizable(true);
  // The panel's border and colour show through.
  content_->setAutoFillBackground(false);
  scroll_->viewport()->setAutoFillBackground(false);
}

void FrameView::rescaled(const Scale& scale) {
  scale_ = scale;
  moved();
}

void FrameView::moved() {
  if (scroll_ == nullptr || !attached()) return;
  const int width = scale_.pixels(control().scrolledWidth());
  // Inside the border, which the panel paints.
  const bool scrolls = width > panel_->width();
  scroll_->setGeometry(panel_->rect().adjusted(scrolls ? 1 : 0, 0, scrolls ? -1 : 0, scrolls ? -1 : 0));
  scroll_->setHorizontalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
  content_->setFixedWidth(width);
}

ProgressBarView::ProgressBarView(ui::ProgressBar& control, QWidget& parent)
    : ViewOf(control), bar_(new Bar(&parent)) {
  sync(ui::Change::Value);
}

void ProgressBarView::sync(ui::Change change) {
  if (change != ui::Change::Value) return;
  auto& bar = static_cast<Bar&>(*bar_);
  bar.words = toQt(control().text());
  // No work is finished work; without a maximum the bar would run to and fro.
  bar.setMaximum(std::max(control().maximum(), 1));
  // At 0 the style would still draw a sliver.
  if (control().value() == 0) {
    bar.reset();
  } else {
    bar.setValue(control().value());
  }
  bar.update();
}

void ProgressBarView::moved() {
  QFont font = bar_->parentWidget()->font();
  const int tall = QFontMetrics(font).height();
  const int room = bar_->height() - 4;
  if (tall > room && room > 4) font.setPixelSize(std::max(QFontInfo(font).pixelSize() * room / tall, 5));
  bar_->setFont(font);
}

DateDisplayView::DateDisplayView(ui::DateDisplay& control, QWidget& parent)
    : ViewOf(control), line_(new QLineEdit(&parent)) {
  line_->setReadOnly(true);
  line_->setLayoutDirection(Qt::LeftToRight);
  line_->setAlignment(Qt::AlignCenter);
  sync(ui::Change::Text);
}

void DateDisplayView::sync(ui::Change) { line_->setText(toQt(control().text())); }

}  // namespace ledgertree::qt
