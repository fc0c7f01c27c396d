#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "mainform/form/form_main.h"
#include "support/test_house.h"

namespace ledgertree::testing {

/// The fixture of the main screen: user 1 with all rights and user 2 with none, two of each kind of thing
/// that an account can reference, with distinct numbers, and no accounts. "start" and "view 2" are steps of
/// the host, and so is what follows "meanwhile", each time a notice is up.
class MainScreenHouse : public FaultyHouse {
 protected:
  MainScreenHouse() {
    database.execute(
        "insert into tblUser (ID, Name) values (1, 'حسابدار'), (2, 'بيننده');"
        "insert into tblUserPermission (UserID, FormPermissionID) values"
        " (1, 301), (1, 30101), (1, 30102), (1, 30103);"
        "insert into tblAccountGroup (ID, Code, Name) values (4, '04', 'مشتريان'), (5, '05', 'فروشندگان');"
        "insert into tblAccountBranch (ID, Code, Name) values (2, '02', 'کارخانه'), (3, '03', 'دفتر');"
        "insert into tblAccCostCenter (ID, Code, Name) values (9, '310', 'مونتاژ'), (10, '320', 'رنگ');"
        "insert into tblAccountClass (ID, Code, Name, ViewMajor, ViewMinor) values"
        " (11, '01', 'اشخاص', 'vwEntityPerson', 'vwEntityPersonMinor'),"
        " (12, '02', 'پروژه ها', 'vwEntityProject', 'vwEntityProjectMinor');"
        "insert into tblEntityPerson (ID, Code, Name) values (7, '1007', 'بام'), (8, '1008', 'مغان');"
        "insert into tblEntityProject (ID, Code, Name) values (6, '06', 'سد'), (7, '07', 'پل')");
    person.acts["start"] = [this](auto&) { start(); };
    person.acts["view"] = [this](auto& account) { form->View(std::stoi(account)); };
    person.acts["meanwhile"] = [this](auto& step) {
      notices.onShow = [this, step](const Notice&) { person.act(step); };
    };
  }

  void TearDown() override {
    for (const auto& gateway : gateways) {
      for (const data::RecordHandle* handle : gateway->handles())
        EXPECT_EQ(handle->State(), 0) << handle->name() << " was left open";
    }
    EXPECT_EQ(notices.taken(), "") << "it was told, and the story doesn't say so";
    FaultyHouse::TearDown();
  }

  /// Opens the screen as the control does.
  void start() {
    if (!shell.hasDtEn()) shell.resetDataConnection();
    gateways.push_back(shell.dtEn());
    form = std::make_unique<mainform::FormMain>(shell);
    form->load();
    form->onClosed = [this] { form.reset(); };
    desktop.show(*form);
  }
  /// Types into a picker, and picks the first hit.
  void pickFirst(ui::LookupField& field, const std::string& text) {
    field.type(text);
    field.press(ui::Key::Enter);
    desktop.settle();
  }
  void answer(bool yes) { notices.answer(yes ? 1 : 0); }

  using Fields = std::vector<std::pair<std::string, std::string>>;
  /// The record as the user reads it, without blank fields and without today's date in datCreate. A radio
  /// group is the number that a save would write, and its chosen button.
  [[nodiscard]] Fields fields() const {
    const mainform::FormMain& f = *form;
    Fields all;
    const auto line = [&all](const std::string& name, const std::string& value) {
      if (!value.empty()) all.emplace_back(name, value);
    };
    for (const ui::TextField* field : {&f.txtID, &f.txtMotherCode}) line(field->name(), field->text());
    for (const mainform::TypedField& field : mainform::typedFields())
      line((f.*field.control).name(), (f.*field.control).text());
    for (const shell::AccountPicker* picker : {&f.sltAccount, &f.sltParent})
      if (!picker->IsEmpty())
        line(picker->name(), std::to_string(picker->AccountID()) + " " + picker->text());
    for (const shell::Selector* selector :
         {&f.sltGroup, &f.sltBranch, &f.sltPosition, &f.sltEntityType, &f.sltEntity})
      if (!selector->IsEmpty())
        line(selector->name(), std::to_string(selector->SelectedID()) + " " + selector->text());
    if (f.datCreate.farsidate() != "1405/09/01") line("datCreate", f.datCreate.farsidate());
    const auto radios = [&line](int value, const std::vector<const ui::RadioButton*>& buttons) {
      std::string on = value == 0 ? "" : std::to_string(value);
      for (const ui::RadioButton* button : buttons)
        if (button->value()) on = std::to_string(value) + " " + button->name();
      line(buttons.front()->frame()->name(), on);
    };
    radios(f.NatureValue, {&f.optDebit, &f.OptCredit, &f.OptDebitAndCredit});
    radios(f.PermanentValue, {&f.OptReg, &f.OptNotReg});
    radios(f.ClosedValue, {&f.OptOpen, &f.OptClose});
    return all;
  }
  /// The same, one field per line.
  [[nodiscard]] std::string record() const {
    std::string text;
    for (const auto& [name, value] : fields()) text.append(name).append("=").append(value).append("\n");
    return text;
  }
  /// The labels in the tree, each open level indented by one more blank; those marked with "+" have children.
  [[nodiscard]] std::string treeLabels() const {
    std::string text;
    const std::function<void(ui::NodeId, const std::string&)> add = [&](ui::NodeId node,
                                                                        const std::string& blanks) {
      const ui::Tree& tree = form->treeAccount;
      const bool more = !tree.expanded(node) && !tree.children(node).empty();
      text += blanks + tree.text(node) + (more ? " +\n" : "\n");
      if (!tree.expanded(node)) return;
      for (const ui::NodeId child : tree.children(node)) add(child, blanks + " ");
    };
    for (const ui::NodeId child : form->treeAccount.children(form->treeAccount.find("-1:-1"))) add(child, "");
    return text;
  }

  /// What changed on the screen since the last call: the fields, the enabled commands, the mode, the
  /// highlighted account and the focus, the last context menu, the check marks in the menus, the tree's
  /// height, and the first account below account 1.
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
    for (const ui::MenuEntry* entry : {&form->mnuNewBelow, &form->mnuEditAccount, &form->mnuDeleteAccount,
                                       &form->mnuPeriodsOfAccount, &form->mnuCopyCode})
      if (!entry->enabled()) now["not in the menu"] += entry->name().substr(3);
    if (!desktop.copied.empty()) now["copied"] = desktop.copied;
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
    return text;
  }

  /// Those of all starts, checked for open handles at the end.
  std::vector<std::shared_ptr<data::DtEn>> gateways;
  std::unique_ptr<mainform::FormMain> form;

 private:
  std::map<std::string, std::string> seen_;
};

}  // namespace ledgertree::testing
