#include "mainform/form_main.h"

namespace ledgertree::mainform {

namespace {

/// A form that isn't larger keeps its layout, and its baseline.
constexpr ui::Twips kSmallest = 6000;

void grow(ui::Control& control, int left, int top, int width, int height) {
  ui::Bounds bounds = control.bounds();
  bounds.left += left;
  bounds.top += top;
  bounds.width += width;
  bounds.height += height;
  control.setBounds(bounds);
}

}  // namespace

FormMain::FormMain(shell::Shell& shell) : MainScreen(shell), shell_(shell), tree_(*this, shell) {
  cmdRefreshAccountTree.onClick = [this] { tree_.refreshTree(); };
  optPeriodic.onClick = [this] { tree_.refreshTree(); };
  optPeriodAll.onClick = [this] { tree_.refreshTree(); };
}

void FormMain::load() {
  shell_.chooseKeyboardLayout();
  const auto views = [](shell::Selector& selector, const char* major, const char* minor) {
    selector.setMajorView(major);
    selector.setMinorView(minor);
  };
  views(sltBranch, "vwAccountBranchMajor", "vwAccountBranchMinor");
  views(sltGroup, "vwAccountGroup", "vwAccountGroupMinor");
  views(sltEntityType, "vwAccountClass", "vwAccountClassMinor");
  views(sltPosition, "vwPosition_Employee_Special3", "vwPositionMinor");
  sltParent.setPickerConnection(shell_.context.gConnectionString);
  sltParent.setClosingFlag(false);
  settings = data::readSystemParameters(*shell_.dtEn());
  bindSelectors();
  showEntityFields();
  setWantsMaximised(true);
  baseline_ = size();
  tree_.refreshTree();
}

void FormMain::bindSelectors() {
  sltEntity.setConnectionText(shell_.dtEn()->cnMainData.ConnectionString());
  for (shell::Selector* selector : {&sltGroup, &sltEntityType, &sltBranch, &sltPosition})
    selector->setConnectionText(shell_.context.gConnectionString);
}

/// With several entities an account, they are kept in dialogs of their own and leave the record.
void FormMain::showEntityFields() {
  const bool several = settings.MultiEntityMode;
  cmdRelClasses.setVisible(several);
  for (ui::Control* control :
       std::initializer_list<ui::Control*>{&lblBranch, &lblPosition, &lblRelClass, &lblRelObject,
                                           &sltPosition, &sltBranch, &sltEntityType, &sltEntity})
    control->setVisible(!several);
}

/// The record keeps its width: all extra width goes to the tree, whose commands travel with its right edge.
void FormMain::resized() {
  if (size().width <= kSmallest || size().height <= kSmallest) return;
  const int dW = size().width - baseline_.width;
  const int dH = size().height - baseline_.height;
  grow(treeAccount, 0, 0, dW, dH);
  grow(progressBar, 0, 0, dW, 0);
  grow(frameMain, 0, 0, 0, dH);
  grow(FrameViewType, 0, 0, dW, 0);
  grow(lblMessage, dW, dH, 0, 0);
  grow(Frm7, 0, dH, 0, 0);
  for (ui::Control* control : std::initializer_list<ui::Control*>{
           &cmdRefreshAccountTree, &cmdCopyPeriod, &cmdDeletePeriod, &optPeriodAll, &optPeriodic})
    grow(*control, dW, 0, 0, 0);
  baseline_ = size();
}

void FormMain::View(std::int32_t) {}

void FormMain::unload() {
  shell_.dropDtEn();
  sltParent.setClosingFlag(true);
}

}  // namespace ledgertree::mainform
