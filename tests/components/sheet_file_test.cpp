#include "sheetkit/sheet_file.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "support/small_disk.h"
#include "support/test_house.h"
#include "support/text_table.h"

namespace ledgertree::testing {
namespace {

namespace fs = std::filesystem;
using sheetkit::writeSheet;

constexpr const char* kStatement =
    "Select Code As 'كدحساب',Title As 'شرح حساب',AccGroup as 'گروه حساب',AccountStatus As 'ماهيت "
    "حساب',AccountType As 'حساب',RemainedType As 'وضعيت حساب',AccContract As 'مركز هزينه',NoLevel As "
    "'سطح',Notes As 'ملاحظات' From vwAccount Order By Code,NoLevel";

constexpr const char* kNotWritten =
    "فايل صفحه گسترده نوشته نشد. جا و اجازه نوشتن در پوشه انتخاب شده را بررسي نماييد و دوباره تلاش کنيد.";

std::string tooMany(const std::string& most) {
  return "تعداد حسابها از گنجايش صفحه گسترده (" + most + " رديف) بيشتر است. فايلي نوشته نشد.";
}

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
  std::unique_ptr<data::Connection> connection() const {
    return shell.providers.open(database.connectionText());
  }

  /// The first rows of the workbook as read by another program.
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
  /// The files next to the requested one.
  std::string left() const {
    std::string names;
    for (const auto& entry : fs::directory_iterator(folder.path()))
      names += entry.path().filename().string() + " ";
    return names;
  }

  /// A section of sheet.txt.
  static std::string expected(const std::string& section) {
    std::string text;
    for (const std::string& line : linesOf("components/sheet.txt", section)) text += line + "\n";
    return text;
  }
  /// The error for a sheet that can't be written to `to`; checks that everything stays as it was.
  std::string failure(const std::string& statement, const fs::path& to, const sheetkit::Progress& progress,
                      std::int64_t mostRows = sheetkit::kMostRows) const {
    const std::string before = left();
    try {
      static_cast<void>(writeSheet(*connection(), statement, to, progress, mostRows));
    } catch (const std::runtime_error& told) {
      EXPECT_EQ(left(), before);
      EXPECT_EQ(fs::file_size(file), 14U);
      return told.what();
    }
    return "nothing failed";
  }
  std::string failure(const std::string& statement) const { return failure(statement, file, goOn); }

  TemporaryFolder folder;
  fs::path file = folder.path() / "چارت 1405.xlsx";
};

TEST_F(SheetFile, AnotherProgramReadsTheChartCellByCell) {
  ASSERT_EQ(writeSheet(*connection(), kStatement, file, goOn), 4);
  EXPECT_EQ(readBack(5), expected("the chart"));
}

TEST_F(SheetFile, HostileTextLeavesAReadableFile) {
  if (!onServer()) {  // its columns hold letters only
    database.execute("update tblAccount set Title = cast(x'61ff6200632064' as text) || char(7) where ID = 4");
    ASSERT_GT(writeSheet(*connection(), kStatement, file, goOn), 0);
    EXPECT_NE(readBack(9).find("s:a\xEF\xBF\xBD"
                               "b"),
              std::string::npos)
        << readBack(9);
  }
  database.execute("update tblAccount set Title = 'x' || char(13) || char(10) || 'y' where ID = 3");
  // Deeper than the outline levels of a sheet.
  for (int level = 5; level <= 14; ++level)
    database.execute("insert into tblAccount (ID, ParentID, Code, Title) values (" + std::to_string(level) +
                     ", " + std::to_string(level - 1) + ", '02" +
                     std::string(static_cast<std::size_t>(level), '1') + "', 'a title')");
  ASSERT_GT(writeSheet(*connection(), kStatement, file, goOn), 0);
  const std::string read = readBack(20);
  EXPECT_NE(read.find("15|fold 7 indent 10"), std::string::npos) << read;
  EXPECT_NE(read.find("|s:x/y|"), std::string::npos) << read;
  EXPECT_NE(read.find("widths 19 20 "), std::string::npos)
      << "the lowest title has room beside its indent" << read;
}

TEST_F(SheetFile, WhatFailsLeavesTheOldFileAndNoHalfOne) {
  std::ofstream(file) << "an older chart";
  EXPECT_EQ(failure(kStatement, file, goOn, 3), tooMany("3"));
  EXPECT_NE(failure("Select * From tblNothing").find("tblNothing"), std::string::npos);
  EXPECT_EQ(writeSheet(*connection(), kStatement, file, [](std::int64_t, std::int64_t) { return false; }), 0);
  EXPECT_EQ(left(), "چارت 1405.xlsx ");
  EXPECT_EQ(fs::file_size(file), 14U);
  // Accounts added between counting and writing, one more than fits.
  database.insertMany("tblAccount (ID, Code, Title)", 10, 300,
                      [](int i) { return std::to_string(i) + ", '9" + std::to_string(i) + "', 'x'"; });
  bool added = false;
  const auto add = [&](std::int64_t done, std::int64_t all) {
    if (done == 0 || all != 0 || added) return true;
    added = true;
    database.execute("insert into tblAccount (ID, Code, Title) values (9, '99', 'late')");
    return true;
  };
  EXPECT_EQ(failure(kStatement, file, add, 295), tooMany("295"));
  EXPECT_TRUE(added);

  // A missing folder, and a folder in place of the file.
  std::int64_t written = 0;
  const auto count = [&](std::int64_t done, std::int64_t all) { return all == 0 || (written = done) >= 0; };
  EXPECT_EQ(failure(kStatement, folder.path() / "none" / "a.xlsx", count), kNotWritten);
  EXPECT_EQ(written, 0) << "told ahead of the writing";
  fs::create_directory(folder.path() / "a.xlsx");
  EXPECT_EQ(failure(kStatement, folder.path() / "a.xlsx", goOn),
            "فايل صفحه گسترده جايگزين فايل پيشين نشد. اگر آن فايل در برنامه ديگري باز است، آن را ببنديد و "
            "دوباره تلاش کنيد.");
}

TEST_F(SheetFile, EachKindOfCellHasItsLook) {
  database.execute("insert into tblAccount (ID, ParentID, Code, Title) values (5, 1, '0102', '" +
                   std::string(60, 'x') + "')");
  ASSERT_GT(writeSheet(*connection(), kStatement, file, goOn), 0);
  const std::string all = readBack(0, "A1 A2 B2 B3 B5 C2 H2 I3");
  EXPECT_EQ(all.substr(all.find("margins")), expected("the looks"));
}

TEST_F(SheetFile, AFullDiskAndATextTooLongAreToldAndLeaveTheOldFile) {
  std::ofstream(file) << "an older chart";
  database.execute(
      "create table Letters (A text); insert into Letters values (replace(hex(zeroblob(20000)), '0', 'a'))");
  EXPECT_EQ(failure("Select A From Letters"),
            "متني بلندتر از گنجايش يک خانه صفحه گسترده است. آن را کوتاه نماييد و دوباره تلاش کنيد.");
  EXPECT_EQ(failure("Select A From Letters Where A=''"), "حسابي براي انتقال وجود ندارد. فايلي نوشته نشد.");

  for (const bool destination : {false, true}) {
    const TemporaryFolder other;
    const SmallDisk disk(destination ? folder.path() : other.path());
    if (!disk.mounted()) GTEST_SKIP() << "no disk of its own is allowed here";
    if (destination) {
      std::ofstream(file) << "an older chart";
      std::ofstream(folder.path() / "filler") << std::string(1 << 20, 'x');
      EXPECT_EQ(failure(kStatement), kNotWritten);
    } else {
      // First the temporary sheet, then its copy.
      ::setenv("TMPDIR", other.path().c_str(), 1);
      EXPECT_EQ(failure(kStatement), kNotWritten);
      std::ofstream(other.path() / "filler") << std::string(1 << 20, 'x');
      EXPECT_EQ(failure(kStatement), kNotWritten);
      ::unsetenv("TMPDIR");
    }
  }
}

}  // namespace
}  // namespace ledgertree::testing
