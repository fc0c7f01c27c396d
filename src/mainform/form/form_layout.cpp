#include <algorithm>
#include <initializer_list>

#include "mainform/form/form_main.h"

// Layout of the main screen: depends on its size, the divider, and how entities are kept.

namespace ledgertree::mainform {

namespace {

/// A form no wider or no higher than this keeps its layout and its baseline.
constexpr ui::Twips kSmallest = 6000;
/// At this width the tree is as narrow as its widest command.
constexpr ui::Twips kNarrowest = 10410;
constexpr ui::Twips kGap = 60;  ///< between neighbouring controls

constexpr ui::Twips kViewInset = 90;  ///< between the frame's edge and the view buttons
constexpr ui::Twips kViewHeight = 390;
constexpr ui::Twips kTreeLeft = 7680;
constexpr ui::Twips kRecordWidth = 7560;
/// The most width that the record can give to the tree without squeezing its own commands.
constexpr ui::Twips kMostGiven = 2970;
constexpr ui::Twips kMessageWidth = 3960;
constexpr ui::Twips kMessageWords = 1290;  ///< of the message with the mode
constexpr ui::Twips kRow = 330;            ///< row height of the record

void grow(ui::Control& control, int left, int top, int width, int height) {
  ui::Bounds bounds = control.bounds();
  bounds.left += left;
  bounds.top += top;
  bounds.width += width;
  bounds.height += height;
  control.setBounds(bounds);
}

/// Lays out controls in rows from right to left, as many side by side as fit.
struct Rows {
  ui::Twips left, width, gap, pitch;

  /// Positions the controls, with the first row at `top`; returns the height that the rows after the first
  /// one take.
  [[nodiscard]] ui::Twips set(ui::Twips top, std::initializer_list<ui::Control*> controls) const {
    const ui::Twips first = top;
    ui::Twips right = left + width;
    for (ui::Control* control : controls) {
      ui::Bounds bounds = control->bounds();
      if (right - bounds.width < left && right < left + width) {
        right = left + width;
        top += pitch;
      }
      bounds.left = right - bounds.width;
      bounds.top = top;
      control->setBounds(bounds);
      right = bounds.left - gap;
    }
    return top - first;
  }
};

}  // namespace

void FormMain::wireLayout() {
  setSmallestSize({kNarrowest, kSmallest + 1});
  divider.onMove = [this](ui::Twips left) {
    shell_.givenToTree = std::clamp(kTreeLeft - kGap - left, 0, kMostGiven);
    giveToTree(shell_.givenToTree);
  };
}

/// The record keeps its width: all extra width goes to the tree, whose commands move with its right edge. If
/// the tree is narrower than designed, they wrap to further rows, or they would cover the record.
void FormMain::resized() {
  if (size().width <= kSmallest || size().height <= kSmallest) return;
  const int dW = size().width - baseline_.width;
  const int dH = size().height - baseline_.height;
  grow(treeAccount, 0, 0, dW, dH);
  grow(progressBar, 0, 0, dW, 0);
  grow(frameMain, 0, 0, 0, dH);
  grow(lblMessage, 0, dH, 0, 0);
  grow(Frm7, 0, dH, 0, 0);
  baseline_ = size();
  setTreeHead();
}

void FormMain::setTreeHead() {
  ui::Bounds tree = treeAccount.bounds();
  // The bar's buttons are at its right end: a narrow window must show that end.
  ui::Bounds bar = Frame1.bounds();
  bar.left = std::min(tree.left + tree.width + kGap - bar.width, 0);
  Frame1.setBounds(bar);

  ui::Bounds views = FrameViewType.bounds();
  const Rows buttons{.left = kViewInset, .width = tree.width - 2 * kViewInset, .gap = 180, .pitch = 300};
  const ui::Twips more = buttons.set(optPeriodic.bounds().top, {&optPeriodic, &optPeriodAll});
  FrameViewType.setBounds({tree.left, views.top, tree.width, kViewHeight + more});

  const Rows commands{.left = tree.left, .width = tree.width, .gap = kGap, .pitch = 390};
  const ui::Twips first = views.top + kViewHeight + more + 30;
  const ui::Twips top =
      first + 390 + commands.set(first, {&cmdRefreshAccountTree, &cmdCopyPeriod, &cmdDeletePeriod});
  tree.height += tree.top - top;
  tree.top = top;
  treeAccount.setBounds(tree);
  ui::Bounds message = lblMessage.bounds();
  // The text on others' changes is a sentence: it gets the width that the message leaves.
  message.width = lblOthers.visible() ? kMessageWords : std::min(tree.width, kMessageWidth);
  message.left = tree.left + tree.width - message.width;
  lblMessage.setBounds(message);
  lblOthers.setBounds(
      {tree.left, message.top, std::max(message.left - tree.left - kGap / 2, 0), message.height});
  const ui::Twips bottom = Frm7.bounds().top + Frm7.bounds().height;
  divider.setBounds({tree.left - kGap, views.top, kGap, bottom - views.top});
}

void FormMain::showDivider() {
  const bool offered = shell_.isOffered(Offer::Divider);
  divider.setVisible(offered);
  frameMain.setScrolledWidth(offered ? kRecordWidth : 0);
  giveToTree(offered ? shell_.givenToTree : 0);
}

void FormMain::giveToTree(ui::Twips width) {
  const ui::Twips more = width - (kTreeLeft - treeAccount.bounds().left);
  grow(frameMain, 0, 0, -more, 0);
  grow(Frm7, 0, 0, -more, 0);
  for (ui::Control* command : std::initializer_list<ui::Control*>{&cmdRelClasses, &cmdPeriodBranch})
    grow(*command, -more, 0, 0, 0);
  grow(treeAccount, -more, 0, more, 0);
  setTreeHead();
}

/// If accounts have several entities, these are kept in separate dialogs and their fields are hidden. The
/// controls below move up by those two rows.
void FormMain::showEntityFields() {
  const bool several = settings.MultiEntityMode;
  cmdRelClasses.setVisible(several);
  for (ui::Control* control :
       std::initializer_list<ui::Control*>{&lblBranch, &lblPosition, &lblRelClass, &lblRelObject,
                                           &sltPosition, &sltBranch, &sltEntityType, &sltEntity})
    control->setVisible(!several);
  const ui::Twips up = several ? 2 * kRow : 0;
  for (const auto& [control, top] :
       std::initializer_list<std::pair<ui::Control*, ui::Twips>>{{&lblMaxDebit, 2130},
                                                                 {&lblMaxCredit, 2130},
                                                                 {&txtMaxDebit, 2100},
                                                                 {&txtMaxCredit, 2100},
                                                                 {&lblNotes, 2460}}) {
    ui::Bounds bounds = control->bounds();
    bounds.top = top - up;
    control->setBounds(bounds);
  }
  ui::Bounds notes = txtNotes.bounds();
  notes.top = 2430 - up;
  notes.height = 450 + up;
  txtNotes.setBounds(notes);
}

}  // namespace ledgertree::mainform
