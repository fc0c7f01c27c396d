#include "engines/odbc/search_conditions.h"

#include <algorithm>
#include <set>
#include <span>

#include "data/quote_text.h"
#include "text/characters.h"
#include "text/fold_forms.h"
#include "text/utf8.h"

namespace ledgertree::engines::odbc {
namespace {

/// More letters or words than these wouldn't narrow a search further.
constexpr std::size_t kLettersOfPattern = 40;
constexpr std::size_t kWordsOfStatement = 5;
/// Precedes each column, and occurs in no word.
constexpr std::string_view kAhead = "\x1F";
/// Nearly everything that folding drops in a real chart: blanks and zero-width joiners.
constexpr std::string_view kCommon[] = {" ", "\u200C"};

template <typename Words, typename Change>
std::string joined(const Words& words, const std::string& between, Change change) {
  std::string text;
  for (const auto& word : words) text += (text.empty() ? "" : between) + change(word);
  return text;
}

std::string replaced(std::string text, std::string_view from, std::string_view by) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + by.size()))
    text.replace(at, from.size(), by);
  return text;
}

std::vector<std::string> lettersOf(std::string_view text) {
  std::vector<std::string> letters;
  for (; !text.empty(); text.remove_prefix(letters.back().size()))
    letters.emplace_back(text.substr(0, text::characterLength(text)));
  return letters;
}

bool isDigits(std::string_view text) { return std::all_of(text.begin(), text.end(), text::isDigit); }

/// The characters that folding drops, for a class in a pattern; `rare`: without the common ones.
std::string dropped(bool rare) {
  std::u32string letters;
  for (const std::string& form : text::foldForms().at(""))
    if (!rare || std::find(std::begin(kCommon), std::end(kCommon), form) == std::end(kCommon))
      letters += text::charactersOf(form);
  std::sort(letters.begin(), letters.end());
  std::u32string inside;
  for (std::size_t place = 0; place < letters.size();) {
    std::size_t behind = place + 1;
    while (behind < letters.size() && letters[behind] == letters[behind - 1] + 1) ++behind;
    inside += letters[place];
    if (behind - place > 2) inside += U'-';
    if (behind - place > 1) inside += letters[behind - 1];
    place = behind;
  }
  return text::textOf(inside);
}

/// A pattern that matches one form of the letters, or one character of `more`.
std::string classOf(const std::set<std::string>& letters, const std::string& more) {
  std::string inside;
  for (const std::string& letter : letters) {
    // These have a meaning in a class.
    if (letter.find_first_of("]^-") != std::string::npos) return "_";
    const auto forms = text::foldForms().find(letter);
    inside += forms == text::foldForms().end() ? letter
                                               : joined(forms->second, "", [](auto& form) { return form; });
  }
  return "[" + inside + more + "]";
}

std::string formsOf(const std::string& letter) {
  const bool plain = !text::foldForms().contains(letter) && letter != "%" && letter != "_" && letter != "[";
  return plain || letter.find_first_of("]^-") != std::string::npos ? letter : classOf({letter}, "");
}

/// All spellings of a folded code that a collation may tell apart.
std::set<std::string> spellings(const std::string& folded) {
  const std::string yeh = replaced(folded, "ی", "ي");
  return {folded, yeh, replaced(folded, "ک", "ك"), replaced(yeh, "ک", "ك")};
}

/// The codes with this beginning, as an index range if possible. Digits have an upper bound, since letters
/// come after them in every collation.
std::string beginning(const std::string& column, const std::string& code) {
  const std::string literal = data::quoteText(code);
  std::string condition = column + " >= " + literal;
  std::string behind = isDigits(code) ? code : "";
  while (!behind.empty() && behind.back() == '9') behind.pop_back();
  if (!behind.empty()) ++behind.back();
  if (!behind.empty()) condition += " and " + column + " < " + data::quoteText(behind);
  return condition + " and left(" + column + ", " + std::to_string(text::characterCount(code)) +
         ") = " + literal;
}

}  // namespace

std::string quotedName(std::string_view name) { return data::quoted(name, '[', ']'); }

SearchConditions::SearchConditions(const data::SearchRequest& request, const data::SearchRank& rank) {
  if (rank.text().empty() || request.columns.empty()) return;
  text_ = "concat(" +
          joined(request.columns, ", ", [](auto& name) { return "nchar(31), " + quotedName(name); }) +
          ") collate Latin1_General_BIN2";
  bareText_ = text_;
  for (const std::string_view letter : kCommon)
    bareText_ = "replace(" + bareText_ + ", N" + data::quoteText(letter) + ", N'')";
  patterns_ = "@r nvarchar(4000) = N" + data::quoteText("%[" + dropped(true) + "]%");
  const auto& words = rank.words().words;
  for (std::size_t word = 0; word < std::min(words.size(), kWordsOfStatement); ++word)
    addPatterns(std::to_string(word), words[word], "%");
  if (!rank.ranksBeginningOf(0)) return;
  const bool anywhere = rank.ranksBeginningOf(1);
  addPatterns("b", rank.text(), (anywhere ? "%" : "") + std::string(kAhead));
  begins_ = std::move(words_.back());
  words_.pop_back();
  wholeFits_ = text::characterCount(rank.text()) <= kLettersOfPattern;
  const auto codes = spellings(rank.text());
  const std::string code = quotedName(request.columns.front());
  isCode_ = code + " in (" + joined(codes, ", ", [](auto& text) { return data::quoteText(text); }) + ")";
  beginsCode_ = joined(codes, " or ", [&code](auto& text) { return "(" + beginning(code, text) + ")"; });
}

void SearchConditions::addPatterns(const std::string& number, std::string_view folded,
                                   std::string_view ahead) {
  const auto letters = lettersOf(text::leftCharacters(folded, kLettersOfPattern));
  const std::set<std::string> all(letters.begin(), letters.end());
  const std::string between = dropped(false);
  const auto add = [&](const std::string& name, const std::string& pattern) {
    patterns_ += ", @" + name + number + " nvarchar(4000) = N" + data::quoteText(pattern);
  };
  add("e", std::string(ahead) + joined(letters, "", formsOf) + "%");
  // A character that folding drops is between two letters of the word.
  add("s", "%" + classOf(all, std::string(kAhead)) + "[" + between + "]" + classOf(all, between) + "%");
  // The letters occur in this order. At a beginning, only dropped characters precede them.
  const std::string first = ahead == "%" ? formsOf(letters.front()) : classOf({letters.front()}, between);
  add("l", std::string(ahead) + first + "%" + joined(std::span(letters).subspan(1), "%", formsOf) + "%");
  words_.push_back("(" + text_ + " like @l" + number + " and (" + text_ + " like @e" + number + " or " +
                   split(number, " or " + text_ + " like @r") + "))");
}

std::string SearchConditions::split(const std::string& number, const std::string& more) const {
  return text_ + " like @s" + number + " and (" + bareText_ + " like @e" + number + more + ")";
}

std::string SearchConditions::holds() const {
  return joined(words_, " and ", [](auto& condition) { return condition; });
}

std::string SearchConditions::begins() const { return begins_; }

std::string SearchConditions::surelyBegins() const {
  return wholeFits_ ? "(" + text_ + " like @eb or " + split("b", "") + ")" : "";
}

}  // namespace ledgertree::engines::odbc
