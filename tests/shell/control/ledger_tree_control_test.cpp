#include "ledgertree/ledger_tree_control.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <tuple>
#include <vector>

#include "data/data_error.h"
#include "ledgertree/offers.h"
#include "shell/control/control_house.h"

namespace ledgertree::testing {
namespace {

class ControlStory : public ControlHouse {
 protected:
  ControlStory() { database.fillWithDemoChart(); }

  [[nodiscard]] const shell::HostContext& context() { return shell.context; }
  void expectQuiet() {
    EXPECT_EQ(notices.taken(), "");
    EXPECT_EQ(desktop.cursor, ui::CursorShape::Default);
    for (const data::RecordHandle* handle : shell.dtEn()->handles())
      EXPECT_EQ(handle->State(), 0) << handle->name();
  }
};

TEST_F(ControlStory, TheCurrentPeriodComesFromTheHostOrFromTheUser) {
  EXPECT_EQ(database.number("select PeriodID from tblUser where ID = 1"), 3);
  const auto current = [&] {
    return std::to_string(context().gPeriodID) + " " + context().gPeriodBegin.toIso() + " " +
           context().gPeriodEnd.toIso();
  };
  const auto asked = [&] {
    std::string text;
    const auto commands = faults.take();
    for (std::size_t command = 0; command < std::min<std::size_t>(commands.size(), 3); ++command)
      text += (command == 0 ? "" : "; ") + commands[command];
    return text;
  };
  person.go("shell/control/commands.txt", "the current period", current, asked);
  expectQuiet();
}

TEST_F(ControlStory, WhoWorksIsHandedOverByEachCallAndByNothingElse) {
  const std::string text = database.connectionText();
  const auto worker = [&] {
    const std::string connection = shell.dtEn()->cnMainData.ConnectionString();
    EXPECT_TRUE(connection.starts_with(text));
    return std::to_string(context().gUserID) + " " + std::to_string(context().gPositionID) + " " +
           std::to_string(context().gEmployeeID) + " " + connection.substr(text.size());
  };
  person.acts["connect"] = [&](auto& more) { control.OLEConnectionString(text + more); };
  person.go("shell/control/commands.txt", "who works", worker);
  EXPECT_EQ(context().gConnectionString, control.OLEConnectionString());
  // Another control of the host sets the user from its own call on.
  LedgerTreeControl other = session.makeControl();
  other.OLEConnectionString(text);
  other.View(std::int16_t{1});
  EXPECT_EQ(worker(), "0 0 0 ");
}

TEST_F(ControlStory, AHostThatTakesNoModelessFormGetsAModalOne) {
  desktop.refusal = 406;
  desktop.inModal("FormMain", [](ui::Form& form) { EXPECT_TRUE(form.isShown()); });
  control.ClearShow();
  EXPECT_EQ(desktop.showings, std::vector<std::string>{"FormMain!"});
  EXPECT_EQ(session.form(), nullptr) << "the person closed it";

  // Other refusals aren't reported to the host, and the screen doesn't open; View shows it modally after any.
  desktop.refusal = 7;
  control.ClearShow();
  EXPECT_EQ(desktop.showings.size(), 1U);
  EXPECT_EQ(session.form(), nullptr) << "what never came up is gone";
  desktop.inModal("FormMain", [](ui::Form&) {});
  control.View(std::int16_t{-1});
  EXPECT_EQ(desktop.showings.size(), 2U);
  EXPECT_EQ(notices.taken(), "");

  // If the screen can't be made at all, the user is told.
  desktop.inModal("FormMain", [](ui::Form&) { throw std::runtime_error("no window"); });
  control.View(std::int16_t{-1});
  EXPECT_EQ(notices.taken(), "خطا|no window");
  session.form()->close();
  faults.failWhere("vwTarvoBasePath");
  control.ClearShow();
  EXPECT_EQ(notices.taken(), "خطا|" + std::string(Faults::kMessage));
  EXPECT_EQ(session.form(), nullptr);
  for (const char* const failing : {"vwTarvoBasePath", "From vwAccount where"}) {
    faults.failWhere(failing);
    EXPECT_THROW(control.View(std::int16_t{1}), data::DataError);
    EXPECT_EQ(session.form(), nullptr);
  }
  EXPECT_EQ(desktop.surprises(), std::vector<std::string>());
}

TEST_F(ControlStory, WhatIsTypedIsNeitherDroppedNorPutElsewhereUnasked) {
  if (onServer()) GTEST_SKIP() << "it takes two databases";
  TemporaryDatabase other;
  other.fillWithDemoChart();
  other.execute("update tblAccount set Title = 'ديگر'");
  const auto there = [&] {
    return other.rows("select ID, ParentID, Code, Title from tblAccount order by 1");
  };
  const std::string before = there();
  const auto textOf = [&](const std::string& where) {
    return where == "there"  ? other.connectionText()
           : where == "here" ? ";" + database.connectionText() + ";"
                             : where;
  };
  person.acts["connect"] = [&](auto& where) { control.OLEConnectionString(textOf(where)); };
  // The screens opened from here.
  person.acts["lists"] = [&](auto&) {
    return context().gConnectionString == database.connectionText() ? "here" : "there";
  };
  person.acts["behind"] = [&](auto& where) {
    shell.context.gConnectionString = textOf(where);
    shell.resetDataConnection();
  };
  person.acts["meanwhile"] = [&](auto& step) {
    notices.onShow = [this, step](const Notice&) {
      EXPECT_EQ(person.act(step), step.empty() ? "" : "thrown ") << "it is in the middle of a question";
    };
  };
  person.acts["mode"] = [&](auto& mode) {
    form().formMode = static_cast<mainform::FormMode>(std::stoi(mode));
  };
  person.acts["enable"] = [&](auto& name) { form().find(name)->setEnabled(true); };
  std::shared_ptr<data::DtEn> gateway;
  person.go(
      "shell/control/commands.txt", "what is typed",
      [&] {
        const bool same = shell.dtEn() == std::exchange(gateway, shell.dtEn());
        const ui::Tree& tree = form().treeAccount;
        return form().txtTitle.text() + ", user " + std::to_string(context().gUserID) + ", mode " +
               std::to_string(static_cast<int>(form().formMode)) + (same ? "" : ", another gateway, ") +
               (same ? "" : tree.text(tree.children(tree.roots().front()).front()));
      },
      [&] { return there() == before ? "" : "written there"; });
}

TEST_F(ControlStory, TheHostHearsWhenTheScreenWasLeftForGood) {
  std::string left;
  session.onLeft = [&left] { left = "left"; };
  person.go(
      "shell/control/commands.txt", "leaving the screen", [] { return std::string("open"); },
      [&] { return std::exchange(left, {}); });
}

TEST_F(ControlStory, TheHostHearsWhatWasDoneToTheChartWhenTheActIsOver) {
  const std::map<ChartEvent::Kind, std::string> kinds{
      {ChartEvent::Kind::Created, "created"}, {ChartEvent::Kind::Changed, "changed"},
      {ChartEvent::Kind::Deleted, "deleted"}, {ChartEvent::Kind::Recoded, "recoded"},
      {ChartEvent::Kind::Shown, "shown"},     {ChartEvent::Kind::ChangedBelow, "changed below"}};
  std::string heard;
  session.onEvent = [&](const ChartEvent& event) {
    heard += (heard.empty() ? "" : ", ") + kinds.at(event.kind);
    for (const std::int32_t account : event.accounts) heard += " " + std::to_string(account);
    EXPECT_TRUE(session.form() == nullptr || !session.form()->inAct());
  };
  const auto inside = [&](const char* screen, const char* steps) {
    desktop.inModal(screen, [this, &heard, steps](ui::Form&) {
      person.act(steps);
      desktop.tick();
      EXPECT_EQ(heard, "") << "the screen is still open";
    });
  };
  inside("frmAccountBatch", "sltParent 97; yes cmdDelete; cmdCancel");
  inside(
      "frmAutoCodding",
      "klmMotherAcc 98; txtSimpleCode 11; pass; yes cmdAutoCodding; yes cmdAccountType; yes cmdRemanedType");
  person.go("shell/control/commands.txt", "what the host hears", [&] {
    desktop.tick();
    return std::exchange(heard, {});
  });
}

TEST(ControlSessionStory, AProcessHasOneDesktop) {
  EXPECT_THROW(static_cast<void>(ControlSession::process()), std::logic_error);
  EXPECT_THROW(LedgerTreeControl(), std::logic_error);
  ControlSession& installed = ControlSession::install(std::make_unique<ScriptedDesktop>());
  EXPECT_EQ(&ControlSession::process(), &installed);
  EXPECT_THROW(ControlSession::install(std::make_unique<ScriptedDesktop>()), std::logic_error);
  LedgerTreeControl().OLEConnectionString("Provider=X");
  EXPECT_EQ(installed.shell().context.gConnectionString, "Provider=X");
  for (const std::set<Offer>& offers : {everyOffer(), {}}) {
    offer(offers);
    EXPECT_EQ(installed.shell().offers, offers);
  }
}

TEST_F(ControlStory, ASecondCallBringsTheOpenScreenUpOnAFreshConnection) {
  std::shared_ptr<data::DtEn> gateway;
  person.go(
      "shell/control/commands.txt", "a second call",
      [&] {
        const bool same = shell.dtEn() == std::exchange(gateway, shell.dtEn());
        return std::string(same ? "" : "another gateway, ") + std::to_string(form().treeAccount.count()) +
               " nodes, mode " + std::to_string(static_cast<int>(form().formMode));
      },
      [&] { return shell.hasDtEn() ? "" : "no gateway"; });
  expectQuiet();
}

TEST_F(ControlStory, AHostMayCallAgainFromInsideAFillOrANotice) {
  int calls = 0;
  faults.onCommand = [&](const std::string& statement) {
    // A server is asked on a thread of its own, and a call meanwhile is refused.
    if (statement.find("and exists") != std::string::npos && ++calls == 1 && !onServer()) control.ClearShow();
  };
  control.ClearShow();
  mainform::FormMain* form = session.form();
  ASSERT_NE(form, nullptr);
  EXPECT_GT(form->treeAccount.count(), 4U);
  expectQuiet();

  notices.onShow = [&](const Notice&) { control.ClearShow(); };
  faults.onCommand = [](const std::string& statement) {
    if (statement.find("and exists") != std::string::npos)
      throw data::DataError(data::DataError::Reason::Busy, 5, "the database is locked");
  };
  form->cmdRefreshAccountTree.click();
  faults.onCommand = nullptr;
  EXPECT_EQ(notices.taken(), "خطا|the database is locked");
  form->cmdRefreshAccountTree.click();
  EXPECT_GT(form->treeAccount.count(), 4U);
  expectQuiet();
}

TEST_F(ControlStory, AConnectionTextThatLeadsNowhereIsAFailureOfTheCall) {
  std::vector<std::string> texts = {"", "Provider=Nobody;Data Source=x", "Password=geheim;Provider=\""};
  for (const std::string& place : {std::string(), std::string("\"x"), std::string("/no/such/folder/x.db"),
                                   std::string("/"), std::string("a\0b", 3), std::string(10000, 'a')})
    texts.push_back("Password=geheim;Provider=SQLite;Data Source=" + place);
  for (const std::string& text : texts) {
    control.OLEConnectionString(text);
    try {
      control.ClearShow();
      ADD_FAILURE() << "opened with: " << text.substr(0, 80);
    } catch (const std::runtime_error& failure) {
      EXPECT_GT(std::string(failure.what()).size(), 10U) << text.substr(0, 80);
      EXPECT_EQ(std::string(failure.what()).find("geheim"), std::string::npos);
    }
    EXPECT_EQ(session.form(), nullptr);
    EXPECT_THROW(control.View(std::int32_t{1}), std::runtime_error);
  }
  EXPECT_EQ(context().gUserID, 1) << "what was copied stays";
  control.OLEConnectionString(database.connectionText());
  control.ClearShow();
  EXPECT_NE(session.form(), nullptr);
}

TEST_F(ControlStory, ALostFileIsToldAndNeverReplacedByAnEmptyChart) {
  if (onServer()) GTEST_SKIP() << "it is about a file";
  control.ClearShow();
  mainform::FormMain& form = *session.form();
  const auto look = [&] {
    form.sltAccount.type("صندوق");
    desktop.settle();
    const bool found = !form.sltAccount.rows().empty();
    form.sltAccount.press(ui::Key::Escape);
    return found;
  };
  const std::filesystem::path away = database.file().string() + ".away";
  std::filesystem::rename(database.file(), away);
  EXPECT_FALSE(look());
  EXPECT_NE(notices.taken(), "");
  EXPECT_THROW(control.ClearShow(), data::DataError);
  EXPECT_FALSE(std::filesystem::exists(database.file()));

  std::filesystem::rename(away, database.file());
  EXPECT_TRUE(look());
  control.ClearShow();
  form.cmdRefreshAccountTree.click();
  EXPECT_GT(form.treeAccount.count(), 4U);
  expectQuiet();
}

TEST_F(ControlStory, WithoutTheRightNothingOpensAlsoWhereNoNoticeCanSayIt) {
  shell.components.remove("noticekit.NOTICEDIALOG");
  control.UserID(3);
  EXPECT_NO_THROW(control.ClearShow());
  EXPECT_EQ(session.form(), nullptr);
  EXPECT_TRUE(desktop.showings.empty());
}

class MapStore : public PropertyStore {
 public:
  PropertyValue ReadProperty(std::string_view name, const PropertyValue& standard) override {
    order.emplace_back(name);
    const auto found = values.find(std::string(name));
    return found == values.end() ? standard : found->second;
  }
  void WriteProperty(std::string_view name, const PropertyValue& value,
                     const PropertyValue& standard) override {
    order.emplace_back(name);
    if (value != standard) values[std::string(name)] = value;
  }
  std::map<std::string, PropertyValue> values;
  std::vector<std::string> order;
};

TEST_F(ControlStory, ThePropertiesSurviveInTheHostsStore) {
  const std::vector<std::string> keys = {"DataSource",          "UserName", "Caption",    "RefreshAlarm",
                                         "OLEConnectionString", "UserID",   "PositionID", "EmployeeID",
                                         "AccPeriodSpecID"};
  std::vector<std::string> told;
  control.OnPropertyChanged([&](std::string_view name) { told.emplace_back(name); });
  control.DataSource(std::string("منبع"));
  control.UserName(2.5);
  control.Caption("عنوان");
  control.RefreshAlarm(true);
  control.OLEConnectionString("Provider=X");
  EXPECT_EQ(context().gConnectionString, "Provider=X") << "at once";
  control.UserID(-7);
  control.PositionID(8);
  control.EmployeeID(9);
  control.AccPeriodSpecID(4);
  EXPECT_EQ(told, keys);

  const auto properties = [](const LedgerTreeControl& one) {
    return std::tuple(one.DataSource(), one.UserName(), one.Caption(), one.RefreshAlarm(),
                      one.OLEConnectionString(), one.UserID(), one.PositionID(), one.EmployeeID(),
                      one.AccPeriodSpecID());
  };
  using Properties = decltype(properties(control));
  const Properties all{std::string("منبع"), 2.5, "عنوان", true, "Provider=X", -7, 8, 9, 4};
  const Properties standard{std::int16_t{0}, std::int16_t{0}, "", false, "", 0, 0, 0, 0};
  EXPECT_EQ(properties(control), all);

  MapStore store;
  LedgerTreeControl other = session.makeControl();
  EXPECT_EQ(properties(other), standard);
  other.WriteProperties(store);
  EXPECT_EQ(store.values.size(), 0U) << "what is as at the beginning needs no place";
  EXPECT_EQ(store.order, keys);
  control.WriteProperties(store);
  store.order.clear();
  other.ReadProperties(store);
  EXPECT_EQ(store.order, keys);
  EXPECT_EQ(properties(other), all);
  other.InitProperties();
  EXPECT_EQ(properties(other), standard);
  other.ReadProperties(store);
  MapStore empty;
  other.ReadProperties(empty);
  EXPECT_EQ(properties(other), standard);

  // A store may keep numbers in another type, if they fit. One with anything else changes nothing.
  for (const auto& [number, flag] :
       {std::pair<PropertyValue, PropertyValue>{std::int32_t{-7}, std::int16_t{1}},
        {-7.25, "True"},
        {"-7", "-1"}}) {
    store.values["UserID"] = number;
    store.values["RefreshAlarm"] = flag;
    other.InitProperties();
    other.ReadProperties(store);
    EXPECT_EQ(properties(other), all);
  }
  for (const auto& [key, value] : std::map<std::string, PropertyValue>{{"Caption", 5.0},
                                                                       {"RefreshAlarm", "yes"},
                                                                       {"EmployeeID", "9 x"},
                                                                       {"PositionID", ""},
                                                                       {"UserID", 40000.0}}) {
    MapStore wrong = store;
    wrong.values["AccPeriodSpecID"] = std::int16_t{5};
    wrong.values[key] = value;
    EXPECT_ANY_THROW(other.ReadProperties(wrong)) << key;
    EXPECT_EQ(properties(other), all);
  }
}

TEST_F(ControlStory, AnAccountToViewMayComeInAnyKind) {
  const std::pair<PropertyValue, const char*> accounts[] = {
      {std::string("12/5"), "125"}, {2.0, "2"}, {3.5, "4"}, {std::int32_t{7}, "7"}, {std::int16_t{8}, "8"},
      {std::string(" 9 x"), "9"}};
  for (const auto& [id, shown] : accounts) {
    control.View(id);
    EXPECT_EQ(session.form()->txtID.text(), shown);
    EXPECT_EQ(session.form()->formMode, mainform::FormMode::ModeView);
  }
  for (const PropertyValue& nobody :
       {PropertyValue(true), PropertyValue(std::string(" ")), PropertyValue(0.4)}) {
    control.View(std::int16_t{8});
    control.View(nobody);
    EXPECT_EQ(session.form()->formMode, mainform::FormMode::ModeIdle);
  }
  EXPECT_THROW(control.View(1e12), std::range_error);
  EXPECT_THROW(control.View(std::string("99999999999")), std::range_error);
}

}  // namespace
}  // namespace ledgertree::testing
