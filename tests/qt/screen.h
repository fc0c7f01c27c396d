#pragma once

#include <QApplication>
#include <QTest>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "qt/form_window.h"
#include "qt/qt_desktop.h"
#include "qt/text.h"
#include "ui/buttons.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/items.h"
#include "ui/lookup_field.h"
#include "ui/menu.h"
#include "ui/text_field.h"
#include "ui/timer.h"
#include "ui/tree.h"

namespace ledgertree::test {

/// A look-up over a list in memory, which returns `page` rows at a time.
class MemoryLookup : public ui::LookupField {
 public:
  using LookupField::LookupField;
  using LookupField::setActive;
  std::vector<ui::LookupRow> all;
  std::size_t page = 20;
  std::function<void()> onPicked;
  [[nodiscard]] std::int32_t heldId() const { return held().id; }

 protected:
  void wishSearch(const std::string& text) override {
    found_.clear();
    for (const auto& row : all) {
      if ((row.code + row.text).find(text) != std::string::npos) found_.push_back(row);
    }
    told_ = 0;
    give(false);
  }
  void wishMore() override { give(true); }
  void wishStop() override {}
  void wishDetail() override { setDetail("كد " + held().code); }
  [[nodiscard]] ui::LookupRow wishOne(const std::string&, bool first) override {
    return found_.size() == 1 || (first && !found_.empty()) ? found_.front() : ui::LookupRow();
  }
  void heldByPerson() override {
    if (onPicked) onPicked();
  }

 private:
  void give(bool append) {
    std::vector<ui::LookupRow> rows;
    for (; rows.size() < page && told_ < found_.size(); ++told_) rows.push_back(found_[told_]);
    showRows(std::move(rows), append, told_ < found_.size(), false);
  }
  std::vector<ui::LookupRow> found_;
  std::size_t told_ = 0;
};

/// A desktop, and a user of its widgets.
class Desk {
 public:
  qt::QtDesktop desktop;

  /// The widget of a control, as the class that draws it.
  template <typename Widget = QWidget>
  [[nodiscard]] Widget& widget(const ui::Control& control) const {
    return dynamic_cast<Widget&>(*desktop.windowOf(control.form())->widgetOf(control));
  }
  /// A menu entry, by the name of its control.
  [[nodiscard]] QAction* entry(const char* name, const ui::Form& shown) {
    return desktop.windowOf(shown)->findChild<QAction*>(QString::fromLatin1(name));
  }
  void type(const ui::Control& control, const char* keys) const { QTest::keyClicks(&widget(control), keys); }
  void press(const ui::Control& control, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
    QTest::keyClick(&widget(control), key, modifiers);
  }
  void click(const ui::Control& control) const { QTest::mouseClick(&widget(control), Qt::LeftButton); }
  static void settle() { QTest::qWait(1); }

  /// Walks a section of steps.txt: a control and what a user does to its widget, key by key | what it shows
  /// then, and where the focus went | what is told. Angle brackets contain named keys and other actions of
  /// the user or the program: "<at x>" clicks the line x of a list, "<mark x>" the mark beside a node.
  void go(
      ui::Form& form, const std::string& section,
      const std::function<std::string()>& told = [] { return std::string(); }) const;
  /// Widgets show what the controls hold, and the focused one is visible.
  void expectShown(const ui::Form& form) const;
  /// A single step.
  void act(ui::Form& form, const std::string& step) const;
  /// A text with "^" at the caret, after the language that the field shows; the rows of an open list and the
  /// picked one; whether a button is on; the lines of a tree; the selected row.
  [[nodiscard]] std::string seen(const ui::Control& control) const;
};

/// What a widget, or a part of it, shows, one dot per device-independent pixel.
[[nodiscard]] QImage painted(QWidget& widget, QRect part = {});
/// Where something is painted in a part of a picture whose corner shows the background.
[[nodiscard]] QRect ink(const QImage& picture, const QRect& part);

/// Compares a description with tests/qt/screens/`name`.txt.
void expectTable(const std::string& name, const std::string& description);

/// A form with every kind of control, which records the events of its buttons, lists and grid.
class Screen : public Desk {
 public:
  std::vector<std::string> failures;

  class Form : public ui::Form {
   public:
    explicit Form(ui::Surroundings surroundings);
    ui::Frame bar{*this, "bar", {90, 45, 13440, 690}};
    ui::PushButton cmdNew{*this, "cmdNew", {11800, 150, 1500, 420}, "جديد", &bar};
    ui::PushButton cmdSave{*this, "cmdSave", {10200, 150, 1500, 420}, "ثبت", &bar};
    ui::PushButton cmdExit{*this, "cmdExit", {8600, 150, 1500, 420}, "خروج", &bar};
    ui::ProgressBar progress{*this, "progress", {90, 780, 13440, 240}};
    ui::Tree tree{*this, "tree", {7000, 1500, 6500, 2900}};
    ui::Frame views{*this, "views", {7000, 1050, 6500, 420}};
    ui::RadioButton optAll{*this, "optAll", {3600, 60, 2700, 300}, "نمايش کامل درخت", &views};
    ui::RadioButton optPeriodic{*this, "optPeriodic", {600, 60, 2700, 300}, "نمايش دوره هاي مالي", &views};
    ui::Frame record{*this, "record", {90, 1050, 6800, 3400}, "مشخصات حساب"};
    ui::TextField txtTitle{*this, "txtTitle", {1500, 300, 3850, 330}, &record};
    ui::Label lblCode{*this, "lblCode", {5400, 730, 1250, 300}, "کد:", &record};
    ui::TextField txtCode{*this, "txtCode", {3400, 700, 1950, 330}, &record};
    ui::TextField txtMother{*this, "txtMother", {1500, 700, 1850, 330}, &record};
    MemoryLookup sltParent{*this, "sltParent", {1500, 1100, 3850, 330}, &record};
    ui::TextField txtNotes{*this, "txtNotes", {1500, 1500, 3850, 800}, &record};
    ui::Label lblNotes{*this, "lblNotes", {5400, 1500, 1250, 700}, "توضيح:", &record};
    ui::CheckBox chkDeep{*this, "chkDeep", {3500, 2400, 1850, 300}, "با زيرشاخهها", &record};
    ui::DropDownList lstPeriod{*this, "lstPeriod", {1500, 2400, 1900, 330}, &record};
    ui::ListBox lstBranches{*this, "lstBranches", {60, 300, 1380, 1500}, &record};
    ui::Grid grid{*this, "grid", {60, 2780, 6650, 560}, &record};
    ui::MenuEntry mnuFile{*this, "mnuFile", "عمليات"};
    ui::MenuEntry mnuNew{*this, "mnuNew", "جديد..."};
    ui::MenuEntry mnuMark{*this, "mnuMark", "مشاهده كد كامل حساب...", true, true};
    ui::MenuEntry mnuHidden{*this, "mnuHidden", "چاپ", false};
    std::vector<std::string> said;  ///< the events in order
    std::function<void()> onResized;

   private:
    /// Records a click on a control.
    std::function<void()> saying(const ui::Control& control) {
      return [this, &control] { said.push_back(control.name()); };
    }
    void resized() override {
      if (onResized) onResized();
    }
  };

  Screen() { form = std::make_unique<Form>(surroundings()); }
  ui::Surroundings surroundings() {
    return {desktop, [this](const std::exception& failure) { failures.emplace_back(failure.what()); }};
  }

  void show() {
    desktop.show(*form);
    settle();
  }
  [[nodiscard]] qt::FormWindow& window() const { return *desktop.windowOf(*form); }
  using Desk::go;
  void go(const std::string& section);

  std::unique_ptr<Form> form;
};

}  // namespace ledgertree::test
