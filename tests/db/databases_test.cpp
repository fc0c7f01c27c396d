#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <random>

#include "data/account.h"
#include "data/data_error.h"
#include "engines/sqlite/embedded_connection.h"
#include "support/temporary_database.h"
#include "support/text_table.h"

namespace ledgertree::db {
namespace {

using data::Parameter;
using data::Value;

const data::Procedure* const kProcedures[] = {
    &data::procedures::spAccountInsertAccount,       &data::procedures::spAccountUpdateAccounts,
    &data::procedures::spAccountInsertRelatedObject, &data::procedures::spAccountDeleteAccount,
    &data::procedures::spTarvoHasPermission,         &data::procedures::spAccountGetCurrentUserPeriod};

/// Calls of the embedded procedures with existing and other accounts and codes, and their results, one per
/// line: to be compared with those of SQL Server.
class Record {
 public:
  explicit Record(const std::string& path) : file_(path) {
    for (const data::Procedure* procedure : kProcedures) {
      file_ << "head " << procedure->name;
      for (const auto& [name, type, width] : procedure->parameters) {
        constexpr const char* kTypes[] = {" int", " money", " datetime", " varchar("};
        file_ << (name == procedure->parameters.front().name ? " " : ", ") << name
              << kTypes[static_cast<int>(type)];
        if (width != 0) file_ << width << ")";
      }
      file_ << "\n";
    }
  }

  void run(const std::string& statement) {
    database_.execute(statement);
    file_ << "run " << statement << "\n";
  }

  void call() {
    const data::Procedure& procedure = *kProcedures[below(8) % 6];
    std::vector<Value> values;
    file_ << "call ['" << procedure.name << "'";
    for (const Parameter& parameter : procedure.parameters) {
      values.push_back(valueFor(parameter));
      const auto* amount = std::get_if<data::Money>(&values.back().variant());
      const bool number = parameter.type == data::ParameterType::Int;
      const std::string text = values.back().toText();
      file_ << ", "
            << (amount != nullptr        ? std::to_string(amount->tenThousandths())
                : values.back().isNull() ? "None"
                : number                 ? text
                                         : "'" + text + "'");
    }
    file_ << "]\ngave ";
    try {
      file_ << connection_.call(procedure, values) << "\n";
    } catch (const data::DataError& failure) {
      file_ << failure.what() << "\n";
    }
    std::string accounts = "select NoLevel";
    for (const data::AccountField& field : data::kAccountFields) accounts.append(", ").append(field.column);
    for (const std::string& query :
         {accounts + " from tblAccount order by ID",
          std::string("select AccountID, AccountGroupID, RelatedClassID, RelatedObjectID from "
                      "tblAccountRelatedObjects order by 1, 2, 3, 4")}) {
      std::string rows = database_.rows(query);
      std::replace(rows.begin(), rows.end(), '\n', ';');
      file_ << "rows " << query << "=" << rows << "\n";
    }
  }

 private:
  int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(random_); }
  Value valueFor(const Parameter& parameter) {
    const std::string_view name = parameter.name;
    if (parameter.type == data::ParameterType::DateTime) return data::DateTime{.year = 2000 + below(20)};
    if (parameter.type == data::ParameterType::Money)
      return below(4) == 0 ? Value() : Value(data::Money::fromTenThousandths(below(100000)));
    if (parameter.type == data::ParameterType::Text)
      return (below(2) == 0 ? "A" : "a") + std::to_string(below(name == "@Code" ? 12 : 9999));
    if (name == "@FormPermissionID") return 300 + below(4);
    const bool key = name.starts_with("@ID") || name == "@ParentID" || name == "@AccountID";
    return !key ? below(6) - 1 : below(9) == 0 ? 99 : below(8) == 0 ? -1 : below(12);
  }

  std::ofstream file_;
  testing::TemporaryDatabase database_;
  engines::sqlite::EmbeddedConnection connection_{database_.file().string()};
  std::mt19937 random_{7};
};

TEST(Databases, AreMadeAndBehaveAsTheirScriptsSay) {
  const testing::TemporaryFolder folder;
  const std::string path = (folder.path() / "record").string();
  {
    Record record(path);
    for (const std::string& statement : testing::linesOf("db/stories.txt", "the record"))
      record.run(statement);
    for (int round = 0; round < 700; ++round) {
      if (round == 350) record.run("insert into tblOfTheHost select max(ID) from tblAccount");
      record.call();
    }
  }
  const std::string command =
      "/usr/bin/python3 '" LEDGERTREE_DATABASES "' '" LEDGERTREE_SCRIPTS "' '" + path + "' 2>&1";
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), &pclose);
  std::string told;
  std::array<char, 4096> part{};
  while (const std::size_t count = std::fread(part.data(), 1, part.size(), pipe.get()))
    told.append(part.data(), count);
  EXPECT_TRUE(told.ends_with("\nOK\n")) << told;
}

}  // namespace
}  // namespace ledgertree::db
