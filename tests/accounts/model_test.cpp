#include <cstdlib>

#include "accounts/random_work.h"

namespace ledgertree::testing {
namespace {

/// A number of the environment, for a longer run or for a seed that failed.
int environment(const char* name, int otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::atoi(text);
}

constexpr int kBlocks = 8;

/// LEDGERTREE_MODEL_SEQUENCES asks for more sequences than the 200 of every day; LEDGERTREE_MODEL_SEED for
/// one sequence alone.
class RandomWorkInBlocks : public RandomWork, public ::testing::WithParamInterface<int> {};

TEST_P(RandomWorkInBlocks, EndsAsTheRulesSay) {
  const int only = environment("LEDGERTREE_MODEL_SEED", -1);
  const int sequences = environment("LEDGERTREE_MODEL_SEQUENCES", onServer() ? kBlocks : 200);
  for (int seed = GetParam(); seed < sequences && !HasFailure(); seed += kBlocks) {
    if (only == -1) work(static_cast<unsigned>(seed), 40);
  }
  if (only % kBlocks == GetParam()) work(static_cast<unsigned>(only), 40);
}

INSTANTIATE_TEST_SUITE_P(Blocks, RandomWorkInBlocks, ::testing::Range(0, kBlocks));

}  // namespace
}  // namespace ledgertree::testing
