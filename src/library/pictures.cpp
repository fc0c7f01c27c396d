#include "ledgertree/pictures.h"

#include <filesystem>
#include <stdexcept>

#include "qt/qt_desktop.h"
#include "shell/control/ledger_tree_control_session.h"

namespace ledgertree {

namespace {

mainform::FormMain& openForm() {
  ControlSession::process().requireAnswered();
  mainform::FormMain* form = ControlSession::process().form();
  if (form == nullptr) throw std::runtime_error("no screen is open");
  return *form;
}

/// Opens the first branch of the tree down to an account without children, and returns that account.
ui::NodeId openFirstBranch(ui::Tree& tree) {
  ui::NodeId node = tree.roots().front();
  while (!tree.children(node).empty()) {
    tree.expand(node);
    node = tree.children(node).front();
  }
  return node;
}

void writeLevels(const ui::Tree& tree, ui::NodeId node, int depth, int levels, std::string& text) {
  text.append(static_cast<std::size_t>(depth) * 2, ' ').append(tree.text(node)).append("\n");
  if (depth == levels) return;
  for (const ui::NodeId child : tree.children(node)) writeLevels(tree, child, depth + 1, levels, text);
}

}  // namespace

std::vector<std::string> drawScreens(const std::string& folder) {
  mainform::FormMain& form = openForm();
  auto& desktop = dynamic_cast<qt::QtDesktop&>(ControlSession::process().shell().desktop());
  std::filesystem::create_directories(folder);
  std::vector<std::string> pictures;
  const auto draw = [&](const char* name) {
    pictures.push_back((std::filesystem::path(folder) / name).string());
    desktop.renderToPng(form, pictures.back(), {1360, 760});
  };
  ui::Tree& tree = form.treeAccount;
  draw("idle.png");
  tree.click(openFirstBranch(tree));
  draw("view.png");
  form.cmdEdit.click();
  if (form.isTyping()) draw("edit.png");
  form.View(0);
  form.optPeriodic.click();
  openFirstBranch(tree);
  draw("periods.png");
  form.optPeriodAll.click();
  return pictures;
}

std::string treeAsText(int levels) {
  ui::Tree& tree = openForm().treeAccount;
  std::vector<ui::NodeId> level = tree.roots();
  for (int depth = 0; depth < levels; ++depth) {
    std::vector<ui::NodeId> below;
    for (const ui::NodeId node : level) {
      tree.expand(node);
      below.insert(below.end(), tree.children(node).begin(), tree.children(node).end());
    }
    level = std::move(below);
  }
  std::string text;
  for (const ui::NodeId root : tree.roots()) writeLevels(tree, root, 0, levels, text);
  return text;
}

}  // namespace ledgertree
