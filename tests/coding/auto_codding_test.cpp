#include "coding/recoding/auto_codding.h"

#include <chrono>
#include <thread>

#include "batch/bulk_house.h"
#include "coding/recoding/code_counter.h"
#include "shell/work_progress.h"

namespace ledgertree::testing {
namespace {

using coding::CodeCounter;
using coding::frmAutoCodding;

class AutoCodding : public BulkHouse {
 protected:
  AutoCodding() { start(); }

  /// Types a sample in place of the old one; the command comes into reach at the next tick.
  void sample(frmAutoCodding& screen, const std::string& text) {
    screen.txtSimpleCode.setText("");
    screen.txtSimpleCode.type(text);
    desktop.tick();
  }
  void number(frmAutoCodding& screen, const std::string& from) {
    sample(screen, from);
    answer(1);
    screen.cmdAutoCodding.click();
  }
};

TEST_F(AutoCodding, NumbersTheChildrenInTheOrderOfTheirOldCodes) {
  database.execute("insert into tblAccount (ID, ParentID, Code, Title) values (8, 1, '1100', 'تنخواه')");
  form->treeAccount.click(form->treeAccount.find("-1:1"));
  recode([&](frmAutoCodding& screen) {
    EXPECT_FALSE(screen.cmdAutoCodding.enabled());
    pick(screen.klmMotherAcc, "11");
    EXPECT_EQ(screen.txtMotherCode.text(), "11");
    sample(screen, "a0ب1");
    EXPECT_EQ(screen.txtSimpleCode.text(), "01") << "other keys don't pass";
    for (const int noOrNothing : {0, 7}) {
      answer(noOrNothing);
      screen.cmdAutoCodding.click();
      EXPECT_EQ(notices.taken(), kNoWayBack);
    }
    EXPECT_EQ(codes(), "11 12 1101 1102 110101 110102 1201 1100");

    number(screen, "07");
    EXPECT_EQ(notices.taken(), kNoWayBack) << "and nothing says that it is done";
    EXPECT_TRUE(screen.isShown());
    // Accounts further down keep the old code of their parent in front.
    EXPECT_EQ(codes(), "11 12 1108 1109 110101 110102 1201 1107");

    number(screen, "098");
    EXPECT_EQ(codes(), "11 12 11099 11100 110101 110102 1201 11098") << "the width stays, the zeros carry";
    number(screen, "98");
    EXPECT_EQ(codes(), "11 12 1199 1100 110101 110102 1201 1198") << "past its width it starts from zeros";

    pick(screen.klmMotherAcc, "1201");
    notices.take();
    number(screen, "01");
    EXPECT_EQ(notices.taken(), kNoWayBack) << "an account without children";

    // Nothing in front of the number on the top level.
    screen.klmMotherAcc.focus();
    screen.klmMotherAcc.press(ui::Key::Delete);
    EXPECT_EQ(screen.txtMotherCode.text(), "");
    number(screen, "9");
    EXPECT_EQ(codes(), "9 0 1199 1100 110101 110102 1201 1198");
    screen.press(ui::KeyChord::of(ui::Key::Escape));
    EXPECT_EQ(desktop.shownForms.back(), form.get());
  });
  EXPECT_EQ(form->sltAccount.AccountID(), 1);
  EXPECT_NE(inTree(1, 8).find("1198"), std::string::npos) << "the tree is read anew: " << inTree(1, 8);
}

TEST(CodeCounterTest, GrowsOnlyWhenTheLeadingDigitIsUsedUp) {
  auto counter = CodeCounter::startingAt("8").value();
  std::string series;
  for (int step = 0; step < 84; ++step, counter.raise()) {
    if (step < 14 || step > 79) series += counter.number() + " ";
    EXPECT_EQ(CodeCounter::startingAt("8")->widthAfter(step), counter.number().size());
  }
  EXPECT_EQ(series, "8 9 0 1 2 3 4 5 6 7 8 9 0 1 8 9 00 01 ");
  EXPECT_EQ(CodeCounter::startingAt("99999999999999")->number(), "99999999999999");
  for (const char* const bad : {"", " ", "1.5", "1/2", "-1", "1e3", "٠١", "123456789012345"})
    EXPECT_FALSE(CodeCounter::startingAt(bad).has_value()) << bad;
}

TEST_F(AutoCodding, ABadSampleOrALongCodeChangesNoRow) {
  const std::string before = codes();
  recode([&](frmAutoCodding& screen) {
    pick(screen.klmMotherAcc, "11");
    for (const char* const bad : {"1.5", "1/2", "123456789012345"}) {
      number(screen, bad);
      EXPECT_EQ(notices.take().back().message,
                "نمونه اولين كد فرزند بايد فقط از ارقام تشكيل شده و حداكثر 14 رقم باشد. هيچ كدي تغيير نكرد.");
    }
    screen.txtSimpleCode.paste("1'; delete tblAccount --");
    desktop.tick();
    answer(1);
    screen.cmdAutoCodding.click();
    EXPECT_EQ(notices.take().size(), 2U);

    // An apostrophe in front is text like any other. 20 characters go, 21 don't.
    screen.txtMotherCode.setText("o'neill ");
    number(screen, "012345678901");
    EXPECT_EQ(database.text("select Code from tblAccount where ID = 4"), "o'neill 012345678902");
    notices.take();
    number(screen, "0123456789012");
    EXPECT_EQ(notices.take().back().message,
              "كد «o'neill 0123456789012» بيش از 20 حرف دارد و ثبت نميشود. هيچ كدي تغيير نكرد.");
    EXPECT_EQ(database.text("select Code from tblAccount where ID = 4"), "o'neill 012345678902");
  });
  EXPECT_EQ(database.text("select Code from tblAccount where ID = 5"), "110101");
}

TEST_F(AutoCodding, TheSecondLevelGetsOneSeriesOfSixDigits) {
  recode([](frmAutoCodding& screen) {
    screen.klmFlatButton1.click();
    EXPECT_FALSE(screen.klmFlatButton1.visible()) << "hidden unless the host offers it";
  });
  shell.offersHiddenCommands = true;
  recode([&](frmAutoCodding& screen) {
    pick(screen.klmMotherAcc, "1102");
    notices.take();
    answer(0);
    screen.klmFlatButton1.click();
    EXPECT_EQ(notices.taken(),
              "هشدار|پس از اعمال كدينگ اتوماتيك، امكان بازگشت وجود ندارد. آيا ادامه مي دهيد؟");
    answer(1);
    screen.klmFlatButton1.click();
    EXPECT_EQ(codes(), "11 12 11000001 11000002 110101 110102 12000003");
    EXPECT_EQ(screen.txtMotherCode.text(), "11000002") << "no child shall get the old code in front";

    // The row that would be too long is the last one, and the first one stays too.
    database.execute("update tblAccount set Code = '123456789012345' where ID = 2");
    notices.take();
    answer(1);
    screen.klmFlatButton1.click();
    EXPECT_EQ(notices.take().back().message,
              "كد «123456789012345000003» بيش از 20 حرف دارد و ثبت نميشود. هيچ كدي تغيير نكرد.");
    EXPECT_EQ(codes(), "11 123456789012345 11000001 11000002 110101 110102 12000003");
  });
}

TEST_F(AutoCodding, TypeAndNatureOfTheMotherGoToAllBelow) {
  const auto rows = [&] {
    return database.rows("select ID, IsPermanent, AccountNatureID from tblAccount order by ID");
  };
  recode([&](frmAutoCodding& screen) {
    EXPECT_FALSE(screen.cmdAccountType.enabled());
    EXPECT_FALSE(screen.cmdRemanedType.enabled());
    pick(screen.klmMotherAcc, "11");
    desktop.tick();
    answer(0);
    screen.cmdAccountType.click();
    answer(1);
    screen.cmdAccountType.click();
    EXPECT_EQ(notices.taken(), std::string(kNoWayBack) + "\n" + kNoWayBack);
    EXPECT_EQ(rows(), "1|1|2\n2|0|1\n3|1|0\n4|1|null\n5|1|1\n6|1|0\n7|0|0");
    answer(1);
    screen.cmdRemanedType.click();
    EXPECT_EQ(rows(), "1|1|2\n2|0|1\n3|1|2\n4|1|2\n5|1|2\n6|1|2\n7|0|0");
    screen.klmMotherAcc.ClearAccount();
    desktop.tick();
    EXPECT_FALSE(screen.cmdAccountType.enabled());
  });
  EXPECT_EQ(codes(), "11 12 1101 1102 110101 110102 1201");
}

TEST_F(AutoCodding, AFailureKeepsWhatWasWrittenAndTheScreen) {
  recode([&](frmAutoCodding& screen) {
    pick(screen.klmMotherAcc, "11");
    notices.take();
    sample(screen, "51");
    faults.failAt(3);  // the rows, the first update, the second
    answer(1);
    screen.cmdAutoCodding.click();
    EXPECT_EQ(notices.take().back().message, Faults::kMessage);
    EXPECT_EQ(codes(), "11 12 1151 1102 110101 110102 1201");
    faults.heal();
    number(screen, "51");
    EXPECT_EQ(codes(), "11 12 1152 1151 110101 110102 1201") << "in the order of the codes that stand now";
  });
}

TEST_F(AutoCodding, LongWorkIsSeenAndTakesNoSecondCall) {
  recode([&](frmAutoCodding& screen) {
    pick(screen.klmMotherAcc, "11");
    notices.take();
    sample(screen, "01");
    faults.onCommand = [](const std::string& command) {
      if (command.find("Set Code") != std::string::npos)
        std::this_thread::sleep_for(shell::WorkProgress::kBeforeShowing);
    };
    std::string seen;
    desktop.onRepaint = [&] {
      seen += screen.progressBar.text() + (screen.progressBar.shown() ? "; " : " hidden; ");
      screen.cmdAutoCodding.click();
      screen.cmdCancel.click();
    };
    answer(1);
    screen.cmdAutoCodding.click();
    EXPECT_EQ(seen, "1 از 2; 2 از 2; ");
    EXPECT_EQ(notices.taken(), kNoWayBack);
    EXPECT_EQ(codes(), "11 12 1101 1102 110101 110102 1201");
    desktop.onRepaint = nullptr;
    faults.onCommand = nullptr;
    EXPECT_EQ(desktop.shownForms.back(), form.get()) << "it was left in the middle, and went at the end";
  });
}

TEST_F(AutoCodding, WithoutTheRightNothingIsRead) {
  shell.context.gUserID = 2;
  form->sltAccount.setAccountID(1);
  const auto ahead = faults.take();
  form->mnuSameCoding.click();
  EXPECT_EQ(notices.taken(), kRefused);
  EXPECT_EQ(form->sltAccount.AccountID(), 1);
  EXPECT_FALSE(ahead.empty());
  EXPECT_EQ(faults.take(), std::vector<std::string>{"spTarvoHasPermission"});
}

}  // namespace
}  // namespace ledgertree::testing
