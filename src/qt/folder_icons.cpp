#include "qt/folder_icons.h"

#include <QIconEngine>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <array>

namespace ledgertree::qt {

namespace {

constexpr int kFirst = 1;
constexpr int kLast = 6;
constexpr int kColours = 3;

/// Draws on a grid of 16 by 16 units, whatever that is in pixels.
class FolderEngine : public QIconEngine {
 public:
  explicit FolderEngine(int image)
      : colour_(kColour.at(static_cast<std::size_t>((image - kFirst) % kColours))),
        badge_(image - kFirst >= kColours) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const double side = std::min(rect.width(), rect.height());
    painter->translate(rect.center().x() + 0.5 - side / 2, rect.center().y() + 0.5 - side / 2);
    painter->scale(side / 16, side / 16);
    if (mode == QIcon::Disabled) painter->setOpacity(0.45);
    paintFolder(*painter);
    if (badge_) paintBadge(*painter);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
  }

  [[nodiscard]] QIconEngine* clone() const override { return new FolderEngine(*this); }

 private:
  static inline const std::array<QColor, kColours> kColour = {
      QColor(0xD6, 0x3B, 0x3B), QColor(0xF0, 0xB4, 0x29), QColor(0x3B, 0x7D, 0xD8)};

  void paintFolder(QPainter& painter) const {
    painter.setPen(QPen(colour_.darker(150), 0.7));
    // The tab is on the right, where a right-to-left reader looks first.
    QPainterPath back;
    back.moveTo(1.5, 13.2);
    back.lineTo(1.5, 4.6);
    back.lineTo(8.4, 4.6);
    back.lineTo(9.6, 2.8);
    back.lineTo(14.0, 2.8);
    back.lineTo(14.5, 3.4);
    back.lineTo(14.5, 13.2);
    back.closeSubpath();
    painter.setBrush(colour_.darker(112));
    painter.drawPath(back);
    QLinearGradient shade(0, 6, 0, 13.5);
    shade.setColorAt(0, colour_.lighter(135));
    shade.setColorAt(1, colour_);
    painter.setBrush(shade);
    painter.drawRoundedRect(QRectF(1.5, 6.0, 13.0, 7.4), 0.9, 0.9);
  }

  static void paintBadge(QPainter& painter) {
    painter.setPen(QPen(Qt::white, 0.9));
    painter.setBrush(QColor(0x2B, 0x2F, 0x36));
    painter.drawEllipse(QRectF(8.6, 8.6, 6.9, 6.9));
    painter.setPen(QPen(Qt::white, 1.3, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(10.4, 12.05), QPointF(13.7, 12.05));
  }

  QColor colour_;
  bool badge_;
};

}  // namespace

QIcon folderIcon(int image) {
  static const auto icons = [] {
    std::array<QIcon, kLast + 1> made;
    for (int number = kFirst; number <= kLast; ++number)
      made.at(static_cast<std::size_t>(number)) = QIcon(new FolderEngine(number));
    return made;
  }();
  return image >= kFirst && image <= kLast ? icons.at(static_cast<std::size_t>(image)) : QIcon();
}

}  // namespace ledgertree::qt
