#include "ledgertree/ledger_tree_control.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <vector>

#include "data/data_error.h"
#include "engines/odbc/odbc_engine.h"
#include "engines/sqlite/embedded_engine.h"
#include "shell/control/ledger_tree_control_session.h"
#include "support/faulty_connection.h"
#include "support/scripted_desktop.h"
#include "support/scripted_notices.h"
#include "support/temporary_database.h"

namespace ledgertree::testing {
namespace {

constexpr const char* kRefused = "خطا|شما به انجام اين عمليات مجاز نيستيد.";

class ControlStory : public ::testing::Test {
 protected:
  ControlStory() {
    database.fillWithDemoChart();
    engines::sqlite::registerEmbedded(session.shell().providers);
    engines::odbc::registerOdbc(session.shell().providers);
    faults.putInto(session.shell().providers);
    control.OLEConnectionString(database.connectionText());
    control.UserID(1);
  }

  [[nodiscard]] const shell::HostContext& context() { return session.shell().context; }
  void expectQuiet() {
    EXPECT_EQ(notices.taken(), "");
    EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
    for (const data::RecordHandle* handle : session.shell().dtEn()->handles())
      EXPECT_EQ(handle->State(), 0) << handle->name();
  }

  TemporaryDatabase database;
  Faults faults;
  ControlSession session{std::make_unique<ScriptedDesktop>()};
  ScriptedDesktop& desktop = static_cast<ScriptedDesktop&>(session.shell().desktop());
  ScriptedNotices notices{session.shell().components};
  LedgerTreeControl control{session};
};

TEST_F(ControlStory, TheCurrentPeriodComesFromTheHostOrFromTheUser) {
  const auto usersPeriod = database.number("select PeriodID from tblUser where ID = 1");
  control.AccPeriodSpecID(-3);
  control.ClearShow();
  EXPECT_EQ(context().gPeriodID, usersPeriod);
  EXPECT_EQ(
      context().gPeriodBegin.toIso(),
      database.text(
          "select BeginDate from tblAccountPeriod where ID = (select PeriodID from tblUser where ID = 1)"));
  const data::DateTime begin = context().gPeriodBegin;

  // A period that the host names is taken even where the database has no such row; its bounds stay as they
  // were.
  control.AccPeriodSpecID(999);
  control.ClearShow();
  EXPECT_EQ(context().gPeriodID, 999);
  EXPECT_EQ(context().gPeriodBegin, begin);

  // A user whose period isn't known leaves everything as it was.
  database.execute("update tblUser set PeriodID = 12345 where ID = 1");
  control.AccPeriodSpecID(0);
  control.ClearShow();
  EXPECT_EQ(context().gPeriodID, 999);
  EXPECT_EQ(context().gPeriodBegin, begin);

  // View resolves none.
  control.AccPeriodSpecID(1);
  control.View(std::int16_t{0});
  EXPECT_EQ(context().gPeriodID, 999);
  expectQuiet();
}

TEST_F(ControlStory, WithoutTheRightToSeeTheChartOnlyViewOpensIt) {
  control.UserID(3);
  control.ClearShow();
  EXPECT_EQ(notices.taken(), kRefused);
  EXPECT_EQ(session.form(), nullptr);
  EXPECT_TRUE(desktop.showings.empty());

  control.View(std::string("1"));
  EXPECT_EQ(desktop.showings, std::vector<std::string>{"FormMain"});
  expectQuiet();
}

TEST_F(ControlStory, AHostThatTakesNoModelessFormGetsAModalOne) {
  desktop.refusal = 406;
  desktop.inModal("FormMain", [](ui::Form& form) { EXPECT_TRUE(form.isShown()); });
  control.ClearShow();
  EXPECT_EQ(desktop.showings, std::vector<std::string>{"FormMain!"});
  EXPECT_EQ(session.form(), nullptr) << "the person closed it";

  // Another refusal isn't told to the host, and the screen doesn't come up; View shows it modally after any.
  desktop.refusal = 7;
  control.ClearShow();
  EXPECT_EQ(desktop.showings.size(), 1U);
  desktop.inModal("FormMain", [](ui::Form&) {});
  control.View(std::int16_t{-1});
  EXPECT_EQ(desktop.showings.size(), 2U);
  EXPECT_EQ(desktop.surprises(), std::vector<std::string>());
}

TEST_F(ControlStory, ASecondCallBringsTheOpenScreenUpOnAFreshConnection) {
  control.ClearShow();
  mainform::FormMain* form = session.form();
  ASSERT_NE(form, nullptr);
  const auto gateway = session.shell().dtEn();
  const ui::NodeId root = form->treeAccount.roots().front();
  form->treeAccount.expand(form->treeAccount.children(root).front());
  const std::size_t nodes = form->treeAccount.count();
  form->formMode = mainform::FormMode::ModeNew;

  control.ClearShow();
  EXPECT_EQ(session.form(), form);
  EXPECT_NE(session.shell().dtEn(), gateway);
  EXPECT_EQ(form->treeAccount.count(), nodes) << "the tree isn't read again";
  EXPECT_EQ(form->formMode, mainform::FormMode::ModeNew);
  expectQuiet();

  // After the person has left, the next call starts over.
  form->closeByPerson();
  EXPECT_EQ(session.form(), nullptr);
  EXPECT_FALSE(session.shell().hasDtEn());
  control.ClearShow();
  EXPECT_NE(session.form(), nullptr);
}

TEST_F(ControlStory, AHostMayCallAgainFromInsideAFillOrANotice) {
  int calls = 0;
  faults.onCommand = [&](const std::string& statement) {
    if (statement.find("as cnt") != std::string::npos && ++calls == 3) control.ClearShow();
  };
  control.ClearShow();
  mainform::FormMain* form = session.form();
  ASSERT_NE(form, nullptr);
  EXPECT_GT(form->treeAccount.count(), 4U);
  expectQuiet();

  notices.onShow = [&](const Notice&) { control.ClearShow(); };
  faults.onCommand = [](const std::string& statement) {
    if (statement.find("as cnt") != std::string::npos)
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
  const std::vector<std::string> texts = {"",
                                          "   ",
                                          ";",
                                          "=",
                                          "Provider",
                                          "Provider=",
                                          "Provider=;Data Source=x",
                                          "=SQLite",
                                          "Data Source=x.db",
                                          "Provider=SQLite",
                                          "Provider=SQLite;Data Source=",
                                          "Provider=SQLite;Data Source=\"x",
                                          "Provider=\"SQLite\"x;Data Source=y",
                                          "Provider='SQLite;Data Source=y",
                                          "Provider=Nobody;Data Source=x",
                                          "Provider=SQLite Data Source=x",
                                          "Provider=SQLite;Data Source=/no/such/folder/x.db",
                                          "Provider=SQLite;Data Source=/",
                                          "Provider=SQLite;;=;Data Source=x",
                                          std::string("Provider=SQLite;Data Source=a\0b", 31),
                                          "Password=geheim;Provider=\"",
                                          "Provider=SQLite;Data Source=" + std::string(10000, 'a')};
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

TEST_F(ControlStory, NoticesUseTheComponentInItsOrderAndAreLostWithoutIt) {
  shell::Shell& shell = session.shell();
  notices.answer(1);
  EXPECT_EQ(shell.askConfirmNotice("پرسش", "؟"), shell::Answer::Yes);
  EXPECT_EQ(notices.members, (std::vector<std::string>{
                                 "set FormTitle", "set FormMessage", "set FormType", "set FormBackColor",
                                 "set BtmBackColor", "set FrameBackColor", "call ClearShow", "get Resualt"}));
  notices.answer(0);
  EXPECT_EQ(shell.askConfirmNotice("پرسش", "؟"), shell::Answer::No);
  notices.answer(-1);
  EXPECT_EQ(shell.askConfirmNotice("پرسش", "؟"), shell::Answer::None);

  shell.components.remove("noticekit.NOTICEDIALOG");
  EXPECT_EQ(shell.askConfirmNotice("پرسش", "؟"), shell::Answer::None);
  EXPECT_NO_THROW(shell.showErrorNotice("خطا", "گم"));
  control.UserID(3);
  EXPECT_NO_THROW(control.ClearShow());
  EXPECT_EQ(session.form(), nullptr);
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

  MapStore store;
  control.WriteProperties(store);
  EXPECT_EQ(store.order, keys);
  LedgerTreeControl other(session);
  store.order.clear();
  other.ReadProperties(store);
  EXPECT_EQ(store.order, keys);
  EXPECT_EQ(std::get<std::string>(other.DataSource()), "منبع");
  EXPECT_EQ(std::get<double>(other.UserName()), 2.5);
  EXPECT_EQ(other.Caption(), "عنوان");
  EXPECT_TRUE(other.RefreshAlarm());
  EXPECT_EQ(other.UserID(), -7);
  EXPECT_EQ(other.AccPeriodSpecID(), 4);
  other.InitProperties();
  EXPECT_EQ(std::get<std::int16_t>(other.DataSource()), 0);
  EXPECT_EQ(other.OLEConnectionString(), "");

  // A store that holds something else changes nothing.
  store.values["Caption"] = 5.0;
  other.UserID(3);
  EXPECT_THROW(other.ReadProperties(store), std::runtime_error);
  EXPECT_EQ(other.UserID(), 3);
}

TEST_F(ControlStory, AnAccountToViewMayComeInAnyKind) {
  control.View(std::string("12/5"));
  control.View(2.0);
  EXPECT_THROW(control.View(1e12), std::range_error);
  EXPECT_THROW(control.View(std::string("99999999999")), std::range_error);
}

}  // namespace
}  // namespace ledgertree::testing
