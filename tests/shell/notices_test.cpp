#include <gtest/gtest.h>

#include <ctime>
#include <stdexcept>
#include <string>

#include "shell/shell.h"
#include "support/scripted_desktop.h"
#include "support/told_component.h"

namespace ledgertree::shell {
namespace {

/// The notice component: it records what is asked of it, and answers as the story wants.
class Notices : public ::testing::Test {
 protected:
  Notices() {
    shell.components.add("noticekit.noticedialog", [this] {
      asked += "made ";
      return std::make_unique<testing::ToldComponent>([this](const std::string& what) {
        if (!failing.empty() && what.starts_with(failing)) throw std::runtime_error("out of order");
        asked += what + " ";
        return answer;
      });
    });
  }
  std::string asked;
  data::Value answer;
  std::string failing;  ///< the member that throws
  testing::ScriptedDesktop desktop;
  Shell shell{desktop};
};

TEST_F(Notices, EachIsAComponentOfItsOwnInTheColoursOfTheHouse) {
  const std::string colours =
      "FormBackColor=12893912 BtmBackColor=6510973 FrameBackColor=14408673 ClearShow() ";
  shell.showErrorNotice("خطا", "نشد");
  EXPECT_EQ(asked, "made FormTitle=خطا FormMessage=نشد FormType=0 " + colours + "released ");
  asked.clear();
  answer = 1;
  EXPECT_EQ(shell.askConfirmNotice("پرسش", "آيا؟"), Answer::Yes);
  EXPECT_EQ(asked, "made FormTitle=پرسش FormMessage=آيا؟ FormType=1 " + colours + "Resualt? released ");
  answer = 0;
  EXPECT_EQ(shell.askConfirmNotice("", ""), Answer::No);
  for (const data::Value& neither : {data::Value(2), data::Value(-1), data::Value("yes"), data::Value()}) {
    answer = neither;
    EXPECT_EQ(shell.askConfirmNotice("", ""), Answer::None);
  }
}

TEST_F(Notices, WhatCantBeShownIsNoAnswerAndNoFailure) {
  answer = 1;
  for (const char* member : {"FormTitle", "ClearShow", "Resualt"}) {
    failing = member;
    EXPECT_NO_THROW(shell.showErrorNotice("", ""));
    EXPECT_EQ(shell.askConfirmNotice("", ""), Answer::None);
  }
  shell.components.remove("NOTICEKIT.NoticeDialog");
  EXPECT_FALSE(shell.components.has("NoticeKit.NoticeDialog"));
  EXPECT_NO_THROW(shell.showErrorNotice("", ""));
  EXPECT_EQ(shell.askConfirmNotice("", ""), Answer::None);
}

TEST_F(Notices, AFailureIsToldAndThePointerIsAnArrowAgain) {
  {
    const Hourglass hourglass(desktop);
    EXPECT_EQ(desktop.cursor, ui::CursorShape::Hourglass);
    shell.reportFailure(std::runtime_error("خراب"));
    EXPECT_EQ(desktop.cursor, ui::CursorShape::Default);
    EXPECT_TRUE(asked.starts_with("made FormTitle=خطا FormMessage=خراب FormType=0 ")) << asked;
    desktop.setCursor(ui::CursorShape::Hourglass);
  }
  EXPECT_EQ(desktop.cursor, ui::CursorShape::Default);
}

TEST_F(Notices, TheClockIsThatOfThePlace) {
  const auto now = [] {
    const std::time_t time = std::time(nullptr);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", std::localtime(&time));
    return std::string(text);
  };
  ASSERT_EQ(setenv("TZ", "Asia/Tehran", 1), 0);
  tzset();
  const std::string before = now();
  const std::string told = shell.clock().toIso();
  EXPECT_LE(before, told);
  EXPECT_LE(told, now());
  unsetenv("TZ");
  tzset();
}

}  // namespace
}  // namespace ledgertree::shell
