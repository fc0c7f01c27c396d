#include "shell/lookup/lookup_thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>

#include "lookup_database.h"
#include "shell/chart_changes.h"
#include "shell/lookup/selector.h"
#include "support/scripted_desktop.h"
#include "support/scripted_notices.h"

namespace ledgertree::shell {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// A server somewhere: some words keep it at work for as long as the story wants, and some so that it doesn't
/// even hear that they were given up.
struct FarServer {
  std::mutex mutex;
  testing::LookupDatabase database;
  std::atomic<bool> unreachable = false;
  std::atomic<bool> ended = false;
  std::atomic<int> failed = 0;
  std::atomic<int> givenUp = 0;
  std::atomic<int> working = 0;
  std::atomic<int> rests = 0;
  std::string intent;  ///< of the connection that was made last
  std::set<std::thread::id> threads;
};

class FarConnection : public testing::LookupConnection {
 public:
  explicit FarConnection(FarServer& server) : LookupConnection(server.database), server_(server) {}

  [[nodiscard]] bool answersLate() const override { return true; }
  void rest() override { ++server_.rests; }
  data::SearchPage search(const data::SearchRequest& request) override {
    if (server_.unreachable && ++server_.failed != 0)
      throw data::DataError(data::DataError::Reason::Connection, 0, "the line is cut");
    ++server_.working;
    const auto end = steady_clock::now() + std::chrono::seconds(20);
    while (steady_clock::now() < end &&
           ((request.text == "slow" && !request.cancelled()) || (request.text == "deaf" && !server_.ended)))
      std::this_thread::sleep_for(milliseconds(1));
    --server_.working;
    if (request.cancelled()) {
      ++server_.givenUp;
      throw data::DataError(data::DataError::Reason::Cancelled, 0, "given up");
    }
    const std::lock_guard lock(server_.mutex);
    server_.threads.insert(std::this_thread::get_id());
    return LookupConnection::search(request);
  }
  std::optional<data::Rows> run(std::string_view statement) override {
    if (statement.ends_with("vwLedgerTreeChanges")) return std::nullopt;
    const std::lock_guard lock(server_.mutex);
    return LookupConnection::run(statement);
  }

 private:
  FarServer& server_;
};

struct Screen : ui::Form {
  explicit Screen(Shell& shell)
      : Form(shell.surroundings(), "Screen", "", {.width = 6000, .height = 3000}),
        sltGroup(*this, shell, "sltGroup", {}) {}
  Selector sltGroup;
};

class LookupBeside : public ::testing::Test {
 protected:
  LookupBeside() {
    shell.providers.add("Far", [this](const data::ConnectionText& text) {
      const std::lock_guard lock(server.mutex);
      server.intent = text.find("ApplicationIntent").value_or("");
      return std::make_unique<FarConnection>(server);
    });
    server.database.views["vwGroups"] = {{1, "10", "دارايي"}, {2, "20", "بدهي"}};
    desktop.show(*screen);
    screen->sltGroup.setConnectionText("Provider=Far;Data Source=there");
    screen->sltGroup.setMajorView("vwGroups");
  }
  ~LookupBeside() override { server.ended = true; }

  /// Time passes on the screen until something is so.
  bool comes(const std::function<bool()>& thing) {
    const auto end = steady_clock::now() + std::chrono::seconds(20);
    while (!thing() && steady_clock::now() < end) {
      desktop.settle();
      std::this_thread::sleep_for(milliseconds(1));
    }
    return thing();
  }
  void replace(const std::string& text) {
    for (int letter = 0; letter < 10; ++letter) screen->sltGroup.press(ui::Key::Backspace);
    screen->sltGroup.type(text);
  }

  FarServer server;
  testing::ScriptedDesktop desktop;
  Shell shell{desktop};
  testing::ScriptedNotices notices{shell.components};
  std::unique_ptr<Screen> screen = std::make_unique<Screen>(shell);
};

TEST_F(LookupBeside, ANewerKeystrokeEndsWhatTheServerIsAt) {
  const auto shows = [&](int id) {
    return screen->sltGroup.rows().size() == 1 && screen->sltGroup.rows()[0].id == id;
  };
  for (const int id : {1, 2, 1, 2, 1, 2}) {
    replace(id == 2 ? "بدهی" : "دارایی");
    ASSERT_TRUE(comes([&] { return shows(id); }));
  }
  EXPECT_LE(server.database.open, LookupThread::kMostThreads) << "a connection serves many questions";
  // A server that heeds needs no second connection, unless the machine lets its thread wait for too long.
  int rounds = 0;
  std::size_t before = 0;
  do {
    before = server.threads.size();
    replace("slow");
    ASSERT_TRUE(comes([&] { return server.working == 1; }));
    const int id = 1 + rounds % 2;
    replace(id == 2 ? "بدهی" : "دارایی");
    ASSERT_TRUE(comes([&] { return shows(id); }));
    EXPECT_TRUE(comes([&] { return server.givenUp == rounds + 1; }));
    ++rounds;
  } while (server.threads.size() != before && rounds < 20);
  EXPECT_EQ(server.threads.size(), before);
  EXPECT_EQ(server.threads.count(std::this_thread::get_id()), 0U);

  replace("deaf");
  ASSERT_TRUE(comes([&] { return server.working == 1; }));
  replace("دارایی");
  const auto found = [&] { return !screen->sltGroup.rows().empty() && screen->sltGroup.rows()[0].id == 1; };
  EXPECT_TRUE(comes(found)) << "a second thread takes over";
  server.ended = true;
  EXPECT_TRUE(comes([&] { return server.working == 0; }));
  desktop.settle();
  EXPECT_TRUE(found()) << "what was given up never shows";
}

TEST_F(LookupBeside, AScreenClosesInTheMiddleOfASearch) {
  screen->sltGroup.type("deaf");
  ASSERT_TRUE(comes([&] { return server.working == 1; }));
  screen.reset();
  EXPECT_EQ(server.working, 1) << "nobody waited for it";
  server.ended = true;
  EXPECT_TRUE(comes([&] { return server.database.open == 0; })) << "the thread takes its connection along";
}

TEST_F(LookupBeside, ALongListComesPageByPage) {
  auto& view = server.database.views["vwGroups"] = {};
  for (int id = 1; id <= 250; ++id) view.push_back({id, std::to_string(1000 + id), "x"});
  Selector& field = screen->sltGroup;
  field.openList();
  for (const int rows : {100, 200, 250, 250}) {
    ASSERT_TRUE(comes([&] { return !field.searching() && !field.rows().empty(); }));
    EXPECT_EQ(field.rows().size(), static_cast<std::size_t>(rows));
    EXPECT_EQ(field.rows().back().id, rows);
    field.reachedEnd();
  }
}

TEST_F(LookupBeside, ASecondaryIsAskedUntilSomethingWasWrittenAndNobodyIsKeptForLong) {
  shell.waits.restAfter = milliseconds(30);
  shell.context.gConnectionString = "Provider=Far;Data Source=there";
  shell.resetDataConnection();
  ChartChanges changes(shell, {});
  changes.begin();
  for (int asked = 1; asked <= 2; ++asked) {
    changes.ask();
    EXPECT_TRUE(comes([&] { return server.rests == 1 + asked; })) << "the gateway once, and the question";
  }
  server.rests = 0;
  const auto find = [&](const std::string& text) {
    replace(text);
    EXPECT_TRUE(comes([&] { return screen->sltGroup.rows().size() == 1 && !screen->sltGroup.searching(); }));
    return std::exchange(server.intent, "the same");
  };
  screen->sltGroup.setConnectionText("Provider=Far;Data Source=there;Search Intent=readonly;");
  EXPECT_EQ(find("بدهی"), "ReadOnly");
  EXPECT_TRUE(comes([&] { return server.rests == 1; }));
  EXPECT_EQ(find("دارا"), "the same");
  shell.waits.noteWrite();
  EXPECT_EQ(find("بدهی"), "");
  EXPECT_EQ(find("دارا"), "the same");
}

TEST_F(LookupBeside, ABrokenLineIsToldOnce) {
  server.unreachable = true;
  int told = 0;
  notices.onShow = [&](const testing::Notice&) { ++told; };
  screen->sltGroup.type("ب");
  ASSERT_TRUE(comes([&] { return told == 1; }));
  replace("بد");
  ASSERT_TRUE(comes([&] { return server.failed == 2; }));
  desktop.settle();
  EXPECT_EQ(told, 1);
  server.unreachable = false;
  replace("بده");
  EXPECT_TRUE(comes([&] { return screen->sltGroup.rows().size() == 1; }));
}

}  // namespace
}  // namespace ledgertree::shell
