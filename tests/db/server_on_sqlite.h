#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/catalogue.h"
#include "data/connection.h"
#include "data/data_error.h"

namespace ledgertree::db {

using Words = std::vector<std::string>;

/// The words of a script: without comments, brackets, the name of the schema and the N of a text.
[[nodiscard]] Words wordsOf(const std::string& script);
[[nodiscard]] std::string joined(const Words& words, std::size_t from, std::size_t to);

/// A database that takes the scripts of SQL Server without a server. What they have in common with SQLite
/// runs there; what only they say (variables, the control of flow, triggers on whole statements) is carried
/// out here. It knows the words of the scripts and no others: a new one fails as an error of SQLite's syntax.
class ServerOnSqlite : public data::Connection {
 public:
  ServerOnSqlite();

  std::optional<data::Rows> run(std::string_view batch) override;
  void walk(std::string_view, const std::function<bool(const data::Rows&)>&) override {}
  data::SearchPage search(const data::SearchRequest&) override { return {}; }
  /// A failure has the number that the procedure threw, 547 for a reference, and undoes everything.
  std::int32_t call(const data::Procedure& procedure, std::span<const data::Value> values) override;
  [[nodiscard]] std::string listOf(const std::string& type);

  SQLite::Database database{":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
  std::map<std::string, std::string> heads;  ///< of a procedure or trigger, between its name and its body
  std::map<std::string, Words> bodies;
  std::vector<std::string> grants;
  std::vector<std::string> locks;
  bool locked = false;  ///< somebody else has the lock that is asked for
  /// What SQLite has to be told in other words.
  std::map<std::string, std::string> saidOtherwise;

 private:
  struct Frame {
    std::map<std::string, std::string> variables;  ///< as literals
    std::optional<data::DataError> failure;
  };
  std::size_t statement(const Words& words, std::size_t at, bool live);
  std::size_t block(const Words& words, std::size_t at, bool live);
  std::size_t guarded(const Words& words, std::size_t at, bool live);
  std::size_t create(const Words& words, std::size_t at, bool live);
  void simple(const Words& words);
  void declare(const Words& words);
  void call(const Words& words);
  void change(const Words& words);
  void transaction(const std::string& act);
  void perform(const Words& body, Frame frame);
  [[nodiscard]] std::string value(const Words& words, std::size_t from, std::size_t to);
  [[nodiscard]] std::string written(const Words& words, std::size_t from, std::size_t to) const;
  void execute(const std::string& sql);

  Frame frame_;
  int transactions_ = 0;
  std::int64_t identity_ = 0;
  int changed_ = 0;
  bool firing_ = false;
};

}  // namespace ledgertree::db
