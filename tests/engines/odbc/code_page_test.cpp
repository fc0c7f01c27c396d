#include "engines/odbc/code_page.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/failure.h"

namespace ledgertree::engines::odbc {
namespace {

TEST(CodePage, TakesTheLetterThatAPersonTakesForTheSame) {
  const std::tuple<CodePage, const char*, const char*> cases[] = {
      {CodePage::Arabic, "یک ي ك ى", "يک ي ك ى"},
      {CodePage::Arabic, "ٱڪۀۂۃە", "اكهہةه"},
      {CodePage::Arabic, "٠١٩۰۵۹ 07", "019059 07"},
      {CodePage::Arabic, "\u200f\u061c\u202aا\u202e\u2060\u2066ب\u2069\ufeff\u202fپ\u200cچ",
       "\u200fاب\u00a0پ\u200cچ"},
      {CodePage::Unknown, "ی漢", "ي漢"},
      {CodePage::Unicode, "ی۱漢", "ی۱漢"},
  };
  for (const auto& [page, text, into] : cases) EXPECT_EQ(foldText(text, page), into);
  EXPECT_EQ(foldStatement("Select N'ی', n'ی' as [ی] /* ی */ From t Where x='ی''۱'", CodePage::Arabic),
            "Select N'ی', n'ی' as [ی] /* ی */ From t Where x='ي''1'");
  EXPECT_EQ(foldStatement("Select 2/* two */*'۱'", CodePage::Arabic), "Select 2/* two */*'1'");
  EXPECT_EQ(foldStatement("Select 1 From t Where x='漢'", CodePage::Arabic), "Select 1 From t Where x=N'漢'");
  const auto update = [] { static_cast<void>(foldStatement("Update t Set x='漢'", CodePage::Arabic)); };
  EXPECT_NE(std::string(testing::failureOf(update).what()).find("漢"), std::string::npos);
}

}  // namespace
}  // namespace ledgertree::engines::odbc
