#pragma once

#include <memory>
#include <string>

#include "data/operation.h"
#include "data/rows.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// What a write belongs to, told to the triggers of the memory by the context of the session: the first write
/// of an operation says it in one batch with itself, and hears its number; the others have nothing to say.
/// Where the chart has no memory nobody says anything. It lasts as long as the write.
class Belonging {
 public:
  /// Of a command that `writes` on a session of SQL Server.
  Belonging(Session& session, std::shared_ptr<data::Operation> operation, bool writes);

  /// Whether the write has to go as a batch.
  [[nodiscard]] bool isTold() const { return saysWhat_ || asksNumber_; }
  /// Statements ahead of the write.
  [[nodiscard]] std::string ahead();
  /// What a query of its number gives, as a column; empty where nobody asks.
  [[nodiscard]] std::string numberColumn() const;
  /// The query behind the write; empty where nobody asks.
  [[nodiscard]] std::string behind() const;
  /// Takes the number out of an answer that has it in its row. Gives whether it has such a column.
  bool hears(const data::Rows& rows);
  /// What stood ahead of the write has run.
  void done();

 private:
  Session& session_;
  std::shared_ptr<data::Operation> operation_;
  bool saysWhat_;
  bool asksNumber_;
};

}  // namespace ledgertree::engines::odbc
