#include "text/fold.h"

#include <array>
#include <cstdint>

#include "text/utf8.h"

namespace ledgertree::text {
namespace {

constexpr char32_t kDropped = kNoCharacter;
constexpr char32_t kYeh = 0x06CC;
constexpr char32_t kKaf = 0x06A9;
constexpr char32_t kHeh = 0x0647;
constexpr char32_t kAlef = 0x0627;

constexpr bool within(char32_t letter, char32_t first, char32_t last) {
  return letter >= first && letter <= last;
}

/// The lower-case letter in a range where cases alternate, with
/// the upper-case letters at even or odd code points.
constexpr char32_t smallOfPair(char32_t letter, unsigned capital) {
  return letter % 2 == capital ? letter + 1 : letter;
}

constexpr char32_t foldLatin(char32_t letter) {
  if (letter == 0x00A0) return kDropped;
  if (within(letter, 0x00C0, 0x00DE) && letter != 0x00D7) return letter + 0x20;
  if (letter == 0x0130 || letter == 0x0131) return 'i';
  if (letter == 0x0178) return 0x00FF;
  if (letter == 0x017F) return 's';
  if (within(letter, 0x0139, 0x0148) || within(letter, 0x0179, 0x017E)) return smallOfPair(letter, 1);
  if (within(letter, 0x0100, 0x0137) || within(letter, 0x014A, 0x0177)) return smallOfPair(letter, 0);
  return letter;
}

constexpr char32_t foldGreek(char32_t letter) {
  if (within(letter, 0x0391, 0x03AB) && letter != 0x03A2) return letter + 0x20;
  if (within(letter, 0x0388, 0x038A)) return letter + 0x25;
  switch (letter) {
    case 0x0386:
      return 0x03AC;
    case 0x038C:
      return 0x03CC;
    case 0x038E:
    case 0x038F:
      return letter + 0x3F;
    case 0x03C2:  // a final sigma
      return 0x03C3;
    default:
      return letter;
  }
}

constexpr char32_t foldCyrillic(char32_t letter) {
  if (within(letter, 0x0400, 0x040F)) return letter + 0x50;
  if (within(letter, 0x0410, 0x042F)) return letter + 0x20;
  if (letter == 0x04C0) return 0x04CF;
  if (within(letter, 0x04C1, 0x04CE)) return smallOfPair(letter, 1);
  if (within(letter, 0x0460, 0x0481) || within(letter, 0x048A, 0x052F)) return smallOfPair(letter, 0);
  if (within(letter, 0x0531, 0x0556)) return letter + 0x30;
  return letter;
}

constexpr char32_t foldArabic(char32_t letter) {
  const bool sign = within(letter, 0x0610, 0x061A) || within(letter, 0x064B, 0x065F) || letter == 0x0670 ||
                    within(letter, 0x06D6, 0x06DC) || within(letter, 0x06DF, 0x06E4) ||
                    within(letter, 0x06E7, 0x06E8) || within(letter, 0x06EA, 0x06ED);
  if (sign || letter == 0x0640 || letter == 0x061C) return kDropped;
  if (within(letter, 0x0660, 0x0669)) return '0' + (letter - 0x0660);
  if (within(letter, 0x06F0, 0x06F9)) return '0' + (letter - 0x06F0);
  switch (letter) {
    case 0x0649:
    case 0x064A:
      return kYeh;
    case 0x0643:
    case 0x06AA:
      return kKaf;
    case 0x0629:
    case 0x06BE:
    case 0x06C0:
    case 0x06C1:
    case 0x06C2:
    case 0x06C3:
    case 0x06D5:
      return kHeh;
    case 0x0622:
    case 0x0623:
    case 0x0625:
    case 0x0671:
      return kAlef;
    default:
      return letter;
  }
}

constexpr char32_t foldTwoBytes(char32_t letter) {
  if (letter < 0x0180) return foldLatin(letter);
  if (within(letter, 0x0370, 0x03FF)) return foldGreek(letter);
  if (within(letter, 0x0400, 0x058F)) return foldCyrillic(letter);
  if (within(letter, 0x0600, 0x06FF)) return foldArabic(letter);
  return letter;
}

constexpr char32_t foldRest(char32_t letter) {
  const bool unseen = within(letter, 0x200B, 0x200F) || within(letter, 0x202A, 0x202E) || letter == 0x2060 ||
                      within(letter, 0x2066, 0x2069) || letter == 0xFEFF;
  if (unseen || isBlank(letter)) return kDropped;
  if (within(letter, 0x1E00, 0x1E95) || within(letter, 0x1EA0, 0x1EFF)) return smallOfPair(letter, 0);
  if (within(letter, 0xFF21, 0xFF3A)) return letter + 0x20;
  return letter;
}

constexpr char32_t foldAscii(char32_t letter) {
  if (isBlank(letter)) return kDropped;
  return within(letter, 'A', 'Z') ? letter + 0x20 : letter;
}

/// What a character becomes in the folded text: nothing, one byte or two.
struct Folded {
  std::array<char, 2> bytes{};
  std::uint8_t length = 0;
};

/// All characters of one or two bytes, which covers nearly all letters of a chart.
constexpr auto kShort = [] {
  std::array<Folded, 0x800> table{};
  for (char32_t letter = 0; letter < table.size(); ++letter) {
    const char32_t folded = letter < 0x80 ? foldAscii(letter) : foldTwoBytes(letter);
    Folded& entry = table[letter];
    if (folded != kDropped) U8_APPEND_UNSAFE(entry.bytes, entry.length, folded);
  }
  return table;
}();

}  // namespace

void fold(std::string_view text, std::string& folded) {
  // Folding never lengthens a letter; one spare byte, since two are copied at once.
  folded.resize(text.size() + 1);
  char* const out = folded.data();
  std::size_t length = 0;
  for (std::size_t place = 0; place < text.size();) {
    const std::size_t begin = place;
    const char32_t letter = nextCharacter(text, place);
    if (letter < kShort.size()) {
      const Folded& character = kShort[letter];
      out[length] = character.bytes[0];
      out[length + 1] = character.bytes[1];
      length += character.length;
    } else if (letter == kNoCharacter) {
      out[length++] = text[begin];
    } else if (const char32_t rest = foldRest(letter); rest != kDropped) {
      U8_APPEND_UNSAFE(out, length, rest);
    }
  }
  folded.resize(length);
}

std::string fold(std::string_view text) {
  std::string folded;
  fold(text, folded);
  return folded;
}

}  // namespace ledgertree::text
