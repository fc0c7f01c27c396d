#include "batch/hand_over.h"

#include <stdexcept>
#include <vector>

#include "batch/bulk_house.h"

namespace ledgertree::testing {
namespace {

using shell::ComponentError;

/// Writes down what it is told, and fails where it is told to.
struct Ledger {
  std::vector<std::string> lines;
  std::string failing;
  ui::Desktop* desktop = nullptr;
  void take(const std::string& line) {
    lines.push_back(line);
    if (!failing.empty() && line.starts_with(failing)) throw std::runtime_error("out of paper");
  }
};

class ForeignComponent : public shell::OutsideComponent {
 public:
  explicit ForeignComponent(Ledger& ledger) : ledger_(ledger) {}
  ~ForeignComponent() override { ledger_.lines.emplace_back("released"); }
  void set(std::string_view member, const data::Value& value) override {
    ledger_.take(std::string(member) + "=" + value.toText());
  }
  data::Value get(std::string_view) override { return {}; }
  /// Leaves the hourglass behind.
  void call(std::string_view member, const std::vector<data::Value>& arguments) override {
    ledger_.desktop->setPointer(ui::Pointer::Hourglass);
    ledger_.take(std::string(member) + "(" + (arguments.empty() ? "" : arguments[0].toText()) + ")");
  }

 private:
  Ledger& ledger_;
};

class HandOver : public BulkHouse {
 protected:
  HandOver() {
    shell.offersHiddenCommands = true;
    shell.context.gEmployeeID = -7;
    shell.components.setRegistrar([this](std::string_view command) { registrations.emplace_back(command); });
  }
  void know(const std::string& name) {
    shell.components.add(name, [this] { return std::make_unique<ForeignComponent>(ledger); });
  }
  Ledger ledger{.lines = {}, .failing = {}, .desktop = &desktop};
  std::vector<std::string> registrations;
};

TEST_F(HandOver, TheComponentsAreToldWhoWorksAndWhatToDo) {
  start();
  know("SheetKit.SheetWriter");
  know("pactkit.pacteditor");
  form->mnuExcelCode.click();
  const std::string connection = "OLEConnectionString=" + database.connectionText();
  EXPECT_EQ(
      ledger.lines,
      (std::vector<std::string>{
          "UserID=1", "PositionID=12", "EmployeeID=-7", connection, "FormTypeID=301",
          "ExportToExcel(Select Code As 'كدحساب',Title As 'شرح حساب',AccGroup as 'گروه حساب',AccountStatus "
          "As 'ماهيت حساب',AccountType As 'حساب',RemainedType As 'وضعيت حساب',AccContract As 'مركز "
          "هزينه',NoLevel As 'سطح',Notes As 'ملاحظات' From vwAccount Order By Code,NoLevel)",
          "released"}));
  EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
  ledger.lines.clear();
  form->mnuFonc5.click();
  EXPECT_EQ(ledger.lines, (std::vector<std::string>{"UserID=1", "PositionID=12", "EmployeeID=-7", connection,
                                                    "ClearShow()", "released"}));
  form->mnuExcelLevel.click();
  EXPECT_EQ(registrations, std::vector<std::string>());
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(HandOver, AMissingComponentIsRegisteredOnce) {
  given("insert into tblTarvoBasePath (ID, BasePath) values (1, 'C:\\Host\\')");
  start();
  form->mnuFonc5.click();
  EXPECT_EQ(registrations, std::vector<std::string>{"Regsvr32  \"C:\\Host\\System\\PactKit.ocx\" /s"});
  EXPECT_EQ(notices.taken(), kRefused);
  EXPECT_EQ(ledger.lines, std::vector<std::string>());

  shell.components.setRegistrar([this](std::string_view command) {
    registrations.emplace_back(command);
    know("SheetKit.SheetWriter");
    throw std::runtime_error("and yet it is there");
  });
  form->mnuExcelCode.click();
  EXPECT_EQ(registrations.back(), "Regsvr32  \"C:\\Host\\System\\SheetKit.ocx\" /s");
  EXPECT_EQ(ledger.lines.size(), 7U);
  form->mnuExcelCode.click();
  EXPECT_EQ(registrations.size(), 2U) << "known from now on";
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(HandOver, WhatElseFailsPassesWithoutASign) {
  start();
  know("SheetKit.SheetWriter");
  shell.context.gPositionID = shell.context.gEmployeeID = 40000;  // fits no 16-bit member
  for (const char* const failing : {"UserID", "FormTypeID", "ExportToExcel"}) {
    ledger.lines.clear();
    ledger.failing = failing;
    form->mnuExcelCode.click();
    EXPECT_EQ(ledger.lines.size(), 5U) << failing;
    EXPECT_EQ(ledger.lines.back(), "released");
  }
  // One that is known and can't be made is not registered again.
  for (const int number : {438, 0}) {
    shell.components.add("PactKit.PactEditor", [number]() -> std::unique_ptr<shell::OutsideComponent> {
      if (number == 0) throw std::runtime_error("broken");
      throw ComponentError(number, "broken");
    });
    form->mnuFonc5.click();
  }
  EXPECT_EQ(registrations, std::vector<std::string>());
  // Nor is one told of that turns out so after its registration.
  shell.components.remove("PactKit.PactEditor");
  shell.components.setRegistrar([this](std::string_view) {
    shell.components.add("PactKit.PactEditor", []() -> std::unique_ptr<shell::OutsideComponent> {
      throw std::runtime_error("broken");
    });
  });
  form->mnuFonc5.click();
  EXPECT_EQ(notices.taken(), "");
}

}  // namespace
}  // namespace ledgertree::testing
