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
  /// What changed in tblAccount, and nowhere else.
  std::string accounts() {
    const std::string found = changes();
    return found.starts_with("tblAccount: ") ? found.substr(12) : found;
  }
};

TEST_F(AutoCodding, NumbersTheChildrenInTheOrderOfTheirOldCodes) {
  given("insert into tblAccount (ID, ParentID, Code, Title) values (8, 1, '1100', 'تنخواه')");
  form->cmdRefreshAccountTree.click();
  form->treeAccount.click(form->treeAccount.find("-1:1"));
  EXPECT_EQ(inTree(1, 8), "1100 ... تنخواه");
  recode([&](frmAutoCodding& screen) {
    EXPECT_FALSE(screen.cmdAutoCodding.enabled());
    pick(screen.klmMotherAcc, "11");
    EXPECT_EQ(screen.txtMotherCode.text(), "11");
    screen.txtSimpleCode.focus();
    EXPECT_EQ(desktop.layouts, (std::vector<std::string>{"00000429", "00000429"})) << "of either field";
    sample(screen, "a0ب-:1");
    EXPECT_EQ(screen.txtSimpleCode.text(), "01") << "other keys don't pass";
    desktop.hourglasses = 0;
    expectUnchosen(screen.klmMotherAcc, screen.cmdAutoCodding);
    for (const int noOrNothing : {0, 7}) {
      answer(noOrNothing);
      screen.cmdAutoCodding.click();
      EXPECT_EQ(notices.taken(), kNoWayBack);
    }
    EXPECT_EQ(accounts(), "");
    EXPECT_EQ(desktop.hourglasses, 0);

    number(screen, "07");
    EXPECT_EQ(notices.taken(), kNoWayBack) << "and nothing says that it is done";
    EXPECT_EQ(desktop.hourglasses, 1);
    EXPECT_TRUE(screen.isShown());
    // Accounts further down keep the old code of their parent in front.
    EXPECT_EQ(accounts(), "3.Code=1108 4.Code=1109 8.Code=1107");

    number(screen, "098");
    EXPECT_EQ(accounts(), "3.Code=11099 4.Code=11100 8.Code=11098") << "the width stays, the zeros carry";
    number(screen, "98");
    EXPECT_EQ(accounts(), "3.Code=1199 4.Code=1100 8.Code=1198") << "past its width it starts from zeros";

    // An account without children, for which no code is too long either.
    pick(screen.klmMotherAcc, "1201");
    screen.txtMotherCode.setText("12345678901234567890");
    notices.take();
    number(screen, "01");
    EXPECT_EQ(notices.taken(), kNoWayBack);
    EXPECT_EQ(accounts(), "");

    // Nothing in front of the number on the top level.
    screen.klmMotherAcc.focus();
    screen.klmMotherAcc.press(ui::Key::Delete);
    EXPECT_EQ(screen.txtMotherCode.text(), "");
    number(screen, "9");
    EXPECT_EQ(accounts(), "1.Code=9 2.Code=0");
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
    pick(screen.klmMotherAcc, "11");
    for (const char* const bad : {"1.5", "1/2", "123456789012345"}) {
      number(screen, bad);
      EXPECT_EQ(
          notices.take().back(),
          (Notice{"خطا",
                  "نمونه اولين كد فرزند بايد فقط از ارقام تشكيل شده و حداكثر 14 رقم باشد. هيچ كدي تغيير "
                  "نكرد."}));
    }
    screen.txtSimpleCode.press(ui::Key::Backspace);
    EXPECT_EQ(screen.txtSimpleCode.text(), "12345678901234");
    screen.txtSimpleCode.paste("1'; delete tblAccount --");
    desktop.tick();
    answer(1);
    screen.cmdAutoCodding.click();
    EXPECT_EQ(notices.take().size(), 2U);
    screen.txtSimpleCode.paste("  ");
    desktop.tick();
    EXPECT_FALSE(screen.cmdAutoCodding.enabled()) << "blanks are no sample";
    EXPECT_EQ(accounts(), "");

    // An apostrophe in front is text like any other. 20 characters go, 21 don't.
    screen.txtMotherCode.setText("o'neill ");
    number(screen, "012345678901");
    EXPECT_EQ(accounts(), "3.Code=o'neill 012345678901 4.Code=o'neill 012345678902");
    notices.take();
    number(screen, "0123456789012");
    EXPECT_EQ(
        notices.take().back(),
        (Notice{"خطا", "كد «o'neill 0123456789012» بيش از 20 حرف دارد و ثبت نميشود. هيچ كدي تغيير نكرد."}));
    // The first one fits; the one that is named doesn't.
    database.insertMany("tblAccount (ID, ParentID, Code, Title)", 100, 190, [](int id) {
      const std::string number = std::to_string(id);
      return number + ", 2, '" + number + "', '" + number + "'";
    });
    EXPECT_TRUE(accounts().starts_with("+100"));
    pick(screen.klmMotherAcc, "12");
    screen.txtMotherCode.setText("1234567890123456789");
    number(screen, "9");
    EXPECT_EQ(
        notices.take().back(),
        (Notice{"خطا", "كد «123456789012345678900» بيش از 20 حرف دارد و ثبت نميشود. هيچ كدي تغيير نكرد."}));
  });
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
    EXPECT_EQ(accounts(), "3.Code=11000001 4.Code=11000002 7.Code=12000003");
    EXPECT_EQ(screen.txtMotherCode.text(), "11000002") << "no child shall get the old code in front";

    // Ordered by six characters first, and within those by the whole code; a mother that keeps its code
    // leaves what was typed in its place.
    given(
        "update tblAccount set Code = '110000x' where ID = 3; update tblAccount set Code = '110000' where ID "
        "= 7");
    pick(screen.klmMotherAcc, "11");
    screen.txtMotherCode.setText("77");
    answer(1);
    screen.klmFlatButton1.click();
    EXPECT_EQ(accounts(), "3.Code=11000003 7.Code=12000001");
    EXPECT_EQ(screen.txtMotherCode.text(), "77");

    // The row that would be too long is the last one, and the first one stays too.
    given(
        "update tblAccount set Code = '123456789012345' where ID = 2; update tblAccount set Code = 'x' where "
        "ID = 7");
    notices.take();
    answer(1);
    screen.klmFlatButton1.click();
    EXPECT_EQ(
        notices.take().back(),
        (Notice{"خطا", "كد «123456789012345000003» بيش از 20 حرف دارد و ثبت نميشود. هيچ كدي تغيير نكرد."}));
    given("update tblAccount set Code = '12345678901234' where ID = 2");
    answer(1);
    screen.klmFlatButton1.click();
    EXPECT_EQ(accounts(), "3.Code=11000002 4.Code=11000001 7.Code=12345678901234000003") << "20 characters";
  });
}

TEST_F(AutoCodding, TypeAndNatureOfTheMotherGoToAllBelow) {
  recode([&](frmAutoCodding& screen) {
    const auto enabled = [&] {
      desktop.tick();
      return (screen.cmdAccountType.enabled() ? "type " : "") +
             std::string(screen.cmdRemanedType.enabled() ? "nature" : "");
    };
    EXPECT_EQ(enabled(), "");
    pick(screen.klmMotherAcc, "11");
    EXPECT_EQ(enabled(), "type nature");
    for (auto* command : {&screen.cmdAccountType, &screen.cmdRemanedType}) {
      answer(0);
      command->click();
      EXPECT_EQ(notices.taken(), kNoWayBack);
      EXPECT_EQ(accounts(), "");
      answer(1);
      command->click();
      EXPECT_EQ(notices.taken(), kNoWayBack);
      EXPECT_EQ(accounts(),
                command == &screen.cmdAccountType
                    ? "3.IsPermanent=1 4.IsPermanent=1 5.IsPermanent=1 6.IsPermanent=1"
                    : "3.AccountNatureID=2 4.AccountNatureID=2 5.AccountNatureID=2 6.AccountNatureID=2");
    }
    screen.klmMotherAcc.ClearAccount();
    EXPECT_EQ(enabled(), "");
  });
}

TEST_F(AutoCodding, WhatStopsHalfWayTellsHowFarItCameAndGoesOnFromThere) {
  shell.offersHiddenCommands = true;
  recode([&](frmAutoCodding& screen) {
    pick(screen.klmMotherAcc, "11");
    const auto stopped = [&](ui::PushButton& command, const std::string& from, const std::string& at) {
      sample(screen, from);
      notices.take();
      faults.failWhere(at);
      answer(1);
      command.click();
      faults.heal();
      EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
      return notices.take().back().message;
    };
    const auto toldOf = [](const std::string& numbers) {
      return std::string(Faults::kMessage) + "\nكد " + numbers +
             "» است. پس از رفع اشكال، بي آنكه اين صفحه را ببنديد، همين فرمان را با همين حساب مادر و همين "
             "نمونه دوباره اجرا كنيد تا كار از نخستين حساب باقيمانده ادامه يابد.";
    };
    EXPECT_EQ(stopped(screen.cmdAutoCodding, "51", "Where ID = 3"), Faults::kMessage)
        << "nothing was written";
    EXPECT_EQ(stopped(screen.cmdAutoCodding, "51", "Where ID = 4"),
              toldOf("1 حساب از 2 حساب تغيير كرد و آخرين كد تازه «1151"));
    EXPECT_EQ(accounts(), "3.Code=1151");
    number(screen, "51");
    EXPECT_EQ(accounts(), "4.Code=1152") << "the rest, in the order that was";
    // Another sample in between is another recoding; begun anew it goes by the codes that stand now.
    stopped(screen.cmdAutoCodding, "53", "Where ID = 4");
    number(screen, "01");
    EXPECT_EQ(accounts(), "3.Code=1102 4.Code=1101");
    stopped(screen.cmdAutoCodding, "51", "Where ID = 3");
    number(screen, "51");
    EXPECT_EQ(accounts(), "3.Code=1152 4.Code=1151");

    EXPECT_EQ(stopped(screen.klmFlatButton1, "", "Where ID = 7"),
              toldOf("2 حساب از 3 حساب تغيير كرد و آخرين كد تازه «11000002"));
    EXPECT_EQ(accounts(), "3.Code=11000002 4.Code=11000001");
    answer(1);
    screen.klmFlatButton1.click();
    EXPECT_EQ(accounts(), "7.Code=12000003");
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
    pick(screen.klmMotherAcc, "11");
    notices.take();
    sample(screen, "11");
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
    EXPECT_FALSE(screen.progressBar.visible());
    answer(1);
    screen.cmdAutoCodding.click();
    EXPECT_EQ(seen, "1 از 2; 2 از 2; ");
    EXPECT_EQ(notices.taken(), kNoWayBack);
    EXPECT_EQ(accounts(), "3.Code=1111 4.Code=1112");
    desktop.onRepaint = nullptr;
    faults.onCommand = nullptr;
    EXPECT_FALSE(screen.isShown()) << "it was left in the middle, and went at the end";
    EXPECT_FALSE(screen.progressBar.visible());
  });
}

}  // namespace
}  // namespace ledgertree::testing
