#include "tsql/parser.h"

#include <utility>

#include "tsql/query_parser.h"
#include "tsql/token_reader.h"

namespace ledgertree::tsql {
namespace {

class StatementParser {
 public:
  explicit StatementParser(std::string_view text) : reader_(text), queries_(reader_) {}

  ParsedStatement parse();

 private:
  void parseInsert();
  void parseUpdate();
  void parseDelete();
  std::vector<ExpressionPtr> valueRow();

  TokenReader reader_;
  QueryParser queries_;
  ParsedStatement result_;
};

ParsedStatement StatementParser::parse() {
  if (reader_.atWord("select")) {
    result_.statement.kind = Statement::Kind::Select;
    result_.statement.select = queries_.select();
  } else if (reader_.takeWord("insert")) {
    parseInsert();
  } else if (reader_.takeWord("update")) {
    parseUpdate();
  } else if (reader_.takeWord("delete")) {
    parseDelete();
  } else {
    reader_.refuseHere();
  }
  reader_.takeSymbol(";");
  if (reader_.peek().kind != Token::Kind::End) reader_.refuseHere();
  result_.literals = reader_.literals();
  result_.decisions = queries_.takeDecisions();
  return std::move(result_);
}

void StatementParser::parseInsert() {
  Statement& statement = result_.statement;
  statement.kind = Statement::Kind::Insert;
  reader_.takeWord("into");
  statement.table = reader_.tableName();
  if (reader_.atSymbol("(") && !reader_.atWord("select", 1)) {
    reader_.requireSymbol("(");
    do statement.columns.push_back(reader_.name());
    while (reader_.takeSymbol(","));
    reader_.requireSymbol(")");
  }
  if (reader_.takeWord("values")) {
    do statement.values.push_back(valueRow());
    while (reader_.takeSymbol(","));
    return;
  }
  const bool parentheses = reader_.takeSymbol("(");
  statement.select = queries_.select();
  if (parentheses) reader_.requireSymbol(")");
}

std::vector<ExpressionPtr> StatementParser::valueRow() {
  std::vector<ExpressionPtr> row;
  reader_.requireSymbol("(");
  do row.push_back(queries_.value());
  while (reader_.takeSymbol(","));
  reader_.requireSymbol(")");
  return row;
}

void StatementParser::parseUpdate() {
  Statement& statement = result_.statement;
  statement.kind = Statement::Kind::Update;
  statement.table = reader_.tableName();
  reader_.requireWord("set");
  statement.values.emplace_back();
  do {
    statement.columns.push_back(reader_.name());
    reader_.requireSymbol("=");
    statement.values.front().push_back(queries_.value());
  } while (reader_.takeSymbol(","));
  statement.where = queries_.where();
}

void StatementParser::parseDelete() {
  Statement& statement = result_.statement;
  statement.kind = Statement::Kind::Delete;
  reader_.takeWord("from");
  statement.table = reader_.tableName();
  statement.where = queries_.where();
}

}  // namespace

ParsedStatement parseStatement(std::string_view text) { return StatementParser(text).parse(); }

}  // namespace ledgertree::tsql
