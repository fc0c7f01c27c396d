#include "sheetkit/sheet_file.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "data/data_error.h"
#include "support/small_disk.h"
#include "support/test_house.h"

namespace ledgertree::testing {
namespace {

namespace fs = std::filesystem;
using sheetkit::writeSheet;

constexpr const char* kStatement =
    "Select Code As 'كدحساب',Title As 'شرح حساب',AccGroup as 'گروه حساب',AccountStatus As 'ماهيت "
    "حساب',AccountType As 'حساب',RemainedType As 'وضعيت حساب',AccContract As 'مركز هزينه',NoLevel As "
    "'سطح',Notes As 'ملاحظات' From vwAccount Order By Code,NoLevel";

bool goOn(std::int64_t, std::int64_t) { return true; }

class SheetFile : public TestHouse {
 protected:
  SheetFile() {
    database.execute(R"(
      insert into tblAccountGroup (ID, Name) values (4, 'مشتريان');
      insert into tblAccCostCenter (ID, Name) values (9, 'مونتاژ');
      insert into tblAccount (ID, ParentID, Code, Title, GroupID, PositionID, Notes, AccountNatureID) values
        (1, null, '01', 'دارايي', 4, 9, null, 2), (2, 1, '0101', '=1+1', null, null, 'خط اول' || char(10) || 'دوم', 0),
        (3, 2, '010101', '<b>&"''', null, null, null, 1),
        (4, null, '02', null, null, null, 'مانده اين حساب در پايان هر ماه با صورت حساب بانک مقابله مي شود', 0);
    )");
  }
  std::unique_ptr<data::Connection> connection() { return shell.providers.open(database.connectionText()); }

  /// The first rows of the workbook, as another program reads it.
  std::string readBack(int rows, const std::string& looks = {}) const {
    const std::string command = "/usr/bin/python3 '" LEDGERTREE_SHEET_READER "' '" + file.string() + "' " +
                                std::to_string(rows) + " " + looks + " 2>&1";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), &pclose);
    std::string text;
    std::array<char, 4096> part{};
    while (const std::size_t count = std::fread(part.data(), 1, part.size(), pipe.get()))
      text.append(part.data(), count);
    return text;
  }
  /// The files beside the one that is wished for.
  std::string left() const {
    std::string names;
    for (const auto& entry : fs::directory_iterator(folder.path()))
      names += entry.path().filename().string() + " ";
    return names;
  }

  TemporaryFolder folder;
  fs::path file = folder.path() / "چارت 1405.xlsx";
};

TEST_F(SheetFile, AnotherProgramReadsTheChartCellByCell) {
  ASSERT_TRUE(writeSheet(*connection(), kStatement, file, goOn));
  EXPECT_EQ(readBack(5),
            "sheet سرفصل حسابها rtl A1:I5\n"
            "frozen A2 filter A1:I5 repeated $1:$1\n"
            "page landscape paper 9 wide None tall 0 summary below False\n"
            "widths 12 14 15 16 10 16 16 9 48\n"
            "1|fold 0 indent 0 ......... high 24|s:كدحساب|s:شرح حساب|s:گروه حساب|s:ماهيت حساب|s:حساب|s:وضعيت "
            "حساب|s:مركز هزينه|s:سطح|s:ملاحظات\n"
            "2|fold 0 indent 0 .........|s:01|s:دارايي|s:مشتريان|s:هردو|s:موقت|s:باز|s:مونتاژ|n:1|\n"
            "3|fold 1 indent 1 ........w high 30|s:0101|s:=1+1||s:بدهكار|s:موقت|s:باز||n:2|s:خط اول/دوم\n"
            "4|fold 2 indent 2 .........|s:010101|s:<b>&\"'||s:بستانكار|s:موقت|s:باز||n:3|\n"
            "5|fold 0 indent 0 ........w high 30|s:02|||s:بدهكار|s:موقت|s:باز||n:1|s:مانده اين حساب در پايان "
            "هر ماه با صورت حساب بانک مقابله مي شود\n");
}

TEST_F(SheetFile, HostileTextLeavesAReadableFile) {
  if (!onServer()) {  // whose columns hold letters only
    database.execute("update tblAccount set Title = cast(x'61ff6200632064' as text) || char(7) where ID = 4");
    ASSERT_TRUE(writeSheet(*connection(), kStatement, file, goOn));
    EXPECT_NE(readBack(9).find("s:a\xEF\xBF\xBD"
                               "b"),
              std::string::npos)
        << readBack(9);
  }
  // Deeper than a sheet folds.
  for (int level = 5; level <= 14; ++level)
    database.execute("insert into tblAccount (ID, ParentID, Code, Title) values (" + std::to_string(level) +
                     ", " + std::to_string(level - 1) + ", '02" +
                     std::string(static_cast<std::size_t>(level), '1') + "', 'x')");
  ASSERT_TRUE(writeSheet(*connection(), kStatement, file, goOn));
  EXPECT_NE(readBack(20).find("15|fold 7 indent 10"), std::string::npos) << readBack(20);
}

TEST_F(SheetFile, WhatFailsLeavesTheOldFileAndNoHalfOne) {
  std::ofstream(file) << "an older chart";
  const auto untouched = [&] {
    EXPECT_EQ(left(), "چارت 1405.xlsx ");
    EXPECT_EQ(fs::file_size(file), 14U);
  };
  EXPECT_THROW(static_cast<void>(writeSheet(*connection(), kStatement, file, goOn, 3)), std::runtime_error);
  untouched();
  EXPECT_THROW(static_cast<void>(writeSheet(*connection(), "Select * From tblNothing", file, goOn)),
               data::DataError);
  untouched();
  EXPECT_FALSE(writeSheet(*connection(), kStatement, file, [](std::int64_t, std::int64_t) { return false; }));
  untouched();
  // Accounts that come between the counting and the writing, one past what fits.
  database.insertMany("tblAccount (ID, Code, Title)", 10, 300,
                      [](int i) { return std::to_string(i) + ", '9" + std::to_string(i) + "', 'x'"; });
  bool added = false;
  const auto add = [&](std::int64_t done, std::int64_t all) {
    if (done == 0 || all != 0 || added) return true;
    added = true;
    database.execute("insert into tblAccount (ID, Code, Title) values (9, '99', 'late')");
    return true;
  };
  EXPECT_THROW(static_cast<void>(writeSheet(*connection(), kStatement, file, add, 295)), std::runtime_error);
  EXPECT_TRUE(added);
  untouched();

  // A folder that isn't there, and a file that is a folder.
  std::int64_t written = 0;
  const auto count = [&](std::int64_t done, std::int64_t all) { return all == 0 || (written = done) >= 0; };
  EXPECT_THROW(
      static_cast<void>(writeSheet(*connection(), kStatement, folder.path() / "none" / "a.xlsx", count)),
      std::runtime_error);
  EXPECT_EQ(written, 0) << "told ahead of the writing";
  fs::create_directory(folder.path() / "a.xlsx");
  EXPECT_THROW(static_cast<void>(writeSheet(*connection(), kStatement, folder.path() / "a.xlsx", goOn)),
               std::runtime_error);
  EXPECT_EQ(left().find(".part"), std::string::npos) << left();
  database.execute(
      "delete from tblAccount where ID = 3; delete from tblAccount where ID = 2; delete from tblAccount");
  EXPECT_THROW(static_cast<void>(writeSheet(*connection(), kStatement, file, goOn)), std::runtime_error);
}

TEST_F(SheetFile, EachKindOfCellHasItsLook) {
  database.execute("insert into tblAccount (ID, ParentID, Code, Title) values (5, 1, '0102', '" +
                   std::string(60, 'x') + "')");
  ASSERT_TRUE(writeSheet(*connection(), kStatement, file, goOn));
  const std::string all = readBack(0, "A1 A2 B2 B3 B5 C2 H2 I3");
  EXPECT_EQ(all.substr(all.find("margins")),
            "margins 0.4 0.4 0.6 0.6 foot &P / &N\n"
            "A1 center center rtl 0 General  bold FFD8E4F0 medium\n"
            "A2 left top ltr 1 @   00000000 None\n"
            "B2 right top rtl 0 General  bold 00000000 None\n"
            "B3 right top rtl 1 General   00000000 None\n"
            "B5 right top rtl 1 General wrapped  00000000 None\n"
            "C2 right top rtl 0 General   00000000 None\n"
            "H2 center top ltr 0 General   00000000 None\n"
            "I3 right top rtl 0 General wrapped  00000000 None\n");
}

TEST_F(SheetFile, AFullDiskAndATextTooLongAreToldAndLeaveTheOldFile) {
  const auto failure = [&](const std::string& statement) -> std::string {
    try {
      static_cast<void>(writeSheet(*connection(), statement, file, goOn));
    } catch (const std::runtime_error& told) {
      EXPECT_EQ(left(), file.filename().string() + " ");
      return told.what();
    }
    return "nothing failed";
  };
  std::ofstream(file) << "an older chart";
  database.execute(
      "create table Letters (A text); insert into Letters values (replace(hex(zeroblob(20000)), '0', 'a'))");
  EXPECT_EQ(failure("Select A From Letters"),
            "متني بلندتر از گنجايش يک خانه صفحه گسترده است. آن را کوتاه نماييد و دوباره تلاش کنيد.");
  EXPECT_EQ(failure("Select A From Letters Where A=''"), "حسابي براي انتقال وجود ندارد. فايلي نوشته نشد.");

  const std::string full =
      "فايل صفحه گسترده نوشته نشد. جا و اجازه نوشتن در پوشه انتخاب شده را بررسي نماييد و دوباره تلاش کنيد.";
  for (const bool destination : {false, true}) {
    const TemporaryFolder other;
    const SmallDisk disk(destination ? folder.path() : other.path());
    if (!disk.mounted()) GTEST_SKIP() << "no disk of its own is allowed here";
    if (destination) {
      std::ofstream(file) << "an older chart";
      std::ofstream(folder.path() / "filler") << std::string(1 << 20, 'x');
      try {
        static_cast<void>(writeSheet(*connection(), kStatement, file, goOn));
        ADD_FAILURE() << "nothing failed";
      } catch (const std::runtime_error& told) {
        EXPECT_EQ(told.what(), full);
      }
      EXPECT_EQ(left().find(".part"), std::string::npos);
    } else {
      // The sheet in the making, and then its copy.
      ::setenv("TMPDIR", other.path().c_str(), 1);
      EXPECT_EQ(failure(kStatement), full);
      std::ofstream(other.path() / "filler") << std::string(1 << 20, 'x');
      EXPECT_EQ(failure(kStatement), full);
      ::unsetenv("TMPDIR");
    }
  }
}

}  // namespace
}  // namespace ledgertree::testing
