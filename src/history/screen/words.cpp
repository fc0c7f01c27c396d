#include "history/screen/words.h"

#include <algorithm>
#include <array>
#include <utility>

#include "data/persian_calendar.h"

namespace ledgertree::history {
namespace {

using data::OperationKind;

constexpr const char* kNone = "-";
constexpr const char* kComma = "، ";

/// A column in the words of the main screen: its name, and where its number has a name, or the choices that
/// its numbers stand for. A new field is called as its column is until it stands here.
struct Called {
  std::string_view column;
  std::string_view name;
  const char* source = nullptr;
  std::array<std::string_view, 3> choices = {};
};
constexpr Called kCalled[] = {
    {"ID", "شناسه حساب"},
    {"FarsiCreateDate", "تاريخ ايجاد"},
    {"ParentID", "حساب مادر", Names::kAccounts},
    {"GroupID", "گروه", "vwAccountGroup"},
    {"IsPermanent", "نوع حساب", nullptr, {"موقت", "دائم", ""}},
    {"AccountNatureID", "ماهيت حساب", nullptr, {"بدهكار", "بستانكار", "هردو"}},
    {"Title", "عنوان"},
    {"Code", "کد"},
    {"IsClosed", "وضعيت حساب", nullptr, {"باز", "بسته", ""}},
    {"BranchID", "شعبه", "vwAccountBranchMajor"},
    {"PositionID", "مركز هزينه/درآمد", "vwPosition_Employee_Special3"},
    {"Notes", "توضيحات"},
    {"MaxDebit", "سقف بدهکاري"},
    {"MaxCredit", "سقف بستانکاري"},
    // Of the tables beside the account.
    {"PeriodID", "دوره مالي", "vwAccountPeriodMajor"},
    {"AccountGroupID", "گروه", "vwAccountGroup"},
    {"RelatedClassID", "نوع موجوديت", Names::kClasses},
    {"RelatedObjectID", "موجوديت"},
    {"ClassID", "نوع موجوديت", Names::kClasses},
    {"ObjectID", "موجوديت"},
    {"IncludeAllObjects", "همه موجوديتها", nullptr, {"خير", "بلي", ""}},
    {"Sequence", "رديف"},
};

const Called* called(std::string_view column) {
  const auto* const found = std::find_if(std::begin(kCalled), std::end(kCalled),
                                         [column](const Called& one) { return one.column == column; });
  return found == std::end(kCalled) ? nullptr : found;
}

std::string nameOf(const Field& field) {
  const Called* const found = called(field.column);
  return found == nullptr ? field.column : std::string(found->name);
}

struct KindName {
  OperationKind kind;
  std::string_view name;
};
constexpr KindName kKinds[] = {
    {OperationKind::NewAccount, "حساب جديد"},
    {OperationKind::EditAccount, "اصلاح حساب"},
    {OperationKind::DeleteAccount, "حذف حساب"},
    {OperationKind::Recode, "کدينگ خودکار"},
    {OperationKind::CopyToDescendants, "همسان سازي نوع يا ماهيت"},
    {OperationKind::DeleteInBatch, "حذف دسته اي"},
    {OperationKind::CopyPeriod, "کپي به دوره مالي"},
    {OperationKind::HidePeriod, "پنهان از دوره مالي"},
    {OperationKind::PeriodsOfAccount, "سالهاي مالي حساب"},
    {OperationKind::ClassesOfAccount, "انواع موجوديت حساب"},
    {OperationKind::ObjectsOfAccount, "موجوديتهاي حساب"},
    {OperationKind::TakeBack, "برگرداندن"},
    {OperationKind::Other, "برنامه ديگر"},
};

/// Two values with the arrow between them, which points on, from right to left. Between Latin letters it
/// would take their direction: the marks around it keep its own.
std::string fromTo(const std::string& before, const std::string& after) {
  const auto isLatin = [](char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
  };
  const std::string both = before + after;
  const char* const mark = std::any_of(both.begin(), both.end(), isLatin) ? "\u200F" : "";
  return before + mark + " ← " + mark + after;
}

/// The two columns of one day: the Persian one is for persons.
bool isShown(const Field& field) { return field.column != "CreateDate"; }

const data::Value& present(const Field& field) { return field.after.isNull() ? field.before : field.after; }

std::int32_t classOf(const Change& change) {
  for (const Field& field : change.fields)
    if (field.column == "RelatedClassID" || field.column == "ClassID") return present(field).toInt32();
  return -1;
}

bool isObject(const Field& field) { return field.column == "RelatedObjectID" || field.column == "ObjectID"; }

/// Numbers below 1 stand for nothing where they are references.
bool isReference(const data::Value& value) { return !value.isNull() && value.toInt64() > 0; }

}  // namespace

std::string momentInWords(const data::DateTime& moment) {
  const data::DateTime local = data::toLocalTime(moment);
  constexpr std::size_t kTime = 11;  // behind "yyyy-mm-dd "
  return data::toPersianDate(local) + " " + local.toIso().substr(kTime, 5);
}

const std::vector<OperationKind>& allKinds() {
  static const std::vector<OperationKind> all = [] {
    std::vector<OperationKind> kinds;
    for (const KindName& one : kKinds) kinds.push_back(one.kind);
    return kinds;
  }();
  return all;
}

std::string_view nameOf(OperationKind kind) {
  for (const KindName& one : kKinds)
    if (one.kind == kind) return one.name;
  // Of a newer program.
  return nameOf(OperationKind::Other);
}

Change backwards(Change change) {
  for (Field& field : change.fields) std::swap(field.before, field.after);
  if (change.event == Event::Changed) return change;
  change.event = change.event == Event::Came ? Event::Went : Event::Came;
  return change;
}

void Words::learn(const std::vector<Change>& changes) {
  for (const Change& change : changes) {
    if (change.userID) names_.want(Names::kUsers, *change.userID);
    for (const Field& field : change.fields) {
      if (isObject(field) && isReference(present(field)))
        names_.wantObject(classOf(change), present(field).toInt32());
      learnField(field);
    }
  }
  names_.read();
}

void Words::learnField(const Field& field) {
  const Called* const found = called(field.column);
  if (found == nullptr || found->source == nullptr) return;
  for (const data::Value* value : {&field.before, &field.after})
    if (isReference(*value)) names_.want(found->source, value->toInt32());
}

void Words::learnUsers(const std::vector<std::int32_t>& users) {
  for (const std::int32_t user : users) names_.want(Names::kUsers, user);
  names_.read();
}

void Words::learnAccounts(const std::vector<std::int32_t>& accounts) {
  for (const std::int32_t account : accounts) names_.want(Names::kAccounts, account);
  names_.read();
}

std::string Words::user(const std::optional<std::int32_t>& userID) const {
  return userID ? names_.of(Names::kUsers, *userID) : "نامعلوم";
}

std::string Words::account(std::int32_t accountID) const { return names_.of(Names::kAccounts, accountID); }

std::string Words::whatChanged(const Change& change) const {
  return change.subject == Subject::Account ? ofAccount(change) : ofLink(change);
}

std::string Words::ofAccount(const Change& change) const {
  std::string words;
  for (const Field& field : change.fields) {
    const std::string before = valueOf(field.column, field.before);
    const std::string after = valueOf(field.column, field.after);
    // None can be stored as more than one value.
    if (!isShown(field) || before == after) continue;
    words.append(words.empty() ? "" : kComma).append(nameOf(field)).append(": ");
    words += change.event == Event::Changed ? fromTo(before, after) : valueOf(field.column, present(field));
  }
  if (change.event == Event::Came) return "حساب تازه؛ " + words;
  return change.event == Event::Went ? "حذف؛ " + words : words;
}

std::string Words::ofLink(const Change& change) const {
  const std::int32_t classID = classOf(change);
  std::string words = change.event == Event::Came ? "افزودن " : "برداشتن ";
  bool first = true;
  for (const Field& field : change.fields) {
    const data::Value& value = present(field);
    if (isObject(field) && !isReference(value)) continue;
    words.append(first ? "" : kComma).append(nameOf(field)).append(": ");
    words += isObject(field) ? names_.ofObject(classID, value.toInt32()) : valueOf(field.column, value);
    first = false;
  }
  return words;
}

std::string Words::valueOf(std::string_view column, const data::Value& value) const {
  const Called* const found = called(column);
  if (value.isNull()) return kNone;
  if (found != nullptr && found->source != nullptr)
    return isReference(value) ? names_.of(found->source, value.toInt32()) : kNone;
  if (found != nullptr && !found->choices.front().empty()) {
    const std::int64_t choice = value.toInt64();
    const bool known = choice >= 0 && choice < static_cast<std::int64_t>(found->choices.size());
    return known ? std::string(found->choices.at(static_cast<std::size_t>(choice))) : kNone;
  }
  const std::string text = value.toText();
  return text.empty() ? kNone : text;
}

}  // namespace ledgertree::history
