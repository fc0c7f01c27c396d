#include "data/rows.h"

#include <limits>
#include <stdexcept>
#include <utility>

#include "text/characters.h"

namespace ledgertree::data {
namespace {

/// FNV-1a, ignoring in every byte the bit that distinguishes the case of an ASCII letter: other names may
/// share a hash, too, and are told apart by comparing them afterwards.
std::uint32_t nameHash(std::string_view name) {
  std::uint32_t hash = 2166136261U;
  for (const char letter : name) hash = (hash ^ (static_cast<unsigned char>(letter) | 0x20U)) * 16777619U;
  return hash;
}

/// A point in time in mixed radix, so that it fits a cell's payload.
std::int64_t packed(const DateTime& time) {
  const std::int64_t days = (std::int64_t{time.year} * 13 + time.month) * 32 + time.day;
  return ((days * 24 + time.hour) * 60 + time.minute) * 60 + time.second;
}

DateTime unpacked(std::int64_t moment) {
  const auto take = [&moment](std::int64_t radix) {
    const auto digit = static_cast<int>(moment % radix);
    moment /= radix;
    return digit;
  };
  DateTime time;
  time.second = take(60);
  time.minute = take(60);
  time.hour = take(24);
  time.day = take(32);
  time.month = take(13);
  time.year = static_cast<int>(moment);
  return time;
}

}  // namespace

std::optional<std::size_t> Rows::column(std::string_view name) const {
  if (!columns_) return std::nullopt;
  const std::uint32_t hash = nameHash(name);
  for (std::size_t place = 0; place < width_; ++place) {
    if (columns_->hashes[place] == hash && text::equalsIgnoringCase(columns_->names[place], name))
      return place;
  }
  return std::nullopt;
}

Value Rows::value(std::size_t row, std::size_t column) const {
  const Cell& found = cell(row, column);
  switch (found.kind) {
    case Kind::Integer:
      return found.payload.integer;
    case Kind::Double:
      return found.payload.real;
    case Kind::Money:
      return Money::fromTenThousandths(found.payload.integer);
    case Kind::Text:
      return text(row, column);
    case Kind::DateTime:
      return unpacked(found.payload.integer);
    case Kind::Null:
      break;
  }
  return Null{};
}

std::string_view Rows::text(std::size_t row, std::size_t column) const {
  const Cell& found = cell(row, column);
  if (found.kind != Kind::Text) return {};
  return std::string_view(arena_).substr(static_cast<std::size_t>(found.payload.offset), found.length);
}

const std::vector<std::string>& Rows::columns() const {
  static const std::vector<std::string> kNone;
  return columns_ ? columns_->names : kNone;
}

void Rows::addColumn(std::string name) {
  auto columns = columns_ ? std::make_shared<Columns>(*columns_) : std::make_shared<Columns>();
  columns->hashes.push_back(nameHash(name));
  columns->names.push_back(std::move(name));
  width_ = columns->names.size();
  columns_ = std::move(columns);
}

void Rows::addDateTime(const DateTime& time) {
  if (!time.valid()) throw std::invalid_argument("an invalid date can't be stored in a cell");
  cells_.push_back({Kind::DateTime, 0, {.integer = packed(time)}});
}

void Rows::addText(std::string_view text) {
  if (text.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw std::length_error("a text of 4 GiB or more can't be stored in a cell");
  }
  cells_.push_back({Kind::Text, static_cast<std::uint32_t>(text.size()), {.offset = arena_.size()}});
  arena_.append(text);
}

void Rows::addValue(const Value& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value.variant())) return addInteger(*number);
  if (const auto* number = std::get_if<double>(&value.variant())) return addDouble(*number);
  if (const auto* amount = std::get_if<Money>(&value.variant())) return addMoney(*amount);
  if (const auto* text = std::get_if<std::string>(&value.variant())) return addText(*text);
  if (const auto* time = std::get_if<data::DateTime>(&value.variant())) return addDateTime(*time);
  addNull();
}

void Rows::clearRows() {
  cells_.clear();
  arena_.clear();
}

}  // namespace ledgertree::data
