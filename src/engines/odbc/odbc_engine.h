#pragma once

namespace ledgertree::data {
class Providers;
}

namespace ledgertree::engines::odbc {

/// Makes Microsoft SQL Server known, under the names that its OLE DB providers have had: "SQLOLEDB",
/// "SQLNCLI", "SQLNCLI10", "SQLNCLI11", "MSOLEDBSQL", "MSOLEDBSQL19", and "MSDASQL", which has always stood
/// for a driver of ODBC. What is read of the connection text stands in driver_text.h.
void registerOdbc(data::Providers& providers);

}  // namespace ledgertree::engines::odbc
