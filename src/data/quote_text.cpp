#include "data/quote_text.h"

#include "data/data_error.h"
#include "text/characters.h"

namespace ledgertree::data {

std::string quoteText(std::string_view text) {
  if (!text::isCleanText(text)) {
    throw DataError(DataError::Reason::Misuse, 0, "متن نويسه ناخوانا دارد. آن را پاک کنيد و دوباره بنويسيد.");
  }
  std::string literal = "'";
  literal.reserve(text.size() + 2);
  for (const char letter : text) {
    if (letter == '\'') literal += '\'';
    literal += letter;
  }
  return literal += '\'';
}

}  // namespace ledgertree::data
