#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "batch/account_batch.h"
#include "coding/recoding/auto_codding.h"
#include "mainform/form/form_main.h"
#include "shell/preview.h"
#include "shell/work_progress.h"
#include "support/table_watch.h"

namespace ledgertree::testing {

/// A user at the bulk screens, opened from the main screen, on a chart small enough to be listed here: 1 (11)
/// > 3 (1101) > 5 (110101), 6 (110102); 1 > 4 (1102); 2 (12) > 7 (1201). The neighbours 2 and 7 have a
/// document line, a period, a class and an entity, like the accounts below 1.
class BulkHouse : public WatchedHouse {
 protected:
  BulkHouse() {
    shell.context.gPositionID = 12;
    given(R"(
      insert into tblUser (ID, Name) values (1, 'حسابدار'), (2, 'بيننده');
      insert into tblUserPermission (UserID, FormPermissionID) values (1, 301), (1, 30105), (1, 30108);
      insert into tblAccount (ID, ParentID, Code, Title, IsPermanent, AccountNatureID) values
        (1, null, '11', 'دارايي', 1, 2), (2, null, '12', 'بدهي', 0, 1), (3, 1, '1101', 'بانک', 0, 0),
        (4, 1, '1102', 'صندوق', null, null), (5, 3, '110101', 'ملت', 0, 1), (6, 3, '110102', 'ملي', 0, 0),
        (7, 2, '1201', 'وام', 0, 0);
      insert into tblAccountDocument (ID, FarsiDocumentDate) values (501, '1403/01/01');
      insert into tblAccountDocumentDetail (ID, DocumentID, AccountID) values (7, 501, 7);
      insert into tblAccountPeriodAccount (AccountID, PeriodID) values (1, 1), (5, 1), (7, 1);
      insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (1, 1, 1), (5, 1, 1), (7, 1, 1);
      insert into tblAccountRelatedObjects (AccountID, AccountGroupID) values (1, 1), (5, 1), (7, 1);
    )");
  }

  void start() {
    form = std::make_unique<mainform::FormMain>(shell);
    form->load();
    form->onClosed = [this] { form.reset(); };
    desktop.show(*form);
  }

  /// Opens a screen from the menu, and runs `act` there.
  void recode(const std::function<void(coding::frmAutoCodding&)>& act) {
    inScreen("frmAutoCodding", act);
    form->mnuSameCoding.click();
  }
  void deleteInBatch(const std::function<void(batch::frmAccountBatch&)>& act) {
    inScreen("frmAccountBatch", act);
    form->mnuAccountBatch.click();
  }

  /// The user searches for an account by its code, and takes the first hit.
  void pick(shell::AccountPicker& picker, const std::string& code) {
    picker.focus();
    picker.type(code);
    desktop.settle();
    picker.press(ui::Key::Enter);
    desktop.settle();
    ASSERT_EQ(picker.AccountCode(), code);
  }
  void answer(int yes) { notices.answer(yes); }
  /// Opens a preview: "look" returns the summary and the rows, "look some" the filtered rows, "look go" the
  /// rows and continues to the work, confirming it. Row numbers and IDs are left out.
  std::string look(ui::PushButton& preview, const std::string& how) {
    std::string seen;
    inScreen<shell::frmPreview>("frmPreview", [&](shell::frmPreview& screen) {
      if (how == "some") screen.chkFilter.click();
      if (how.empty()) seen = screen.lblSummary.caption() + (screen.cmdGo.enabled() ? " " : " [no way on] ");
      for (int row = 0; row < screen.flxRows.rowCount(); ++row) {
        for (int column = 1; column < 6; ++column)
          if (const auto& cell = screen.flxRows.text(row, column); !cell.empty()) seen += cell + ", ";
        seen.replace(seen.size() - 2, 2, "; ");
      }
      if (how == "go") answer(1), screen.cmdGo.click();
    });
    preview.click();
    return seen.substr(0, seen.size() - (seen.empty() ? 0 : 1));
  }
  /// Confirms a command, and delays its database commands that contain `words`; `meanwhile` runs at each
  /// repaint. Returns what the progress bar showed.
  template <typename Screen>
  std::string longWork(Screen& screen, ui::PushButton& command, const std::string& words,
                       const std::function<void()>& meanwhile) {
    faults.onCommand = [words](const std::string& one) {
      if (one.find(words) != std::string::npos)
        std::this_thread::sleep_for(shell::WorkProgress::kBeforeShowing);
    };
    std::string seen;
    desktop.onRepaint = [&] {
      seen += screen.progressBar.text() + (screen.progressBar.shown() ? "; " : " hidden; ");
      command.click();
      meanwhile();
    };
    EXPECT_FALSE(screen.progressBar.visible());
    answer(1);
    command.click();
    EXPECT_FALSE(screen.progressBar.visible());
    desktop.onRepaint = nullptr;
    faults.onCommand = nullptr;
    return seen;
  }
  /// The tree's text for an account below a top-level one, which it expands; empty if it isn't there.
  std::string inTree(int parent, int account) {
    ui::Tree& tree = form->treeAccount;
    tree.expand(tree.find("-1:" + std::to_string(parent)));
    return nodeText(account);
  }
  /// Its text if it is in the tree already.
  std::string nodeText(int account) const {
    const ui::Tree& tree = form->treeAccount;
    const ui::NodeId node = tree.find("-1:" + std::to_string(account));
    return node == ui::kNoNode ? "" : tree.text(node);
  }

  std::unique_ptr<mainform::FormMain> form;
};

inline constexpr const char* kNoWayBack =
    "هشدار|پس از انجام اين عمليات، امكان بازگشت وجود ندارد. آيا ادامه مي دهيد؟";

}  // namespace ledgertree::testing
