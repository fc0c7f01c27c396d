#include "data/odbc/odbc_engine.h"

#include <memory>

#include "data/connection.h"
#include "data/odbc/odbc_connection.h"

namespace ledgertree::data::odbc {

void registerOdbc(Providers& providers, std::chrono::milliseconds command, Versions versions) {
  for (const char* const name :
       {"SQLOLEDB", "SQLNCLI", "SQLNCLI10", "SQLNCLI11", "MSOLEDBSQL", "MSOLEDBSQL19", "MSDASQL"}) {
    providers.add(name, [command, versions](const ConnectionText& text) {
      return std::make_unique<OdbcConnection>(text, command, versions);
    });
  }
}

}  // namespace ledgertree::data::odbc
