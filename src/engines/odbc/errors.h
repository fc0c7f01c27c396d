#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/data_error.h"
#include "engines/odbc/handle.h"

namespace ledgertree::engines::odbc {

/// A driver's diagnostic record: the ODBC state, the server's own number, and the message.
struct Record {
  std::string state;
  int number = 0;
  std::string message;  ///< without the bracketed names of driver and server in front
};

/// The diagnostic records of the last call on a handle.
[[nodiscard]] std::vector<Record> records(const Handle& handle);

/// The error for a failed call: for failures that users meet, a Persian message that says what to do,
/// followed by the server's message, number and state. The first record that isn't merely informational
/// counts. `onlyReads` leaves out that the command may have been done.
[[nodiscard]] data::DataError callError(const std::vector<Record>& told, std::string_view statement,
                                        bool onlyReads);
/// The same error with more words after the product's own message and before the server's.
[[nodiscard]] data::DataError withMoreWords(const data::DataError& failure, std::string_view words);
/// Whether a connection failed because this server doesn't serve the database now: another one may, or this
/// one later.
[[nodiscard]] bool servesElsewhere(int number);
/// The error for a connection that couldn't be opened; `encrypts`: encryption was requested. Always
/// Reason::Connection, and undone(). Never contains the secret.
[[nodiscard]] data::DataError openError(const std::vector<Record>& told, std::string_view secret,
                                        bool encrypts = false);

/// The connection broke while a statement ran.
[[nodiscard]] data::DataError brokenError(const std::vector<Record>& told, std::string_view statement,
                                          bool onlyReads);
/// A command exceeded its time-out. `ended`: nothing of it was done; otherwise the server may still complete
/// it.
[[nodiscard]] data::DataError timeOutError(std::string_view statement, bool ended);
/// A search was cancelled.
[[nodiscard]] data::DataError cancelledError();

}  // namespace ledgertree::engines::odbc
