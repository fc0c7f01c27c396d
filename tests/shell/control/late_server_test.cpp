#include <chrono>
#include <condition_variable>
#include <mutex>

#include "control_house.h"
#include "data/data_error.h"
#include "support/tcp_proxy.h"

namespace ledgertree::testing {
namespace {

using namespace std::chrono_literals;

constexpr const char* kWithWayOut = "در انتظار پاسخ پايگاه داده|انصراف";

/// A server that doesn't answer some commands, on top of an engine that answers late.
class LateServer : public ControlHouse {
 protected:
  LateServer() {
    database.fillWithDemoChart();
    faults.late = true;
    control.ClearShow();
    // An abandoned thread may hear of it after the story.
    faults.onCommand = [silence = silence_](const std::string& command) {
      std::unique_lock lock(silence->mutex);
      if (!silence->about(command)) return;
      silence->changed.wait(lock, [&] { return !silence->about(command); });
    };
  }
  ~LateServer() override { silentAbout(""); }

  /// From now on, commands that contain these words aren't answered; empty answers what is waiting.
  void silentAbout(std::string words) {
    {
      const std::lock_guard lock(silence_->mutex);
      silence_->words = std::move(words);
    }
    silence_->changed.notify_all();
  }
  ui::NodeId branch() { return form().treeAccount.children(form().treeAccount.roots().front()).front(); }
  /// The labels of the first branch, which the user opens.
  std::vector<std::string> opened() {
    std::vector<std::string> labels;
    form().treeAccount.expand(branch());
    for (const ui::NodeId child : form().treeAccount.children(branch()))
      labels.push_back(form().treeAccount.text(child));
    return labels;
  }

 private:
  struct Silence {
    std::mutex mutex;
    std::condition_variable changed;
    std::string words;
    [[nodiscard]] bool about(const std::string& command) const {
      return !words.empty() && command.find(words) != std::string::npos;
    }
  };
  std::shared_ptr<Silence> silence_ = std::make_shared<Silence>();
};

TEST_F(LateServer, AWaitIsShownAndNothingElseHappensInIt) {
  int paints = 0;
  desktop.onWait = [&] {
    EXPECT_THROW(control.ClearShow(), std::runtime_error);
    EXPECT_THROW(control.View(std::int16_t{2}), std::runtime_error);
    EXPECT_THROW(shell.dtEn()->cnMainData.Execute("select 1"), data::DataError);
    const auto mode = form().formMode;
    form().cmdNew.click();
    form().mnuFonc1.click();
    form().press(ui::KeyChord::of(ui::Key::Enter));
    form().focusMoved(&form().txtCode);
    desktop.tick();
    EXPECT_EQ(form().formMode, mode);
    EXPECT_NE(form().focused(), &form().txtCode);
    if (++paints == 2) silentAbout("");
  };
  silentAbout("Order by Code");
  EXPECT_GT(opened().size(), 1U);
  EXPECT_TRUE(desktop.waits.front() == kWithWayOut && desktop.waits.back() == ".");
  EXPECT_EQ(notices.taken(), "");
  form().cmdNew.click();
  EXPECT_EQ(form().formMode, mainform::FormMode::ModeNew);
}

TEST_F(LateServer, WhatOnlyReadsCanBeGivenUpAndTheNextCommandGoesOn) {
  desktop.onWait = [&] { desktop.escape = true; };
  silentAbout("Order by Code");
  EXPECT_EQ(opened(), std::vector<std::string>{"!$@Dummy@$!"});
  EXPECT_EQ(notices.taken(), std::string("خطا|") + data::kGivenUp);
  silentAbout("");
  EXPECT_GT(opened().size(), 1U);
}

TEST_F(LateServer, AnOutageIsMetOnceAndToldAsWhatItMeans) {
  shell.waits.patience = 1500ms;
  const auto begun = std::chrono::steady_clock::now();
  silentAbout("vw");
  form().treeAccount.click(branch());
  EXPECT_EQ(notices.taken(), std::string("خطا|") + data::kStopped);
  EXPECT_LT(std::chrono::steady_clock::now() - begun, 2 * shell.waits.patience)
      << "one command was waited for";
  silentAbout("");
  form().treeAccount.click(branch());
  form().cmdEdit.click();
  form().txtNotes.setText("x");
  desktop.waits.clear();
  silentAbout("spAccountUpdateAccounts");
  desktop.onWait = [&] { desktop.escape = true; };
  form().cmdSave.click();
  const auto told = notices.take();
  ASSERT_EQ(told.size(), 1U);
  EXPECT_TRUE(told[0].message.starts_with(data::kUnanswered)) << told[0].message;
  EXPECT_EQ(desktop.waits.front(), "در انتظار پاسخ پايگاه داده|") << "what writes is no person's to give up";
  silentAbout("");
  form().cmdSave.click();
  EXPECT_EQ(form().formMode, mainform::FormMode::ModeView);
}

TEST(CutLine, TheScreenWaitsForTheServerAndGoesOnAndNothingIsWrittenTwice) {
  if (!onServer()) GTEST_SKIP() << "it takes a server on a road";
  TcpProxy road(testServer());
  class House : public ControlHouse {
   public:
    using ControlHouse::control, ControlHouse::database, ControlHouse::desktop, ControlHouse::form,
        ControlHouse::notices;

   private:
    void TestBody() override {}
  } house;
  house.database.fillWithDemoChart();
  house.control.OLEConnectionString(TcpProxy::through(road, testServer()) + ";Connect Timeout=2");
  house.control.ClearShow();
  const auto& form = house.form();
  const auto cutFor = [&](int paints) {
    road.set(TcpProxy::Road::Cut);
    house.desktop.waits.clear();
    house.desktop.onWait = [&road, paints, seen = 0]() mutable {
      if (++seen == paints) road.set(TcpProxy::Road::Open);
    };
  };
  // The action that meets it reports it; the next one waits visibly, and goes on.
  ui::Tree& tree = house.form().treeAccount;
  cutFor(10);
  tree.click(tree.find("-1:1"));
  EXPECT_EQ(house.notices.take().size(), 1U);
  tree.click(tree.find("-1:1"));
  EXPECT_EQ(house.notices.taken(), "");
  EXPECT_EQ(form.txtID.text(), "1");
  EXPECT_FALSE(house.desktop.waits.empty());
  // A write whose answer is lost says so; saved again, it exists once.
  road.setBehind(u"spAccountInsertAccounts", TcpProxy::Road::Swallowing);
  house.form().cmdNew.click();
  house.form().txtTitle.paste("خط بريده");
  house.form().txtCode.paste("98765");
  house.desktop.onWait = [&] { road.set(TcpProxy::Road::Cut); };
  house.form().cmdSave.click();
  EXPECT_NE(house.notices.taken().find("معلوم نيست"), std::string::npos);
  cutFor(10);
  house.form().cmdSave.click();
  static_cast<void>(house.notices.take());
  if (form.formMode != mainform::FormMode::ModeView) house.form().cmdSave.click();
  EXPECT_EQ(form.formMode, mainform::FormMode::ModeView) << house.notices.taken();
  EXPECT_EQ(house.database.number("select count(*) from tblAccount where Code = '98765'"), 1);
}

}  // namespace
}  // namespace ledgertree::testing
