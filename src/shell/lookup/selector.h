#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "shell/lookup/lookup_search.h"
#include "shell/shell.h"
#include "ui/lookup_field.h"

namespace ledgertree::shell {

/// Lets a user pick one row of a database view.
///
/// The view needs the columns ID and Name; a Code, if it has one, is shown and searched too. An ID's row is
/// read by key, and the list below the field is searched as one types; neither loads the whole view. Both use
/// the selector's own connection, which opens on first use.
///
/// Database failures aren't thrown: a failure becomes one notice, and the next use
/// reconnects.
class Selector : public ui::LookupField {
 public:
  Selector(ui::Form& form, Shell& shell, std::string name, ui::Bounds bounds, ui::Frame* frame = nullptr);

  /// The view to pick from: a plain name, optionally in brackets or with a schema ("dbo.vwThing"). Any other
  /// text is refused with a notice, and the list is empty. Changing it empties the selector, without an
  /// event. The views and the connection may be set in any order.
  [[nodiscard]] const std::string& MajorView() const { return majorView_; }
  void setMajorView(std::string view);
  /// The companion view, by the same IDs. Its Name describes a row further: it becomes `detail`.
  void setMinorView(std::string view);
  /// The title of the list.
  void setSelectorTitle(std::string title) { setTitle(std::move(title)); }
  /// The OLE DB connection text for the views. Changing it closes the connection and keeps the selection.
  void setConnectionText(std::string_view text);

  /// The ID of the selected row, -1 for none. Setting an ID selects that row; 0 and below, without a row,
  /// empty the selector. An ID of 1 or more without a row is kept anyway, unlisted(): hosts remove rows from
  /// their views, and a stored value stays until a user clears it. An ID that can't be read now is kept
  /// without its text, and read at the next use. Setting it raises no event.
  [[nodiscard]] std::int32_t SelectedID() const { return held().id; }
  void setSelectedID(std::int32_t id) { hold(search_.read(id)); }
  /// Adds the queries of setting an ID, for announcing them (see data::Ahead).
  void addQuestion(std::int32_t id, std::vector<data::Command>& questions) const {
    search_.addQuestion(id, questions);
  }
  /// The text shown for the selected row: its Name; empty for none.
  [[nodiscard]] const std::string& SelectedText() const { return held().text; }
  [[nodiscard]] bool IsEmpty() const { return held().id == -1; }
  /// Whether the user can pick.
  [[nodiscard]] bool IsActive() const { return isActive(); }
  void setIsActive(bool active) { setActive(active); }
  /// Empties the selection, without an event.
  void Clear() { hold({}); }

  /// The user picked a row, perhaps the same one, or emptied the selector. Not raised by changes from
  /// code.
  ui::Event<> onSelectionChange;

 private:
  void wishSearch(const std::string& text) override { search_.search(text); }
  void wishMore() override { search_.more(); }
  void wishStop() override;
  void wishDetail() override;
  [[nodiscard]] ui::LookupRow wishOne(const std::string& text, bool first) override {
    return search_.one(text, first);
  }
  void heldByPerson() override { raise(onSelectionChange); }
  void readAgain();

  Shell& shell_;
  LookupSearch search_;
  std::string majorView_;
  std::string minorView_;
};

}  // namespace ledgertree::shell
