#pragma once

#include <string>
#include <vector>

#include "data/connection_text.h"
#include "engines/odbc/secret.h"

namespace ledgertree::engines::odbc {

/// The driver family, which decides how an ODBC connection text is spelled.
enum class Dialect {
  Microsoft,  ///< Microsoft's own driver for SQL Server
  FreeTds,    ///< FreeTDS, which connects to SQL Server too
  Other,      ///< a driver named by `ODBC Driver` that isn't for SQL Server
};

/// ODBC connection string for an OLE DB one.
struct DriverText {
  Dialect dialect = Dialect::Other;
  std::string driver;       ///< its installed name
  Secret<char> text;        ///< "Driver={…};Server=…;…;PWD=…"
  bool hasPartner = false;  ///< there is a failover partner, which the driver isn't told of
  bool encrypts = false;    ///< the text asks for encryption
  int loginSeconds = 15;    ///< the connection time-out: `Connect Timeout`, or 15
};

/// Translates an OLE DB connection text. `installed` are the names of the drivers on this machine.
///
/// `ODBC Driver` chooses the driver; without it, the newest installed driver of Microsoft's, else FreeTDS.
/// Keys read, each also in its other spellings: Data Source ("tcp:server\instance,port"), Initial Catalog,
/// User ID, Password, Integrated Security or Trusted_Connection, Use Encryption for Data, Trust Server
/// Certificate, Application Name, Workstation ID, Connect Timeout, Failover Partner, MultiSubnetFailover,
/// Application Intent; Search Intent belongs to shell::Shell and is only checked. Other keys are ignored.
/// FreeTDS always tries all addresses of a name at once.
///
/// Throws data::DataError(Reason::Connection) that names the key and never repeats a value: for a missing
/// Data Source, an invalid port or switch, a control character, no driver, or a certificate check that the
/// driver can't do.
///
/// `partner`: returns the text for the server named by Failover Partner, for a driver that doesn't know that
/// key.
[[nodiscard]] DriverText driverText(const data::ConnectionText& text,
                                    const std::vector<std::string>& installed, bool partner = false);

}  // namespace ledgertree::engines::odbc
