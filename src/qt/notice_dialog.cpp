#include "qt/notice_dialog.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <memory>

#include "qt/appearance.h"
#include "qt/help_offer.h"
#include "qt/hourglass.h"
#include "qt/text.h"
#include "shell/outside_components.h"

namespace ledgertree::qt {

namespace {

/// Black or white, whichever has more contrast.
QColor inkOn(const QColor& ground) {
  const double light = 0.299 * ground.redF() + 0.587 * ground.greenF() + 0.114 * ground.blueF();
  return light > 0.55 ? QColor(Qt::black) : QColor(Qt::white);
}

/// Titles of good news.
bool isGoodNews(const NoticeDialog& notice) {
  return notice.title == QString::fromUtf8("اتمام عمليات") || notice.title == QString::fromUtf8("اطلاع");
}

/// The symbol beside the message: a Persian question mark, a tick for good news, else an exclamation mark.
class Sign : public QWidget {
 public:
  Sign(QWidget& parent, const NoticeDialog& notice)
      : QWidget(&parent),
        question_(notice.kind == NoticeDialog::Kind::Question),
        tick_(isGoodNews(notice)),
        colour_(notice.button) {
    setObjectName("Sign");
    const int side = fontMetrics().height() * 2;
    setFixedSize(side, side);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(colour_);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(rect().adjusted(1, 1, -1, -1));
    if (tick_ && !question_) return paintTick(painter);
    QFont large = font();
    large.setPixelSize(std::max(height() * 6 / 10, 8));
    large.setBold(true);
    painter.setFont(large);
    painter.setPen(inkOn(colour_));
    painter.drawText(rect(), Qt::AlignCenter, question_ ? QString::fromUtf8("؟") : QStringLiteral("!"));
  }

 private:
  void paintTick(QPainter& painter) const {
    const double side = height();
    painter.setPen(QPen(inkOn(colour_), side / 10, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(
        QPolygonF{{0.28 * side, 0.52 * side}, {0.44 * side, 0.68 * side}, {0.73 * side, 0.34 * side}});
  }

  bool question_;
  bool tick_;
  QColor colour_;
};

class Dialog : public QDialog {
 public:
  explicit Dialog(const NoticeDialog& notice);
  NoticeDialog::Answer answer = NoticeDialog::Answer::None;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QFrame* makePanel(const NoticeDialog& notice);
  void makeText(const NoticeDialog& notice, QFrame& panel);
  QPushButton* makeButton(const QString& caption, NoticeDialog::Answer given, const NoticeDialog& notice);
  void answerWith(NoticeDialog::Answer given);

  bool question_;
  QString message_;
  QTextEdit* text_ = nullptr;
};

Dialog::Dialog(const NoticeDialog& notice)
    : question_(notice.kind == NoticeDialog::Kind::Question), message_(notice.message) {
  setWindowTitle(notice.title);
  setObjectName("NoticeDialog");
  setAccessibleName(notice.title);
  setLayoutDirection(Qt::RightToLeft);
  setFont(screenFont());
  setPalette(screenPalette(notice.background));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(makePanel(notice));
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  QPushButton* safe = nullptr;
  if (question_) {
    buttons->addWidget(makeButton(QString::fromUtf8("بلي"), NoticeDialog::Answer::Yes, notice));
    buttons->addWidget(safe = makeButton(QString::fromUtf8("خير"), NoticeDialog::Answer::No, notice));
  } else {
    buttons->addWidget(safe = makeButton(QString::fromUtf8("تاييد"), NoticeDialog::Answer::Yes, notice));
    if (!notice.secondButton.isEmpty())
      buttons->addWidget(makeButton(notice.secondButton, NoticeDialog::Answer::Second, notice));
  }
  buttons->addStretch();
  layout->addLayout(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  dress(*this);
  safe->setDefault(true);
  safe->setFocus();
  offerGuide(*this, message_);
}

QFrame* Dialog::makePanel(const NoticeDialog& notice) {
  auto* panel = new QFrame(this);
  panel->setPalette(screenPalette(notice.frame));
  panel->setAutoFillBackground(true);
  panel->setFrameShape(QFrame::StyledPanel);
  makeText(notice, *panel);
  auto* layout = new QHBoxLayout(panel);
  const int gap = fontMetrics().height();
  layout->setContentsMargins(gap, gap, gap, gap);
  layout->setSpacing(gap);
  layout->addWidget(new Sign(*panel, notice), 0, Qt::AlignTop);
  layout->addWidget(text_, 0, Qt::AlignVCenter);
  return panel;
}

void Dialog::makeText(const NoticeDialog& notice, QFrame& panel) {
  text_ = new QTextEdit(&panel);
  text_->setReadOnly(true);
  text_->setAcceptRichText(false);
  text_->setFocusPolicy(Qt::NoFocus);
  text_->setFrameShape(QFrame::NoFrame);
  text_->viewport()->setAutoFillBackground(false);
  text_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  text_->document()->setDocumentMargin(2);
  text_->setPlainText(notice.message);
  text_->setAccessibleName(notice.message.left(1000));

  // As wide as a comfortable line and as high as the text, up to most of the screen.
  const int letter = fontMetrics().averageCharWidth();
  const QRect room = screen()->availableGeometry();
  const int widest = std::min(60 * letter, room.width() * 3 / 4);
  text_->document()->setTextWidth(widest);
  const int width =
      std::clamp(static_cast<int>(std::ceil(text_->document()->idealWidth())) + letter, 24 * letter, widest);
  text_->document()->setTextWidth(width);
  const int height = static_cast<int>(std::ceil(text_->document()->size().height())) + 2;
  const int highest = std::max(room.height() / 2, fontMetrics().height() * 3);
  const int bar = height > highest ? text_->verticalScrollBar()->sizeHint().width() : 0;
  text_->setVerticalScrollBarPolicy(bar == 0 ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAlwaysOn);
  text_->setFixedSize(width + bar, std::min(height, highest));
}

QPushButton* Dialog::makeButton(const QString& caption, NoticeDialog::Answer given,
                                const NoticeDialog& notice) {
  auto* button = new QPushButton(caption, this);
  QPalette colours = palette();
  const QColor ground = notice.button;
  const QColor ink = inkOn(ground);
  // The style makes a dark button lighter than its colour: too light for white letters.
  colours.setColor(QPalette::Button, ink == Qt::white ? ground.darker(130) : ground);
  colours.setColor(QPalette::ButtonText, ink);
  button->setPalette(colours);
  button->setMinimumWidth(fontMetrics().averageCharWidth() * 14);
  connect(button, &QPushButton::clicked, this, [this, given] { answerWith(given); });
  return button;
}

void Dialog::answerWith(NoticeDialog::Answer given) {
  answer = given;
  accept();
}

void Dialog::keyPressEvent(QKeyEvent* event) {
  QScrollBar& bar = *text_->verticalScrollBar();
  switch (event->key()) {
    case Qt::Key_Escape:
      return answerWith(question_ ? NoticeDialog::Answer::No : NoticeDialog::Answer::Yes);
    case Qt::Key_PageDown:
      return bar.setValue(bar.value() + bar.pageStep());
    case Qt::Key_PageUp:
      return bar.setValue(bar.value() - bar.pageStep());
    default:
      break;
  }
  // The whole message is copied, so that it can be passed on.
  if (event->matches(QKeySequence::Copy)) return QApplication::clipboard()->setText(message_);
  QDialog::keyPressEvent(event);
}

/// A line of text for a title, or a whole message, without characters that a screen can't show.
QString shownText(const QString& text, bool line) {
  QString shown = text;
  for (QChar& unit : shown) {
    const bool control = unit.category() == QChar::Other_Control;
    if (control && (line || (unit != QLatin1Char('\n') && unit != QLatin1Char('\t'))))
      unit = QLatin1Char(' ');
  }
  return shown;
}

/// The component, by its members.
class NoticeComponent : public shell::OutsideComponent {
 public:
  void set(std::string_view member, const data::Value& value) override {
    if (member == "FormTitle") {
      dialog_.title = toQt(value.toText());
    } else if (member == "FormMessage") {
      dialog_.message = toQt(value.toText());
    } else if (member == "FormType") {
      dialog_.kind = value.toInt32() == 1 ? NoticeDialog::Kind::Question : NoticeDialog::Kind::Notice;
    } else if (member == "FormBackColor") {
      dialog_.background = colourOf(value.toInt32());
    } else if (member == "BtmBackColor") {
      dialog_.button = colourOf(value.toInt32());
    } else if (member == "FrameBackColor") {
      dialog_.frame = colourOf(value.toInt32());
    } else {
      refuse(member);
    }
  }

  [[nodiscard]] data::Value get(std::string_view member) override {
    if (member != "Resualt") refuse(member);
    return static_cast<std::int32_t>(answer_);
  }

  void call(std::string_view member, const std::vector<data::Value>& arguments) override {
    if (member != "ClearShow" || !arguments.empty()) refuse(member);
    answer_ = NoticeDialog::Answer::None;
    answer_ = dialog_.ask();
  }

 private:
  [[noreturn]] static void refuse(std::string_view member) {
    throw shell::ComponentError(shell::ComponentError::kNoSuchMember,
                                "NoticeKit.NoticeDialog has no member " + std::string(member));
  }

  NoticeDialog dialog_;
  NoticeDialog::Answer answer_ = NoticeDialog::Answer::None;
};

}  // namespace

NoticeDialog::Answer NoticeDialog::ask() {
  const HourglassPause pause;
  const QPointer<QWidget> front(QApplication::activeWindow());
  const QPointer<QWidget> focus(QApplication::focusWidget());
  NoticeDialog shown = *this;
  shown.title = shownText(title, true);
  shown.message = shownText(message, false);
  Dialog dialog(shown);
  if (!front.isNull()) {
    static_cast<void>(dialog.winId());  // creates the native window
    dialog.windowHandle()->setTransientParent(front->windowHandle());
    dialog.adjustSize();
    dialog.move(front->frameGeometry().center() - QPoint(dialog.width() / 2, dialog.height() / 2));
  }
  dialog.exec();
  if (!front.isNull() && front->isVisible()) {
    front->activateWindow();
    if (!focus.isNull() && focus->isVisible() && focus->isEnabled())
      focus->setFocus(Qt::ActiveWindowFocusReason);
  }
  return dialog.answer;
}

QColor colourOf(std::int32_t number) {
  const auto bits = static_cast<std::uint32_t>(number);
  return QColor::fromRgb(static_cast<int>(bits & 0xFF), static_cast<int>(bits >> 8 & 0xFF),
                         static_cast<int>(bits >> 16 & 0xFF));
}

void registerNoticeDialog(shell::OutsideComponents& components) {
  components.add("NoticeKit.NoticeDialog", [] { return std::make_unique<NoticeComponent>(); });
}

}  // namespace ledgertree::qt
