#pragma once

#ifdef _WIN32
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>

#include <string>
#include <vector>

namespace ledgertree::engines::odbc {

/// A driver manager handle; the destructor frees it.
class Handle {
 public:
  Handle() = default;
  /// Throws data::DataError(Reason::Connection) if it can't be allocated.
  Handle(SQLSMALLINT type, SQLHANDLE parent);
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle();

  [[nodiscard]] SQLHANDLE get() const { return handle_; }
  [[nodiscard]] SQLSMALLINT type() const { return type_; }

 private:
  SQLSMALLINT type_ = 0;
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

/// The driver manager's environment handle.
class Environment : public Handle {
 public:
  Environment();
  /// The names of the installed drivers.
  [[nodiscard]] std::vector<std::string> drivers() const;
};

}  // namespace ledgertree::engines::odbc
