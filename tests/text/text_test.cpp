// Characters and folding: what counts as one letter, and what a search treats as equal.

#include <gtest/gtest.h>

#include <string>

#include "data/data_error.h"
#include "data/quote_text.h"
#include "text/characters.h"
#include "text/fold.h"
#include "text/search_words.h"
#include "text/utf8.h"

namespace ledgertree::text {
namespace {

using namespace std::string_view_literals;

TEST(Characters, CountWhatAPersonTypedAndNeverSplitALetter) {
  const std::string_view title = "صندوق 😀 ريالي";
  EXPECT_EQ(characterCount(title), 13U);
  EXPECT_EQ(leftCharacters(title, 7), "صندوق 😀");
  EXPECT_EQ(rightCharacters(title, 6), " ريالي");
  EXPECT_EQ(withoutFirstCharacters(title, 8), "ريالي");
  EXPECT_EQ(leftCharacters(title, 99), title);
  EXPECT_EQ(rightCharacters(title, 99), title);
  EXPECT_EQ(withoutFirstCharacters(title, 99), "");
  EXPECT_EQ(rightCharacters(title, 0), "");
  EXPECT_EQ(characterCount("a\xD8\xC3\xE2\x82"), 5U) << "a broken byte is a character of its own";
}

TEST(Utf8, CharactersAndBack) {
  const std::pair<const char*, std::u32string> texts[] = {
      {"", U""},
      {"\x01\x7F", {1, 0x7F}},
      {"\xC2\x80\xDF\xBF", {0x80, 0x7FF}},
      {"\xE0\xA0\x80\xEF\xBF\xBF", {0x800, 0xFFFF}},
      {"\xED\x9F\xBF\xEE\x80\x80", {0xD7FF, 0xE000}},
      {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", {0x10000, 0x10FFFF}},
      {"\xEF\xBF\xBD", {0xFFFD}},
  };
  for (const auto& [bytes, characters] : texts) {
    EXPECT_EQ(charactersOf(bytes), characters);
    EXPECT_EQ(textOf(characters), bytes);
    EXPECT_EQ(utf8Text(wideText(bytes)), bytes);
  }
  // Each byte that belongs to no character counts as one, and the rest is read.
  for (const std::string broken :
       {"\x80", "\xC1\xBF", "\xC2", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF",
        "\xF4\x90\x80\x80", "\xF5\x80", "\xE2\x82", "\xC2\xC0"})
    EXPECT_EQ(charactersOf(broken + "z"), std::u32string(broken.size(), 0xFFFD) + U"z") << broken;
  EXPECT_EQ(charactersOf("\xE2\x82"), (std::u32string{0xFFFD, 0xFFFD})) << "cut in the middle";
  EXPECT_EQ(wideText("\xF0\x9F\x98\x80\xF0z"), (std::u16string{0xD83D, 0xDE00, 0xFFFD, u'z'}));
  // Neither a lone surrogate nor a value above the last character gets into a text.
  EXPECT_EQ(utf8Text(std::u16string{0xD83D, u'a', 0xDE00}), "\uFFFDa\uFFFD");
  EXPECT_EQ(textOf(std::u32string{0xDFFF, U'b', 0x110000}), "\uFFFDb\uFFFD");
}

TEST(Characters, OnlyCleanTextGetsIntoAStatement) {
  EXPECT_EQ(data::quoteText("O'Neil ''"), "'O''Neil '''''");
  EXPECT_EQ(data::quoteText("حساب"), "'حساب'");
  // The second one is an overlong apostrophe.
  for (const std::string_view text : {"a\0b"sv, "\xC0\xA7"sv, "\xE0\x80\xA7"sv, "\xED\xA0\x80"sv,
                                      "\xF4\x90\x80\x80"sv, "\xD8"sv, "\xA7"sv, "\xF0\x9F\x98"sv, "\xFF"sv}) {
    EXPECT_FALSE(isCleanText(text));
    EXPECT_THROW(static_cast<void>(data::quoteText(text)), data::DataError);
  }
}

TEST(Fold, TakesForTheSameWhatAPersonWouldCallTheSame) {
  const std::pair<const char*, const char*> same[] = {
      {"سرمايه گذاري كوتاه", "سرمایه گذاری کوتاه"},
      {"ميلي‌متر", "میلیمتر"},  // with a joiner in the word
      {" حساب های\tجاری\u00A0\u2009", "حساب‌هایجاری"},
      {"حسـاب‏", "حساب"},  // with tatweel and a direction mark
      {"مُؤسّسَه", "مؤسسه"},         // with vowel signs
      {"خانهٔ مدرسة", "خانۀ مدرسه"},
      {"أإآٱ", "اااا"},
      {"کد ۱۲۳ ٤٥٦", "كد 123 456"},
      {"BANK Ärger ΣΟΦΌΣ БАНК Ё", "bank ärger σοφός банк ё"},
      {"İŞ Ｂ ẠŸŽ", "iş ｂ ạÿž"},
  };
  for (const auto& [one, other] : same) EXPECT_EQ(fold(one), fold(other)) << one;
  EXPECT_NE(fold("بانک"), fold("بانکی"));
  EXPECT_NE(fold("آب"), fold("آپ"));
  EXPECT_EQ(fold("bank ×÷ \"123\" 😀 漢字"), "bank×÷\"123\"😀漢字");
}

TEST(SearchWords, AreMarkedInTheTextAsItIsWritten) {
  const std::pair<const char*, const char*> texts[] = {
      {"حساب های", "[حساب\u200Cهاي] جاري"},  // as typed, across a joiner
      {"حسابهای", "[حساب هاي] جاري"},
      {"جاری حساب", "[حساب]\u200Cهاي [جاري]"},  // word by word
      {"معین", "كد [مُعِين] ۱"},
      {"۱۲", "[12] و [١٢]"},
      {"ملیم لیملی", "[مليملي]"},  // overlapping hits
      {"A a", "b[a]"},
      {" ", "هيچ"},
      {"بانک", "بان"},
  };
  for (const auto& [typed, marked] : texts) {
    std::string text(marked);
    std::erase_if(text, [](char letter) { return letter == '[' || letter == ']'; });
    std::string shown;
    std::size_t place = 0;
    for (const Stretch& stretch : stretchesOf(SearchWords(typed), text)) {
      shown += text.substr(place, stretch.begin - place) + "[";
      shown += text.substr(stretch.begin, stretch.end - stretch.begin) + "]";
      place = stretch.end;
    }
    EXPECT_EQ(shown + text.substr(place), marked) << typed;
  }
}

TEST(Fold, LeavesBrokenBytesAloneAndIsStable) {
  for (const std::string_view text : {std::string_view("A\xD9"), std::string_view("\xD9\x41\xE2\x80"),
                                      std::string_view("\xFF\xC0\x80Z"), std::string_view("a\0B", 3)}) {
    std::string expected(text);
    for (char& letter : expected)
      letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    EXPECT_EQ(fold(text), expected);
  }
  std::string every;
  for (unsigned letter = 1; letter < 0x10000; letter += letter == 0xD7FF ? 0x801 : 1) {
    appendCharacter(letter, every);
  }
  const std::string folded = fold(every);
  EXPECT_TRUE(isCleanText(folded));
  EXPECT_LT(folded.size(), every.size());
  EXPECT_EQ(fold(folded), folded) << "what is folded stays as it is";
}

}  // namespace
}  // namespace ledgertree::text
