#include "text/wide_text.h"

namespace ledgertree::text {
namespace {

void appendLetter(char32_t letter, std::string& text) {
  const auto tail = [letter, &text](unsigned shift) {
    text += static_cast<char>(0x80 | ((letter >> shift) & 0x3F));
  };
  if (letter < 0x80) {
    text += static_cast<char>(letter);
  } else if (letter < 0x800) {
    text += static_cast<char>(0xC0 | (letter >> 6));
    tail(0);
  } else if (letter < 0x10000) {
    text += static_cast<char>(0xE0 | (letter >> 12));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0 | (letter >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

constexpr bool isHigh(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool isLow(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

}  // namespace

std::u16string wideText(std::string_view text) {
  std::u16string wide;
  wide.reserve(text.size());
  appendWide(text, wide);
  return wide;
}

void appendUtf8(std::u16string_view wide, std::string& text) {
  for (std::size_t place = 0; place < wide.size(); ++place) {
    const char32_t unit = wide[place];
    if (isHigh(wide[place]) && place + 1 < wide.size() && isLow(wide[place + 1])) {
      appendLetter(((unit - 0xD7C0) << 10) | (wide[++place] & 0x3FFU), text);
    } else {
      appendLetter(isHigh(wide[place]) || isLow(wide[place]) ? 0xFFFD : unit, text);
    }
  }
}

std::string utf8Text(std::u16string_view wide) {
  std::string text;
  text.reserve(wide.size());
  appendUtf8(wide, text);
  return text;
}

}  // namespace ledgertree::text
