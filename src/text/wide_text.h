#pragma once

#include <string>
#include <string_view>

namespace ledgertree::text {

/// Appends a clean text (see characters.h) as UTF-16. `Wide` is std::u16string, or whatever else takes its
/// units by
/// "+=".
template <typename Wide>
void appendWide(std::string_view text, Wide& wide) {
  for (std::size_t place = 0; place < text.size();) {
    const auto byte = [&text, place](std::size_t ahead) {
      return static_cast<char32_t>(static_cast<unsigned char>(text[place + ahead]));
    };
    const char32_t lead = byte(0);
    if (lead < 0x80) {
      wide += static_cast<char16_t>(lead);
      place += 1;
    } else if (lead < 0xE0) {
      wide += static_cast<char16_t>(((lead & 0x1F) << 6) | (byte(1) & 0x3F));
      place += 2;
    } else if (lead < 0xF0) {
      wide += static_cast<char16_t>(((lead & 0x0F) << 12) | ((byte(1) & 0x3F) << 6) | (byte(2) & 0x3F));
      place += 3;
    } else {
      const char32_t letter =
          ((lead & 0x07) << 18) | ((byte(1) & 0x3F) << 12) | ((byte(2) & 0x3F) << 6) | (byte(3) & 0x3F);
      wide += static_cast<char16_t>(0xD7C0 + (letter >> 10));
      wide += static_cast<char16_t>(0xDC00 + (letter & 0x3FF));
      place += 4;
    }
  }
}

[[nodiscard]] std::u16string wideText(std::string_view text);
/// Half of a pair of surrogates becomes U+FFFD.
void appendUtf8(std::u16string_view wide, std::string& text);
[[nodiscard]] std::string utf8Text(std::u16string_view wide);

}  // namespace ledgertree::text
