#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "shell/lookup/lookup_search.h"
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
  /// The companion view, by the same IDs. Its Name says more about a row: it becomes `detail`.
  void setMinorView(std::string view);
  /// The title of the list.
  void setSelectorTitle(std::string title) { setTitle(std::move(title)); }
  /// The OLE DB connection text of the views. Another text closes the connection and keeps the selection.
  void setConnectionText(std::string_view text);

  /// The ID of the row picked, -1 for none. Writing an ID selects that row; 0 and below, where they have no
  /// row, empty the selector. An ID of 1 or more without a row is held all the same, unlisted(): hosts take
  /// rows off their views, and what is stored stays stored until a person empties it. An ID that can't be
  /// read now is held without its text, and read at the next use. Writing raises no event.
  [[nodiscard]] std::int32_t SelectedID() const { return held().id; }
  void setSelectedID(std::int32_t id) { hold(search_.read(id)); }
  /// Adds what writing an ID will ask, for who asks ahead (see data::Ahead).
  void addQuestion(std::int32_t id, std::vector<data::Command>& questions) const {
    search_.addQuestion(id, questions);
  }
  /// The text shown for the row picked: its Name; empty for none.
  [[nodiscard]] const std::string& SelectedText() const { return held().text; }
  [[nodiscard]] bool IsEmpty() const { return held().id == -1; }
  /// Whether a person can pick.
  [[nodiscard]] bool IsActive() const { return isActive(); }
  void setIsActive(bool active) { setActive(active); }
  /// Empties the selection, without an event.
  void Clear() { hold({}); }

  /// A person picked a row, the one held included, or emptied the selector. What a program writes doesn't
  /// raise it.
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
