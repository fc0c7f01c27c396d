#pragma once

#include <cstdint>
#include <memory>

namespace ledgertree::data {

class MainConnection;

/// The kind of operation that a change belongs to, as stored in the chart's history
/// (tblAccountOperation.Kind). The numbers are stored in databases: append new ones at the end.
enum class OperationKind : std::int32_t {
  Other = 0,  ///< another program, or unspecified: the user is unknown
  NewAccount = 1,
  EditAccount = 2,
  DeleteAccount = 3,
  Recode = 4,
  CopyToDescendants = 5,  ///< an account's nature or type, applied to its descendants
  DeleteInBatch = 6,
  CopyPeriod = 7,
  HidePeriod = 8,
  PeriodsOfAccount = 9,
  ClassesOfAccount = 10,
  ObjectsOfAccount = 11,
  TakeBack = 12,
};

/// Who changes the chart, and in which operation. All its commands are recorded under one number.
struct Operation {
  OperationKind kind = OperationKind::Other;
  std::int32_t userID = 0;
  std::int64_t takesBack = 0;  ///< the number of the operation that is taken back; 0: none
  /// Its number in tblAccountOperation; 0 until one of its commands has changed something that is recorded.
  std::int64_t number = 0;
};

/// Message to the user for trying to take something back in a chart that keeps no history.
inline constexpr const char* kNothingIsKept =
    "سابقه حسابها در اين پايگاه داده نگهداري نميشود. از مدير پايگاه داده بخواهيد آن را با ledgertree-schema "
    "--history on روشن نمايد.";

/// Throws DataError(Misuse) unless `current` takes back `operation`.
void requireToTakeBack(const Operation* current, std::int64_t operation);

/// Why an operation can't be taken back, per account.
enum class Obstacle : std::int32_t {
  Changed = 1,       ///< a value, row or relation differs from what the operation left
  Gone = 2,          ///< the account was deleted
  There = 3,         ///< an account with its ID exists again
  ParentGone = 4,    ///< its former parent was deleted
  CodeTaken = 5,     ///< another account got the code meanwhile
  HasDocuments = 6,  ///< a document was posted to the account
  HasChildren = 7,   ///< it got children
  HasRelations = 8,  ///< it got periods, relations, classes or objects
  Renumbered = 9,    ///< another program's operation, which changed the ID
  IsCut = 10,        ///< the history of the operation was pruned; no account
  Unknown = 11,      ///< there is no such operation; no account
  Rule = 12,         ///< a rule of the database refused the account as it was
};

/// Within the block, the gateway's commands belong to one operation. A block
/// nested in another one joins the outer operation.
class OperationBlock {
 public:
  /// `connection` outlives the block.
  OperationBlock(MainConnection& connection, Operation operation);
  OperationBlock(const OperationBlock&) = delete;
  OperationBlock& operator=(const OperationBlock&) = delete;
  ~OperationBlock();
  /// The operation's number so far.
  [[nodiscard]] std::int64_t number() const;

 private:
  MainConnection& connection_;
  bool outermost_;
};

}  // namespace ledgertree::data
