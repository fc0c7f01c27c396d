#include "text/utf8.h"

namespace ledgertree::text {

namespace {

constexpr char32_t kReplacement = U'\uFFFD';

/// The number of bytes of the character that begins with this byte; 0 for a byte that begins none.
std::size_t sequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

char32_t decode(std::string_view bytes) {
  static constexpr unsigned kLeadMask[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  char32_t character = static_cast<unsigned char>(bytes[0]) & kLeadMask[bytes.size()];
  for (std::size_t i = 1; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if ((byte & 0xC0U) != 0x80U) return kReplacement;
    character = (character << 6U) | (byte & 0x3FU);
  }
  const bool overlong =
      (bytes.size() == 3 && character < 0x800) || (bytes.size() == 4 && character < 0x10000);
  const bool surrogate = character >= 0xD800 && character < 0xE000;
  return overlong || surrogate || character > 0x10FFFF ? kReplacement : character;
}

}  // namespace

std::u32string charactersOf(std::string_view text) {
  std::u32string characters;
  characters.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = sequenceLength(static_cast<unsigned char>(text[at]));
    const bool whole = length != 0 && at + length <= text.size();
    const char32_t character = whole ? decode(text.substr(at, length)) : kReplacement;
    characters += character;
    at += character == kReplacement && !(whole && text.substr(at, length) == "\xEF\xBF\xBD") ? 1 : length;
  }
  return characters;
}

std::string textOf(std::u32string_view characters) {
  std::string text;
  text.reserve(characters.size());
  for (const char32_t character : characters) {
    if (character < 0x80) {
      text += static_cast<char>(character);
    } else if (character < 0x800) {
      text += static_cast<char>(0xC0U | (character >> 6U));
      text += static_cast<char>(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
      text += static_cast<char>(0xE0U | (character >> 12U));
      text += static_cast<char>(0x80U | ((character >> 6U) & 0x3FU));
      text += static_cast<char>(0x80U | (character & 0x3FU));
    } else {
      text += static_cast<char>(0xF0U | (character >> 18U));
      text += static_cast<char>(0x80U | ((character >> 12U) & 0x3FU));
      text += static_cast<char>(0x80U | ((character >> 6U) & 0x3FU));
      text += static_cast<char>(0x80U | (character & 0x3FU));
    }
  }
  return text;
}

}  // namespace ledgertree::text
