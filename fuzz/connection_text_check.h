#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "data/connection_text.h"
#include "data/data_error.h"

namespace ledgertree::fuzz {

/// Parses any text as a connection text, writes it back, and expects the same pairs. A fault throws
/// std::logic_error; a text may only be refused by a DataError, whose message must not quote the
/// text.
inline void checkConnectionText(std::string_view text) {
  try {
    const data::ConnectionText first(text);
    std::string again;
    for (const auto& [key, value] : first.pairs()) {
      for (const char letter : key) again += letter == '=' ? "==" : std::string(1, letter);
      again += "=" + data::quoteConnectionValue(value) + ";";
    }
    const data::ConnectionText second(again);
    if (first.pairs() != second.pairs())
      throw std::logic_error("a connection text that doesn't survive a round trip");
    for (const auto& [key, value] : first.pairs()) {
      if (!first.find(key)) throw std::logic_error("a key that isn't found");
    }
    static_cast<void>(first.provider());
  } catch (const data::DataError&) {
  }
  constexpr std::string_view kSecret = "zq7!Secret";
  try {
    const data::ConnectionText withSecret(std::string(text).append(kSecret));
    static_cast<void>(withSecret.provider());
  } catch (const data::DataError& error) {
    if (std::string_view(error.what()).find(kSecret) != std::string_view::npos) {
      throw std::logic_error("a message that shows a secret");
    }
  }
}

}  // namespace ledgertree::fuzz
