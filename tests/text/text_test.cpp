// Characters and folding: what counts as one letter, and what a search takes for the same.

#include <gtest/gtest.h>

#include <string>

#include "data/data_error.h"
#include "data/quote_text.h"
#include "text/characters.h"
#include "text/fold.h"

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

TEST(Characters, OnlyCleanTextGetsIntoAStatement) {
  EXPECT_EQ(data::quoteText("O'Neil ''"), "'O''Neil '''''");
  EXPECT_EQ(data::quoteText("حساب"), "'حساب'");
  // An apostrophe in disguise is the second of them.
  for (const std::string_view text : {"a\0b"sv, "\xC0\xA7"sv, "\xE0\x80\xA7"sv, "\xED\xA0\x80"sv,
                                      "\xF4\x90\x80\x80"sv, "\xD8"sv, "\xA7"sv, "\xF0\x9F\x98"sv, "\xFF"sv}) {
    EXPECT_FALSE(isCleanText(text));
    EXPECT_THROW(static_cast<void>(data::quoteText(text)), data::DataError);
  }
}

TEST(Fold, TakesForTheSameWhatAPersonWouldCallTheSame) {
  const std::pair<const char*, const char*> same[] = {
      {"سرمايه گذاري كوتاه", "سرمایه گذاری کوتاه"},
      {"ميلي‌متر", "میلیمتر"},  // a joiner inside the word
      {"حسـاب‏", "حساب"},         // tatweel, a direction mark
      {"مُؤسّسَه", "مؤسسه"},                // vowel signs
      {"خانهٔ مدرسة", "خانۀ مدرسه"},
      {"أإآٱ", "اااا"},
      {"کد ۱۲۳ ٤٥٦", "كد 123 456"},
      {"BANK Ärger ΣΟΦΌΣ БАНК Ё", "bank ärger σοφός банк ё"},
      {"İŞ Ｂ ẠŸŽ", "iş ｂ ạÿž"},
  };
  for (const auto& [one, other] : same) EXPECT_EQ(fold(one), fold(other)) << one;
  EXPECT_NE(fold("بانک"), fold("بانکی"));
  EXPECT_NE(fold("آب"), fold("آپ"));
  EXPECT_EQ(fold("bank ×÷ \"123\" 😀 漢字"), "bank ×÷ \"123\" 😀 漢字");
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
    if (letter >= 0x800) every += static_cast<char>(0xE0 | (letter >> 12));
    if (letter >= 0x800) every += static_cast<char>(0x80 | ((letter >> 6) & 0x3F));
    if (letter >= 0x80 && letter < 0x800) every += static_cast<char>(0xC0 | (letter >> 6));
    every += static_cast<char>(letter < 0x80 ? letter : 0x80 | (letter & 0x3F));
  }
  const std::string folded = fold(every);
  EXPECT_TRUE(isCleanText(folded));
  EXPECT_LT(folded.size(), every.size());
  EXPECT_EQ(fold(folded), folded) << "what is folded stays as it is";
}

}  // namespace
}  // namespace ledgertree::text
