#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "engines/sqlite/best_rows.h"
#include "engines/sqlite/search_position.h"
#include "engines/sqlite/watch.h"
#include "text/folded_beginning.h"

namespace ledgertree::engines::sqlite {

/// Searches the views of selectors and pickers: reads rows, folds the text of each, and finds the hits.
///
/// If an index has the codes, as for accounts, the hits come pass by pass, and each pass stops at the page's
/// last hit: two passes read the codes that begin with the text, one the names that do, and one scans the
/// rest. Nothing is kept between two pages.
///
/// No index of a file may use the order of names. A page of names is gathered instead: all rows are read by
/// ID, keeping the first hits in that order, as many as a page takes. So the whole is never sorted, nothing
/// gets stale, and a page costs one pass over the view, whatever is typed. The hits gathered are kept between
/// two slices; if another search intervenes, the page is started over.
class ViewSearch {
 public:
  explicit ViewSearch(sqlite3* database) : database_(database) {}

  /// See Connection::search. The watch holds the command's deadline and cancellation.
  [[nodiscard]] data::SearchPage page(const data::SearchRequest& request, Watch& watch);

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

  struct Call;
  class Scan;

  /// A page of names being gathered.
  struct Gathering {
    explicit Gathering(const data::SearchRequest& request);
    std::string given;  ///< its last slice's continuation
    std::string view;
    std::string text;
    std::string behind;  ///< the position after which the page begins, as in a continuation
    Position at;
    BestRows best;
  };

  /// Continues a pass, and switches to another form of it if that is better. True if the pass is finished,
  /// false if the page or the slice is.
  bool readPass(Call& call, Position& position);
  /// Reads the names that begin with the text by their index, sorted by code, if the page has room for them
  /// all. False if it hasn't, or if there is no index.
  bool readFewBeside(Call& call);
  /// Passes the rows whose text in a column begins so. False if `take` or the slice ended it.
  template <typename Take>
  bool walk(Call& call, const std::string& sql, int column, text::FoldedBeginning& beginning, Take take);
  void readBest(Call& call);
  /// Whether there are no more rows, judging by a scan's final result code. Throws its failure.
  bool isOver(Call& call, int result, const std::string& sql);
  /// Whether SQLite must sort a statement's rows.
  bool sorts(const std::string& sql);
  Statement prepare(const std::string& sql);
  sqlite3_stmt* prepared(const std::string& sql);

  static constexpr std::size_t kMostStatements = 32;

  sqlite3* database_;
  std::map<std::string, Statement> statements_;
  std::map<std::string, bool> sorts_;
  std::optional<Gathering> gathering_;
  std::uint64_t gatherings_ = 0;
};

}  // namespace ledgertree::engines::sqlite
