#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace ledgertree::fuzz {

/// Replays a fuzzer's initial and found inputs. Returns the number of seeds.
template <typename Check>
int replay(const std::string& folder, Check check) {
  int count = 0;
  for (const auto& seed : std::filesystem::directory_iterator(LEDGERTREE_FUZZ_FOLDER "/seeds/" + folder)) {
    std::ifstream file(seed.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NO_THROW(check(text)) << seed.path();
    ++count;
  }
  return count;
}

}  // namespace ledgertree::fuzz
