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

/// Account 10, account 20, which has movements, and three classes of entities: 1 persons (nobody yet), 2
/// projects, 3 banks. The projects are road (1) > bridge (2) > pillar (3), rail (4) below the bridge; tunnel
/// (5) below the road; and school (6) beside the road. The neighbour 9 counts some objects of the same
/// classes.
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

  /// What the person does on a screen from its opening on; a screen left up is closed by its frame.
  bool classesOf(int account, const OnClasses& person) {
    desktop.inModal("frmAccountRelClasses", [&](ui::Form& form) {
      desktop.tick();
      person(dynamic_cast<entities::frmAccountRelClasses&>(form));
    });
    return entities::showRelClasses(shell, account);
  }
  void expectObjects(const OnObjects& person) {
    desktop.inModal("frmAccountRelObjects", [&, person](ui::Form& form) {
      desktop.tick();
      person(dynamic_cast<entities::frmAccountRelObjects&>(form));
    });
  }
  bool objectsOf(int account, const OnObjects& person) {
    expectObjects(person);
    return entities::showRelObjects(shell, account);
  }

  /// The person finds a class by its name and adds it on a level.
  void add(entities::frmAccountRelClasses& form, const std::string& name, int level) {
    form.mptEntityType.focus();
    form.mptEntityType.press(ui::Key::Escape);
    form.mptEntityType.type(name);
    desktop.settle();
    form.mptEntityType.press(ui::Key::Enter);
    form.cmbLevel.choose(level - 1);
    desktop.tick();
    form.cmdAdd.click();
    desktop.tick();
  }
  static std::string lines(const entities::frmAccountRelClasses& form) {
    std::string text;
    for (const ui::Item& item : form.lstClasses.items()) text += item.text + "\n";
    return text;
  }
  /// Leaves account 10 with these classes: "(10, class, level, all)".
  void related(const std::string& rows) {
    given(
        "delete from tblAccountRelatedClasses where AccountID = 10; insert into tblAccountRelatedClasses "
        "(AccountID, ClassID, Sequence, IncludeAllObjects) values " +
        rows);
  }
  /// What changed in the tables of the classes and of the objects: "classes: +account|class|level|all" and
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

  /// The tree as the screen shows it, a node a line: "-" an open node, "+" a closed one; "x" ticked, "*"
  /// blue.
  static std::string shown(const ui::Tree& tree, ui::NodeId from = ui::kNoNode,
                           const std::string& indent = "") {
    std::string text;
    for (const ui::NodeId node : from == ui::kNoNode ? tree.roots() : tree.children(from)) {
      const char* opened = tree.children(node).empty() ? "" : tree.expanded(node) ? "-" : "+";
      text += indent + opened + tree.text(node) + (tree.checked(node) ? " x" : "");
      text += std::string(tree.image(node) == 2 ? " *" : "") + "\n" + shown(tree, node, indent + " ");
    }
    return text;
  }
  static ui::NodeId node(const entities::frmAccountRelObjects& form, int object) {
    return form.treeObjects.find("N" + std::to_string(object));
  }
};

}  // namespace ledgertree::testing
