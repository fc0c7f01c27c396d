#include "shell/lookup/all_chosen.h"

#include <algorithm>

namespace ledgertree::shell {

bool allChosen(Shell& shell, std::initializer_list<ui::LookupField*> fields) {
  const auto* const found = std::find_if(fields.begin(), fields.end(),
                                         [](const ui::LookupField* field) { return field->typing(); });
  if (found == fields.end()) return true;
  shell.showErrorNotice(kTitleProblem,
                        "در خانه «" + (*found)->accessibleName() +
                            "» متني نوشته شده ولي رديفي از فهرست انتخاب نشده است. رديفي را انتخاب کنيد يا "
                            "نوشته را پاک کنيد.");
  (*found)->focus();
  return false;
}

}  // namespace ledgertree::shell
