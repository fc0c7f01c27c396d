#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "engines/odbc/odbc_connection.h"
#include "support/failure.h"
#include "support/temporary_database.h"

namespace ledgertree::engines::odbc {
namespace {

using Reason = data::DataError::Reason;
using std::chrono::steady_clock;

using testing::failureOf;

/// The layer on a driver that needs no server: its database is a file. It has no Unicode calls, so that its
/// texts are ASCII; what becomes of letters shows on a server.
class OdbcConnectionTest : public ::testing::Test {
 protected:
  const testing::TemporaryFolder folder_;
  data::ConnectionText text_{"ODBC Driver=SQLite3;Database=" +
                             data::quoteConnectionValue((folder_.path() / "odbc.db").string())};
  OdbcConnection connection_{text_};
};

TEST_F(OdbcConnectionTest, ALongTextComesWholeAndNoRowIsNoFailure) {
  std::string notes;
  for (int count = 0; count < 5000; ++count) notes += "abc ";
  const std::string made = "select replace(hex(zeroblob(5000)), '00', 'abc ') as Notes";
  const auto rows = connection_.run(made);
  EXPECT_EQ(rows->columns().at(0), "Notes");
  EXPECT_EQ(rows->text(0, 0), notes);
  EXPECT_EQ(connection_.run(made + " where 1 = 0")->count(), 0U);
}

TEST_F(OdbcConnectionTest, TellsFailuresAndGoesOn) {
  connection_.run("create table t(ID integer primary key)");
  const data::DataError unknown = failureOf([&] { connection_.run("select Nothing from t"); });
  EXPECT_EQ(unknown.reason(), Reason::Statement);
  EXPECT_EQ(std::string(unknown.what()).find(data::kStatementRefused), 0U);
  EXPECT_NE(std::string(unknown.what()).find("Nothing"), std::string::npos);
  EXPECT_EQ(unknown.statement(), "select Nothing from t");
  EXPECT_EQ(failureOf([&] { connection_.run(std::string("select 1\0", 9)); }).reason(), Reason::Misuse);
  EXPECT_EQ(failureOf([&] { connection_.run("select '\xD9'"); }).reason(), Reason::Misuse);
}

/// A server that takes connections, and says nothing or hangs up.
class Listener {
 public:
  explicit Listener(bool hangsUp) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), size), 0);
    listen(socket_, 4);
    getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size);
    port_ = ntohs(address.sin_port);
    if (hangsUp) {
      thread_ = std::thread([this] {
        for (int taken = accept(socket_, nullptr, nullptr); taken >= 0;
             taken = accept(socket_, nullptr, nullptr))
          close(taken);
      });
    }
  }
  ~Listener() {
    shutdown(socket_, SHUT_RDWR);
    if (thread_.joinable()) thread_.join();
    close(socket_);
  }
  [[nodiscard]] std::string text() const {
    return "Data Source=127.0.0.1," + std::to_string(port_) +
           ";Initial Catalog=books;User ID=sa;Password=\"very;hid}den\";Connect Timeout=1;ODBC "
           "Driver=FreeTDS";
  }

 private:
  int socket_;
  int port_ = 0;
  std::thread thread_;
};

TEST(OdbcConnecting, FailsInTimeAndNeverShowsThePassword) {
  const Listener deaf(false);
  const Listener hostile(true);
  for (const std::string& text :
       {deaf.text(), hostile.text(), deaf.text() + ";Password=p",
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
