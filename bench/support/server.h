#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace ledgertree::bench {

/// Runs `work` on the server named by LEDGERTREE_BENCH_CONNECTION,
/// and returns its exit status; 2 if none is named.
inline int onServer(int (*work)(const std::string& connectionText)) {
  const char* const text = std::getenv("LEDGERTREE_BENCH_CONNECTION");
  if (text != nullptr) return work(text);
  std::fprintf(stderr, "LEDGERTREE_BENCH_CONNECTION is not set\n");
  return 2;
}

}  // namespace ledgertree::bench
