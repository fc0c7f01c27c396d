#pragma once

#include <memory>
#include <string>

#include "data/operation.h"
#include "data/rows.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// Tells the history's triggers which operation a write belongs to, through the session's context. The first
/// write of an operation sets the context in its own batch and learns the operation's number; later ones have
/// nothing to add. Does nothing if the chart keeps no history. Lives as long as the write.
class Belonging {
 public:
  /// For a command on a SQL Server session; `writes`: it changes rows.
  Belonging(Session& session, std::shared_ptr<data::Operation> operation, bool writes);

  /// Whether the write must be sent as a batch.
  [[nodiscard]] bool isTold() const { return saysWhat_ || asksNumber_; }
  /// The statements to run before the write.
  [[nodiscard]] std::string ahead();
  /// The column that holds the operation's number; empty if it isn't asked for.
  [[nodiscard]] std::string numberColumn() const;
  /// The query to run after the write; empty if the number isn't asked for.
  [[nodiscard]] std::string behind() const;
  /// Takes the number from an answer. Returns whether the answer has that column.
  bool hears(const data::Rows& rows);
  /// The statements before the write have run.
  void done();

 private:
  Session& session_;
  std::shared_ptr<data::Operation> operation_;
  bool saysWhat_;
  bool asksNumber_;
};

}  // namespace ledgertree::engines::odbc
