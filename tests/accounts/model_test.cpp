#include "accounts/random_work.h"
#include "support/amount_of_work.h"

namespace ledgertree::testing {
namespace {

constexpr int kBlocks = 8;

/// LEDGERTREE_MODEL_SEQUENCES asks for a number of sequences; LEDGERTREE_MODEL_SEED for one of them alone.
class RandomWorkInBlocks : public RandomWork, public ::testing::WithParamInterface<int> {};

TEST_P(RandomWorkInBlocks, EndsAsTheRulesSay) {
  const int only = amountOfWork("LEDGERTREE_MODEL_SEED", -1, -1);
  const int sequences = amountOfWork("LEDGERTREE_MODEL_SEQUENCES", onServer() ? kBlocks : 160, 3000);
  for (int seed = GetParam(); seed < sequences && !HasFailure(); seed += kBlocks) {
    if (only == -1) work(static_cast<unsigned>(seed), 40);
  }
  if (only % kBlocks == GetParam()) work(static_cast<unsigned>(only), 40);
}

TEST_F(RandomWork, WhatTheViewsHideIsStoredAsWhereTheyHideNothing) {
  if (onServer()) GTEST_SKIP() << "its views belong to all the stories";
  halves_ = true;
  const auto chart = [this](unsigned seed, bool hide) {
    hide_ = hide;
    work(seed, 40);
    std::string all;
    for (const char* table : {"tblAccount", "tblAccountRelatedObjects", "tblAccountParent"})
      all += database.rows("select * from " + std::string(table) + " order by 1, 2") + "\n";
    return all;
  };
  const int sequences = amountOfWork("LEDGERTREE_HIDDEN_SEQUENCES", 4, 90);  // of about 12 edits
  for (unsigned seed = 0; seed < static_cast<unsigned>(sequences) && !HasFailure(); ++seed)
    EXPECT_EQ(chart(seed, true), chart(seed, false)) << "seed " << seed;
}

INSTANTIATE_TEST_SUITE_P(Blocks, RandomWorkInBlocks, ::testing::Range(0, kBlocks));

}  // namespace
}  // namespace ledgertree::testing
