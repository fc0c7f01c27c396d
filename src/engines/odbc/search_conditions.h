#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "data/search_rank.h"

namespace ledgertree::engines::odbc {

/// A name between brackets.
[[nodiscard]] std::string quotedName(std::string_view name);

/// What of a search the server can tell, as conditions in Transact-SQL. They let every hit through and hardly
/// anything else, so that hardly a row crosses the network that nobody sees; data::SearchRank has the last
/// word.
///
/// All columns are looked at as one text. Where its letters stand side by side a pattern tells it exactly.
/// Where blanks or joiners stand between them they are taken off first, but only from the rows in which
/// letters of the word stand on both sides of one: that costs much more than a pattern.
class SearchConditions {
 public:
  SearchConditions(const data::SearchRequest& request, const data::SearchRank& rank);

  /// The patterns, to stand in a "declare" ahead of the statements: "@e0 nvarchar(4000) = N'...', ...".
  [[nodiscard]] const std::string& patterns() const { return patterns_; }
  /// Every word stands somewhere.
  [[nodiscard]] std::string holds() const;
  /// A column whose beginning ranks begins with the text.
  [[nodiscard]] std::string begins() const;
  /// The same of no row that doesn't; empty where that can't be told.
  [[nodiscard]] std::string surelyBegins() const;

  /// The first column is the text as a code, or begins with it, as the collation has it, over an index. ی and
  /// ي, ک and ك are asked for both.
  [[nodiscard]] const std::string& isCode() const { return isCode_; }
  [[nodiscard]] const std::string& beginsCode() const { return beginsCode_; }

 private:
  void addPatterns(const std::string& number, std::string_view folded, std::string_view ahead);
  [[nodiscard]] std::string split(const std::string& number, const std::string& more) const;

  std::string text_;      ///< all columns
  std::string bareText_;  ///< without the commonest of what folding drops
  std::string patterns_;
  std::vector<std::string> words_;  ///< the condition for each
  std::string begins_;
  bool wholeFits_ = false;  ///< the pattern of the beginning has all letters
  std::string isCode_;
  std::string beginsCode_;
};

}  // namespace ledgertree::engines::odbc
