#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/dten.h"
#include "data/operation.h"
#include "data/permissions.h"
#include "data/value.h"

// The memory of the chart, as screens need it: what was changed, by whom, and the way back. It stands on the
// tables that `ledgertree-schema --history on` makes. Moments are UTC. Every function throws data::DataError.
namespace ledgertree::history {

/// Since when all changes are known; nothing where the database has no memory. One that was switched off
/// keeps what it has, and knows nothing newer.
[[nodiscard]] std::optional<data::DateTime> since(data::DtEn& data);
/// Whether what is changed now is kept.
[[nodiscard]] bool isKept(data::DtEn& data);

/// Which changes are read; what isn't set asks for nothing.
struct Filter {
  std::optional<data::DateTime> from = {};   ///< of operations that began then or later
  std::optional<data::DateTime> until = {};  ///< of those that began before
  std::optional<std::int32_t> userID = {};
  std::optional<data::OperationKind> kind = {};
  std::optional<std::int32_t> accountID = {};
  std::optional<std::int64_t> operation = {};
};

/// What became of a row.
enum class Event { Came = 1, Changed = 2, Went = 3 };

/// Of which table the row is.
enum class Subject { Account = 0, Period = 1, Relation = 2, Class = 3, Object = 4 };

/// A column with its values before and after; null where there was no row.
struct Field {
  std::string column;
  data::Value before;
  data::Value after;
};

/// One row that came, changed or went.
struct Change {
  std::int64_t number = 0;  ///< they go on through all changes, the newest has the greatest
  std::int64_t operation = 0;
  data::DateTime moment;               ///< when the operation began
  std::optional<std::int32_t> userID;  ///< nothing: another program, nobody knows who
  data::OperationKind kind = data::OperationKind::Other;
  std::int64_t takesBack = 0;  ///< the operation that this one took back; 0: none
  Subject subject = Subject::Account;
  Event event = Event::Changed;
  std::int32_t accountID = 0;
  std::string code;   ///< of the account behind the change, or ahead of its end
  std::string title;  ///< the same
  /// What differs: of an account that came or went, and of a row of another table, all of it that isn't null.
  std::vector<Field> fields;
};

struct Page {
  std::vector<Change> changes;  ///< the newest first
  std::int64_t next = 0;        ///< what `page` is given for the changes behind these; 0: there are none
};

/// The changes older than a number, the newest of all for 0. The same few questions whatever the memory
/// holds.
[[nodiscard]] Page page(data::DtEn& data, const Filter& filter, std::int64_t before = 0,
                        std::size_t limit = 100);

/// An account as it was at a moment.
struct Then {
  bool existed = false;
  std::string code;
  std::string title;
  std::optional<std::int32_t> parentID;
};
/// Presumes that all changes since the moment are known, see since().
[[nodiscard]] Then accountAt(data::DtEn& data, std::int32_t accountID, const data::DateTime& moment);

/// The newest operation of a user that nothing has taken back yet and that took nothing back itself, behind
/// the operation `after`; 0: there is none.
[[nodiscard]] std::int64_t lastOperationOf(data::DtEn& data, std::int32_t userID, std::int64_t after = 0);

/// Why an operation can't be taken back.
struct Standing {
  data::Obstacle why;
  std::int32_t accountID = 0;                 ///< 0: it is of no account
  std::int64_t operation = 0;                 ///< that has changed the account since; 0: none that is known
  std::optional<std::int32_t> userID = {};    ///< whose that was
  std::optional<data::DateTime> moment = {};  ///< when
};

struct TakenBack {
  std::vector<data::Permission> missing;  ///< rights that the user doesn't have
  std::vector<Standing> standing;         ///< what stands in the way
  std::int64_t operation = 0;             ///< done: the number of the taking back; 0: nothing was changed
};

/// The kind of an operation; of one that took another back that of the other, and so on. Other where there is
/// none.
[[nodiscard]] data::OperationKind kindBehind(data::DtEn& data, std::int64_t operation);

/// The rights that it takes to take an operation back: that of the operation, and that of what is done then.
[[nodiscard]] std::vector<data::Permission> neededToTakeBack(data::OperationKind kind);

/// Takes an operation back, all of it or nothing. It is an operation itself.
[[nodiscard]] TakenBack takeBack(data::DtEn& data, std::int32_t userID, std::int64_t operation);

}  // namespace ledgertree::history
