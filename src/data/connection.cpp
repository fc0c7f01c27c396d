#include "data/connection.h"

#include <algorithm>
#include <utility>

#include "data/catalogue.h"
#include "data/connection_text.h"
#include "data/data_error.h"
#include "data/operation.h"
#include "text/characters.h"

namespace ledgertree::data {
namespace {

/// A provider name for a message. Anything but a plain name is hidden: with a misplaced quote in the
/// connection text, any value may contain the password.
std::string shownName(const std::string& provider) {
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_.";
  const bool plain = provider.size() <= 40 && provider.find_first_not_of(kPlain) == std::string::npos;
  return plain ? " «" + provider + "»" : "";
}

}  // namespace

bool onlyReads(std::string_view statement) {
  constexpr std::string_view kSelect = "select";
  statement.remove_prefix(std::min(statement.find_first_not_of(" \t\r\n"), statement.size()));
  return text::equalsIgnoringCase(statement.substr(0, kSelect.size()), kSelect);
}

bool onlyRead(std::span<const Command> commands) {
  return std::all_of(commands.begin(), commands.end(), [](const Command& command) {
    return command.procedure != nullptr ? command.procedure->onlyReads : onlyReads(command.statement);
  });
}

Answers Connection::runTogether(std::span<const Command> commands) {
  Answers answers;
  try {
    for (const auto& [statement, procedure, values] : commands) {
      Answer answer;
      if (procedure != nullptr) answer.result = call(*procedure, values);
      if (procedure == nullptr) answer.rows = run(statement);
      answers.ran.push_back(std::move(answer));
    }
  } catch (...) {
    answers.failure = std::current_exception();
  }
  return answers;
}

void requireToTakeBack(const Operation* current, std::int64_t operation) {
  if (current != nullptr && current->takesBack == operation) return;
  throw DataError(DataError::Reason::Misuse, 0, "Can't take an operation back during another command.");
}

Rows Connection::takeBack(std::int64_t /*operation*/) {
  throw DataError(DataError::Reason::Misuse, 0, kNothingIsKept);
}

void Providers::add(std::string provider, ConnectionOpener opener) {
  for (auto& [name, known] : openers_) {
    if (!text::equalsIgnoringCase(name, provider)) continue;
    known = std::move(opener);
    return;
  }
  openers_.emplace_back(std::move(provider), std::move(opener));
}

std::unique_ptr<Connection> Providers::open(std::string_view connectionText) const {
  const ConnectionText text(connectionText);
  const std::string provider = text.provider();
  std::string known;
  for (const auto& [name, opener] : openers_) {
    if (text::equalsIgnoringCase(name, provider)) return opener(text);
    known += (known.empty() ? "" : ", ") + name;
  }
  throw DataError(DataError::Reason::Connection, 0,
                  "ارائه دهنده" + shownName(provider) +
                      " در متن اتصال شناخته نيست. يکي از اينها را بنويسيد: " + known + ".");
}

}  // namespace ledgertree::data
