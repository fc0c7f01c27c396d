#include <filesystem>
#include <fstream>
#include <string>

#include "component_registration_check.h"
#include "shell/components/component_plugins.h"
#include "shell/components/plugin_library.h"
#include "support/given.h"
#include "support/seeds.h"
#include "support/test_house.h"

namespace ledgertree::testing {
namespace {

namespace fs = std::filesystem;
using shell::ComponentError;
using shell::readRegistration;

std::string command(const std::string& file) { return "Regsvr32  \"" + file + "\" /s"; }

TEST(Registration, ReadsOnlyTheCommandThatItKnows) {
  const auto windows = readRegistration(command("C:\\Host\\System\\SheetKit.ocx"));
  ASSERT_TRUE(windows);
  EXPECT_EQ(windows->system, fs::path("C:/Host/System"));
  EXPECT_EQ(windows->plugin, "SheetKit");
  EXPECT_EQ(readRegistration(command("/opt/host/System\\PactKit.OCX"))->system, fs::path("/opt/host/System"));
  EXPECT_EQ(readRegistration(command("System\\PactKit.ocx"))->system, fs::path("System"));
  for (const char* refused : {"", "Regsvr32", "rm \"System\\a.ocx\" /s", "Regsvr32\"System\\a.ocx\" /s",
                              "Regsvr32 System\\a.ocx /s", "Regsvr32 \"System\\a.ocx\"",
                              "Regsvr32 \"System\\a.ocx\" /u", "Regsvr32 \"System\\a.ocx\" /s & rm"})
    EXPECT_FALSE(readRegistration(refused)) << refused;
  for (const std::string file :
       {"System\\a.so", "System\\.ocx", "a.ocx", "Systems\\a.ocx", "System\\sub\\a.ocx", "System\\..\\a.ocx",
        "/opt/../tmp/System\\a.ocx", "./System\\a.ocx", "System\\a b.ocx", "System\\a'.ocx",
        "Sys\ntem\\System\\a.ocx", "\xff\\System\\a.ocx"})
    EXPECT_FALSE(readRegistration(command(file))) << file;
  EXPECT_FALSE(readRegistration(command(std::string("C:\0\\System\\a.ocx", 16))));
  EXPECT_FALSE(readRegistration(command("System\\" + std::string(10000, 'a') + ".ocx")));
}

TEST(Registration, SurvivesWhatTheFuzzersStartFrom) {
  EXPECT_GT(fuzz::replay("component_registration", fuzz::checkComponentRegistration), 2);
}

class Plugins : public ::testing::Test {
 protected:
  Plugins() {
    fs::create_directories(folder.path() / "base/System");
    fs::create_directory(folder.path() / "elsewhere");
  }
  [[nodiscard]] static fs::path built(const char* plugin) {
    return fs::path(LEDGERTREE_BUILT_COMPONENTS) / ("lib" + std::string(plugin) + ".so");
  }
  void carryOut(const char* plugin) const {
    plugins.carryOut(command((folder.path() / "base/").string() + "System\\" + plugin + ".ocx"));
  }

  TemporaryFolder folder;
  shell::OutsideComponents components;
  shell::ComponentPlugins plugins{components, shell::pluginLibraries()};
};

TEST_F(Plugins, AreFoundBelowTheBasePathThenWhereTheyWereInstalled) {
  carryOut("SheetKit");
  EXPECT_FALSE(components.has("SheetKit.SheetWriter"));
  fs::copy_file(built("SheetKit"), folder.path() / "base/System/SheetKit.so");
  carryOut("SheetKit");
  const auto writer = components.create("SheetKit.SheetWriter");
  writer->set("UserID", 1);
  writer->set("OLEConnectionString", "Provider=SQLite");
  const auto number = [](const auto& act) {
    try {
      act();
    } catch (const ComponentError& failure) {
      return failure.number();
    }
    return 0;
  };
  EXPECT_EQ(number([&] { writer->set("Colour", 1); }), ComponentError::kNoSuchMember);
  EXPECT_EQ(number([&] { writer->call("ClearShow", {}); }), ComponentError::kNoSuchMember);
  EXPECT_EQ(number([&] { writer->set("UserID", "a"); }), LEDGERTREE_FAILED);
  EXPECT_EQ(number([&] { static_cast<void>(writer->get("UserID")); }), ComponentError::kNoSuchMember);

  carryOut("PactKit");
  EXPECT_FALSE(components.has("PactKit.PactEditor"));
  plugins.setInstalledFolder(LEDGERTREE_BUILT_COMPONENTS);
  carryOut("PactKit");
  EXPECT_NO_THROW(components.create("PactKit.PactEditor")->set("EmployeeID", -7));
}

TEST(Components, ReachTheDatabaseOfTheChartWhicheverItIs) {
  const data::Providers engines = components::engines();
  for (const char* const text : {"Provider=SQLite;Data Source=/books/chart.db",
                                 "Provider=SQLOLEDB.1;Data Source=server;Initial Catalog=books;User ID=a"})
    EXPECT_NO_THROW(static_cast<void>(engines.open(text))) << text;
}

TEST_F(Plugins, WhatIsNoPluginOrStandsElsewhereIsPassedOver) {
  std::ofstream(folder.path() / "base/System/libSheetKit.so") << "no library";
  fs::copy_file(built("SheetKit"), folder.path() / "elsewhere/libSheetKit.so");
  fs::create_symlink(folder.path() / "elsewhere/libSheetKit.so", folder.path() / "base/System/SheetKit.so");
  fs::create_directory(folder.path() / "base/System/PactKit.so");
  carryOut("SheetKit");
  carryOut("PactKit");
  EXPECT_FALSE(components.has("SheetKit.SheetWriter"));
  EXPECT_FALSE(components.has("PactKit.PactEditor"));
}

}  // namespace
}  // namespace ledgertree::testing
