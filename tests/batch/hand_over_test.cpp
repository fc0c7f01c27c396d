#include "batch/hand_over.h"

#include <stdexcept>

#include "batch/bulk_house.h"
#include "support/steps.h"
#include "support/told_component.h"

namespace ledgertree::testing {
namespace {

class HandOver : public BulkHouse {
 protected:
  HandOver() {
    shell.offers = {Offer::HiddenCommands, Offer::Export};
    shell.context.gEmployeeID = -7;
    person.acts["know"] = [this](auto& name) { know(name); };
    // A known component that can't be created: with the given error number, or another failure.
    person.acts["broken"] = [this](auto& about) {
      const auto [name, number] = cut(about);
      const int error = number.empty() ? 0 : std::stoi(number);
      shell.components.add(name, [error]() -> std::unique_ptr<shell::OutsideComponent> {
        if (error != 0) throw shell::ComponentError(error, "broken");
        throw std::runtime_error("broken");
      });
    };
    person.acts["unknown"] = [this](auto& name) { shell.components.remove(name); };
    // The member at which a component fails, and what a registration does before it fails.
    person.acts["failing"] = [this](auto& member) { failing_ = member; };
    person.acts["registering"] = [this](auto& step) {
      shell.components.setRegistrar([this, step](std::string_view command) {
        told_ += "[" + std::string(command) + "] ";
        if (step.empty()) return;
        person.act(step);
        throw std::runtime_error("and yet it is done");
      });
    };
    person.act("registering ");
  }
  /// Reported are the calls of components, and registrations in brackets.
  void go(const std::string& section) {
    start();
    person.go(
        "batch/steps.txt", section, [] { return std::string(); },
        [this] {
          EXPECT_EQ(desktop.cursor, ui::CursorShape::Default);
          return std::exchange(told_, {});
        });
  }

 private:
  /// Registers a component that leaves the hourglass cursor.
  void know(const std::string& name) {
    shell.components.add(name, [this] {
      return std::make_unique<ToldComponent>([this](const std::string& asked) -> data::Value {
        const std::string text = "OLEConnectionString=" + database.connectionText();
        told_ += (asked == text ? "the connection" : asked) + "; ";
        if (asked.ends_with(')')) desktop.setCursor(ui::CursorShape::Hourglass);
        if (!failing_.empty() && asked.starts_with(failing_)) throw std::runtime_error("out of paper");
        return {};
      });
    });
  }

  std::string failing_;
  std::string told_;
};

TEST_F(HandOver, TheComponentsAreToldWhoWorksAndWhatToDo) { go("who works and what to do"); }

TEST_F(HandOver, AMissingComponentIsRegisteredOnce) {
  given("insert into tblTarvoBasePath (ID, BasePath) values (1, 'C:\\Host\\')");
  go("a missing component is registered once");
}

TEST_F(HandOver, WhatElseFailsPassesWithoutASign) {
  shell.context.gPositionID = shell.context.gEmployeeID = 40000;  // fits no 16-bit member
  go("what else fails passes without a sign");
}

}  // namespace
}  // namespace ledgertree::testing
