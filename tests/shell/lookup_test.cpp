#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "lookup_database.h"
#include "shell/lookup/account_picker.h"
#include "shell/lookup/all_chosen.h"
#include "shell/lookup/selector.h"
#include "support/scripted_desktop.h"
#include "support/scripted_notices.h"
#include "support/steps.h"
#include "ui/buttons.h"

namespace ledgertree::shell {
namespace {

using testing::LookupDatabase;
using testing::LookupWalk;
using ui::Key;

constexpr const char* kText = "Provider=Memory;Data Source=here";

struct Screen : ui::Form {
  explicit Screen(Shell& shell)
      : Form(shell.surroundings(), "Screen", "", {.width = 6000, .height = 3000}),
        sltGroup(*this, shell, "sltGroup", {}),
        sltParent(*this, shell, "sltParent", {}),
        sltAccount(*this, shell, "sltAccount", {}) {}
  ui::PushButton cmdSave{*this, "cmdSave", {}, "ثبت"};
  Selector sltGroup;
  AccountPicker sltParent;
  AccountPicker sltAccount;
};

class Lookup : public ::testing::Test {
 protected:
  Lookup() {
    testing::provide(shell.providers, database);
    database.views["vwGroups"] = {{1, "10", "دارايي جاري"}, {2, "20", "بدهي"}, {3, "30", "دارایی ثابت"}};
    database.views["vwGroupsMinor"] = {{3, "", "بيش از يک سال"}};
    database.views["vwAccountMajor"] = {{7, "1", "موجودي"}, {8, "11", "تنخواه"}, {5, "211", "صندوق"}};
    desktop.show(*screen);
    screen->sltGroup.setConnectionText(kText);
    screen->sltGroup.setMajorView("vwGroups");
    screen->sltParent.setPickerConnection(kText);
  }

  void go(Selector& field, const std::string& section) {
    LookupWalk walk(
        field, [&field] { return std::to_string(field.SelectedID()); }, [this] { return told(); });
    walk.acts["set"] = [&field](auto& id) { field.setSelectedID(std::stoi(id)); };
    walk.acts["view"] = [&field](auto& view) { field.setMajorView(view); };
    walk.acts["minor"] = [&field](auto& view) { field.setMinorView(view); };
    walk.acts["connect"] = [&field](auto&) { field.setConnectionText(kText); };
    field.onSelectionChange = [this] { heard += "changed "; };
    go(walk, field, section);
  }
  void go(AccountPicker& field, const std::string& section) {
    const auto held = [&field] { return std::to_string(field.AccountID()) + "," + field.AccountCode(); };
    LookupWalk walk(field, held, [this] { return told(); });
    walk.acts["set"] = [&field](auto& id) { field.setAccountID(std::stoi(id)); };
    walk.acts["rest"] = [this](auto&) { std::ranges::for_each(screen->timers(), &ui::Timer::tick); };
    walk.acts["reload"] = [&field](auto&) { field.ReloadAccounts(); };
    walk.acts["closing"] = [&field](auto& how) { field.setClosingFlag(how == "on"); };
    walk.acts["connect"] = [&field](auto&) { field.setPickerConnection(kText); };
    walk.acts["disconnect"] = [this](auto&) { shell.pickerConnection.clear(); };
    field.onAccountChange = [this] { heard += "changed "; };
    go(walk, field, section);
  }

  LookupDatabase database;
  testing::ScriptedDesktop desktop;
  Shell shell{desktop};
  testing::ScriptedNotices notices{shell.components};
  std::unique_ptr<Screen> screen = std::make_unique<Screen>(shell);
  std::string heard;

 private:
  void go(LookupWalk& walk, ui::LookupField& field, const std::string& section) {
    walk.acts["wait"] = [this](auto&) { desktop.settle(); };
    walk.acts["find"] = [this, &field](auto& text) { field.edited(text), desktop.settle(); };
    walk.acts["focus"] = [&field](auto&) { field.focus(); };
    walk.acts["elsewhere"] = [this](auto&) { screen->cmdSave.focus(); };
    walk.acts["save"] = [this](auto&) { screen->press(ui::KeyChord::ctrlAnd('S')); };
    walk.acts["break"] = [this](auto&) { database.broken = true; };
    walk.acts["mend"] = [this](auto&) { database.broken = false; };
    walk.go("shell/lookup.txt", section);
  }
  std::string told() {
    std::string text = std::exchange(heard, {});
    for (const std::string& statement : std::exchange(database.statements, {})) text += statement + "; ";
    for (const std::string& search : std::exchange(database.searches, {})) text += "search<" + search + "> ";
    for (const testing::Notice& notice : notices.take()) text += notice.title + "<" + notice.message + "> ";
    const int before = std::exchange(open_, database.open);
    return before == open_ ? text : text + "open<" + std::to_string(open_) + "> ";
  }

  int open_ = 0;
};

TEST_F(Lookup, PersonPicksByTypingAPieceOfTheText) {
  go(screen->sltGroup, "picking by a piece of the text");
  EXPECT_EQ(screen->sltGroup.SelectedText(), "دارایی ثابت");
  database.broken = false;
  screen->sltGroup.type("دارا");
  EXPECT_EQ(screen->sltGroup.count(), "");
  desktop.settle();
  screen->sltGroup.press(Key::Down);
  EXPECT_EQ(screen->sltGroup.count(), "2 از 2");
}

TEST_F(Lookup, LeavingTheFieldPicksWhatTheTextCanOnlyMean) {
  Selector& group = screen->sltGroup;
  database.views["vwGroups"].insert(database.views["vwGroups"].end(), {{4, "40", "سود"}, {5, "50", "سود"}});
  database.rowsOfSlice = 1;
  const auto left = [this](ui::LookupField& field, const std::string& text) {
    field.focus();
    field.type(text);
    screen->cmdSave.focus();
    return field.text() + (field.unchosen() ? "!" : "");
  };
  // Before the search's first answer: the whole code or name, in any letters, or the only hit.
  const std::pair<const char*, const char*> texts[] = {
      {"20", "بدهي"},  {"۳۰ ", "دارایی ثابت"}, {"دارايي ثابت", "دارایی ثابت"},
      {"بده", "بدهي"}, {"دارا", "دارا!"},      {"0", "0!"},
      {"سود", "سود!"}, {"zz", "zz!"}};
  for (const auto& [text, shown] : texts) {
    group.setSelectedID(1);
    EXPECT_EQ(left(group, text), shown);
    EXPECT_EQ(group.SelectedID() == 1, group.unchosen()) << "half a word is nothing";
  }
  EXPECT_EQ(left(screen->sltParent, "21"), "صندوق") << "a piece of one code";
  EXPECT_EQ(left(screen->sltParent, "11"), "تنخواه") << "other codes hold it too";
  EXPECT_FALSE(allChosen(shell, {&screen->sltParent, &group}));
  EXPECT_NE(notices.taken(), "");
  EXPECT_TRUE(group.hasFocus());
  group.press(Key::Escape);
  EXPECT_TRUE(allChosen(shell, {&screen->sltParent, &group}));
  database.broken = true;
  EXPECT_EQ(left(group, "20"), "20!");
  EXPECT_EQ(notices.taken(), "خطا|the line is cut");
}

TEST_F(Lookup, LeavingTheFieldKeepsWhatIsntClearAndAButtonFindsAnEmptiedLineEmpty) {
  screen->cmdSave.setShortcut(ui::KeyChord::ctrlAnd('S'));
  screen->cmdSave.onClick = [&] { heard += "saves " + std::to_string(screen->sltGroup.SelectedID()) + " "; };
  go(screen->sltGroup, "leaving keeps what isn't clear");
}

TEST_F(Lookup, HitsArriveInSlicesAndANewerKeystrokeInterrupts) {
  auto& rows = database.views["vwGroups"];
  for (int id = 4; id <= 1000; ++id) rows.push_back({id, std::to_string(id), id % 2 == 0 ? "زوج" : "فرد"});
  database.rowsOfSlice = 50;
  Selector& group = screen->sltGroup;
  group.openList();
  desktop.settle();
  EXPECT_EQ(group.rows().size(), LookupSearch::kPageRows) << "no more than a page, unless one scrolls";
  EXPECT_EQ(database.searches.size(), 2U);
  EXPECT_FALSE(group.searching());
  for (int pages = 0; pages < 12; ++pages) group.press(Key::PageDown);
  EXPECT_TRUE(group.searching());
  desktop.settle();
  EXPECT_EQ(group.rows().size(), 2 * LookupSearch::kPageRows);
  EXPECT_EQ(group.highlighted(), 95);
  EXPECT_EQ(group.rows().back().id, 200);

  // The first slices find something, and the user types on between two of them.
  database.searches.clear();
  group.type("ف");
  desktop.whenIdle([&] {
    EXPECT_EQ(group.rows().size(), 23U) << "the hits of one slice are there, and the search goes on";
    EXPECT_TRUE(group.searching());
    group.type("ر");
  });
  desktop.settle();
  EXPECT_EQ(std::count(database.searches.begin(), database.searches.end(), "ف"), 1);
  EXPECT_EQ(group.rows().size(), LookupSearch::kPageRows);
  EXPECT_EQ(group.text(), "فر");
  EXPECT_EQ(group.count(), "1 از بيش از 100");
}

TEST_F(Lookup, ProgramWritesAnIDInAnyOrderAndRaisesNothing) {
  database.views["[dbo].[vwGroups]"] = database.views["vwGroups"];
  Selector entity(*screen, shell, "sltEntity", {});
  go(entity, "an ID by the program");
}

TEST_F(Lookup, LostConnectionIsOneNoticeAndTheNextUseConnectsAgain) {
  go(screen->sltGroup, "a connection is lost and comes again");
}

TEST_F(Lookup, NothingDangles) {
  // The form is destroyed while a search waits, or by its own pick.
  database.rowsOfSlice = 1;
  screen->sltGroup.type("ب");
  screen.reset();
  desktop.settle();
  EXPECT_EQ(database.open, 0);
  screen = std::make_unique<Screen>(shell);
  screen->sltParent.onAccountChange = [&] { screen.reset(); };
  screen->sltParent.type("صندوق");
  screen->sltParent.press(Key::Enter);
  desktop.settle();
  EXPECT_EQ(screen, nullptr);
  EXPECT_EQ(database.open, 0);
}

TEST_F(Lookup, PickersShareOneConnectionText) {
  database.views["vwAccountMinor"] = {{5, "", "دارايي"}};
  AccountPicker& account = screen->sltAccount;
  go(account, "picking an account");
  EXPECT_EQ(account.AccountTitle(), "موجودي");
  database.views["vwAccountMajor"][0] = {7, "2", "موجودي نقد"};
  go(account, "an account that is another one now");
  EXPECT_FALSE(account.ClosingFlag());
}

TEST_F(Lookup, OneConnectionUntilThereIsAnotherText) {
  screen->sltGroup.setSelectedID(1);
  screen->sltGroup.setConnectionText(kText);
  screen->sltGroup.type("د");
  desktop.settle();
  EXPECT_EQ(database.opened, 1);
  screen->sltGroup.setConnectionText("Provider=Memory;Data Source=there");
  EXPECT_EQ(database.open, 0);
  EXPECT_EQ(screen->sltGroup.SelectedID(), 1);
}

TEST_F(Lookup, DeleteEmptiesThePickerOnceWhoeverAnswersIt) {
  AccountPicker& parent = screen->sltParent;
  go(parent, "emptying a picker");
  parent.onKeyDown = [&](int key) {
    heard += std::to_string(key) + " ";
    if (key == ui::kKeyCodeDelete) parent.ClearAccount();
  };
  parent.onAccountChange = [&] { heard += "changed to " + parent.AccountCode(); };
  parent.setAccountID(8);
  parent.press(Key::Delete);
  EXPECT_EQ(heard, "46 changed to ") << "what follows the parent finds it empty";
  EXPECT_EQ(parent.AccountID(), -1);
}

}  // namespace
}  // namespace ledgertree::shell
