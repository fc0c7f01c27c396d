#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "text/search_words.h"
#include "ui/control.h"
#include "ui/key.h"
#include "ui/menu.h"

namespace ledgertree::ui {

/// A row that a look-up offers or holds.
struct LookupRow {
  std::int32_t id = -1;  ///< -1: no row
  std::string text;      ///< what the field shows once the row is picked
  std::string code;      ///< shown beside the text; may be empty
  bool listed = true;    ///< false: only the ID is known, as the view has no such row
  std::string place{};   ///< where it belongs, in paler text after the row's; may be empty

  bool operator==(const LookupRow&) const = default;
};

/// The combo box of a selector and of an account picker: a line to type in, and below it a list of hits.
///
/// This class knows which row is held, what is typed, what the list shows and what each key does. Its two
/// kinds (shell/selector.h, shell/account_picker.h) find the rows by implementing the requests below. The
/// list never holds an entire view, only the rows read so far.
///
/// Typing alone changes nothing: it is a search, and the field keeps its row until another one is picked.
/// Leaving the field picks the row if the text can mean only one; otherwise the text stays, and the field is
/// unchosen(). Clearing the text clears the field when it is left, or on Enter.
class LookupField : public Control {
 public:
  using Control::Control;

  /// The text of the field: of the held row, or what the user is typing.
  [[nodiscard]] const std::string& text() const { return text_; }
  /// The field shows what the user types, not the held row.
  [[nodiscard]] bool typing() const { return typing_; }
  /// The field was left with a text other than the held row's: no command may mistake one for the other.
  [[nodiscard]] bool unchosen() const { return unchosen_; }
  [[nodiscard]] bool isActive() const { return active_; }
  /// The held row was set by an ID that the view doesn't have: the text shows the number and says so.
  [[nodiscard]] bool unlisted() const { return !held_.listed; }
  /// The title of the list; may be empty.
  [[nodiscard]] const std::string& title() const { return title_; }
  /// One line of detail about the held row, once the user has asked for it; may be empty.
  [[nodiscard]] const std::string& detail() const { return detail_; }

  [[nodiscard]] bool listOpen() const { return listOpen_; }
  /// The rows found so far. Until a newer search finds something, they are those of the previous one.
  [[nodiscard]] const std::vector<LookupRow>& rows() const { return rows_; }
  /// The row in the list that Enter picks; -1 for none.
  [[nodiscard]] int highlighted() const { return highlighted_; }
  /// A search is under way.
  [[nodiscard]] bool searching() const { return searching_; }
  /// There are more rows after the last one; scrolling to the end fetches them.
  [[nodiscard]] bool hasMore() const { return hasMore_; }
  /// Where the typed words occur in a text of the list.
  [[nodiscard]] std::vector<text::Stretch> typedIn(std::string_view text) const {
    return text::stretchesOf(typed_, text);
  }
  /// The position of the highlighted row among the hits, "12 از 340"; empty while they are being found, and
  /// when nothing is typed.
  [[nodiscard]] std::string count() const;

  // User actions. They do nothing while the field is disabled.
  /// Types at the end of the line, character by character. The first one replaces the text of a held row.
  void type(std::string_view text);
  /// Down and F4 open the list, and F4 closes it. In the list, Down, Up, PageDown and PageUp go from row to
  /// row and Enter picks one; if the first hit isn't there yet, Enter picks it when it arrives. Tab, before
  /// the focus moves, picks the row that the user went to, or else does what leave() does. Escape closes the
  /// list and restores the held row's text. Delete clears the field, or edits the text while the user is
  /// typing. Backspace edits. False for a key that the field doesn't use, and always for Tab.
  bool press(Key key);
  void openList();
  /// Picks a row of the list.
  void pick(int index);
  /// The list was scrolled to its end.
  void reachedEnd();
  /// The mouse hovers over the field: `detail` will be fetched.
  void lookCloser();

  /// Opens the context menu: raises onMenu before the entry is shown.
  void askMenu() { raise(onMenu); }

  /// The entry in the context menu after the editing commands; null for none.
  [[nodiscard]] MenuEntry* entry() const { return entry_; }
  void setEntry(MenuEntry& entry) { entry_ = &entry; }
  Event<> onMenu;

  // Called by the renderer.
  /// The text as the editor has it.
  void edited(std::string text);
  /// The field lost the focus; Form::focusMoved calls it too. If something is typed, picks the row that the
  /// user went to in the list, or the one that wishOne() finds; if there is none, the text stays. If
  /// nothing is typed, the list just closes.
  void leave();

  /// A key was pressed, by its code: Delete (unless the user is typing) and Enter.
  Event<int> onKeyDown;
  void accept(ControlVisitor& visitor) override;

 protected:
  [[nodiscard]] const LookupRow& held() const { return held_; }
  /// Holds a row, or none, and ends typing and the list. Raises no event.
  void hold(LookupRow row);
  void setActive(bool active);
  void setTitle(std::string title);
  void setDetail(std::string detail);
  /// Replaces the rows (`append` false) or adds to them. May pick one if Enter was waiting for a hit: the
  /// control may be gone when it returns.
  void showRows(std::vector<LookupRow> rows, bool append, bool more, bool searching);
  /// Sets where rows of the list belong: texts by the rows' IDs.
  void showPlaces(const std::vector<LookupRow>& places);

  // Requests to the kinds of look-ups.
  /// Search, and answer later by showRows. A newer request replaces an older one.
  virtual void wishSearch(const std::string& text) = 0;
  virtual void wishMore() = 0;
  /// The list is no longer shown.
  virtual void wishStop() = 0;
  virtual void wishDetail() = 0;
  /// The only row that a text can mean, at once, however far the search has come: the one with that code,
  /// else the one with that text, else the only hit. With `first`, if Enter was waiting, the first hit. id -1
  /// for none, and for more than one.
  [[nodiscard]] virtual LookupRow wishOne(const std::string& text, bool first) = 0;
  /// held() is what the user has chosen: notify the form, as the last step.
  virtual void heldByPerson() = 0;

 private:
  void focusLeft() override { leave(); }
  [[nodiscard]] bool reachable() const { return active_ && withinReach(); }
  [[nodiscard]] bool lineIsBlank() const;
  void setListOpen(bool open);
  void startSearch();
  void highlight(int index);
  void move(int rows);
  bool wentToRow() const { return moved_ && listOpen_ && !stale_; }
  void goDown(Key key);
  bool deleteHeld();
  bool enter();
  bool backspace();
  void emptied(bool heldOne);
  void restore();

  LookupRow held_;
  std::string text_;
  std::string title_;
  std::string detail_;
  std::vector<LookupRow> rows_;
  MenuEntry* entry_ = nullptr;
  text::SearchWords typed_;  ///< the words that the rows match
  int highlighted_ = -1;
  bool active_ = true;
  bool listOpen_ = false;
  bool typing_ = false;
  bool unchosen_ = false;
  bool moved_ = false;  ///< the user moved to the highlighted row
  bool searching_ = false;
  bool hasMore_ = false;
  bool stale_ = false;       ///< the rows belong to an older search
  bool enterWaits_ = false;  ///< Enter was pressed before the first hit
};

/// A date, shown as text. The date and its calendars are in shell/date_field.h.
class DateDisplay : public Control {
 public:
  using Control::Control;
  [[nodiscard]] virtual std::string text() const = 0;
  void accept(ControlVisitor& visitor) override;
};

}  // namespace ledgertree::ui
