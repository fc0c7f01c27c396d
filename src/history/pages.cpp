#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "history/history.h"

namespace ledgertree::history {
namespace {

data::Value at(const data::Rows& rows, std::size_t row, const std::string& column) {
  return rows.value(row, rows.column(column).value());
}

/// The columns of an account, each once, with the bit of each in Fields.
const std::vector<std::string>& columns() {
  static const std::vector<std::string> all = [] {
    std::vector<std::string> found;
    for (const data::AccountField& field : data::kAccountFields)
      if (std::find(found.begin(), found.end(), field.column) == found.end())
        found.emplace_back(field.column);
    return found;
  }();
  return all;
}

/// The columns of the other tables as they are kept: First, Second, Third.
const std::vector<std::string>& columnsOf(Subject subject) {
  static const std::map<Subject, std::vector<std::string>> all = {
      {Subject::Account, {}},
      {Subject::Period, {"PeriodID"}},
      {Subject::Relation, {"AccountGroupID", "RelatedClassID", "RelatedObjectID"}},
      {Subject::Class, {"ClassID", "Sequence", "IncludeAllObjects"}},
      {Subject::Object, {"ClassID", "ObjectID"}},
  };
  return all.at(subject);
}

std::string question(const std::string& table, const Filter& filter, std::int64_t before, std::size_t limit) {
  std::string text = "select top " + std::to_string(limit) +
                     " c.*, o.Moment, o.UserID, o.Kind, isnull(o.TakesBack,0) as TakesBack from " + table +
                     " c inner join tblAccountOperation o on o.ID = c.OperationID where 1=1";
  const auto add = [&text](const std::string& condition) { text += " and " + condition; };
  if (before != 0) add("c.ID < " + std::to_string(before));
  if (filter.from) add("o.Moment >= '" + filter.from->toIso() + "'");
  if (filter.until) add("o.Moment < '" + filter.until->toIso() + "'");
  if (filter.userID) add("o.UserID = " + std::to_string(*filter.userID));
  if (filter.kind) add("o.Kind = " + std::to_string(static_cast<std::int32_t>(*filter.kind)));
  if (filter.accountID) add("c.AccountID = " + std::to_string(*filter.accountID));
  if (filter.operation) add("c.OperationID = " + std::to_string(*filter.operation));
  return text + " order by c.ID desc";
}

Change commonOf(const data::Rows& rows, std::size_t row) {
  Change change;
  change.number = at(rows, row, "ID").toInt64();
  change.operation = at(rows, row, "OperationID").toInt64();
  change.moment = at(rows, row, "Moment").toDateTime();
  if (const data::Value user = at(rows, row, "UserID"); !user.isNull()) change.userID = user.toInt32();
  change.kind = static_cast<data::OperationKind>(at(rows, row, "Kind").toInt32());
  change.takesBack = at(rows, row, "TakesBack").toInt64();
  if (const data::Value account = at(rows, row, "AccountID"); !account.isNull())
    change.accountID = account.toInt32();
  return change;
}

Change accountChange(const data::Rows& rows, std::size_t row) {
  Change change = commonOf(rows, row);
  change.event = static_cast<Event>(at(rows, row, "Event").toInt32());
  const char* const side = change.event == Event::Went ? "Old" : "New";
  change.code = at(rows, row, side + std::string("Code")).toText();
  change.title = at(rows, row, side + std::string("Title")).toText();
  const std::int64_t fields = at(rows, row, "Fields").toInt64();
  for (std::size_t place = 0; place < columns().size(); ++place) {
    if ((fields >> place & 1) == 0) continue;
    Field field{columns()[place], at(rows, row, "Old" + columns()[place]),
                at(rows, row, "New" + columns()[place])};
    if (!field.before.isNull() || !field.after.isNull()) change.fields.push_back(std::move(field));
  }
  return change;
}

Change linkChange(const data::Rows& rows, std::size_t row) {
  static const char* const kept[] = {"First", "Second", "Third"};
  Change change = commonOf(rows, row);
  change.subject = static_cast<Subject>(at(rows, row, "Link").toInt32());
  change.event = at(rows, row, "IsNew").toInt64() != 0 ? Event::Came : Event::Went;
  const std::vector<std::string>& names = columnsOf(change.subject);
  for (std::size_t place = 0; place < names.size(); ++place) {
    const data::Value value = at(rows, row, kept[place]);
    if (value.isNull()) continue;
    if (change.event == Event::Came)
      change.fields.push_back({names[place], {}, value});
    else
      change.fields.push_back({names[place], value, {}});
  }
  return change;
}

struct Name {
  std::string code, title;
};

std::map<std::int32_t, Name> namesToday(data::DtEn& data, const std::string& ids) {
  std::map<std::int32_t, Name> names;
  const data::Rows accounts =
      data.cnMainData.run("select ID, Code, Title from tblAccount where ID in (" + ids + ")").value();
  for (std::size_t row = 0; row < accounts.count(); ++row)
    names[at(accounts, row, "ID").toInt32()] = {at(accounts, row, "Code").toText(),
                                                at(accounts, row, "Title").toText()};
  return names;
}

/// The names that the accounts had before each of their changes after number `after`, or got by it if they
/// are new, by account and change.
std::map<std::int32_t, std::map<std::int64_t, Name>> namesAt(data::DtEn& data, const std::string& ids,
                                                             std::int64_t after) {
  std::map<std::int32_t, std::map<std::int64_t, Name>> names;
  const auto keep = [&](const data::Rows& row) {
    const char* const side = at(row, 0, "Event").toInt32() == static_cast<int>(Event::Came) ? "New" : "Old";
    names[at(row, 0, "AccountID").toInt32()][at(row, 0, "ID").toInt64()] = {
        at(row, 0, side + std::string("Code")).toText(), at(row, 0, side + std::string("Title")).toText()};
    return true;
  };
  data.cnMainData.port().walk(
      "select ID, AccountID, Event, OldCode, NewCode, OldTitle, NewTitle from tblAccountChange where "
      "AccountID in (" +
          ids + ") and ID > " + std::to_string(after) + " order by ID",
      keep);
  return names;
}

/// The changes of other tables don't say what their account was called: the next change of the account does,
/// else the account itself.
void nameAccounts(data::DtEn& data, std::vector<Change>& changes) {
  std::set<std::int32_t> unnamed;
  std::int64_t oldest = 0;
  for (const Change& change : changes) {
    if (change.subject == Subject::Account) continue;
    unnamed.insert(change.accountID);
    oldest = change.number;
  }
  if (unnamed.empty()) return;
  std::string ids;
  for (const std::int32_t id : unnamed) ids += (ids.empty() ? "" : ",") + std::to_string(id);
  auto today = namesToday(data, ids);
  auto later = namesAt(data, ids, oldest);
  for (Change& change : changes) {
    if (change.subject == Subject::Account) continue;
    const auto& changesOf = later[change.accountID];
    const auto next = changesOf.upper_bound(change.number);
    const Name& name = next != changesOf.end() ? next->second : today[change.accountID];
    change.code = name.code;
    change.title = name.title;
  }
}

}  // namespace

Page page(data::DtEn& data, const Filter& filter, std::int64_t before, std::size_t limit) {
  Page page;
  // One more than is shown says whether there are more.
  const data::Rows accounts =
      data.cnMainData.run(question("tblAccountChange", filter, before, limit + 1)).value();
  const data::Rows links =
      data.cnMainData.run(question("tblAccountLinkChange", filter, before, limit + 1)).value();
  for (std::size_t row = 0; row < accounts.count(); ++row)
    page.changes.push_back(accountChange(accounts, row));
  for (std::size_t row = 0; row < links.count(); ++row) page.changes.push_back(linkChange(links, row));
  std::sort(page.changes.begin(), page.changes.end(),
            [](const Change& one, const Change& other) { return one.number > other.number; });
  if (page.changes.size() > limit) {
    page.changes.resize(limit);
    page.next = page.changes.back().number;
  }
  nameAccounts(data, page.changes);
  return page;
}

}  // namespace ledgertree::history
