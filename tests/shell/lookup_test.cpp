#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "lookup_database.h"
#include "shell/lookup/account_picker.h"
#include "shell/lookup/all_chosen.h"
#include "shell/lookup/selector.h"
#include "support/scripted_desktop.h"
#include "support/scripted_notices.h"
#include "ui/buttons.h"

namespace ledgertree::shell {
namespace {

using testing::LookupDatabase;
using ui::Key;

constexpr const char* kText = "Provider=Memory;Data Source=here";

struct Screen : ui::Form {
  explicit Screen(Shell& shell)
      : Form(shell.surroundings(), "Screen", "", {.width = 6000, .height = 3000}),
        sltGroup(*this, shell, "sltGroup", {}),
        sltParent(*this, shell, "sltParent", {}),
        sltAccount(*this, shell, "sltAccount", {}) {
    sltGroup.onSelectionChange = [this] { ++groupChanges; };
    sltParent.onAccountChange = [this] { ++parentChanges; };
  }
  int groupChanges = 0;
  int parentChanges = 0;
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
    database.views["vwAccountMajor"] = {{5, "211", "صندوق"}, {7, "1", "موجودي"}, {8, "11", "تنخواه"}};
    desktop.show(*screen);
    screen->sltGroup.setConnectionText(kText);
    screen->sltGroup.setMajorView("vwGroups");
    screen->sltParent.setPickerConnection(kText);
  }

  /// The names in the open list, the highlighted one in brackets.
  static std::string list(const ui::LookupField& field) {
    std::string names;
    for (std::size_t index = 0; index < field.rows().size(); ++index) {
      const bool here = static_cast<int>(index) == field.highlighted();
      const std::string& name = field.rows()[index].text;
      names += (names.empty() ? "" : ", ") + (here ? "[" + name + "]" : name);
    }
    return field.listOpen() ? names : "closed";
  }

  LookupDatabase database;
  testing::ScriptedDesktop desktop;
  Shell shell{desktop};
  testing::ScriptedNotices notices{shell.components};
  std::unique_ptr<Screen> screen = std::make_unique<Screen>(shell);
};

TEST_F(Lookup, PersonPicksByTypingAPieceOfTheText) {
  Selector& group = screen->sltGroup;
  group.type("داراي");
  EXPECT_TRUE(database.searches.empty()) << "typing waits for nothing";
  desktop.settle();
  EXPECT_EQ(database.searches, std::vector<std::string>{"داراي"}) << "the searches typed over never ran";
  EXPECT_EQ(list(group), "[دارايي جاري], دارایی ثابت");
  group.press(Key::Down);
  group.press(Key::Down);
  EXPECT_EQ(screen->groupChanges, 0);
  group.press(Key::Enter);
  EXPECT_EQ(screen->groupChanges, 1);
  EXPECT_EQ(group.SelectedID(), 3);
  EXPECT_EQ(group.SelectedText(), "دارایی ثابت");
  EXPECT_EQ(group.text(), "دارایی ثابت");
  EXPECT_EQ(list(group), "closed");

  // The companion view says more about the row, for whoever looks closer.
  group.setMinorView("vwGroupsMinor");
  group.setSelectedID(3);
  group.lookCloser();
  desktop.settle();
  EXPECT_EQ(group.detail(), "بيش از يک سال");
  group.setMinorView("vwGroupsMinor");
  EXPECT_EQ(group.detail(), "بيش از يک سال");
  database.broken = true;
  group.setMinorView("vwOther");
  EXPECT_EQ(group.detail(), "") << "another view, another text";
  group.lookCloser();
  desktop.settle();
  EXPECT_EQ(group.detail() + notices.taken(), "") << "it only explains: nobody is told";
  EXPECT_EQ(database.open, 0);
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
  // Ahead of the first answer of the search: the whole code or name, in any letters, or the only hit.
  const std::pair<const char*, const char*> texts[] = {
      {"20", "بدهي"},  {"۳۰ ", "دارایی ثابت"}, {"دارايي ثابت", "دارایی ثابت"},
      {"بده", "بدهي"}, {"دارا", "دارا!"},      {"0", "0!"},
      {"سود", "سود!"}, {"zz", "zz!"}};
  for (const auto& [text, shown] : texts) {
    group.setSelectedID(1);
    EXPECT_EQ(left(group, text), shown);
    EXPECT_EQ(group.SelectedID() == 1, group.unchosen()) << "half a word is nothing";
  }
  EXPECT_EQ(left(screen->sltParent, "11"), "تنخواه") << "other codes hold it too";
  EXPECT_EQ(screen->groupChanges, 4);
  EXPECT_FALSE(allChosen(shell, {&screen->sltParent, &group}));
  EXPECT_NE(notices.taken(), "");
  EXPECT_TRUE(group.hasFocus());
  group.press(Key::Escape);
  EXPECT_TRUE(allChosen(shell, {&screen->sltParent, &group}));
  database.broken = true;
  EXPECT_EQ(left(group, "20"), "20!");
  EXPECT_EQ(notices.taken(), "خطا|the line is cut");
  database.broken = false;
  screen->groupChanges = 0;
  group.setSelectedID(2);
  // A button pressed by its shortcut finds what a click on it would find.
  std::int32_t saved = 0;
  screen->cmdSave.setShortcut(ui::KeyChord::ctrlAnd('S'));
  screen->cmdSave.onClick = [&] { saved = group.SelectedID(); };
  group.focus();
  group.press(Key::Backspace);
  screen->press(ui::KeyChord::ctrlAnd('S'));
  EXPECT_EQ(saved, -1);
  EXPECT_EQ(screen->groupChanges, 1);
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

  // The first slices find something, and between two of them the person goes on typing.
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
}

TEST_F(Lookup, ProgramWritesAnIDInAnyOrderAndRaisesNothing) {
  Selector entity(*screen, shell, "sltEntity", {});
  int changes = 0;
  entity.onSelectionChange = [&] { ++changes; };
  entity.setSelectedID(2);
  entity.setMajorView("[dbo].[vwGroups]");
  database.views["[dbo].[vwGroups]"] = database.views["vwGroups"];
  entity.setConnectionText(kText);
  EXPECT_EQ(entity.SelectedText(), "بدهي");
  EXPECT_EQ(database.statements.size(), 1U) << "one statement for the row of an ID";
  for (const int none : {0, -1, -99}) {
    entity.setSelectedID(1);
    EXPECT_FALSE(entity.IsEmpty());
    entity.setSelectedID(none);
    EXPECT_TRUE(entity.IsEmpty());
    EXPECT_EQ(entity.SelectedID(), -1);
    EXPECT_EQ(entity.SelectedText(), "");
  }
  entity.setSelectedID(99);
  EXPECT_FALSE(entity.IsEmpty()) << "the view lost it, nobody else did";
  EXPECT_EQ(std::to_string(entity.SelectedID()) + " " + entity.text(), "99 99 (در فهرست نيست)");

  // Another view at run time empties the selector, the same one doesn't.
  entity.setSelectedID(1);
  entity.setMajorView("[dbo].[vwGroups]");
  EXPECT_EQ(entity.SelectedID(), 1);
  entity.setMajorView("vwGroupsMinor");
  EXPECT_TRUE(entity.IsEmpty());
  entity.setSelectedID(3);
  EXPECT_EQ(entity.SelectedText(), "بيش از يک سال");
  EXPECT_EQ(notices.taken(), "");

  // A name out of the data that says more than a name reaches no statement.
  database.statements.clear();
  entity.setMajorView("vwGroups; delete tblAccount");
  EXPECT_NE(notices.taken(), "");
  entity.setSelectedID(1);
  entity.openList();
  desktop.settle();
  EXPECT_TRUE(database.statements.empty());
  EXPECT_TRUE(database.searches.empty());
  EXPECT_EQ(changes, 0);
}

TEST_F(Lookup, LostConnectionIsOneNoticeAndTheNextUseConnectsAgain) {
  Selector& group = screen->sltGroup;
  group.setSelectedID(1);
  database.broken = true;
  group.setSelectedID(2);
  EXPECT_EQ(notices.taken(), "خطا|the line is cut");
  EXPECT_EQ(group.SelectedID(), 2) << "a save writes what was there";
  EXPECT_EQ(database.open, 0);
  group.type("دا");
  desktop.settle();
  EXPECT_EQ(notices.taken(), "") << "told once";
  EXPECT_FALSE(group.searching());
  group.press(Key::Escape);
  desktop.settle();
  EXPECT_EQ(notices.taken(), "خطا|the line is cut") << "the next visit tells it again";

  database.broken = false;
  group.type("دا");
  desktop.settle();
  EXPECT_EQ(list(group), "[دارايي جاري], دارایی ثابت");
  group.press(Key::Escape);
  desktop.settle();
  EXPECT_EQ(group.text(), "بدهي") << "the row that couldn't be read";
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(Lookup, NothingDangles) {
  // The form goes while a search waits, or by what its own pick sets off.
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

TEST_F(Lookup, PickersShareOneConnectionTextAndFindACodeFirst) {
  AccountPicker& account = screen->sltAccount;
  account.type("۱۱");
  desktop.settle();
  EXPECT_EQ(list(account), "[تنخواه], صندوق") << "the codes that begin so, ahead of those that hold it";
  account.edited("1");
  desktop.settle();
  account.pick(0);
  EXPECT_EQ(account.AccountID(), 7);
  EXPECT_EQ(account.AccountCode(), "1");
  EXPECT_EQ(account.AccountTitle(), "موجودي");
  database.views["vwAccountMinor"] = {{5, "", "دارايي"}};
  for (const auto& [id, detail] : {std::pair{5, "211 - دارايي"}, {7, "1"}}) {
    account.setAccountID(id);
    account.lookCloser();
    desktop.settle();
    EXPECT_EQ(account.detail(), detail);
  }

  database.views["vwAccountMajor"][1] = {7, "2", "موجودي نقد"};
  account.ReloadAccounts();
  EXPECT_EQ(account.AccountCode(), "2");
  EXPECT_EQ(account.text(), "موجودي نقد");
  account.setClosingFlag(true);
  EXPECT_TRUE(account.ClosingFlag());
  EXPECT_EQ(database.open, 0);
  account.setAccountID(5);
  account.openList();
  desktop.settle();
  EXPECT_EQ(database.open, 0) << "closed stays closed";
  account.setClosingFlag(false);
  account.setAccountID(5);
  EXPECT_EQ(account.AccountCode(), "211");

  // An ID that couldn't be read is read as soon as it can be: with a connection, or when the field is left.
  shell.pickerConnection.clear();
  account.setAccountID(8);
  EXPECT_EQ(account.AccountCode(), "");
  EXPECT_EQ(account.AccountID(), 8);
  account.setPickerConnection(kText);
  EXPECT_EQ(account.AccountCode(), "11");
  database.broken = true;
  account.setAccountID(5);
  database.broken = false;
  account.openList();
  account.press(Key::Escape);
  desktop.settle();
  EXPECT_EQ(account.AccountCode(), "211");
  EXPECT_EQ(notices.take().size(), 1U);
}

TEST_F(Lookup, ACodeIsLookedForInTheIndexAndAnIDByItsKey) {
  AccountPicker& account = screen->sltAccount;
  const std::string digits = "12345678901234567890";
  const std::pair<std::string, std::string> conditions[] = {
      {"11", "Code>='11' and Code<'12'"},
      {" ۱۹", "Code>='19' and Code<'2'"},
      {"99", "Code>='99'"},
      {"1x'", "Code='1x'''"},
      {digits, "Code>='" + digits + "' and Code<'12345678901234567891'"},
      {digits + "1", ""},
      {" ", ""},
      {std::string("1\xff"), ""}};
  account.setAccountID(5);
  EXPECT_EQ(database.statements, std::vector<std::string>{"Select * From vwAccountMajor Where ID=5"});
  for (const auto& [typed, condition] : conditions) {
    database.statements.clear();
    account.edited(typed);
    desktop.settle();
    std::vector<std::string> asked;
    if (!condition.empty())
      asked.push_back("Select top 20 * From vwAccountMajor Where " + condition + " Order by Code");
    EXPECT_EQ(database.statements, asked) << typed;
  }
  account.press(Key::Escape);

  // One connection for all of it, until it is given another text.
  EXPECT_EQ(database.opened, 1);
  screen->sltGroup.setSelectedID(1);
  screen->sltGroup.setConnectionText(kText);
  EXPECT_EQ(database.open, 2);
  screen->sltGroup.setConnectionText("Provider=Memory;Data Source=there");
  EXPECT_EQ(database.open, 1);
  EXPECT_EQ(screen->sltGroup.SelectedID(), 1);
}

TEST_F(Lookup, DeleteEmptiesThePickerOnceWhoeverAnswersIt) {
  AccountPicker& parent = screen->sltParent;
  std::vector<int> keys;
  parent.setAccountID(5);
  EXPECT_EQ(screen->parentChanges, 0);
  parent.press(Key::Delete);
  EXPECT_EQ(screen->parentChanges, 1);
  parent.onKeyDown = [&](int key) {
    keys.push_back(key);
    if (key == ui::kKeyCodeDelete) parent.ClearAccount();
  };
  std::string codeSeen = "none";
  parent.onAccountChange = [&] {
    ++screen->parentChanges;
    codeSeen = parent.AccountCode();
  };
  parent.setAccountID(8);
  parent.press(Key::Delete);
  EXPECT_EQ(screen->parentChanges, 2);
  EXPECT_EQ(codeSeen, "") << "what follows the parent finds it empty";
  EXPECT_EQ(parent.AccountID(), -1);
  EXPECT_EQ(keys, std::vector<int>{46});
}

}  // namespace
}  // namespace ledgertree::shell
