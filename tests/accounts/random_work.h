#pragma once

#include <functional>
#include <map>
#include <random>
#include <sstream>

#include "accounts/account_story.h"
#include "accounts/chart_model.h"
#include "batch/account_batch.h"
#include "coding/recoding/auto_codding.h"
#include "shell/preview.h"

namespace ledgertree::testing {

/// A user who randomly does what the screen allows, next to a small model of the rules: after each step the
/// rows, the screen and the messages must match the model.
class RandomWork : public AccountStory {
 public:
  /// The rows of a query, see allRows.
  using Query = std::function<std::string(const std::string& query)>;
  /// The chart in the form of ChartModel::rows.
  static std::string rowsOf(const Query& query) {
    auto relations = byAccount(query(
        "select AccountID, AccountGroupID, RelatedClassID, RelatedObjectID from tblAccountRelatedObjects"));
    auto ancestors = byAccount(query("select ChildID, ID from tblAccountParent order by ID"));
    std::string rows;
    std::istringstream accounts(
        query("select ID, ParentID, Code, Title, NoLevel, GroupID, PositionID, AccountNatureID, IsPermanent, "
              "IsClosed from tblAccount order by ID"));
    for (std::string line; std::getline(accounts, line);) {
      std::vector<std::string> cells;
      std::istringstream each(line);
      for (std::string cell; std::getline(each, cell, '|');) cells.push_back(cell);
      const std::string& id = cells.front();
      const bool related = relations.count(id) > 0;
      cells.insert(cells.end(), {related ? relations[id] : "none", ancestors[id]});
      rows += ChartModel::row(cells);
    }
    return rows;
  }

 protected:
  /// The user picks from one half of what an account can reference, alternating at each step; with `hide_`
  /// the host's views show only that half, else everything.
  bool halves_ = false, hide_ = false;

  [[nodiscard]] std::string rows() {
    return rowsOf([this](const std::string& query) { return database.rows(query); });
  }
  void work(unsigned seed, int steps) {
    startOver();
    dice_.seed(seed);
    shell.offers = {Offer::Preview};
    model.codingMode = roll(2);
    model.positionCounts = roll(2) == 1;
    model.editCodeAllowed = roll(3) == 0;
    setting(307, std::to_string(model.codingMode));
    setting(210, model.positionCounts ? "1" : "0");
    setting(319, model.editCodeAllowed ? "1" : "0");
    start();
    for (int step = 0; step < steps && !HasFailure(); ++step) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step));
      if (halves_) showHalf();
      const int what = roll(20);
      if (what < 9 || model.accounts.empty()) {
        addOne();
      } else if (what < 16) {
        editOne();
      } else if (what < 18) {
        deleteOne();
      } else {
        const int id = anyAccount();
        step_ = "a document on " + std::to_string(id);
        documentOn(id);
        model.accounts[id].documents = true;
      }
      EXPECT_EQ(rows(), model.rows()) << "after: " << step_;
      EXPECT_TRUE(form->treeAccount.enabled());
    }
    if (HasFailure() || model.accounts.empty()) return;
    SCOPED_TRACE("seed " + std::to_string(seed));
    recodeAhead();
    deleteAhead();
  }

 private:
  /// What each line has after the account, joined by commas.
  static std::map<std::string, std::string> byAccount(const std::string& lines) {
    std::map<std::string, std::string> found;
    std::istringstream each(lines);
    for (std::string line; std::getline(each, line);) {
      std::string& of = found[line.substr(0, line.find('|'))];
      of += (of.empty() ? "" : ",") + line.substr(line.find('|') + 1);
    }
    return found;
  }

  using Told = ChartModel::Told;
  using FormMode = mainform::FormMode;

  void startOver() {
    form.reset();
    model = {};
    database.execute(
        "delete from tblAccountDocumentDetail; delete from tblAccountRelatedObjects;"
        "update tblAccount set ParentID = null; delete from tblAccount; delete from "
        "tblTarvoSystemParameters; insert or ignore into tblUserPermission (UserID, FormPermissionID) values "
        "(1, 30105), (1, 30108)");
    if (!halves_) return;
    database.execute(
        "drop table if exists tblHidden; create table tblHidden (Kind, ID); update sqlite_sequence set seq = "
        "0");
    for (const auto& [table, view, first] : kKinds) {
      database.execute("drop view " + std::string(view) + "; create view " + view +
                       " as select ID, Code, Name from " + table +
                       " where ID not in (select ID from tblHidden where Kind = '" + table + "')");
    }
  }
  void showHalf() {
    shown_ = roll(1 << std::size(kKinds));
    if (!hide_) return;
    database.execute("delete from tblHidden");
    for (const auto& [table, view, first] : kKinds)
      database.execute("insert into tblHidden values ('" + std::string(table) + "', " +
                       std::to_string(2 * first + 1 - one(first)) + ")");
  }
  /// Either of the two of a kind, or the one that is shown.
  int one(int first) {
    if (!halves_) return first + roll(2);
    const auto kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                   [&](const Kind& each) { return each.first == first; });
    return first + (shown_ >> (kind - std::begin(kKinds)) & 1);
  }
  int roll(int sides) { return static_cast<int>(dice_() % static_cast<unsigned>(sides)); }
  int anyAccount() {
    auto one = model.accounts.begin();
    std::advance(one, roll(static_cast<int>(model.accounts.size())));
    return one->first;
  }
  int anyParent() { return model.accounts.empty() || roll(5) == 0 ? -1 : anyAccount(); }
  std::string digits(int most) {
    std::string text;
    for (int count = 1 + roll(most); count > 0; --count) text += static_cast<char>('0' + roll(10));
    return text;
  }

  /// Picks a parent, and applies the rules to the typed account.
  void chooseParent(ChartModel::Typed& typed, int parent) {
    if (parent == -1 && typed.parent == -1) return;
    typed.parent = parent;
    const std::string mother = parent == -1 ? "" : model.accounts.at(parent).code;
    const auto [next, ofSameTitle] = model.proposal(parent, typed.title);
    const bool takeSame = !ofSameTitle.empty() && roll(2) == 1;
    if (!ofSameTitle.empty()) notices.answer(takeSame ? 1 : 0);
    pickParent(parent);
    EXPECT_EQ(notices.take().size(), ofSameTitle.empty() ? 0U : 1U);
    const std::string own = form->txtCode.text();
    EXPECT_EQ(form->txtMotherCode.text(), mother) << "a parent brings its code";
    EXPECT_TRUE(takeSame ? ofSameTitle.count(own) == 1 : own == next)
        << "proposed below " << parent << ": " << own << " and not " << next;
    typed.code = mother + own;
    if (parent == -1) return;
    typed.nature = model.accounts.at(parent).nature;
    typed.permanent = model.accounts.at(parent).permanent;
  }

  void chooseRest(ChartModel::Typed& typed) {
    if (roll(3) == 0 || form->txtCode.text().empty()) {
      const std::string own = digits(6);
      form->txtCode.paste(own);
      typed.code = form->txtMotherCode.text() + own;
    }
    if (roll(2) == 0) pick(form->sltGroup, typed.group = one(4));
    if (roll(5) == 0) pick(form->sltGroup, typed.group = -1);
    if (roll(3) == 0) chooseClass(typed, one(11));
    if (roll(8) == 0) chooseClass(typed, -1);
    if (typed.entityClass != -1 && roll(4) != 0)
      pick(form->sltEntity, typed.object = one(typed.entityClass == 11 ? 7 : 6));
    if (roll(3) == 0) pick(form->sltPosition, typed.position = one(9));
    if (halves_ && roll(3) == 0) pick(form->sltBranch, one(2));
    if (roll(4) == 0) {
      (roll(2) == 0 ? form->OptOpen : form->OptClose).click();
      typed.closed = form->OptClose.value() ? 1 : 0;
    }
    if (roll(4) == 0) {
      form->OptDebitAndCredit.click();
      typed.nature = 2;
    }
  }

  void chooseClass(ChartModel::Typed& typed, int entityClass) {
    if (entityClass != typed.entityClass) typed.object = -1;
    pick(form->sltEntityType, entityClass);
    typed.entityClass = entityClass;
  }

  void addOne() {
    ChartModel::Typed typed;
    form->cmdNew.click();
    const int parent = anyParent();
    if (parent != -1) chooseParent(typed, parent);
    typed.title = kTitles[roll(4)];
    form->txtTitle.paste(typed.title);
    chooseRest(typed);
    step_ = "a new account " + typed.code + " below " + std::to_string(typed.parent);
    const std::int32_t saved = save();
    expect(model.saveNew(saved, typed), saved, FormMode::ModeNew);
  }

  void editOne() {
    const int id = anyAccount();
    ChartModel::Typed typed{{model.accounts.at(id)}};
    if (typed.relation) {
      typed.entityClass = typed.relation->entityClass;
      typed.object = typed.relation->object;
    }
    edit(id);
    if (roll(2) == 0) chooseParent(typed, anyParent());
    if (roll(4) != 0 || form->txtCode.text().empty()) chooseRest(typed);
    step_ =
        "an edit of " + std::to_string(id) + " to " + typed.code + " below " + std::to_string(typed.parent);
    if (roll(8) == 0) return giveUp();
    expect(model.saveEdit(id, typed), save(), FormMode::ModeEdit);
  }

  void deleteOne() {
    const int id = anyAccount();
    step_ = "a deletion of " + std::to_string(id);
    form->View(id);
    notices.answer(1);
    form->cmdDelete.click();
    auto said = notices.take();
    ASSERT_FALSE(said.empty());
    said.erase(said.begin());  // the question
    const Told told = model.remove(id);
    if (!told.empty()) {
      ASSERT_EQ(said.size(), 2U) << "what stands in the way is told behind the refusal";
      const auto tells = [&](const char* words) { return said[1].message.find(words) != std::string::npos; };
      EXPECT_EQ(tells("زيرشاخه دارد"), model.isMother(id));
      EXPECT_EQ(tells("سطر سند دارد"), model.accounts.at(id).documents);
      said.pop_back();
    }
    expectTold(said, told);
    EXPECT_EQ(mode(), told.empty() ? FormMode::ModeIdle : FormMode::ModeView);
  }

  /// Looks at a preview, gives its rows to `see`, and goes on to the work where it may.
  bool goAhead(ui::PushButton& preview, const std::function<void(const ui::Grid&, int row)>& see) {
    bool goes = false;
    inScreen<shell::frmPreview>("frmPreview", [&](shell::frmPreview& screen) {
      goes = screen.cmdGo.enabled();
      for (int row = 0; row < screen.flxRows.rowCount(); ++row) see(screen.flxRows, row);
      if (goes) notices.answer(1);
      screen.cmdGo.click();
    });
    preview.click();
    EXPECT_EQ(notices.take().size(), goes ? 1U : 0U) << "the question";
    return goes;
  }
  /// The codes that were shown are the codes that are written, and no others.
  void recodeAhead() {
    const int mother = anyParent();
    step_ = "a recoding below " + std::to_string(mother);
    inScreen<coding::frmAutoCodding>("frmAutoCodding", [&](coding::frmAutoCodding& screen) {
      if (mother != -1) pick(screen.klmMotherAcc, mother, model.accounts.at(mother).code);
      screen.txtSimpleCode.type(digits(3));
      desktop.tick();
      std::map<int, std::string> codes;
      const bool goes = goAhead(screen.cmdPreview, [&](const ui::Grid& rows, int row) {
        const int id = std::stoi(rows.text(row, 6));
        EXPECT_EQ(rows.text(row, 1), model.accounts.at(id).code);
        codes[id] = rows.text(row, 2);
      });
      if (!goes) codes.clear();
      for (const auto& [id, code] : codes) model.accounts.at(id).code = code;
    });
    form->mnuSameCoding.click();
    EXPECT_EQ(rows(), model.rows()) << "after: " << step_;
  }
  /// What was shown to go is gone, and what wasn't shown isn't.
  void deleteAhead() {
    const int mother = anyAccount();
    step_ = "a deletion below " + std::to_string(mother);
    inScreen<batch::frmAccountBatch>("frmAccountBatch", [&](batch::frmAccountBatch& screen) {
      screen.sltParent.setAccountID(mother);
      std::vector<int> shown;
      const bool goes = goAhead(screen.cmdPreview, [&](const ui::Grid& rows, int row) {
        shown.push_back(std::stoi(rows.text(row, 6)));
        const bool stays = std::any_of(model.accounts.begin(), model.accounts.end(), [&](const auto& one) {
          return one.second.documents &&
                 (one.first == shown.back() || model.isBelow(one.first, shown.back()));
        });
        EXPECT_EQ(rows.text(row, 5).starts_with("نميشود"), stays) << shown.back();
      });
      for (const int id : shown)
        if (goes) model.accounts.erase(id);
    });
    form->mnuAccountBatch.click();
    EXPECT_EQ(rows(), model.rows()) << "after: " << step_;
  }

  void expect(const Told& told, std::int32_t saved, FormMode refusedMode) {
    expectTold(notices.take(), told);
    const bool written = told.empty() || told == ChartModel::Same;
    EXPECT_EQ(mode(), written ? FormMode::ModeView : refusedMode);
    if (!written) return giveUp();
    const ChartModel::Account& stored = model.accounts.at(saved);
    EXPECT_EQ(form->txtMotherCode.text() + form->txtCode.text(), stored.code);
    EXPECT_EQ(form->sltGroup.SelectedID(), stored.group);
    EXPECT_EQ(form->LastNewParentID, model.lastNewParent);
  }

  /// No message, or one notice, of the rule that was broken.
  void expectTold(const std::vector<Notice>& said, const Told& rule) {
    ASSERT_EQ(said.size(), rule.empty() ? 0U : 1U) << step_ << ": " << rule;
    const std::string text = said.empty() ? "" : said[0].message;
    EXPECT_NE(text.find(rule), std::string::npos) << step_ << ": " << text << "\nand not: " << rule;
  }

  static constexpr const char* kTitles[] = {"بانک", "صندوق", "تنخواه", "وام"};
  struct Kind {
    const char *table, *view;
    int first;
  };
  static constexpr Kind kKinds[] = {{"tblAccountGroup", "vwAccountGroup", 4},
                                    {"tblAccountBranch", "vwAccountBranchMajor", 2},
                                    {"tblAccCostCenter", "vwPosition_Employee_Special3", 9},
                                    {"tblAccountClass", "vwAccountClass", 11},
                                    {"tblEntityPerson", "vwEntityPerson", 7},
                                    {"tblEntityProject", "vwEntityProject", 6}};
  int shown_ = 0;
  std::mt19937 dice_;
  ChartModel model;
  std::string step_;
};

}  // namespace ledgertree::testing
