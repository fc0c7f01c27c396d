#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/as_read.h"
#include "data/connection.h"
#include "data/operation.h"
#include "engines/sqlite/session.h"

namespace ledgertree::engines::sqlite {

/// A connection's time-outs; tests shorten them.
struct TimeOuts {
  std::chrono::milliseconds connect = data::kConnectTimeOut;
  std::chrono::milliseconds command = data::kCommandTimeOut;
};

/// Whether a file has been opened before, by any connection to it that shares this flag.
using WasOpen = std::shared_ptr<std::atomic<bool>>;

/// A connection to a database file. On first use it opens the file, or creates it with its tables if it
/// doesn't exist; its folder must exist. If the file is deleted or replaced meanwhile, the next statement
/// fails, and the one after that opens whatever is there then. A file that was once open is never created
/// again: an empty chart would pass for a lost one.
class EmbeddedConnection final : public data::Connection {
 public:
  explicit EmbeddedConnection(std::string path, TimeOuts timeOuts = {},
                              WasOpen wasOpen = std::make_shared<std::atomic<bool>>(false))
      : path_(std::move(path)), timeOuts_(timeOuts), wasOpen_(std::move(wasOpen)) {}

  std::optional<data::Rows> run(std::string_view statement) override;
  void walk(std::string_view statement, const std::function<bool(const data::Rows& row)>& visit) override;
  void readTogether(const std::function<void()>& work) override;
  std::int32_t call(const data::Procedure& procedure, std::span<const data::Value> values) override;
  void handOver(const data::AsRead& read) override { read_ = read; }
  void belongTo(std::shared_ptr<data::Operation> operation) override { operation_ = std::move(operation); }
  data::Rows takeBack(std::int64_t operation) override;
  data::SearchPage search(const data::SearchRequest& request) override;
  void whileWaiting(data::Waiting waiting) override { waiting_ = std::move(waiting); }
  std::vector<std::string> takeNews() override;

  /// SQLite's query plan for a statement, one line per step, for tests that check the use of indexes.
  [[nodiscard]] std::vector<std::string> queryPlan(std::string_view statement);

 private:
  class Running;

  /// The session, opened if necessary.
  Session& session();
  /// Runs a command on the open session, within its time-out. A session that has lost its file is
  /// closed.
  template <typename Work>
  auto command(bool onlyReads, const std::function<bool()>* cancelled, Work work);
  /// Runs a writing command, together with the comparison if something was handed over, and marked with its
  /// operation if the file keeps its changes.
  template <typename Work>
  auto write(bool onlyReads, const std::optional<data::AsRead>& read, Work work);

  std::string path_;
  TimeOuts timeOuts_;
  std::unique_ptr<Session> session_;
  data::Waiting waiting_;
  std::optional<data::AsRead> read_;  ///< handed over, until the next command
  std::shared_ptr<data::Operation> operation_;
  int commands_ = 0;  ///< nesting depth of the running ones
  WasOpen wasOpen_;
};

}  // namespace ledgertree::engines::sqlite
