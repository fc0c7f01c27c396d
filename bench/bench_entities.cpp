// Choosing a class on the related-objects screen, from the click to the tree, and saving its ticks, compared
// with the same statements by hand, prepared once, on the same file in the same run. The hand-written side
// also sorts the names in Persian order and keeps each object's text, tick, parent and children.

#include <SQLiteCpp/SQLiteCpp.h>
#include <benchmark/benchmark.h>

#include <ctime>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engines/sqlite/embedded_engine.h"
#include "engines/sqlite/persian_order.h"
#include "entities/rel_objects.h"
#include "shell/shell.h"
#include "support/idle_desktop.h"
#include "support/scratch_database.h"
#include "support/side_by_side.h"

namespace {

using namespace ledgertree;

/// One account with one class; every second object of the class is stored.
class Projects {
 public:
  Projects(std::int64_t count, std::int64_t children) {
    const std::string number = std::to_string(children);
    other_.exec(
        "begin;"
        "insert into tblAccount (ID, Code, Title) values (1, '1', 'حساب');"
        "insert into tblAccountClass (ID, Name, ViewMajor, ViewMinor) values"
        " (1, 'پروژه', 'vwEntityProject', 'vwEntityProjectMinor');"
        "insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence, IncludeAllObjects) values (1, "
        "1, 1, 0);"
        "with recursive n(i) as (select 1 union all select i + 1 from n where i < " +
        std::to_string(count) +
        ") insert into tblEntityProject (ID, ParentID, Name) select i, iif(i = 1, null, (i - 2) / " + number +
        " + 1), 'پروژه ' || i from n;"
        "insert into tblAccountRelatedClassesDetail (AccountID, ClassID, ObjectID)"
        " select 1, 1, ID from tblEntityProject where ID % 2 = 0; commit; analyze");
    engines::sqlite::addPersianOrder(other_.getHandle());
    engines::sqlite::registerEmbedded(shell.providers);
    shell.context.gConnectionString = scratch_.connectionText();
    shell.resetDataConnection();
  }

  SQLite::Database& other() { return other_; }

  bench::IdleDesktop desktop;
  shell::Shell shell{desktop};

 private:
  bench::ScratchDatabase scratch_{"entities"};
  SQLite::Database other_ = scratch_.open();
};

/// An object as a tree could show it.
struct Object {
  int id;
  std::string name;
  bool ticked;
  std::size_t mother;
  std::vector<std::size_t> children;
};

/// The same read by hand: level by level, with a look-up per object,
/// in one transaction. The first object is the root.
std::deque<Object> readByHand(SQLite::Database& database) {
  const std::string columns =
      "select ID, ParentID, Name, (select count(*) from vwEntityProject c where c.ParentID = v.ID) from "
      "vwEntityProject v";
  const std::string order = " order by Name collate " + std::string(engines::sqlite::kPersianOrder);
  SQLite::Statement top(database, columns + " where ParentID is null" + order);
  SQLite::Statement below(database, columns + " where ParentID = ?" + order);
  SQLite::Statement stored(
      database,
      "select * from tblAccountRelatedClassesDetail where AccountID = ? and ClassID = ? and ObjectID = ?");
  std::deque<Object> objects(1);
  std::deque<std::size_t> unread;
  const SQLite::Transaction together(database);
  const auto take = [&](SQLite::Statement& children, std::size_t mother) {
    while (children.executeStep()) {
      const int id = children.getColumn(0);
      stored.bind(1, 1);
      stored.bind(2, 1);
      stored.bind(3, id);
      const std::size_t place = objects.size();
      objects.push_back({id, children.getColumn(2).getString(), stored.executeStep(), mother, {}});
      objects[mother].children.push_back(place);
      stored.reset();
      if (children.getColumn(3).getInt() > 0) unread.push_back(place);
    }
    children.reset();
  };
  for (take(top, 0); !unread.empty(); unread.pop_front()) {
    below.bind(1, objects[unread.front()].id);
    take(below, unread.front());
  }
  return objects;
}

/// Whether a tree shows the same objects; its nodes are numbered in the order they were added.
bool isSame(const ui::Tree& tree, const std::deque<Object>& objects) {
  if (tree.count() != objects.size()) return false;
  for (std::size_t place = 1; place < objects.size(); ++place) {
    const auto node = static_cast<ui::NodeId>(place);
    const Object& object = objects[place];
    if (tree.text(node) != object.name || tree.checked(node) != object.ticked ||
        tree.parent(node) != object.mother)
      return false;
  }
  return true;
}

/// CPU time: nothing here waits, so other programs on the machine don't count.
double secondsOfWork() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

/// range(0) objects, range(1) children per parent.
void readClass(benchmark::State& state) {
  Projects projects(state.range(0), state.range(1));
  entities::frmAccountRelObjects form(projects.shell);
  form.open(1);
  std::deque<Object> objects;
  double bare = 0;
  double own = 0;
  for (auto _ : state) {
    const double begin = secondsOfWork();
    objects = readByHand(projects.other());
    const double middle = secondsOfWork();
    form.cmbClass.choose(0);
    const double end = secondsOfWork();
    bare += middle - begin;
    own += end - middle;
    state.SetIterationTime(end - middle);
    if (!isSame(form.treeObjects, objects)) state.SkipWithError("the objects differ from those read by hand");
  }
  const auto turns = static_cast<double>(state.iterations());
  state.counters["bare_ms"] = bare * 1e3 / turns;
  state.counters["us_an_object"] = own * 1e6 / turns / static_cast<double>(state.range(0));
  state.counters["ratio"] = own / bare;
}

/// The same save by hand: delete all rows of the class, insert the
/// ticked ones, each statement in its own transaction.
void saveByHand(SQLite::Database& database, const std::vector<int>& ticked) {
  database.exec(
      "update tblAccountRelatedClasses set IncludeAllObjects = 0 where AccountID = 1 and ClassID = 1");
  database.exec("delete from tblAccountRelatedClassesDetail where AccountID = 1 and ClassID = 1");
  SQLite::Statement insert(
      database, "insert into tblAccountRelatedClassesDetail (AccountID, ClassID, ObjectID) values (?, ?, ?)");
  for (const int object : ticked) {
    insert.bind(1, 1);
    insert.bind(2, 1);
    insert.bind(3, object);
    insert.exec();
    insert.reset();
  }
}

/// range(0) objects at the top, all but one in a thousand ticked.
void saveTicks(benchmark::State& state) {
  Projects projects(state.range(0), state.range(0));
  entities::frmAccountRelObjects form(projects.shell);
  form.open(1);
  form.cmbClass.choose(0);
  std::vector<int> ticked;
  for (int object = 2; object <= state.range(0); ++object) {
    const ui::NodeId node = form.treeObjects.find("N" + std::to_string(object));
    const bool ticks = object % 1000 != 0;
    form.treeObjects.setChecked(node, ticks);
    if (ticks) ticked.push_back(object);
  }
  bench::sideBySide(
      state, [&] { form.cmdOk.click(); }, [&] { saveByHand(projects.other(), ticked); });
  const auto stored = projects.other().execAndGet("select count(*) from tblAccountRelatedClassesDetail");
  const auto marked = static_cast<std::size_t>(stored.getInt()) - ticked.size();
  if (marked > 1) state.SkipWithError("the rows differ from those written by hand");
}

BENCHMARK(saveTicks)->Arg(100'000)->UseManualTime()->Unit(benchmark::kMillisecond);

BENCHMARK(readClass)
    ->Args({1'000, 10})
    ->Args({50'000, 10})
    ->Args({100'000, 10})
    ->Args({1'000, 1'000})
    ->Args({50'000, 50'000})
    ->Args({100'000, 100'000})
    ->Args({1'000, 1})
    ->Args({50'000, 1})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
