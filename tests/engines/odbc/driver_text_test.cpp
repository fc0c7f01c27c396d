#include "engines/odbc/driver_text.h"

#include <gtest/gtest.h>

#include "support/failure.h"
#include "support/text_table.h"

namespace ledgertree::engines::odbc {
namespace {

const std::vector<std::string> kFreeTdsOnly{"SQLite3", "FreeTDS"};
const std::vector<std::string> kBoth{"ODBC Driver 17 for SQL Server", "FreeTDS",
                                     "ODBC Driver 18 for SQL Server", "ODBC Driver 9 for SQL Server"};

std::string written(const std::string& text, const std::vector<std::string>& installed) {
  return std::string(driverText(data::ConnectionText(text), installed).text.view());
}

TEST(DriverText, SpeaksTheWordsOfTheDriver) {
  for (auto& row : testing::tableOf("engines/odbc/driver_text.txt", "FreeTDS")) {
    row[1].replace(row[1].find('*'), 1, "TDS_Version=7.4;ClientCharset=UTF-8;");
    EXPECT_EQ(written(row[0], kFreeTdsOnly), "Driver=FreeTDS;" + row[1]) << row[0];
  }
  for (const auto& row : testing::tableOf("engines/odbc/driver_text.txt", "Microsoft"))
    EXPECT_EQ(written(row[0], kBoth), "Driver={ODBC Driver 18 for SQL Server};" + row[1].substr(1)) << row[0];
}

TEST(DriverText, TakesTheDriverThatIsNamed) {
  EXPECT_TRUE(
      written("Data Source=srv;ODBC Driver=FreeTDS", kBoth).starts_with("Driver=FreeTDS;Server=srv;"));
  EXPECT_EQ(driverText(data::ConnectionText("Server=s;ODBC Driver=SQL Server"), {}).dialect,
            Dialect::Microsoft);
  EXPECT_EQ(written("ODBC Driver=SQLite3;Database=/tmp/a b.db", {}),
            "Driver=SQLite3;Database={/tmp/a b.db};");
  for (const char* const key : {"Connect Timeout", "Connection Timeout", "Timeout"})
    EXPECT_EQ(
        driverText(data::ConnectionText(std::string("Data Source=s;") + key + "=4"), kBoth).loginSeconds, 4);
  EXPECT_EQ(driverText(data::ConnectionText("Data Source=s;Connect Timeout=0"), kBoth).loginSeconds, 15);
  const data::ConnectionText partnered("Data Source=s;Failover Partner=other,1500");
  EXPECT_TRUE(driverText(partnered, kFreeTdsOnly).hasPartner);
  EXPECT_NE(driverText(partnered, kFreeTdsOnly, true).text.view().find("Server=other;Port=1500;"),
            std::string_view::npos);
}

TEST(DriverText, RefusesWhatItCannotCarryAndNamesTheKeyAlone) {
  auto cases = testing::tableOf("engines/odbc/driver_text.txt", "refused");
  cases.push_back({"Data Source=srv;Password=\"hid\nden\"", "Password"});
  for (const auto& row : cases) {
    const data::DataError failure = testing::failureOf([&] { return written(row[0], kFreeTdsOnly); });
    const std::string message = failure.what();
    EXPECT_EQ(failure.reason(), data::DataError::Reason::Connection) << row[0];
    EXPECT_NE(message.find(row[1]), std::string::npos) << message;
    EXPECT_EQ(message.find("hid"), std::string::npos) << message;
  }
  EXPECT_THROW(written("Data Source=srv", {"SQLite3"}), data::DataError);
}

}  // namespace
}  // namespace ledgertree::engines::odbc
