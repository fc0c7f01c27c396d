#include "engines/odbc/odbc_engine.h"

#include <memory>

#include "engines/odbc/odbc_connection.h"

namespace ledgertree::engines::odbc {

void registerOdbc(data::Providers& providers, std::chrono::milliseconds command, Versions versions) {
  for (const char* const name :
       {"SQLOLEDB", "SQLNCLI", "SQLNCLI10", "SQLNCLI11", "MSOLEDBSQL", "MSOLEDBSQL19", "MSDASQL"}) {
    providers.add(name, [command, versions](const data::ConnectionText& text) {
      return std::make_unique<OdbcConnection>(text, command, versions);
    });
  }
}

}  // namespace ledgertree::engines::odbc
