#pragma once

#include <QAbstractListModel>
#include <QComboBox>
#include <QListView>

#include "qt/control_view.h"
#include "ui/items.h"

namespace ledgertree::qt {

/// The lines of a list. It has as many lines as were reported, so that the cost of an added or removed line
/// doesn't depend on the others.
class ItemsModel : public QAbstractListModel {
 public:
  explicit ItemsModel(const ui::ItemsControl& control) : control_(&control) { follow(); }
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : count_;
  }
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  /// The lines of the control changed.
  void follow();
  void detach() { control_ = nullptr; }

 private:
  const ui::ItemsControl* control_;
  int count_ = 0;
};

class ListBoxView : public ViewOf<ui::ListBox> {
 public:
  ListBoxView(ui::ListBox& control, QWidget& parent);
  [[nodiscard]] QListView& widget() override { return *list_; }
  [[nodiscard]] QWidget* focusWidget() override { return list_; }
  void sync(ui::Change change) override;
  void detach() override;

 private:
  QListView* list_;
  ItemsModel model_;
};

class DropDownListView : public ViewOf<ui::DropDownList> {
 public:
  DropDownListView(ui::DropDownList& control, QWidget& parent);
  [[nodiscard]] QComboBox& widget() override { return *box_; }
  [[nodiscard]] QWidget* focusWidget() override { return box_; }
  void sync(ui::Change change) override;
  void detach() override;

 private:
  QComboBox* box_;
  ItemsModel model_;
};

}  // namespace ledgertree::qt
