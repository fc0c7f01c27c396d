#include "mainform/form/commands.h"

#include "mainform/screen_story.h"

namespace ledgertree::testing {
namespace {

class CommandsStory : public ScreenStory {
 protected:
  CommandsStory() {
    shell.offers = {Offer::HiddenCommands, Offer::Export};
    start();
  }
};

TEST_F(CommandsStory, AMenuOpensAtTheCornerOfItsButton) {
  form->Frame1.setBounds({30, 40, 13620, 600});
  form->cmdi12.setVisible(true);
  const std::pair<ui::PushButton*, ui::MenuEntry*> menus[] = {{&form->cmdTools, &form->i12},
                                                              {&form->cmdOperations, &form->mnuOperations},
                                                              {&form->cmdi12, &form->i12}};
  for (const auto& [button, menu] : menus) {
    button->click();
    EXPECT_EQ(desktop.poppedUp, menu);
    EXPECT_EQ(desktop.poppedUpLeft, button->bounds().left + 30);
    EXPECT_EQ(desktop.poppedUpTop, button->bounds().top + 40);
  }
}

TEST_F(CommandsStory, EachChangeOfTheViewReadsTheTreeAnew) {
  walk("each change of the view");
  form->optPeriodic.click();
  EXPECT_EQ(form->treeAccount.text(form->treeAccount.roots().front()), "سرفصل حسابها");
  walk("back from the periods");
}

TEST_F(CommandsStory, TheMenuOfAnAccountIsASecondRoadToTheButtons) {
  walk("an account without a menu");
  shell.offers = {Offer::ContextMenu};
  start();
  walk("the menu of an account");
  EXPECT_EQ(desktop.poppedUpLeft, form->treeAccount.bounds().left + 300);
  EXPECT_EQ(desktop.poppedUpTop, form->treeAccount.bounds().top + 150);
  walk("from a search to the tree");
}

TEST_F(CommandsStory, WithoutItsDetailsALowScreenHasATreeOfNoHeight) {
  form->resize({.width = 13620, .height = 1825});
  ui::Bounds tree = form->treeAccount.bounds();
  tree.height = 0;
  for (const int height : {1825, 1000}) {
    form->resize({.width = 13620, .height = height});
    form->mnuView2.click();
    EXPECT_EQ(form->treeAccount.bounds(), tree);
  }
}

TEST_F(CommandsStory, WhatIsOutOfReachDoesNothingHarmfulWhereItIsPressed) {
  form->View(2);
  form->cmdRelClasses.setVisible(true);
  form->cmdRelClasses.click();
  EXPECT_EQ(desktop.showings, std::vector<std::string>{"FormMain"})
      << "one entity an account has no such screen";
  form->cmdCancel.setEnabled(true);
  form->cmdCancel.click();
  EXPECT_FALSE(form) << "where nothing is typed, giving up is leaving";
}

}  // namespace
}  // namespace ledgertree::testing
