#include <gtest/gtest.h>

#include <chrono>

#include "engines/odbc/odbc_connection.h"
#include "support/failure.h"
#include "support/tcp_proxy.h"

namespace ledgertree::engines::odbc {
namespace {

using Reason = data::DataError::Reason;
using std::chrono::steady_clock;

using testing::failureOf;

std::string behind(const testing::TcpProxy& proxy) {
  return testing::TcpProxy::through(proxy,
                                    "Initial Catalog=books;User ID=sa;Password=\"very;hid}den\";Connect "
                                    "Timeout=1;ODBC Driver=FreeTDS");
}

TEST(OdbcConnecting, FailsInTimeAndNeverShowsThePassword) {
  testing::TcpProxy deaf("127.0.0.1", 1);
  deaf.set(testing::TcpProxy::Road::Silent);
  const testing::TcpProxy hostile("127.0.0.1", 1);
  for (const std::string& text :
       {behind(deaf), behind(hostile), behind(deaf) + ";Password=p",
        std::string("ODBC Driver=/nowhere/libodbc-none.so;Database=x;UID=sa;PWD=\"very;hid}den\"")}) {
    OdbcConnection connection{data::ConnectionText(text)};
    for (int attempt = 0; attempt < 2; ++attempt) {
      const auto begun = steady_clock::now();
      const data::DataError failure = failureOf([&] { connection.run("select 1"); });
      EXPECT_EQ(failure.reason(), Reason::Connection) << failure.what();
      EXPECT_EQ(std::string(failure.what()).find("hid"), std::string::npos) << failure.what();
      EXPECT_EQ(std::string(failure.what()).find('*'), std::string::npos) << failure.what();
      EXPECT_LT(steady_clock::now() - begun, std::chrono::seconds(60)) << text;
    }
  }
}

}  // namespace
}  // namespace ledgertree::engines::odbc
