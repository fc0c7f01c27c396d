#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "engines/sqlite/dialect.h"
#include "tsql/syntax.h"

namespace ledgertree::engines::sqlite {

/// Whether a comparison with this value must explicitly ignore letter case: table columns do so by
/// themselves, computed values don't.
[[nodiscard]] bool isMadeText(const tsql::Expression& value);

/// Writes one statement in SQLite's dialect.
class Writer {
 public:
  /// Call once. The translation's decisions stay empty.
  [[nodiscard]] Translation write(const tsql::Statement& statement);

 private:
  void insert(const tsql::Statement& statement);
  void update(const tsql::Statement& statement);
  void select(const tsql::Select& select, bool outermost);
  void core(const tsql::SelectCore& core, bool outermost);
  void item(const tsql::Item& item, bool outermost);
  void source(const tsql::Source& source);
  void order(const tsql::Select& select);
  void where(const tsql::ExpressionPtr& where);

  void expression(const tsql::Expression& expression);
  void condition(const tsql::Expression& condition);
  /// Writes an expression's only or first operand between two texts.
  void operand(std::string_view ahead, const tsql::Expression& whole, std::string_view behind);
  void column(const tsql::Expression& expression);
  void joined(const tsql::Expression& expression, std::string_view op);
  void arithmetic(const tsql::Expression& expression);
  void call(const tsql::Expression& expression);
  void compare(const tsql::Expression& expression);
  void compareText(const tsql::Expression& side, std::string_view op, const tsql::Expression& text);
  void number(const tsql::Expression& side, const tsql::Expression& other);
  void comparing(const tsql::Expression& value, bool texts);
  void between(const tsql::Expression& expression);
  void inList(const tsql::Expression& expression);
  void inSelect(const tsql::Expression& expression);
  void compared(const tsql::Expression& bound);
  void nested(const tsql::Select& inner);
  void literal(const tsql::Expression& expression, bool trimmed);

  void name(std::string_view name);
  template <typename Things, typename Write>
  void list(const Things& things, Write write) {
    bool first = true;
    for (const auto& thing : things) {
      if (!first) sql() += ", ";
      first = false;
      write(thing);
    }
  }
  std::string& sql() { return result_.sql; }

  Translation result_;
  /// The parameter of each literal, and of each trimmed literal; 0 if there is none yet.
  std::vector<std::size_t> numbers_;
};

}  // namespace ledgertree::engines::sqlite
