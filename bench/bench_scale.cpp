// A thousand simulated accountants on one server: LEDGERTREE_BENCH_CONNECTION names one that holds the demo
// chart and no valuable data. Each performs an action of a working day now and then, on the real screens; a
// few screens, each with its own connection and thread, serve them in turn. Prints what each action takes
// alone, then for each pace how many actions were done and how long an accountant waited.
// LEDGERTREE_BENCH_SERVER, the process ID of a server on this machine, adds the server's CPU time per action.
// Deletes the accounts it created.

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <queue>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "engines/odbc/odbc_engine.h"
#include "mainform/form/form_main.h"
#include "support/scripted_desktop.h"
#include "support/scripted_notices.h"
#include "support/server.h"

namespace ledgertree::bench {
namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr int kAccountants = 1000;
constexpr int kScreens = 8;
constexpr const char* kTitle = "بار آزمايشي";

/// The weights are per hundred actions.
enum class Act { Show, Open, Search, Edit, Add, Remove };
struct Share {
  Act act;
  const char* name;
  int percent;
};
constexpr Share kDay[] = {
    {Act::Show, "an account shown", 40},          {Act::Open, "a level opened", 20},
    {Act::Search, "a word typed in a field", 20}, {Act::Edit, "an edit saved", 12},
    {Act::Add, "a new account saved", 4},         {Act::Remove, "an account deleted", 4}};

/// A screen that serves accountants in turn.
class Screen {
 public:
  Screen(const std::string& text, unsigned seed) : dice_(seed) {
    engines::odbc::registerOdbc(shell_.providers);
    shell_.context.gConnectionString = text;
    shell_.context.gUserID = 1;
    desktop_.patience = std::chrono::seconds(30);
    shell_.resetDataConnection();
    form_ = std::make_unique<mainform::FormMain>(shell_);
    form_->load();
    desktop_.show(*form_);
  }
  ~Screen() {
    while (!made_.empty()) remove();
  }

  /// Returns what was really done: a removal needs an account to remove.
  Act act(Act what) {
    if (what == Act::Remove && made_.empty()) what = Act::Add;
    mainform::FormMain& f = *form_;
    switch (what) {
      case Act::Show:
        f.View(account());
        break;
      case Act::Open:
        f.treeAccount.collapse(f.treeAccount.find("-1:1"));
        f.cmdRefreshAccountTree.click();
        f.treeAccount.expand(f.treeAccount.find("-1:1"));
        break;
      case Act::Search:
        f.sltAccount.type("11");
        desktop_.settle();
        f.sltAccount.press(ui::Key::Escape);
        break;
      case Act::Edit:
        f.View(account());
        f.cmdEdit.click();
        f.txtNotes.paste(std::to_string(dice_()));
        save();
        break;
      case Act::Add:
        add();
        break;
      case Act::Remove:
        remove();
        break;
    }
    failures_ += notices_.take().size();
    return what;
  }
  [[nodiscard]] std::size_t failures() const { return failures_; }

 private:
  int account() { return static_cast<int>(1 + dice_() % 40); }
  void save() {
    form_->cmdSave.click();
    desktop_.forgetScripts();
    if (form_->formMode == mainform::FormMode::ModeView) return;
    notices_.answer(1);
    form_->cmdCancel.click();
  }
  void add() {
    form_->cmdNew.click();
    form_->txtTitle.paste(kTitle);
    form_->txtCode.paste("9" + std::to_string(dice_()));
    form_->cmdSave.click();
    if (form_->formMode == mainform::FormMode::ModeView) made_.push_back(std::stoi(form_->txtID.text()));
    save();
  }
  void remove() {
    form_->View(made_.back());
    notices_.answer(1);
    form_->cmdDelete.click();
    notices_.forget();
    made_.pop_back();
  }

  testing::ScriptedDesktop desktop_;
  shell::Shell shell_{desktop_};
  testing::ScriptedNotices notices_{shell_.components};
  std::unique_ptr<mainform::FormMain> form_;
  std::mt19937 dice_;
  std::vector<int> made_;
  std::size_t failures_ = 0;
};

/// When each accountant acts next, in order of time.
class Day {
 public:
  Day(Seconds between, Seconds length) : between_(1 / between.count()), end_(Clock::now() + toClock(length)) {
    for (int one = 0; one < kAccountants; ++one) wanted_.push(Clock::now() + pause());
  }
  /// Waits for the next action and returns its scheduled time; nothing at the end of the day.
  std::optional<Clock::time_point> next() {
    std::unique_lock lock(mutex_);
    while (true) {
      const Clock::time_point wish = wanted_.top();
      if (std::max(wish, Clock::now()) >= end_) return std::nullopt;
      if (wish <= Clock::now()) {
        wanted_.pop();
        return wish;
      }
      // Somebody served meanwhile may be due earlier.
      wished_.wait_until(lock, wish);
    }
  }
  /// An accountant has been served, and pauses.
  void done(const char* act, Clock::time_point wish) {
    const std::lock_guard lock(mutex_);
    waits_[act].push_back(Seconds(Clock::now() - wish).count() * 1000);
    wanted_.push(Clock::now() + pause());
    wished_.notify_one();
  }
  [[nodiscard]] std::map<std::string, std::vector<double>>& waits() { return waits_; }

 private:
  static Clock::duration toClock(Seconds time) { return std::chrono::duration_cast<Clock::duration>(time); }
  Clock::duration pause() { return toClock(Seconds(between_(dice_))); }

  std::mutex mutex_;
  std::condition_variable wished_;
  std::mt19937 dice_{7};
  std::exponential_distribution<double> between_;
  Clock::time_point end_;
  std::priority_queue<Clock::time_point, std::vector<Clock::time_point>, std::greater<>> wanted_;
  std::map<std::string, std::vector<double>> waits_;
};

/// CPU time of a server process and its children in seconds; 0 if none is named.
double serverTime() {
  const char* const named = std::getenv("LEDGERTREE_BENCH_SERVER");
  if (named == nullptr) return 0;
  double ticks = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream file(entry.path() / "stat");
    std::string text;
    if (!std::getline(file, text)) continue;
    // After the name come state and parent; the times start at the twelfth field.
    std::istringstream words(text.substr(text.rfind(')') + 1));
    std::vector<std::string> each{std::istream_iterator<std::string>(words), {}};
    if (entry.path().filename() == named || each[1] == named)
      ticks += std::stod(each[11]) + std::stod(each[12]);
  }
  return ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
}

double share(std::vector<double>& sorted, double part) {
  std::sort(sorted.begin(), sorted.end());
  return sorted.empty() ? 0 : sorted[static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1))];
}

void work(Screen& screen, Day& day, unsigned seed) {
  std::mt19937 dice(seed);
  while (const auto wish = day.next()) {
    int place = static_cast<int>(dice() % 100);
    const Share* wanted = kDay;
    for (; place >= wanted->percent; ++wanted) place -= wanted->percent;
    const Act done = screen.act(wanted->act);
    day.done(std::find_if(kDay, std::end(kDay), [&](const Share& one) { return one.act == done; })->name,
             *wish);
  }
}

/// Each action's server CPU time and duration without any other load.
void costs(Screen& screen) {
  constexpr int kTimes = 25;
  std::printf("| Act | Of a hundred | Time | Server's processor |\n|---|---|---|---|\n");
  for (const Share& share : kDay) {
    const double before = serverTime();
    const Clock::time_point began = Clock::now();
    for (int time = 0; time < kTimes; ++time) static_cast<void>(screen.act(share.act));
    std::printf("| %s | %d | %.0f ms | %.1f ms |\n", share.name, share.percent,
                Seconds(Clock::now() - began).count() * 1000 / kTimes,
                (serverTime() - before) * 1000 / kTimes);
  }
}

/// One line of the table: each accountant pauses this long on average.
void workFor(std::vector<std::unique_ptr<Screen>>& screens, Seconds pause, Seconds length) {
  Day day(pause, length);
  const double before = serverTime();
  std::vector<std::thread> threads;
  for (std::size_t one = 0; one < screens.size(); ++one)
    threads.emplace_back([&, one] { work(*screens[one], day, static_cast<unsigned>(one)); });
  for (std::thread& thread : threads) thread.join();
  const double cost = serverTime() - before;
  std::vector<double> all;
  for (auto& [name, waits] : day.waits()) all.insert(all.end(), waits.begin(), waits.end());
  const auto acts = static_cast<double>(all.size());
  std::printf("| %.0f s | %.1f | %.0f ms | %.0f ms | %.0f ms |\n", pause.count(), acts / length.count(),
              share(all, 0.5), share(all, 0.95), acts > 0 ? cost / acts * 1000 : 0);
  for (auto& [name, waits] : day.waits())
    std::fprintf(stderr, "  %-26s %5zu acts, median %.0f ms, 95 %% %.0f ms\n", name.c_str(), waits.size(),
                 share(waits, 0.5), share(waits, 0.95));
}

int run(const std::string& text) {
  std::vector<std::unique_ptr<Screen>> screens;
  for (unsigned one = 0; one < kScreens; ++one) screens.push_back(std::make_unique<Screen>(text, one));
  // Warm-up round.
  for (const auto& screen : screens)
    for (const Share& share : kDay) static_cast<void>(screen->act(share.act));
  costs(*screens[0]);
  std::printf(
      "\n| A pause of | Acts a second | Median | 95 %% | Server's processor an act "
      "|\n|---|---|---|---|---|\n");
  for (const double pause : {120.0, 30.0, 15.0, 8.0, 4.0}) workFor(screens, Seconds(pause), Seconds(20));
  std::size_t failures = 0;
  for (const auto& screen : screens) failures += screen->failures();
  std::fprintf(stderr, "%zu notices\n", failures);
  return 0;
}

}  // namespace
}  // namespace ledgertree::bench

int main() { return ledgertree::bench::onServer(&ledgertree::bench::run); }
