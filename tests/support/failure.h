#pragma once

#include <gtest/gtest.h>

#include "data/data_error.h"

namespace ledgertree::testing {

/// The failure of `work`, which must fail.
template <typename Work>
data::DataError failureOf(const Work& work) {
  try {
    static_cast<void>(work());
  } catch (const data::DataError& error) {
    return error;
  }
  ADD_FAILURE() << "nothing failed";
  return {data::DataError::Reason::Misuse, -1, "nothing failed"};
}

}  // namespace ledgertree::testing
