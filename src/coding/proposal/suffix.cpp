#include "coding/proposal/suffix.h"

#include "text/characters.h"

namespace ledgertree::coding {

namespace {

/// The number at the start of a piece of a code: its digits, and its decimals.
struct LeadingNumber {
  std::string digits;
  std::string decimals;
};

/// Exponents aren't read: in a code, E is a letter like any other and ends the number.
LeadingNumber readNumber(std::string_view text) {
  LeadingNumber number;
  bool afterPoint = false;
  for (const char letter : text) {
    if (letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n') continue;
    if (letter == '.' && !afterPoint) {
      afterPoint = true;
      continue;
    }
    if (!text::isDigit(letter)) break;
    (afterPoint ? number.decimals : number.digits) += letter;
  }
  number.decimals.erase(number.decimals.find_last_not_of('0') + 1);
  return number;
}

/// Adds one in the same width: a carry out of the first digit is lost.
void raise(std::string& digits) {
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
    if (*digit != '9') {
      ++*digit;
      return;
    }
    *digit = '0';
  }
}

}  // namespace

std::string nextSuffix(std::string_view suffix) {
  LeadingNumber number = readNumber(suffix);
  raise(number.digits);
  if (number.decimals.empty()) return number.digits;
  return number.digits + "." + number.decimals;
}

std::string_view ownPart(std::string_view code, std::string_view motherCode) {
  const std::size_t mother = text::characterCount(motherCode);
  const std::size_t whole = text::characterCount(code);
  return whole > mother ? text::rightCharacters(code, whole - mother) : code;
}

}  // namespace ledgertree::coding
