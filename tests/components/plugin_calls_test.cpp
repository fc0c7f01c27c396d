#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "shell/components/plugin_component.h"
#include "support/given.h"
#include "support/plugin_entry.h"

namespace ledgertree::components {
namespace {

using data::Value;
using shell::ComponentError;

/// A component that stores what it is given, returns it, and fails by the names of its members.
class Mirror : public shell::OutsideComponent {
 public:
  Mirror() {
    if (broken) throw std::runtime_error("no");
    ++living;
  }
  ~Mirror() override { --living; }
  void set(std::string_view member, const Value& value) override {
    fail(member);
    told.push_back(value);
  }
  Value get(std::string_view member) override {
    fail(member);
    return told.back();
  }
  void call(std::string_view member, const std::vector<Value>& arguments) override {
    fail(member);
    told = arguments;
  }
  static inline bool broken = false;
  static inline int living = 0;
  static inline std::vector<Value> told;

 private:
  static void fail(std::string_view member) {
    if (member == "Missing") refuseMember(member);
    if (member == "Broken") throw std::runtime_error("out of paper");
    if (member == "Unmade") throw ComponentError(ComponentError::kCannotCreate, "a part of it");
  }
};

std::int32_t makeNothing(LedgerTreeComponent*) { return LEDGERTREE_DONE; }
std::int32_t makeHalf(LedgerTreeComponent* to) {
  const std::int32_t made = create<Mirror>(to);
  to->release(to->state);
  to->call = nullptr;
  return made;
}

std::int32_t registerAll(const LedgerTreeRegistry* registry) {
  EXPECT_EQ(registry->version, LEDGERTREE_COMPONENT_VERSION);
  registry->add(registry->context, "Test.Mirror", &create<Mirror>);
  registry->add(registry->context, "Test.Nothing", &makeNothing);
  registry->add(registry->context, "Test.Half", &makeHalf);
  registry->add(registry->context, nullptr, &makeNothing);
  registry->add(registry->context, "Test.Null", nullptr);
  return 1;
}

int numberOf(const std::function<void()>& act, const std::string& words = {}) {
  try {
    act();
  } catch (const ComponentError& failure) {
    EXPECT_NE(std::string(failure.what()).find(words), std::string::npos) << failure.what();
    return failure.number();
  }
  return 0;
}

class PluginCalls : public ::testing::Test {
 protected:
  PluginCalls() { shell::registerPlugin(components, &registerAll); }
  shell::OutsideComponents components;
};

TEST_F(PluginCalls, ValuesArriveAsTheyAreAndFailuresByTheirKind) {
  {
    const auto mirror = components.create("test.MIRROR");
    const data::Value day = data::DateTime{.year = 2024, .month = 3, .day = 20};
    std::vector<Value> all = {Value(), -7, std::int64_t{1} << 40, "متن", std::string("a\0b", 3), ""};
    std::vector<std::pair<Value, Value>> values = {{*data::Money::parse("12.5"), "12.5"},
                                                   {day, "2024-03-20 00:00:00"}};
    for (const Value& value : all) values.emplace_back(value, value);
    for (const auto& [given, arrived] : values) {
      mirror->set("Value", given);
      EXPECT_EQ(Mirror::told.back(), arrived) << given.toText();
      EXPECT_EQ(mirror->get("Value"), arrived) << given.toText();
    }
    mirror->set("Value", 2.5);
    EXPECT_EQ(Mirror::told.back(), Value(2.5));
    mirror->call("Take", all);
    EXPECT_EQ(Mirror::told, all);
    mirror->call("Take", {});
    EXPECT_TRUE(Mirror::told.empty());
    for (const auto& [member, number, words] :
         {std::tuple{"Missing", int{ComponentError::kNoSuchMember}, "Test.Mirror has no member Missing"},
          {"Broken", int{LEDGERTREE_FAILED}, "Test.Mirror failed in Broken"},
          {"Unmade", int{LEDGERTREE_FAILED}, "Test.Mirror failed in Unmade"}}) {
      EXPECT_EQ(numberOf([&] { mirror->set(member, 1); }), number) << member;
      EXPECT_EQ(numberOf([&] { static_cast<void>(mirror->get(member)); }), number) << member;
      EXPECT_EQ(numberOf([&] { mirror->call(member, {}); }, words), number) << member;
    }
    EXPECT_EQ(Mirror::living, 1);
  }
  EXPECT_EQ(Mirror::living, 0);
}

TEST_F(PluginCalls, WhatCantBeMadeIsNotUnknown) {
  Mirror::broken = true;
  EXPECT_EQ(numberOf([&] { static_cast<void>(components.create("Test.Mirror")); }), LEDGERTREE_FAILED);
  Mirror::broken = false;
  for (const char* name : {"Test.Nothing", "Test.Half"})
    EXPECT_EQ(numberOf([&] { static_cast<void>(components.create(name)); }), LEDGERTREE_FAILED) << name;
  for (const char* name : {"Test.Null", "Test.Other", ""})
    EXPECT_EQ(numberOf([&] { static_cast<void>(components.create(name)); }), ComponentError::kCannotCreate)
        << name;
  EXPECT_EQ(Mirror::living, 0);
}

TEST(Given, IsWhatTheChartTellsEveryComponent) {
  Given given;
  EXPECT_TRUE(given.set("UserID", 7) && given.set("PositionID", 12) && given.set("EmployeeID", -3) &&
              given.set("OLEConnectionString", "Provider=SQLite"));
  EXPECT_EQ(given.UserID, 7);
  EXPECT_EQ(given.PositionID, 12);
  EXPECT_EQ(given.EmployeeID, -3);
  EXPECT_EQ(given.OLEConnectionString, "Provider=SQLite");
  EXPECT_FALSE(given.set("FormTypeID", 1));
  EXPECT_FALSE(given.set("userid", 1));
}

}  // namespace
}  // namespace ledgertree::components
