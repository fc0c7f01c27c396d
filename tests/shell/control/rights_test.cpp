// Every command, tried by a user with every permission but one.

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "shell/control/control_house.h"
#include "support/table_watch.h"
#include "support/text_table.h"
#include "support/told_component.h"

namespace ledgertree::testing {
namespace {

constexpr int kRights[] = {301,   30101, 30102, 30103, 30104, 30105, 30106,
                           30107, 30108, 30109, 30110, 30111, 30112};

class RightsStory : public ControlHouse {
 protected:
  RightsStory() {
    database.execute(
        "insert into tblUser (ID, Name) values (1, 'حسابدار'), (2, 'مدير');"
        "insert into tblAccount (ID, Code, Title) values (5, '1', 'دارايي'), (6, '2', 'بدهي');"
        "insert into tblTarvoSystemParameters (ID, Value) values (311, '1')");
    shell.offers = {Offer::HiddenCommands, Offer::Export};
    for (const std::string name : {"SheetKit.SheetWriter", "PactKit.PactEditor"}) {
      shell.components.add(name, [this, name] {
        made += name;
        return std::make_unique<ToldComponent>([](const std::string&) { return data::Value(); });
      });
    }
    control.UserID(2);
  }

  /// Gives user 2 every permission numbered 301 or more but one, and nobody else any other.
  void grantAllBut(int lacking) {
    std::string rows;
    for (const int right : kRights)
      rows += (rows.empty() ? "(" : ", (") + std::to_string(right == lacking ? 1 : 2) + ", " +
              std::to_string(right) + ")";
    database.execute(
        "delete from tblUserPermission; insert into tblUserPermission (UserID, FormPermissionID) values " +
        rows);
  }
  void press(const std::string& name) {
    form().cmdi12.setVisible(true);
    person.act(name);
  }
  /// Tries a command with an account on the screen, and returns what is seen of it.
  std::string tryOut(const std::string& command) {
    notices.answer(1);  // typing begun by the previous command may be discarded
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
    std::string seen = made;
    for (const Notice& notice : notices.take()) seen += notice.title + "<" + notice.message + ">";
    for (const std::string& screen : desktop.showings) seen += screen;
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
    for (const auto& command : tableOf("shell/control/commands.txt", "commands")) {
      const int right = std::stoi(command[1]);
      const std::string& works = command.at(3);
      std::istringstream names(command[0]);
      for (std::string name; names >> name;) {
        SCOPED_TRACE(name + " without " + std::to_string(lacking));
        const bool refused = right != 0 && right == lacking;
        if (!refused && works.ends_with('!'))
          desktop.inModal(works.substr(0, works.size() - 1), [](ui::Form&) {});
        EXPECT_EQ(tryOut(name), refused ? command[2] + "<شما به انجام اين عمليات مجاز نيستيد.>" : works);
        if (!refused) continue;
        // A refusal is all that happens: nothing is read after it, and only the current period before it.
        const auto asked = faults.take();
        EXPECT_EQ(asked.back(), "spTarvoHasPermission");
        EXPECT_EQ(asked.size(), right == 301 ? 3U : 1U);
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
