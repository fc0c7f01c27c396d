#include "support/faulty_connection.h"

#include <utility>

#include "data/as_read.h"
#include "data/catalogue.h"
#include "data/connection_text.h"

namespace ledgertree::testing {

class FaultyConnection : public data::Connection {
 public:
  FaultyConnection(Faults& faults, std::unique_ptr<data::Connection> engine)
      : faults_(faults), engine_(std::move(engine)) {}

  std::optional<data::Rows> run(std::string_view statement) override {
    ++faults_.trips_;
    pass(std::string(statement));
    auto rows = engine_->run(statement);
    faults_.answered(std::string(statement), rows);
    return rows;
  }

  void walk(std::string_view statement, const std::function<bool(const data::Rows& row)>& visit) override {
    ++faults_.trips_;
    faults_.pass(std::string(statement));
    engine_->walk(statement, visit);
  }

  std::int32_t call(const data::Procedure& procedure, std::span<const data::Value> values) override {
    ++faults_.trips_;
    pass(std::string(procedure.name));
    const std::int32_t result = engine_->call(procedure, values);
    faults_.answered(std::string(procedure.name), std::nullopt);
    return result;
  }

  data::Answers runTogether(std::span<const data::Command> commands) override {
    ++faults_.trips_;
    std::exception_ptr failure;
    std::size_t passed = 0;
    try {
      for (; passed < commands.size(); ++passed) faults_.pass(wordsOf(commands[passed]));
    } catch (...) {
      failure = std::current_exception();
    }
    data::Answers answers = engine_->runTogether(commands.first(passed));
    for (std::size_t place = 0; place < answers.ran.size(); ++place)
      faults_.answered(wordsOf(commands[place]), answers.ran[place].rows);
    if (!answers.failure) answers.failure = failure;
    return answers;
  }

  void handOver(const data::AsRead& read) override { read_ = read; }
  void belongTo(std::shared_ptr<data::Operation> operation) override {
    engine_->belongTo(std::move(operation));
  }
  data::Rows takeBack(std::int64_t operation) override {
    faults_.pass("takeBack");
    return engine_->takeBack(operation);
  }
  void readTogether(const std::function<void()>& work) override { engine_->readTogether(work); }
  void rest() override { engine_->rest(); }
  void whileWaiting(data::Waiting waiting) override { engine_->whileWaiting(std::move(waiting)); }
  std::vector<std::string> takeNews() override { return engine_->takeNews(); }
  [[nodiscard]] bool isRemote() const override { return faults_.late || engine_->isRemote(); }

  data::SearchPage search(const data::SearchRequest& request) override {
    ++faults_.trips_;
    faults_.pass("search " + request.view);
    return engine_->search(request);
  }

 private:
  static std::string wordsOf(const data::Command& command) {
    return command.procedure != nullptr ? std::string(command.procedure->name) : command.statement;
  }
  /// A command that fails here never reaches the engine, nor does anything handed over for it.
  void pass(const std::string& command) {
    const auto read = std::exchange(read_, std::nullopt);
    faults_.pass(command);
    if (read) engine_->handOver(*read);
  }

  Faults& faults_;
  std::unique_ptr<data::Connection> engine_;
  std::optional<data::AsRead> read_;
};

void Faults::putInto(data::Providers& providers, std::string provider) {
  providers.add(std::move(provider), [this, engines = providers](const data::ConnectionText& text) {
    std::string again;
    for (const auto& [key, value] : text.pairs())
      again += key + "=" + data::quoteConnectionValue(value) + ";";
    return std::make_unique<FaultyConnection>(*this, engines.open(again));
  });
}

void Faults::failAt(int n) {
  const std::lock_guard guard(lock_);
  countdown_ = n;
}

void Faults::failWhere(std::string text, data::DataError::Reason reason) {
  const std::lock_guard guard(lock_);
  failing_ = std::move(text);
  reason_ = reason;
}

void Faults::heal() {
  const std::lock_guard guard(lock_);
  failing_.clear();
  countdown_ = failures_ = 0;
}

int Faults::failures() const {
  const std::lock_guard guard(lock_);
  return failures_;
}

std::vector<std::string> Faults::take() {
  const std::lock_guard guard(lock_);
  return std::exchange(commands_, {});
}

void Faults::pass(const std::string& command) {
  if (onCommand) onCommand(command);
  const std::lock_guard guard(lock_);
  commands_.push_back(command);
  const bool counted = countdown_ > 0 && --countdown_ == 0;
  const bool named = !failing_.empty() && command.find(failing_) != std::string::npos;
  if (!counted && !named) return;
  ++failures_;
  throw data::DataError(reason_, 10, std::string(kMessage), command);
}

}  // namespace ledgertree::testing
