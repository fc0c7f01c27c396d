#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "ui/lookup_field.h"

namespace ledgertree::shell {

struct LookupAnswer {
  std::vector<ui::LookupRow> hits;
  std::string continuation;  ///< empty at the end
  std::size_t found = 0;     ///< rows of the piece, those that were left out among them
  bool early = false;        ///< the rest of the piece is under way
};

/// The next piece of a search in a view.
struct LookupQuestion {
  std::string view;  ///< a plain name
  data::SearchOrder order;
  std::string text;
  std::string continuation;  ///< of the piece before; empty for the first
  std::size_t limit = 0;
  std::chrono::milliseconds slice{0};  ///< see data::SearchRequest
  std::function<bool()> cancelled;
  std::vector<std::int32_t> accounts;  ///< asks for the parents of these instead, see LookupReader::parentsOf
  /// Gets the first hits where the engine has them well ahead of the others; the answer has the others then.
  std::function<void(LookupAnswer)> early{};
  /// Of the view, where they are known, see LookupReader::columnsOf: else they are asked for first.
  std::vector<std::string> columns{};
};

/// Reads rows of views for selectors and pickers over whatever connection it is given. Everything throws
/// data::DataError.
class LookupReader {
 public:
  /// What asks for the row of an ID.
  [[nodiscard]] static std::string rowStatement(std::string_view view, std::int32_t id);
  /// The row of an ID; id -1 where there is none.
  [[nodiscard]] ui::LookupRow read(data::Connection& connection, const std::string& view, std::int32_t id);
  /// The same of the rows that the statement gave.
  [[nodiscard]] ui::LookupRow readIn(const data::Rows& rows, const std::string& view);
  /// The Name of an ID; empty where there is none.
  [[nodiscard]] static std::string nameOf(data::Connection& connection, std::string_view view,
                                          std::int32_t id);
  /// The columns that a list shows, once the view was read; empty until then.
  [[nodiscard]] std::vector<std::string> columnsOf(const std::string& view) const {
    return view_ == view ? columns_ : std::vector<std::string>();
  }
  [[nodiscard]] LookupAnswer answer(data::Connection& connection, const LookupQuestion& question);
  /// The titles of the parents of accounts, each one's from the nearest on, as the text of a row with its ID.
  /// One statement.
  [[nodiscard]] static std::vector<ui::LookupRow> parentsOf(data::Connection& connection,
                                                            const std::vector<std::int32_t>& accounts);
  /// The row that the text of a question can only mean, see ui::LookupField::wishOne. It asks on until that
  /// is clear or `patience` has passed, and then only a whole code or text that it has met counts.
  [[nodiscard]] ui::LookupRow one(data::Connection& connection, LookupQuestion question, bool first,
                                  std::chrono::milliseconds patience);

 private:
  void learnColumns(const std::string& view, const data::Rows& rows);

  std::string view_;                  ///< the one that the columns are of
  std::vector<std::string> columns_;  ///< Name, and Code where there is one; empty until the view was read
};

}  // namespace ledgertree::shell
