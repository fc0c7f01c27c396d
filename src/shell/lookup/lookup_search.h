#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "shell/lookup/lookup_reader.h"
#include "shell/lookup/lookup_thread.h"
#include "shell/shell.h"
#include "ui/lookup_field.h"

namespace ledgertree::shell {

/// The name of a view, fit for a statement (see data::plainViewName); empty, with a notice, if it is more
/// than a name. View names come from rows that anybody may have written.
[[nodiscard]] std::string acceptedView(Shell& shell, std::string_view name);

/// The text for an ID without a row: its number, and that it isn't in the list.
[[nodiscard]] std::string unlistedText(std::int32_t id);

/// Searches a view for a selector or an account picker, over its own connection that opens on first
/// use.
///
/// A search runs in slices of a few milliseconds when the desktop is idle, and is replaced by a
/// newer one, so that typing never waits. On a remote engine it runs on a thread with its own
/// connection. Either way, the caller just sees rows arrive later, on the user-interface
/// thread.
///
/// Database failures aren't thrown. A failure becomes one notice, the connection is dropped, and the next use
/// makes another; the same failure isn't reported again until something has worked or `forgive` was called.
class LookupSearch {
 public:
  /// Rows of the list: all of them, or, with `append`, those after the rows shown. `more`: there
  /// are further rows. `searching`: more will come without a request. The callee may destroy the
  /// search.
  using Show = std::function<void(std::vector<ui::LookupRow> rows, bool append, bool more, bool searching)>;

  /// The rows that a list shows at first, and that each scroll adds.
  static constexpr std::size_t kPageRows = 100;

  /// The parents of listed rows, as the texts of rows with their IDs.
  using ShowPlaces = std::function<void(std::vector<ui::LookupRow> places)>;

  LookupSearch(Shell& shell, Show show);
  LookupSearch(const LookupSearch&) = delete;
  LookupSearch& operator=(const LookupSearch&) = delete;
  ~LookupSearch() { stop(); }

  /// Changing the text closes the connection.
  void setConnectionText(std::string_view text);
  /// Sets the view to search.
  void setView(std::string view);
  /// Sorts rows by Name, or by Code if the view has one.
  void setOrder(data::SearchOrder order) { order_ = order; }
  /// The rows are accounts, and `tell` gets the parents of those found by a text; see rested().
  void tellParents(ShowPlaces tell) { showPlaces_ = std::move(tell); }
  /// Closes the connection and ends the search.
  void close();

  /// Reads an ID's row by key, at once; id -1 for 0 and below without a row. An ID of 1 or more without one,
  /// or without a view to search, is unlisted: it is kept, and shown as such. If it can't be read now, the
  /// result holds just the ID and `unread()` is true. Either way a save writes what was there.
  [[nodiscard]] ui::LookupRow read(std::int32_t id);
  /// Adds the queries of read(), for announcing them (see data::Ahead) on the gateway to the same database.
  void addQuestion(std::int32_t id, std::vector<data::Command>& questions) const;
  [[nodiscard]] bool unread() const { return unread_; }
  /// An ID's Name in another view. Empty if there is none; failures aren't reported.
  [[nodiscard]] std::string nameIn(std::string_view view, std::int32_t id);

  /// The only row that a text can mean, see ui::LookupField::wishOne:
  /// synchronously, within a second. Ends the search.
  [[nodiscard]] ui::LookupRow one(std::string text, bool first);
  /// Shows the rows whose Name or Code contains a text; a blank one shows all.
  void search(std::string text);
  /// Shows the next rows of the search.
  void more();
  void stop();
  /// The user has stopped typing: one query gets the parents of the hits shown, unless that was done, or the
  /// search still runs. Its failures aren't reported; the hits stay without parents.
  void rested();
  /// The user left the field: failures are reported again.
  void forgive() { told_.clear(); }
  /// Runs a procedure when the desktop is idle, unless the search is gone by then.
  void later(std::function<void()> procedure);

 private:
  struct Run;

  [[nodiscard]] bool ready() const { return !connectionText_.empty() && !view_.empty(); }
  [[nodiscard]] data::Connection& connection();
  [[nodiscard]] ui::LookupRow readRow(std::int32_t id);
  void schedule();
  /// The first question for a text.
  [[nodiscard]] LookupQuestion question(std::string text) const;
  [[nodiscard]] LookupQuestion question(const Run& run) const;
  void advance(const std::shared_ptr<Run>& run);
  /// Sends a question to the thread; `taken` is called here, unless the search has ended by then.
  using Answered = void (LookupSearch::*)(Run& run, LookupAnswer answer, const std::exception_ptr& failure);
  void ask(const std::shared_ptr<Run>& run, LookupQuestion question, Answered taken);
  void answered(Run& run, LookupAnswer answer, const std::exception_ptr& failure);
  void parentsAnswered(Run& run, LookupAnswer answer, const std::exception_ptr& failure);
  void take(Run& run, LookupAnswer answer);
  void fail(const std::exception& failure);
  void failed(const std::exception& failure);

  Shell& shell_;
  Show show_;
  ShowPlaces showPlaces_;
  std::string connectionText_;
  std::string view_;
  data::SearchOrder order_ = data::SearchOrder::Name;
  LookupReader reader_;
  std::unique_ptr<data::Connection> connection_;
  std::optional<LookupThread> thread_;
  bool asksSecondary_ = false;  ///< by the thread's connections
  bool unread_ = false;
  std::string told_;
  std::shared_ptr<Run> run_;
  std::shared_ptr<bool> life_ = std::make_shared<bool>(true);
};

}  // namespace ledgertree::shell
