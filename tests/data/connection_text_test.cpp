#include "data/connection_text.h"

#include <gtest/gtest.h>

#include "data/connection.h"
#include "data/data_error.h"
#include "data/fake_connection.h"
#include "support/text_table.h"
#include "text/characters.h"

namespace ledgertree::data {
namespace {

/// The error of a connection text; empty if there is none.
std::string failureOf(std::string_view text) {
  FakeDatabase database;
  try {
    static_cast<void>(fakeProviders(database).open(text));
  } catch (const DataError& error) {
    EXPECT_EQ(error.reason(), DataError::Reason::Connection);
    return error.what();
  }
  return {};
}

TEST(ConnectionText, TakesApartWhatHostsWrite) {
  const ConnectionText text(
      " PROVIDER = Fake.1 ;; Data   Source=/srv/دفتر کل/books.db;Password=\"a;b=\"\"c'\";"
      "User\tID='o''neil' ;Extended Properties=x=1;a==b=2;Empty= ;Catalog=old;catalog=new; Quote=5\" ;\r\n");
  EXPECT_EQ(text.provider(), "Fake");
  EXPECT_EQ(text.find("data source"), "/srv/دفتر کل/books.db");
  EXPECT_EQ(text.find("password"), "a;b=\"c'");
  EXPECT_EQ(text.find("User  ID"), "o'neil");
  EXPECT_EQ(text.find("extended properties"), "x=1");
  EXPECT_EQ(text.find("A=B"), "2");
  EXPECT_EQ(text.find("Catalog"), "new") << "the last of equal keys counts";
  EXPECT_EQ(text.find("quote"), "5\"") << "a quote inside a value is a letter of it";
  EXPECT_EQ(text.find("Empty"), "");
  EXPECT_EQ(text.find("Server"), std::nullopt);
  EXPECT_THROW(static_cast<void>(text.require("Empty")), DataError);
  EXPECT_EQ(ConnectionText("Provider=My.Provider;").provider(), "My.Provider") << "only a version is cut off";
  EXPECT_EQ(failureOf("provider='fake'"), "");
}

TEST(ConnectionText, AMalformedOneIsRefusedByPlaceAndShowsNoPassword) {
  auto malformed = testing::linesOf("data/texts.txt", "malformed connection texts");
  malformed.insert(malformed.end(), {"", "   ", "Provider=Fake;Password=secret\xD8",
                                     std::string("Provider=Fake;Password=sec\0ret", 30)});
  for (const std::string& text : malformed) {
    const std::string message = failureOf(text);
    EXPECT_FALSE(message.empty()) << text;
    EXPECT_EQ(message.find("secret"), std::string::npos) << message;
    EXPECT_TRUE(text::isCleanText(message)) << text;
  }
  EXPECT_NE(failureOf("Provider=Fake;دفتر=1;Password='x").find(" 31 "), std::string::npos)
      << "places count letters, not bytes: " << failureOf("Provider=Fake;دفتر=1;Password='x");
  EXPECT_NE(failureOf("Provider=Oracle").find("Oracle"), std::string::npos);
  EXPECT_FALSE(failureOf(std::string(10'000, '"')).empty());
}

TEST(ConnectionText, AQuotedValueReadsBack) {
  for (const std::string value : {"plain", "", " blanks ", "a;b", "'", "\"", "a'b\"c;d", "=x"})
    EXPECT_EQ(ConnectionText("Key=" + quoteConnectionValue(value) + ";Next=1").find("Key"), value);
}

}  // namespace
}  // namespace ledgertree::data
