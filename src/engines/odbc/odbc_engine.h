#pragma once

#include <chrono>

#include "data/connection.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// Makes Microsoft SQL Server known, under the names that its OLE DB providers have had: "SQLOLEDB",
/// "SQLNCLI", "SQLNCLI10", "SQLNCLI11", "MSOLEDBSQL", "MSOLEDBSQL19", and "MSDASQL", which has always stood
/// for a driver of ODBC. What is read of the connection text stands in driver_text.h.
void registerOdbc(data::Providers& providers, std::chrono::milliseconds command = data::kCommandTimeOut,
                  Versions versions = Versions::Present);

}  // namespace ledgertree::engines::odbc
