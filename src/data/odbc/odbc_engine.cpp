#include "data/odbc/odbc_engine.h"

#include <memory>

#include "data/connection.h"
#include "data/odbc/odbc_connection.h"

namespace ledgertree::data::odbc {

void registerOdbc(Providers& providers) {
  for (const char* const name :
       {"SQLOLEDB", "SQLNCLI", "SQLNCLI10", "SQLNCLI11", "MSOLEDBSQL", "MSOLEDBSQL19", "MSDASQL"}) {
    providers.add(name, [](const ConnectionText& text) { return std::make_unique<OdbcConnection>(text); });
  }
}

}  // namespace ledgertree::data::odbc
