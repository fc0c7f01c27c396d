#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/packet.h"
#include "data/rows.h"
#include "data/value.h"

namespace ledgertree::data {

struct AsRead;
struct Operation;
class ConnectionText;
struct Procedure;

inline constexpr std::chrono::seconds kConnectTimeOut{15};
inline constexpr std::chrono::seconds kCommandTimeOut{30};
/// To take an operation back may take as long as that did.
inline constexpr std::chrono::hours kLongestTakingBack{1};

/// The order of a search's rows. data::SearchRank tells how well a row matches.
enum class SearchOrder {
  Key,   ///< of ID: the cheapest
  Name,  ///< rows whose first column begins with the text, then the rest; each by that column as a name
  /// Rows whose first column is the text, those whose first column begins with it, those where another column
  /// does, the rest; each by the first column as a code.
  Code,
};

/// A search of a view by a selector or an account picker.
struct SearchRequest {
  std::string view;                  ///< a plain name, optionally schema-qualified; anything else is refused
  std::vector<std::string> columns;  ///< the text columns to show and search, in this order
  SearchOrder order = SearchOrder::Key;  ///< Key if there are no columns
  std::string text;                      ///< the typed words, in any order; blank matches every row
  std::string continuation;  ///< SearchPage::continuation of the previous page; empty for the first
  std::size_t limit = 100;   ///< rows per page
  /// The time limit of one call. A call that reaches it returns the hits so far with a continuation, so that
  /// a search on the user-interface thread can continue between two events. 0: unlimited.
  std::chrono::milliseconds slice{0};
  /// Polled every few milliseconds, on any thread, but only while the search runs; true ends the search with
  /// DataError::Reason::Cancelled.
  std::function<bool()> cancelled;
  /// Called at most once, on the search's thread, with the first rows of the page if the engine has them well
  /// before the others. The returned page includes them as well.
  std::function<void(const Rows&)> early{};
};

/// Callbacks that keep the user interface alive during a command. Both may be empty.
struct Waiting {
  /// Called some twenty times a second; true cancels the command. `harmless`: it only reads, or hasn't begun.
  std::function<bool(bool harmless)> givesUp;
  /// A command during which that was called has ended.
  std::function<void()> over;
};

struct SearchPage {
  Rows rows;                 ///< ID, then the columns asked for
  std::string continuation;  ///< empty if there are no more rows
};

/// The port below the gateway: one connection to one database. Statements are in SQL Server's dialect on
/// every engine. Not thread-safe; each thread uses its own connection.
///
/// Every operation throws DataError, and leaves the connection usable if the engine allows it. A connection
/// opens on first use. A command that exceeds kCommandTimeOut is interrupted and fails.
class Connection {
 public:
  Connection() = default;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  virtual ~Connection() = default;

  /// Runs one statement. Returns all its rows, or nothing for a statement that
  /// returns none. Its changes are on disk when it returns.
  virtual std::optional<Rows> run(std::string_view statement) = 0;

  /// Runs one statement and passes its rows one by one without keeping them: `visit` gets rows of count 1.
  /// Stops early when `visit` returns false.
  virtual void walk(std::string_view statement, const std::function<bool(const Rows& row)>& visit) = 0;

  /// Runs `work`, whose reads all see the data as of the first one, if the engine can do that without cost to
  /// others; they are then cheaper than separate reads. Not for writes.
  virtual void readTogether(const std::function<void()>& work) { work(); }

  /// Runs commands in order, up to the first that fails: none after it has run. Each is what `run` or `call`
  /// would make of it, final when it has ended. A remote engine sends them as one packet; they then share the
  /// time-out of one command, and a failure that leaves open whether its command was carried out (see
  /// DataError::leavesOpen) leaves it open for all after it, too. If each command depends on the previous
  /// answer, see readTogether. Throws nothing on behalf of the commands.
  virtual Answers runTogether(std::span<const Command> commands);

  /// Calls a procedure and returns its result. There are as many values as the procedure has parameters. A
  /// text longer than its parameter is refused with Reason::TooLong and a message that names the parameter.
  virtual std::int32_t call(const Procedure& procedure, std::span<const Value> values) = 0;

  /// What was read of the account that the next command, a procedure or a statement, writes. Comparison and
  /// write are atomic: the command fails, with nothing done, if the database holds something else by then;
  /// see AsRead. Applies to that one command, whatever its outcome.
  virtual void handOver(const AsRead& read) = 0;

  /// The operation to which all further commands belong in the memory of the chart,
  /// until the next call; null: none. A command that changes what is kept stores its
  /// number there. Without a memory this has no effect.
  // NOLINTNEXTLINE(performance-unnecessary-value-param): an engine keeps it
  virtual void belongTo(std::shared_ptr<Operation> operation) { static_cast<void>(operation); }

  /// Undoes all changes of an operation. It is itself a command of the operation set by belongTo, which must
  /// say so (Operation::takesBack). Either all of it is done and no rows are returned, or nothing is done and
  /// each row names an obstacle: AccountID; Reason, a number of data::Obstacle; OperationID, the last one
  /// that has changed the account since, or null. Throws DataError(Misuse) if nothing is kept.
  virtual Rows takeBack(std::int64_t operation);

  /// Whether answers can take long, as over a network: searches then run off the user-interface thread.
  [[nodiscard]] virtual bool isRemote() const { return false; }

  /// Calls `waiting` during commands. A cancelled command fails with Reason::Cancelled, or, while it waits
  /// for another program's lock, with Reason::Busy. A remote engine calls it on a thread of its own, any
  /// other on the command's thread; using the connection meanwhile fails with Reason::Busy. By value: an
  /// engine that calls it keeps it.
  // NOLINTNEXTLINE(performance-unnecessary-value-param)
  virtual void whileWaiting(Waiting waiting) { static_cast<void>(waiting); }

  /// No command is expected for a while. Resources held at the database, such as a server session,
  /// may be released; the next command reacquires them. Does nothing during a walk. Throws
  /// nothing.
  virtual void rest() {}

  /// What to tell the user about the data, once: findings from the
  /// upgrade of an older database when it was opened.
  [[nodiscard]] virtual std::vector<std::string> takeNews() { return {}; }

  /// One page of the rows of a view whose text matches what the user typed, letters folded (see fold.h).
  virtual SearchPage search(const SearchRequest& request) = 0;
};

/// Whether a statement begins with "select" and so changes nothing. Fast; false for any other
/// beginning.
[[nodiscard]] bool onlyReads(std::string_view statement);
/// Whether all of these commands do.
[[nodiscard]] bool onlyRead(std::span<const Command> commands);

/// Creates a connection for a text whose provider it knows, without opening it.
using ConnectionOpener = std::function<std::unique_ptr<Connection>(const ConnectionText&)>;

/// The engines, by the provider names in connection texts ("SQLite", "SQLOLEDB").
class Providers {
 public:
  /// `provider` in any letter case; a version suffix ("SQLOLEDB.1") is not part of the name.
  void add(std::string provider, ConnectionOpener opener);
  /// Throws DataError(Reason::Connection) for a malformed text, and for a missing or unknown
  /// provider.
  [[nodiscard]] std::unique_ptr<Connection> open(std::string_view connectionText) const;

 private:
  std::vector<std::pair<std::string, ConnectionOpener>> openers_;
};

}  // namespace ledgertree::data
