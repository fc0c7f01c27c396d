#include "text/fold_forms.h"

#include "text/fold.h"
#include "text/utf8.h"

namespace ledgertree::text {
namespace {

FoldForms makeFoldForms() {
  FoldForms forms;
  const auto add = [&forms](char32_t first, char32_t last) {
    for (char32_t letter = first; letter <= last; ++letter) {
      const std::string form = textOf(std::u32string_view(&letter, 1));
      forms[fold(form)].push_back(form);
    }
  };
  // Everything that fold() changes is in these ranges.
  add(U'\t', U'\u07FF');
  add(U'\u1E00', U'\u1EFF');
  add(U'\u2000', U'\u206F');
  add(U'\u3000', U'\u3000');
  add(U'\uFEFF', U'\uFF5A');
  return forms;
}

}  // namespace

const FoldForms& foldForms() {
  static const FoldForms kForms = makeFoldForms();
  return kForms;
}

}  // namespace ledgertree::text
