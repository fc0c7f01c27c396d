#include "shell/chart_changes.h"

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

#include "data/data_error.h"

namespace ledgertree::shell {
namespace {

constexpr std::string_view kQuestion = "Select Writer,Changes from vwLedgerTreeChanges";
/// 1, 3, 7, 15 questions are left out behind the first failures in a row.
constexpr int kMostFailures = 4;

}  // namespace

ChartChanges::Counts ChartChanges::countsOf(data::Connection& connection) {
  const data::Rows rows = connection.run(kQuestion).value_or(data::Rows());
  Counts counts;
  for (std::size_t row = 0; row < rows.count(); ++row)
    counts[rows.value(row, 0).toInt64()] = rows.value(row, 1).toInt64();
  return counts;
}

void ChartChanges::begin() {
  leave();
  known_.reset();
  moved_ = false;
  failures_ = rests_ = 0;
  const auto gateway = shell_.dtEn();
  connectionText_ = gateway->cnMainData.ConnectionString();
  try {
    known_ = countsOf(gateway->cnMainData.port());
  } catch (const data::DataError&) {
    // Whatever is wrong, the reading that comes next tells it.
  }
}

void ChartChanges::ask() {
  if (asking_ || moved_) return;
  if (rests_ > 0) {
    --rests_;
    return;
  }
  const auto gateway = shell_.dtEn();
  const std::string text = gateway->cnMainData.ConnectionString();
  // Another database counts anew.
  if (text != connectionText_) {
    leave();
    known_.reset();
    connectionText_ = text;
  }
  data::Connection& port = gateway->cnMainData.port();
  try {
    if (port.answersLate()) return askAside(text);
    take(countsOf(port));
  } catch (const data::DataError&) {
    failed();
  }
}

void ChartChanges::askAside(const std::string& connectionText) {
  if (!line_) {
    auto line =
        std::make_shared<ConnectionLine>(shell_.providers.open(connectionText), shell_.waits.restAfter);
    line->begin(shell_.background);
    line_ = std::move(line);
  }
  const auto answered = [this, life = std::weak_ptr<bool>(life_),
                         line = std::weak_ptr<ConnectionLine>(line_)](const std::optional<Counts>& counts) {
    if (life.expired() || line.expired() || line.lock() != line_) return;
    asking_ = false;
    if (!counts) return failed();
    take(*counts);
    if (moved_) onMoved_();
  };
  line_->post([line = std::weak_ptr<ConnectionLine>(line_), &desktop = shell_.desktop(),
               answered](data::Connection& connection) {
    std::optional<Counts> counts;
    try {
      counts = countsOf(connection);
    } catch (const std::exception&) {
      counts.reset();
    }
    if (const auto still = line.lock(); still && !still->left())
      desktop.whenIdle([answered, counts] { answered(counts); });
  });
  asking_ = true;
}

void ChartChanges::take(Counts counts) {
  found_ = std::move(counts);
  // A row that isn't among them is being written.
  moved_ = !known_ || std::any_of(found_.begin(), found_.end(), [this](const auto& count) {
    const auto before = known_->find(count.first);
    return before == known_->end() || before->second != count.second;
  });
  if (!moved_) failures_ = 0;
}

void ChartChanges::seen() {
  moved_ = false;
  failures_ = 0;
  if (!known_) known_.emplace();
  for (const auto& [writer, changes] : found_) (*known_)[writer] = changes;
}

void ChartChanges::failed() {
  moved_ = false;
  failures_ = std::min(failures_ + 1, kMostFailures);
  rests_ = (1 << failures_) - 1;
}

void ChartChanges::leave() {
  asking_ = false;
  if (line_) line_->leave();
  line_.reset();
}

}  // namespace ledgertree::shell
