#include "mainform/form/history_commands.h"

#include "batch/hand_over.h"
#include "history/history.h"
#include "history/operations.h"
#include "history/screen/form_history.h"
#include "history/screen/way_back.h"
#include "mainform/form/secondary_screens.h"

namespace ledgertree::mainform {

HistoryCommands::HistoryCommands(MainScreen& screen, shell::Shell& shell, AccountRecord& record,
                                 AccountTree& tree)
    : screen_(screen), shell_(shell), record_(record), tree_(tree) {
  screen_.mnuHistory.onClick = [this] { showHistory(); };
  screen_.mnuHistoryOfAccount.onClick = [this] { showHistory(); };
  screen_.mnuTakeBack.onClick = [this] { takeLastBack(); };
  screen_.addShortcut(
      screen_.mnuHistory.keys(), [this] { showHistory(); }, [this] { return screen_.mnuHistory.visible(); });
  screen_.addShortcut(
      screen_.mnuTakeBack.keys(), [this] { takeLastBack(); }, [this] { return keyCounts(); });
}

void HistoryCommands::begin() {
  const bool history = shell_.isOffered(Offer::History);
  screen_.mnuHistory.setVisible(history);
  screen_.mnuHistoryOfAccount.setVisible(history);
  offersWayBack_ = shell_.isOffered(Offer::TakeBack);
  screen_.mnuTakeBack.setVisible(offersWayBack_);
  if (offersWayBack_) sessionBegan_ = history::newestOperation(*shell_.dtEn());
}

void HistoryCommands::showHistory() {
  const history::Doors doors{
      .mayChange = [this] { return !refusedWhileTyping(screen_, shell_); },
      .exportRows = [this](const auto& rows) { batch::exportRows(shell_, screen_.settings.BasePath, rows); }};
  if (history::showHistory(shell_, screen_.AccountOnRecord, doors)) readAgain();
}

bool HistoryCommands::keyCounts() const {
  if (!offersWayBack_ || screen_.isTyping()) return false;
  const ui::Control* const here = screen_.focused();
  const auto* const lookup = dynamic_cast<const ui::LookupField*>(here);
  const auto* const text = dynamic_cast<const ui::TextField*>(here);
  return (lookup == nullptr || !lookup->typing()) && (text == nullptr || text->locked());
}

void HistoryCommands::takeLastBack() {
  if (refusedWhileTyping(screen_, shell_)) return;
  const auto gateway = shell_.dtEn();
  if (!history::since(*gateway)) return shell_.showErrorNotice(history::kTitleTakeBack, data::kNothingIsKept);
  const std::int64_t last = history::lastOperationOf(*gateway, shell_.context.gUserID, sessionBegan_);
  if (last == 0)
    return shell_.showErrorNotice(history::kTitleTakeBack,
                                  "از هنگامي که اين صفحه باز شد کاري نکرده ايد که بتوان آن را برگرداند.");
  if (history::takeBackAsked(shell_, last)) readAgain();
}

void HistoryCommands::readAgain() {
  const std::int32_t account = screen_.AccountOnRecord;
  if (account > 0) {
    if (record_.readAgain(account)) {
      record_.showAccount(account);
    } else {
      record_.goIdle();
    }
  }
  tree_.refreshTree();
}

}  // namespace ledgertree::mainform
