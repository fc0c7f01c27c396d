#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/control.h"
#include "ui/key.h"

namespace ledgertree::ui {

/// A line of a list with the number that the form keeps beside it.
struct Item {
  std::string text;
  std::int32_t data = 0;
};

/// What a list box and a drop-down list have in common: lines, one of which may be selected.
class ItemsControl : public Control {
 public:
  using Control::Control;
  static constexpr int kNone = -1;

  [[nodiscard]] const std::vector<Item>& items() const { return items_; }
  void clearItems();
  void addItem(std::string text, std::int32_t data = 0);
  void setItemText(int index, std::string text);
  /// Removes a line; the selection goes with it.
  void removeItem(int index);
  /// The selected line from 0, kNone for none.
  [[nodiscard]] int selected() const { return selected_; }
  /// A program selects: raises nothing.
  void select(int index);
  /// The text of the selected line; empty for none.
  [[nodiscard]] std::string selectedText() const;

  // A person.
  /// Selects a line and raises onSelect, also where it is selected already. Nothing where there is no such
  /// line.
  void choose(int index);
  /// Up, Down, Home and End choose.
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
