#pragma once

#include <cstdint>
#include <memory>

namespace ledgertree::data {

class MainConnection;

/// What a change of the chart belongs to, as the memory of the chart keeps it (tblAccountOperation.Kind).
/// The numbers stand in databases: a new one comes behind the others.
enum class OperationKind : std::int32_t {
  Other = 0,  ///< another program, or nobody said: the user is unknown
  NewAccount = 1,
  EditAccount = 2,
  DeleteAccount = 3,
  Recode = 4,
  CopyToDescendants = 5,  ///< the nature or the type of an account, given to all below it
  DeleteInBatch = 6,
  CopyPeriod = 7,
  HidePeriod = 8,
  PeriodsOfAccount = 9,
  ClassesOfAccount = 10,
  ObjectsOfAccount = 11,
  TakeBack = 12,
};

/// Who changes the chart, and in the course of what. Its commands are kept under one number.
struct Operation {
  OperationKind kind = OperationKind::Other;
  std::int32_t userID = 0;
  std::int64_t takesBack = 0;  ///< the number of the operation that is taken back; 0: none
  /// Its number in tblAccountOperation; 0 until a command of it has changed something that is kept.
  std::int64_t number = 0;
};

/// What a person hears who would take something back where the chart has no memory.
inline constexpr const char* kNothingIsKept =
    "سابقه حسابها در اين پايگاه داده نگهداري نميشود. از مدير پايگاه داده بخواهيد آن را با ledgertree-schema "
    "--history on روشن نمايد.";

/// Throws DataError(Misuse) where what a connection does isn't to take this operation back.
void requireToTakeBack(const Operation* current, std::int64_t operation);

/// Why an operation can't be taken back, by account.
enum class Obstacle : std::int32_t {
  Changed = 1,       ///< another value, row or relation than the operation left
  Gone = 2,          ///< the account has no row any more
  There = 3,         ///< an account of its ID has a row again
  ParentGone = 4,    ///< the parent that it had has no row any more
  CodeTaken = 5,     ///< another account got the code meanwhile
  HasDocuments = 6,  ///< a document was posted to the account
  HasChildren = 7,   ///< accounts were put below it
  HasRelations = 8,  ///< it was given periods, relations, classes or objects
  Renumbered = 9,    ///< the operation, of another program, gave it another ID
  IsCut = 10,        ///< the memory of the operation was shortened; no account
  Unknown = 11,      ///< there is no such operation; no account
  Rule = 12,         ///< a rule of the database refused the account as it was
};

/// For the length of a block the commands of the gateway belong to one operation. Within another block of the
/// kind they belong to that: whoever begins first says what is done.
class OperationBlock {
 public:
  /// `connection` outlives the block.
  OperationBlock(MainConnection& connection, Operation operation);
  OperationBlock(const OperationBlock&) = delete;
  OperationBlock& operator=(const OperationBlock&) = delete;
  ~OperationBlock();
  /// The number so far.
  [[nodiscard]] std::int64_t number() const;

 private:
  MainConnection& connection_;
  bool outermost_;
};

}  // namespace ledgertree::data
