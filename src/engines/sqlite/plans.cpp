#include "engines/sqlite/plans.h"

#include <utility>

#include "engines/sqlite/errors.h"
#include "text/characters.h"

namespace ledgertree::engines::sqlite {
namespace {

std::string_view withoutBlanksBehind(std::string_view text) {
  const std::size_t last = text.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string_view() : text.substr(0, last + 1);
}

std::string_view columnText(sqlite3_stmt* statement, int column) {
  const unsigned char* const text = sqlite3_column_text(statement, column);
  if (text == nullptr) return {};
  // Blobs are read the same way: their raw bytes.
  const int size = sqlite3_column_bytes(statement, column);
  return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(size)};
}

}  // namespace

Plan::Plan(sqlite3* database, const Translation& translation, std::string_view statement)
    : bindings_(translation.bindings) {
  sqlite3_stmt* prepared = nullptr;
  const int result =
      sqlite3_prepare_v3(database, translation.sql.data(), static_cast<int>(translation.sql.size()),
                         SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
  statement_.reset(prepared);
  if (result != SQLITE_OK) throw lastError(database, statement);
}

void Plan::bind(const std::vector<tsql::Literal>& literals) {
  sqlite3_stmt* const statement = statement_.get();
  for (std::size_t place = 0; place < bindings_.size(); ++place) {
    const Binding& binding = bindings_[place];
    const tsql::Literal& literal = literals[binding.literal];
    const int number = static_cast<int>(place) + 1;
    if (literal.kind == tsql::Literal::Kind::Integer) {
      sqlite3_bind_int64(statement, number, binding.negated ? -literal.integer : literal.integer);
    } else if (literal.kind == tsql::Literal::Kind::Decimal) {
      sqlite3_bind_double(statement, number, binding.negated ? -literal.decimal : literal.decimal);
    } else {
      const std::string plain = literal.hasQuotes ? literal.plainText() : std::string();
      std::string_view text = literal.hasQuotes ? std::string_view(plain) : literal.text;
      if (binding.trimmed) text = withoutBlanksBehind(text);
      sqlite3_bind_text64(statement, number, text.data() == nullptr ? "" : text.data(), text.size(),
                          SQLITE_TRANSIENT, SQLITE_UTF8);
    }
  }
}

void Plan::readColumns() {
  columns_ = data::Rows();
  types_.clear();
  const int count = sqlite3_column_count(statement_.get());
  for (int column = 0; column < count; ++column) {
    columns_.addColumn(sqlite3_column_name(statement_.get(), column));
    const char* const declared = sqlite3_column_decltype(statement_.get(), column);
    const std::string_view type = declared == nullptr ? "" : declared;
    types_.push_back(text::equalsIgnoringCase(type, "money")      ? Type::Money
                     : text::equalsIgnoringCase(type, "datetime") ? Type::DateTime
                                                                  : Type::Stored);
  }
}

void Plan::addCell(data::Rows& rows, int column) const {
  sqlite3_stmt* const statement = statement_.get();
  const Type type = types_[static_cast<std::size_t>(column)];
  if (type != Type::Stored) return addDeclared(rows, column, type);
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
      return rows.addInteger(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
      return rows.addDouble(sqlite3_column_double(statement, column));
    case SQLITE_NULL:
      return rows.addNull();
    default:
      return rows.addText(columnText(statement, column));
  }
}

/// Money is a whole number of ten-thousandths, a date ISO text.
/// Anything else, from another program, is returned as is.
void Plan::addDeclared(data::Rows& rows, int column, Type type) const {
  sqlite3_stmt* const statement = statement_.get();
  const int stored = sqlite3_column_type(statement, column);
  if (stored == SQLITE_INTEGER && type == Type::Money) {
    return rows.addMoney(data::Money::fromTenThousandths(sqlite3_column_int64(statement, column)));
  }
  if (stored == SQLITE_TEXT) {
    const std::string_view text = columnText(statement, column);
    const auto time = type == Type::DateTime ? data::DateTime::parse(text) : std::nullopt;
    return time ? rows.addDateTime(*time) : rows.addText(text);
  }
  if (stored == SQLITE_INTEGER) return rows.addInteger(sqlite3_column_int64(statement, column));
  if (stored == SQLITE_FLOAT) return rows.addDouble(sqlite3_column_double(statement, column));
  if (stored == SQLITE_NULL) return rows.addNull();
  rows.addText(columnText(statement, column));
}

Plan::Run::Run(std::shared_ptr<Plan> plan, const std::vector<tsql::Literal>& literals)
    : plan_(std::move(plan)) {
  plan_->inUse_ = true;
  plan_->bind(literals);
}

Plan::Run::~Run() {
  sqlite3_reset(plan_->statement_.get());
  plan_->inUse_ = false;
}

data::Rows Plan::Run::emptyRows() {
  // SQLite prepares a statement again after another program's schema change; "*" may mean other columns then.
  const int preparations = plan_->preparations();
  if (plan_->preparations_ != preparations) {
    plan_->readColumns();
    plan_->preparations_ = preparations;
  }
  return plan_->columns_;
}

void Plan::Run::addCells(data::Rows& rows) const {
  const int count = static_cast<int>(plan_->types_.size());
  rows.reserveRow();
  for (int column = 0; column < count; ++column) plan_->addCell(rows, column);
}

Plans::Plans(sqlite3* database) : database_(database), tables_(database) {
  const auto refuse = [](void* plans) {
    const Plan::Run* const run = static_cast<const Plans*>(plans)->first_;
    return run != nullptr && run->isPreparedAnew() ? 1 : 0;
  };
  sqlite3_commit_hook(database, refuse, this);
}

int Plans::firstStep(Plan::Run& run) {
  first_ = &run;
  const int result = run.step();
  first_ = nullptr;
  return result;
}

std::shared_ptr<Plan> Plans::find(std::string_view statement) {
  shape_.read(statement);
  Shape* const shape = known();
  if (shape != nullptr) {
    outcome_.clear();
    tsql::appendOutcome(shape->decisions, shape_.literals(), outcome_);
    for (const Variant& variant : shape->variants) {
      if (variant.outcome != outcome_) continue;
      if (!variant.plan->inUse()) return variant.plan;
      // The plan is in use; this run gets one of its own.
      return std::make_shared<Plan>(database_, translate(statement, tables_), statement);
    }
  }
  try {
    return prepare(statement, renew() ? nullptr : shape);
  } catch (...) {
    letGo();
    throw;
  }
}

bool Plans::renew() {
  if (!tables_.renew()) return false;
  byKey_.clear();
  shapes_.clear();
  return true;
}

Plans::Shape* Plans::known() {
  if (shapes_.empty() || shapes_.front().key != shape_.key()) {
    const auto found = byKey_.find(shape_.key());
    if (found == byKey_.end()) return nullptr;
    shapes_.splice(shapes_.begin(), shapes_, found->second);
  }
  return &shapes_.front();
}

std::shared_ptr<Plan> Plans::prepare(std::string_view statement, Shape* shape) {
  const Translation translation = translate(statement, tables_);
  auto plan = std::make_shared<Plan>(database_, translation, statement);
  Shape& place = shape != nullptr ? *shape : remember(translation);
  if (place.variants.size() == kMostVariants) place.variants.erase(place.variants.begin());
  outcome_.clear();
  tsql::appendOutcome(translation.decisions, shape_.literals(), outcome_);
  place.variants.push_back({outcome_, plan});
  return plan;
}

Plans::Shape& Plans::remember(const Translation& translation) {
  if (shapes_.size() == kMostShapes) {
    byKey_.erase(shapes_.back().key);
    shapes_.pop_back();
  }
  shapes_.push_front({std::string(shape_.key()), translation.decisions, {}});
  byKey_.emplace(shapes_.front().key, shapes_.begin());
  return shapes_.front();
}

}  // namespace ledgertree::engines::sqlite
