#include "db/server_history_triggers.h"

#include <string_view>

#include "data/quote_text.h"
#include "db/history.h"
#include "db/joined.h"
#include "ledgertree_scripts.h"

namespace ledgertree::db {
namespace {

std::string bitText(std::int64_t bit) { return "cast(" + std::to_string(bit) + " as bigint)"; }

std::int64_t bitOf(std::string_view name) {
  for (const RememberedColumn& column : rememberedColumns())
    if (column.name == name) return column.bit;
  return 0;
}

/// The columns of an account, each made of its name.
template <typename Make>
std::string ofAccount(std::string_view between, Make make) {
  return each(rememberedColumns(), between,
              [make](const RememberedColumn& column) { return make(std::string(column.name), column); });
}

std::string prefixed(const std::string& prefix) {
  return ofAccount(", ", [&prefix](const std::string& name, const auto&) { return prefix + name; });
}

/// Whether two values differ, of which each may be null; a text also by its letter case alone, or by blanks.
std::string differ(const std::string& one, const std::string& other, bool isText = false) {
  const auto asCompared = [isText](const std::string& value) {
    return isText ? "cast(" + value + " as varbinary(8000))" : value;
  };
  return "(" + asCompared(one) + " <> " + asCompared(other) + " or " + one + " is null and " + other +
         " is not null or " + one + " is not null and " + other + " is null)";
}

std::string differ(const RememberedColumn& column, const std::string& one, const std::string& other) {
  const std::string name(column.name);
  return differ(one + name, other + name, column.type == "varchar");
}

Trigger trigger(const std::string& name, const std::string& table, const std::string& events,
                const std::string& body) {
  return {name, "create trigger dbo." + name + " on dbo." + table + " after " + events +
                    "\nas\nbegin\n  set nocount on;\n" + body + "end"};
}

constexpr const char* kAll = "insert, update, delete";
constexpr const char* kBegin =
    " return;\n  declare @OperationID int;\n  exec dbo.spAccountBeginOperation @OperationID output;\n";

Trigger accountTrigger() {
  const std::string fields = ofAccount(" + ", [](const std::string&, const RememberedColumn& column) {
    return "case when " + differ(column, "d.", "i.") + " then " + bitText(column.bit) + " else 0 end";
  });
  const auto values = [](const std::string& side) {
    return ofAccount(", ", [&side](const std::string& name, const RememberedColumn& column) {
      // By these an account can be told.
      if (name == "Code" || name == "Title") return side + name;
      return "case when Fields & " + bitText(column.bit) + " <> 0 then " + side + name + " end";
    });
  };
  const auto renamed = [](const std::string& row, const std::string& side) {
    return ofAccount(", ",
                     [&](const std::string& name, const auto&) { return row + name + " as " + side + name; });
  };
  const std::string rows = "from inserted i full join deleted d on d.ID = i.ID";
  const std::string any = ofAccount(
      " or ", [](const std::string&, const RememberedColumn& column) { return differ(column, "d.", "i."); });
  return trigger(
      "trHistoryAccount", "tblAccount", kAll,
      "  if not exists (select 1 " + rows + "\n    where i.ID is null or d.ID is null or " + any + ")" +
          kBegin + "  insert into dbo.tblAccountChange (OperationID, Event, AccountID, Fields, " +
          prefixed("Old") + ", " + prefixed("New") +
          ")\n    select @OperationID, Event, AccountID, Fields, " + values("Old") + ", " + values("New") +
          "\n    from (select case when d.ID is null then 1 when i.ID is null then 3 else 2 end as "
          "Event, isnull(i.ID, d.ID) as AccountID, case when i.ID is null or d.ID is null then " +
          bitText(allRemembered()) + " else " + fields + " end as Fields, " + renamed("d.", "Old") + ", " +
          renamed("i.", "New") + "\n      " + rows + ") r\n    where Fields <> 0;\n");
}

// Of the tables of what belongs to an account.

constexpr const char* kKept[] = {"AccountID", "First", "Second", "Third"};

/// The columns as the memory calls them.
std::string keptOf(const LinkTable& table, const std::string& row = {}) {
  std::vector<std::string> parts;
  for (std::size_t place = 0; place < table.columns.size(); ++place) parts.push_back(row + kKept[place]);
  return joined(parts, ", ");
}

std::string columnsOf(const LinkTable& table, const std::string& row = {}) {
  return each(table.columns, ", ", [&row](std::string_view column) { return row + std::string(column); });
}

std::vector<std::string> keyOf(const LinkTable& table) {
  if (table.keys == 0) return {std::string(table.rowKey)};
  return {table.columns.begin(), table.columns.begin() + static_cast<std::ptrdiff_t>(table.keys)};
}

std::string sameKey(const LinkTable& table, const std::string& one, const std::string& other) {
  return each(keyOf(table), " and ",
              [&](const std::string& column) { return one + column + " = " + other + column; });
}

/// Whether the rows of one key differ, as " or …"; nothing where all of a row is its key.
std::string otherwiseDiffer(const LinkTable& table) {
  std::string text;
  for (std::size_t place = table.keys; place < table.columns.size(); ++place) {
    const std::string name(table.columns[place]);
    text += " or " + differ("d." + name, "i." + name);
  }
  return text;
}

Trigger linkTrigger(const LinkTable& table) {
  const std::string differing = otherwiseDiffer(table);
  const std::string key = sameKey(table, "i.", "d.");
  const auto kept = [&](bool isNew, const std::string& row, const std::string& other) {
    return "  insert into dbo.tblAccountLinkChange (OperationID, Link, IsNew, " + keptOf(table) +
           ")\n    select @OperationID, " + std::to_string(table.link) + (isNew ? ", 1, " : ", 0, ") +
           columnsOf(table, row) +
           (isNew ? " from inserted i left join deleted d on " : " from deleted d left join inserted i on ") +
           key + "\n    where " + other + "AccountID is null" + differing + ";\n";
  };
  const std::string name(table.name);
  return trigger("trHistory" + name.substr(std::string_view("tblAccount").size()), name, kAll,
                 "  if not exists (select 1 from inserted i full join deleted d on " + key +
                     "\n    where i.AccountID is null or d.AccountID is null" + differing + ")" + kBegin +
                     kept(false, "d.", "i.") + kept(true, "i.", "d."));
}

// Taking back.

/// Whether `row` of a table is what a row `kept` of #Link tells of, as far as its first columns go.
std::string asKept(const LinkTable& table, const std::string& row, const std::string& kept,
                   std::size_t columns) {
  std::string text = kept + ".Link = " + std::to_string(table.link);
  for (std::size_t place = 0; place < columns; ++place) {
    const std::string value = row + "." + std::string(table.columns[place]);
    const std::string known = kept + "." + kKept[place];
    text.append(" and (").append(value).append(" = ").append(known).append(" or ");
    text.append(value).append(" is null and ").append(known).append(" is null)");
  }
  return text;
}
std::string asKept(const LinkTable& table, const std::string& row, const std::string& kept) {
  return asKept(table, row, kept, table.columns.size());
}

/// A statement for each table of what belongs to an account.
template <typename Make>
std::string ofLinks(std::string_view between, Make make) {
  return each(linkTables(), between, [make](const LinkTable& table) {
    return make(table, "dbo." + std::string(table.name), std::to_string(table.link));
  });
}

std::string moreRelations() {
  return ofLinks("\n        or ", [](const LinkTable&, const std::string& name, const std::string& link) {
    return "(select count(*) from " + name + " t with (updlock, holdlock) where t.AccountID = w.AccountID)" +
           " > isnull((select sum(l.Times) from #Link l where l.Link = " + link +
           " and l.AccountID = w.AccountID and l.Times > 0), 0)";
  });
}

/// A row that came and isn't there, and one that went in whose place another one is.
std::string linksStand() {
  return ofLinks("\n", [](const LinkTable& table, const std::string& name, const std::string& link) {
    const std::string tell =
        "  insert into #Standing (AccountID, Reason)\n    select distinct l.AccountID, 1 ";
    std::string text = tell + "from #Link l where l.Link = " + link +
                       " and l.Times > (\n      select count(*) from " + name +
                       " t with (updlock, holdlock) where " + asKept(table, "t", "l") + ");";
    if (table.keys == 0) return text;
    text.append("\n" + tell + "from #Link l join " + name + " t on " + asKept(table, "t", "l", table.keys));
    return text +
           "\n    where l.Times < 0 and not exists (\n      select 1 from #Link k where k.Times > 0 and " +
           asKept(table, "t", "k") + ");";
  });
}

std::string linksGo() {
  return ofLinks("\n", [](const LinkTable& table, const std::string& name, const std::string& link) {
    const std::string any =
        "    if exists (select 1 from #Link where Link = " + link + " and Times > 0)\n      ";
    const std::string from = "delete t from " + name + " t join ";
    if (table.keys != 0) return any + from + "#Link l on " + asKept(table, "t", "l") + " where l.Times > 0;";
    // It may hold a row twice: as many go as came.
    const std::string key(table.rowKey);
    return any + from + "(\n        select " + key + ", " + columnsOf(table) +
           ", row_number() over (partition by " + columnsOf(table) + " order by " + key +
           ") as Place\n        from " + name +
           " where AccountID in (select AccountID from #Link where Link = " + link +
           " and Times > 0)) p on p." + key + " = t." + key + "\n        join #Link l on " +
           asKept(table, "p", "l") + " and l.Times >= p.Place;";
  });
}

std::string linksCome() {
  return ofLinks("\n", [](const LinkTable& table, const std::string& name, const std::string& link) {
    return "      insert into " + name + " (" + columnsOf(table) + ") select " + keptOf(table) +
           " from #Link where Link = " + link + " and Times <= -@Time;";
  });
}

}  // namespace

std::vector<Trigger> serverRememberingTriggers() {
  std::vector<Trigger> all{accountTrigger()};
  for (const LinkTable& table : linkTables()) all.push_back(linkTrigger(table));
  return all;
}

std::vector<Trigger> serverGuardingTriggers() {
  std::vector<Trigger> all;
  for (const std::string table :
       {"tblAccountMemory", "tblAccountOperation", "tblAccountChange", "tblAccountLinkChange"}) {
    std::string body = "  if exists (select 1 from deleted)\n    throw 51013, N";
    body.append(data::quoteText(kNobodyChanges)).append(", 1;\n");
    all.push_back(trigger("trKept" + table.substr(std::string_view("tblAccount").size()), table,
                          "update, delete", body));
  }
  return all;
}

std::string historyScript(const std::string& name, const Places& places) {
  std::string text(embeddedText("db/sqlserver/history/" + name + ".sql"));
  for (const auto& [place, words] : places) {
    const std::string braces = "{" + place + "}";
    for (std::size_t at = text.find(braces); at != std::string::npos;
         at = text.find(braces, at + words.size()))
      text.replace(at, braces.size(), words);
  }
  return text;
}

std::string serverTakeBack() {
  std::vector<std::string> back;
  std::vector<std::string> otherwise;
  for (const RememberedColumn& column : rememberedColumns()) {
    const std::string name(column.name);
    if (name == "ID") continue;  // an identity stays
    back.push_back(name);
    back.back().append(" = n.").append(name);
    otherwise.push_back(differ(column, "a.", "n."));
  }
  const auto changed = [](const RememberedColumn& column) {
    return "c.Fields & " + bitText(column.bit) + " <> 0";
  };
  return historyScript(
      "take_back",
      {{"old as now",
        ofAccount(", ", [](const std::string& name, const auto&) { return "c.Old" + name + " as " + name; })},
       {"names", prefixed("")},
       {"a.names", prefixed("a.")},
       {"n.names", prefixed("n.")},
       {"not as left", ofAccount("\n            or ",
                                 [changed](const std::string& name, const RememberedColumn& column) {
                                   const std::string now = "n." + name;
                                   return changed(column) + " and " +
                                          differ(now, "c.New" + name, column.type == "varchar");
                                 })},
       {"now as old", ofAccount(",\n        ",
                                [changed](const std::string& name, const RememberedColumn& column) {
                                  return name + " = case when " + changed(column) + " then c.Old" + name +
                                         " else n." + name + " end";
                                })},
       {"account as now", joined(back, ", ")},
       {"account not as now", joined(otherwise, "\n        or ")},
       {"more relations", moreRelations()},
       {"links stand", linksStand()},
       {"links go", linksGo()},
       {"links come", linksCome()},
       {"code", bitText(bitOf("Code"))},
       {"parent", bitText(bitOf("ParentID"))}});
}

}  // namespace ledgertree::db
