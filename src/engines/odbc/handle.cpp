#include "engines/odbc/handle.h"

#include <array>

#include "data/data_error.h"

namespace ledgertree::engines::odbc {

Handle::Handle(SQLSMALLINT type, SQLHANDLE parent) : type_(type) {
  if (SQL_SUCCEEDED(SQLAllocHandle(type, parent, &handle_))) return;
  throw data::DataError(data::DataError::Reason::Connection, 0,
                        "راه انداز ODBC پاسخ نميدهد. برنامه را ببنديد و دوباره باز کنيد.");
}

Handle::~Handle() {
  if (handle_ != SQL_NULL_HANDLE) SQLFreeHandle(type_, handle_);
}

Environment::Environment() : Handle(SQL_HANDLE_ENV, SQL_NULL_HANDLE) {
  // The value is passed as a pointer.
  SQLSetEnvAttr(get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);  // NOLINT
}

std::vector<std::string> Environment::drivers() const {
  std::vector<std::string> names;
  std::array<SQLCHAR, 256> name{};
  SQLSMALLINT length = 0;
  SQLUSMALLINT direction = SQL_FETCH_FIRST;
  while (SQL_SUCCEEDED(SQLDrivers(get(), direction, name.data(), static_cast<SQLSMALLINT>(name.size()),
                                  &length, nullptr, 0, nullptr))) {
    names.emplace_back(reinterpret_cast<const char*>(name.data()));
    direction = SQL_FETCH_NEXT;
  }
  return names;
}

}  // namespace ledgertree::engines::odbc
