#include "qt/divider_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <functional>

#include "qt/keys.h"
#include "qt/spoken_role.h"

namespace ledgertree::qt {

namespace {

class DividerBar : public QWidget {
 public:
  explicit DividerBar(QWidget& parent) : QWidget(&parent) {
    setCursor(Qt::SplitHCursor);
    setFocusPolicy(Qt::TabFocus);
    setSpokenRole(*this, QAccessible::Splitter);
  }
  std::function<void(int left)> onDrag;
  std::function<bool(ui::Key)> onKey;

 protected:
  void mousePressEvent(QMouseEvent* event) override { grip_ = event->position().toPoint().x(); }

  void mouseMoveEvent(QMouseEvent* event) override {
    if (event->buttons().testFlag(Qt::LeftButton) && onDrag)
      onDrag(mapToParent(event->position().toPoint()).x() - grip_);
  }

  void keyPressEvent(QKeyEvent* event) override {
    if (!onKey || !onKey(keyOf(*event))) QWidget::keyPressEvent(event);
  }

  /// Three dots in its middle; all of it if it has the focus.
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (hasFocus()) painter.fillRect(rect(), palette().color(QPalette::Highlight));
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(hasFocus() ? QPalette::HighlightedText : QPalette::Dark));
    const double radius = width() / 3.0;
    for (const int place : {-1, 0, 1})
      painter.drawEllipse(QPointF(width() / 2.0, height() / 2.0 + place * 4 * radius), radius, radius);
  }

 private:
  int grip_ = 0;
};

}  // namespace

DividerView::DividerView(ui::Divider& control, QWidget& parent) : ViewOf(control) {
  auto* bar = new DividerBar(parent);
  bar_ = bar;
  bar->onDrag = [this](int left) {
    if (attached()) this->control().moveTo(scale_.twips(left));
  };
  bar->onKey = [this](ui::Key key) { return attached() && this->control().press(key); };
}

}  // namespace ledgertree::qt
