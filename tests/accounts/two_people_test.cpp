#include <condition_variable>
#include <random>
#include <set>
#include <thread>

#include "accounts/account_differences.h"
#include "accounts/account_story.h"
#include "accounts/accountant.h"
#include "support/amount_of_work.h"

namespace ledgertree::testing {
namespace {

using accounts::frmAccountDifferences;

class TwoPeople : public AccountStory {
 protected:
  TwoPeople() {
    // "meeting mine save": what the user does when the differences come up; "met" returns what they showed.
    person.acts["meeting"] = [this](auto& does) {
      inScreen<frmAccountDifferences>("frmAccountDifferences", [this, does](frmAccountDifferences& screen) {
        met_ = (screen.lblTold.caption().find("جابجا") == std::string::npos ? "" : "moved ") + shown(screen);
        std::istringstream words(does);
        for (std::string word; words >> word;) {
          (word == "theirs" ? screen.cmdTheirs
           : word == "mine" ? screen.cmdMine
           : word == "save" ? screen.cmdOk
                            : screen.cmdCancel)
              .click();
          met_ += word == "save" && screen.isShown() ? " still " + shown(screen) : "";
        }
      });
    };
    person.acts["met"] = [this](auto&) { return std::exchange(met_, ""); };
  }
  static std::string shown(const frmAccountDifferences& screen) {
    std::string lines;
    for (int row = 0; row < screen.flxGroups.rowCount(); ++row) {
      for (int column = 0; column < 5; ++column)
        lines += (column == 0 ? "<" : "/") + screen.flxGroups.text(row, column);
      lines += row == screen.flxGroups.currentRow() ? "*>" : ">";
    }
    return lines;
  }

  std::string met_;
};

TEST_F(TwoPeople, ASaveThatMeetsAnothersChangeShowsBothAndSavesWhatIsDecided) {
  accounts({{1, 0, "1", "دارايي"}, {2, 1, "101", "بانک"}, {3, 0, "3", "بدهي"}});
  start();
  go("two people at one account");
}

constexpr int kBlocks = 8;

/// One of two users who take turns before each command.
class TurnTaker : public Accountant {
 public:
  TurnTaker(const TemporaryDatabase& database, std::function<void()> turn,
            std::function<void(const std::string&)> done)
      : Accountant(database.connectionText()) {
    faults.onCommand = [turn = std::move(turn)](const std::string& command) {
      if (!command.starts_with("search")) turn();  // a look-up may be on a thread of its own
    };
    faults.onAnswer = [done = std::move(done)](const std::string& command, const auto&) { done(command); };
  }

  /// What this user has seen or written of each group: only changes to the others may go unreported.
  std::map<std::string, std::set<std::string>> knows;
};

class Interleavings : public MainScreenHouse, public ::testing::WithParamInterface<int> {
 protected:
  using State = std::map<std::string, std::string>;

  void run(unsigned seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    dice_.seed(seed);
    story_ = "";
    database.execute(
        "delete from tblAccountRelatedObjects; update tblAccount set ParentID = null; delete from tblAccount;"
        "insert into tblAccount (ID, ParentID, Code, Title, Notes) values (1, null, '1', 'ن1', ''),"
        " (2, 1, '101', 'ن2', ''), (3, null, '3', 'ن3', '');"
        "update tblAccount set MaxDebit = 0, MaxCredit = 0; update tblAccount set GroupID = 4, PositionID = "
        "9 where ID = 2;"
        "insert into tblAccountRelatedObjects values (2, 4, 11, 7)");
    state_ = states();
    over_ = {false, false};
    turn_ = -1;
    // In some stories one user does much between two commands of the other.
    stays_ = 1 << roll(6);
    std::thread threads[2] = {std::thread([this] { work(0); }), std::thread([this] { work(1); })};
    draw();
    for (std::thread& thread : threads) thread.join();
  }

  std::unique_ptr<TurnTaker> people_[2];
  int lost_ = 0, meetings_ = 0;

  void hire() {
    for (int me = 0; me < 2; ++me)
      people_[me] = std::make_unique<TurnTaker>(
          database, [this, me] { pass(me); }, [this, me](const std::string& command) { look(me, command); });
  }

 private:
  int roll(int sides) { return static_cast<int>(dice_() % static_cast<unsigned>(sides)); }
  void draw() {
    const std::lock_guard guard(lock_);
    if (turn_ == -1 || roll(stays_) == 0) turn_ = roll(2);
    if (over_[static_cast<std::size_t>(turn_)]) turn_ = 1 - turn_;
    turned_.notify_all();
  }
  void await(int me) {
    std::unique_lock guard(lock_);
    turned_.wait(guard, [&] { return turn_ == me; });
  }
  void pass(int me) {
    if (turn_ == -1) return;  // while the screens start
    draw();
    await(me);
  }
  void work(int me) {
    await(me);
    act(me, *people_[me]);
    over_[static_cast<std::size_t>(me)] = true;
    if (!over_[static_cast<std::size_t>(1 - me)]) draw();
  }

  void act(int me, TurnTaker& one) {
    mainform::FormMain& f = *one.form;
    const int id = roll(4) == 0 ? 1 : 2;
    one.knows.clear();
    const bool edits = roll(8) != 0;
    f.View(id);
    if (edits) f.cmdEdit.click();
    if (f.AccountOnRecord != id) return;  // the other user has deleted it
    see(one);
    story_ += std::to_string(me) + (edits ? " edits " : " deletes ") + std::to_string(id) + "; ";
    one.notices.onShow = nullptr;
    if (!edits) {
      one.notices.answer(1);
      return f.cmdDelete.click();
    }
    const std::string mark = std::to_string(me) + std::to_string(roll(100));
    if (roll(3) == 0) f.txtTitle.paste("عنوان" + mark);
    if (roll(3) == 0) f.txtNotes.paste("يادداشت" + mark);
    if (roll(3) == 0) f.txtMaxDebit.paste("9" + mark);
    if (roll(4) == 0) f.txtCode.paste(mark);
    if (roll(4) == 0) f.OptClose.click();
    if (roll(3) == 0) pickRow(f.sltPosition, one.desktop, 9 + roll(2));
    if (roll(4) == 0) pickRow(f.sltGroup, one.desktop, roll(3) == 0 ? -1 : 4 + roll(2));
    if (!f.sltEntityType.IsEmpty() && roll(4) == 0) pickRow(f.sltEntity, one.desktop, 7 + roll(2));
    if (id == 2 && roll(5) == 0) pickRow(f.sltParent, one.desktop, 3);
    see(one);
    f.LastNewParentID = roll(2) == 0 ? f.sltParent.AccountID() : 0;
    f.settings.PositionInEntityTest = static_cast<std::int16_t>(roll(2));
    for (int times = 0; times < 8; ++times)
      one.desktop.inModal("frmAccountDifferences",
                          [&](ui::Form& shown) { decide(one, dynamic_cast<frmAccountDifferences&>(shown)); });
    f.cmdSave.click();
    one.desktop.forgetScripts();
    if (f.formMode == mainform::FormMode::ModeView) return;
    one.notices.answer(1);
    f.cmdCancel.click();
  }
  void decide(TurnTaker& one, frmAccountDifferences& screen) {
    ++meetings_;
    for (int row = 0; row < screen.flxGroups.rowCount(); ++row)
      one.knows[screen.flxGroups.text(row, 0)].insert(screen.flxGroups.text(row, 2));
    for (int row = 0; row < screen.flxGroups.rowCount(); ++row) {
      screen.flxGroups.selectRow(row);
      (roll(2) == 0 ? screen.cmdMine : screen.cmdTheirs).click();
    }
    (roll(8) == 0 ? screen.cmdCancel : screen.cmdOk).click();
  }

  /// An account's groups in the words of the differences, each preceded by the account.
  State states() {
    State all;
    const data::Rows rows = database.read(
        "select a.ID, a.Title, a.Notes, a.MaxDebit, a.IsClosed, a.Code, a.ParentID, a.GroupID, a.PositionID,"
        " r.RelatedClassID, r.RelatedObjectID from tblAccount a left join tblAccountRelatedObjects r on "
        "r.AccountID = a.ID where a.ID < 3 order by 1, 10, 11");
    for (std::size_t row = 0; row < rows.count(); ++row) {
      const auto cell = [&](std::size_t column) { return rows.value(row, column).toText(); };
      const std::string id = cell(0);
      const auto name = [](const std::string& number, std::map<std::string, std::string> names) {
        return names.count(number) > 0 ? names[number] : "-";
      };
      all[id + "عنوان"] = cell(1);
      all[id + "توضيحات"] = cell(2).empty() ? "-" : cell(2);
      all[id + "سقف بدهکاري"] = std::to_string(std::stoll(cellText(rows.value(row, 3))) / 10000);
      all[id + "وضعيت حساب"] = cell(4) == "1" ? "بسته" : "باز";
      all[id + "حساب مادر، کد"] = cell(6) + "، " + cell(5);
      const bool persons = cell(9) == "11";
      all[id + "گروه، مركز هزينه/درآمد، نوع موجوديت، موجوديت"] +=
          name(cell(7), {{"4", "مشتريان"}, {"5", "فروشندگان"}}) + "، " +
          name(cell(8), {{"9", "مونتاژ"}, {"10", "رنگ"}}) + "، " + (persons ? "01_اشخاص" : "-") + "، " +
          name(cell(10), {{"7", "بام"}, {"8", "مغان"}});
    }
    return all;
  }
  /// The user knows what is on the screen, and nothing that either has typed is lost.
  static void see(TurnTaker& one) {
    const mainform::FormMain& f = *one.form;
    const auto text = [](const std::string& said) { return said.empty() ? "-" : said; };
    one.knows["عنوان"].insert(f.txtTitle.text());
    one.knows["توضيحات"].insert(text(f.txtNotes.text()));
    one.knows["سقف بدهکاري"].insert(f.txtMaxDebit.text());
    one.knows["وضعيت حساب"].insert(f.OptClose.value() ? "بسته" : "باز");
    const std::int32_t parent = f.sltParent.AccountID();
    one.knows["حساب مادر، کد"].insert((parent < 1 ? "" : std::to_string(parent)) + "، " +
                                      f.txtMotherCode.text() + f.txtCode.text());
    one.knows["گروه، مركز هزينه/درآمد، نوع موجوديت، موجوديت"].insert(
        text(f.sltGroup.SelectedText()) + "، " + text(f.sltPosition.SelectedText()) + "، " +
        text(f.sltEntityType.SelectedText()) + "، " + text(f.sltEntity.SelectedText()));
  }
  /// After each write: whoever overwrote a value knew it.
  void look(int me, const std::string& command) {
    if (turn_ == -1 || command.starts_with("S") || command == "spTarvoHasPermission") return;
    TurnTaker& writer = *people_[me];
    State now = states();
    const bool descends = command.starts_with("Update tblAccount Set IsClosed");
    for (const auto& [key, old] : state_) {
      if (now.count(key) > 0 && now[key] == old) continue;
      const std::string group = key.substr(1);
      const bool known = writer.knows[group].count(old) > 0 || knowsCode(writer, group, old);
      if (!known && !descends) {
        ++lost_;
        ADD_FAILURE() << story_ << me << " wrote over «" << old << "» of " << key << " by " << command;
      }
    }
    for (const auto& [key, value] : now)
      if (state_.count(key) == 0 || state_[key] != value) writer.knows[key.substr(1)].insert(value);
    state_ = std::move(now);
  }
  /// The differences name the parent, and the rows have its number.
  static bool knowsCode(TurnTaker& writer, const std::string& group, const std::string& old) {
    if (group != "حساب مادر، کد") return false;
    const auto ends = [](const std::string& text) { return text.substr(text.find("، ")); };
    return std::any_of(writer.knows[group].begin(), writer.knows[group].end(),
                       [&](const std::string& seen) { return ends(seen) == ends(old); });
  }

  std::mt19937 dice_;
  std::mutex lock_;
  std::condition_variable turned_;
  int turn_ = -1, stays_ = 1;
  std::vector<bool> over_;
  State state_;
  std::string story_;
};

TEST_P(Interleavings, LoseNoValueThatNobodyWasToldOf) {
  hire();
  const int count = amountOfWork("LEDGERTREE_INTERLEAVINGS", onServer() ? 8 : 400, onServer() ? 80 : 10000);
  for (int seed = GetParam(); seed < count && !HasFailure(); seed += kBlocks)
    run(static_cast<unsigned>(seed));
  EXPECT_TRUE(onServer() || meetings_ > 0) << "two people never met";
}

INSTANTIATE_TEST_SUITE_P(Blocks, Interleavings, ::testing::Range(0, kBlocks));

}  // namespace
}  // namespace ledgertree::testing
