#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/account.h"
#include "data/connection.h"
#include "data/packet.h"
#include "data/rows.h"
#include "data/value.h"

namespace ledgertree::data {

class Ahead;
struct Operation;

/// The gateway's connection: a connection text, and a Connection for it that opens at the first command. An
/// invalid text fails each command again; the failed attempt isn't remembered.
class MainConnection {
 public:
  /// Creates a connection for a connection text, without opening it.
  using Make = std::function<std::unique_ptr<Connection>(std::string_view text)>;
  explicit MainConnection(Make make) : make_(std::move(make)) {}

  [[nodiscard]] const std::string& ConnectionString() const { return text_; }
  /// Takes effect at the next command: an open connection is closed. Rows in a handle stay readable.
  void ConnectionString(std::string text);
  /// Runs a statement and ignores its rows.
  void Execute(std::string_view statement) { static_cast<void>(run(statement)); }
  /// Runs writing statements in order up to the first that fails, in one packet on a remote connection.
  /// Throws nothing on behalf of the statements.
  [[nodiscard]] Answers Execute(std::span<const std::string> statements);
  /// How many statements of a long series to execute per packet.
  [[nodiscard]] std::size_t together() { return port().isRemote() ? kMostTogether : 1; }

  // For the handles and procedures of DtEn: served from announced commands where possible.
  [[nodiscard]] std::optional<Rows> run(std::string_view statement);
  [[nodiscard]] std::int32_t call(const Procedure& procedure, std::span<const Value> values);
  /// For a selector with its own connection: the rows of a statement that an Ahead block on the same database
  /// has announced; nothing otherwise, and the selector asks itself. `connectionText` is the selector's.
  [[nodiscard]] std::optional<Rows> askedAhead(std::string_view connectionText, std::string_view statement);
  /// What the next command is checked against; see Connection::handOver.
  void handOver(const AsRead& read) { port().handOver(read); }

  /// The underlying connection, opened if necessary. For walks over many rows.
  [[nodiscard]] Connection& port();

  /// As Connection::takeBack; discards announced answers.
  [[nodiscard]] Rows takeBack(std::int64_t operation);

 private:
  friend class Ahead;
  friend class OperationBlock;

  [[nodiscard]] bool asksAhead() { return !ahead_.empty() && port().isRemote(); }
  [[nodiscard]] std::optional<Answer> answer(const Command& command);
  void forgetAnswers();

  Make make_;
  std::string text_;
  std::unique_ptr<Connection> connection_;
  std::shared_ptr<Operation> operation_;  ///< the operation that commands belong to; null: none
  std::vector<Ahead*> ahead_;             ///< the active blocks, innermost last
};

/// A named recordset handle: one object for the lifetime of its DtEn, with one cursor.
///
/// States: a handle starts closed; Open with a statement that returns rows opens it, on the first row or,
/// if there is none, past the last; MoveNext advances until Eof. Open with a statement that returns no
/// rows leaves it closed. Open reads all rows, so RecordCount is exact at once and the handle holds no
/// lock.
///
/// Misuse throws DataError(Reason::Misuse) naming the handle: Open on an open handle; Close, RecordCount, Eof
/// or a move on a closed one; Fields when not on a row; MoveNext past the last row. MoveFirst without rows
/// stays past the end. A failed Open leaves the handle closed.
class RecordHandle {
 public:
  RecordHandle(MainConnection& connection, std::string name, std::string declaredStatement)
      : connection_(connection), name_(std::move(name)), source_(std::move(declaredStatement)) {}
  RecordHandle(const RecordHandle&) = delete;
  RecordHandle& operator=(const RecordHandle&) = delete;

  /// The statement for the next Open() without an argument.
  void Source(std::string statement) { source_ = std::move(statement); }
  void Open() { Open(std::string_view(source_)); }
  void Open(std::string_view statement);
  void Close();
  /// 0 closed, 1 open.
  [[nodiscard]] int State() const { return rows_ ? 1 : 0; }
  [[nodiscard]] std::int32_t RecordCount() const;
  /// True past the last row.
  [[nodiscard]] bool Eof() const;
  void MoveFirst();
  void MoveNext();
  /// The value of a column in the current row, by name in any letter case. An unknown name throws an error
  /// that names it, the handle and the available columns.
  [[nodiscard]] Value Fields(std::string_view column) const;
  /// For walks over many rows, which look up each column once: the index of a column, its value in the
  /// current row, and that as text, or appended to one.
  [[nodiscard]] std::size_t Column(std::string_view column) const;
  [[nodiscard]] Value Fields(std::size_t place) const;
  [[nodiscard]] std::string Text(std::size_t place) const;
  void AppendText(std::size_t place, std::string& text) const;

  [[nodiscard]] const std::string& name() const { return name_; }

 private:
  void requireOpen(std::string_view operation) const;
  void requireRow() const;

  MainConnection& connection_;
  std::string name_;
  std::string source_;
  std::optional<Rows> rows_;
  std::size_t row_ = 0;
};

/// Opens a handle for the length of a block, and closes it however the block is left.
class OpenRows {
 public:
  OpenRows(RecordHandle& handle, std::string_view statement) : handle_(handle) { handle_.Open(statement); }
  /// Opens the handle's Source statement.
  explicit OpenRows(RecordHandle& handle) : handle_(handle) { handle_.Open(); }
  OpenRows(const OpenRows&) = delete;
  OpenRows& operator=(const OpenRows&) = delete;
  ~OpenRows() { close(); }

  /// Closes before the end of the block; calling it again does nothing.
  void close() {
    if (handle_.State() != 0) handle_.Close();
  }
  RecordHandle* operator->() const { return &handle_; }
  RecordHandle& operator*() const { return handle_; }

 private:
  RecordHandle& handle_;
};

/// The single gateway to the database. Every screen uses it; only
/// selectors and pickers have their own connections.
///
/// It throws what its Connection throws, and handles no failures itself. Hold it by
/// std::shared_ptr, so that a gateway replaced in the middle of an operation lives until the
/// operation ends.
///
/// One handle per text command of the catalogue; each one's use is beside it. The statements they are
/// declared with are never opened.
class DtEn {
 public:
  explicit DtEn(MainConnection::Make make);
  /// `providers` outlives the gateway.
  explicit DtEn(const Providers& providers)
      : DtEn([&providers](std::string_view text) { return providers.open(text); }) {}
  DtEn(const DtEn&) = delete;
  DtEn& operator=(const DtEn&) = delete;

  MainConnection cnMainData;

  RecordHandle rssqlAccCostCenter;       ///< the general handle of the forms: tree, periods, classes
  RecordHandle rssqlBufferQuery;         ///< small reads of the main form
  RecordHandle rssqlRetriveTree;         ///< the deletion of the shown account
  RecordHandle rssqlAccPeriodSpec;       ///< the current period
  RecordHandle rssqlAccountChilds;       ///< which nodes of the tree have children
  RecordHandle rssqlAccLevelCodeLength;  ///< the code of a parent, for a tree label
  RecordHandle rssqlAccounts;            ///< walks over accounts: batch deletion, recoding
  RecordHandle rssqlAccGroupL;           ///< look-ups while another handle walks
  RecordHandle rssqlAccountCoddingInfo;  ///< the duplicate tests of the save
  RecordHandle rssqlAccountManager;      ///< the row of one class
  RecordHandle rssqlChkChillds;          ///< is the chosen parent below the account
  RecordHandle rssqlChkTrans;            ///< does the chosen parent have movement
  RecordHandle rssqlKelmoSystemConfig;   ///< the parameters
  RecordHandle rssqlTarvoBasePath;       ///< the base path; class and object rows
  RecordHandle rssqlViewTrans;           ///< the document test of batch deletion
  RecordHandle rssqlvwAccount;           ///< one account and its related object

  /// All handles, for a test that checks that they are closed.
  [[nodiscard]] std::vector<RecordHandle*> handles();

  /// Not 0: permitted. 0: refused.
  std::int32_t spTarvoHasPermission(std::int32_t userID, std::int32_t formPermissionID);
  /// The ID of the user's current period in tblAccountPeriod.
  std::int32_t spAccountGetCurrentUserPeriod(std::int32_t userID);

  /// The new account's ID, 1 or more. Below 1: nothing was inserted, because the code exists. The given
  /// account's own ID is ignored.
  std::int32_t spAccountInsertAccount(const Account& account);
  /// Not 0: done. 0: nothing changed, because another account has the code. The creation date stays.
  std::int32_t spAccountUpdateAccounts(const Account& account);
  /// Replaces the account's relation by the one given; -1 means none.
  std::int32_t spAccountInsertRelatedObject(std::int32_t accountID, std::int32_t accountGroupID,
                                            std::int32_t relatedClassID, std::int32_t relatedObjectID);
  /// Not 0: deleted. 0: refused because of a dependency.
  std::int32_t spAccountDeleteAccount(std::int32_t id);
};

}  // namespace ledgertree::data
