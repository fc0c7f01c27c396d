#include "accounts/differences.h"

#include <algorithm>
#include <string>
#include <utility>

#include "data/as_read.h"
#include "text/characters.h"

namespace ledgertree::accounts {

namespace {

using data::Account;
using data::AccountMember;

const AccountMember kPlace[] = {&Account::parentID, &Account::code};
const AccountMember kEntity[] = {&Account::groupID, &Account::positionID};

template <typename Members>
bool holds(const Members& members, const AccountMember& member) {
  return std::find(std::begin(members), std::end(members), member) != std::end(members);
}

std::vector<FieldGroup> makeGroups() {
  std::vector<FieldGroup> groups;
  groups.push_back({.members = {std::begin(kPlace), std::end(kPlace)}});
  groups.push_back({.members = {std::begin(kEntity), std::end(kEntity)}, .withRelation = true});
  for (const data::AccountField& field : data::kAccountFields)
    if (data::isEdited(field) && !holds(kPlace, field.member) && !holds(kEntity, field.member))
      groups.push_back({.members = {field.member}});
  return groups;
}

/// Makes what was read of an account comparable with what is typed. Notes stay as they are.
Account comparable(Account account) {
  for (std::string Account::*text : {&Account::code, &Account::title})
    account.*text = std::string(text::trimmed(account.*text));
  for (const data::AccountField& field : data::kAccountFields) {
    if (const auto* const amount = std::get_if<std::optional<data::Money> Account::*>(&field.member))
      account.** amount = (account.**amount).value_or(data::Money());
    if (const auto* const reference = std::get_if<std::int32_t Account::*>(&field.member))
      account.** reference = std::max(account.**reference, field.noneIsNull ? -1 : 0);
  }
  account.relation = account.relation.value_or(data::AccountRelation());
  return account;
}

bool same(const FieldGroup& group, const Account& one, const Account& other) {
  if (group.withRelation && one.relation != other.relation) return false;
  return std::all_of(group.members.begin(), group.members.end(),
                     [&](const AccountMember& member) { return data::sameIn(member, one, other); });
}

}  // namespace

const std::vector<FieldGroup>& fieldGroups() {
  static const std::vector<FieldGroup> groups = makeGroups();
  return groups;
}

std::vector<Difference> differences(const Account& read, const Account& theirs, const Account& mine) {
  const Account before = comparable(read);
  const Account others = comparable(theirs);
  const Account typed = comparable(mine);
  std::vector<Difference> found;
  for (const FieldGroup& group : fieldGroups()) {
    if (same(group, others, typed)) continue;
    found.push_back(
        {.group = &group, .theirs = !same(group, before, others), .mine = !same(group, before, typed)});
  }
  return found;
}

bool othersChanged(const std::vector<Difference>& found) {
  return std::any_of(found.begin(), found.end(), [](const Difference& one) { return one.theirs; });
}

void take(Account& account, const FieldGroup& group, const Account& from) {
  for (const AccountMember& member : group.members)
    std::visit([&](auto held) { account.*held = from.*held; }, member);
  if (group.withRelation) account.relation = from.relation;
}

}  // namespace ledgertree::accounts
