#pragma once

#include <string>

#include "data/catalogue.h"
#include "data/value.h"
#include "engines/odbc/code_page.h"
#include "engines/odbc/handle.h"

namespace ledgertree::engines::odbc {

/// One parameter value, kept where the driver reads it while a command runs. Text is sent as Unicode, folded
/// to the code page.
class Argument {
 public:
  /// The value has passed data::checkArguments, or is known to have the parameter's type.
  Argument(const data::Parameter& parameter, const data::Value& value, CodePage page);
  /// Binds it to a question mark, counted from 1. It must not move until the command has ended.
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
