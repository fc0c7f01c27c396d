#include "data/ahead.h"

#include <algorithm>
#include <utility>

#include "data/data_error.h"

namespace ledgertree::data {
namespace {

/// After such a failure, the next command would wait as long again.
bool hasLostServer(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const DataError& error) {
    return error.reason() == DataError::Reason::Connection || error.reason() == DataError::Reason::TimeOut;
  } catch (...) {
    return false;
  }
}

}  // namespace

Ahead::Ahead(MainConnection& connection, std::vector<Command> commands) : connection_(connection) {
  for (Command& command : commands) {
    const bool known = std::any_of(connection.ahead_.begin(), connection.ahead_.end(), [&](Ahead* outer) {
      return outer->find(command, State::Answered) != nullptr;
    });
    if (!known) commands_.push_back({.command = std::move(command)});
  }
  connection.ahead_.push_back(this);
}

Ahead::~Ahead() { std::erase(connection_.ahead_, this); }

Ahead::Asked* Ahead::find(const Command& command, State state) {
  while (given_ < commands_.size() && commands_[given_].state == State::Given) ++given_;
  const auto first = commands_.begin() + static_cast<std::ptrdiff_t>(given_);
  const auto found = std::find_if(first, commands_.end(), [&](const Asked& asked) {
    return asked.state == state && asked.command == command;
  });
  return found == commands_.end() ? nullptr : &*found;
}

void Ahead::send(const Asked& first) {
  std::vector<Command> packet;
  auto place = commands_.begin() + (&first - commands_.data());
  for (auto next = place; next != commands_.end() && packet.size() < kMostTogether; ++next) {
    if (next->state != State::Waiting) break;
    packet.push_back(next->command);
  }
  Answers answers = connection_.port().runTogether(packet);
  for (Answer& answer : answers.ran) {
    place->answer = std::move(answer);
    place++->state = State::Answered;
  }
  if (!answers.failure) return;
  const std::size_t failed = hasLostServer(answers.failure) ? packet.size() - answers.ran.size() : 1;
  for (std::size_t rest = 0; rest < failed; ++rest, ++place) {
    place->failure = answers.failure;
    place->state = State::Answered;
  }
}

std::optional<Answer> MainConnection::answer(const Command& command) {
  const auto give = [](Ahead::Asked& asked) {
    asked.state = Ahead::State::Given;
    if (asked.failure) std::rethrow_exception(std::exchange(asked.failure, nullptr));
    return std::move(asked.answer);
  };
  for (Ahead* const block : ahead_)
    if (auto* const asked = block->find(command, Ahead::State::Answered)) return give(*asked);
  // Outer blocks know more of what will follow.
  for (Ahead* const block : ahead_) {
    auto* const asked = block->find(command, Ahead::State::Waiting);
    if (asked == nullptr) continue;
    block->send(*asked);
    return give(*asked);
  }
  return std::nullopt;
}

void MainConnection::forgetAnswers() {
  for (Ahead* const block : ahead_)
    for (Ahead::Asked& asked : block->commands_)
      if (asked.state == Ahead::State::Answered) asked = {.command = std::move(asked.command)};
}

std::optional<Rows> MainConnection::run(std::string_view statement) {
  if (asksAhead())
    if (auto known = answer({.statement = std::string(statement)})) return std::move(known->rows);
  auto rows = port().run(statement);
  if (!rows) forgetAnswers();
  return rows;
}

std::int32_t MainConnection::call(const Procedure& procedure, std::span<const Value> values) {
  if (asksAhead())
    if (const auto known = answer({.procedure = &procedure, .values = {values.begin(), values.end()}}))
      return known->result;
  forgetAnswers();
  return port().call(procedure, values);
}

std::optional<Rows> MainConnection::askedAhead(std::string_view connectionText, std::string_view statement) {
  if (connectionText != text_ || !asksAhead()) return std::nullopt;
  auto known = answer({.statement = std::string(statement)});
  return known ? std::move(known->rows) : std::nullopt;
}

Answers MainConnection::Execute(std::span<const std::string> statements) {
  forgetAnswers();
  std::vector<Command> commands;
  commands.reserve(statements.size());
  for (const std::string& statement : statements) commands.push_back({.statement = statement});
  return port().runTogether(commands);
}

}  // namespace ledgertree::data
