#include "engines/odbc/odbc_engine.h"

#include <memory>

#include "data/connection.h"
#include "engines/odbc/odbc_connection.h"

namespace ledgertree::engines::odbc {

void registerOdbc(data::Providers& providers) {
  for (const char* const name :
       {"SQLOLEDB", "SQLNCLI", "SQLNCLI10", "SQLNCLI11", "MSOLEDBSQL", "MSOLEDBSQL19", "MSDASQL"}) {
    providers.add(name,
                  [](const data::ConnectionText& text) { return std::make_unique<OdbcConnection>(text); });
  }
}

}  // namespace ledgertree::engines::odbc
