#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ledgertree::testing {

/// The rules of the chart again, small and without a database: the outcome of a save or a deletion.
class ChartModel {
 public:
  struct Relation {
    int group = -1, entityClass = -1, object = -1;
  };
  struct Account {
    int parent = -1;
    std::string code, title;
    int group = -1, position = 0, nature = 0, permanent = 0, closed = 0;
    std::optional<Relation> relation;
    bool documents = false;
  };
  /// The contents of the form.
  struct Typed : Account {
    int entityClass = -1, object = -1;
  };
  /// The rules, each named by words of its notice; Done if nothing is refused.
  using Told = std::string;
  static constexpr const char *Done = "", *Same = "تخصيص داده شده است", *CodeStays = "گردش داشته است",
                              *OwnParent = "خود حساب را به عنوان حساب مادر",
                              *ParentBelow = "خود زير شاخه حساب فوق", *NeverBelow = "نميتواند زير خودش",
                              *ParentInUse = "سند دارد", *TooLong = "حداکثر 20 نويسه",
                              *CodeExists = "حسابي با كد مورد نظر", *Needed = "وابستگي وجود دارد";

  bool editCodeAllowed = false;
  bool positionCounts = false;
  int codingMode = 0;
  int lastNewParent = 0;
  std::map<int, Account> accounts;

  [[nodiscard]] int level(int id) const { return id == -1 ? 0 : 1 + level(accounts.at(id).parent); }
  [[nodiscard]] bool isBelow(int id, int ancestor) const {
    for (int up = accounts.at(id).parent; up != -1; up = accounts.at(up).parent)
      if (up == ancestor) return true;
    return false;
  }

  /// The number proposed under a parent, and those of accounts whose title may be shared.
  struct Proposal {
    std::string next;
    std::set<std::string> ofSameTitle;
  };
  [[nodiscard]] Proposal proposal(int parent, const std::string& title) const {
    const int depth = level(parent) + 1;
    const bool shared = codingMode == 1 && depth > 1;
    Proposal proposal;
    std::optional<std::string> greatest;
    for (const auto& [id, account] : accounts) {
      if (shared ? level(id) != depth : account.parent != parent) continue;
      const std::string& code = account.code;
      const std::string part = shared && code.size() > 6 ? code.substr(code.size() - 6) : code;
      if (shared && account.title == title) proposal.ofSameTitle.insert(part);
      greatest = std::max(greatest, std::optional(part));
    }
    const std::size_t mother = shared || parent == -1 ? 0 : accounts.at(parent).code.size();
    if (greatest) proposal.next = next(greatest->size() > mother ? greatest->substr(mother) : *greatest);
    if (!greatest && codingMode == 0) proposal.next = "01";
    return proposal;
  }

  Told saveNew(int newID, const Typed& typed) {
    lastNewParent = typed.parent;
    if (typed.code.size() > 20) return TooLong;
    if (codeTaken(typed.code, -1)) return CodeExists;
    accounts[newID] = typed;
    accounts[newID].relation.reset();
    return relate(newID, typed, false);
  }

  Told saveEdit(int id, const Typed& typed) {
    const Account& stored = accounts.at(id);
    if (!editCodeAllowed && stored.documents && typed.code != stored.code) return CodeStays;
    if (typed.parent == id) return OwnParent;
    const bool below = typed.parent != -1 && isBelow(typed.parent, id);
    const bool guarded = lastNewParent != typed.parent;
    if (guarded && below) return ParentBelow;
    if (guarded && typed.parent != -1 && accounts.at(typed.parent).documents) return ParentInUse;
    if (typed.code.size() > 20) return TooLong;
    if (codeTaken(typed.code, id)) return CodeExists;
    if (below) return NeverBelow;
    const auto relation = stored.relation;
    const bool documents = stored.documents;
    accounts[id] = typed;
    accounts[id].relation = relation;
    accounts[id].documents = documents;
    const Told told = relate(id, typed, guarded);
    for (auto& [other, account] : accounts)
      if (isBelow(other, id)) account.closed = typed.closed;
    return told;
  }

  [[nodiscard]] bool isMother(int id) const {
    return std::any_of(accounts.begin(), accounts.end(),
                       [&](const auto& one) { return one.second.parent == id; });
  }
  Told remove(int id) {
    if (isMother(id) || accounts.at(id).documents) return Needed;
    accounts.erase(id);
    return Done;
  }

  /// The cells of an account, each with its column's name.
  [[nodiscard]] static std::string row(const std::vector<std::string>& cells) {
    static const char* const names[] = {
        "account ",     " ParentID=",        " Code=",        " Title=",    " NoLevel=",  " GroupID=",
        " PositionID=", " AccountNatureID=", " IsPermanent=", " IsClosed=", " relation ", " below "};
    std::string text;
    for (std::size_t cell = 0; cell < cells.size(); ++cell) text += names[cell] + cells[cell];
    return text + "\n";
  }
  [[nodiscard]] std::string rows() const {
    const auto text = [](int number) { return number < 1 ? "null" : std::to_string(number); };
    std::string rows;
    for (const auto& [id, a] : accounts) {
      std::vector<std::string> cells = {std::to_string(id),        text(a.parent), a.code, a.title,
                                        std::to_string(level(id)), text(a.group)};
      for (const int number : {a.position, a.nature, a.permanent, a.closed})
        cells.push_back(std::to_string(number));
      const auto& place = a.relation;
      cells.push_back(place ? text(place->group) + "|" + text(place->entityClass) + "|" + text(place->object)
                            : "none");
      std::string ancestors;
      std::set<int> up;
      for (int mother = a.parent; mother != -1; mother = accounts.at(mother).parent) up.insert(mother);
      for (const int mother : up) ancestors += (ancestors.empty() ? "" : ",") + std::to_string(mother);
      cells.push_back(ancestors);
      rows += row(cells);
    }
    return rows;
  }

 private:
  static std::string next(const std::string& digits) {
    const std::size_t rise = digits.find_last_not_of('9');
    if (rise == std::string::npos) return std::string(digits.size(), '0');
    return digits.substr(0, rise) + static_cast<char>(digits[rise] + 1) +
           std::string(digits.size() - rise - 1, '0');
  }
  [[nodiscard]] bool codeTaken(const std::string& code, int except) const {
    return std::any_of(accounts.begin(), accounts.end(),
                       [&](const auto& one) { return one.first != except && one.second.code == code; });
  }

  /// Same place, same account: the group goes. Without a class, the group alone is the place.
  Told relate(int id, const Typed& typed, bool guarded) {
    Account& account = accounts[id];
    if (guarded && typed.group < 1) {
      account.relation.reset();
      return Done;
    }
    if (typed.entityClass > 0 && typed.object == -1) {
      account.group = -1;
      return Done;
    }
    const bool byPosition = positionCounts && typed.position > 0 && !guarded && typed.entityClass > 0;
    for (const auto& [other, there] : accounts) {
      if (other == id || typed.group < 1 || !there.relation || there.relation->group != typed.group) continue;
      if (there.relation->entityClass != typed.entityClass || there.relation->object != typed.object)
        continue;
      if (byPosition && there.position != typed.position) continue;
      account.group = -1;
      return Same;
    }
    account.relation = Relation{typed.group, typed.entityClass, typed.object};
    return Done;
  }
};

}  // namespace ledgertree::testing
