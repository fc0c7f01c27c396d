#pragma once

#include <chrono>

#include "data/connection.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// Registers Microsoft SQL Server under the names of its OLE DB providers: "SQLOLEDB", "SQLNCLI",
/// "SQLNCLI10", "SQLNCLI11", "MSOLEDBSQL", "MSOLEDBSQL19", and "MSDASQL", the one for ODBC drivers. For the
/// keys of the connection text see driver_text.h.
void registerOdbc(data::Providers& providers, std::chrono::milliseconds command = data::kCommandTimeOut,
                  Versions versions = Versions::Present);

}  // namespace ledgertree::engines::odbc
