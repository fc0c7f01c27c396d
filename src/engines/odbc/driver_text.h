#pragma once

#include <string>
#include <vector>

#include "data/connection_text.h"
#include "engines/odbc/secret.h"

namespace ledgertree::engines::odbc {

/// How the words of an ODBC connection text are spelled.
enum class Dialect {
  Microsoft,  ///< Microsoft's own driver for SQL Server
  FreeTds,    ///< FreeTDS, which reaches SQL Server too
  Other,      ///< a driver that `ODBC Driver` names and that isn't one for SQL Server
};

/// What an ODBC driver is told to reach what an OLE DB connection text names.
struct DriverText {
  Dialect dialect = Dialect::Other;
  std::string driver;       ///< the name under which it is installed
  Secret<char> text;        ///< "Driver={…};Server=…;…;PWD=…"
  bool hasPartner = false;  ///< there is one, and the driver is told only of the first server
  bool encrypts = false;    ///< the text asks for encryption
  int loginSeconds = 15;    ///< the time-out of the connecting: `Connect Timeout`, or 15
};

/// Translates an OLE DB connection text. `installed` are the names of the drivers of this machine.
///
/// `ODBC Driver` chooses the driver; without it Microsoft's own is taken where it is installed, the newest of
/// several, and FreeTDS where it isn't. The keys that are read, each with its other spellings: Data Source
/// ("tcp:server\instance,port"), Initial Catalog, User ID, Password, Integrated Security or
/// Trusted_Connection, Use Encryption for Data, Trust Server Certificate, Application Name, Workstation ID,
/// Connect Timeout, Failover Partner, MultiSubnetFailover, Application Intent; of Search Intent, which is
/// shell::Shell's, only whether it is one. Other keys mean nothing to it.
/// FreeTDS tries all addresses of a name at once, without being told.
///
/// Throws data::DataError(Reason::Connection) that names the key and never repeats a value: a missing Data
/// Source, a port or a switch that is none, a control character, no driver, or a certificate to be checked by
/// a driver that can't.
///
/// `partner`: what leads to the server that Failover Partner names, for a driver that doesn't know that key.
[[nodiscard]] DriverText driverText(const data::ConnectionText& text,
                                    const std::vector<std::string>& installed, bool partner = false);

}  // namespace ledgertree::engines::odbc
