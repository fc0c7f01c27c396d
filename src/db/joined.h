#pragma once

#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace ledgertree::db {

[[nodiscard]] inline std::string joined(const std::vector<std::string>& parts, std::string_view between) {
  std::string text;
  for (const std::string& part : parts) text.append(text.empty() ? "" : between).append(part);
  return text;
}

/// A part of a statement that says the same of each column, or of whatever else `make` is given.
template <typename Columns, typename Make>
[[nodiscard]] std::string each(const Columns& columns, std::string_view between, Make make) {
  std::vector<std::string> parts;
  parts.reserve(std::size(columns));
  for (const auto& column : columns) parts.push_back(make(column));
  return joined(parts, between);
}

}  // namespace ledgertree::db
