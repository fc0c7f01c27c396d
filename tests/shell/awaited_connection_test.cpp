#include "shell/awaited_connection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>

#include "data/catalogue.h"
#include "data/data_error.h"
#include "support/failure.h"
#include "support/scripted_desktop.h"

namespace ledgertree::shell {
namespace {

using namespace std::chrono_literals;
using testing::failureOf;

constexpr int kRows = 1203;
constexpr data::Procedure kProcedure{"spAny", {}};

/// The history of the connections to one server, and the command that it doesn't answer.
struct Server {
  std::mutex mutex;
  std::condition_variable changed;
  std::string silentAbout;
  std::string heard;
  int made = 0;
  std::atomic<int> rests = 0;
  std::function<bool(bool)> givesUp;  ///< what the connection made last is to ask

  void hear(const std::string& words) {
    if (words == "select slow") std::this_thread::sleep_for(250ms);
    std::unique_lock lock(mutex);
    heard += words + "; ";
    changed.wait(lock, [&] { return silentAbout.empty() || words.find(silentAbout) == std::string::npos; });
    if (words == "fail") throw data::DataError(data::DataError::Reason::Connection, 0, "the line is cut");
  }
  void keepSilentAbout(std::string words) {
    {
      const std::lock_guard lock(mutex);
      silentAbout = std::move(words);
    }
    changed.notify_all();
  }
};

class Engine : public data::Connection {
 public:
  explicit Engine(Server& server) : server_(server) { ++server.made; }
  std::optional<data::Rows> run(std::string_view statement) override {
    server_.hear(std::string(statement));
    return std::nullopt;
  }
  void walk(std::string_view statement, const std::function<bool(const data::Rows&)>& visit) override {
    for (int number = 1; number <= kRows; ++number) {
      if (number == kRows) server_.hear(std::string(statement));
      data::Rows row;
      row.addColumn("Number");
      row.addValue(number);
      if (!visit(row)) return server_.hear("left at " + std::to_string(number));
    }
  }
  std::int32_t call(const data::Procedure& procedure, std::span<const data::Value>) override {
    server_.hear(std::string(procedure.name));
    return 7;
  }
  void handOver(const data::AsRead&) override { server_.hear("handed over"); }
  void rest() override { ++server_.rests; }
  void whileWaiting(data::Waiting waiting) override { server_.givesUp = std::move(waiting.givesUp); }
  data::SearchPage search(const data::SearchRequest&) override { return {}; }

 private:
  Server& server_;
};

class Awaited : public ::testing::Test {
 protected:
  Awaited() { waits.patience = 700ms; }
  ~Awaited() override { server.keepSilentAbout(""); }
  std::string heard() {
    const std::lock_guard lock(server.mutex);
    return std::exchange(server.heard, "");
  }
  /// How many rows an iteration shows whose visitor does something at one of them.
  int walked(int at, const std::function<bool()>& does) {
    int shown = 0;
    connection.walk("select", [&](const data::Rows& row) {
      EXPECT_EQ(row.value(0, 0), data::Value(++shown));
      return shown != at || does();
    });
    return shown;
  }

  Server server;
  testing::ScriptedDesktop desktop;
  DatabaseWaits waits{desktop};
  Background background;
  AwaitedConnection connection{waits, background, [this] { return std::make_unique<Engine>(server); }};
};

TEST_F(Awaited, AWalkShowsItsRowsHereAndLetsOthersBetween) {
  for (const int at : {1, 500, 501, 1000, kRows}) {
    EXPECT_EQ(walked(at, [&] { return connection.run("select between"), true; }), kRows);
    EXPECT_NE(heard().find("select between"), std::string::npos);
    EXPECT_EQ(walked(at, [] { return false; }), at);
    EXPECT_THROW(walked(at, []() -> bool { throw std::logic_error("the visitor"); }), std::logic_error);
    connection.run("select behind");
    EXPECT_TRUE(heard().ends_with("select behind; "));
  }
  EXPECT_EQ(server.made, 1);
  // Anything left between two rows ends the iteration.
  server.keepSilentAbout("silent");
  const data::DataError left = failureOf([&] {
    return walked(3, [&] {
      EXPECT_EQ(failureOf([&] { return connection.run("select silent"); }).what(),
                std::string(data::kStopped));
      return true;
    });
  });
  EXPECT_EQ(left.reason(), data::DataError::Reason::TimeOut);
  EXPECT_TRUE(server.givesUp(true)) << "the server needn't go on for nobody";
  connection.run("select behind");
  EXPECT_EQ(server.made, 2);
  EXPECT_FALSE(server.givesUp(true));
}

TEST_F(Awaited, WhatIsHandedOverGoesWithTheNextCommandAlone) {
  connection.handOver({});
  EXPECT_EQ(heard(), "");
  EXPECT_EQ(connection.call(kProcedure, {}), 7);
  connection.run("update");
  connection.handOver({});
  connection.run("update");
  EXPECT_EQ(heard(), "handed over; spAny; update; handed over; update; ");
  EXPECT_TRUE(waits.wrote());
}

TEST_F(Awaited, APacketEndsAtItsFirstFailureAndTheNextCommandOpensWhatIsLost) {
  const data::Command packet[] = {{"select 1"}, {"fail"}, {"select 2"}};
  data::Answers answers = connection.runTogether(packet);
  EXPECT_EQ(answers.ran.size(), 1U);
  EXPECT_STREQ(failureOf([&] { std::rethrow_exception(answers.failure); }).what(), "the line is cut");
  EXPECT_EQ(heard(), "select 1; fail; ");
  for (const auto& [statement, told] :
       {std::pair("select silent", data::kStopped), {"update silent", data::kUnanswered}}) {
    server.keepSilentAbout("silent");
    answers = connection.runTogether(std::vector<data::Command>{{"select 1"}, {statement}});
    EXPECT_EQ(answers.ran.size(), 0U) << "nobody here knows";
    const data::DataError failure = failureOf([&] { std::rethrow_exception(answers.failure); });
    EXPECT_STREQ(failure.what(), told);
    EXPECT_EQ(failure.leavesOpen(), told == data::kUnanswered);
    const int before = server.made;
    connection.run("select 3");
    EXPECT_EQ(server.made, before + 1);
    server.keepSilentAbout("");
  }
}

TEST_F(Awaited, ManyShortCommandsOfOneActAreALongWait) {
  const auto acts = [&](bool one) {
    std::optional<ui::Desktop::Procedure> procedure;
    for (int command = 0; command < 4; ++command) {
      if (!one || !procedure) procedure.reset(), procedure.emplace(desktop);
      connection.run("select slow");
    }
    return std::exchange(desktop.waits, {}).size() > 1;
  };
  EXPECT_FALSE(acts(false));
  EXPECT_TRUE(acts(true));
}

TEST_F(Awaited, WhatNobodyAsksForLongIsGivenBackAndTakenAgain) {
  waits.restAfter = 30ms;
  for (int time = 1; time <= 2; ++time) {
    connection.run("select 1");
    for (int look = 0; look < 1000 && server.rests < time; ++look) std::this_thread::sleep_for(10ms);
    std::this_thread::sleep_for(3 * waits.restAfter);
    EXPECT_EQ(server.rests, time) << "once is enough";
  }
  EXPECT_EQ(server.made, 1);
}

}  // namespace
}  // namespace ledgertree::shell
