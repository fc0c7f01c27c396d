#include "engines/odbc/lock_holder.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <string_view>

#include "engines/odbc/code_page.h"
#include "engines/odbc/errors.h"
#include "engines/odbc/execution.h"
#include "engines/odbc/result_sets.h"

namespace ledgertree::engines::odbc {
namespace {

/// The server's own refusal, and that of the procedure that locks the chart.
constexpr int kLockRefused = 1222;
constexpr int kChartHeld = 51005;

constexpr std::chrono::milliseconds kPatience{500};

/// An installation may lock the tables' names too, so this query waits for no lock, in its own batch only.
/// Writing a row locks its table as well.
constexpr std::string_view kQuestion =
    "exec(N'set lock_timeout 0; select top (1) s.login_name, s.host_name, s.program_name "
    "from sys.dm_tran_locks l join sys.dm_exec_sessions s on s.session_id = l.request_session_id "
    "join sys.dm_tran_active_transactions t on t.transaction_id = l.request_owner_id "
    "where l.resource_database_id = db_id() and l.request_session_id <> @@spid "
    "and l.request_status = N''GRANT'' and ";
constexpr std::string_view kOnTables =
    "l.resource_type = N''OBJECT'' and l.request_mode not in (N''IS'', N''S'', N''Sch-S'') "
    "and l.resource_associated_entity_id in (select object_id from sys.tables where name like N''tblAcc%'')";
constexpr std::string_view kOnChart =
    "l.resource_type = N''APPLICATION'' and l.resource_description like N''%LedgerTree chart%''";
constexpr std::string_view kLongest = " order by t.transaction_begin_time')";

/// A name chosen by another program, without direction marks; empty if it has control characters.
std::string nameIn(const data::Rows& rows, std::size_t column) {
  std::string name = rows.isNull(0, column) ? std::string() : rows.value(0, column).toText();
  const bool shows = std::none_of(name.begin(), name.end(),
                                  [](char letter) { return static_cast<unsigned char>(letter) < ' '; });
  return shows ? foldText(name, CodePage::Unknown) : std::string();
}

std::string holderIn(const data::Rows& rows) {
  std::string words;
  const auto add = [&](const char* ahead, std::size_t column) {
    if (const std::string name = nameIn(rows, column); !name.empty()) words += ahead + name + "»";
  };
  add("کاربر «", 0);
  add(words.empty() ? "رايانه «" : " از رايانه «", 1);
  add(words.empty() ? "برنامه «" : " با برنامه «", 2);
  return words.empty() ? words : " آن را اکنون " + words + " در دست دارد.";
}

std::string holder(Session& session, int refused) {
  const std::string question =
      std::string(kQuestion).append(refused == kChartHeld ? kOnChart : kOnTables).append(kLongest);
  const auto end = Watch::Clock::now() + kPatience;
  const std::function<bool()> late = [end] { return Watch::Clock::now() > end; };
  Execution execution(session, question, true, &late);
  std::string words;
  for (bool result = execution.send(question); result; result = execution.nextResult()) {
    ResultSet set(execution);
    if (set.columns() != 3) continue;
    data::Rows rows = set.emptyRows();
    if (set.next() && set.addCells(rows)) words = holderIn(rows);
  }
  execution.finish();
  return words;
}

}  // namespace

std::optional<data::DataError> toldWithHolder(Session& session, const data::DataError& refusal) {
  const bool held = refusal.number() == kLockRefused || refusal.number() == kChartHeld;
  if (!held || session.dialect() == Dialect::Other || session.dead()) return std::nullopt;
  try {
    const std::string words = holder(session, refusal.number());
    if (words.empty()) return std::nullopt;
    return withMoreWords(refusal, words);
  } catch (const data::DataError&) {
    return std::nullopt;
  }
}

}  // namespace ledgertree::engines::odbc
