#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QStyledItemDelegate>

namespace ledgertree::qt {

/// What a cell of a look-up's list has in addition to its text.
enum FoundRowRole {
  kTypedRole = Qt::UserRole,  ///< a Stretches: the matches within the text
  kPlaceRole                  ///< a QString: where the row belongs
};

/// The first unit of each stretch, and one past its last.
using Stretches = QList<QPair<qsizetype, qsizetype>>;

/// Draws a cell of a look-up's list: matches in bold, and after the text, in grey, where the row belongs.
class FoundRowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace ledgertree::qt
