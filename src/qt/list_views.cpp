#include "qt/list_views.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <functional>

#include "qt/keys.h"
#include "qt/text.h"

namespace ledgertree::qt {

namespace {

/// A list whose selection is that of the control.
class Lines : public QListView {
 public:
  using QListView::QListView;
  std::function<void(int)> onChoose;
  std::function<void(ui::Key)> onKey;

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    event->accept();
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && index.isValid()) onChoose(index.row());
  }
  void mouseMoveEvent(QMouseEvent* event) override { event->accept(); }
  void mouseReleaseEvent(QMouseEvent* event) override { event->accept(); }
  void mouseDoubleClickEvent(QMouseEvent* event) override { event->accept(); }
  void keyPressEvent(QKeyEvent* event) override {
    const ui::Key key = keyOf(*event);
    const bool moves =
        key == ui::Key::Up || key == ui::Key::Down || key == ui::Key::Home || key == ui::Key::End;
    event->setAccepted(moves);
    if (moves) return onKey(key);
    if (event->modifiers() == Qt::NoModifier && !event->text().isEmpty() && event->text().at(0).isPrint())
      QListView::keyPressEvent(event);  // finds the typed text, by keyboardSearch
  }
  void keyboardSearch(const QString& search) override {
    if (model()->rowCount() == 0) return;
    const QModelIndex start = currentIndex().isValid() ? currentIndex() : model()->index(0, 0);
    const auto found = model()->match(start, Qt::DisplayRole, search, 1, Qt::MatchStartsWith | Qt::MatchWrap);
    if (!found.isEmpty()) onChoose(found.front().row());
  }
};

/// The wheel scrolls the form, and doesn't change a list that it happens to pass over.
class Combo : public QComboBox {
 public:
  using QComboBox::QComboBox;

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

}  // namespace

QVariant ItemsModel::data(const QModelIndex& index, int role) const {
  if (control_ == nullptr || (role != Qt::DisplayRole && role != Qt::EditRole)) return {};
  const auto row = static_cast<std::size_t>(index.row());
  return row < control_->items().size() ? toQt(control_->items()[row].text) : QString();
}

void ItemsModel::follow() {
  const int count = static_cast<int>(control_->items().size());
  const int before = count_;
  if (count > before) {
    beginInsertRows({}, before, count - 1);
    count_ = count;
    endInsertRows();
  } else if (count < before) {
    beginRemoveRows({}, count, before - 1);
    count_ = count;
    endRemoveRows();
  }
  // New lines are appended; any other change may affect each of the remaining ones.
  if (count <= before && count > 0) emit dataChanged(index(0), index(count - 1));
}

ListBoxView::ListBoxView(ui::ListBox& control, QWidget& parent) : ViewOf(control), model_(control) {
  auto* lines = new Lines(&parent);
  list_ = lines;
  lines->setModel(&model_);
  lines->setUniformItemSizes(true);
  lines->setEditTriggers(QAbstractItemView::NoEditTriggers);
  lines->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  lines->onChoose = [this](int row) {
    if (attached()) this->control().choose(row);
  };
  lines->onKey = [this](ui::Key key) {
    if (attached()) this->control().press(key);
  };
  sync(ui::Change::Selection);
}

void ListBoxView::sync(ui::Change change) {
  if (change == ui::Change::Items) model_.follow();
  if (change != ui::Change::Items && change != ui::Change::Selection) return;
  const int selected = control().selected();
  if (selected == ui::ListBox::kNone) {
    list_->selectionModel()->clear();
  } else if (list_->currentIndex().row() != selected ||
             !list_->selectionModel()->isSelected(list_->currentIndex())) {
    list_->selectionModel()->setCurrentIndex(model_.index(selected), QItemSelectionModel::ClearAndSelect);
  }
}

void ListBoxView::detach() {
  model_.detach();
  ControlView::detach();
}

DropDownListView::DropDownListView(ui::DropDownList& control, QWidget& parent)
    : ViewOf(control), box_(new Combo(&parent)), model_(control) {
  box_->setModel(&model_);
  box_->view()->setLayoutDirection(Qt::RightToLeft);
  connect(box_, &QComboBox::activated, this, [this](int row) {
    if (attached()) this->control().choose(row);
  });
  sync(ui::Change::Selection);
}

void DropDownListView::sync(ui::Change change) {
  if (change == ui::Change::Items) model_.follow();
  if (change == ui::Change::Items || change == ui::Change::Selection)
    box_->setCurrentIndex(control().selected());
}

void DropDownListView::detach() {
  model_.detach();
  ControlView::detach();
}

}  // namespace ledgertree::qt
