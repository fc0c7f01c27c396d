#include "accounts/account_texts.h"

#include <exception>
#include <initializer_list>

#include "data/view_name.h"

namespace ledgertree::accounts {

namespace {

using data::Account;
using data::AccountMember;
using mainform::MainScreen;

constexpr const char* kNone = "-";
constexpr const char* kComma = "، ";

struct Picked {
  AccountMember member;
  shell::Selector MainScreen::*selector;
};
constexpr Picked kPicked[] = {{&Account::groupID, &MainScreen::sltGroup},
                              {&Account::branchID, &MainScreen::sltBranch},
                              {&Account::positionID, &MainScreen::sltPosition}};

struct Chosen {
  AccountMember member;
  ui::Frame MainScreen::*frame;
  std::initializer_list<ui::RadioButton MainScreen::*> buttons;
};
const Chosen kChosen[] = {
    {&Account::accountNatureID,
     &MainScreen::FrameRemanedType,
     {&MainScreen::optDebit, &MainScreen::OptCredit, &MainScreen::OptDebitAndCredit}},
    {&Account::isPermanent, &MainScreen::FrameAccountType, {&MainScreen::OptReg, &MainScreen::OptNotReg}},
    {&Account::isClosed, &MainScreen::FrameAccountStatus, {&MainScreen::OptOpen, &MainScreen::OptClose}},
};

}  // namespace

std::string AccountTexts::nameOf(const FieldGroup& group) const {
  std::string names;
  for (const AccountMember& member : group.members)
    names.append(names.empty() ? "" : kComma).append(nameOf(member));
  if (group.withRelation)
    for (const shell::Selector* selector : {&screen_.sltEntityType, &screen_.sltEntity})
      names.append(kComma).append(selector->accessibleName());
  return names;
}

std::string AccountTexts::nameOf(const AccountMember& member) const {
  if (member == AccountMember(&Account::parentID)) return screen_.sltParent.accessibleName();
  for (const auto& [control, holds] : mainform::typedFields())
    if (holds == member) return (screen_.*control).accessibleName();
  for (const auto& [holds, selector] : kPicked)
    if (holds == member) return (screen_.*selector).accessibleName();
  for (const Chosen& chosen : kChosen)
    if (chosen.member == member) return (screen_.*chosen.frame).accessibleName();
  // A field that isn't on the screen.
  for (const data::AccountField& field : data::kAccountFields)
    if (field.member == member) return std::string(field.column);
  return {};
}

std::string AccountTexts::textOf(const FieldGroup& group, const Account& account) const {
  std::string texts;
  for (const AccountMember& member : group.members)
    texts.append(texts.empty() ? "" : kComma).append(textOf(member, account));
  return group.withRelation ? texts + kComma + relationOf(account) : texts;
}

std::string AccountTexts::textOf(const AccountMember& member, const Account& account) const {
  if (member == AccountMember(&Account::parentID)) {
    if (account.parentID < 1) return kNone;
    return lookUp("isnull(Code,'') + ' ' + isnull(Title,'') as Name", "tblAccount", account.parentID);
  }
  for (const auto& [holds, selector] : kPicked)
    if (holds == member)
      return nameIn((screen_.*selector).MajorView(), account.*std::get<std::int32_t Account::*>(member));
  for (const Chosen& chosen : kChosen) {
    if (!(chosen.member == member)) continue;
    const std::int64_t value = account.*std::get<std::int64_t Account::*>(member);
    const bool known = value >= 0 && value < static_cast<std::int64_t>(chosen.buttons.size());
    return known ? (screen_.*chosen.buttons.begin()[value]).caption() : kNone;
  }
  const std::string text = data::valueOf(account, member).toText();
  return text.empty() ? kNone : text;
}

std::string AccountTexts::relationOf(const Account& account) const {
  const data::AccountRelation relation = account.relation.value_or(data::AccountRelation());
  const std::string view =
      relation.classID < 1 ? std::string() : lookUp("ViewMajor as Name", "tblAccountClass", relation.classID);
  return nameIn(screen_.sltEntityType.MajorView(), relation.classID) + kComma +
         nameIn(view, relation.objectID);
}

std::string AccountTexts::nameIn(const std::string& view, std::int32_t id) const {
  if (id < 1) return kNone;
  const auto plain = data::plainViewName(view);
  return plain ? lookUp("Name", std::string(*plain), id) : std::to_string(id);
}

std::string AccountTexts::lookUp(const std::string& columns, const std::string& table,
                                 std::int32_t id) const {
  try {
    const data::OpenRows row(gateway_.rssqlAccGroupL,
                             "Select " + columns + " From " + table + " Where ID = " + std::to_string(id));
    if (!row->Eof()) return row->Fields("Name").toText();
  } catch (const std::exception&) {
    // Then the user compares numbers.
  }
  return std::to_string(id);
}

}  // namespace ledgertree::accounts
