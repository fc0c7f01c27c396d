#pragma once

#include <benchmark/benchmark.h>

#include <chrono>

namespace ledgertree::bench {

/// Does the same work in turns, once by the product and once by hand on the bare library, so that both meet
/// the same machine, and reports the microseconds of each and their ratio. The time of the benchmark is the
/// product's.
template <typename Product, typename ByHand>
void sideBySide(benchmark::State& state, Product product, ByHand byHand) {
  using Clock = std::chrono::steady_clock;
  std::chrono::duration<double> ours{};
  std::chrono::duration<double> bare{};
  byHand();
  product();
  for (auto turn : state) {
    static_cast<void>(turn);
    const auto begin = Clock::now();
    byHand();
    const auto middle = Clock::now();
    product();
    const auto end = Clock::now();
    bare += middle - begin;
    ours += end - middle;
    state.SetIterationTime(std::chrono::duration<double>(end - middle).count());
  }
  const auto turns = static_cast<double>(state.iterations());
  state.counters["product_us"] = ours.count() / turns * 1e6;
  state.counters["bare_us"] = bare.count() / turns * 1e6;
  state.counters["ratio"] = ours.count() / bare.count();
}

}  // namespace ledgertree::bench
