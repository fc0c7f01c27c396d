#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace ledgertree::bench {

/// Runs `work` on the server that LEDGERTREE_BENCH_CONNECTION names, and gives its exit status; 2 without
/// one.
inline int onServer(int (*work)(const std::string& connectionText)) {
  const char* const text = std::getenv("LEDGERTREE_BENCH_CONNECTION");
  if (text != nullptr) return work(text);
  std::fprintf(stderr, "LEDGERTREE_BENCH_CONNECTION names no server\n");
  return 2;
}

}  // namespace ledgertree::bench
