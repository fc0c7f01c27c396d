#pragma once

#include <sqlite3.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "data/embedded/watch.h"

namespace ledgertree::data::embedded {

/// Searches in the views of selectors and pickers. It reads the rows in their order, folds the text of each,
/// and stops at the page's last hit; nothing of the view is kept.
class ViewSearch {
 public:
  explicit ViewSearch(sqlite3* database) : database_(database) {}

  /// See Connection::search. The watch has the command's deadline and its cancellation.
  [[nodiscard]] SearchPage page(const SearchRequest& request, Watch& watch);

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  sqlite3_stmt* prepared(const std::string& sql);

  static constexpr std::size_t kMostStatements = 32;

  sqlite3* database_;
  std::map<std::string, std::unique_ptr<sqlite3_stmt, Finalize>> statements_;
  std::string folded_;
};

}  // namespace ledgertree::data::embedded
