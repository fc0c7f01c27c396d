// What a user types into a picker or a selector, and what the list shows.

#include <vector>

#include "contract/engine.h"
#include "data/quote_text.h"
#include "shell/lookup/lookup_reader.h"
#include "support/text_table.h"

namespace ledgertree::testing {
namespace {

class Searches : public Engine {
 protected:
  Searches() {
    int id = 0;
    for (auto& row : tableOf("contract/searches.txt", "chart"))
      database.execute("insert into tblAccount (ID, Code, Title) values (" + std::to_string(++id) + ", " +
                       (row[0] == "-" ? "null" : data::quoteText(row[0])) + ", " +
                       data::quoteText(joiners(row[1])) + ")");
  }

  static std::string joiners(std::string text) {
    for (std::size_t at = text.find('~'); at != std::string::npos; at = text.find('~'))
      text.replace(at, 1, "\u200C");
    return text;
  }

  /// The codes on all pages; the early hits are the first of them.
  std::string found(const std::string& text, data::SearchOrder order, std::size_t limit) {
    const bool byCode = order == data::SearchOrder::Code;
    data::SearchRequest request{.view = "dbo.vwAccountMajor",
                                .columns = byCode ? std::vector<std::string>{"Code", "Name"}
                                                  : std::vector<std::string>{"Name", "Code"},
                                .order = order,
                                .text = joiners(text),
                                .continuation = {},
                                .limit = limit,
                                .cancelled = {}};
    std::string codes;
    const auto add = [&codes](const data::Rows& rows, std::size_t first) {
      for (std::size_t row = first; row < rows.count(); ++row) {
        const std::string code = rows.value(row, *rows.column("Code")).toText();
        codes += (codes.empty() ? "" : " ") + (code.empty() ? "-" : code);
      }
    };
    do {
      std::size_t early = 0;
      request.early = [&](const data::Rows& rows) { add(rows, 0), early = rows.count(); };
      const data::SearchPage page = connection->search(request);
      EXPECT_LE(page.rows.count(), limit);
      add(page.rows, early);
      request.continuation = page.continuation;
    } while (!request.continuation.empty());
    return codes;
  }
};

TEST_F(Searches, FindsWordsInAnyOrderWhateverBlanksAndJoinersStandBetween) {
  for (const std::size_t limit : {100U, 2U}) {
    for (const auto& row : tableOf("contract/searches.txt", "by code"))
      EXPECT_EQ(found(row[0], data::SearchOrder::Code, limit), row[1]) << row[0] << " " << limit;
    for (const auto& row : tableOf("contract/searches.txt", "by name"))
      EXPECT_EQ(found(row[0], data::SearchOrder::Name, limit), row[1]) << row[0] << " " << limit;
  }
}

TEST_F(Searches, TellTheParentsOfTheAccountsFound) {
  database.execute(
      "update tblAccount set ParentID = 3 where ID = 4; update tblAccount set ParentID = 1 where ID = 3");
  std::string told;
  for (const auto& [id, text, code, listed, place] :
       shell::LookupReader::parentsOf(*connection, {1, 3, 4, 99}))
    told += std::to_string(id) + ": " + text + "|";
  EXPECT_EQ(told, joiners("3: بانك ملي|4: حساب~هاي جاري / بانك ملي|"));
}

}  // namespace
}  // namespace ledgertree::testing
