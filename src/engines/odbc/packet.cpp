#include "engines/odbc/packet.h"

#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "data/catalogue.h"
#include "data/data_error.h"
#include "data/quote_text.h"
#include "engines/odbc/result_sets.h"

namespace ledgertree::engines::odbc {
namespace {

constexpr std::string_view kBegin = "declare @Result int begin try ";
constexpr std::string_view kEnd = "end try begin catch; throw; end catch";
/// The marker after a completed command, with its operation's number if that is asked for.
constexpr std::string_view kMark = "; select @Result as LedgerTreeResult";
constexpr std::string_view kMarkColumn = "LedgerTreeResult";

std::string_view nameOf(const data::Command& command) {
  return command.procedure != nullptr ? command.procedure->name : std::string_view(command.statement);
}

std::string callText(const data::Command& command) {
  data::checkArguments(*command.procedure, command.values);
  std::string text = "exec @Result = " + std::string(command.procedure->name);
  const char* between = " ";
  for (const data::Value& value : command.values) {
    text += std::exchange(between, ", ") + (value.isNull() ? "null" : std::to_string(value.toInt64()));
  }
  return text;
}

std::string textOf(const data::Command& command, CodePage page) {
  return command.procedure != nullptr ? callText(command) : executed(command.statement, page);
}

/// A batch of as many of the commands as can be sent.
struct Batch {
  Batch(std::span<const data::Command> commands, CodePage page, Belonging& belonging) : text(kBegin) {
    const std::string number = belonging.numberColumn();
    const std::string mark = std::string(kMark) + (number.empty() ? "" : ", ") + number + " ";
    text.append(belonging.ahead());
    try {
      for (const data::Command& command : commands) {
        text.append(textOf(command, page)).append(mark);
        ++size;
      }
    } catch (const data::DataError&) {
      refusal = std::current_exception();
    }
    text.append(kEnd);
  }

  std::string text;
  std::size_t size = 0;
  std::exception_ptr refusal;  ///< of the command after them
};

bool isMark(const data::Rows& rows) {
  return !rows.columns().empty() && rows.columns().front() == kMarkColumn;
}

/// Reads the answers of the batch; the last command's only if nothing after it failed either.
void readAnswers(Execution& execution, Belonging& belonging, std::span<const data::Command> sent,
                 std::vector<data::Answer>& ran) {
  data::Answer answer;
  bool atEnd = false;
  for (bool result = true; result && !execution.failed(); result = execution.nextResult()) {
    const data::Command& command = sent[ran.size()];
    ResultSet set(execution);
    data::Rows rows = set.emptyRows();
    if (!isMark(rows)) {
      const bool reads = command.procedure == nullptr && !changesRows(command.statement);
      if (set.columns() == 0 || !reads || answer.rows) continue;
      set.addRows(rows);
      answer.rows = std::move(rows);
      continue;
    }
    set.addRows(rows);
    if (execution.failed()) break;
    belonging.done();
    belonging.hears(rows);
    if (command.procedure != nullptr) answer.result = rows.value(0, 0).toInt32();
    atEnd = ran.size() + 1 == sent.size();
    if (atEnd) break;
    ran.push_back(std::exchange(answer, {}));
    execution.goOnWith(nameOf(sent[ran.size()]));
  }
  execution.finish();
  if (!atEnd) {
    throw data::DataError(data::DataError::Reason::Statement, 0,
                          data::kStatementRefused + std::string(" (no end)"),
                          std::string(nameOf(sent[ran.size()])));
  }
  ran.push_back(std::move(answer));
}

}  // namespace

std::string executed(std::string_view statement, CodePage page) {
  requireCleanStatement(statement);
  return "exec(N" + data::quoteText(foldStatement(statement, page)) + ")";
}

void sendPacket(Session& session, Belonging& belonging, std::span<const data::Command> commands,
                std::vector<data::Answer>& ran) {
  const Batch batch(commands, session.codePage(), belonging);
  const auto sent = commands.first(batch.size);
  if (!sent.empty()) {
    Execution execution(session, nameOf(sent.front()), data::onlyRead(sent));
    if (!execution.send(batch.text)) execution.finish();
    readAnswers(execution, belonging, sent, ran);
  }
  if (batch.refusal) std::rethrow_exception(batch.refusal);
}

}  // namespace ledgertree::engines::odbc
