#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/ahead.h"
#include "data/dten.h"
#include "data/packet.h"

namespace ledgertree::mainform {

/// What the key of a tree node says. -1 as the period stands for all periods, -1 as the account for none.
struct NodeKey {
  std::int32_t period = -1;
  std::int32_t account = -1;
  auto operator<=>(const NodeKey&) const = default;  // NOLINT(modernize-use-nullptr)
};

/// "period:account".
[[nodiscard]] std::string makeNodeKey(std::int32_t period, std::int32_t account);
[[nodiscard]] inline std::string makeNodeKey(const NodeKey& key) {
  return makeNodeKey(key.period, key.account);
}
/// Splits at the first colon; nothing for a key without one. Each side counts by its leading number, a blank
/// one as -1. Throws std::range_error for a number past 32 bits.
[[nodiscard]] std::optional<NodeKey> parseNodeKey(std::string_view key);

/// The image of the root and of a period.
inline constexpr int kRootImage = 1;
/// What stands in the label of an account between its code and its title.
inline constexpr std::string_view kBehindCode = " ... ";

/// A column of whole numbers, in ascending order.
[[nodiscard]] std::vector<std::int32_t> sortedNumbers(data::RecordHandle& handle,
                                                      const std::string& statement, std::string_view column);

/// What asks for the number of a node's children, as `cnt`.
[[nodiscard]] std::string childCountStatement(const NodeKey& key);

/// The children of a node: the accounts below one, at the top of a period or of the chart, or, below the root
/// of the view by periods, the periods. Two statements whatever its size, through the handles
/// rssqlAccCostCenter (its rows, which it walks) and rssqlAccountChilds (which of them have children). Throws
/// data::DataError.
class ChartLevel {
 public:
  /// `ofPeriods`: below the root stand the periods.
  ChartLevel(data::DtEn& gateway, const NodeKey& parent, bool ofPeriods);
  /// What that asks, for who asks ahead (see data::Ahead).
  [[nodiscard]] static std::vector<data::Command> questions(const NodeKey& parent, bool ofPeriods);

  /// False for periods.
  [[nodiscard]] bool ofAccounts() const { return !periods_; }
  [[nodiscard]] std::size_t count() const { return static_cast<std::size_t>(rows_->RecordCount()); }
  [[nodiscard]] bool atEnd() const { return rows_->Eof(); }
  void next() { rows_->MoveNext(); }
  void begin() { rows_->MoveFirst(); }
  /// Ends the walk for good, and gives the handles back.
  void close() { rows_.close(); }

  // Of the row where it stands.
  [[nodiscard]] NodeKey key() const;
  [[nodiscard]] bool hasChildren() const;
  /// One for each nature, open and closed.
  [[nodiscard]] int image() const;
  /// With the code less as many characters ahead.
  [[nodiscard]] std::string label(std::size_t cut) const;
  /// The characters of its whole code.
  [[nodiscard]] std::size_t codeLength() const;

 private:
  ChartLevel(data::DtEn& gateway, const NodeKey& parent, bool periods, const data::Ahead& meanwhile);
  [[nodiscard]] std::int32_t id() const { return rows_->Fields(id_).toInt32(); }

  NodeKey parent_;
  bool periods_;
  data::OpenRows rows_;
  std::vector<std::int32_t> withChildren_;  ///< in ascending order
  std::size_t id_;
  std::size_t title_;
  std::size_t isClosed_ = 0;
  std::size_t nature_ = 0;
  std::size_t code_ = 0;
};

}  // namespace ledgertree::mainform
