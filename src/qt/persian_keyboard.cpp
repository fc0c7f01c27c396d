#include "qt/persian_keyboard.h"

#include <array>
#include <cctype>

namespace ledgertree::qt {

namespace {

/// The keys by their letters in the Latin layout of the United States, without and with Shift, and what the
/// two layouts put there. One line per keyboard row; the digits are left out on purpose.
struct KeyRow {
  std::string_view latin;
  std::u32string_view letters;
};

constexpr std::array<KeyRow, 8> kPersian = {{
    {"qwertyuiop[]\\", U"ضصثقفغعهخحجچ\\"},
    {"QWERTYUIOP{}|", U"\u0652\u064C\u064D\u064B\u064F\u0650\u064E\u0651][}{|"},
    {"asdfghjkl;'", U"شسیبلاتنمکگ"},
    {"ASDFGHJKL:\"", U"ؤئيإأآة»«:؛"},
    {"zxcvbnm,./", U"ظطزرذدپو./"},
    {"ZXCVBNM<>?", U"ك\u0653ژ\u0670\u200C\u0654ء><؟"},
    {"`-= ", U"\u200D-= "},
    {"~!@#$%^&*()_+", U"÷!\u066C\u066B\uFDFC\u066A×،*)(\u0640+"},
}};

// The ligatures of lam and alef are two letters each, handled below.
constexpr std::array<KeyRow, 8> kArabic = {{
    {"qwertyuiop[]\\", U"ضصثقفغعهخحجد\\"},
    {"QWERTYUIOP{}|", U"\u064E\u064B\u064F\u064C\uFEF9إ`÷×؛<>|"},
    {"asdfghjkl;'", U"شسيبلاتنمكط"},
    {"ASDFGHJKL:\"", U"\u0650\u064D][\uFEF7أ\u0640،/:\""},
    {"zxcvbnm,./", U"ئءؤر\uFEFBىةوزظ"},
    {"ZXCVBNM<>?", U"~\u0652}{\uFEF5آ',.؟"},
    {"`-= ", U"ذ-= "},
    {"~!@#$%^&*()_+", U"\u0651!@#$%^&*)(_+"},
}};

/// The Latin letters by scan code (the same on every keyboard), from `first` on.
struct ScanRow {
  unsigned first;
  std::string_view plain;
  std::string_view shifted;
};

constexpr std::array<ScanRow, 6> kScanRows = {{
    {2, "1234567890-=", "!@#$%^&*()_+"},
    {16, "qwertyuiop[]", "QWERTYUIOP{}"},
    {30, "asdfghjkl;'`", "ASDFGHJKL:\"~"},
    {43, "\\", "|"},
    {44, "zxcvbnm,./", "ZXCVBNM<>?"},
    {57, " ", " "},
}};

/// What a Latin layout would give for the key's position; 0 if that isn't known (a key made by a program, or
/// on the keypad).
char latinAtPosition(const QKeyEvent& event) {
#ifdef Q_OS_WIN
  constexpr unsigned kOffset = 0;
#else
  constexpr unsigned kOffset = 8;
#endif
  const unsigned scan = event.nativeScanCode();
  if (scan <= kOffset || event.modifiers().testFlag(Qt::KeypadModifier)) return 0;
  for (const ScanRow& row : kScanRows) {
    const unsigned index = scan - kOffset - row.first;
    if (scan - kOffset < row.first || index >= row.plain.size()) continue;
    return event.modifiers().testFlag(Qt::ShiftModifier) ? row.shifted[index] : row.plain[index];
  }
  return 0;
}

std::u32string atLatin(const std::array<KeyRow, 8>& rows, char latin) {
  for (const KeyRow& row : rows) {
    const std::size_t index = row.latin.find(latin);
    if (index == std::string_view::npos) continue;
    switch (const char32_t letter = row.letters[index]) {
      case U'\uFEFB':
        return U"لا";
      case U'\uFEF5':
        return U"لآ";
      case U'\uFEF7':
        return U"لأ";
      case U'\uFEF9':
        return U"لإ";
      default:
        return {letter};
    }
  }
  return {};
}

bool putsText(const QKeyEvent& event) {
  if (event.text().isEmpty()) return false;
  const auto modifiers =
      event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier);
  // Some keyboards report AltGr as Ctrl with Alt.
  if (modifiers != Qt::NoModifier && modifiers != (Qt::ControlModifier | Qt::AltModifier)) return false;
  const QChar first = event.text().at(0);
  return first.isPrint() || first.isSurrogate() || first.category() == QChar::Other_Format ||
         first.category() == QChar::Other_PrivateUse;
}

}  // namespace

KeyboardLayout keyboardLayoutOf(std::string_view name) {
  if (name == "00000429") return KeyboardLayout::Persian;
  if (name == "00000401") return KeyboardLayout::Arabic;
  return KeyboardLayout::Own;
}

std::u32string typedCharacters(const QKeyEvent& event, KeyboardLayout layout) {
  if (!putsText(event)) return {};
  std::u32string own = event.text().toStdU32String();
  if (layout == KeyboardLayout::Own || own.size() != 1 || own.front() < U' ' || own.front() > U'~')
    return own;
  const auto& rows = layout == KeyboardLayout::Persian ? kPersian : kArabic;
  const char typed = static_cast<char>(own.front());
  const char latin = latinAtPosition(event);
  const bool letter = std::isalpha(static_cast<unsigned char>(typed)) != 0;
  // A Persian desktop layout has marks like "[" too, on other keys: the user means those.
  if (!letter && latin != 0 && latin != typed) return own;
  if (layout == KeyboardLayout::Persian && typed == ' ' && event.modifiers().testFlag(Qt::ShiftModifier))
    return {U'\u200C'};
  const std::u32string letters = atLatin(rows, latin != 0 ? latin : typed);
  return letters.empty() ? own : letters;
}

char latinKey(const QKeyEvent& event) {
  const int key = event.key();
  if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9))
    return static_cast<char>(key);
  if (key < 0x80 || key >= 0x01000000) return 0;
  const char latin = latinAtPosition(event);
  if (latin != 0)
    return std::isalnum(static_cast<unsigned char>(latin)) != 0
               ? static_cast<char>(std::toupper(static_cast<unsigned char>(latin)))
               : char{0};
  for (const auto* rows : {&kPersian, &kArabic}) {
    for (const KeyRow& row : *rows) {
      const std::size_t found = row.letters.find(static_cast<char32_t>(key));
      if (found != std::u32string_view::npos &&
          std::isalpha(static_cast<unsigned char>(row.latin[found])) != 0)
        return static_cast<char>(std::toupper(static_cast<unsigned char>(row.latin[found])));
    }
  }
  return 0;
}

}  // namespace ledgertree::qt
