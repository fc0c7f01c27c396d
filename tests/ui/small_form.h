#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/scripted_desktop.h"
#include "support/steps.h"
#include "ui/buttons.h"
#include "ui/grid.h"
#include "ui/items.h"
#include "ui/lookup_field.h"
#include "ui/menu.h"
#include "ui/text_field.h"
#include "ui/timer.h"
#include "ui/tree.h"

namespace ledgertree::testing {

/// A look-up that records its requests; the story answers them.
class WishingField : public ui::LookupField {
 public:
  using LookupField::hold;
  using LookupField::LookupField;
  using LookupField::setActive;
  using LookupField::setDetail;
  using LookupField::setTitle;
  using LookupField::showRows;
  [[nodiscard]] int id() const { return held().id; }
  std::string wishes;
  ui::LookupRow one;  ///< the row that a text means

 private:
  void wishSearch(const std::string& text) override { wishes += "search<" + text + "> "; }
  void wishMore() override { wishes += "more "; }
  void wishStop() override { wishes += "stop "; }
  void wishDetail() override { wishes += "detail "; }
  [[nodiscard]] ui::LookupRow wishOne(const std::string& text, bool first) override {
    wishes += (first ? "first<" : "one<") + text + "> ";
    return one;
  }
  void heldByPerson() override { wishes += "chosen<" + std::to_string(id()) + "> "; }
};

class SmallForm : public ui::Form {
 public:
  explicit SmallForm(ui::Surroundings surroundings)
      : Form(std::move(surroundings), "SmallForm", "فرم", {6000, 3000}) {}

  int unloads = 0;
  int resizes = 0;
  ui::Frame frame{*this, "frame", {0, 0, 3000, 3000}};
  ui::PushButton cmdOk{*this, "cmdOk", {0, 0, 900, 375}, "ثبت", &frame};
  ui::PushButton cmdCancel{*this, "cmdCancel", {900, 0, 900, 375}, "خروج", &frame};
  ui::TextField text{*this, "text", {0, 400, 900, 315}, &frame};
  ui::RadioButton one{*this, "one", {0, 800, 900, 315}, "1", &frame};
  ui::RadioButton two{*this, "two", {0, 1200, 900, 315}, "2", &frame};
  ui::RadioButton alone{*this, "alone", {3000, 1200, 900, 315}, "3"};
  ui::CheckBox check{*this, "check", {0, 1600, 900, 315}, "4", &frame};
  ui::Label label{*this, "label", {0, 2000, 900, 315}, "نام", &frame};
  ui::ProgressBar progress{*this, "progress", {0, 2400, 900, 90}};
  ui::ListBox list{*this, "list", {3000, 0, 900, 900}};
  ui::Grid grid{*this, "grid", {3000, 0, 900, 900}};
  ui::Tree tree{*this, "tree", {3000, 0, 900, 900}};
  WishingField field{*this, "field", {3000, 900, 900, 300}, &frame};
  ui::Timer timer{*this, "timer", std::chrono::milliseconds(30)};
  ui::MenuEntry menu{*this, "menu", "ابزار"};
  ui::MenuEntry entry{*this, "entry", "حذف"};

 protected:
  void unload() override { ++unloads; }
  void resized() override { ++resizes; }
};

/// A user of the form, or its program; the observer hears of the changes.
class FormStory : public ::testing::Test, protected ui::FormObserver {
 protected:
  FormStory() { desktop.show(*form); }

  void controlChanged(ui::Control& control, ui::Change change) override;
  void treeChanged(ui::Tree& tree, const ui::TreeChange& change) override;
  void formChanged(ui::FormChange change) override;
  void timerRestarted(ui::Timer& timer) override { told += timer.name() + " "; }

  ScriptedDesktop desktop;
  std::string told;
  std::vector<std::string> failures;
  ui::Surroundings surroundings{
      desktop, [this](const std::exception& failure) { failures.emplace_back(failure.what()); }};
  std::optional<SmallForm> form{std::in_place, surroundings};
};

/// A step names a control, then a key or another action. Seen is the control; told are its changes and its
/// events in order, and what is rejected.
class ToolkitStory : public FormStory {
 protected:
  ToolkitStory();
  void go(const std::string& section);

 private:
  void listen();
  void offerLists();
  void offerTree();
  void offerText();
  void offerTheRest();
  void act(const std::string& name, const std::string& doing);
  [[nodiscard]] std::string seen(const ui::Control* control) const;

  /// By the control and the action, "list add", or by the action alone.
  std::map<std::string, std::function<void(const std::string& about)>> acts_;
  std::map<std::string, std::function<void(ui::Control&, const std::string& about)>> common_;
};

}  // namespace ledgertree::testing
