#include "engines/odbc/driver_text.h"

#include <gtest/gtest.h>

#include "support/failure.h"

namespace ledgertree::engines::odbc {
namespace {

struct Case {
  const char* text;
  const char* expected;  ///< behind the driver
};

const std::vector<std::string> kFreeTdsOnly{"SQLite3", "FreeTDS"};
const std::vector<std::string> kBoth{"ODBC Driver 17 for SQL Server", "FreeTDS",
                                     "ODBC Driver 18 for SQL Server", "ODBC Driver 9 for SQL Server"};

std::string written(const char* text, const std::vector<std::string>& installed) {
  return std::string(driverText(data::ConnectionText(text), installed).text.view());
}

TEST(DriverText, SpeaksTheWordsOfFreeTds) {
  const std::string usual = "TDS_Version=7.4;ClientCharset=UTF-8;";
  const Case cases[] = {
      {"Provider=SQLOLEDB.1;Data Source=srv;Initial Catalog=books;User ID=sa;Password=x",
       "Server=srv;Port=1433;*Encryption=request;Database=books;UID=sa;PWD=x;APP=LedgerTree;"},
      {"Data Source=tcp:srv.local , 1500 ;Application Name=Tarvo Host;Workstation ID=pc7",
       "Server=srv.local;Port=1500;*Encryption=request;APP={Tarvo Host};WSID=pc7;"},
      {"Server=srv\\books;Integrated Security=SSPI;UID=left;PWD=out",
       "Server={srv\\books};*Encryption=request;Trusted_Connection=yes;APP=LedgerTree;"},
      {"Data Source=.\\books,1500;Use Encryption for Data=True;Trust Server Certificate=True",
       "Server=localhost;Port=1500;*Encryption=require;APP=LedgerTree;"},
      {"Data Source=srv;Database=a]b;UID=o'hara;PWD=\"p;w{d}} =\"",
       "Server=srv;Port=1433;*Encryption=request;Database={a]b};UID={o'hara};PWD={p;w{d}}}} "
       "=};APP=LedgerTree;"},
  };
  for (const Case& one : cases) {
    std::string expected = "Driver=FreeTDS;" + std::string(one.expected);
    expected.replace(expected.find('*'), 1, usual);
    EXPECT_EQ(written(one.text, kFreeTdsOnly), expected) << one.text;
  }
}

TEST(DriverText, TakesTheNewestDriverOfMicrosoftOrTheOneThatIsNamed) {
  EXPECT_EQ(written("Data Source=srv\\books,1500;UID=sa;PWD=x;Encrypt=mandatory", kBoth),
            "Driver={ODBC Driver 18 for SQL Server};Server={tcp:srv\\books,1500};Encrypt=yes;"
            "TrustServerCertificate=no;UID=sa;PWD=x;APP=LedgerTree;");
  EXPECT_TRUE(
      written("Data Source=srv;ODBC Driver=FreeTDS", kBoth).starts_with("Driver=FreeTDS;Server=srv;"));
  EXPECT_EQ(written("ODBC Driver=SQLite3;Database=/tmp/a b.db", {}),
            "Driver=SQLite3;Database={/tmp/a b.db};");
  EXPECT_EQ(driverText(data::ConnectionText("Data Source=s;Connect Timeout=4"), kBoth).loginSeconds, 4);
  EXPECT_EQ(driverText(data::ConnectionText("Data Source=s;Connect Timeout=0"), kBoth).loginSeconds, 15);
}

TEST(DriverText, RefusesWhatItCannotCarryAndNamesTheKeyAlone) {
  const Case cases[] = {
      {"User ID=sa;Password=hidden", "Data Source"},
      {"Data Source=srv,70000;Password=hidden", "Data Source"},
      {"Data Source=srv,;Password=hidden", "Data Source"},
      {"Data Source=np:\\\\srv\\pipe;Password=hidden", "Data Source"},
      {"Data Source=(localdb)\\x;Password=hidden", "Data Source"},
      {"Data Source=srv;Password=\"hid\nden\"", "Password"},
      {"Data Source=srv;Encrypt=perhaps;Password=hidden", "Use Encryption for Data"},
      {"Data Source=srv;Connect Timeout=-1;Password=hidden", "Connect Timeout"},
      {"Data Source=srv;Encrypt=yes;Password=hidden", "Trust Server Certificate"},
  };
  for (const Case& one : cases) {
    const data::DataError failure = testing::failureOf([&] { return written(one.text, kFreeTdsOnly); });
    const std::string message = failure.what();
    EXPECT_EQ(failure.reason(), data::DataError::Reason::Connection) << one.text;
    EXPECT_NE(message.find(one.expected), std::string::npos) << message;
    EXPECT_EQ(message.find("hid"), std::string::npos) << message;
  }
  EXPECT_THROW(written("Data Source=srv", {"SQLite3"}), data::DataError);
}

}  // namespace
}  // namespace ledgertree::engines::odbc
