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
  std::size_t found = 0;     ///< rows of the piece, including those left out
  bool early = false;        ///< the rest of the piece is pending
};

/// A request for the next piece of a search in a view.
struct LookupQuestion {
  std::string view;  ///< a plain name
  data::SearchOrder order;
  std::string text;
  std::string continuation;  ///< of the previous piece; empty for the first
  std::size_t limit = 0;
  std::chrono::milliseconds slice{0};  ///< see data::SearchRequest
  std::function<bool()> cancelled;
  std::vector<std::int32_t> accounts;  ///< requests the parents of these instead, see LookupReader::parentsOf
  /// Gets the first hits if the engine has them well before the others; the answer has the rest.
  std::function<void(LookupAnswer)> early{};
  /// The view's columns if known, see LookupReader::columnsOf: otherwise they are queried first.
  std::vector<std::string> columns{};
};

/// Reads rows of views for selectors and pickers over any given
/// connection. Every operation throws data::DataError.
class LookupReader {
 public:
  /// The query for an ID's row.
  [[nodiscard]] static std::string rowStatement(std::string_view view, std::int32_t id);
  /// An ID's row; id -1 if there is none.
  [[nodiscard]] ui::LookupRow read(data::Connection& connection, const std::string& view, std::int32_t id);
  /// The same from the rows that the query returned.
  [[nodiscard]] ui::LookupRow readIn(const data::Rows& rows, const std::string& view);
  /// An ID's Name; empty if there is none.
  [[nodiscard]] static std::string nameOf(data::Connection& connection, std::string_view view,
                                          std::int32_t id);
  /// The columns that a list shows, once the view has been read; empty until then.
  [[nodiscard]] std::vector<std::string> columnsOf(const std::string& view) const {
    return view_ == view ? columns_ : std::vector<std::string>();
  }
  [[nodiscard]] LookupAnswer answer(data::Connection& connection, const LookupQuestion& question);
  /// The titles of the accounts' ancestors, nearest first, as the text
  /// of a row with each account's ID. One statement.
  [[nodiscard]] static std::vector<ui::LookupRow> parentsOf(data::Connection& connection,
                                                            const std::vector<std::int32_t>& accounts);
  /// The only row that the text of a question can mean, see ui::LookupField::wishOne. It searches on until
  /// that is clear or `patience` has passed, and then accepts only a whole code or text that it has found.
  [[nodiscard]] ui::LookupRow one(data::Connection& connection, LookupQuestion question, bool first,
                                  std::chrono::milliseconds patience);

 private:
  void learnColumns(const std::string& view, const data::Rows& rows);

  std::string view_;                  ///< the view of the columns
  std::vector<std::string> columns_;  ///< Name, and Code if there is one; empty until the view was read
};

}  // namespace ledgertree::shell
