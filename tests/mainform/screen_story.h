#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "mainform/main_screen_house.h"

namespace ledgertree::testing {

/// A person at the main screen, on a chart small enough to be read here.
class ScreenStory : public MainScreenHouse {
 protected:
  ScreenStory() {
    database.execute(
        "insert into tblAccount (ID, ParentID, Code, Title, GroupID, BranchID, PositionID, CreateDate,"
        " FarsiCreateDate, Notes, AccountNatureID, IsPermanent, IsClosed, MaxDebit, MaxCredit) values"
        " (1, null, '11', 'دارايي', null, 0, 0, '2023-03-21', '1402/01/01', null, 0, 0, 0, null, null),"
        " (2, 1, '1101', 'دريافتني ها', 4, 2, 9, '2024-03-20', '1403/01/01', 'خط اول' || char(10) || "
        "'خط دوم',"
        "  2, 1, 1, " +
        database.amount(15000000) + ", " + database.amount(12345678) +
        "),"
        " (3, 1, '1102', 'بانک', null, null, null, '2024-03-20', '1403/01/01', '', null, null, null, 0, 0);"
        "insert into tblAccountRelatedObjects (AccountID, AccountGroupID, RelatedClassID, RelatedObjectID)"
        " values (2, 4, 11, 7), (2, 4, 12, 6)");
    person.acts["start"] = [this](auto&) { start(); };
    person.acts["view"] = [this](auto& account) { form->View(std::stoi(account)); };
  }

  void clickInTree(const std::string& key) { form->treeAccount.click(form->treeAccount.find(key)); }

  /// A section of mainform/steps.txt, in which "start", "view 2" and "sql" and a statement are steps too.
  /// Seen is what changed on the screen: the fields, the commands in reach, the mode, the highlighted
  /// account and the focus, the menu that came up last, the marks in the menus, the tree's height, and the
  /// first account below account 1.
  void walk(const std::string& section) {
    person.go("mainform/steps.txt", section, [this] { return changed(); });
  }

 private:
  [[nodiscard]] std::string changed() {
    std::map<std::string, std::string> now;
    for (const auto& [name, value] : fields()) now[name] = value;
    for (const ui::PushButton* command : {&form->cmdNew, &form->cmdEdit, &form->cmdDelete, &form->cmdSave,
                                          &form->cmdCancel, &form->cmdAutoCode})
      if (command->withinReach()) now["in reach"] += command->name().substr(3);
    for (const ui::MenuEntry* entry : {&form->mnuFonc1, &form->mnuFonc2, &form->mnuFonc4})
      if (entry->enabled()) now["in reach"] += entry->name().back();
    if (form->sltParent.IsActive()) now["in reach"] += " Parent";
    const ui::Tree& tree = form->treeAccount;
    now["tree"] = (tree.selected() == ui::kNoNode ? "" : tree.key(tree.selected())) +
                  (tree.enabled() ? "" : " out of reach");
    now["mode"] = std::vector{"view", "edit", "new", "idle"}[static_cast<std::size_t>(form->formMode)];
    if (form->focused() != nullptr) now["focus"] = form->focused()->name();
    if (desktop.poppedUp != nullptr) now["menu"] = desktop.poppedUp->name();
    for (const ui::MenuEntry* entry :
         {&form->mnuView1, &form->mnuView2, &form->mnuViewCode, &form->mnuViewCodeComplete})
      if (entry->checked()) now["marks"] += entry->name().substr(3);
    now["height"] = std::to_string(tree.bounds().height);
    if (const ui::NodeId assets = tree.find("-1:1"); assets != ui::kNoNode && tree.expanded(assets))
      now["first"] = tree.text(tree.children(assets).front());
    std::string text;
    for (const auto& [name, value] : now)
      if (!seen_.contains(name) || seen_[name] != value) text += name + "=" + value + "; ";
    for (const auto& [name, value] : seen_)
      if (!now.contains(name)) text += "no " + name + "; ";
    seen_ = std::move(now);
    std::replace(text.begin(), text.end(), '\n', '/');
    return text;
  }

  std::map<std::string, std::string> seen_;
};

}  // namespace ledgertree::testing
