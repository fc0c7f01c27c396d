#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "data/connection_text.h"
#include "data/data_error.h"

namespace ledgertree::fuzz {

/// Takes any text apart as a connection text, puts it together again, and expects the same. A fault throws
/// std::logic_error; whatever the text is, only a DataError may refuse it, and none may show what stood in
/// it.
inline void checkConnectionText(std::string_view text) {
  try {
    const data::ConnectionText first(text);
    std::string again;
    for (const auto& [key, value] : first.pairs()) {
      for (const char letter : key) again += letter == '=' ? "==" : std::string(1, letter);
      again += "=" + data::quoteConnectionValue(value) + ";";
    }
    const data::ConnectionText second(again);
    if (first.pairs() != second.pairs()) throw std::logic_error("a connection text that changes on its way");
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
