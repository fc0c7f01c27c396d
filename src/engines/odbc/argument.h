#pragma once

#include <string>

#include "data/catalogue.h"
#include "data/value.h"
#include "engines/odbc/code_page.h"
#include "engines/odbc/handle.h"

namespace ledgertree::engines::odbc {

/// One value where the driver finds it while a command runs. Text goes as Unicode, in the letters of the code
/// page.
class Argument {
 public:
  /// The value was looked at by data::checkArguments, or has the parameter's type by what it is.
  Argument(const data::Parameter& parameter, const data::Value& value, CodePage page);
  /// Puts it in the place of a question mark, counted from 1. It stays where it is until the command has
  /// ended.
  [[nodiscard]] bool bind(const Handle& statement, SQLUSMALLINT place);

 private:
  data::ParameterType type_;
  SQLULEN width_;
  SQLLEN length_ = 0;
  SQLINTEGER number_ = 0;
  SQL_TIMESTAMP_STRUCT time_{};
  std::string amount_;
  std::u16string text_;
};

}  // namespace ledgertree::engines::odbc
