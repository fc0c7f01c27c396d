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

/// In which order the rows of a search come. What a row is to a text, data::SearchRank says.
enum class SearchOrder {
  Key,   ///< of ID: the cheapest
  Name,  ///< those whose first column begins with the text, then the rest; each by that column as a name
  /// Those whose first column is the text, those whose first column begins with it, those where another
  /// column does, the rest; each by the first column as a code.
  Code,
};

/// What a selector or an account picker looks for in a view.
struct SearchRequest {
  std::string view;                  ///< a plain name, optionally schema-qualified; anything else is refused
  std::vector<std::string> columns;  ///< the text columns that are shown and searched, in this order
  SearchOrder order = SearchOrder::Key;  ///< Key where there are no columns
  std::string text;          ///< what the person typed, words in any order; blank offers every row
  std::string continuation;  ///< SearchPage::continuation of the page before; empty for the first
  std::size_t limit = 100;   ///< the rows of a page
  /// The longest that one call works. A call that runs out of it gives the hits that it has, with a
  /// continuation, so that a search on the user-interface thread goes on between two events. 0: no bound.
  std::chrono::milliseconds slice{0};
  /// Asked about every few milliseconds, on whatever thread, but only while the search runs; true ends the
  /// search with DataError::Reason::Cancelled.
  std::function<bool()> cancelled;
  /// Called once at most, on the thread of the search, with the first rows of the page where the engine has
  /// them well ahead of the others. The page begins with them all the same.
  std::function<void(const Rows&)> early{};
};

/// Who keeps a person company while a command lasts. Both may be empty.
struct Waiting {
  /// Asked some twenty times a second; true gives the command up. `harmless`: it only reads, or hasn't begun.
  std::function<bool(bool harmless)> givesUp;
  /// A command in whose course that was asked is over.
  std::function<void()> over;
};

struct SearchPage {
  Rows rows;                 ///< ID, then the columns asked for
  std::string continuation;  ///< empty where the rows are at their end
};

/// The port below the gateway: one connection to one database. Statements are in the dialect of SQL Server on
/// every engine. Nothing here is safe for several threads at once; each thread takes a connection of its own.
///
/// Every operation throws DataError, and leaves the connection usable where the engine allows it. A
/// connection opens at its first use. A command that runs past kCommandTimeOut is interrupted and fails.
class Connection {
 public:
  Connection() = default;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  virtual ~Connection() = default;

  /// Runs one statement. Gives its complete rows, or nothing where it is one that returns none.
  /// A statement that has returned is on the disk.
  virtual std::optional<Rows> run(std::string_view statement) = 0;

  /// Runs one statement and shows its rows one by one without keeping them: `visit` gets rows of count 1. It
  /// ends early where `visit` gives false.
  virtual void walk(std::string_view statement, const std::function<bool(const Rows& row)>& visit) = 0;

  /// Runs `work`, whose reads see the data as they are at the first of them, where the engine has a way to
  /// that which costs nobody else anything; then they cost less than one by one. It's no place for writes.
  virtual void readTogether(const std::function<void()>& work) { work(); }

  /// Runs commands in their order, up to the first that fails: none behind that one has run. Each is what
  /// `run` or `call` would make of it, final when it has ended. An engine that answers late sends them as one
  /// question; they have the time-out of one command then, and a failure that leaves open whether its command
  /// was carried out (see DataError::leavesOpen) leaves it open of all behind it, too. Where each question
  /// depends on the answer to the one before, see readTogether. Throws nothing of the commands.
  virtual Answers runTogether(std::span<const Command> commands);

  /// Calls a procedure and gives its return value. There are as many values as the procedure has parameters.
  /// A text longer than its parameter is refused with Reason::TooLong and a message that names the parameter.
  virtual std::int32_t call(const Procedure& procedure, std::span<const Value> values) = 0;

  /// What was read of an account that the next command writes, a procedure or a statement. Comparison and
  /// write are one there: the command fails, with nothing done, where the database holds something else by
  /// then; see AsRead. It counts for that one command, whatever becomes of it.
  virtual void handOver(const AsRead& read) = 0;

  /// What the commands from here on belong to in the memory of the chart, until this is said again; null: to
  /// nothing. A command that changes what is kept puts its number there. Where nothing is kept it says
  /// nothing.
  // NOLINTNEXTLINE(performance-unnecessary-value-param): an engine keeps it
  virtual void belongTo(std::shared_ptr<Operation> operation) { static_cast<void>(operation); }

  /// Undoes all that an operation changed: one command that is a part of the operation belonged to, which
  /// has to say so (Operation::takesBack). All of it is done and no rows come, or nothing is done and each
  /// row says what stands in the way: AccountID; Reason, a number of data::Obstacle; OperationID, the last
  /// one that has changed the account since, or null. Throws DataError(Misuse) where nothing is kept.
  virtual Rows takeBack(std::int64_t operation);

  /// Whether an answer can take long, as over a network: searches then run beside the user-interface thread.
  [[nodiscard]] virtual bool answersLate() const { return false; }

  /// Asks `waiting` while a command lasts. A command that is given up fails with Reason::Cancelled, or, where
  /// it waits for another program's lock, with Reason::Busy. An engine that answers late asks on a thread of
  /// its own, any other on the thread of the command; what uses the connection meanwhile fails with
  /// Reason::Busy. By value: an engine that asks keeps it.
  // NOLINTNEXTLINE(performance-unnecessary-value-param)
  virtual void whileWaiting(Waiting waiting) { static_cast<void>(waiting); }

  /// Nobody will ask for long. What is held at the database's place, such as a session of a server, may be
  /// given back; the next command takes it again, as the first one did. In the middle of a walk it does
  /// nothing. Throws nothing.
  virtual void rest() {}

  /// What there is to tell a person about the data, once: what was found when a database of an older version
  /// was taken up at the opening.
  [[nodiscard]] virtual std::vector<std::string> takeNews() { return {}; }

  /// One page of the rows of a view whose text holds what the person typed, letters folded (see fold.h).
  virtual SearchPage search(const SearchRequest& request) = 0;
};

/// Whether a statement begins with "select" and so changes nothing. Fast, and no for whatever begins
/// otherwise.
[[nodiscard]] bool onlyReads(std::string_view statement);
/// Whether all of these commands do.
[[nodiscard]] bool onlyRead(std::span<const Command> commands);

/// Makes a connection for a text whose provider it knows. It opens nothing.
using ConnectionOpener = std::function<std::unique_ptr<Connection>(const ConnectionText&)>;

/// The engines by the provider names of their connection texts ("SQLite", "SQLOLEDB").
class Providers {
 public:
  /// `provider` in any letter case; a version behind it ("SQLOLEDB.1") is not part of the name.
  void add(std::string provider, ConnectionOpener opener);
  /// Throws DataError(Reason::Connection) for a malformed text, a missing provider or one that nobody
  /// registered.
  [[nodiscard]] std::unique_ptr<Connection> open(std::string_view connectionText) const;

 private:
  std::vector<std::pair<std::string, ConnectionOpener>> openers_;
};

}  // namespace ledgertree::data
