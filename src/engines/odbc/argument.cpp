#include "engines/odbc/argument.h"

#include <algorithm>

#include "text/utf8.h"

namespace ledgertree::engines::odbc {

Argument::Argument(const data::Parameter& parameter, const data::Value& value, CodePage page)
    : type_(parameter.type), width_(static_cast<SQLULEN>(parameter.width)) {
  if (value.isNull()) {
    length_ = SQL_NULL_DATA;
    return;
  }
  switch (type_) {
    case data::ParameterType::Int:
      number_ = value.toInt32();
      break;
    case data::ParameterType::Money:
      amount_ = value.toMoney().toText();
      length_ = static_cast<SQLLEN>(amount_.size());
      break;
    case data::ParameterType::DateTime: {
      const data::DateTime time = value.toDateTime();
      const auto part = [](int number) { return static_cast<SQLUSMALLINT>(number); };
      time_ = {static_cast<SQLSMALLINT>(time.year),
               part(time.month),
               part(time.day),
               part(time.hour),
               part(time.minute),
               part(time.second),
               0};
      break;
    }
    case data::ParameterType::Text:
      text_ = text::wideText(foldText(value.toText(), page));
      length_ = static_cast<SQLLEN>(text_.size() * sizeof(char16_t));
      width_ = std::max<SQLULEN>(width_, text_.size());
      break;
  }
}

bool Argument::bind(const Handle& statement, SQLUSMALLINT place) {
  const auto bound = [&](SQLSMALLINT here, SQLSMALLINT there, SQLULEN size, SQLSMALLINT decimals,
                         SQLPOINTER data, std::size_t room) {
    return SQL_SUCCEEDED(SQLBindParameter(statement.get(), place, SQL_PARAM_INPUT, here, there, size,
                                          decimals, data, static_cast<SQLLEN>(room), &length_));
  };
  switch (type_) {
    case data::ParameterType::Int:
      return bound(SQL_C_SLONG, SQL_INTEGER, 10, 0, &number_, sizeof number_);
    case data::ParameterType::Money:
      return bound(SQL_C_CHAR, SQL_DECIMAL, 19, 4, amount_.data(), amount_.size());
    case data::ParameterType::DateTime:
      return bound(SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 23, 3, &time_, sizeof time_);
    case data::ParameterType::Text:
      break;
  }
  return bound(SQL_C_WCHAR, SQL_WVARCHAR, width_, 0, text_.data(), text_.size() * sizeof(char16_t));
}

}  // namespace ledgertree::engines::odbc
