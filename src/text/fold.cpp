#include "text/fold.h"

#include <array>
#include <cstdint>

#include "text/characters.h"

namespace ledgertree::text {
namespace {

constexpr char32_t kDropped = 0xFFFFFFFF;
constexpr char32_t kYeh = 0x06CC;
constexpr char32_t kKaf = 0x06A9;
constexpr char32_t kHeh = 0x0647;
constexpr char32_t kAlef = 0x0627;

constexpr bool within(char32_t letter, char32_t first, char32_t last) {
  return letter >= first && letter <= last;
}

/// The small letter in a stretch where capital and small letters alternate, the capital on the even or the
/// odd place.
constexpr char32_t smallOfPair(char32_t letter, unsigned capital) {
  return letter % 2 == capital ? letter + 1 : letter;
}

constexpr char32_t foldLatin(char32_t letter) {
  if (letter == 0x00A0) return ' ';
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
    case 0x03C2:  // a sigma at the end of a word
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

constexpr char32_t foldThreeBytes(char32_t letter) {
  const bool unseen = within(letter, 0x200B, 0x200F) || within(letter, 0x202A, 0x202E) || letter == 0x2060 ||
                      within(letter, 0x2066, 0x2069) || letter == 0xFEFF;
  if (unseen) return kDropped;
  if (within(letter, 0x1E00, 0x1E95) || within(letter, 0x1EA0, 0x1EFF)) return smallOfPair(letter, 0);
  if (within(letter, 0xFF21, 0xFF3A)) return letter + 0x20;
  return letter;
}

/// What stands for a character in the folded text: nothing, one byte or two.
struct Folded {
  std::array<char, 2> bytes{};
  std::uint8_t length = 0;
};

constexpr auto kAscii = [] {
  std::array<char, 0x80> table{};
  for (unsigned byte = 0; byte < table.size(); ++byte) {
    table[byte] = static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte + 0x20 : byte);
  }
  return table;
}();

/// Every character of two bytes, U+0080 to U+07FF, which is where nearly all letters of a chart lie.
constexpr auto kTwoBytes = [] {
  std::array<Folded, 0x800> table{};
  for (char32_t letter = 0x80; letter < table.size(); ++letter) {
    const char32_t folded = foldTwoBytes(letter);
    if (folded == kDropped) continue;
    if (folded < 0x80) {
      table[letter] = {{static_cast<char>(folded), '\0'}, 1};
    } else {
      table[letter] = {{static_cast<char>(0xC0 | (folded >> 6)), static_cast<char>(0x80 | (folded & 0x3F))},
                       2};
    }
  }
  return table;
}();

constexpr unsigned byteOf(char letter) { return static_cast<unsigned char>(letter); }

/// Folds one well-formed character of three bytes onto `out`.
char* foldThree(const char* in, char* out) {
  const char32_t letter =
      ((byteOf(in[0]) & 0x0FU) << 12) | ((byteOf(in[1]) & 0x3FU) << 6) | (byteOf(in[2]) & 0x3FU);
  const char32_t folded = foldThreeBytes(letter);
  if (folded == kDropped) return out;
  *out++ = static_cast<char>(0xE0 | (folded >> 12));
  *out++ = static_cast<char>(0x80 | ((folded >> 6) & 0x3F));
  *out++ = static_cast<char>(0x80 | (folded & 0x3F));
  return out;
}

}  // namespace

void fold(std::string_view text, std::string& folded) {
  folded.resize(text.size());
  const char* in = text.data();
  const char* const end = in + text.size();
  char* out = folded.data();
  while (in != end) {
    const unsigned lead = byteOf(*in);
    if (lead < 0x80) {
      *out++ = kAscii[lead];
      ++in;
    } else if (lead >= 0xC2 && lead < 0xE0 && end - in >= 2 && (byteOf(in[1]) & 0xC0U) == 0x80) {
      const Folded& character = kTwoBytes[((lead & 0x1FU) << 6) | (byteOf(in[1]) & 0x3FU)];
      // Two bytes always have room: the output is never ahead of the input.
      out[0] = character.bytes[0];
      out[1] = character.bytes[1];
      out += character.length;
      in += 2;
    } else {
      const std::size_t length = characterLength({in, static_cast<std::size_t>(end - in)});
      if (length == 3) {
        out = foldThree(in, out);
        in += 3;
      } else {
        for (std::size_t left = length; left != 0; --left) *out++ = *in++;
      }
    }
  }
  folded.resize(static_cast<std::size_t>(out - folded.data()));
}

std::string fold(std::string_view text) {
  std::string folded;
  fold(text, folded);
  return folded;
}

}  // namespace ledgertree::text
