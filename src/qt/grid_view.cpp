#include "qt/grid_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>
#include <functional>

#include "qt/keys.h"
#include "qt/text.h"

namespace ledgertree::qt {

namespace {

/// A table whose cursor and selected rows are those of the control.
class Table : public QTableView {
 public:
  using QTableView::QTableView;
  std::function<void(int row, bool extend)> onRow;
  std::function<void(ui::Key, bool extend)> onKey;
  std::function<void()> onResized;

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QTableView::resizeEvent(event);
    if (onResized) onResized();
  }
  void mousePressEvent(QMouseEvent* event) override {
    event->accept();
    const int row = rowAt(event->position().toPoint().y());
    if (event->button() != Qt::LeftButton || row < 0) return;
    lastRow_ = row;
    onRow(row, event->modifiers().testFlag(Qt::ShiftModifier));
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    event->accept();
    if (!event->buttons().testFlag(Qt::LeftButton)) return;
    const int y = std::clamp(event->position().toPoint().y(), 0, std::max(viewport()->height() - 1, 0));
    const int row = rowAt(y);
    if (row < 0 || row == lastRow_) return;
    lastRow_ = row;
    onRow(row, true);
  }
  void mouseReleaseEvent(QMouseEvent* event) override { event->accept(); }
  void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
  void keyPressEvent(QKeyEvent* event) override {
    const ui::Key key = keyOf(*event);
    const bool moves = key == ui::Key::Up || key == ui::Key::Down || key == ui::Key::Home ||
                       key == ui::Key::End || key == ui::Key::PageUp || key == ui::Key::PageDown;
    event->setAccepted(moves);
    if (moves) onKey(key, event->modifiers().testFlag(Qt::ShiftModifier));
  }

 private:
  int lastRow_ = -1;
};

}  // namespace

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (control_ == nullptr || index.row() >= control_->rowCount()) return {};
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
    const QString text = toQt(control_->text(index.row(), index.column()));
    return role == Qt::ToolTipRole ? literalTip(text) : text;
  }
  if (role == Qt::TextAlignmentRole) return QVariant::fromValue(int(Qt::AlignLeading | Qt::AlignVCenter));
  return {};
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (control_ == nullptr || orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  const auto column = static_cast<std::size_t>(section);
  return column < control_->columns().size() ? toQt(control_->columns()[column].header) : QString();
}

void GridModel::follow() {
  const int rows = control_->rowCount();
  const int columns = static_cast<int>(control_->columns().size());
  if (columns != columns_ || rows < rows_) {
    beginResetModel();
    rows_ = rows;
    columns_ = columns;
    endResetModel();
    return;
  }
  if (rows > rows_) {
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
  } else if (columns_ > 0) {
    emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
  }
}

GridView::GridView(ui::Grid& control, QWidget& parent) : ViewOf(control), model_(control) {
  auto* table = new Table(&parent);
  table_ = table;
  table->setModel(&model_);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setWordWrap(false);
  table->setAlternatingRowColors(true);
  table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table->verticalHeader()->hide();
  table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  // By default Qt makes every column at least as wide as the widest letter of the font.
  table->horizontalHeader()->setMinimumSectionSize(1);
  table->horizontalHeader()->setSectionsClickable(false);
  table->horizontalHeader()->setHighlightSections(false);
  // Aligned with the texts of the cells; headers take the direction of the application, not of the screen.
  table->horizontalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
  table->onRow = [this](int row, bool extend) {
    if (!attached()) return;
    if (extend) {
      this->control().extendTo(row);
    } else {
      this->control().selectRow(row);
    }
  };
  table->onKey = [this](ui::Key key, bool extend) {
    if (attached()) this->control().press(key, extend);
  };
  table->onResized = [this] { layOutColumns(); };
  QScrollBar* const bar = table->verticalScrollBar();
  QObject::connect(bar, &QScrollBar::valueChanged, table, [this, bar](int value) {
    if (value > 0 && value == bar->maximum() && attached()) this->control().reachedEnd();
  });
}

void GridView::rescaled(const Scale& scale) {
  scale_ = scale;
  table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 6);
  layOutColumns();
  showSelection();  // after the columns: the cursor needs a visible one
}

void GridView::layOutColumns() {
  if (!attached()) return;
  const auto& columns = control().columns();
  int last = -1;
  int used = 0;
  for (int column = 0; column < static_cast<int>(columns.size()); ++column) {
    const int width = scale_.pixels(columns[static_cast<std::size_t>(column)].width);
    table_->setColumnHidden(column, width <= 0);
    if (width <= 0) continue;
    table_->setColumnWidth(column, width);
    used += width;
    last = column;
  }
  const int room = table_->viewport()->width() - used;
  if (last >= 0 && room > 0) table_->setColumnWidth(last, table_->columnWidth(last) + room);
}

void GridView::sync(ui::Change change) {
  if (change == ui::Change::Items) {
    const int rows = model_.rowCount();
    model_.follow();
    if (model_.rowCount() <= rows) layOutColumns();
  }
  if (change == ui::Change::Items || change == ui::Change::Selection) showSelection();
}

void GridView::showSelection() {
  const int current = control().currentRow();
  const int end = control().selectionEnd();
  auto& selection = *table_->selectionModel();
  if (current < 0 || model_.columnCount() == 0) return selection.clear();
  const QItemSelection rows(model_.index(std::min(current, end), 0),
                            model_.index(std::max(current, end), model_.columnCount() - 1));
  if (selection.selection() != rows) selection.select(rows, QItemSelectionModel::ClearAndSelect);
  if (selection.currentIndex().row() == current) return;
  int column = 0;
  while (column + 1 < model_.columnCount() && table_->isColumnHidden(column)) ++column;
  selection.setCurrentIndex(model_.index(current, column), QItemSelectionModel::NoUpdate);
}

void GridView::detach() {
  model_.detach();
  ControlView::detach();
}

}  // namespace ledgertree::qt
