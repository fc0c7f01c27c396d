#pragma once

#include <benchmark/benchmark.h>

#include <chrono>

namespace ledgertree::bench {

/// Alternates the product and the hand-written version, so that both run under the same conditions, and
/// reports the microseconds of each and their ratio. The benchmark's time is the product's. `before` restores
/// the initial state before each turn and isn't timed.
template <typename Product, typename ByHand, typename Before>
void sideBySide(benchmark::State& state, Product product, ByHand byHand, Before before) {
  using Clock = std::chrono::steady_clock;
  std::chrono::duration<double> ours{};
  std::chrono::duration<double> bare{};
  byHand();
  before();
  product();
  for (auto turn : state) {
    static_cast<void>(turn);
    const auto begin = Clock::now();
    byHand();
    bare += Clock::now() - begin;
    before();
    const auto middle = Clock::now();
    product();
    const auto taken = Clock::now() - middle;
    ours += taken;
    state.SetIterationTime(std::chrono::duration<double>(taken).count());
  }
  const auto turns = static_cast<double>(state.iterations());
  state.counters["product_us"] = ours.count() / turns * 1e6;
  state.counters["bare_us"] = bare.count() / turns * 1e6;
  state.counters["ratio"] = ours.count() / bare.count();
}

template <typename Product, typename ByHand>
void sideBySide(benchmark::State& state, Product product, ByHand byHand) {
  sideBySide(state, product, byHand, [] {});
}

}  // namespace ledgertree::bench
