#include "engines/sqlite/sum.h"

#include "engines/sqlite/errors.h"

namespace ledgertree::engines::sqlite {
namespace {

void join(sqlite3_context* context, sqlite3_value** values) {
  sqlite3_str* const joined = sqlite3_str_new(sqlite3_context_db_handle(context));
  for (int side = 0; side < 2; ++side) {
    const unsigned char* const text = sqlite3_value_text(values[side]);
    sqlite3_str_append(joined, reinterpret_cast<const char*>(text), sqlite3_value_bytes(values[side]));
  }
  const int failure = sqlite3_str_errcode(joined);
  const int length = sqlite3_str_length(joined);
  char* const text = sqlite3_str_finish(joined);
  if (failure != SQLITE_OK) return sqlite3_result_error_code(context, failure);
  if (text == nullptr) return sqlite3_result_text(context, "", 0, SQLITE_STATIC);
  sqlite3_result_text(context, text, length, sqlite3_free);
}

/// As SQLite's own operator does: a result beyond integers is a real number.
void add(sqlite3_context* context, sqlite3_value** values) {
  const auto isInteger = [values](int side) { return sqlite3_value_type(values[side]) == SQLITE_INTEGER; };
  sqlite3_int64 whole = 0;
  if (isInteger(0) && isInteger(1) &&
      !__builtin_add_overflow(sqlite3_value_int64(values[0]), sqlite3_value_int64(values[1]), &whole)) {
    return sqlite3_result_int64(context, whole);
  }
  sqlite3_result_double(context, sqlite3_value_double(values[0]) + sqlite3_value_double(values[1]));
}

void sumOrJoin(sqlite3_context* context, int /*count*/, sqlite3_value** values) {
  bool isText = false;
  for (int side = 0; side < 2; ++side) {
    const int type = sqlite3_value_type(values[side]);
    if (type == SQLITE_NULL) return sqlite3_result_null(context);
    isText = isText || type == SQLITE_TEXT || type == SQLITE_BLOB;
  }
  return isText ? join(context, values) : add(context, values);
}

}  // namespace

void addSumFunction(sqlite3* database) {
  const int result = sqlite3_create_function(database, kSumFunction.data(), 2,
                                             SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY, nullptr,
                                             sumOrJoin, nullptr, nullptr);
  if (result != SQLITE_OK) throw lastError(database, kSumFunction);
}

}  // namespace ledgertree::engines::sqlite
