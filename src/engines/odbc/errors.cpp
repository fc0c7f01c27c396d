#include "engines/odbc/errors.h"

#include <algorithm>
#include <array>
#include <utility>

#include "text/utf8.h"

namespace ledgertree::engines::odbc {
namespace {

using Reason = data::DataError::Reason;

struct Told {
  int number;
  Reason reason;
  const char* text;
};

constexpr const char* kExists = "چنين سطري قبلا ثبت شده است. مقدار ديگري وارد نماييد.";
constexpr const char* kReferred =
    "سطري که به آن اشاره ميشود وجود ندارد، يا سطر ديگري به اين سطر وابسته است. اطلاعات را دوباره بخوانيد.";
constexpr const char* kBusy = "پايگاه داده در دست برنامه ديگري است. کمي صبر نماييد و دوباره تلاش نماييد.";
constexpr const char* kDeadlock =
    "اين کار با کار هم زمان برنامه ديگري برخورد کرد و انجام نشد. دوباره تلاش نماييد.";
constexpr const char* kConflict =
    "برنامه ديگري همين اطلاعات را هم زمان تغيير داد و اين کار انجام نشد. اطلاعات را دوباره بخوانيد و دوباره "
    "تلاش نماييد.";
constexpr const char* kFull = "فضاي پايگاه داده پر است. مدير پايگاه داده را آگاه نماييد.";
constexpr const char* kFullLog =
    "جاي ثبت تراکنشهاي (log) پايگاه داده پر است. از مدير پايگاه داده بخواهيد آن را خالي نمايد.";
constexpr const char* kReadOnly = "پايگاه داده فقط خواندني است. مدير پايگاه داده را آگاه نماييد.";
constexpr const char* kDamaged = "پايگاه داده آسيب ديده است. مدير پايگاه داده را آگاه نماييد.";
constexpr const char* kCut = "متن از جاي خود در پايگاه داده بلندتر است. آن را کوتاه کنيد و دوباره ثبت کنيد.";
constexpr const char* kLogin = "پايگاه داده نام کاربر يا رمز را نپذيرفت. متن اتصال را اصلاح نماييد.";
constexpr const char* kNoDatabase = "اين پايگاه داده باز نميشود. نام آن و اجازه کاربر را بررسي نماييد.";
constexpr const char* kDisabled =
    "اين کاربر در سرور پايگاه داده غيرفعال شده است. از مدير پايگاه داده بخواهيد او را فعال نمايد.";
constexpr const char* kNoMember =
    "اين کاربر به پايگاه داده راه ندارد. از مدير پايگاه داده بخواهيد او را به کاربران آن بيفزايد و عضو نقش "
    "LedgerTreeUsers نمايد.";
constexpr const char* kRestoring =
    "پايگاه داده در حال بازگرداني از نسخه پشتيبان است. پس از پايان آن دوباره تلاش نماييد.";
constexpr const char* kNoTls =
    "سرور پايگاه داده ارتباط رمزنگاري شده (TLS) را نپذيرفت. از مدير پايگاه داده بخواهيد آن را در سرور فراهم "
    "نمايد، يا «Use Encryption for Data» را از متن اتصال برداريد.";
constexpr const char* kNoRight =
    "کاربر پايگاه داده اجازه اين کار را ندارد. از مدير پايگاه داده بخواهيد او را عضو نقش LedgerTreeUsers "
    "نمايد.";
constexpr const char* kNoTable =
    "جدول يا نمايي که برنامه به آن نياز دارد در اين پايگاه داده نيست. از مدير پايگاه داده بخواهيد آن را با "
    "ledgertree-schema نصب نمايد.";
constexpr const char* kNoColumn =
    "ستوني که برنامه به آن نياز دارد در اين پايگاه داده نيست. از مدير پايگاه داده بخواهيد جدول و نماي آن را "
    "بررسي نمايد و ledgertree-schema را دوباره اجرا نمايد.";
constexpr const char* kNoProcedure =
    "روالي که برنامه به آن نياز دارد در اين پايگاه داده نيست. از مدير پايگاه داده بخواهيد آن را با "
    "ledgertree-schema نصب نمايد.";
constexpr const char* kNoNumber =
    "در پايگاه داده جايي که بايد عدد باشد متن ديگري نوشته شده است. از مدير پايگاه داده بخواهيد آن را اصلاح "
    "نمايد.";
constexpr const char* kWrongOptions =
    "روال يا تريگري در پايگاه داده با تنظيمات (SET) نادرست ساخته شده است و چيزي ثبت نشد. از مدير پايگاه داده "
    "بخواهيد آن را با quoted_identifier و ansi_nulls روشن دوباره بسازد.";
constexpr const char* kBroken =
    "ارتباط با پايگاه داده قطع شد و معلوم نيست که آخرين عمليات انجام شده باشد. شبکه را بررسي نماييد، اطلاعات "
    "را دوباره بخوانيد و دوباره تلاش نماييد.";
constexpr const char* kBrokenReading =
    "ارتباط با پايگاه داده قطع شد. شبکه را بررسي نماييد و دوباره تلاش نماييد.";
constexpr const char* kNoAnswer =
    "پايگاه داده در دسترس نيست. نشاني سرور و شبکه را بررسي نماييد و دوباره تلاش نماييد.";
constexpr const char* kNoDriver = "راه انداز ODBC باز نميشود. نصب آن را بررسي نماييد.";

/// By the server's own number.
constexpr Told kTold[] = {
    {2627, Reason::Constraint, kExists},
    {2601, Reason::Constraint, kExists},
    {547, Reason::Constraint, kReferred},
    {515, Reason::Constraint, "مقدار لازم وارد نشده است. آن را وارد نماييد."},
    {1205, Reason::Busy, kDeadlock},
    {1222, Reason::Busy, kBusy},
    {3960, Reason::Busy, kConflict},
    {208, Reason::Statement, kNoTable},
    {207, Reason::Statement, kNoColumn},
    {2812, Reason::Statement, kNoProcedure},
    {245, Reason::Statement, kNoNumber},
    {8114, Reason::Statement, kNoNumber},
    {1934, Reason::Statement, kWrongOptions},
    {229, Reason::Denied, kNoRight},
    {230, Reason::Denied, kNoRight},
    {2628, Reason::TooLong, kCut},
    {8152, Reason::TooLong, kCut},
    {1101, Reason::Storage, kFull},
    {1105, Reason::Storage, kFull},
    {9002, Reason::Storage, kFullLog},
    {3906, Reason::Storage, kReadOnly},
    {823, Reason::Storage, kDamaged},
    {824, Reason::Storage, kDamaged},
    {825, Reason::Storage, kDamaged},
    {18456, Reason::Connection, kLogin},
    {18452, Reason::Connection, kLogin},
    {18470, Reason::Connection, kDisabled},
    {916, Reason::Denied, kNoMember},
    {927, Reason::Statement, kRestoring},
    {911, Reason::Connection, kNoDatabase},
    {4060, Reason::Connection, kNoDatabase},
    {18486, Reason::Connection, kLogin},
    {18487, Reason::Connection, kLogin},
    {18488, Reason::Connection, kLogin},
};

/// Numbers from here on are raised by the triggers and procedures, whose messages need no other words.
constexpr int kFirstRule = 50000;

/// The message without the bracketed names that drivers put in front.
std::string_view withoutNames(std::string_view message) {
  while (message.starts_with('[')) {
    const std::size_t end = message.find(']');
    if (end == std::string_view::npos) break;
    message.remove_prefix(end + 1);
  }
  return message.substr(std::min(message.find_first_not_of(' '), message.size()));
}

/// Whether the connection is lost. FreeTDS reports this by informational messages with its own numbers: it
/// couldn't read or write, or the server closed the connection.
bool isLost(const Record& record) {
  constexpr int kOfFreeTds[] = {20004, 20006, 20017, 20047};
  return record.state.starts_with("08") ||
         (record.state.starts_with("01") && std::any_of(std::begin(kOfFreeTds), std::end(kOfFreeTds),
                                                        [&](int number) { return number == record.number; }));
}

const Record& decisive(const std::vector<Record>& told) {
  static const Record kNothing{"HY000", 0, ""};
  const auto failure = std::find_if(told.begin(), told.end(), [](const Record& record) {
    return !record.state.starts_with("01") || isLost(record);
  });
  if (failure != told.end()) return *failure;
  return told.empty() ? kNothing : told.front();
}

/// " (<words> 2627, 23000)"
std::string behind(const Record& record) {
  return " (" + record.message + (record.message.empty() ? "" : " ") + std::to_string(record.number) + ", " +
         record.state + ")";
}

/// Whether a server refused the connection over encryption. Microsoft's driver says so; FreeTDS only reports
/// a failed log-in, without a reason from the server.
bool refusedEncryption(const std::vector<Record>& told) {
  constexpr int kLoginFailed = 20002;
  return std::any_of(told.begin(), told.end(), [](const Record& one) {
    const auto says = [&one](const char* word) { return one.message.find(word) != std::string::npos; };
    return one.number == kLoginFailed || says("SSL") || says("TLS") || says("ncryption");
  });
}

const Told* toldOf(int number) {
  const auto* const found = std::find_if(std::begin(kTold), std::end(kTold),
                                         [number](const Told& told) { return told.number == number; });
  return found == std::end(kTold) ? nullptr : found;
}

}  // namespace

std::vector<Record> records(const Handle& handle) {
  std::vector<Record> told;
  std::array<char16_t, 6> state{};
  std::array<char16_t, 4000> message{};
  for (SQLSMALLINT place = 1; place <= 50; ++place) {
    SQLINTEGER number = 0;
    SQLSMALLINT length = 0;
    const SQLRETURN result = SQLGetDiagRecW(
        handle.type(), handle.get(), place, reinterpret_cast<SQLWCHAR*>(state.data()), &number,
        reinterpret_cast<SQLWCHAR*>(message.data()), static_cast<SQLSMALLINT>(message.size()), &length);
    if (!SQL_SUCCEEDED(result)) break;
    const std::string words = text::utf8Text(std::u16string(message.data()));
    told.push_back({text::utf8Text(std::u16string(state.data())), number, std::string(withoutNames(words))});
  }
  return told;
}

data::DataError callError(const std::vector<Record>& told, std::string_view statement, bool onlyReads) {
  const Record& record = decisive(told);
  const std::string where(statement);
  if (const Told* const known = toldOf(record.number)) {
    // A refusal means that nothing was done.
    return data::DataError(known->reason, record.number, known->text + behind(record), where).undone();
  }
  if (record.number >= kFirstRule) return {Reason::Constraint, record.number, record.message, where};
  // The server has confirmed the time-out of a statement, but not that of the connection.
  if (record.state == "HYT00" || record.state == "HYT01")
    return timeOutError(statement, onlyReads || record.state == "HYT00");
  if (isLost(record)) return brokenError(told, statement, onlyReads);
  if (record.state.starts_with("23")) {
    return {Reason::Constraint, record.number,
            "مقدار وارد شده پذيرفته نيست. آن را اصلاح نماييد." + behind(record), where};
  }
  return {Reason::Statement, record.number, data::kStatementRefused + behind(record), where};
}

data::DataError withMoreWords(const data::DataError& failure, std::string_view words) {
  std::string message = failure.what();
  const Told* const known = toldOf(failure.number());
  const bool own = known != nullptr && message.starts_with(known->text);
  message.insert(own ? std::string_view(known->text).size() : message.size(), words);
  data::DataError told(failure.reason(), failure.number(), message, failure.statement());
  return failure.leavesOpen() ? told : std::move(told).undone();
}

data::DataError openError(const std::vector<Record>& told, std::string_view secret, bool encrypts) {
  Record record = decisive(told);
  // The driver manager reports a driver that can't be loaded by an informational message.
  const bool noDriver = std::any_of(told.begin(), told.end(), [](const Record& one) {
    return one.state == "IM002" || one.state == "IM003" || one.message.starts_with("Can't open lib");
  });
  // Drivers put a general error before the server's reason.
  const auto reason =
      std::find_if(told.begin(), told.end(), [](const Record& one) { return toldOf(one.number) != nullptr; });
  if (reason != told.end()) record = *reason;
  const Told* const known = toldOf(record.number);
  const char* const text = noDriver                              ? kNoDriver
                           : known != nullptr                    ? known->text
                           : encrypts && refusedEncryption(told) ? kNoTls
                                                                 : kNoAnswer;
  // Masking a short password would show which letters it has.
  if (!secret.empty() && record.message.find(secret) != std::string::npos) record.message.clear();
  return data::DataError(Reason::Connection, record.number, text + behind(record)).undone();
}

bool servesElsewhere(int number) {
  // 0: no server answered; the driver's own numbers likewise. The others mean that another server has the
  // database at the moment, or none has it yet.
  constexpr int kElsewhere[] = {0, 904, 922, 954, 976, 978, 983, 4060, 4221, 6005, 17142};
  return (number >= 10050 && number <= 10065) || (number >= 20000 && number <= 20100) ||
         std::find(std::begin(kElsewhere), std::end(kElsewhere), number) != std::end(kElsewhere);
}

data::DataError brokenError(const std::vector<Record>& told, std::string_view statement, bool onlyReads) {
  const Record& record = decisive(told);
  const auto failure = [&](const char* words) {
    return data::DataError(Reason::Connection, record.number, words + behind(record), std::string(statement));
  };
  return onlyReads ? failure(kBrokenReading).undone() : failure(kBroken);
}

data::DataError timeOutError(std::string_view statement, bool ended) {
  const std::string where(statement);
  if (!ended) return {Reason::TimeOut, 0, data::kUnanswered, where};
  return data::DataError(Reason::TimeOut, 0, data::kStopped, where).undone();
}

data::DataError cancelledError() {
  return {Reason::Cancelled, 0, "The search was given up for a newer one."};
}

}  // namespace ledgertree::engines::odbc
