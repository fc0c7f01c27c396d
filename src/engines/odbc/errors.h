#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/data_error.h"
#include "engines/odbc/handle.h"

namespace ledgertree::engines::odbc {

/// What a driver says of a call: the state of ODBC, the server's own number, and its words.
struct Record {
  std::string state;
  int number = 0;
  std::string message;  ///< without the names of the driver and the server in brackets ahead of it
};

/// What a handle holds of its last call.
[[nodiscard]] std::vector<Record> records(const Handle& handle);

/// A failed call as the product tells it: what a person may meet in Persian, saying what to do next, and
/// behind it the server's words, number and state. The first record that is no mere message counts. Of what
/// only reads nobody hears that it may have been done.
[[nodiscard]] data::DataError callError(const std::vector<Record>& told, std::string_view statement,
                                        bool onlyReads);
/// The same failure with more words of the product's own, behind those that it begins with and ahead of the
/// server's.
[[nodiscard]] data::DataError withMoreWords(const data::DataError& failure, std::string_view words);
/// Whether a connection failed because the database isn't served there: another server may, or this one in a
/// while.
[[nodiscard]] bool servesElsewhere(int number);
/// Why a connection couldn't be opened, one that `encrypts` where it was asked to; always Reason::Connection,
/// and undone(). The secret doesn't stand in it.
[[nodiscard]] data::DataError openError(const std::vector<Record>& told, std::string_view secret,
                                        bool encrypts = false);

/// The connection broke while a statement ran.
[[nodiscard]] data::DataError brokenError(const std::vector<Record>& told, std::string_view statement,
                                          bool onlyReads);
/// A command that ran past its time-out. `ended`: nothing of it is done; else the server may still carry it
/// out.
[[nodiscard]] data::DataError timeOutError(std::string_view statement, bool ended);
/// A search that was given up.
[[nodiscard]] data::DataError cancelledError();

}  // namespace ledgertree::engines::odbc
