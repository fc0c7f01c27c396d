#include "accounts/account_saving.h"

#include "accounts/account_story.h"
#include "data/data_error.h"
#include "support/text_table.h"

namespace ledgertree::testing {
namespace {

using mainform::FormMode;

class SavingStory : public AccountStory {
 protected:
  static auto failing(const std::string& about) {
    using Reason = data::DataError::Reason;
    const auto [name, words] = cut(about);
    return [reason = name == "TimeOut" ? Reason::TimeOut : Reason::Connection, words = words](
               const std::string& command, const auto&...) {
      if (!words.empty() && command.starts_with(words))
        throw data::DataError(reason, 0, std::string(Faults::kMessage));
    };
  }
  SavingStory() {
    // "ahead TimeOut spX" fails the command that begins so, "behind" loses its answer, and nothing resets it.
    person.acts["ahead"] = [this](auto& about) { faults.onCommand = failing(about); };
    person.acts["behind"] = [this](auto& about) { faults.onAnswer = failing(about); };
    person.acts["outcome"] = [this](auto&) {
      form->cmdSave.click();
      const auto told = notices.take();
      return (told.size() == 1 ? toldOf(told[0].message) : "?") + " " + form->lblMessage.caption();
    };
  }
  /// The result of a save, as the notice states it after the failure.
  static std::string toldOf(const std::string& message) {
    for (const auto& row : tableOf("accounts/steps.txt", "what a save came to"))
      if (message == std::string(Faults::kMessage) + "\n" + row[1]) return row[0];
    ADD_FAILURE() << message;
    return "";
  }
  /// Everything that a save may change.
  std::string chart() {
    return database.rows(
               "select ID, ParentID, Code, Title, NoLevel, IsClosed, GroupID, MaxDebit from tblAccount order "
               "by ID") +
           "#" + database.rows("select * from tblAccountParent order by 1, 2") + "#" +
           database.rows("select * from tblAccountRelatedObjects order by 1, 2, 3, 4");
  }
};

TEST_F(SavingStory, ANewAccountIsStoredWithEverythingThatWasTyped) {
  account(1, 0, "11", "دارايي");
  start();
  EXPECT_EQ(treeLabels(), "11 ... دارايي\n");
  go("all that can be typed");
  form->datCreate.setEnglishdate({.year = 2024, .month = 3, .day = 20});
  TableWatch tables(database);
  ASSERT_EQ(save(), 2);
  EXPECT_EQ(stored(2),
            "ParentID=1\nCode=1101\nTitle=مشتريان\nNoLevel=2\nGroupID=5\nBranchID=3\nPositionID=10\n"
            "CreateDate=2024-03-20 00:00:00\nFarsiCreateDate=1403/01/01\nNotes= يادداشت \n"
            "AccountNatureID=2\nIsPermanent=1\nIsClosed=1\nMaxDebit=12345670000\nMaxCredit=123457\n");
  EXPECT_EQ(tables.changes(), "tblAccount: +2\ntblAccountParent: +1|2\ntblAccountRelatedObjects: +2|5|11|8")
      << "it is in no period";
  EXPECT_EQ(record(),
            "txtID=2\ntxtMotherCode=11\ntxtCode=01\ntxtTitle=مشتريان\ntxtNotes= يادداشت \n"
            "txtMaxDebit=1234567\ntxtMaxCredit=12.3457\nsltAccount=2 مشتريان\nsltParent=1 دارايي\n"
            "sltGroup=5 فروشندگان\nsltBranch=3 دفتر\nsltPosition=10 رنگ\nsltEntityType=11 01_اشخاص\n"
            "sltEntity=8 مغان\ndatCreate=1403/01/01\nFrameRemanedType=2 OptDebitAndCredit\n"
            "FrameAccountType=1 OptNotReg\nFrameAccountStatus=1 OptClose\n");
  EXPECT_EQ(treeLabels(), "11 ... دارايي +\n") << "and the tree starts over";

  // Nothing is carried over to the next account.
  EXPECT_EQ(stored(saveNew(-1, "بدهي", "2")), "Code=2\nTitle=بدهي\n");
  EXPECT_EQ(relations(3), "null|null|null");
}

TEST_F(SavingStory, WhatLeftItsListStaysStoredAndAClassThatIsGoneIsAskedAbout) {
  accounts({{1, 0, "1", "دارايي"}, {2, 1, "101", "بانک"}});
  bool plain = false;
  person.acts["has"] = [&](auto& place) {
    database.execute("update tblAccount set GroupID = " + place.substr(0, place.find(',')) +
                     ", BranchID = 778, PositionID = 777 where ID = 2; delete from tblAccountRelatedObjects;"
                     "insert into tblAccountRelatedObjects values (2, " +
                     place + ")");
    edit(2);
    form->LastNewParentID = plain ? 1 : 0;
  };
  person.acts["changed"] = [this](auto& command) {
    TableWatch tables(database);
    person.act(command);
    return tables.changes();
  };
  person.acts["lists"] = [this](auto&) {
    return std::to_string(form->sltEntityType.SelectedID()) + " «" + form->sltEntity.text() +
           (form->sltEntity.IsActive() ? "» " : "»! ") + form->sltBranch.text() + " @" +
           form->focused()->name();
  };
  start();
  edit(2);
  save();  // null texts and amounts become empty
  for (const bool each : {true, false}) {
    plain = each;
    go("what left its list");
  }
  go("a class that is gone");
}

TEST_F(SavingStory, AnEditWritesTheFieldThatWasChangedAndNoOther) {
  accounts(
      {{1, 0, "11", "دارايي"}, {2, 1, "1101", "مشتريان"}, {3, 0, "3", "همسايه"}, {4, 2, "110101", "زير"}});
  const std::string full =
      "update tblAccount set GroupID = 5, BranchID = 3, PositionID = 10, Notes = 'ن', AccountNatureID = 2,"
      " IsPermanent = 1, IsClosed = 1, MaxDebit = " +
      database.amount(20000) + ", MaxCredit = " + database.amount(35000) +
      "; update tblAccount set ParentID = 1, Code = '1101', Title = 'مشتريان' where ID = 2;"
      "delete from tblAccountRelatedObjects;"
      "insert into tblAccountRelatedObjects values (2, 5, 11, 8), (3, 4, 12, 6)";
  start();
  edit(2);
  save();  // null texts become empty
  TableWatch tables(database);
  person.acts["full"] = [&](auto&) {
    database.execute(full);
    static_cast<void>(tables.changes());
    edit(2);
  };
  bool plain = false;
  person.acts["changed"] = [&](auto&) {
    form->LastNewParentID = plain ? form->sltParent.AccountID() : 0;
    EXPECT_EQ(save(), 2);
    return tables.changes();
  };
  go("an edit of one field");
  plain = true;
  go("an edit of one field");
}

TEST_F(SavingStory, ACodeThatExistsIsRefusedAndTheFormGoesOn) {
  accounts({{1, 0, "Ab1", "دارايي"}, {2, 0, "2", "بدهي"}});
  start();
  go("a code that exists");
}

TEST_F(SavingStory, WhatTheHostShowsMeanwhileChangesNothingOfASave) {
  accounts({{1, 0, "1", "دارايي"}, {2, 1, "101", "بانک"}, {3, 0, "3", "بدهي"}});
  database.execute(
      "update tblAccount set IsClosed = 1 where ID = 3;"
      "insert into tblAccountRelatedObjects values (3, 4, null, null)");
  start();
  go("what the host shows meanwhile");
}

/// Each statement of a save fails once. The notice says what was written by then, the form goes on, and
/// saving again gives the same result as a save without a failure.
class FailingSaves : public SavingStory, public ::testing::WithParamInterface<int> {
 protected:
  enum Way { NewAccount, GuardedEdit, PlainEdit };

  FailingSaves() {
    setting(210, "1");
    fill();
    start();
    const std::int32_t first = saveNew(-1, "نخست", "9");
    database.execute("delete from tblAccount where ID = " + std::to_string(first));
  }
  void fill() {
    accounts({{1, 0, "1", "دارايي"}, {2, 1, "101", "جاري"}, {3, 2, "10101", "بانک"}, {4, 0, "4", "بدهي"}});
    database.execute("insert into tblAccountRelatedObjects values (2, 5, 12, 6), (1, 5, 12, 6)");
  }
  /// Enters everything that makes a save write a relation and descendants.
  void typeAll(Way way) {
    person.act(linesOf("accounts/steps.txt", "all that each way types")[static_cast<std::size_t>(way)]);
  }
  std::int32_t target(Way way) {
    if (way == GuardedEdit) return 2;
    return way == PlainEdit ? 1
                            : static_cast<std::int32_t>(database.number("select max(ID) from tblAccount"));
  }
  std::string outcome(Way way) {
    const std::int32_t id = target(way);
    return stored(id, "ParentID, Code, Title, GroupID, PositionID, IsClosed, NoLevel") + "#" + relations(id) +
           "#" + database.rows("select Code, IsClosed, NoLevel from tblAccount order by Code");
  }
};

TEST_P(FailingSaves, CanBeSavedAgain) {
  const Way way = static_cast<Way>(GetParam());
  const auto reset = [&] {
    if (mode() == FormMode::ModeEdit || mode() == FormMode::ModeNew) {
      notices.answer(1);
      form->cmdCancel.click();
    }
    database.execute(
        "delete from tblAccountRelatedObjects; update tblAccount set ParentID = null; delete from "
        "tblAccount");
    fill();
    static_cast<void>(notices.take());
  };

  typeAll(way);
  const std::string before = chart();
  static_cast<void>(faults.take());
  form->cmdSave.click();
  const auto commands = faults.take();
  const std::string whole = outcome(way);
  const std::string wholeRelation = relations(target(way));
  EXPECT_EQ(notices.taken(), "");

  for (std::size_t failing = 1; failing <= commands.size(); ++failing) {
    SCOPED_TRACE(commands[failing - 1]);
    reset();
    typeAll(way);
    const std::string typed = record();
    faults.failAt(static_cast<int>(failing));
    form->cmdSave.click();
    ASSERT_EQ(faults.failures(), 1);
    faults.heal();
    EXPECT_EQ(desktop.cursor, ui::CursorShape::Default);
    for (const data::RecordHandle* handle : shell.dtEn()->handles()) EXPECT_EQ(handle->State(), 0);

    const auto notice = notices.take();
    ASSERT_EQ(notice.size(), 1U);
    // A picker that couldn't read its row says so itself; the save isn't affected.
    const bool fromSelector = notice[0].title != "خطا در ثبت";
    const std::string told = fromSelector ? "All" : toldOf(notice[0].message);
    EXPECT_EQ(outcome(way) == whole, told == "All");
    if (told == "All") {
      EXPECT_EQ(mode(), FormMode::ModeView);
      if (!fromSelector) expectRecordAsStored();
      continue;
    }
    const bool written = told != "Nothing";
    if (written) {
      EXPECT_EQ(stored(target(way), "Title"), "عنوان تازه");
    } else {
      EXPECT_EQ(chart(), before);
    }
    EXPECT_EQ(relations(target(way)) == wholeRelation, told == "Relation");
    // The typed data is still there, and the form says what the next save does.
    const bool asNew = way == NewAccount && !written;
    EXPECT_EQ(mode(), asNew ? FormMode::ModeNew : FormMode::ModeEdit);
    EXPECT_EQ(form->lblMessage.caption(), asNew ? "حساب جديد" : "اصلاح حساب");
    EXPECT_EQ(form->cmdPeriodBranch.enabled(), !asNew);
    EXPECT_EQ(form->txtID.text() == std::to_string(target(way)), !asNew);
    EXPECT_EQ(record().substr(record().find('\n')), typed.substr(typed.find('\n')));
    const std::int32_t saved = save();
    ASSERT_EQ(saved, target(way));
    EXPECT_EQ(outcome(way), whole);
    EXPECT_EQ(notices.taken(), "");
  }
}

INSTANTIATE_TEST_SUITE_P(EachWay, FailingSaves, ::testing::Values(0, 1, 2));

TEST_F(SavingStory, ABrokenConnectionLeavesOpenWhetherTheAccountIsThere) {
  account(1, 0, "1", "دارايي");
  start();
  go("a broken connection");
}

TEST_F(SavingStory, ASaveWithoutAnAnswerIsUnknownUntilTheScreenHasLooked) {
  account(1, 0, "1", "دارايي");
  start();
  go("a save without an answer");
  go("no answer and no look");
  go("another of its title");
}

TEST_F(SavingStory, WhatCantBeReadBackLeavesABlankRecordAndOneNotice) {
  account(1, 0, "1", "دارايي");
  start();
  go("what can't be read back");
  EXPECT_EQ(mode(), FormMode::ModeView);
  EXPECT_EQ(form->txtTitle.text() + form->sltAccount.text() + form->txtCode.text(), "");
}

}  // namespace
}  // namespace ledgertree::testing
