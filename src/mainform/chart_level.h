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

/// The parts of a tree node's key. -1 as the period means all periods, -1 as the account none.
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
/// Splits at the first colon; nothing for a key without one. Each side is read by its leading number, a blank
/// one as -1. Throws std::range_error for a number beyond 32 bits.
[[nodiscard]] std::optional<NodeKey> parseNodeKey(std::string_view key);

/// The image of the root and of a period.
inline constexpr int kRootImage = 1;
/// The separator in an account's label between its code and its title.
inline constexpr std::string_view kBehindCode = " ... ";

/// A column of whole numbers, in ascending order.
[[nodiscard]] std::vector<std::int32_t> sortedNumbers(data::RecordHandle& handle,
                                                      const std::string& statement, std::string_view column);

/// The query for the number of a node's children, as `cnt`.
[[nodiscard]] std::string childCountStatement(const NodeKey& key);

/// The children of a node: the accounts below one, those at the top of a period or of the chart, or, below
/// the root of the view by periods, the periods. Takes two statements whatever its size, through the handles
/// rssqlAccCostCenter (its rows, which it iterates) and rssqlAccountChilds (which of them have children).
/// Throws data::DataError.
class ChartLevel {
 public:
  /// `ofPeriods`: the periods are below the root.
  ChartLevel(data::DtEn& gateway, const NodeKey& parent, bool ofPeriods);
  /// The queries that this makes, to be sent ahead (see data::Ahead).
  [[nodiscard]] static std::vector<data::Command> questions(const NodeKey& parent, bool ofPeriods);

  /// False for periods.
  [[nodiscard]] bool ofAccounts() const { return !periods_; }
  [[nodiscard]] std::size_t count() const { return static_cast<std::size_t>(rows_->RecordCount()); }
  [[nodiscard]] bool atEnd() const { return rows_->Eof(); }
  void next() { rows_->MoveNext(); }
  void begin() { rows_->MoveFirst(); }
  /// Ends the iteration for good, and releases the handles.
  void close() { rows_.close(); }

  // The current row.
  [[nodiscard]] NodeKey key() const;
  [[nodiscard]] bool hasChildren() const;
  /// One for each nature, open and closed.
  [[nodiscard]] int image() const;
  /// The code without that many leading characters.
  [[nodiscard]] std::string label(std::size_t cut) const;
  /// The length of its whole code, in characters.
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
