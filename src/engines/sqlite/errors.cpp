#include "engines/sqlite/errors.h"

#include <sqlite3.h>

#include <string>

namespace ledgertree::engines::sqlite {
namespace {

using Reason = data::DataError::Reason;

struct Told {
  int code;
  Reason reason;
  const char* text;
};

/// By primary error code. Any other code means that the statement was refused.
constexpr Told kTold[] = {
    {SQLITE_BUSY, Reason::Busy, "پايگاه داده در دست برنامه ديگري است. کمي صبر نماييد و دوباره تلاش نماييد."},
    {SQLITE_LOCKED, Reason::Busy,
     "پايگاه داده در دست برنامه ديگري است. کمي صبر نماييد و دوباره تلاش نماييد."},
    {SQLITE_FULL, Reason::Storage, "فضاي ديسک پر است. فضا را خالي نماييد و دوباره تلاش نماييد."},
    {SQLITE_READONLY, Reason::Storage,
     "فايل پايگاه داده فقط خواندني است. اجازه نوشتن آن را فراهم نماييد و دوباره تلاش نماييد."},
    {SQLITE_IOERR, Reason::Storage,
     "خواندن يا نوشتن فايل پايگاه داده ممکن نشد. ديسک و فضاي آن را بررسي نماييد و دوباره تلاش نماييد."},
    {SQLITE_CORRUPT, Reason::Storage,
     "فايل پايگاه داده آسيب ديده است. آخرين نسخه پشتيبان آن را جايگزين نماييد."},
    {SQLITE_CANTOPEN, Reason::Connection,
     "فايل پايگاه داده باز نميشود. نشاني آن و اجازه دسترسي به پوشه آن را بررسي نماييد."},
    {SQLITE_PERM, Reason::Connection,
     "فايل پايگاه داده باز نميشود. نشاني آن و اجازه دسترسي به پوشه آن را بررسي نماييد."},
    {SQLITE_AUTH, Reason::Connection,
     "فايل پايگاه داده باز نميشود. نشاني آن و اجازه دسترسي به پوشه آن را بررسي نماييد."},
    {SQLITE_NOTADB, Reason::Connection, "اين فايل پايگاه داده نيست. فايل ديگري انتخاب نماييد."},
};

/// "UNIQUE constraint failed: tblX.A, tblX.B" without its fixed beginning.
std::string_view constraintSubject(std::string_view engineText) {
  constexpr std::string_view kLead = "constraint failed: ";
  const std::size_t place = engineText.find(kLead);
  return place == std::string_view::npos ? std::string_view() : engineText.substr(place + kLead.size());
}

std::string constraintText(int code, std::string_view engineText) {
  const std::string subject = " (" + std::string(constraintSubject(engineText)) + ")";
  switch (code) {
    case SQLITE_CONSTRAINT_TRIGGER:
      // A rule of the database has its own message.
      return std::string(engineText);
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return "چنين سطري قبلا ثبت شده است" + subject + ". مقدار ديگري وارد نماييد.";
    case SQLITE_CONSTRAINT_FOREIGNKEY:
      return "سطري که به آن اشاره ميشود وجود ندارد، يا سطر ديگري به اين سطر وابسته است. اطلاعات را دوباره "
             "بخوانيد.";
    case SQLITE_CONSTRAINT_NOTNULL:
      return "مقدار لازم وارد نشده است" + subject + ". آن را وارد نماييد.";
    default:
      return "مقدار وارد شده پذيرفته نيست" + subject + ". آن را اصلاح نماييد.";
  }
}

}  // namespace

data::DataError engineError(int code, std::string_view engineText, std::string_view statement) {
  const int primary = code & 0xFF;
  const std::string where(statement);
  if (primary == SQLITE_CONSTRAINT)
    return {Reason::Constraint, code, constraintText(code, engineText), where};
  for (const Told& told : kTold) {
    if (told.code == primary) return {told.reason, code, told.text, where};
  }
  return {Reason::Statement, code, data::kStatementRefused + (" (" + std::string(engineText) + ")"), where};
}

data::DataError engineError(const SQLite::Exception& failure, std::string_view statement) {
  return engineError(failure.getExtendedErrorCode(), failure.what(), statement);
}

data::DataError lastError(sqlite3* handle, std::string_view statement) {
  return engineError(sqlite3_extended_errcode(handle), sqlite3_errmsg(handle), statement);
}

data::DataError timeOutError(std::string_view statement) {
  return data::DataError(Reason::TimeOut, SQLITE_INTERRUPT, data::kStopped, std::string(statement)).undone();
}

data::DataError cancelledError() {
  return {Reason::Cancelled, SQLITE_INTERRUPT, "The search was given up for a newer one."};
}

}  // namespace ledgertree::engines::sqlite
