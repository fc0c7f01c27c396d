#include "periods/period_screens.h"

#include <utility>

#include "periods/copy_period.h"
#include "periods/delete_period.h"

namespace ledgertree::periods {

bool PeriodScreens::ShowPeriodBranch(std::int32_t inAccountID) {
  if (!periodBranch_) periodBranch_ = std::make_shared<FormPeriodBranch>(shell_);
  const auto form = periodBranch_;
  return form->ShowPeriodBranch(inAccountID);
}

bool PeriodScreens::showCopyPeriod() {
  FormCopyPeriodAccount form(shell_);
  shell_.desktop().showModal(form);
  return form.ChangedFlag;
}

bool PeriodScreens::showDeletePeriod() {
  FormDeletePeriod form(shell_);
  shell_.desktop().showModal(form);
  return form.ChangedFlag;
}

void PeriodScreens::unload() {
  const auto form = std::exchange(periodBranch_, nullptr);
  if (form && form->isShown()) form->hide();
}

}  // namespace ledgertree::periods
