#include "engines/odbc/procedure_call.h"

#include <algorithm>
#include <string>
#include <vector>

#include "engines/odbc/execution.h"
#include "text/utf8.h"

namespace ledgertree::engines::odbc {
namespace {

std::string callText(const data::Procedure& procedure) {
  std::string text = "{? = CALL " + std::string(procedure.name) + "(";
  for (std::size_t place = 0; place < procedure.parameters.size(); ++place) text += place == 0 ? " ?" : ", ?";
  return text += ") }";
}

/// One value where the driver finds it while the call runs.
class Argument {
 public:
  Argument(const data::Parameter& parameter, const data::Value& value, CodePage page)
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

  /// The argument stays where it is until the call has ended.
  [[nodiscard]] bool bind(const Handle& statement, SQLUSMALLINT place) {
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

 private:
  data::ParameterType type_;
  SQLULEN width_;
  SQLLEN length_ = 0;
  SQLINTEGER number_ = 0;
  SQL_TIMESTAMP_STRUCT time_{};
  std::string amount_;
  std::u16string text_;
};

}  // namespace

std::int32_t callProcedure(Session& session, const data::Procedure& procedure,
                           std::span<const data::Value> values) {
  std::vector<Argument> arguments;
  arguments.reserve(values.size());
  for (std::size_t place = 0; place < values.size(); ++place) {
    arguments.emplace_back(procedure.parameters[place], values[place], session.codePage());
  }
  SQLINTEGER result = 0;
  SQLLEN length = SQL_NULL_DATA;
  Execution execution(session, procedure.name, procedure.onlyReads);
  bool bound = SQL_SUCCEEDED(SQLBindParameter(execution.statement().get(), 1, SQL_PARAM_OUTPUT, SQL_C_SLONG,
                                              SQL_INTEGER, 10, 0, &result, sizeof result, &length));
  SQLUSMALLINT place = 2;
  for (Argument& argument : arguments) bound = bound && argument.bind(execution.statement(), place++);
  if (!bound) execution.noteFailure();
  if (bound) static_cast<void>(execution.send(callText(procedure)));
  // The return value comes behind the last result.
  execution.finish();
  if (length == SQL_NULL_DATA) {
    throw data::DataError(data::DataError::Reason::Statement, 0,
                          data::kStatementRefused + std::string(" (no return value)"),
                          std::string(procedure.name));
  }
  return result;
}

}  // namespace ledgertree::engines::odbc
