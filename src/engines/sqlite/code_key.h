#pragma once

#include <string>

namespace ledgertree::engines::sqlite {

/// The key by which codes are equal; the expression of ixAccountKey, letter by letter.
inline std::string keyOf(const std::string& code) {
  return "replace(replace(rtrim(" + code + "), 'ی', 'ي'), 'ک', 'ك') collate nocase";
}

}  // namespace ledgertree::engines::sqlite
