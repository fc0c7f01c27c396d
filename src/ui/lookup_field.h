#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ui/control.h"
#include "ui/key.h"

namespace ledgertree::ui {

/// A row that a look-up offers.
struct LookupRow {
  std::int32_t id = 0;
  std::string text;  ///< what the field shows when the row is picked
  std::string code;  ///< shown beside the text; may be empty
};

/// The face of a selector and of an account picker: a line to type in, and below it a list of the rows found.
///
/// This class holds what the screen shows and turns keys into the few wishes below, which its two kinds
/// fulfil (see shell/selector.h and shell/account_picker.h). The list never holds a whole view, only the rows
/// read so far.
class LookupField : public Control {
 public:
  using Control::Control;

  /// The text of the line: of the row held, or what the person is typing.
  [[nodiscard]] const std::string& text() const { return text_; }
  [[nodiscard]] bool isActive() const { return active_; }
  [[nodiscard]] const std::string& title() const { return title_; }
  [[nodiscard]] bool listOpen() const { return listOpen_; }
  [[nodiscard]] const std::vector<LookupRow>& rows() const { return rows_; }
  /// The row in the list that Enter picks; -1 for none.
  [[nodiscard]] int highlighted() const { return highlighted_; }
  /// A search is under way, or stopped at a page's end.
  [[nodiscard]] bool searching() const { return searching_; }
  [[nodiscard]] bool hasMore() const { return hasMore_; }

  // A person. Each does nothing while the field isn't active.
  /// Types at the end of the line, character by character, after deleting the text of a row held.
  void type(std::string_view text);
  /// Down, Up, PageUp, PageDown, Home, End in the list; Down and F4 open it; Enter picks; Escape closes it
  /// and puts the held row's text back; Delete empties the field (or, while typing, is a key of the line);
  /// Backspace edits.
  void press(Key key);
  void openList();
  void closeList();
  /// Picks a row of the list.
  void pick(int index);
  /// The list was scrolled to its end.
  void reachedEnd();
  /// The line's text as the editor of the renderer has it.
  void edited(std::string text);
  void leave();

  /// A key went down, by its code.
  Event<int> onKeyDown;
  void accept(ControlVisitor& visitor) override;

 protected:
  void setText(std::string text);
  void setActive(bool active);
  void setTitle(std::string title);
  void setListOpen(bool open);
  /// Replaces the rows (`append` false) or adds to them.
  void showRows(std::vector<LookupRow> rows, bool append, bool more, bool searching);
  void highlight(int index);

  // The wishes of the person.
  virtual void wishSearch(const std::string& text) = 0;
  virtual void wishMore() = 0;
  virtual void wishPick(const LookupRow& row) = 0;
  /// Give up typing: the text of the row held comes back.
  virtual void wishRestore() = 0;
  virtual void wishClear() = 0;

 private:
  std::string text_;
  std::string title_;
  std::vector<LookupRow> rows_;
  int highlighted_ = -1;
  bool active_ = true;
  bool listOpen_ = false;
  bool typing_ = false;
  bool searching_ = false;
  bool hasMore_ = false;
};

/// A date, shown as text. What the date is, and its calendars, stand in shell/date_field.h.
class DateDisplay : public Control {
 public:
  using Control::Control;
  [[nodiscard]] virtual std::string text() const = 0;
  void accept(ControlVisitor& visitor) override;
};

}  // namespace ledgertree::ui
