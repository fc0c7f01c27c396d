#pragma once

#include <string>
#include <vector>

#include "ui/control.h"
#include "ui/form.h"
#include "ui/key.h"

namespace ledgertree::ui {

/// A menu entry, with the entries under it. An entry without a caption is a separator.
class MenuEntry {
 public:
  MenuEntry(Form& form, std::string name, std::string caption, bool visible = true, bool checked = false);
  MenuEntry(const MenuEntry&) = delete;
  MenuEntry& operator=(const MenuEntry&) = delete;

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] const std::string& caption() const { return caption_; }
  [[nodiscard]] bool separator() const { return caption_.empty(); }
  [[nodiscard]] const std::vector<MenuEntry*>& entries() const { return entries_; }
  /// The equivalent keys, for display only: the form handles them. Empty if there are none.
  [[nodiscard]] const KeyChord& keys() const { return keys_; }
  void setKeys(const KeyChord& keys) { keys_ = keys; }
  /// Returns the entry, so that code which builds a menu looks like its tree.
  MenuEntry& add(MenuEntry& entry);

  [[nodiscard]] bool visible() const { return visible_; }
  void setVisible(bool visible);
  [[nodiscard]] bool enabled() const { return enabled_; }
  void setEnabled(bool enabled);
  [[nodiscard]] bool checked() const { return checked_; }
  void setChecked(bool checked);

  // User actions.
  /// Does nothing on an entry that is hidden or disabled, or under one that is.
  void click();

  Event<> onClick;

 private:
  [[nodiscard]] bool withinReach() const;

  Form& form_;
  std::string name_;
  std::string caption_;
  KeyChord keys_;
  std::vector<MenuEntry*> entries_;
  MenuEntry* parent_ = nullptr;
  bool visible_;
  bool enabled_ = true;
  bool checked_;
};

}  // namespace ledgertree::ui
