#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>

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
  EXPECT_TRUE(readRegistration(command("System\\" + std::string(64, 'a') + ".ocx")));
  for (const std::size_t letters : {65U, 10000U})
    EXPECT_FALSE(readRegistration(command("System\\" + std::string(letters, 'a') + ".ocx")));
}

TEST(Registration, SurvivesWhatTheFuzzersStartFrom) {
  EXPECT_GT(fuzz::replay("component_registration", fuzz::checkComponentRegistration), 2);
}

class Plugins : public ::testing::Test {
 protected:
  Plugins() {
    fs::create_directories(folder.path() / "base/System");
    plugins.trustBelow(folder.path() / "base");
  }
  [[nodiscard]] static fs::path built(const char* plugin) {
    return fs::path(LEDGERTREE_BUILT_COMPONENTS) / ("lib" + std::string(plugin) + ".so");
  }
  void carryOut(const char* plugin) const {
    plugins.carryOut(command((folder.path() / "base/").string() + "System\\" + plugin + ".ocx"));
  }

  TemporaryFolder folder;  // writable by everybody, so trusted only because the host says so
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
  EXPECT_THROW(writer->set("Colour", 1), ComponentError);

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

TEST_F(Plugins, WhatIsNoPluginIsPassedOver) {
  std::ofstream(folder.path() / "base/System/libSheetKit.so") << "no library";
  fs::create_directory(folder.path() / "base/System/PactKit.so");
  carryOut("SheetKit");
  carryOut("PactKit");
  EXPECT_FALSE(components.has("SheetKit.SheetWriter"));
  EXPECT_FALSE(components.has("PactKit.PactEditor"));
}

/// A plug-in that registers its component, and one that removes it.
std::int32_t serve(const LedgerTreeRegistry* registry) {
  registry->add(registry->context, "PactKit.PactEditor",
                [](LedgerTreeComponent*) -> std::int32_t { return 1; });
  return 1;
}
std::int32_t refuse(const LedgerTreeRegistry* registry) { return serve(registry) - 1; }
std::int32_t offerNothing(const LedgerTreeRegistry*) { return 1; }

/// A plug-in planted in "System", and one installed by the package; the contents of the files don't matter.
class PlantedPlugins : public ::testing::Test {
 protected:
  PlantedPlugins() {
    fs::create_directories(system);
    fs::create_directory(installed);
    for (const fs::path& folder : {system, installed}) std::ofstream(folder / "libPactKit.so") << "planted";
    for (const fs::path& folder : {root, base, system}) fs::permissions(folder, fs::perms(0755));
    fs::permissions(file, fs::perms(0644));
  }
  ~PlantedPlugins() override { fs::remove_all(root); }

  /// From where the plug-in was loaded, then what was refused and why.
  std::string used(const std::string& basePath, const fs::path& trusted = {}) {
    std::string told;
    shell::OutsideComponents components;
    shell::ComponentPlugins::Platform platform = shell::pluginLibraries();
    platform.load = [&](const fs::path& plugin) {
      told += plugin.parent_path().filename().string() + " ";
      return told == "System " && refusal != nullptr ? refusal : &serve;
    };
    shell::ComponentPlugins plugins(components, platform);
    plugins.setInstalledFolder(installed);
    if (!trusted.empty()) plugins.trustBelow(trusted);
    plugins.onRefused(
        [&](const shell::RefusedPlugin& one) { told += one.file.string() + ": " + one.reason; });
    plugins.carryOut(command(basePath + "System\\PactKit.ocx"));
    EXPECT_TRUE(components.has("PactKit.PactEditor"));
    return told;
  }

  // In the build folder: the usual temporary folders are writable by everybody.
  const fs::path root = fs::path(LEDGERTREE_BUILT_COMPONENTS) / ("planted-" + std::to_string(::getpid()));
  const fs::path base = root / "base", system = base / "System", file = system / "libPactKit.so";
  const fs::path installed = root / "installed";
  shell::RegisterComponents refusal = nullptr;  ///< the refusal of the planted one
};

TEST_F(PlantedPlugins, ServeOnlyWhereNobodyElseMayWrite) {
  const std::string path = base.string() + "/";
  if (!shell::pluginLibraries().distrust(file).empty()) GTEST_SKIP() << "the build is open to others";
  EXPECT_EQ(used(path), "System ");
  for (const shell::RegisterComponents unwilling : {&refuse, &offerNothing}) {
    refusal = unwilling;
    EXPECT_EQ(used(path), "System installed ") << "one that is unwilling hides none";
  }
  refusal = nullptr;

  const uid_t me = ::geteuid();
  constexpr uid_t kNobody = 65534;
  const auto put = [](const fs::path& place, uid_t owner, int mode) {
    EXPECT_EQ(::chown(place.c_str(), owner, ::getegid()), 0);
    fs::permissions(place, fs::perms(mode));
  };
  const std::tuple<fs::path, uid_t, int> planted[] = {{file, me, 0646},      {file, me, 0664},
                                                      {system, me, 0775},    {base, me, 01777},
                                                      {file, kNobody, 0644}, {base, kNobody, 0755}};
  for (const auto& [place, owner, mode] : planted) {
    if (owner != me && me != 0) continue;  // only the administrator can give a file away
    put(place, owner, mode);
    const std::string named = "«" + place.string() + "»";
    EXPECT_EQ(used(path), "installed " + file.string() + ": " +
                              (owner == me ? "ديگران اجازه نوشتن در " + named + " را دارند"
                                           : named + " از آن شما يا مدير سيستم نيست"));
    EXPECT_EQ(used(path, base), "System ") << "the host answers for it";
    put(place, me, place == file ? 0644 : 0755);
  }
  // An access list for the owner, user 65534, the group, the mask and others, if the system has them.
  const std::uint16_t rights[] = {2,      0,      1,    6, 0xFFFF, 0xFFFF, 2,    6, 0xFFFE, 0,     4, 4,
                                  0xFFFF, 0xFFFF, 0x10, 6, 0xFFFF, 0xFFFF, 0x20, 4, 0xFFFF, 0xFFFF};
  const bool listed = ::setxattr(file.c_str(), "system.posix_acl_access", rights, sizeof rights, 0) == 0;
  EXPECT_EQ(used(path) == "System ", !listed);
  ::removexattr(file.c_str(), "system.posix_acl_access");
  put(file, me, 0644);

  // The current folder, and symbolic links: out of the folder, and on the way to it.
  const fs::path before = fs::current_path();
  fs::current_path(base);
  EXPECT_EQ(used(""),
            "installed System/libPactKit.so: نشاني آن کامل نيست و از پوشه جاري چيزي بارگذاري نميشود");
  fs::current_path(before);
  fs::create_directory_symlink(base, root / "link");
  EXPECT_EQ(used((root / "link/").string()), "System ");
  EXPECT_EQ(shell::pluginLibraries().distrust(root / "link/System/libPactKit.so"),
            "اجازه هاي «" + (root / "link").string() + "» را نميتوان بررسي کرد")
      << "made behind the resolving";
  fs::rename(file, root / "libPactKit.so");
  fs::create_symlink(root / "libPactKit.so", file);
  EXPECT_EQ(used(path), "installed " + file.string() + ": پيوندي به بيرون از پوشه خود است");
}

}  // namespace
}  // namespace ledgertree::testing
