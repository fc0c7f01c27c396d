#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "shell/shell.h"
#include "ui/lookup_field.h"

namespace ledgertree::shell {

/// Lets a person pick one row of a database view.
///
/// The view needs the columns ID and Name; where it has a Code, that is shown and searched too. The row of an
/// ID is read by its key, and the list below the field is searched as one types; neither ever loads the view.
/// Both use a connection of the selector's own, which opens at its first use.
///
/// Nothing here throws for the database's sake: a failure becomes one notice, and the next use connects
/// again.
class Selector : public ui::LookupField {
 public:
  Selector(ui::Form& form, Shell& shell, std::string name, ui::Bounds bounds, ui::Frame* frame = nullptr);

  /// The view whose rows are offered: a plain name, optionally in brackets or with a schema ("dbo.vwThing").
  /// Any other text is refused with a notice, and offers nothing. Another view empties the selector, without
  /// an event. The views and the connection may be given in any order.
  [[nodiscard]] const std::string& MajorView() const { return majorView_; }
  void setMajorView(std::string view);
  /// The companion view.
  [[nodiscard]] const std::string& MinorView() const { return minorView_; }
  void setMinorView(std::string view);
  /// The title of the list.
  void setSelectorTitle(std::string title) { setTitle(std::move(title)); }
  /// The OLE DB connection text of the views. Another text closes the connection and keeps the selection.
  void setConnectionText(std::string text);

  /// The ID of the row picked, -1 for none. Writing an ID selects that row; an ID that has no row empties the
  /// selector. Writing raises no event.
  [[nodiscard]] std::int32_t SelectedID() const { return selectedID_; }
  void setSelectedID(std::int32_t id);
  /// The Name of the row picked; empty for none.
  [[nodiscard]] const std::string& SelectedText() const { return selectedText_; }
  [[nodiscard]] bool IsEmpty() const { return selectedID_ == -1; }
  /// Whether a person can pick.
  [[nodiscard]] bool IsActive() const { return isActive(); }
  void setIsActive(bool active) { setActive(active); }
  /// Empties the selection, without an event.
  void Clear();

  /// A person picked another row, or emptied the selector. What a program writes doesn't raise it.
  ui::Event<> onSelectionChange;

 private:
  void wishSearch(const std::string& text) override;
  void wishMore() override;
  void wishPick(const ui::LookupRow& row) override;
  void wishRestore() override;
  void wishClear() override;

  Shell& shell_;
  std::string majorView_;
  std::string minorView_;
  std::string connectionText_;
  std::int32_t selectedID_ = -1;
  std::string selectedText_;
};

}  // namespace ledgertree::shell
