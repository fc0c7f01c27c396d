#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "history/history.h"
#include "history/screen/words.h"
#include "shell/lookup/account_picker.h"
#include "shell/lookup/selector.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/items.h"
#include "ui/text_field.h"

namespace ledgertree::history {

/// What the screen is given of the house around it.
struct Doors {
  /// Tells the person and says no where nothing may be taken back now.
  std::function<bool()> mayChange;
  /// Writes rows of texts into a spreadsheet, the headings first.
  std::function<void(const std::vector<std::vector<std::string>>& rows)> exportRows;
};

/// What the memory of the chart knows, the newest first, a row for each row of the database that came,
/// changed or went; what an account was called on a day; and the way back. It reads the memory page by page,
/// as far as the person scrolls.
class FormHistory : public ui::Form {
 public:
  /// `accountID` is the one whose changes are shown first; -1: those of all. `shell` outlives the form.
  /// Throws data::DataError.
  FormHistory(shell::Shell& shell, std::int32_t accountID, Doors doors);

  /// Whether an operation was taken back.
  bool ChangedFlag = false;

  ui::Label lblSince;
  ui::Label lblAccount;
  shell::AccountPicker sltAccount;
  ui::Label lblUser;
  ui::DropDownList lstUser;
  ui::Label lblKind;
  ui::DropDownList lstKind;
  ui::Label lblFrom;
  ui::TextField txtFrom;
  ui::Label lblUntil;
  ui::TextField txtUntil;
  ui::PushButton cmdShow;
  ui::PushButton cmdAll;
  ui::PushButton cmdOfAccount;
  ui::Grid grdChanges;
  ui::Frame FrameThen;
  ui::Label lblDay;
  ui::TextField txtDay;
  ui::Label lblPeriod;
  shell::Selector sltPeriod;
  ui::PushButton cmdThen;
  ui::Label lblThen;
  ui::PushButton cmdTakeBack;
  ui::PushButton cmdExport;  ///< where the host offers the export
  ui::PushButton cmdCancel;

 protected:
  void resized() override;

 private:
  void loadControls();
  void listen();
  void nameControls();
  void fillUsers();
  void fillKinds();

  /// Tells of a date that is none, and of a text that was left unchosen.
  [[nodiscard]] bool readFilter();
  [[nodiscard]] bool readDay(ui::TextField& field, std::optional<data::DateTime>& day);
  void readAnew();
  void readMore();
  [[nodiscard]] std::vector<std::string> rowOf(const Change& change) const;
  void showAll();
  void showOfAccount();
  void showThen();
  void showInPeriod(data::DtEn& gateway, std::int32_t accountID, std::int32_t periodID);
  void takeBackHighlighted();
  /// All that the filter lets through, whether it was scrolled into sight or not.
  void exportAll();
  [[nodiscard]] const Change* highlighted() const;
  /// What the account was called, and where it stood.
  [[nodiscard]] std::string thenInWords(data::DtEn& gateway, std::int32_t accountID,
                                        const data::DateTime& moment) const;

  shell::Shell& shell_;
  Doors doors_;
  Words words_;
  std::optional<data::DateTime> since_;
  Filter filter_;
  std::vector<Change> changes_;  ///< a row each
  std::int64_t next_ = 0;        ///< where the page behind them begins
  bool atEnd_ = false;
  bool reading_ = false;
  ui::Size baseline_;
};

/// Shows the screen until the person leaves; true where the chart has to be read anew.
[[nodiscard]] bool showHistory(shell::Shell& shell, std::int32_t accountID, Doors doors);

}  // namespace ledgertree::history
