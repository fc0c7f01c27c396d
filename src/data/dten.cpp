#include "data/dten.h"

#include <array>
#include <limits>

#include "data/ahead.h"
#include "data/catalogue.h"
#include "data/data_error.h"
#include "data/operation.h"

namespace ledgertree::data {
namespace {

[[noreturn]] void misuse(const std::string& handle, const std::string& fault) {
  throw DataError(DataError::Reason::Misuse, 0, handle + ": " + fault);
}

}  // namespace

void MainConnection::ConnectionString(std::string text) {
  forgetAnswers();
  connection_.reset();
  text_ = std::move(text);
  // Its number belonged to the previous database.
  if (operation_) operation_->number = 0;
}

Connection& MainConnection::port() {
  if (!connection_) {
    connection_ = make_(text_);
    if (operation_) connection_->belongTo(operation_);
  }
  return *connection_;
}

Rows MainConnection::takeBack(std::int64_t operation) {
  forgetAnswers();
  return port().takeBack(operation);
}

OperationBlock::OperationBlock(MainConnection& connection, Operation operation)
    : connection_(connection), outermost_(connection.operation_ == nullptr) {
  if (!outermost_) return;
  connection_.operation_ = std::make_shared<Operation>(operation);
  if (connection_.connection_) connection_.connection_->belongTo(connection_.operation_);
}

OperationBlock::~OperationBlock() {
  if (!outermost_) return;
  connection_.operation_ = nullptr;
  if (connection_.connection_) connection_.connection_->belongTo(nullptr);
}

std::int64_t OperationBlock::number() const {
  return connection_.operation_ ? connection_.operation_->number : 0;
}

void RecordHandle::Open(std::string_view statement) {
  if (rows_) misuse(name_, "Open on an open handle");
  rows_ = connection_.run(statement);
  row_ = 0;
}

void RecordHandle::Close() {
  requireOpen("Close");
  rows_.reset();
}

std::int32_t RecordHandle::RecordCount() const {
  requireOpen("RecordCount");
  if (rows_->count() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    misuse(name_, "more rows than a 32-bit count can hold");
  }
  return static_cast<std::int32_t>(rows_->count());
}

bool RecordHandle::Eof() const {
  requireOpen("Eof");
  return row_ >= rows_->count();
}

void RecordHandle::MoveFirst() {
  requireOpen("MoveFirst");
  row_ = 0;
}

void RecordHandle::MoveNext() {
  requireOpen("MoveNext");
  if (row_ >= rows_->count()) misuse(name_, "MoveNext past the last row");
  ++row_;
}

Value RecordHandle::Fields(std::string_view column) const {
  requireRow();
  return rows_->value(row_, Column(column));
}

std::size_t RecordHandle::Column(std::string_view column) const {
  requireOpen("Fields");
  if (const auto place = rows_->column(column)) return *place;
  std::string there;
  for (const std::string& name : rows_->columns()) there += (there.empty() ? "" : ", ") + name;
  misuse(name_, "no column " + std::string(column) + "; there are: " + there);
}

Value RecordHandle::Fields(std::size_t place) const {
  requireRow();
  return rows_->value(row_, place);
}

std::string RecordHandle::Text(std::size_t place) const {
  std::string text;
  AppendText(place, text);
  return text;
}

void RecordHandle::AppendText(std::size_t place, std::string& text) const {
  requireRow();
  const std::string_view cell = rows_->text(row_, place);
  text += cell.empty() ? rows_->value(row_, place).toText() : cell;
}

void RecordHandle::requireOpen(std::string_view operation) const {
  if (!rows_) misuse(name_, std::string(operation) + " on a closed handle");
}

void RecordHandle::requireRow() const {
  requireOpen("Fields");
  if (row_ >= rows_->count()) misuse(name_, "Fields past the last row");
}

DtEn::DtEn(MainConnection::Make make)
    : cnMainData(std::move(make)),
      rssqlAccCostCenter(cnMainData, "rssqlAccCostCenter", "select * From tblAccCostCenter"),
      rssqlBufferQuery(cnMainData, "rssqlBufferQuery", "Select * from tblAccountClass"),
      rssqlRetriveTree(cnMainData, "rssqlRetriveTree", "select * from tblUser"),
      rssqlAccPeriodSpec(cnMainData, "rssqlAccPeriodSpec", "select * from tblAccountPeriod"),
      rssqlAccountChilds(cnMainData, "rssqlAccountChilds", "Select * From tblAccountParent"),
      rssqlAccLevelCodeLength(cnMainData, "rssqlAccLevelCodeLength",
                              "Select CodeLength from tblAccLevelCodeLength"),
      rssqlAccounts(cnMainData, "rssqlAccounts", "select * from tblAccount"),
      rssqlAccGroupL(cnMainData, "rssqlAccGroupL", "select * From tblAccountGroup"),
      rssqlAccountCoddingInfo(cnMainData, "rssqlAccountCoddingInfo",
                              "select * From tblAccountRelatedObjects"),
      rssqlAccountManager(cnMainData, "rssqlAccountManager", "Select * from tblAccountClass"),
      rssqlChkChillds(cnMainData, "rssqlChkChillds", "Select * from tblAccountParent"),
      rssqlChkTrans(cnMainData, "rssqlChkTrans", "Select * from tblAccountDocumentDetail"),
      rssqlKelmoSystemConfig(cnMainData, "rssqlKelmoSystemConfig", "Select * From tblKelmoSystemConfig"),
      rssqlTarvoBasePath(cnMainData, "rssqlTarvoBasePath", "Select * From tblTarvoBasePath"),
      rssqlViewTrans(cnMainData, "rssqlViewTrans", "Select * From tblAccount"),
      rssqlvwAccount(cnMainData, "rssqlvwAccount", "Select * From vwAccount") {}

std::vector<RecordHandle*> DtEn::handles() {
  return {&rssqlAccCostCenter,      &rssqlBufferQuery,        &rssqlRetriveTree, &rssqlAccPeriodSpec,
          &rssqlAccountChilds,      &rssqlAccLevelCodeLength, &rssqlAccounts,    &rssqlAccGroupL,
          &rssqlAccountCoddingInfo, &rssqlAccountManager,     &rssqlChkChillds,  &rssqlChkTrans,
          &rssqlKelmoSystemConfig,  &rssqlTarvoBasePath,      &rssqlViewTrans,   &rssqlvwAccount};
}

std::int32_t DtEn::spTarvoHasPermission(std::int32_t userID, std::int32_t formPermissionID) {
  const std::array<Value, 2> values{userID, formPermissionID};
  return cnMainData.call(procedures::spTarvoHasPermission, values);
}

std::int32_t DtEn::spAccountGetCurrentUserPeriod(std::int32_t userID) {
  const std::array<Value, 1> values{userID};
  return cnMainData.call(procedures::spAccountGetCurrentUserPeriod, values);
}

std::int32_t DtEn::spAccountInsertAccount(const Account& account) {
  return cnMainData.call(procedures::spAccountInsertAccount, argumentsOf(account, AccountCall::Insert));
}

std::int32_t DtEn::spAccountUpdateAccounts(const Account& account) {
  return cnMainData.call(procedures::spAccountUpdateAccounts, argumentsOf(account, AccountCall::Update));
}

std::int32_t DtEn::spAccountInsertRelatedObject(std::int32_t accountID, std::int32_t accountGroupID,
                                                std::int32_t relatedClassID, std::int32_t relatedObjectID) {
  const std::array<Value, 4> values{accountID, accountGroupID, relatedClassID, relatedObjectID};
  return cnMainData.call(procedures::spAccountInsertRelatedObject, values);
}

std::int32_t DtEn::spAccountDeleteAccount(std::int32_t id) {
  const std::array<Value, 1> values{id};
  return cnMainData.call(procedures::spAccountDeleteAccount, values);
}

}  // namespace ledgertree::data
