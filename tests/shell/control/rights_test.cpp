// Every command, tried by a person who has every right but one.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "shell/control/control_house.h"
#include "support/table_watch.h"

namespace ledgertree::testing {
namespace {

struct Command {
  std::vector<std::string> names;
  int right;          ///< 0: everybody may
  std::string title;  ///< of the refusal
  std::string works;  ///< what is seen of it where it isn't refused: a screen, a notice, the mode
};

constexpr int kRights[] = {301,   30101, 30102, 30103, 30104, 30105, 30106,
                           30107, 30108, 30109, 30110, 30111, 30112};
constexpr const char* kError = "خطا";
constexpr const char* kProblem = "اشکال";
constexpr const char* kSureToDelete = "حذف حساب |آيا از حذف حساب مورد نظر اطمينان داريد؟ ";

const Command kCommands[] = {
    {{"ClearShow"}, 301, kError, "FormMain "},
    {{"View"}, 0, "", "FormMain "},
    {{"cmdNew", "mnuFonc1"}, 30101, kError, "mode 2"},
    {{"cmdEdit", "mnuFonc2"}, 30102, kError, "mode 1"},
    {{"cmdDelete", "mnuFonc4"}, 30103, kError, kSureToDelete},
    {{"mnuSameCoding"}, 30105, kError, "frmAutoCodding! "},
    {{"mnuAccountBatch"}, 30108, kError, "frmAccountBatch! "},
    {{"cmdPeriodBranch"}, 30110, kProblem, "FormPeriodBranch! "},
    {{"cmdCopyPeriod"}, 30111, kProblem, "FormCopyPeriodAccount! "},
    {{"cmdDeletePeriod"}, 30112, kProblem, "FormDeletePeriod! "},
    {{"cmdRelClasses"}, 0, "", "frmAccountRelClasses! "},
    {{"mnuExcelCode"}, 0, "", "SheetKit.SheetWriter"},
    {{"mnuFonc5"}, 0, "", "PactKit.PactEditor"},
    {{"cmdTools", "cmdi12"}, 0, "", "i12"},
    {{"cmdOperations"}, 0, "", "mnuOperations"},
    {{"mnuExcelLevel", "cmdRefreshAccountTree", "optPeriodic", "optPeriodAll", "mnuViewCode",
      "mnuViewCodeComplete", "mnuView1", "mnuView2"},
     0,
     "",
     ""},
    {{"mnuFonc9", "cmdExit"}, 0, "", "closed"},
};

/// What is asked for, and whatever it does.
class Quiet : public shell::OutsideComponent {
 public:
  void set(std::string_view, const data::Value&) override {}
  data::Value get(std::string_view) override { return {}; }
  void call(std::string_view, const std::vector<data::Value>&) override {}
};

class RightsStory : public ControlHouse {
 protected:
  RightsStory() {
    database.execute(
        "insert into tblUser (ID, Name) values (1, 'حسابدار'), (2, 'مدير');"
        "insert into tblAccount (ID, Code, Title) values (5, '1', 'دارايي'), (6, '2', 'بدهي');"
        "insert into tblTarvoSystemParameters (ID, Value) values (311, '1')");
    shell.offersHiddenCommands = true;
    for (const std::string name : {"SheetKit.SheetWriter", "PactKit.PactEditor"}) {
      shell.components.add(name, [this, name] {
        made += name;
        return std::make_unique<Quiet>();
      });
    }
    control.UserID(2);
  }

  /// Gives user 2 every right of a number from 301 on but one, and nobody else any other.
  void grantAllBut(int lacking) {
    std::string rows;
    for (const int right : kRights)
      rows += (rows.empty() ? "(" : ", (") + std::to_string(right == lacking ? 1 : 2) + ", " +
              std::to_string(right) + ")";
    database.execute(
        "delete from tblUserPermission; insert into tblUserPermission (UserID, FormPermissionID) values " +
        rows);
  }
  static ui::MenuEntry* entryOf(const std::vector<ui::MenuEntry*>& menu, const std::string& name) {
    for (ui::MenuEntry* entry : menu) {
      if (entry->name() == name) return entry;
      if (ui::MenuEntry* below = entryOf(entry->entries(), name)) return below;
    }
    return nullptr;
  }
  void press(const std::string& name) {
    form().cmdi12.setVisible(true);
    ui::Control* const found = form().find(name);
    if (auto* button = dynamic_cast<ui::PushButton*>(found)) return button->click();
    if (auto* button = dynamic_cast<ui::RadioButton*>(found)) return button->click();
    entryOf(form().menu(), name)->click();
  }
  /// Tries a command with an account on the screen, and gives what is seen of it.
  std::string tryOut(const std::string& command) {
    notices.answer(1);  // what the command before began to type may go
    control.View(std::int16_t{5});
    notices.forget();
    desktop.showings.clear();
    desktop.poppedUp = nullptr;
    made.clear();
    static_cast<void>(faults.take());
    if (command == "ClearShow") {
      control.ClearShow();
    } else if (command == "View") {
      control.View(std::int16_t{6});
    } else {
      press(command);
    }
    std::string seen = notices.taken() + made;
    for (const std::string& screen : desktop.showings) seen += screen + " ";
    if (desktop.poppedUp != nullptr) seen += desktop.poppedUp->name();
    if (session.form() == nullptr) return seen + "closed";
    const auto mode = form().formMode;
    if (mode != mainform::FormMode::ModeView) seen += "mode " + std::to_string(static_cast<int>(mode));
    return seen;
  }

  std::string made;
};

TEST_F(RightsStory, EachRightGuardsItsOwnCommandsAndNoOther) {
  TableWatch tables(database);
  std::vector<int> lackings(std::begin(kRights), std::end(kRights));
  lackings.insert(lackings.begin(), 0);
  for (const int lacking : lackings) {
    grantAllBut(lacking);
    static_cast<void>(tables.changes());
    for (const Command& command : kCommands) {
      for (const std::string& name : command.names) {
        SCOPED_TRACE(name + " without " + std::to_string(lacking));
        const bool refused = command.right != 0 && command.right == lacking;
        if (!refused && command.works.ends_with("! "))
          desktop.inModal(command.works.substr(0, command.works.size() - 2), [](ui::Form&) {});
        EXPECT_EQ(tryOut(name),
                  refused ? command.title + "|شما به انجام اين عمليات مجاز نيستيد." : command.works);
        if (!refused) continue;
        // A refusal is all that happens: nothing is read behind it, and but for the current period nothing
        // ahead.
        const auto asked = faults.take();
        EXPECT_EQ(asked.back(), "spTarvoHasPermission");
        EXPECT_EQ(asked.size(), command.right == 301 ? 3U : 1U);
      }
    }
    EXPECT_EQ(tables.changes(), "");
  }
  EXPECT_EQ(desktop.surprises(), std::vector<std::string>());
}

TEST_F(RightsStory, WhatIsBeingTypedIsSavedOrGivenUpWithoutAnyRight) {
  for (const std::string command : {"cmdSave", "cmdCancel", "cmdExit"}) {
    grantAllBut(0);
    control.View(std::int16_t{5});
    press("cmdEdit");
    form().txtTitle.paste("نام " + command);
    database.execute("delete from tblUserPermission");
    press("cmdAutoCode");
    notices.answer(1);
    press(command);
    const auto told = notices.take();
    for (const Notice& notice : told) EXPECT_TRUE(notice.question) << notice.message;
    EXPECT_EQ(session.form() == nullptr, command == "cmdExit");
    EXPECT_EQ(database.text("select Title from tblAccount where ID = 5"), "نام cmdSave");
  }
}

}  // namespace
}  // namespace ledgertree::testing
