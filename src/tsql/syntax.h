#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ledgertree::tsql {

struct Select;
struct Expression;
using ExpressionPtr = std::unique_ptr<Expression>;

/// A value's type, as far as the language distinguishes: "+" joins texts and adds numbers.
enum class ValueType : std::uint8_t {
  Unknown,  ///< a column whose values may be either, or computed from one
  Number,   ///< including dates and nulls
  Text,
};

/// Anything with a value or a truth value. Its kind tells which members are used.
struct Expression {
  enum class Kind : std::uint8_t {
    Column,        ///< qualifier.name
    All,           ///< qualifier.*
    Null,          ///<
    Number,        ///< a literal; `negated` for a leading minus
    Text,          ///< a literal
    Call,          ///< name(operands)
    Arithmetic,    ///< operands joined by `op`, one of + - * / %
    Negative,      ///< - operand
    ScalarSelect,  ///< (select)
    // From here on: conditions.
    Truth,     ///< the outcome of a condition between two literals
    Compare,   ///< operands joined by `op`
    IsNull,    ///< operand is [not] null
    Between,   ///< operand [not] between operand and operand
    InList,    ///< the first operand [not] in (the others)
    InSelect,  ///< operand [not] in (select)
    Exists,    ///< exists (select)
    Not,       ///< not operand
    And,       ///< operands
    Or,        ///< operands
  };

  Kind kind = Kind::Null;
  ValueType type = ValueType::Unknown;  ///< of a value, once determined (see tellTypes)
  bool negated = false;
  bool truth = false;
  bool pinned = false;      ///< a literal kept in the text, as inside a function call
  std::size_t literal = 0;  ///< a literal's index among the statement's literals
  std::string qualifier;    ///< empty for an unqualified column or *
  std::string name;         ///< of a Column; of a Call, in lower case; a pinned literal as written
  std::string_view op;
  std::vector<ExpressionPtr> operands;
  std::unique_ptr<Select> select;

  [[nodiscard]] bool isCondition() const { return kind >= Kind::Truth; }
};

[[nodiscard]] ExpressionPtr makeExpression(Expression::Kind kind);
[[nodiscard]] ExpressionPtr makeColumn(std::string qualifier, std::string name);
[[nodiscard]] ExpressionPtr makeCompare(ExpressionPtr left, std::string_view op, ExpressionPtr right);
[[nodiscard]] ExpressionPtr clone(const Expression& original);

struct Item {
  ExpressionPtr value;
  std::string alias;
};

struct Source {
  std::string table;
  std::string alias;
  ExpressionPtr on;  ///< of an inner join; null for a comma

  /// The name that qualifies the columns.
  [[nodiscard]] const std::string& exposedName() const { return alias.empty() ? table : alias; }
};

/// One SELECT without its unions.
struct SelectCore {
  std::optional<std::string> top;  ///< the row limit, as digits
  std::vector<Item> items;
  std::vector<Source> sources;
  ExpressionPtr where;  ///< may be null
  /// A condition that doesn't depend on the row: evaluated once, and no row is read if it doesn't hold.
  ExpressionPtr gate;
};

struct OrderTerm {
  ExpressionPtr value;
  bool descending = false;
};

struct Select {
  std::vector<SelectCore> cores;   ///< one, or the parts of a union
  std::vector<bool> keepsRepeats;  ///< for each core but the first: UNION ALL
  std::vector<OrderTerm> order;
};

[[nodiscard]] SelectCore clone(const SelectCore& original);

/// A whole statement.
struct Statement {
  enum class Kind : std::uint8_t { Select, Insert, Update, Delete };
  Kind kind = Kind::Select;
  std::unique_ptr<Select> select;                  ///< of a Select, or of an Insert from one
  std::string table;                               ///< the target of the others
  std::vector<std::string> columns;                ///< of an Insert or Update
  std::vector<std::vector<ExpressionPtr>> values;  ///< rows of an Insert; one row for an Update
  ExpressionPtr where;
};

/// The names of an outer statement that a part of a statement uses.
struct OuterNames {
  std::vector<std::string> qualifiers;
  bool bareColumns = false;  ///< an unqualified column may belong to any table

  [[nodiscard]] bool uses(std::string_view qualifier) const;
};
[[nodiscard]] OuterNames outerNames(const Expression& part);

}  // namespace ledgertree::tsql
