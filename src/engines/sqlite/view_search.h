#pragma once

#include <sqlite3.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "engines/sqlite/watch.h"

namespace ledgertree::engines::sqlite {

/// Searches in the views of selectors and pickers. It reads the rows in their order, folds the text of each,
/// and stops at the page's last hit; nothing of the view is kept.
///
/// No index has the order of names, and what has no index is sorted as a whole for every slice. So a short
/// view is read by its names as a dictionary has them, and a long one as they are written; one that is longer
/// still, and has no index for that either, in the order of its ID.
class ViewSearch {
 public:
  enum class Order {
    Written,  ///< of the characters of the first column, letter case aside
    Names,    ///< of kPersianOrder
    Key,      ///< of ID
  };

  explicit ViewSearch(sqlite3* database) : database_(database) {}

  /// See Connection::search. The watch has the command's deadline and its cancellation.
  [[nodiscard]] data::SearchPage page(const data::SearchRequest& request, Watch& watch);

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

  Order orderOf(const data::SearchRequest& request);
  /// Whether SQLite has to sort the rows of a statement.
  bool sorts(const std::string& sql);
  bool isLonger(std::string_view view, int rows);
  Statement prepare(const std::string& sql);
  sqlite3_stmt* prepared(const std::string& sql);

  static constexpr std::size_t kMostStatements = 32;
  /// As many rows are sorted within a few slices.
  static constexpr int kLongestSorted = 20000;
  /// And as many names, whose comparison by a dictionary costs more.
  static constexpr int kMostNames = 2000;

  sqlite3* database_;
  std::map<std::string, Statement> statements_;
  std::map<std::string, Order> orders_;
  std::string folded_;
};

}  // namespace ledgertree::engines::sqlite
