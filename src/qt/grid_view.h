#pragma once

#include <QAbstractTableModel>
#include <QTableView>

#include "qt/control_view.h"
#include "ui/grid.h"

namespace ledgertree::qt {

class GridModel : public QAbstractTableModel {
 public:
  explicit GridModel(const ui::Grid& control) : control_(&control) { follow(); }
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : rows_;
  }
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : columns_;
  }
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  /// The rows or the columns of the control changed. The cost of an added row doesn't depend on the others.
  void follow();
  void detach() { control_ = nullptr; }

 private:
  const ui::Grid* control_;
  int rows_ = 0;
  int columns_ = 0;
};

class GridView : public ViewOf<ui::Grid> {
 public:
  GridView(ui::Grid& control, QWidget& parent);
  [[nodiscard]] QTableView& widget() override { return *table_; }
  [[nodiscard]] QWidget* focusWidget() override { return table_; }
  void sync(ui::Change change) override;
  void rescaled(const Scale& scale) override;
  void detach() override;

 private:
  /// Sets the control's widths. The last column takes the remaining space.
  void layOutColumns();
  void showSelection();

  QTableView* table_;
  GridModel model_;
  Scale scale_;
};

}  // namespace ledgertree::qt
