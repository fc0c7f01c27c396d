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

/// The bounds of a connection; a test shortens them.
struct TimeOuts {
  std::chrono::milliseconds connect = data::kConnectTimeOut;
  std::chrono::milliseconds command = data::kCommandTimeOut;
};

/// Whether a file has been open before, for all connections to it that share the mark.
using WasOpen = std::shared_ptr<std::atomic<bool>>;

/// A connection to a database file. It opens the file at its first use and creates it, with its tables, where
/// it isn't there; its folder has to be. A file that is deleted or replaced under it fails the next
/// statement; the one after that opens what then stands there. A file that was open once is never created
/// anew: an empty chart would stand in for a lost one.
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

  /// How SQLite finds the rows of a statement, a line a step, for tests that watch over the indexes.
  [[nodiscard]] std::vector<std::string> queryPlan(std::string_view statement);

 private:
  class Running;

  /// The open session, opened if need be.
  Session& session();
  /// Carries out a command on the open session, within its time-out. A session that has lost its file is
  /// closed.
  template <typename Work>
  auto command(bool onlyReads, const std::function<bool()>* cancelled, Work work);
  /// Carries out a command that writes, in one with the comparison where something was handed over, and with
  /// the mark of the operation that it belongs to where the file keeps its changes.
  template <typename Work>
  auto write(bool onlyReads, const std::optional<data::AsRead>& read, Work work);

  std::string path_;
  TimeOuts timeOuts_;
  std::unique_ptr<Session> session_;
  data::Waiting waiting_;
  std::optional<data::AsRead> read_;  ///< handed over, until the next command
  std::shared_ptr<data::Operation> operation_;
  int commands_ = 0;  ///< how deep the running ones are nested
  WasOpen wasOpen_;
};

}  // namespace ledgertree::engines::sqlite
