#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QStyledItemDelegate>

namespace ledgertree::qt {

/// What a cell of a look-up's list has besides its text.
enum FoundRowRole {
  kTypedRole = Qt::UserRole,  ///< a Stretches: where what was typed stands in the text
  kPlaceRole                  ///< a QString: where the row belongs
};

/// The first unit of each stretch and the one behind it.
using Stretches = QList<QPair<qsizetype, qsizetype>>;

/// Draws a cell of a look-up's list: what was typed is bold, and where the row belongs stands behind it in
/// grey.
class FoundRowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace ledgertree::qt
