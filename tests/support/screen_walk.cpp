#include "support/screen_walk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

#include "support/steps.h"
#include "support/text_table.h"
#include "ui/buttons.h"
#include "ui/control_visitor.h"
#include "ui/divider.h"
#include "ui/grid.h"
#include "ui/items.h"
#include "ui/menu.h"
#include "ui/text_field.h"
#include "ui/tree.h"

namespace ledgertree::testing {

namespace {

std::optional<ui::KeyChord> keyCalled(const std::string& name) {
  if (name.empty()) return std::nullopt;
  try {
    return chordOf(name);
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
}

ui::MenuEntry* entryIn(const std::vector<ui::MenuEntry*>& menu, const std::string& name) {
  for (ui::MenuEntry* entry : menu) {
    if (entry->name() == name) return entry;
    if (ui::MenuEntry* below = entryIn(entry->entries(), name); below != nullptr) return below;
  }
  return nullptr;
}

/// Escapes a text for a table cell.
std::string cellOf(std::string text) {
  for (char& letter : text)
    if (letter == '|' || letter == '\n') letter = letter == '|' ? '/' : ' ';
  return trimmed(text);
}

/// What a user does to a control, by its type.
class Hand : public ui::ControlVisitor {
 public:
  Hand(ScriptedDesktop& desktop, std::string how)
      : desktop_(desktop), how_(std::move(how)), key_(keyCalled(how_)) {}

  void visit(ui::PushButton& control) override { control.click(); }
  void visit(ui::RadioButton& control) override { control.click(); }
  void visit(ui::CheckBox& control) override { control.click(); }
  void visit(ui::ListBox& control) override { choose(control); }
  void visit(ui::DropDownList& control) override { choose(control); }
  void visit(ui::TextField& control) override {
    if (key_) return control.press(key_->key);
    control.focus();
    control.paste(how_);
  }
  void visit(ui::LookupField& control) override {
    const auto [verb, text] = cut(how_);
    if (key_) return static_cast<void>(control.press(key_->key));
    if (verb == "type") return control.type(text);
    if (verb == "menu") return control.askMenu(), control.entry()->click();
    control.focus();
    if (how_.starts_with('#')) return pickRow(control, desktop_, std::stoi(how_.substr(1)));
    control.type(how_);
    desktop_.settle();
    control.press(ui::Key::Enter);
    desktop_.settle();
  }
  void visit(ui::Grid& control) override {
    if (key_) return control.press(key_->key, key_->shift);
    control.selectRow(std::stoi(how_));
  }
  void visit(ui::Tree& control) override {
    const auto [verb, key] = cut(how_);
    const ui::NodeId node = key == "root" ? control.roots().front() : control.find(key);
    if (key_) return control.press(key_->key);
    if (verb == "click") return control.click(node);
    if (verb == "tick") return control.tick(node);
    if (verb == "expand") return control.expand(node);
    if (verb == "collapse") return control.collapse(node);
    if (verb == "menu") return control.askMenu(node, 300, 150);
    throw std::invalid_argument("nobody does this to a tree: " + how_);
  }
  void visit(ui::DateDisplay&) override {}
  void visit(ui::Divider& control) override { control.press(key_.value().key); }
  void visit(ui::Frame&) override {}
  void visit(ui::Label&) override {}
  void visit(ui::ProgressBar&) override {}

 private:
  void choose(ui::ItemsControl& list) {
    if (key_) return list.press(key_->key);
    list.choose(std::stoi(how_));
  }

  ScriptedDesktop& desktop_;
  std::string how_;
  std::optional<ui::KeyChord> key_;
};

}  // namespace

ScreenWalk::ScreenWalk(ScriptedDesktop& desktop, ScriptedNotices& notices, Faults& faults)
    : desktop_(desktop), notices_(notices) {
  acts["pass"] = [this](auto&) { desktop_.tick(); };
  acts["frame"] = [this](auto&) { desktop_.shownForms.back()->closeByPerson(); };
  acts["fail"] = [&faults](auto& text) { faults.failWhere(text); };
  acts["deny"] = [&faults](auto& text) { faults.failWhere(text, data::DataError::Reason::Denied); };
  acts["heal"] = [&faults](auto&) { faults.heal(); };
  acts["at"] = [this](auto& name) {
    field_ = &dynamic_cast<ui::TextField&>(*desktop_.shownForms.back()->find(name));
  };
  acts["type"] = [this](auto& text) { return field_->type(text), shown(); };
  acts["text"] = [this](auto& text) { field_->setText(text); };
  acts["caret"] = [this](auto& place) { field_->setCaret(std::stoul(place)); };
  for (const auto& [word, answer] : {std::pair("yes", 1), {"no", 0}, {"neither", 7}})
    acts[word] = [this, answer](const std::string& step) {
      notices_.answer(answer);
      return actOne(step);
    };
}

void ScreenWalk::go(const std::string& file, const std::string& section, const Look& seen, const Look& told) {
  EXPECT_EQ(notices_.taken(), "") << "ahead of " << section;
  std::string answers;
  walk(
      file, section, [&](const std::string& steps) { answers = act(steps); },
      [&] { return desktop_.shownForms.empty() ? "closed" : cellOf(answers + seen()); },
      [&] { return this->told(told()); });
}

std::string ScreenWalk::act(const std::string& steps) {
  std::string answers;
  for (std::size_t begin = 0; begin < steps.size();) {
    const std::size_t end = std::min(steps.find("; ", begin), steps.size());
    const std::string answer = actOne(steps.substr(begin, end - begin));
    if (!answer.empty()) answers += answer + " ";
    begin = end + 2;
  }
  return answers;
}

std::string ScreenWalk::actOne(const std::string& step) {
  const auto [first, about] = cut(step);
  if (const auto known = acts.find(first); known != acts.end()) return known->second(about);
  if (desktop_.shownForms.empty()) throw std::logic_error("no form is shown for " + step);
  ui::Form& form = *desktop_.shownForms.back();
  if (ui::Control* control = form.find(first); control != nullptr) {
    Hand hand(desktop_, about);
    if (about == "focus")
      control->focus();
    else
      control->accept(hand);
  } else if (ui::MenuEntry* entry = entryIn(form.menu(), first); entry != nullptr) {
    entry->click();
  } else if (ui::MenuEntry* own = poppedUp(first); own != nullptr) {
    own->click();
  } else if (field_ != nullptr) {
    field_->press(chordOf(step).key);
    return shown();
  } else if (!form.press(chordOf(step))) {
    unused_ = "unused ";
  }
  return "";
}

ui::MenuEntry* ScreenWalk::poppedUp(const std::string& name) const {
  return desktop_.poppedUp == nullptr ? nullptr : entryIn(desktop_.poppedUp->entries(), name);
}

std::string ScreenWalk::shown() const {
  std::string text = field_->text();
  return text.insert(std::min(field_->caret(), text.size()), "^");
}

std::string ScreenWalk::told(const std::string& ofStory) {
  std::string text = std::exchange(unused_, {});
  for (const Notice& notice : notices_.take()) text += notice.title + "<" + notice.message + "> ";
  if (const int came = desktop_.hourglasses - std::exchange(hourglasses_, desktop_.hourglasses); came > 0)
    text += "hourglass" + (came > 1 ? " " + std::to_string(came) : "") + " ";
  if (!ofStory.empty()) text += ofStory + " ";
  return text.empty() ? "" : cellOf(text) + " ";
}

}  // namespace ledgertree::testing
