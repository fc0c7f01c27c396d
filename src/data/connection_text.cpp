#include "data/connection_text.h"

#include <algorithm>

#include "data/data_error.h"
#include "data/quote_text.h"
#include "text/characters.h"

namespace ledgertree::data {
namespace {

bool isSpace(char letter) { return letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n'; }

std::string_view withoutSpaceAtEnds(std::string_view text) {
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

/// A key as it is compared: trimmed, with each run of spaces inside reduced to one.
std::string tidyKey(std::string_view key) {
  std::string tidy;
  for (const char letter : withoutSpaceAtEnds(key)) {
    if (!isSpace(letter)) {
      tidy += letter;
    } else if (tidy.back() != ' ') {
      tidy += ' ';
    }
  }
  return tidy;
}

[[noreturn]] void refuse(const std::string& message) {
  throw DataError(DataError::Reason::Connection, 0, message);
}

/// Parses a connection text part by part. Its errors tell a position, never a piece of the text: in a
/// malformed text, a password may be anywhere.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  /// Advances to the next pair; false at the end. Empty pairs (";;") are skipped.
  bool nextPair() {
    while (!atEnd() && (isSpace(text_[place_]) || text_[place_] == ';')) ++place_;
    return !atEnd();
  }

  std::string key() {
    const std::size_t start = place_;
    std::string key;
    for (;; ++place_) {
      if (atEnd() || text_[place_] == ';') refuseAt(start, "نام کليدي هست که پس از آن «=» نيامده است");
      if (text_[place_] == '=') {
        if (place_ + 1 >= text_.size() || text_[place_ + 1] != '=') break;
        ++place_;
      }
      key += text_[place_];
    }
    ++place_;
    key = tidyKey(key);
    if (key.empty()) refuseAt(start, "پيش از «=» نام کليدي نيامده است");
    return key;
  }

  std::string value() {
    while (!atEnd() && isSpace(text_[place_])) ++place_;
    if (!atEnd() && (text_[place_] == '"' || text_[place_] == '\'')) return quotedValue();
    const std::size_t end = std::min(text_.find(';', place_), text_.size());
    const std::string_view value = text_.substr(place_, end - place_);
    place_ = end;
    return std::string(withoutSpaceAtEnds(value));
  }

  [[noreturn]] void refuseAt(std::size_t place, const std::string& fault) const {
    const std::size_t character = text::characterCount(text_.substr(0, place)) + 1;
    refuse("متن اتصال درست نيست: در نويسه " + std::to_string(character) + " " + fault +
           ". متن اتصال را اصلاح کنيد.");
  }

 private:
  std::string quotedValue() {
    const std::size_t start = place_;
    const char quote = text_[place_++];
    std::string value;
    for (;; ++place_) {
      if (atEnd()) refuseAt(start, "نشان نقل قولي باز شده که بسته نشده است");
      if (text_[place_] == quote) {
        if (place_ + 1 >= text_.size() || text_[place_ + 1] != quote) break;
        ++place_;
      }
      value += text_[place_];
    }
    ++place_;
    while (!atEnd() && isSpace(text_[place_])) ++place_;
    if (!atEnd() && text_[place_] != ';') refuseAt(place_, "پس از بسته شدن نشان نقل قول، متن ديگري آمده است");
    return value;
  }

  [[nodiscard]] bool atEnd() const { return place_ >= text_.size(); }

  std::string_view text_;
  std::size_t place_ = 0;
};

}  // namespace

ConnectionText::ConnectionText(std::string_view text) {
  Reader reader(text);
  if (!text::isCleanText(text)) {
    std::size_t place = 0;
    while (text::isCleanText(text.substr(place, text::characterLength(text.substr(place))))) {
      place += text::characterLength(text.substr(place));
    }
    reader.refuseAt(place, "نويسه ناخوانا آمده است");
  }
  while (reader.nextPair()) {
    std::string key = reader.key();
    std::string value = reader.value();
    pairs_.emplace_back(std::move(key), std::move(value));
  }
}

std::optional<std::string> ConnectionText::find(std::string_view key) const {
  const std::string wanted = tidyKey(key);
  for (auto pair = pairs_.rbegin(); pair != pairs_.rend(); ++pair) {
    if (text::equalsIgnoringCase(pair->first, wanted)) return pair->second;
  }
  return std::nullopt;
}

std::string ConnectionText::require(std::string_view key) const {
  std::optional<std::string> value = find(key);
  if (!value || value->empty()) {
    refuse("متن اتصال «" + std::string(key) + "» ندارد. آن را به متن اتصال بيفزاييد.");
  }
  return *std::move(value);
}

std::string ConnectionText::provider() const {
  std::string provider = require("Provider");
  const std::size_t dot = provider.find('.');
  if (dot != std::string::npos && provider.find_first_not_of("0123456789", dot + 1) == std::string::npos) {
    provider.erase(dot);
  }
  return provider;
}

bool sameDatabase(std::string_view text, std::string_view other) {
  if (text == other) return true;
  const auto holds = [](const ConnectionText& one, const ConnectionText& another) {
    return std::all_of(one.pairs().begin(), one.pairs().end(),
                       [&](const auto& pair) { return another.find(pair.first) == one.find(pair.first); });
  };
  try {
    const ConnectionText first(text);
    const ConnectionText second(other);
    return holds(first, second) && holds(second, first);
  } catch (const DataError&) {
    return false;
  }
}

std::string quoteConnectionValue(std::string_view value) {
  // A leading "=" would follow the key's own, and the two would be read as a letter of the key.
  const bool plain = value.find_first_of(";\"'") == std::string_view::npos && !value.starts_with('=') &&
                     withoutSpaceAtEnds(value) == value;
  if (plain) return std::string(value);
  // Prefers the quote that the value doesn't contain; doubling is only needed if it contains both.
  const char quote = value.find('"') == std::string_view::npos ? '"' : '\'';
  return quoted(value, quote, quote);
}

}  // namespace ledgertree::data
