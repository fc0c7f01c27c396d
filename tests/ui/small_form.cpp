#include "small_form.h"

#include <stdexcept>

#include "support/text_table.h"
#include "text/utf8.h"

namespace ledgertree::testing {

void FormStory::controlChanged(ui::Control& control, ui::Change change) {
  static const char* const names[] = {"Caption", "Text",  "Caret",     "Value", "Enabled", "Visible",
                                      "Bounds",  "Items", "Selection", "List",  "Hint"};
  told += control.name() + "." + names[static_cast<int>(change)] + " ";
}

void FormStory::treeChanged(ui::Tree& tree, const ui::TreeChange& change) {
  static const char* const names[] = {"Cleared",  "ChildrenAdded", "AboutToRemove", "Removed", "NodeChanged",
                                      "Expanded", "Collapsed",     "EnsureVisible", "Selected"};
  const std::string node = change.node == ui::kNoNode ? "-" : tree.key(change.node);
  told += std::string(names[static_cast<int>(change.kind)]) + "(" + node + "," +
          std::to_string(change.first) + "," + std::to_string(change.count) + ") ";
}

void FormStory::formChanged(ui::FormChange change) {
  static const char* const names[] = {"Caption", "Size", "Menu"};
  told += std::string("form.") + names[static_cast<int>(change)] + " ";
}

ToolkitStory::ToolkitStory() {
  listen();
  offerLists();
  offerTree();
  offerText();
  offerTheRest();
}

void ToolkitStory::listen() {
  SmallForm& f = *form;
  f.addObserver(*this);
  f.menu.add(f.entry);
  const auto tell = [this](const char* event) { return [this, event] { told += std::string(event) + " "; }; };
  const auto tellNode = [this](const char* event) {
    return [this, event](ui::NodeId node) { told += event + form->tree.key(node) + " "; };
  };
  f.text.onChange = tell("change");
  f.text.onKeyUp = tell("up");
  f.list.onSelect = f.grid.onSelectionChange = tell("select");
  f.cmdOk.onClick = f.one.onClick = f.check.onClick = f.entry.onClick = tell("click");
  f.tree.onExpand = tellNode("open ");
  f.tree.onNodeClick = tellNode("click ");
  f.tree.onNodeCheck = tellNode("tick ");
}

void ToolkitStory::offerLists() {
  ui::ListBox& list = form->list;
  acts_["list press"] = [&](auto& key) { list.press(chordOf(key).key); };
  acts_["list add"] = [&](auto& text) { list.addItem(text); };
  acts_["list rename"] = [&](auto& text) { list.setItemText(0, text); };
  acts_["list remove"] = [&](auto& line) { list.removeItem(std::stoi(line)); };
  acts_["list select"] = [&](auto& line) { list.select(std::stoi(line)); };
  acts_["list choose"] = [&](auto& line) { list.choose(std::stoi(line)); };
  acts_["list clear"] = [&](auto&) { list.clearItems(); };
  ui::Grid& grid = form->grid;
  acts_["grid press"] = [&](auto& key) { grid.press(chordOf(key).key, chordOf(key).shift); };
  acts_["grid columns"] = [&](auto&) { grid.setColumns({{"رديف", 600}, {"سال", 2000}}); };
  acts_["grid add"] = [&](auto& text) { grid.addRow({text}); };
  acts_["grid select"] = [&](auto& row) { grid.selectRow(std::stoi(row)); };
  acts_["grid extend"] = [&](auto& row) { grid.extendTo(std::stoi(row)); };
  acts_["grid clear"] = [&](auto&) { grid.clearRows(); };
}

void ToolkitStory::offerTree() {
  ui::Tree& tree = form->tree;
  const auto offer = [&](const char* verb, auto act) {
    acts_[std::string("tree ") + verb] = [this, act](auto& about) {
      try {
        const auto [key, more] = cut(about);
        act(form->tree, form->tree.find(key), more);
      } catch (const std::logic_error&) {
        told += "refused ";
      }
    };
  };
  acts_["tree press"] = [&](auto& key) { tree.press(chordOf(key).key); };
  tree.setTitleMark(" ... ");
  acts_["tree type"] = [&](auto& letters) { tree.type(letters, false); };
  acts_["tree keys"] = [&](auto& keys) { tree.type(cut(keys).first, false, cut(keys).second); };
  acts_["tree more"] = [&](auto& letters) { tree.type(letters, true); };
  acts_["tree clear"] = [&](auto&) { tree.clear(); };
  acts_["tree boxes"] = [&](auto&) { tree.setCheckBoxes(true); };
  offer("add", [](auto& in, auto node, auto& key) { in.add(node, key, key); });
  offer("remove", [](auto& in, auto node, auto&) { in.remove(node); });
  offer("expand", [](auto& in, auto node, auto&) { in.expand(node); });
  offer("collapse", [](auto& in, auto node, auto&) { in.collapse(node); });
  offer("click", [](auto& in, auto node, auto&) { in.click(node); });
  offer("tick", [](auto& in, auto node, auto&) { in.tick(node); });
  offer("open", [](auto& in, auto node, auto& how) { in.setExpanded(node, how == "on"); });
  offer("mark", [](auto& in, auto node, auto& how) { in.setChecked(node, how == "on"); });
  offer("see", [](auto& in, auto node, auto&) { in.ensureVisible(node); });
  offer("select", [](auto& in, auto node, auto&) { in.select(node); });
  offer("image", [](auto& in, auto node, auto& image) { in.setImage(node, std::stoi(image)); });
}

void ToolkitStory::offerText() {
  ui::TextField& text = form->text;
  acts_["text press"] = [&](auto& key) { text.press(chordOf(key).key); };
  acts_["text type"] = [&](auto& typed) { text.type(typed); };
  acts_["text paste"] = [&](auto& pasted) { text.paste(pasted); };
  acts_["text edit"] = [&](auto& edit) { text.edited(cut(edit).first, std::stoul(cut(edit).second)); };
  acts_["text up"] = [&](auto&) { text.keyUp(); };
  acts_["text set"] = [&](auto& whole) { text.setText(whole); };
  acts_["text caret"] = [&](auto& place) { text.setCaret(std::stoul(place)); };
  acts_["text limit"] = [&](auto& length) { text.setMaximumLength(std::stoul(length)); };
  acts_["text lock"] = [&](auto& how) { text.setLocked(how == "on"); };
}

void ToolkitStory::offerTheRest() {
  SmallForm& f = *form;
  acts_["cmdOk press"] = [&](auto& key) { f.cmdOk.press(chordOf(key).key); };
  acts_["check click"] = [&](auto&) { f.check.click(); };
  acts_["check set"] = [&](auto& value) { f.check.setValue(std::stoi(value)); };
  for (ui::RadioButton* radio : {&f.one, &f.two, &f.alone}) {
    acts_[radio->name() + " click"] = [radio](auto&) { radio->click(); };
    acts_[radio->name() + " set"] = [radio](auto& how) { radio->setValue(how == "on"); };
  }
  acts_["label caption"] = [&](auto& text) { f.label.setCaption(text); };
  acts_["progress set"] = [&](auto& value) {
    f.progress.setProgress(std::stoi(value), std::stoi(cut(value).second), "متن");
  };
  acts_["form caption"] = [&](auto& text) { f.setCaption(text); };
  acts_["form width"] = [&](auto& width) { f.resize({std::stoi(width), 4000}); };
  acts_["form press"] = [&](auto& key) {
    if (!f.press(chordOf(key))) told += "unused ";
  };
  acts_["entry click"] = [&](auto&) { f.entry.click(); };
  acts_["menu show"] = [&](auto& how) { f.menu.setVisible(how == "on"); };
  acts_["menu enable"] = [&](auto& how) { f.menu.setEnabled(how == "on"); };
  acts_["menu check"] = [&](auto& how) { f.menu.setChecked(how == "on"); };
  common_["look"] = [](auto&, auto&) {};
  common_["focus"] = [](auto& control, auto&) { control.focus(); };
  common_["show"] = [](auto& control, auto& how) { control.setVisible(how == "on"); };
  common_["enable"] = [](auto& control, auto& how) { control.setEnabled(how == "on"); };
  common_["hint"] = [](auto& control, auto& text) { control.setHint(text); };
  common_["left"] = [](auto& control, auto& left) { control.setBounds({.left = std::stoi(left)}); };
}

void ToolkitStory::go(const std::string& section) {
  std::string name;
  walk(
      "ui/steps.txt", section,
      [&](const std::string& step) {
        name = cut(step).first;
        act(name, cut(step).second);
      },
      [&] { return trimmed(seen(form->find(name))); }, [this] { return std::exchange(told, {}); });
}

void ToolkitStory::act(const std::string& name, const std::string& doing) {
  const auto [verb, about] = cut(doing);
  if (const auto own = acts_.find(name + " " + verb); own != acts_.end()) return own->second(about);
  if (const auto any = common_.find(verb); any != common_.end()) return any->second(*form->find(name), about);
  acts_.at(name + " press")(doing);
}

namespace {

std::string linesOf(const ui::Tree& tree, const std::vector<ui::NodeId>& nodes) {
  std::string lines;
  for (const ui::NodeId node : nodes) {
    const std::string line = tree.key(node) + (tree.checked(node) ? "*" : "");
    lines += (node == tree.selected() ? "[" + line + "]" : line) + " ";
    if (tree.expanded(node)) lines += linesOf(tree, tree.children(node));
  }
  return lines;
}

std::string linesOf(const ui::ItemsControl& list) {
  std::string lines;
  for (const ui::Item& item : list.items()) {
    const bool selected = list.selected() == &item - list.items().data();
    lines += (selected ? "[" + item.text + "]" : item.text) + " ";
  }
  return lines;
}

}  // namespace

std::string ToolkitStory::seen(const ui::Control* control) const {
  if (control == nullptr) return "";
  std::string reach = control->shown() ? "off " : "hidden ";
  if (control->withinReach()) reach = control->hasFocus() ? "in focus " : "";
  if (control == &form->list) return reach + linesOf(form->list);
  if (control == &form->tree) return reach + linesOf(form->tree, form->tree.roots());
  if (control == &form->grid)
    return reach + std::to_string(form->grid.currentRow()) + ".." +
           std::to_string(form->grid.selectionEnd()) + " of " + std::to_string(form->grid.rowCount());
  if (control == &form->text) {
    auto letters = text::charactersOf(form->text.text());
    return reach + text::textOf(letters.insert(form->text.caret(), 1, U'^'));
  }
  if (const auto* radio = dynamic_cast<const ui::RadioButton*>(control))
    return reach + (radio->value() ? "yes" : "no");
  if (control == &form->check) return reach + std::to_string(form->check.value());
  if (control == &form->label) return reach + form->label.caption();
  if (control != &form->progress) return reach;
  return reach + std::to_string(form->progress.value()) + "/" + std::to_string(form->progress.maximum()) +
         " " + form->progress.text();
}

}  // namespace ledgertree::testing
