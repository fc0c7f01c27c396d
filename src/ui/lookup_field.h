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

/// A row that a look-up offers, or holds.
struct LookupRow {
  std::int32_t id = -1;  ///< -1: no row
  std::string text;      ///< what the field shows when the row is picked
  std::string code;      ///< shown beside the text; may be empty
  bool listed = true;    ///< false: nothing but the ID is known, the view has no row for it
  std::string place{};   ///< where it belongs, shown paler behind the text; may be empty

  bool operator==(const LookupRow&) const = default;
};

/// The face of a selector and of an account picker: a line to type in, and below it a list of the rows found.
///
/// This class is the combo box: which row is held, what is typed, what the list shows, and what each key
/// does. Its two kinds (shell/selector.h, shell/account_picker.h) find the rows and fulfil the wishes below.
/// The list never holds a whole view, only the rows read so far.
///
/// Typing changes nothing by itself: what is typed is a search, and until a row is picked the field goes on
/// holding the one it held. Leaving the line picks the row that what is typed can only mean; anything else
/// stays there, unchosen(). An emptied line empties the field when it is left, or with Enter.
class LookupField : public Control {
 public:
  using Control::Control;

  /// The text of the line: of the row held, or what the person is typing.
  [[nodiscard]] const std::string& text() const { return text_; }
  /// The line shows what the person types, not the row held.
  [[nodiscard]] bool typing() const { return typing_; }
  /// The line was left with a text that isn't the row held: no command may take the one for the other.
  [[nodiscard]] bool unchosen() const { return unchosen_; }
  [[nodiscard]] bool isActive() const { return active_; }
  /// The row held was given by its ID and isn't in the view: the text shows its number, and that.
  [[nodiscard]] bool unlisted() const { return !held_.listed; }
  /// The title of the list; may be empty.
  [[nodiscard]] const std::string& title() const { return title_; }
  /// More about the row held, one line, once a person looked closer; may be empty.
  [[nodiscard]] const std::string& detail() const { return detail_; }

  [[nodiscard]] bool listOpen() const { return listOpen_; }
  /// The rows found so far. While a newer search has found nothing yet, they are those of the search before.
  [[nodiscard]] const std::vector<LookupRow>& rows() const { return rows_; }
  /// The row in the list that Enter picks; -1 for none.
  [[nodiscard]] int highlighted() const { return highlighted_; }
  /// A search is under way.
  [[nodiscard]] bool searching() const { return searching_; }
  /// There are rows behind the last one; a scroll to the end brings them.
  [[nodiscard]] bool hasMore() const { return hasMore_; }
  /// Where what was typed stands in a text of the list.
  [[nodiscard]] std::vector<text::Stretch> typedIn(std::string_view text) const {
    return text::stretchesOf(typed_, text);
  }
  /// The highlighted row among the hits, "12 از 340"; empty while they are sought, and where nothing is
  /// typed.
  [[nodiscard]] std::string count() const;

  // A person. Each does nothing while the field isn't active.
  /// Types at the end of the line, character by character. The first one replaces the text of a row held.
  void type(std::string_view text);
  /// Down and F4 open the list, and F4 closes it. In the list Down, Up, PageDown and PageUp go from row to
  /// row and Enter picks; Enter ahead of the first hit picks it when it comes. Tab, about to leave, picks the
  /// row that the person went to, or does as leave(). Escape closes the list and brings the held row's text
  /// back. Delete empties the field, or is a key of the line while one types. Backspace edits. False where
  /// the field has no use for the key, and for Tab always.
  bool press(Key key);
  void openList();
  /// Picks a row of the list.
  void pick(int index);
  /// The list was scrolled to its end.
  void reachedEnd();
  /// The pointer rests on the field: `detail` will come.
  void lookCloser();

  /// Asks for the menu of the line: raises onMenu, ahead of the look at the entry.
  void askMenu() { raise(onMenu); }

  /// What stands in the menu of the line behind the commands of an editor; null for nothing.
  [[nodiscard]] MenuEntry* entry() const { return entry_; }
  void setEntry(MenuEntry& entry) { entry_ = &entry; }
  Event<> onMenu;

  // The renderer.
  /// The line's text as the editor has it.
  void edited(std::string text);
  /// The focus left the field; Form::focusMoved calls it too. What is typed picks the row that the person
  /// went to in the list, or the one that wishOne() finds; where there is none it stays. A list without
  /// typing just closes.
  void leave();

  /// A key went down, by its code: Delete (while one isn't typing) and Enter.
  Event<int> onKeyDown;
  void accept(ControlVisitor& visitor) override;

 protected:
  [[nodiscard]] const LookupRow& held() const { return held_; }
  /// Holds a row, or none; typing and the list end. No event.
  void hold(LookupRow row);
  void setActive(bool active);
  void setTitle(std::string title);
  void setDetail(std::string detail);
  /// Replaces the rows (`append` false) or adds to them. May pick, when Enter was waiting for a hit: the
  /// control may be gone when it returns.
  void showRows(std::vector<LookupRow> rows, bool append, bool more, bool searching);
  /// Tells where rows of the list belong: the texts of rows with their IDs.
  void showPlaces(const std::vector<LookupRow>& places);

  // The wishes of the person.
  /// Search, and answer by showRows later. A newer wish takes the place of an older one.
  virtual void wishSearch(const std::string& text) = 0;
  virtual void wishMore() = 0;
  /// Nobody looks at the list any more.
  virtual void wishStop() = 0;
  virtual void wishDetail() = 0;
  /// The row that a text can only mean, at once, however far the search is: the one whose whole code it is,
  /// else the one whose whole text it is, else the only hit. With `first`, for which Enter was waiting, the
  /// first hit. id -1 for none, and where two are alike.
  [[nodiscard]] virtual LookupRow wishOne(const std::string& text, bool first) = 0;
  /// The person's choice stands in held(): tell the form, last.
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
  text::SearchWords typed_;  ///< of which the rows are the hits
  int highlighted_ = -1;
  bool active_ = true;
  bool listOpen_ = false;
  bool typing_ = false;
  bool unchosen_ = false;
  bool moved_ = false;  ///< the person went to the highlighted row
  bool searching_ = false;
  bool hasMore_ = false;
  bool stale_ = false;       ///< the rows are of an older search
  bool enterWaits_ = false;  ///< Enter was pressed ahead of the first hit
};

/// A date, shown as text. What the date is, and its calendars, stand in shell/date_field.h.
class DateDisplay : public Control {
 public:
  using Control::Control;
  [[nodiscard]] virtual std::string text() const = 0;
  void accept(ControlVisitor& visitor) override;
};

}  // namespace ledgertree::ui
