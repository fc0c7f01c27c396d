#include "mainform/secondary_screens.h"

#include "data/numbers.h"
#include "entities/rel_classes.h"

namespace ledgertree::mainform {

using data::Permission;

SecondaryScreens::SecondaryScreens(MainScreen& screen, shell::Shell& shell, AccountTree& tree)
    : screen_(screen), shell_(shell), tree_(tree), periods_(shell) {
  screen_.cmdPeriodBranch.onClick = [this] {
    showPeriods(Permission::PeriodsOfAccount,
                [this] { return periods_.ShowPeriodBranch(data::toNumber(screen_.txtID.text()).asInt32()); });
  };
  screen_.cmdCopyPeriod.onClick = [this] {
    showPeriods(Permission::CopyPeriod, [this] { return periods_.showCopyPeriod(); });
  };
  screen_.cmdDeletePeriod.onClick = [this] {
    showPeriods(Permission::HidePeriod, [this] { return periods_.showDeletePeriod(); });
  };
  screen_.cmdRelClasses.onClick = [this] {
    if (!screen_.settings.MultiEntityMode) return;
    entities::showRelClasses(shell_, data::toNumber(screen_.txtID.text()).asInt32());
  };
}

void SecondaryScreens::showPeriods(Permission permission, const std::function<bool()>& show) {
  if (!shell_.permits(permission)) return;
  if (show() && screen_.optPeriodic.value()) tree_.refreshTree();
}

}  // namespace ledgertree::mainform
