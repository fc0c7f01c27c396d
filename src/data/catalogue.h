#pragma once

#include <span>
#include <string_view>

#include "data/value.h"

namespace ledgertree::data {

enum class ParameterType { Int, Money, DateTime, Text };

struct Parameter {
  std::string_view name;  ///< "@Title"
  ParameterType type;
  int width = 0;  ///< for Text: the maximum length in characters
};

/// A stored procedure of the database, called as "{? = CALL name( ?, ?) }"; it returns a 32-bit integer.
struct Procedure {
  std::string_view name;
  std::span<const Parameter> parameters;
  bool onlyReads = false;
};

/// The six procedures that the system calls. DtEn's operations document their results.
namespace procedures {
extern const Procedure spTarvoHasPermission;
extern const Procedure spAccountGetCurrentUserPeriod;
extern const Procedure spAccountInsertAccount;
extern const Procedure spAccountUpdateAccounts;
extern const Procedure spAccountInsertRelatedObject;
extern const Procedure spAccountDeleteAccount;
}  // namespace procedures

/// Every engine calls this before it calls a procedure. Throws DataError: Reason::TooLong, naming the
/// parameter, for a text that is too long for its parameter; Reason::Misuse for a wrong number of values, a
/// value of a type that the parameter can't take (NULL fits all), a whole number past 32 bits, or text that
/// isn't clean (see characters.h).
void checkArguments(const Procedure& procedure, std::span<const Value> values);

}  // namespace ledgertree::data
