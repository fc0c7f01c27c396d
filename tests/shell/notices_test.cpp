#include <gtest/gtest.h>

#include <ctime>
#include <stdexcept>
#include <string>

#include "shell/shell.h"
#include "support/scripted_desktop.h"

namespace ledgertree::shell {
namespace {

/// A notice component that writes down what is asked of it, and answers as the story wants.
struct Book {
  std::string asked;
  data::Value answer;
  std::string failing;  ///< the member that throws
};

class WrittenNotice : public OutsideComponent {
 public:
  explicit WrittenNotice(Book& book) : book_(book) { book_.asked += "made "; }
  void set(std::string_view member, const data::Value& value) override {
    write(std::string(member) + "=" + value.toText());
  }
  data::Value get(std::string_view member) override {
    write(std::string(member) + "?");
    return book_.answer;
  }
  void call(std::string_view member, const std::vector<data::Value>& arguments) override {
    write(std::string(member) + "(" + std::to_string(arguments.size()) + ")");
  }

 private:
  void write(const std::string& what) {
    if (!book_.failing.empty() && what.starts_with(book_.failing)) throw std::runtime_error("out of order");
    book_.asked += what + " ";
  }
  Book& book_;
};

class Notices : public ::testing::Test {
 protected:
  Notices() {
    shell.components.add("noticekit.noticedialog", [this] { return std::make_unique<WrittenNotice>(book); });
  }
  Book book;
  testing::ScriptedDesktop desktop;
  Shell shell{desktop};
};

TEST_F(Notices, EachIsAComponentOfItsOwnInTheColoursOfTheHouse) {
  const std::string colours =
      "FormBackColor=12893912 BtmBackColor=6510973 FrameBackColor=14408673 ClearShow(0) ";
  shell.showErrorNotice("خطا", "نشد");
  EXPECT_EQ(book.asked, "made FormTitle=خطا FormMessage=نشد FormType=0 " + colours);
  book.asked.clear();
  book.answer = 1;
  EXPECT_EQ(shell.askConfirmNotice("پرسش", "آيا؟"), Answer::Yes);
  EXPECT_EQ(book.asked, "made FormTitle=پرسش FormMessage=آيا؟ FormType=1 " + colours + "Resualt? ");
  book.answer = 0;
  EXPECT_EQ(shell.askConfirmNotice("", ""), Answer::No);
  for (const data::Value& neither : {data::Value(2), data::Value(-1), data::Value("yes"), data::Value()}) {
    book.answer = neither;
    EXPECT_EQ(shell.askConfirmNotice("", ""), Answer::None);
  }
}

TEST_F(Notices, WhatCantBeShownIsNoAnswerAndNoFailure) {
  book.answer = 1;
  for (const char* failing : {"FormTitle", "ClearShow", "Resualt"}) {
    book.failing = failing;
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
    EXPECT_EQ(desktop.pointer, ui::Pointer::Hourglass);
    shell.reportFailure(std::runtime_error("خراب"));
    EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
    EXPECT_TRUE(book.asked.starts_with("made FormTitle=خطا FormMessage=خراب FormType=0 ")) << book.asked;
    desktop.setPointer(ui::Pointer::Hourglass);
  }
  EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
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
