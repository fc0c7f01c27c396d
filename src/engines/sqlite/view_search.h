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

/// Searches in the views of selectors and pickers: reads rows, folds the text of each, and tells hits.
///
/// Where an index has the codes, as for accounts, the hits come pass by pass, and each pass stops at the
/// page's last hit: two go to the codes that begin with the text, one to the names that do, and one goes
/// through the rest. Nothing is kept between two pages.
///
/// No index of a file may have the order of names. A page of names is gathered instead: all rows are read by
/// their ID, and the first hits in the order are kept, as many as a page takes. So nothing is sorted as a
/// whole, nothing goes stale, and a page costs one reading of the view, whatever is typed. What is gathered
/// is kept between two slices; where another search came between them, the page is begun anew.
class ViewSearch {
 public:
  explicit ViewSearch(sqlite3* database) : database_(database) {}

  /// See Connection::search. The watch has the command's deadline and its cancellation.
  [[nodiscard]] data::SearchPage page(const data::SearchRequest& request, Watch& watch);

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

  struct Call;
  class Scan;

  /// A page of names that is being gathered.
  struct Gathering {
    explicit Gathering(const data::SearchRequest& request);
    std::string given;  ///< the continuation of its last slice
    std::string view;
    std::string text;
    std::string behind;  ///< the place behind which the page begins, as a continuation has it
    Position at;
    BestRows best;
  };

  /// Reads on in a pass, and turns to another form of it where that one is better. True where the pass is
  /// over, false where the page or the slice is.
  bool readPass(Call& call, Position& position);
  /// The names that begin with the text, by their index and put in order by their codes, where the page has
  /// room for them all. False where it hasn't, or where there is no index.
  bool readFewBeside(Call& call);
  /// Shows `take` the rows whose text in a column begins so. False where it ended it, or the slice did.
  template <typename Take>
  bool walk(Call& call, const std::string& sql, int column, text::FoldedBeginning& beginning, Take take);
  void readBest(Call& call);
  /// Whether there are no more rows, by the code with which a scan ended. Throws its failure.
  bool isOver(Call& call, int result, const std::string& sql);
  /// Whether SQLite has to sort the rows of a statement.
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
