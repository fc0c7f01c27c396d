// A user's actions over a slow network: LEDGERTREE_BENCH_CONNECTION names a server that holds the demo chart,
// and every action goes through a proxy that delays each response. Prints the time of each action by delay,
// and its round trips. Leaves the chart as it was.
//
//   bench_far --search    what each key of a few searches costs, in whatever chart is there

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "engines/odbc/odbc_engine.h"
#include "ledgertree/ledger_tree_control.h"
#include "shell/control/ledger_tree_control_session.h"
#include "support/scripted_desktop.h"
#include "support/server.h"
#include "support/tcp_proxy.h"
#include "text/characters.h"

namespace ledgertree::bench {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

constexpr const char* kTitle = "راه دور";
/// In the demo chart: an account without children, and a branch.
constexpr std::int32_t kAccount = 25;
constexpr const char* kBranch = "-1:1";

class Person {
 public:
  explicit Person(const std::string& text) : session_(std::make_unique<testing::ScriptedDesktop>()) {
    engines::odbc::registerOdbc(session_.shell().providers);
    control_.OLEConnectionString(text);
    control_.UserID(1);
  }

  /// Opens the connection and gives an empty field for the searches.
  void begin() {
    control_.ClearShow();
    form().cmdNew.click();
    type("9");
    form().sltParent.press(ui::Key::Backspace);
  }
  /// Types the text key by key, and waits for the last hit of each key and for the parents of the hits.
  void search(std::string_view text, const std::function<void(std::string_view typed)>& found) {
    for (std::size_t end = 0; end < text.size();) {
      const std::size_t letter = text::characterLength(text.substr(end));
      type(std::string(text.substr(end, letter)));
      found(text.substr(0, end += letter));
    }
    for (std::size_t letters = text::characterCount(text); letters > 0; --letters)
      form().sltParent.press(ui::Key::Backspace);
    type("");
  }

  /// The actions in order; each starts where the previous one ended.
  [[nodiscard]] std::vector<std::pair<const char*, std::function<void()>>> acts() {
    return {{"`ClearShow` to the first level", [this] { control_.ClearShow(); }},
            {"a level opened", [this] { form().treeAccount.expand(form().treeAccount.find(kBranch)); }},
            {"an account shown", [this] { form().View(kAccount); }},
            {"an edit begun", [this] { form().cmdEdit.click(); }},
            {"the edit saved", [this] { form().cmdSave.click(); }},
            {"a new account begun", [this] { form().cmdNew.click(); }},
            {"the first key in a field, which opens a connection", [this] { type("9"); }},
            {"another key, to its last hit", [this] { type("1"); }},
            {"the new account saved", [this] { saveNew(); }},
            {"it is deleted again", [this] { removeNew(); }}};
  }

 private:
  [[nodiscard]] mainform::FormMain& form() { return *session_.form(); }
  [[nodiscard]] testing::ScriptedDesktop& desktop() {
    return dynamic_cast<testing::ScriptedDesktop&>(session_.shell().desktop());
  }
  void type(const std::string& text) {
    form().sltParent.type(text);
    while (form().sltParent.searching()) {
      desktop().settle();
      std::this_thread::sleep_for(Milliseconds(1));
    }
  }
  void saveNew() {
    form().sltParent.press(ui::Key::Escape);
    form().txtTitle.setText(kTitle);
    form().txtCode.setText("98765");
    form().cmdSave.click();
  }
  void removeNew() { session_.shell().dtEn()->cnMainData.Execute("Delete tblAccount Where Code = '98765'"); }

  ControlSession session_;
  LedgerTreeControl control_ = session_.makeControl();
};

struct Cost {
  double milliseconds;
  std::uint64_t trips;
};

std::vector<Cost> costs(const std::string& text, Milliseconds delay) {
  testing::TcpProxy road(text);
  road.setDelay(delay);
  Person person(testing::TcpProxy::through(road, text));
  std::vector<Cost> costs;
  for (const auto& [name, act] : person.acts()) {
    const std::uint64_t before = road.roundTrips();
    const auto begun = Clock::now();
    act();
    const std::chrono::duration<double, std::milli> passed = Clock::now() - begun;
    costs.push_back({.milliseconds = passed.count(), .trips = road.roundTrips() - before});
  }
  return costs;
}

int run(const std::string& text) {
  const Milliseconds delays[] = {Milliseconds(0), Milliseconds(5), Milliseconds(20), Milliseconds(50)};
  std::vector<std::vector<Cost>> table;
  // Warm-up round.
  static_cast<void>(costs(text, Milliseconds(0)));
  for (const Milliseconds delay : delays) table.push_back(costs(text, delay));
  std::printf("| Act | Round trips | Without a delay | 5 ms | 20 ms | 50 ms |\n|---|---|---|---|---|---|\n");
  std::size_t row = 0;
  for (const auto& [name, act] : Person(text).acts()) {
    std::printf("| %s | %llu |", name, static_cast<unsigned long long>(table[0][row].trips));
    for (const auto& column : table) std::printf(" %.0f ms |", column[row].milliseconds);
    std::printf("\n");
    ++row;
  }
  return 0;
}

int search(const std::string& text) {
  testing::TcpProxy road(text);
  Person person(testing::TcpProxy::through(road, text));
  person.begin();
  std::printf("| Typed | Round trips | Bytes | Time |\n|---|---|---|---|\n");
  for (const char* const words : {"110203", "حساب های جاری", "بانک ملی شعبه"}) {
    std::uint64_t bytes = road.bytes();
    std::uint64_t trips = road.roundTrips();
    auto begun = Clock::now();
    person.search(words, [&](std::string_view typed) {
      const std::chrono::duration<double, std::milli> passed = Clock::now() - begun;
      std::printf("| %.*s | %llu | %llu | %.0f ms |\n", static_cast<int>(typed.size()), typed.data(),
                  static_cast<unsigned long long>(road.roundTrips() - trips),
                  static_cast<unsigned long long>(road.bytes() - bytes), passed.count());
      bytes = road.bytes();
      trips = road.roundTrips();
      begun = Clock::now();
    });
  }
  return 0;
}

}  // namespace
}  // namespace ledgertree::bench

int main(int count, char** arguments) {
  using namespace ledgertree::bench;
  const bool searches = count > 1 && std::string_view(arguments[1]) == "--search";
  return onServer(searches ? &search : &run);
}
