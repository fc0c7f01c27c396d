#include "mainform/form/form_main.h"

#include <exception>
#include <initializer_list>

#include "mainform/form_mode.h"

namespace ledgertree::mainform {

FormMain::FormMain(shell::Shell& shell)
    : MainScreen(shell),
      shell_(shell),
      rules_(*this, shell),
      record_(*this, shell, [this](std::int32_t classID) { return rules_.ruleOfClass(classID); }),
      tree_(*this, shell),
      commands_(*this, shell, record_, tree_),
      accountMenu_(*this, shell, tree_),
      saving_(*this, shell, record_, tree_),
      deletion_(*this, shell, record_, tree_),
      screens_(*this, shell, tree_),
      others_(*this, shell, record_, tree_),
      history_(*this, shell, record_, tree_) {
  wireLayout();
  tree_.onAccountClick = [this](std::int32_t accountID) { record_.showAccount(accountID); };
  tree_.onOtherClick = [this] { record_.goIdle(); };
  record_.onShown = [this](std::int32_t accountID) {
    tree_.keepHighlightFor(accountID);
    others_.clearReport();
    shell_.news.add(ChartEvent::Kind::Shown,
                    accountID < 1 ? std::vector<std::int32_t>{} : std::vector{accountID});
  };
  onCommand = [this] {
    // If the host has set another database meanwhile, it takes effect at the next ClearShow or View: a screen
    // opened from here must list what its commands change.
    shell_.context.gConnectionString = shell_.dtEn()->cnMainData.ConnectionString();
    tree_.settle();
    others_.clearReport();
  };
  Timer1.onTick = [this] { followRecord(*this); };
}

void FormMain::ClearShow() {
  ui::Desktop& shownOn = desktop();
  bool modal = false;
  try {
    shownOn.show(*this);
  } catch (const ui::DesktopError& refusal) {
    if (refusal.number() != ui::DesktopError::kNoModelessForms) throw;
    modal = true;
  }
  if (modal) shownOn.showModal(*this);  // the form may be gone when it returns
}

void FormMain::load() {
  loadedFrom_ = shell_.dtEn()->cnMainData.ConnectionString();
  shell_.chooseKeyboardLayout();
  nameViews();
  sltParent.setPickerConnection(shell_.context.gConnectionString);
  sltParent.setClosingFlag(false);
  settings = data::readSystemParameters(*shell_.dtEn());
  connectSelectors();
  showEntityFields();
  others_.begin();
  showDivider();
  commands_.showOffers();
  accountMenu_.showOffer();
  history_.begin();
  setWantsMaximised(true);
  baseline_ = size();
  record_.goIdle();
  tree_.refreshTree();
  shell_.showNews();
}

void FormMain::nameViews() {
  const auto name = [](shell::Selector& selector, const char* major, const char* minor) {
    selector.setMajorView(major);
    selector.setMinorView(minor);
  };
  name(sltBranch, "vwAccountBranchMajor", "vwAccountBranchMinor");
  name(sltGroup, "vwAccountGroup", "vwAccountGroupMinor");
  name(sltEntityType, "vwAccountClass", "vwAccountClassMinor");
  name(sltPosition, "vwPosition_Employee_Special3", "vwPositionMinor");
}

void FormMain::connectSelectors() {
  sltEntity.setConnectionText(shell_.dtEn()->cnMainData.ConnectionString());
  for (shell::Selector* selector : {&sltGroup, &sltEntityType, &sltBranch, &sltPosition})
    selector->setConnectionText(shell_.context.gConnectionString);
}

void FormMain::unload() {
  const auto ignoringFailures = [](const auto& step) {
    try {
      step();
    } catch (const std::exception&) {
      // The screen is closing: the next step ends what this one couldn't.
    }
  };
  ignoringFailures([this] { shell_.dropDtEn(); });
  ignoringFailures([this] { sltParent.setClosingFlag(true); });
  ignoringFailures([this] { screens_.unload(); });
}

}  // namespace ledgertree::mainform
