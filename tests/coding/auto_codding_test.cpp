#include "coding/recoding/auto_codding.h"

#include "batch/bulk_house.h"
#include "coding/recoding/code_counter.h"

namespace ledgertree::testing {
namespace {

using coding::CodeCounter;
using coding::frmAutoCodding;

/// A user at the screen; the steps are in tests/coding/steps.txt.
class AutoCodding : public BulkHouse {
 protected:
  AutoCodding() {
    start();
    person.acts["sample"] = [this](auto& text) { sample(text); };
    person.acts["number"] = [this](auto& from) { return sample(from), confirmed(screen_->cmdAutoCodding); };
    person.acts["again"] = [this](auto&) { return confirmed(screen_->cmdAutoCodding); };
    person.acts["level"] = [this](auto&) { return confirmed(screen_->klmFlatButton1); };
    person.acts["changes"] = [this](auto&) { return accounts(); };
    person.acts["mother"] = [this](auto&) { return "<" + screen_->txtMotherCode.text() + ">"; };
    person.acts["look"] = [this](auto& how) { return look(screen_->cmdPreview, how); };
    person.acts["look-level"] = [this](auto& how) { return look(screen_->cmdPreviewLevel, how); };
    person.acts["reach"] = [this](auto&) { return withinReach(); };
  }
  void go(frmAutoCodding& screen, const std::string& section) {
    screen_ = &screen;
    notices.take();
    person.go("coding/steps.txt", section);
  }

  /// Replaces the sample; the command is enabled at the next tick.
  void sample(const std::string& text) {
    screen_->txtSimpleCode.setText("");
    screen_->txtSimpleCode.type(text);
    desktop.tick();
  }
  /// Clicks a command and confirms it; returns the notice after the question.
  std::string confirmed(ui::PushButton& command) {
    answer(1);
    command.click();
    EXPECT_EQ(desktop.cursor, ui::CursorShape::Default);
    const auto told = notices.take();
    EXPECT_TRUE(!told.empty() && told[0].question);
    return told.size() == 2 ? told[1].title + ": " + told[1].message : "";
  }
  /// The changes in tblAccount, and that there are no others.
  std::string accounts() {
    const std::string found = changes();
    return found.starts_with("tblAccount: ") ? found.substr(12) : found;
  }
  std::string withinReach() {
    desktop.tick();
    std::string names;
    for (const auto* command : {&screen_->cmdAutoCodding, &screen_->cmdAccountType, &screen_->cmdRemanedType})
      if (command->enabled()) names += (names.empty() ? "" : " ") + command->name();
    return names;
  }

 private:
  frmAutoCodding* screen_ = nullptr;
};

TEST_F(AutoCodding, NumbersTheChildrenInTheOrderOfTheirOldCodes) {
  given("insert into tblAccount (ID, ParentID, Code, Title) values (8, 1, '1100', 'تنخواه')");
  form->cmdRefreshAccountTree.click();
  form->treeAccount.click(form->treeAccount.find("-1:1"));
  EXPECT_EQ(inTree(1, 8), "1100 ... تنخواه");
  recode([&](frmAutoCodding& screen) {
    pick(screen.klmMotherAcc, "11");
    screen.txtSimpleCode.focus();
    EXPECT_EQ(desktop.layouts, (std::vector<std::string>{"00000429", "00000429"})) << "of either field";
    go(screen, "no numbers");
    go(screen, "numbers");
    screen.press(ui::KeyChord::of(ui::Key::Escape));
    EXPECT_FALSE(screen.isShown());
  });
  EXPECT_EQ(form->sltAccount.AccountCode(), "9") << "the title's picker is read anew, and so is the tree";
  EXPECT_EQ(nodeText(8), "");
  EXPECT_EQ(inTree(1, 8), "1198 ... تنخواه");
  recode([](frmAutoCodding& screen) { screen.cmdCancel.click(); });
  EXPECT_EQ(nodeText(8), "") << "also where nothing was done";
}

TEST(CodeCounterTest, GrowsOnlyWhenTheLeadingDigitIsUsedUp) {
  auto counter = CodeCounter::startingAt("8").value();
  std::string series;
  for (int step = 0; step < 84; ++step, counter.raise())
    if (step < 14 || step > 79) series += counter.number() + " ";
  EXPECT_EQ(series, "8 9 0 1 2 3 4 5 6 7 8 9 0 1 8 9 00 01 ");
  EXPECT_EQ(CodeCounter::startingAt("99999999999999")->number(), "99999999999999");
  for (const char* const bad : {"", " ", "1.5", "1/2", "-1", "1e3", "٠١", "123456789012345"})
    EXPECT_FALSE(CodeCounter::startingAt(bad).has_value()) << bad;
}

TEST_F(AutoCodding, ABadSampleOrALongCodeChangesNoRow) {
  recode([&](frmAutoCodding& screen) {
    go(screen, "bad samples");
    // The first code fits; the one in the message does not.
    pick(screen.klmMotherAcc, "12");
    database.insertMany("tblAccount (ID, ParentID, Code, Title)", 100, 190, [](int id) {
      const std::string number = std::to_string(id);
      return number + ", 2, '" + number + "', '" + number + "'";
    });
    EXPECT_TRUE(accounts().starts_with("+100"));
    go(screen, "a long code far behind");
  });
}

TEST_F(AutoCodding, TheSecondLevelGetsOneSeriesOfSixDigits) {
  recode([](frmAutoCodding& screen) {
    screen.klmFlatButton1.click();
    EXPECT_FALSE(screen.klmFlatButton1.visible()) << "hidden unless the host offers it";
  });
  shell.offers = {Offer::HiddenCommands};
  recode([&](frmAutoCodding& screen) { go(screen, "the second level"); });
}

TEST_F(AutoCodding, TypeAndNatureOfTheMotherGoToAllBelow) {
  recode([&](frmAutoCodding& screen) { go(screen, "type and nature"); });
}

TEST_F(AutoCodding, WhatStopsHalfWayTellsHowFarItCameAndGoesOnFromThere) {
  shell.offers = {Offer::HiddenCommands};
  recode([&](frmAutoCodding& screen) { go(screen, "half the way"); });
}

TEST_F(AutoCodding, OverANetworkCodesGoTogetherAndAnAnswerThatNeverCameIsTold) {
  shell.offers = {Offer::HiddenCommands};
  faults.late = true;
  person.acts["lose"] = [this](auto& text) { faults.failWhere(text, data::DataError::Reason::Connection); };
  person.acts["trips"] = [this](auto&) { return std::to_string(faults.trips()); };
  recode([&](frmAutoCodding& screen) {
    static_cast<void>(faults.trips());
    go(screen, "far away");
  });
}

TEST_F(AutoCodding, WhatIsSeenAheadIsWhatIsWritten) {
  shell.offers = {Offer::Preview, Offer::HiddenCommands};
  // What another program does while the question or the preview is open.
  person.acts["meanwhile"] = [this](auto& statement) {
    notices.onShow = [this, statement](const Notice& notice) {
      if (notice.question && !statement.empty()) given(statement);
    };
  };
  recode([&](frmAutoCodding& screen) {
    go(screen, "a look ahead");
    notices.onShow = nullptr;
    go(screen, "a look at the second level");
    // Paging.
    pick(screen.klmMotherAcc, "11000002");
    database.insertMany("tblAccount (ID, ParentID, Code, Title)", 1001, 1600,
                        [](int id) { return std::to_string(id) + ", 4, '" + std::to_string(id) + "', ''"; });
    EXPECT_TRUE(accounts().starts_with("+1001"));
    sample("0001");
    inScreen<shell::frmPreview>("frmPreview", [](shell::frmPreview& pages) {
      std::string seen = pages.lblPlace.caption();
      for (auto* button : {&pages.cmdPrevious, &pages.cmdNext, &pages.cmdNext, &pages.cmdPrevious}) {
        button->click();
        seen += ", " + pages.lblPlace.caption() + " " + pages.flxRows.text(0, 1);
      }
      EXPECT_EQ(seen,
                "رديف 1 تا 500, رديف 1 تا 500 1001, رديف 501 تا 600 1501, رديف 501 تا 600 1501, رديف 1 تا "
                "500 1001");
    });
    screen.cmdPreview.click();
  });
}

TEST_F(AutoCodding, StaysOutOfReachWhileAnAccountIsTyped) {
  form->View(4);
  for (auto* command : {&form->cmdEdit, &form->cmdNew}) {
    given("insert or ignore into tblUserPermission (UserID, FormPermissionID) values (1, 30101), (1, 30102)");
    command->click();
    for (auto* entry : {&form->mnuSameCoding, &form->mnuAccountBatch})
      EXPECT_EQ(toldBy(*entry),
                "اشکال|حسابي در حال ثبت يا اصلاح است. نخست آن را ثبت کنيد يا از آن انصراف دهيد.");
    answer(1);
    form->cmdCancel.click();
    notices.take();
  }
}

TEST_F(AutoCodding, LongWorkIsSeenAndTakesNoSecondCall) {
  recode([&](frmAutoCodding& screen) {
    go(screen, "ready to number");
    EXPECT_EQ(longWork(screen, screen.cmdAutoCodding, "Set Code", [&] { screen.cmdCancel.click(); }),
              onServer() ? "2 از 2; " : "1 از 2; 2 از 2; ");
    EXPECT_EQ(notices.taken(), kNoWayBack);
    EXPECT_EQ(accounts(), "3.Code=1111 4.Code=1112");
    EXPECT_FALSE(screen.isShown()) << "it was left in the middle, and went at the end";
  });
}

}  // namespace
}  // namespace ledgertree::testing
