#include "engines/odbc/told_write.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "engines/odbc/argument.h"
#include "engines/odbc/execution.h"
#include "engines/odbc/packet.h"
#include "engines/odbc/result_sets.h"

namespace ledgertree::engines::odbc {
namespace {

using data::ParameterType;

/// A batch whose question marks are bound one by one.
class Batch {
 public:
  explicit Batch(Session& session) : session_(session) {}

  void say(std::string_view words) { text_.append(words); }
  void say(const data::Parameter& parameter, const data::Value& value) {
    text_ += "?";
    arguments_.emplace_back(parameter, value, session_.codePage());
  }
  /// Returns the rows of the first answer; nothing if there is none. Throws data::DataError.
  std::optional<data::Rows> run(std::string_view name, Belonging& belonging,
                                std::optional<std::chrono::milliseconds> longest = {}) {
    Execution execution(session_, name, false, nullptr, longest);
    SQLUSMALLINT place = 1;
    bool bound = true;
    for (Argument& argument : arguments_) bound = bound && argument.bind(execution.statement(), place++);
    if (!bound) execution.noteFailure();
    std::optional<data::Rows> answer;
    for (bool result = bound && execution.send(text_); result; result = execution.nextResult()) {
      ResultSet set(execution);
      if (set.columns() == 0) continue;
      data::Rows rows = set.emptyRows();
      set.addRows(rows);
      if (!belonging.hears(rows) && !answer) answer = std::move(rows);
    }
    execution.finish();
    belonging.done();
    return answer;
  }

 private:
  Session& session_;
  std::string text_;
  std::vector<Argument> arguments_;
};

void handOver(Batch& batch, const data::AsRead& read) {
  const auto say = [&batch](std::string_view name, ParameterType type, const data::Value& value,
                            int width = 0) {
    batch.say("exec sp_set_session_context N'LedgerTree." + std::string(name) + "', ");
    batch.say({.name = name, .type = type, .width = width}, value);
    batch.say("; ");
  };
  say("ID", ParameterType::Int, read.account ? read.account->id : 0);
  say("Parent", ParameterType::Int, read.parentID);
  say("ParentCode", ParameterType::Text, read.parentCode, data::kCodeLength);
  say("ParentsParent", ParameterType::Int,
      read.parentsParent ? data::Value(*read.parentsParent) : data::Value());
  if (!read.account) return;
  for (const data::AccountField& field : data::kAccountFields)
    if (data::isEdited(field))
      say(field.column, field.type(), valueOf(*read.account, field.member), field.update);
  const data::AccountRelation related = read.account->relation.value_or(data::AccountRelation());
  say("Related", ParameterType::Int, read.account->relation ? 1 : 0);
  say("RelatedClassID", ParameterType::Int, related.classID);
  say("RelatedObjectID", ParameterType::Int, related.objectID);
}

}  // namespace

std::int32_t callSaid(Session& session, const Said& said, const data::Procedure& procedure,
                      std::span<const data::Value> values) {
  Batch batch(session);
  batch.say(said.belonging.ahead());
  if (said.read != nullptr) handOver(batch, *said.read);
  batch.say("declare @Result int; exec @Result = " + std::string(procedure.name));
  for (std::size_t place = 0; place < values.size(); ++place) {
    batch.say(place == 0 ? " " : ", ");
    batch.say(procedure.parameters[place], values[place]);
  }
  batch.say("; select @Result as Result" + said.belonging.behind());
  const auto result = batch.run(procedure.name, said.belonging);
  if (result && result->count() != 0) return result->value(0, 0).toInt32();
  throw data::DataError(data::DataError::Reason::Statement, 0,
                        data::kStatementRefused + std::string(" (no return value)"),
                        std::string(procedure.name));
}

void runSaid(Session& session, const Said& said, std::string_view statement) {
  Batch batch(session);
  batch.say(said.belonging.ahead());
  if (said.read != nullptr) {
    batch.say("begin try begin transaction; ");
    handOver(batch, *said.read);
    batch.say("exec dbo.spAccountCompareRead " +
              std::to_string(said.read->account ? said.read->account->id : 0) + "; ");
    batch.say(statement);
    batch.say(
        "; commit transaction; end try begin catch if @@trancount > 0 rollback transaction; throw; end "
        "catch");
  } else {
    batch.say(executed(statement, session.codePage()));
  }
  batch.say(said.belonging.behind());
  static_cast<void>(batch.run(statement, said.belonging));
}

data::Rows takeBackThere(Session& session, Belonging& belonging, std::int64_t operation) {
  constexpr const char* kProcedure = "spAccountTakeBack";
  Batch batch(session);
  batch.say(belonging.ahead());
  batch.say("exec dbo." + std::string(kProcedure) + " " + std::to_string(operation) + belonging.behind());
  // Taking back may take as long as the operation did; it can be cancelled at any time.
  return batch.run(kProcedure, belonging, data::kLongestTakingBack).value_or(data::Rows());
}

}  // namespace ledgertree::engines::odbc
