#include "data/quote_text.h"

#include "data/data_error.h"
#include "text/characters.h"

namespace ledgertree::data {

std::string quoteText(std::string_view text) {
  if (!text::isCleanText(text)) {
    throw DataError(DataError::Reason::Misuse, 0, "متن نويسه ناخوانا دارد. آن را پاک کنيد و دوباره بنويسيد.");
  }
  return quoted(text, '\'', '\'');
}

std::string quoted(std::string_view text, char opening, char closing) {
  std::string whole(1, opening);
  whole.reserve(text.size() + 2);
  for (const char letter : text) {
    if (letter == closing) whole += closing;
    whole += letter;
  }
  return whole += closing;
}

}  // namespace ledgertree::data
