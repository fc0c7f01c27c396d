#pragma once

#ifdef _WIN32
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>

#include <string>
#include <vector>

namespace ledgertree::engines::odbc {

/// A handle of the driver manager, freed at its end.
class Handle {
 public:
  Handle() = default;
  /// Throws data::DataError(Reason::Connection) where there is none to be had.
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

/// The driver manager, as everything begins.
class Environment : public Handle {
 public:
  Environment();
  /// The names of the drivers that are installed on this machine.
  [[nodiscard]] std::vector<std::string> drivers() const;
};

}  // namespace ledgertree::engines::odbc
