#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/control.h"
#include "ui/key.h"

namespace ledgertree::ui {

/// A line of a list, and the number that the form associates with it.
struct Item {
  std::string text;
  std::int32_t data = 0;
};

/// What list boxes and drop-down lists have in common: lines, of which one may be selected.
class ItemsControl : public Control {
 public:
  using Control::Control;
  static constexpr int kNone = -1;

  [[nodiscard]] const std::vector<Item>& items() const { return items_; }
  void clearItems();
  void addItem(std::string text, std::int32_t data = 0);
  void setItemText(int index, std::string text);
  /// Removes a line. If it is selected, nothing is afterwards.
  void removeItem(int index);
  /// The selected line from 0; kNone for none.
  [[nodiscard]] int selected() const { return selected_; }
  /// A selection by the program raises no event.
  void select(int index);
  /// The text of the selected line; empty if there is none.
  [[nodiscard]] std::string selectedText() const;

  // User actions.
  /// Selects a line and raises onSelect, even if it is already selected. Ignores a line that doesn't exist.
  void choose(int index);
  /// Up, Down, Home and End select.
  void press(Key key);

  Event<> onSelect;

 private:
  std::vector<Item> items_;
  int selected_ = kNone;
};

class ListBox : public ItemsControl {
 public:
  using ItemsControl::ItemsControl;
  void accept(ControlVisitor& visitor) override;
};

class DropDownList : public ItemsControl {
 public:
  using ItemsControl::ItemsControl;
  void accept(ControlVisitor& visitor) override;
};

}  // namespace ledgertree::ui
