#include "text/folded_beginning.h"

#include <algorithm>

#include "text/characters.h"
#include "text/fold_forms.h"

namespace ledgertree::text {
namespace {

/// Characters that folding drops may occur anywhere.
const std::vector<std::string>& dropped() { return foldForms().at(""); }

const std::string* startOf(const std::vector<std::string>& forms, std::string_view rest) {
  const auto behind = std::upper_bound(forms.begin(), forms.end(), rest);
  return behind != forms.begin() && rest.starts_with(*(behind - 1)) ? &*(behind - 1) : nullptr;
}

const std::string* firstBehind(const std::vector<std::string>& forms, std::string_view rest) {
  const auto behind = std::upper_bound(forms.begin(), forms.end(), rest);
  return behind == forms.end() ? nullptr : &*behind;
}

}  // namespace

FoldedBeginning::FoldedBeginning(std::string_view folded, bool whole) : whole_(whole) {
  while (!folded.empty()) {
    const std::string_view letter = folded.substr(0, characterLength(folded));
    folded.remove_prefix(letter.size());
    const auto known = foldForms().find(letter);
    letters_.push_back(known == foldForms().end() ? Forms{std::string(letter)} : known->second);
  }
  letters_.emplace_back();
}

FoldedBeginning::Place FoldedBeginning::look(std::string_view text) {
  text_ = text;
  for (char& byte : text_)
    if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
  steps_.clear();
  const std::size_t end = letters_.size() - 1;
  std::size_t letter = 0;
  std::size_t place = 0;
  while (letter != end || (whole_ && place != text_.size())) {
    const std::string_view rest = std::string_view(text_).substr(place);
    const std::string* const form = startOf(letters_[letter], rest);
    const std::string* const fits = form != nullptr ? form : startOf(dropped(), rest);
    if (fits == nullptr) return goBehind(letter, place);
    steps_.push_back({place, fits->size(), letter});
    place += fits->size();
    if (form != nullptr && letter != end) ++letter;
  }
  return Place::Here;
}

FoldedBeginning::Place FoldedBeginning::goBehind(std::size_t letter, std::size_t place) {
  std::string_view rest = std::string_view(text_).substr(place);
  for (;;) {
    const std::string* const form = firstBehind(letters_[letter], rest);
    const std::string* const sign = firstBehind(dropped(), rest);
    if (form != nullptr || sign != nullptr) {
      const bool takesForm = sign == nullptr || (form != nullptr && *form < *sign);
      seek_.assign(text_, 0, place).append(takesForm ? *form : *sign);
      return Place::Behind;
    }
    if (steps_.empty()) return Place::Nowhere;
    const Step step = steps_.back();
    steps_.pop_back();
    letter = step.letter;
    place = step.place;
    rest = std::string_view(text_).substr(place, step.length);
  }
}

}  // namespace ledgertree::text
