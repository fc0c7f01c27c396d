// Every statement of the screens, as sent while a user works through all of them on the demo chart: the
// engine's answers and effects, compared with SQLite written by hand; for the embedded engine also its query
// plans.

#include "contract/statement_house.h"
#include "support/screen_walk.h"
#include "support/steps.h"

namespace ledgertree::testing {
namespace {

/// Runs what is passed to it for export.
class Exporting : public shell::OutsideComponent {
 public:
  explicit Exporting(shell::Shell& shell) : shell_(shell) {}
  void set(std::string_view, const data::Value&) override {}
  data::Value get(std::string_view) override { return {}; }
  void call(std::string_view, const std::vector<data::Value>& arguments) override {
    const data::OpenRows rows(shell_.dtEn()->rssqlBufferQuery, arguments.at(0).toText());
  }

 private:
  shell::Shell& shell_;
};

class Statements : public StatementHouse {
 protected:
  Statements() {
    shell.components.add("SheetKit.SheetWriter", [this] { return std::make_unique<Exporting>(shell); });
    const auto acting = [this](const std::string& word, const std::function<void(int)>& act) {
      person.acts[word] = [act](auto& about) { act(std::stoi(about)); };
    };
    acting("period", [this](int id) { control.AccPeriodSpecID(static_cast<std::int16_t>(id)); });
    acting("show", [this](int id) { control.View(static_cast<std::int16_t>(id)); });
    acting("view", [this](int id) { form().View(id); });
    acting("edit", [this](int id) { form().View(id), form().cmdEdit.click(); });
    acting("lastParent", [this](int id) { form().LastNewParentID = id; });
    person.acts["sql"] = [this](auto& statement) { both(statement); };
    person.acts["close"] = [this](auto&) { form().close(); };
    person.acts["learn"] = [this](auto& step) { learn([&] { person.act(step); }); };
    person.acts["pick"] = [this](auto& what) {
      const auto [field, row] = cut(what);
      const auto [id, typed] = cut(row);
      pickRow(dynamic_cast<ui::LookupField&>(*desktop.shownForms.back()->find(field)), desktop, std::stoi(id),
              typed);
    };
    const auto opening = [this](const std::string& word, const std::function<void()>& within) {
      person.acts[word] = [this, within](auto& what) {
        const auto [screen, command] = cut(what);
        desktop.inModal(screen, [within](ui::Form&) { within(); });
        person.act(command);
      };
    };
    opening("in", [this] { desktop.tick(), goOn(); });
    opening("glance", [] {});
  }

  /// A section of steps.txt. "in", a screen and its command start the steps there, up to "out"; a "glance" at
  /// a screen has none. The queries of a step marked "learn" are tested elsewhere.
  void walk(const std::string& section) {
    steps = tableOf("contract/steps.txt", section);
    goOn();
    EXPECT_EQ(next, steps.size());
  }

 private:
  void goOn() {
    while (next < steps.size()) {
      const auto step = steps[next++];
      SCOPED_TRACE(step[0]);
      if (step[0] == "out") return;
      const auto act = [&] { person.act(step[0]); };
      step.size() > 1 ? expect(step[1], act) : act();
    }
  }

  std::vector<std::vector<std::string>> steps;
  std::size_t next = 0;
};

TEST_F(Statements, OfTheTreeAndOfAProposal) { walk("of the tree and of a proposal"); }
TEST_F(Statements, OfARecordAndItsSave) { walk("of a record and its save"); }
TEST_F(Statements, OfThePeriods) { walk("of the periods"); }
TEST_F(Statements, OfClassesAndObjects) { walk("of classes and objects"); }
TEST_F(Statements, OfWorkOnWholeBranches) { walk("of work on whole branches"); }

}  // namespace
}  // namespace ledgertree::testing
