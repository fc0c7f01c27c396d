#include "mainform/form/others_changes.h"

#include <chrono>
#include <functional>
#include <utility>
#include <vector>

#include "accounts/account_texts.h"
#include "accounts/differences.h"
#include "data/ahead.h"
#include "data/connection_text.h"
#include "data/data_error.h"

namespace ledgertree::mainform {

namespace {

constexpr std::chrono::seconds kBetweenQuestions{3};

constexpr std::string_view kTree = "درخت حسابها به روز شد: ";
constexpr std::string_view kAccount = "اين حساب به روز شد: ";
constexpr std::string_view kParent = "حساب مادر اين حساب به روز شد";
constexpr std::string_view kDeleted = "حسابي که روي صفحه بود ديگر وجود ندارد";
constexpr std::string_view kTypedOver = "کاربر ديگري اين حساب را تغيير داده است: ";
constexpr std::string_view kTypedDeleted = "کاربر ديگري اين حساب را حذف کرده است";

void append(std::string& words, std::string_view between, const std::string& more) {
  if (!words.empty() && !more.empty()) words.append(between);
  words.append(more);
}

/// Names a single account, or counts several.
struct Several {
  int count = 0;
  std::string last;

  void add(const std::string& label) {
    ++count;
    last = label;
  }
  [[nodiscard]] std::string said(std::string_view what) const {
    if (count == 0) return {};
    const std::string who = count == 1 ? "«" + last + "»" : std::to_string(count) + " حساب";
    return who + std::string(what);
  }
};

/// The names of the fields that differ between two states of an account.
std::string namesOf(const data::Account& before, const data::Account& now,
                    const accounts::AccountTexts& texts) {
  std::string names;
  for (const accounts::Difference& difference : accounts::differences(before, now, before))
    append(names, "، ", texts.nameOf(*difference.group));
  return names;
}

}  // namespace

OthersChanges::OthersChanges(MainScreen& screen, shell::Shell& shell, AccountRecord& record,
                             AccountTree& tree)
    : screen_(screen),
      shell_(shell),
      record_(record),
      tree_(tree),
      timer_(screen, "OthersChanges", kBetweenQuestions),
      changes_(shell, [this] { timer_.tick(); }) {
  timer_.onTick = [this] { ticked(); };
}

void OthersChanges::begin() {
  offered_ = shell_.isOffered(Offer::OthersChanges);
  treeIsOld_ = false;
  screen_.lblOthers.setVisible(offered_);
  clearReport();
  if (offered_) changes_.begin();
}

void OthersChanges::clearReport() { report({}); }

void OthersChanges::report(const std::string& text) {
  screen_.lblOthers.setCaption(text);
  screen_.lblOthers.setHint(text);
}

void OthersChanges::ticked() {
  if (!offered_) return;
  if (treeIsOld_ && !screen_.isTyping()) {
    treeIsOld_ = false;
    changes_.forget();
  }
  changes_.ask();
  if (!changes_.moved() || !mayLook()) return;
  try {
    if (screen_.isTyping()) {
      lookWhileTyping();
    } else {
      look();
    }
    changes_.seen();
  } catch (const data::DataError&) {
    // The user didn't ask for this query; failures of requested ones are reported.
    changes_.failed();
  }
}

bool OthersChanges::mayLook() const {
  // The search text is in the field where the account's title would be written.
  return !screen_.sltAccount.typing() && !screen_.sltAccount.listOpen();
}

bool OthersChanges::recordIsFromHere() const {
  return screen_.AccountOnRecord > 0 && screen_.AsRead &&
         data::sameDatabase(screen_.RecordSource, shell_.dtEn()->cnMainData.ConnectionString());
}

void OthersChanges::look() {
  std::string text = readTree();
  if (!text.empty()) report(text);
  append(text, "؛ ", readRecord());
  if (!text.empty()) report(text);
}

void OthersChanges::lookWhileTyping() {
  treeIsOld_ = true;
  if (screen_.formMode != FormMode::ModeEdit || !recordIsFromHere()) return;
  const auto now = record_.readAgain(screen_.AccountOnRecord);
  if (!now) return report(std::string(kTypedDeleted));
  const auto gateway = shell_.dtEn();
  const std::string names = namesOf(*screen_.AsRead, *now, accounts::AccountTexts(screen_, *gateway));
  if (!names.empty()) report(std::string(kTypedOver) + names);
}

OthersChanges::Nodes OthersChanges::nodes() const {
  const ui::Tree& tree = screen_.treeAccount;
  Nodes found;
  const std::function<void(ui::NodeId)> add = [&](ui::NodeId node) {
    for (const ui::NodeId child : tree.children(node)) {
      // Placeholders for children that aren't read yet have a longer key.
      if (const std::string& key = tree.key(child); !key.ends_with('!')) found[key] = tree.text(child);
      add(child);
    }
  };
  for (const ui::NodeId root : tree.roots()) add(root);
  return found;
}

std::string OthersChanges::readTree() {
  Nodes before = nodes();
  tree_.readAgain();
  Several added;
  Several changed;
  for (const auto& [key, label] : nodes()) {
    const auto old = before.find(key);
    if (old == before.end()) {
      added.add(label);
      continue;
    }
    if (old->second != label) changed.add(label);
    before.erase(old);
  }
  Several gone;
  for (const auto& [key, label] : before) gone.add(label);
  std::string what = added.said(" افزوده شد");
  append(what, "، ", changed.said(" تغيير کرد"));
  append(what, "، ", gone.said(" از آن رفت"));
  return what.empty() ? what : std::string(kTree) + what;
}

std::string OthersChanges::readRecord() {
  if (!recordIsFromHere()) return {};
  const data::Account before = *screen_.AsRead;
  const std::string parent = screen_.sltParent.AccountCode() + " " + screen_.sltParent.AccountTitle();
  const auto gateway = shell_.dtEn();
  const data::Ahead ahead(gateway->cnMainData, record_.questionsOf(before));
  const auto now = record_.readAgain(before.id);
  if (!now) {
    record_.goIdle();
    return std::string(kDeleted);
  }
  screen_.sltParent.ReloadAccounts();
  const std::string names = namesOf(before, *now, accounts::AccountTexts(screen_, *gateway));
  const bool parentIsOther =
      parent != screen_.sltParent.AccountCode() + " " + screen_.sltParent.AccountTitle();
  if (names.empty() && !parentIsOther) return {};
  record_.goOnWith(*now, *now);
  return names.empty() ? std::string(kParent) : std::string(kAccount) + names;
}

}  // namespace ledgertree::mainform
