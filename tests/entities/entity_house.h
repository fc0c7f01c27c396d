#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "data/data_error.h"
#include "entities/rel_classes.h"
#include "entities/rel_objects.h"
#include "support/table_watch.h"

namespace ledgertree::testing {

/// Account 10, account 20, which has movements, and three classes of entities: 1 persons (none yet), 2
/// projects, 3 banks. The projects are road (1) > bridge (2) > pillar (3), rail (4) under the bridge; tunnel
/// (5) under the road; and school (6) beside the road. The neighbour, account 9, includes some objects of the
/// same classes.
class EntityHouse : public WatchedHouse {
 protected:
  EntityHouse() {
    given(R"(
      insert into tblAccount (ID, Code, Title) values (9, '0', 'همسايه'), (10, '1', 'دارايي'), (20, '2', 'بدهي');
      insert into tblAccountDocument (ID, FarsiDocumentDate) values (501, '1403/01/01');
      insert into tblAccountDocumentDetail (ID, DocumentID, AccountID) values (1, 501, 20);
      insert into tblAccountClass (ID, Code, Name, ViewMajor, ViewMinor) values
        (1, '10', 'اشخاص', 'vwEntityPerson', 'vwEntityPersonMinor'),
        (2, null, 'پروژه ها', 'vwEntityProject', 'vwEntityProjectMinor'),
        (3, '30', 'بانکها', 'vwEntityBank', 'vwEntityBankMinor');
      insert into tblEntityProject (ID, ParentID, Name) values
        (1, null, 'Road'), (2, 1, 'Bridge'), (3, 2, 'Pillar'), (4, 2, 'Rail'), (5, 1, 'Tunnel'), (6, null, 'School');
      insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence, IncludeAllObjects) values
        (9, 1, 1, 1), (9, 2, 2, 0), (9, 3, 3, null);
      insert into tblAccountRelatedClassesDetail (AccountID, ClassID, ObjectID) values
        (9, 2, 3), (9, 2, 5), (9, 3, 6), (10, 1, 4), (10, 3, 6);
    )");
  }

  using OnClasses = std::function<void(entities::frmAccountRelClasses&)>;
  using OnObjects = std::function<void(entities::frmAccountRelObjects&)>;

  /// User actions on a screen once it opens; a screen that is still open is closed with its title bar.
  bool classesOf(int account, const OnClasses& act) {
    inScreen<entities::frmAccountRelClasses>("frmAccountRelClasses", [&](auto& form) {
      desktop.tick();
      act(form);
    });
    return entities::showRelClasses(shell, account);
  }
  void expectObjects(const OnObjects& act) {
    inScreen<entities::frmAccountRelObjects>("frmAccountRelObjects", [this, act](auto& form) {
      desktop.tick();
      act(form);
    });
  }
  bool objectsOf(int account, const OnObjects& act) {
    expectObjects(act);
    return entities::showRelObjects(shell, account);
  }

  /// Walks a section of entities/steps.txt once the screen opens; returns whether the user saved.
  bool onClasses(int account, const std::string& section) {
    return classesOf(account, [&](entities::frmAccountRelClasses& form) { walkClasses(form, section); });
  }
  bool onObjects(int account, const std::string& section) {
    return objectsOf(account, [&](entities::frmAccountRelObjects& form) { walkObjects(form, section); });
  }
  /// Seen are the lines, the selected one in brackets, and the enabled commands for them.
  void walkClasses(entities::frmAccountRelClasses& form, const std::string& section) {
    person.acts["add"] = [&](const std::string& level) { add(form, level.substr(2), level.front() - '0'); };
    person.go(
        "entities/steps.txt", section,
        [&] {
          desktop.tick();
          std::string text;
          for (int line = 0; line < static_cast<int>(form.lstClasses.items().size()); ++line) {
            const std::string& item = form.lstClasses.items()[static_cast<std::size_t>(line)].text;
            text += (line == form.lstClasses.selected() ? "[" + item + "]" : item) + ", ";
          }
          text += "/";
          for (const auto* button : {&form.cmdAdd, &form.cmdDelete, &form.cmdMoveDown, &form.cmdMoveUp})
            if (button->enabled()) text += " " + button->caption();
          return text;
        },
        [&] { return stored(); });
  }
  /// Seen are the class, whether it includes all objects, what is disabled, and the tree.
  void walkObjects(entities::frmAccountRelObjects& form, const std::string& section) {
    person.go(
        "entities/steps.txt", section,
        [&] {
          std::string text = form.cmbClass.selectedText();
          if (form.chkAllObjects.value() != 0) text += " all";
          if (!form.chkAllObjects.enabled()) text += "!";
          return text + (form.gbObjects.enabled() ? ": " : " without: ") + shown(form.treeObjects);
        },
        [&] { return stored(); });
  }

  /// The user finds a class by its name and adds it on a level.
  void add(entities::frmAccountRelClasses& form, const std::string& name, int level) {
    form.mptEntityType.focus();
    form.mptEntityType.press(ui::Key::Escape);
    form.mptEntityType.type(name);
    desktop.settle();
    form.mptEntityType.press(ui::Key::Enter);
    form.cmbLevel.choose(level - 1);
    desktop.tick();
    form.cmdAdd.click();
  }
  /// Stores these classes for account 10: "(10, class, level, all)".
  void related(const std::string& rows) {
    given(
        "delete from tblAccountRelatedClasses where AccountID = 10; insert into tblAccountRelatedClasses "
        "(AccountID, ClassID, Sequence, IncludeAllObjects) values " +
        rows);
  }
  /// The changes in the tables of the classes and of the objects: "classes: +account|class|level|all" and
  /// "objects: -account|class|object".
  std::string stored() {
    std::string found = changes();
    for (const auto& [table, name] : {std::pair("tblAccountRelatedClassesDetail:", "objects:"),
                                      std::pair("tblAccountRelatedClasses:", "classes:")})
      if (const auto place = found.find(table); place != std::string::npos)
        found.replace(place, std::string(table).size(), name);
    return found;
  }
  template <typename Command>
  std::string storedBy(Command& command) {
    command.click();
    return stored();
  }

  int openHandles() {
    int open = 0;
    for (const data::RecordHandle* handle : shell.dtEn()->handles()) open += handle->State();
    return open;
  }

  /// The tree on the screen, children in parentheses: "+" a closed node; "x" ticked, "*" blue, "@" selected.
  static std::string shown(const ui::Tree& tree, ui::NodeId from = ui::kNoNode) {
    std::string text;
    for (const ui::NodeId node : from == ui::kNoNode ? tree.roots() : tree.children(from)) {
      const std::string below = shown(tree, node);
      text += (text.empty() ? "" : ", ") + std::string(below.empty() || tree.expanded(node) ? "" : "+");
      text += tree.text(node) + (tree.checked(node) ? " x" : "");
      if (const int picture = tree.picture(node); picture != 2)
        text += picture == 3 ? " *" : " #" + std::to_string(picture);
      text += std::string(tree.selected() == node ? " @" : "") + (below.empty() ? "" : " (" + below + ")");
    }
    return text;
  }
  static ui::NodeId node(const entities::frmAccountRelObjects& form, int object) {
    return form.treeObjects.find("N" + std::to_string(object));
  }
};

}  // namespace ledgertree::testing
