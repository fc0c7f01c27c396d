#include "engines/odbc/code_page.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#include "data/data_error.h"
#include "text/characters.h"
#include "text/utf8.h"

namespace ledgertree::engines::odbc {
namespace {

/// The characters of Windows-1256 beyond ASCII, in order.
constexpr char16_t kArabic[] = {
    0x00A0, 0x00A2, 0x00A3, 0x00A4, 0x00A5, 0x00A6, 0x00A7, 0x00A8, 0x00A9, 0x00AB, 0x00AC, 0x00AD, 0x00AE,
    0x00AF, 0x00B0, 0x00B1, 0x00B2, 0x00B3, 0x00B4, 0x00B5, 0x00B6, 0x00B7, 0x00B8, 0x00B9, 0x00BB, 0x00BC,
    0x00BD, 0x00BE, 0x00D7, 0x00E0, 0x00E2, 0x00E7, 0x00E8, 0x00E9, 0x00EA, 0x00EB, 0x00EE, 0x00EF, 0x00F4,
    0x00F7, 0x00F9, 0x00FB, 0x00FC, 0x0152, 0x0153, 0x0192, 0x02C6, 0x060C, 0x061B, 0x061F, 0x0621, 0x0622,
    0x0623, 0x0624, 0x0625, 0x0626, 0x0627, 0x0628, 0x0629, 0x062A, 0x062B, 0x062C, 0x062D, 0x062E, 0x062F,
    0x0630, 0x0631, 0x0632, 0x0633, 0x0634, 0x0635, 0x0636, 0x0637, 0x0638, 0x0639, 0x063A, 0x0640, 0x0641,
    0x0642, 0x0643, 0x0644, 0x0645, 0x0646, 0x0647, 0x0648, 0x0649, 0x064A, 0x064B, 0x064C, 0x064D, 0x064E,
    0x064F, 0x0650, 0x0651, 0x0652, 0x0679, 0x067E, 0x0686, 0x0688, 0x0691, 0x0698, 0x06A9, 0x06AF, 0x06BA,
    0x06BE, 0x06C1, 0x06D2, 0x200C, 0x200D, 0x200E, 0x200F, 0x2013, 0x2014, 0x2018, 0x2019, 0x201A, 0x201C,
    0x201D, 0x201E, 0x2020, 0x2021, 0x2022, 0x2026, 0x2030, 0x2039, 0x203A, 0x20AC, 0x2122,
};

constexpr char32_t kNothing = 0;

struct Fold {
  char16_t letter;
  char16_t into;
};

/// Letters that the code page lacks, each with the one that readers take for the same.
constexpr Fold kFolds[] = {
    {0x061C, kNothing},  // invisible direction marks
    {0x0671, 0x0627},    // alef wasla
    {0x06AA, 0x0643},    // swash kaf
    {0x06C0, 0x0647},    // heh with yeh above
    {0x06C2, 0x06C1},    // heh goal with hamza above
    {0x06C3, 0x0629},    // teh marbuta goal
    {0x06CC, 0x064A},    // the yeh of a Persian keyboard
    {0x06D5, 0x0647},    // ae
    {0x202F, 0x00A0},    // narrow no-break space
    {0x2060, kNothing},  // word joiner
    {0xFEFF, kNothing},  // byte order mark
};

char32_t foldedLetter(char32_t letter) {
  if (letter >= 0x0660 && letter <= 0x0669) return '0' + (letter - 0x0660);
  if (letter >= 0x06F0 && letter <= 0x06F9) return '0' + (letter - 0x06F0);
  if ((letter >= 0x202A && letter <= 0x202E) || (letter >= 0x2066 && letter <= 0x2069)) return kNothing;
  const auto* const found = std::find_if(std::begin(kFolds), std::end(kFolds),
                                         [letter](const Fold& fold) { return fold.letter == letter; });
  return found == std::end(kFolds) ? letter : found->into;
}

bool isArabicLetter(char32_t letter) {
  return letter < 0x80 || (letter < 0x10000 && std::binary_search(std::begin(kArabic), std::end(kArabic),
                                                                  static_cast<char16_t>(letter)));
}

/// A text in the letters of the code page, and the first character that it lacks.
struct Carried {
  std::string text;
  std::string_view lost;
};

Carried carry(std::string_view text, CodePage page) {
  Carried carried;
  carried.text.reserve(text.size());
  for (std::size_t place = 0; place < text.size();) {
    const std::size_t begin = place;
    const char32_t letter = text::nextCharacter(text, place);
    const std::string_view character = text.substr(begin, place - begin);
    const char32_t folded = letter < 0x80 ? letter : foldedLetter(letter);
    if (folded != letter) {
      if (folded != kNothing) text::appendCharacter(folded, carried.text);
      continue;
    }
    carried.text += character;
    if (page == CodePage::Arabic && carried.lost.empty() && !isArabicLetter(letter)) carried.lost = character;
  }
  return carried;
}

[[noreturn]] void refuseLost(std::string_view character) {
  throw data::DataError(data::DataError::Reason::Misuse, 0,
                        "پايگاه داده نويسه «" + std::string(character) +
                            "» را نگه نميدارد. آن را پاک کنيد يا نويسه ديگري به جاي آن بنويسيد.");
}

bool isNameLetter(char letter) {
  return (static_cast<unsigned char>(letter) >= 0x80) || (letter >= 'a' && letter <= 'z') ||
         (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9') || letter == '_' ||
         letter == '@' || letter == '#' || letter == '$';
}

/// Rewrites the plain literals of a statement.
class StatementFold {
 public:
  StatementFold(std::string_view statement, CodePage page)
      : rest_(statement),
        page_(page),
        // A search declares its patterns before it reads.
        reads_(beginsWithWord(statement, "select") || beginsWithWord(statement, "declare")) {
    folded_.reserve(statement.size());
  }

  std::string run() {
    while (!rest_.empty()) {
      if (rest_.starts_with("--")) {
        take(std::min(rest_.find('\n'), rest_.size()));
      } else if (rest_.starts_with("/*")) {
        const std::size_t end = rest_.find("*/", 2);
        take(end == std::string_view::npos ? rest_.size() : end + 2);
      } else if (rest_.front() == '[' || rest_.front() == '"') {
        take(quoted(rest_.front() == '[' ? ']' : '"'));
      } else if (rest_.front() == '\'') {
        literal();
      } else {
        take(1);
      }
    }
    return std::move(folded_);
  }

 private:
  void take(std::size_t count) {
    folded_ += rest_.substr(0, count);
    rest_.remove_prefix(count);
  }

  /// The length of a quoted text up to its closing quote; a doubled quote stands for itself.
  [[nodiscard]] std::size_t quoted(char close) const {
    std::size_t place = 1;
    while (place < rest_.size()) {
      if (rest_[place] != close) {
        ++place;
      } else if (place + 1 < rest_.size() && rest_[place + 1] == close) {
        place += 2;
      } else {
        return place + 1;
      }
    }
    return rest_.size();
  }

  /// Whether the literal has an N of its own in front.
  [[nodiscard]] bool isWide() const {
    if (folded_.empty() || (folded_.back() != 'N' && folded_.back() != 'n')) return false;
    return folded_.size() == 1 || !isNameLetter(folded_[folded_.size() - 2]);
  }

  void literal() {
    const std::size_t length = quoted('\'');
    if (isWide()) return take(length);
    const Carried carried = carry(rest_.substr(0, length), page_);
    if (!carried.lost.empty() && !reads_) refuseLost(carried.lost);
    // A text that no column can hold is searched for unchanged, and not found; a damaged one might be.
    if (!carried.lost.empty()) folded_ += 'N';
    folded_ += carried.text;
    rest_.remove_prefix(length);
  }

  std::string_view rest_;
  CodePage page_;
  bool reads_;
  std::string folded_;
};

}  // namespace

std::string_view firstWord(std::string_view statement) {
  std::size_t place = 0;
  while (place < statement.size()) {
    const std::string_view rest = statement.substr(place);
    if (rest.starts_with("--")) {
      place += std::min(rest.find('\n'), rest.size());
    } else if (rest.starts_with("/*")) {
      const std::size_t end = rest.find("*/", 2);
      place = end == std::string_view::npos ? statement.size() : place + end + 2;
    } else if (isNameLetter(rest.front())) {
      break;
    } else {
      ++place;
    }
  }
  std::size_t end = place;
  while (end < statement.size() && isNameLetter(statement[end])) ++end;
  return statement.substr(place, end - place);
}

bool beginsWithWord(std::string_view statement, std::string_view word) {
  return text::equalsIgnoringCase(firstWord(statement), word);
}

std::string foldStatement(std::string_view statement, CodePage page) {
  if (page == CodePage::Unicode) return std::string(statement);
  return StatementFold(statement, page).run();
}

std::string foldText(std::string_view text, CodePage page) {
  if (page == CodePage::Unicode) return std::string(text);
  Carried carried = carry(text, page);
  if (!carried.lost.empty()) refuseLost(carried.lost);
  return std::move(carried.text);
}

}  // namespace ledgertree::engines::odbc
