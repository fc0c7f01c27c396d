#include "qt/window_icon.h"

#include <QPainter>

namespace ledgertree::qt {

namespace {

constexpr int kDesign = 64;

QPixmap drawn(int side) {
  QPixmap picture(side, side);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(double(side) / kDesign, double(side) / kDesign);
  const QColor ink(0x7D, 0x59, 0x63);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0xE1, 0xDB, 0xDB));
  painter.drawRoundedRect(QRectF(4, 4, 56, 56), 8, 8);
  painter.setBrush(ink);
  painter.drawRoundedRect(QRectF(30, 9, 26, 9), 2, 2);
  painter.setPen(QPen(ink, 3));
  painter.drawLines({QLineF(50, 17, 50, 47), QLineF(50, 27, 36, 27), QLineF(50, 47, 36, 47)});
  painter.setPen(QPen(ink, 2));
  painter.setBrush(QColor(0xD8, 0xBE, 0xC4));
  for (const int top : {22, 42}) painter.drawRoundedRect(QRectF(12, top, 26, 9), 2, 2);
  return picture;
}

}  // namespace

QIcon windowIcon() {
  QIcon icon;
  for (const int side : {16, 24, 32, 48, 64, 128}) icon.addPixmap(drawn(side));
  return icon;
}

}  // namespace ledgertree::qt
