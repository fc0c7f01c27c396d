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

/// What a value is, as far as the language asks: "+" joins texts and adds numbers.
enum class ValueType : std::uint8_t {
  Unknown,  ///< of a column whose values may be either, and of what is made of it
  Number,   ///< dates and what has no value at all among them
  Text,
};

/// Anything with a value or a truth. Which members count is told by the kind.
struct Expression {
  enum class Kind : std::uint8_t {
    Column,        ///< qualifier.name
    All,           ///< qualifier.*
    Null,          ///<
    Number,        ///< a literal; `negated` for a minus ahead of it
    Text,          ///< a literal
    Call,          ///< name(operands)
    Arithmetic,    ///< operands joined by `sign`, one of + - * / %
    Negative,      ///< - operand
    ScalarSelect,  ///< (select)
    // From here on: conditions.
    Truth,     ///< what a condition between two literals came to
    Compare,   ///< operands joined by `sign`
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
  ValueType type = ValueType::Unknown;  ///< of a value, once it is told (see tellTypes)
  bool negated = false;
  bool truth = false;
  bool pinned = false;      ///< a literal that stays in the text, as it does inside a function call
  std::size_t literal = 0;  ///< the place of a literal among the literals of the statement
  std::string qualifier;    ///< empty for a bare column or *
  std::string name;         ///< of a Column; of a Call in small letters; a pinned literal as it is written
  std::string_view sign;
  std::vector<ExpressionPtr> operands;
  std::unique_ptr<Select> select;

  [[nodiscard]] bool isCondition() const { return kind >= Kind::Truth; }
};

[[nodiscard]] ExpressionPtr makeExpression(Expression::Kind kind);
[[nodiscard]] ExpressionPtr makeColumn(std::string qualifier, std::string name);
[[nodiscard]] ExpressionPtr makeCompare(ExpressionPtr left, std::string_view sign, ExpressionPtr right);
[[nodiscard]] ExpressionPtr clone(const Expression& original);

struct Item {
  ExpressionPtr value;
  std::string alias;
};

struct Source {
  std::string table;
  std::string alias;
  ExpressionPtr on;  ///< of an inner join; none for a comma

  /// The name under which the columns are qualified.
  [[nodiscard]] const std::string& exposedName() const { return alias.empty() ? table : alias; }
};

/// One SELECT without its unions.
struct SelectCore {
  std::optional<std::string> top;  ///< the number, as digits
  std::vector<Item> items;
  std::vector<Source> sources;
  ExpressionPtr where;  ///< may be none
  /// A condition that no row decides: it is asked once, and no row is read where it doesn't hold.
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
  std::unique_ptr<Select> select;    ///< of a Select, or of an Insert that takes its rows from one
  std::string table;                 ///< of the others
  std::vector<std::string> columns;  ///< of an Insert or Update
  std::vector<std::vector<ExpressionPtr>> values;  ///< rows of an Insert; one row for an Update
  ExpressionPtr where;
};

/// Which names of an outer statement a part of a statement uses.
struct OuterNames {
  std::vector<std::string> qualifiers;
  bool bareColumns = false;  ///< a column without a qualifier may be anybody's

  [[nodiscard]] bool uses(std::string_view qualifier) const;
};
[[nodiscard]] OuterNames outerNames(const Expression& part);

}  // namespace ledgertree::tsql
