// The network between the engine and its server, made bad by a proxy.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <thread>

#include "engines/odbc/odbc_connection.h"
#include "support/failure.h"
#include "support/tcp_proxy.h"
#include "support/temporary_database.h"

namespace ledgertree::engines::odbc {
namespace {

using Road = testing::TcpProxy::Road;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::TcpProxy;

/// A local port with a server that echoes what it receives.
class Echo {
 public:
  Echo() {
    EXPECT_EQ(listen(socket_, 4), 0);
    thread_ = std::thread([this] {
      for (int side = accept(socket_, nullptr, nullptr); side >= 0;
           side = accept(socket_, nullptr, nullptr)) {
        std::array<char, 100> room{};
        for (ssize_t count = 0; (count = recv(side, room.data(), room.size(), 0)) > 0;)
          send(side, room.data(), static_cast<std::size_t>(count), MSG_NOSIGNAL);
        close(side);
      }
    });
  }
  ~Echo() {
    shutdown(socket_, SHUT_RDWR);
    thread_.join();
    close(socket_);
  }
  [[nodiscard]] std::uint16_t port() const {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
  }

 private:
  int socket_ = socket(AF_INET, SOCK_STREAM, 0);
  std::thread thread_;
};

/// Sends `words` on a new connection, or on `kept`, and returns what comes back within 0.3 seconds.
std::string answerOf(std::uint16_t port, const std::string& words, int* kept = nullptr) {
  int side = kept == nullptr ? -1 : *kept;
  if (side < 0) {
    sockaddr_in address{
        .sin_family = AF_INET, .sin_port = htons(port), .sin_addr = {htonl(INADDR_LOOPBACK)}, .sin_zero = {}};
    side = socket(AF_INET, SOCK_STREAM, 0);
    EXPECT_EQ(connect(side, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    const timeval patience{0, 300000};
    setsockopt(side, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  }
  send(side, words.data(), words.size(), MSG_NOSIGNAL);
  std::array<char, 100> room{};
  const ssize_t count = recv(side, room.data(), room.size(), 0);
  if (kept == nullptr)
    close(side);
  else
    *kept = side;
  return count < 0 && errno == EAGAIN ? "silence"
         : count <= 0                 ? "end"
                                      : std::string(room.data(), static_cast<std::size_t>(count));
}

TEST(Road, IsAsBadAsItWasTold) {
  const Echo server;
  TcpProxy proxy("127.0.0.1", server.port());
  int side = -1;
  EXPECT_EQ(answerOf(proxy.port(), "one", &side), "one");
  proxy.setDelay(milliseconds(80));
  const auto begun = steady_clock::now();
  EXPECT_EQ(answerOf(proxy.port(), "two", &side), "two");
  EXPECT_GE(steady_clock::now() - begun, milliseconds(80));
  EXPECT_EQ(proxy.roundTrips(), 2U);
  EXPECT_EQ(proxy.bytes(), 12U);
  proxy.setDelay(milliseconds(0));
  proxy.set(Road::Silent);
  EXPECT_EQ(answerOf(proxy.port(), "three", &side), "silence");
  proxy.set(Road::Open);
  EXPECT_EQ(answerOf(proxy.port(), "", &side), "three");
  proxy.setBehind(u"four", Road::Swallowing);
  EXPECT_EQ(answerOf(proxy.port(), "is", &side), "is");
  EXPECT_EQ(answerOf(proxy.port(), std::string("f\0o\0u\0r", 8), &side), "silence");
  EXPECT_EQ(proxy.bytes(), 12U + 10 + 4 + 16) << "the server had it, and answered";
  proxy.set(Road::Cut);
  EXPECT_EQ(answerOf(proxy.port(), "five", &side), "end");
  EXPECT_EQ(answerOf(proxy.port(), "six"), "end");
  close(side);
}

TEST(Road, AnAnswerThatIsLostLeavesOpenWhatWasWrittenAndTheNextCommandGoesOn) {
  if (!testing::onServer()) GTEST_SKIP() << "LEDGERTREE_TEST_CONNECTION names no server";
  TcpProxy proxy(testing::testServer());
  const data::ConnectionText road(TcpProxy::through(proxy, testing::testServer()) + ";Connect Timeout=2");
  OdbcConnection direct(data::ConnectionText(testing::testServer()), data::kCommandTimeOut, Versions::Any);
  OdbcConnection connection(road, milliseconds(1500), Versions::Any);
  direct.run("drop table if exists odbcRoad");
  direct.run("create table odbcRoad(ID int primary key)");
  int id = 0;
  for (const Road lost : {Road::Swallowing, Road::Cut}) {
    proxy.set(Road::Open);
    EXPECT_EQ(connection.run("select count(*) from odbcRoad")->value(0, 0).toText(), std::to_string(id));
    proxy.setBehind(u"insert odbcRoad", lost);
    const data::DataError failure =
        testing::failureOf([&] { connection.run("insert odbcRoad values(" + std::to_string(++id) + ")"); });
    EXPECT_TRUE(failure.leavesOpen()) << failure.what();
    EXPECT_EQ(direct.run("select count(*) from odbcRoad")->value(0, 0).toText(), std::to_string(id));
  }
  direct.run("drop table odbcRoad");
}

}  // namespace
}  // namespace ledgertree::engines::odbc
