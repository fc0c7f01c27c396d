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

/// The name of a view as a statement may hold it (see data::plainViewName); empty, with a notice, where it
/// says more than a name. Names of views come from rows that anybody may have written.
[[nodiscard]] std::string acceptedView(Shell& shell, std::string_view name);

/// How an ID without a row is shown: its number, and that it isn't in the list.
[[nodiscard]] std::string unlistedText(std::int32_t id);

/// Finds the rows of a view for a selector or an account picker, over a connection of its own that opens at
/// its first use.
///
/// A search runs in slices of a few milliseconds whenever the desktop is idle, and a newer one takes its
/// place, so that typing never waits. An engine that answers late is searched from a thread, over a
/// connection of the thread's own. Whoever asks only sees that rows arrive later, in both cases on the
/// user-interface thread.
///
/// Nothing here throws for the database's sake. A failure becomes one notice, the connection is dropped, and
/// the next use makes another; the same failure isn't told again before something worked or `forgive`.
class LookupSearch {
 public:
  /// Rows of the list: all of them, or, with `append`, those behind the ones shown. `more`: there are rows
  /// behind these. `searching`: more will come without being asked for. Whoever is called may destroy the
  /// search.
  using Show = std::function<void(std::vector<ui::LookupRow> rows, bool append, bool more, bool searching)>;

  /// The rows that a list shows before it is scrolled, and those that each scroll adds.
  static constexpr std::size_t kPageRows = 100;

  /// Where rows of the list belong, as the texts of rows with their IDs.
  using ShowPlaces = std::function<void(std::vector<ui::LookupRow> places)>;

  LookupSearch(Shell& shell, Show show);
  LookupSearch(const LookupSearch&) = delete;
  LookupSearch& operator=(const LookupSearch&) = delete;
  ~LookupSearch() { stop(); }

  /// Another text closes the connection.
  void setConnectionText(std::string_view text);
  /// Rows come from this view.
  void setView(std::string view);
  /// Rows come by Name, or, from a view that has one, by Code.
  void setOrder(data::SearchOrder order) { order_ = order; }
  /// The rows are accounts, and `tell` shows the parents of those that a text found; see rested().
  void tellParents(ShowPlaces tell) { showPlaces_ = std::move(tell); }
  /// Closes the connection and ends the search.
  void close();

  /// The row of an ID, by its key, at once; id -1 for 0 and below without a row. An ID of 1 or more without
  /// one, or without a view to look in, is unlisted: it stays what it is, and shows that. Where it can't be
  /// read now, the answer holds the ID alone and `unread()` is true. Either way a save writes what was there.
  [[nodiscard]] ui::LookupRow read(std::int32_t id);
  /// Adds what that will ask, for who asks ahead (see data::Ahead) on the gateway to the same database.
  void addQuestion(std::int32_t id, std::vector<data::Command>& questions) const;
  [[nodiscard]] bool unread() const { return unread_; }
  /// The Name that another view has for an ID. Empty where there is none; its failures aren't told.
  [[nodiscard]] std::string nameIn(std::string_view view, std::int32_t id);

  /// The row that a text can only mean, see ui::LookupField::wishOne: at once, in a second at most. It ends
  /// the search.
  [[nodiscard]] ui::LookupRow one(std::string text, bool first);
  /// Shows the rows that hold a text in their Name or Code; a blank one offers all.
  void search(std::string text);
  /// Shows the next rows of the search.
  void more();
  void stop();
  /// The person types no more: one question tells the parents of the hits that are shown, unless that was
  /// asked, or the search still runs. What fails then isn't told; the hits stand without them.
  void rested();
  /// The person left the field: a failure is told again.
  void forgive() { told_.clear(); }
  /// Runs a procedure when the desktop is idle, unless the search is gone by then.
  void later(std::function<void()> procedure);

 private:
  struct Run;

  [[nodiscard]] bool ready() const { return !connectionText_.empty() && !view_.empty(); }
  [[nodiscard]] data::Connection& connection();
  [[nodiscard]] ui::LookupRow readRow(std::int32_t id);
  void schedule();
  /// The first question of a text.
  [[nodiscard]] LookupQuestion question(std::string text) const;
  [[nodiscard]] LookupQuestion question(const Run& run) const;
  void advance(const std::shared_ptr<Run>& run);
  /// Has a question answered on the thread; `taken` is called here, unless the search is over by then.
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
  bool asksSecondary_ = false;  ///< the thread's connections do
  bool unread_ = false;
  std::string told_;
  std::shared_ptr<Run> run_;
  std::shared_ptr<bool> life_ = std::make_shared<bool>(true);
};

}  // namespace ledgertree::shell
