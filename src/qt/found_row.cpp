#include "qt/found_row.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <algorithm>

namespace ledgertree::qt {
namespace {

constexpr QChar kJoiner(0x200D);
/// The opacity of the place against that of the text: readable, but fainter.
constexpr qreal kPaleness = 0.68;

bool joinsNext(QChar letter) {
  return letter.joiningType() == QChar::Joining_Dual || letter.joiningType() == QChar::Joining_Causing;
}
bool joinsBefore(QChar letter) { return joinsNext(letter) || letter.joiningType() == QChar::Joining_Right; }

/// Whether the letters on both sides of a position join. Marks above letters don't separate them.
bool isInsideJoin(const QString& text, qsizetype index) {
  const auto isMark = [&text](qsizetype at) { return text[at].joiningType() == QChar::Joining_Transparent; };
  qsizetype before = index - 1;
  qsizetype after = index;
  while (before >= 0 && isMark(before)) --before;
  while (after < text.size() && isMark(after)) ++after;
  return before >= 0 && after < text.size() && joinsNext(text[before]) && joinsBefore(text[after]);
}

/// A text in pieces with different fonts.
struct Pieces {
  QString text;
  QList<QTextLayout::FormatRange> formats;

  void add(const QString& piece, const QTextCharFormat& format) {
    formats.push_back({static_cast<int>(text.size()), static_cast<int>(piece.size()), format});
    text += piece;
  }
};

/// The text with the matches in bold. A change of font interrupts the shaping of letters, so joiners keep
/// their forms.
Pieces inBold(const QString& text, const Stretches& stretches) {
  QTextCharFormat plain;
  QTextCharFormat bold;
  bold.setFontWeight(QFont::Bold);
  Pieces pieces;
  const auto add = [&](qsizetype begin, qsizetype end, const QTextCharFormat& format) {
    if (begin >= end) return;
    const QString ahead = isInsideJoin(text, begin) ? QString(kJoiner) : QString();
    const QString behind = isInsideJoin(text, end) ? QString(kJoiner) : QString();
    pieces.add(ahead + text.mid(begin, end - begin) + behind, format);
  };
  qsizetype place = 0;
  for (auto [begin, end] : stretches) {
    begin = std::min(begin, text.size());
    end = std::min(end, text.size());
    add(place, begin, plain);
    add(begin, end, bold);
    place = end;
  }
  add(place, text.size(), plain);
  return pieces;
}

QColor pale(QColor colour) {
  colour.setAlphaF(static_cast<float>(kPaleness));
  return colour;
}

}  // namespace

void FoundRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
  const auto stretches = index.data(kTypedRole).value<Stretches>();
  QString place = index.data(kPlaceRole).toString();
  if (stretches.isEmpty() && place.isEmpty()) return QStyledItemDelegate::paint(painter, option, index);
  QStyleOptionViewItem item(option);
  initStyleOption(&item, index);
  const QStyle& style = item.widget != nullptr ? *item.widget->style() : *QApplication::style();
  const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, &item, item.widget) + 1;
  const QRect room =
      style.subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget).adjusted(margin, 0, -margin, 0);
  QFont bold(item.font);
  bold.setBold(true);
  const QString text = QFontMetrics(bold).elidedText(item.text, Qt::ElideRight, room.width());
  item.text.clear();
  style.drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

  const bool selected = item.state.testFlag(QStyle::State_Selected);
  const QColor colour = item.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
  Pieces pieces = inBold(text, stretches);
  const QFontMetrics plain(item.font);
  const int gap = 2 * plain.averageCharWidth();
  const int left = room.width() - QFontMetrics(bold).horizontalAdvance(text) - gap;
  place = left > 4 * gap ? plain.elidedText(place, Qt::ElideRight, left) : QString();
  QTextCharFormat grey;
  // Fainter text would be unreadable on a highlighted row.
  grey.setForeground(selected ? colour : pale(colour));
  if (!place.isEmpty()) pieces.add("    " + place, grey);

  QTextLayout layout(pieces.text, item.font);
  QTextOption way(QStyle::visualAlignment(item.direction, item.displayAlignment));
  way.setTextDirection(item.direction);
  way.setWrapMode(QTextOption::NoWrap);
  layout.setTextOption(way);
  layout.setFormats(pieces.formats);
  layout.beginLayout();
  QTextLine line = layout.createLine();
  line.setLineWidth(room.width());
  layout.endLayout();
  painter->save();
  painter->setClipRect(room);
  painter->setPen(colour);
  layout.draw(painter, QPointF(room.left(), room.top() + (room.height() - line.height()) / 2));
  painter->restore();
}

}  // namespace ledgertree::qt
