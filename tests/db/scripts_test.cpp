#include "db/scripts.h"

#include <gtest/gtest.h>

#include <string>

namespace ledgertree::db {
namespace {

TEST(Scripts, AreCutWhereALineSaysGoAndNowhereElse) {
  const std::string script =
      "\r\n go \t\r\n"
      "print 'it''s\nGO\n'; select [a]]\nGO\nb], \"\nGO\n\" -- 'GO\n"
      "Go\n"
      "/* /* GO\nGO\n*/ 'GO\nGO\n*/ print 1\n"
      "GOTO here\nGO;\n go\n\nGO\nlast";
  std::string found;
  for (const Batch& batch : batchesOf(script)) {
    found += std::to_string(batch.line) + " " + std::to_string(batch.text.size()) + "|";
  }
  EXPECT_EQ(found, "3 52|11 47|21 4|");
  EXPECT_TRUE(batchesOf("GO\nGO").empty());
}

}  // namespace
}  // namespace ledgertree::db
