#include "engines/odbc/procedure_call.h"

#include <string>
#include <vector>

#include "engines/odbc/argument.h"
#include "engines/odbc/execution.h"

namespace ledgertree::engines::odbc {
namespace {

std::string callText(const data::Procedure& procedure) {
  std::string text = "{? = CALL " + std::string(procedure.name) + "(";
  for (std::size_t place = 0; place < procedure.parameters.size(); ++place) text += place == 0 ? " ?" : ", ?";
  return text += ") }";
}

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
  // The return value comes after the last result.
  execution.finish();
  if (length == SQL_NULL_DATA) {
    throw data::DataError(data::DataError::Reason::Statement, 0,
                          data::kStatementRefused + std::string(" (no return value)"),
                          std::string(procedure.name));
  }
  return result;
}

}  // namespace ledgertree::engines::odbc
