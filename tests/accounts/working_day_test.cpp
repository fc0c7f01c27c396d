// Several accountants, each in a process of their own, on one chart.
#include <chrono>
#include <fstream>
#include <random>
#include <set>
#include <thread>

#include "accounts/account_differences.h"
#include "accounts/accountant.h"
#include "coding/recoding/auto_codding.h"
#include "db/check.h"
#include "periods/period_branch.h"
#include "support/amount_of_work.h"
#include "support/child_process.h"
#include "support/steps.h"
#include "support/text_table.h"

namespace ledgertree::testing {
namespace {

using mainform::FormMode;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Accounts that everybody works on: the two branches of what each creates, one whose ceiling everybody
/// raises by one, and one whose children everybody recodes.
constexpr int kRaised = 3, kRecoded = 4, kShared = 5;
constexpr long kPeople = 100;
constexpr std::size_t kMostOwn = 40;

/// The results of a day, which the parent process adds up.
struct Outcome {
  long accounts = 0;  ///< created and still there
  long raised = 0;    ///< how often the ceiling was raised without a report of another user's change
  long unsure = 0;    ///< writes of which nobody knows whether they were done
  long acts = 0;
  long stillest = 0;  ///< the longest time without a sign of life, in milliseconds
};

class Day : private Accountant {
 public:
  Day(const std::string& connectionText, int me)
      : Accountant(connectionText), me_(me), dice_(static_cast<unsigned>(me)) {
    desktop.onWait = desktop.onRepaint = [this] { sign(); };
    notices.onShow = [this](const Notice&) { sign(); };
  }

  Outcome workFor(std::chrono::seconds time) {
    static constexpr void (Day::*kActs[])() = {&Day::look,  &Day::search, &Day::add,    &Day::change,
                                               &Day::raise, &Day::move,   &Day::remove, &Day::recode,
                                               &Day::show,  &Day::post};
    const auto end = steady_clock::now() + time;
    while (steady_clock::now() < end && !::testing::Test::HasFailure()) {
      last_ = moment();
      (this->*kActs[roll(std::size(kActs))])();
      sign();
      ++day_.acts;
      static_cast<void>(hear());
      desktop.forgetScripts();
      if (form->formMode == FormMode::ModeNew || form->formMode == FormMode::ModeEdit) leave();
      desktop.settle();
    }
    for (const auto& [id, kept] : own_) {
      form->View(id);
      EXPECT_EQ(form->txtTitle.text(), kept.title) << id;
      EXPECT_EQ(form->sltParent.AccountID(), kept.parent) << id;
    }
    day_.accounts = static_cast<long>(own_.size());
    return day_;
  }

 private:
  struct Own {
    std::string title;
    int parent;
  };

  std::size_t roll(std::size_t sides) { return dice_() % sides; }
  /// The time without this thread's waits for a processor, caused by other work of the machine.
  static milliseconds moment() {
    std::ifstream file("/proc/thread-self/schedstat");
    long long ran = 0, waited = 0;
    file >> ran >> waited;
    return std::chrono::duration_cast<milliseconds>(steady_clock::now().time_since_epoch() -
                                                    std::chrono::nanoseconds(waited));
  }
  /// The user sees something new.
  void sign() {
    const milliseconds now = moment();
    day_.stillest = std::max<long>(day_.stillest, (now - last_).count());
    last_ = now;
  }
  /// The messages since the last call. None of them may be unexpected.
  std::string hear() {
    std::string all;
    for (const Notice& notice : notices.take()) {
      if (notice.question) continue;
      const auto expected = linesOf("accounts/steps.txt", "what a working day tells");
      EXPECT_TRUE(std::any_of(expected.begin(), expected.end(), [&](const std::string& words) {
        return notice.message.find(words) != std::string::npos;
      })) << notice.message;
      if (notice.message.find("معلوم نيست") != std::string::npos) ++day_.unsure;
      all += notice.message;
    }
    notices.forget();
    return all;
  }
  void agree() {
    for (int question = 0; question < 3; ++question) notices.answer(1);
  }
  void leave() {
    agree();
    form->cmdCancel.click();
    static_cast<void>(hear());
  }
  void pick(ui::LookupField& field, int id, const std::string& typed) {
    sign();
    pickRow(field, desktop, id, typed);
    last_ = moment();  // the list says that it is searching
  }
  bool edit(int id) {
    form->View(id);
    if (form->txtID.text() == std::to_string(id)) form->cmdEdit.click();
    return form->formMode == FormMode::ModeEdit;
  }
  /// Saves with another code as often as somebody else was first with it, and takes over what another user
  /// has changed too. Returns whether what was typed was stored.
  bool save() {
    bool met = false;
    bool stored = false;
    for (int attempt = 0; attempt < 100; ++attempt) {
      for (int times = 0; times < 8; ++times)
        desktop.inModal("frmAccountDifferences", [&](ui::Form& shown) {
          auto& screen = dynamic_cast<accounts::frmAccountDifferences&>(shown);
          // A change between two statements of a save is reported after them: the save read what it wrote.
          const bool behind = screen.flxGroups.text(0, 1) == screen.flxGroups.text(0, 3);
          (behind ? stored : met) = behind ? stored || !met : met || !stored;
          for (int row = 0; row < screen.flxGroups.rowCount(); ++row) {
            screen.flxGroups.selectRow(row);
            screen.cmdTheirs.click();
          }
          screen.cmdOk.click();
        });
      form->cmdSave.click();
      desktop.forgetScripts();
      const std::string told = hear();
      if (form->formMode == FormMode::ModeView) return stored || !met;
      if (told.find("حسابي با كد مورد نظر") == std::string::npos) return stored;
      form->cmdAutoCode.click();
    }
    ADD_FAILURE() << "a hundred codes were taken";
    return false;
  }

  void look() {
    form->View(static_cast<int>(1 + roll(kShared)));
    sign();
    if (roll(3) == 0) form->cmdRefreshAccountTree.click();
    const ui::NodeId branch = form->treeAccount.find("-1:" + std::to_string(1 + roll(2)));
    if (branch == ui::kNoNode) return;
    sign();
    form->treeAccount.collapse(branch);
    form->treeAccount.expand(branch);
  }
  void search() { pick(form->sltAccount, kShared, "نخست"); }
  void add() {
    if (own_.size() >= kMostOwn) return remove();
    const int parent = static_cast<int>(1 + roll(2));
    const std::string title = mark();
    form->cmdNew.click();
    pick(form->sltParent, parent, std::to_string(parent));
    form->txtTitle.paste(title);
    if (save()) own_[std::stoi(form->txtID.text())] = {title, parent};
  }
  void change() {
    const auto one = any();
    if (one == own_.end() || !edit(one->first)) return;
    const std::string title = mark();
    form->txtTitle.paste(title);
    if (save()) one->second.title = title;
  }
  void raise() {
    if (!edit(kRaised)) return;
    std::string digits = form->txtMaxDebit.text();
    std::erase(digits, '/');
    // Two users who type the same amount would agree.
    form->txtMaxDebit.paste(std::to_string((std::stol("0" + digits) / kPeople + 1) * kPeople + me_));
    if (save()) ++day_.raised;
  }
  void move() {
    const auto one = any();
    if (one == own_.end() || !edit(one->first)) return;
    const int parent = 3 - one->second.parent;
    pick(form->sltParent, parent, std::to_string(parent));
    if (save()) one->second.parent = parent;
  }
  void remove() {
    const auto one = any();
    if (one == own_.end()) return;
    form->View(one->first);
    agree();
    form->cmdDelete.click();
    if (hear().empty() && form->formMode == FormMode::ModeIdle) own_.erase(one);
  }
  void recode() {
    form->View(kRecoded);
    desktop.inModal("frmAutoCodding", [this](ui::Form& shown) {
      auto& screen = dynamic_cast<coding::frmAutoCodding&>(shown);
      pick(screen.klmMotherAcc, kRecoded, "4");
      screen.txtSimpleCode.paste(std::to_string(100 + roll(800)));
      agree();
      screen.cmdAutoCodding.click();
    });
    form->mnuSameCoding.click();
  }
  void show() {
    form->View(kShared);
    desktop.inModal("FormPeriodBranch", [this](ui::Form& shown) {
      auto& screen = dynamic_cast<periods::FormPeriodBranch&>(shown);
      agree();
      (roll(2) == 0 ? screen.cmdAdd : screen.cmdDeleteAllRows).click();
    });
    form->cmdPeriodBranch.click();
  }
  /// The host posts a line of a document.
  void post() {
    try {
      shell.dtEn()->cnMainData.Execute(
          "Insert Into tblAccountDocumentDetail (DocumentID, AccountID) Values (1, " +
          std::to_string(kRaised) + ")");
    } catch (const data::DataError& failure) {
      EXPECT_EQ(failure.reason(), data::DataError::Reason::Busy) << failure.what();
    }
  }

  std::map<int, Own>::iterator any() {
    auto one = own_.begin();
    if (!own_.empty()) std::advance(one, static_cast<long>(roll(own_.size())));
    return one;
  }
  std::string mark() { return "کار " + std::to_string(dice_()); }

  int me_;
  std::mt19937 dice_;
  Outcome day_;
  std::map<int, Own> own_;
  milliseconds last_{};
};

/// Runs the days in as many processes, which wait for the file `door` and read the connection text from it.
std::vector<std::unique_ptr<Child>> people(int count, const std::filesystem::path& door,
                                           std::chrono::seconds time) {
  std::vector<std::unique_ptr<Child>> all;
  for (int one = 0; one < count; ++one)
    all.push_back(std::make_unique<Child>([=](int pipe) {
      while (!std::filesystem::exists(door)) std::this_thread::sleep_for(milliseconds(10));
      std::string text;
      std::getline(std::ifstream(door), text);
      const Outcome day = Day(text, one).workFor(time);
      std::ostringstream told;
      told << day.accounts << ' ' << day.raised << ' ' << day.unsure << ' ' << day.acts << ' '
           << day.stillest;
      tell(pipe, told.str() + "\n");
    }));
  return all;
}

void prepare(TemporaryDatabase& database) {
  std::string rights = "insert into tblUser (ID, Name) values (1, 'حسابدار');";
  for (const int right : {301, 30101, 30102, 30103, 30105, 30110})
    rights +=
        "insert into tblUserPermission (UserID, FormPermissionID) values (1, " + std::to_string(right) + ");";
  database.execute(
      rights +
      "insert into tblAccountPeriod (ID, Name, BeginDate, EndDate, FarsiBeginDate, FarsiEndDate) values"
      " (5, 'سال 1403', '2024-03-20', '2025-03-20', '1403/01/01', '1403/12/30');"
      "insert into tblAccountDocument (ID, FarsiDocumentDate) values (1, '1402/01/01');"
      // The codes of the first children are wide enough for everything that is saved.
      "insert into tblAccount (ID, ParentID, Code, Title, MaxDebit) values (1, null, '1', 'دارايي', 0), (2, "
      "null,"
      " '2', 'بدهي', 0), (3, null, '3', 'سقف', 0), (4, null, '4', 'کدها', 0), (5, null, '5', 'نخست', 0), (6, "
      "1,"
      " '1000000', 'نخست', 0), (7, 2, '2000000', 'نخست', 0);"
      "insert into tblAccount (ID, ParentID, Code, Title) values (11, 4, '4901', 'ا'), (12, 4, '4902', 'ب'),"
      " (13, 4, '4903', 'پ')");
}

TEST(WorkingDay, NobodyWaitsUnawaresAndNoChangeIsLostUntold) {
  const int count = amountOfWork("LEDGERTREE_PEOPLE", 3, 10);
  const std::chrono::seconds time(amountOfWork("LEDGERTREE_SHARED_SECONDS", 3, 600));
  const TemporaryFolder folder;
  const auto door = folder.path() / "door";
  const auto children = people(count, door, time);
  TemporaryDatabase database;
  prepare(database);
  std::ofstream(folder.path() / "key") << database.connectionText() << "\n";
  std::filesystem::rename(folder.path() / "key", door);
  Outcome all;
  for (const auto& child : children) {
    std::istringstream words(child->hearLine());
    Outcome day;
    EXPECT_TRUE(words >> day.accounts >> day.raised >> day.unsure >> day.acts >> day.stillest);
    EXPECT_EQ(child->end(), 0);
    all = {all.accounts + day.accounts, all.raised + day.raised, all.unsure + day.unsure, all.acts + day.acts,
           std::max(all.stillest, day.stillest)};
  }
  RecordProperty("acts", std::to_string(all.acts));
  RecordProperty("stillest", std::to_string(all.stillest));
  EXPECT_LT(all.stillest, 1000) << "milliseconds in which somebody saw nothing";
  const long accounts = database.number("select count(*) from tblAccount") - 10;
  EXPECT_TRUE(all.accounts <= accounts && accounts <= all.accounts + all.unsure) << accounts;
  const long ceiling =
      database.number("select MaxDebit from tblAccount where ID = 3") / (onServer() ? 1 : 10000) / kPeople;
  EXPECT_TRUE(all.raised <= ceiling && ceiling <= all.raised + all.unsure)
      << ceiling << " and not " << all.raised;
  const auto fault = [](std::string_view told) { ADD_FAILURE() << told; };
  data::Providers providers;
  engines::odbc::registerOdbc(providers);
  EXPECT_EQ(onServer() ? db::checkChart(*providers.open(testServer()), fault)
                       : db::checkChart(database.other(), fault),
            0U);
}

}  // namespace
}  // namespace ledgertree::testing
