#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "data/search_rank.h"

namespace ledgertree::engines::odbc {

/// A name in brackets.
[[nodiscard]] std::string quotedName(std::string_view name);

/// The part of a search that the server can decide, as Transact-SQL conditions. They let every hit through
/// and little else, so that few useless rows cross the network; data::SearchRank makes the final decision.
///
/// All columns are searched as one text. A word whose letters are adjacent is found by an exact pattern.
/// Blanks or joiners between its letters are removed first, which costs much more than a pattern, and so only
/// in rows where letters of the word surround one.
class SearchConditions {
 public:
  SearchConditions(const data::SearchRequest& request, const data::SearchRank& rank);

  /// The patterns, for a "declare" before the statements: "@e0 nvarchar(4000) = N'...', ...".
  [[nodiscard]] const std::string& patterns() const { return patterns_; }
  /// Every word occurs somewhere.
  [[nodiscard]] std::string holds() const;
  /// A column whose beginning counts for the rank begins with the text.
  [[nodiscard]] std::string begins() const;
  /// The same, but true for no other row; empty if that can't be decided.
  [[nodiscard]] std::string surelyBegins() const;

  /// The first column, as a code, equals the text or begins with it, in the order of the collation, using an
  /// index. Both ی and ي, ک and ك are tried.
  [[nodiscard]] const std::string& isCode() const { return isCode_; }
  [[nodiscard]] const std::string& beginsCode() const { return beginsCode_; }

 private:
  void addPatterns(const std::string& number, std::string_view folded, std::string_view ahead);
  [[nodiscard]] std::string split(const std::string& number, const std::string& more) const;

  std::string text_;      ///< all columns
  std::string bareText_;  ///< without the most common characters that folding drops
  std::string patterns_;
  std::vector<std::string> words_;  ///< a condition for each
  std::string begins_;
  bool wholeFits_ = false;  ///< the pattern of the beginning holds all letters
  std::string isCode_;
  std::string beginsCode_;
};

}  // namespace ledgertree::engines::odbc
