#include "history/screen/way_back.h"

#include <algorithm>
#include <string>
#include <vector>

#include "history/history.h"
#include "history/operations.h"
#include "history/screen/words.h"

namespace ledgertree::history {
namespace {

using data::Obstacle;

/// So much of an operation stands in a notice.
constexpr std::size_t kTold = 5;

std::string_view reasonOf(Obstacle why) {
  switch (why) {
    case Obstacle::Changed:
      return "پس از آن تغيير کرده است";
    case Obstacle::Gone:
      return "ديگر وجود ندارد";
    case Obstacle::There:
      return "دوباره ثبت شده است";
    case Obstacle::ParentGone:
      return "حساب مادر آن ديگر وجود ندارد";
    case Obstacle::CodeTaken:
      return "کد آن را اکنون حساب ديگري دارد";
    case Obstacle::HasDocuments:
      return "سند حسابداري دارد";
    case Obstacle::HasChildren:
      return "زيرشاخه دارد";
    case Obstacle::HasRelations:
      return "دوره مالي، گروه يا موجوديت تازه دارد";
    case Obstacle::Renumbered:
      return "شناسه آن عوض شده است";
    case Obstacle::IsCut:
      return "آغاز اين عمليات از سابقه پاک شده است";
    case Obstacle::Unknown:
      return "اين عمليات در سابقه نيست";
    case Obstacle::Rule:
      break;
  }
  return "پايگاه داده آن را نميپذيرد";
}

std::string whoAndWhen(const Words& words, const std::optional<std::int32_t>& user,
                       const data::DateTime& moment) {
  return words.user(user) + "، " + momentInWords(moment);
}

/// Lines of a notice, the first ones and how many more there are.
std::string lines(const std::vector<std::string>& told, std::int64_t all, std::string_view rest) {
  std::string text;
  for (const std::string& line : told) text += line + "\n";
  const std::int64_t more = all - static_cast<std::int64_t>(told.size());
  return more > 0 ? text + "و " + std::to_string(more) + std::string(rest) + "\n" : text;
}

std::string questionOf(data::DtEn& data, std::int64_t operation, const OperationKept& kept) {
  const std::vector<Change> changes = page(data, {.operation = operation}, 0, kTold).changes;
  Words words(data);
  words.learn(changes);
  if (kept.userID) words.learnUsers({*kept.userID});
  std::vector<std::string> told;
  told.reserve(changes.size());
  for (const Change& change : changes)
    told.push_back("«" + change.code + " " + change.title + "»: " + words.whatChanged(backwards(change)));
  return "«" + std::string(nameOf(kept.kind)) + "» (" + whoAndWhen(words, kept.userID, kept.moment) +
         ") برگردانده ميشود: " + std::to_string(kept.accounts) + " حساب، " + std::to_string(kept.changes) +
         " تغيير.\n" + lines(told, kept.changes, " تغيير ديگر") + "آيا مطمئن هستيد؟";
}

void tellRefusal(shell::Shell& shell, data::DtEn& data, const std::vector<Standing>& standing) {
  const auto end = standing.begin() + static_cast<std::ptrdiff_t>(std::min(standing.size(), kTold));
  const std::vector<Standing> shown(standing.begin(), end);
  Words words(data);
  std::vector<std::int32_t> users;
  std::vector<std::int32_t> accounts;
  for (const Standing& one : shown) {
    if (one.userID) users.push_back(*one.userID);
    if (one.accountID > 0) accounts.push_back(one.accountID);
  }
  words.learnUsers(users);
  words.learnAccounts(accounts);
  std::vector<std::string> told;
  for (const Standing& one : shown) {
    std::string line = one.accountID > 0 ? "حساب «" + words.account(one.accountID) + "»: " : std::string();
    line += reasonOf(one.why);
    if (one.moment) line += " (" + whoAndWhen(words, one.userID, *one.moment) + ")";
    told.push_back(line);
  }
  shell.showErrorNotice(kTitleTakeBack,
                        std::string("اين عمليات برگردانده نشد و هيچ حسابي تغيير نکرد:") + "\n" +
                            lines(told, static_cast<std::int64_t>(standing.size()), " حساب ديگر"));
}

void addNews(shell::Shell& shell, data::DtEn& data, std::int64_t takingBack, data::OperationKind behind) {
  using Kind = ChartEvent::Kind;
  const Kind changed = behind == data::OperationKind::Recode ? Kind::Recoded : Kind::Changed;
  for (const Touched& one : touchedBy(data, takingBack)) {
    const Kind kind = one.event == Event::Came   ? Kind::Created
                      : one.event == Event::Went ? Kind::Deleted
                                                 : changed;
    shell.news.add(kind, {one.accountID});
  }
}

}  // namespace

bool takeBackAsked(shell::Shell& shell, std::int64_t operation) {
  const auto gateway = shell.dtEn();
  const auto kept = operationKept(*gateway, operation);
  if (!kept) {
    tellRefusal(shell, *gateway, {{.why = Obstacle::Unknown}});
    return false;
  }
  const data::OperationKind behind = kindBehind(*gateway, operation);
  const std::vector<data::Permission> needed = neededToTakeBack(behind);
  if (!std::all_of(needed.begin(), needed.end(), [&shell](auto right) { return shell.permits(right); }))
    return false;
  if (!shell.confirms(kTitleTakeBack, questionOf(*gateway, operation, *kept))) return false;
  const shell::Hourglass hourglass(shell.desktop());
  const TakenBack result = takeBack(*gateway, shell.context.gUserID, operation);
  if (result.operation != 0) {
    addNews(shell, *gateway, result.operation, behind);
    return true;
  }
  if (!result.missing.empty()) {
    shell.showErrorNotice(data::refusalTitle(result.missing.front()), data::kNotPermitted);
  } else {
    tellRefusal(shell, *gateway, result.standing);
  }
  return false;
}

}  // namespace ledgertree::history
