#include "shell/rows_as_read.h"

#include <utility>

namespace ledgertree::shell {

namespace {

constexpr std::string_view kTitle = "تغيير همزمان";
constexpr std::string_view kAhead = "پس از خواندن اين فهرست، کاربر ديگري آن را تغيير داده است: ";
constexpr std::string_view kQuestion = ". آيا با اين همه آنچه شما خواسته ايد ثبت شود؟";
constexpr std::string_view kBetween = "در ميان ثبت شما کاربر ديگري اين فهرست را تغيير داد: ";
constexpr std::string_view kReadAgain = ". فهرست را دوباره باز کنيد و ببينيد.";

std::string listed(std::string_view what, const std::string& names) {
  return names.empty() ? std::string() : std::string(what) + names;
}

void name(std::string& names, const std::string& one) {
  names.append(names.empty() ? " «" : "، «").append(one).append("»");
}

std::string differences(const std::string& added, const std::string& removed) {
  const char* const between = added.empty() || removed.empty() ? "" : "؛ ";
  return listed("افزوده شده", added) + between + listed("برداشته شده", removed);
}

}  // namespace

RowsAsRead::Rows RowsAsRead::rowsOf(data::RecordHandle& handle, std::string_view statement,
                                    std::string_view keyColumn, std::string_view wordsColumn) {
  Rows rows;
  for (const data::OpenRows open(handle, statement); !open->Eof(); open->MoveNext()) {
    const std::string key = open->Fields(keyColumn).toText();
    const std::string words = open->Fields(wordsColumn).toText();
    rows[key] = words.empty() ? key : words;
  }
  return rows;
}

bool RowsAsRead::mayWrite(const Rows& now) {
  const std::optional<Rows> before = std::exchange(read_, now);
  if (!before) return true;
  std::string added;
  std::string removed;
  for (const auto& [key, words] : now)
    if (!before->contains(key)) name(added, words);
  for (const auto& [key, words] : *before)
    if (!now.contains(key)) name(removed, words);
  if (added.empty() && removed.empty()) return true;
  return shell_.confirms(kTitle, std::string(kAhead) + differences(added, removed) + std::string(kQuestion));
}

void RowsAsRead::tellBehind(const Rows& now, const std::function<Meant(const std::string& key)>& meant) {
  const Rows before = std::exchange(read_, now).value_or(now);
  std::string added;
  std::string removed;
  for (const auto& [key, words] : now) {
    const Meant as = meant(key);
    if (as == Meant::Gone || (as == Meant::AsItWas && !before.contains(key))) name(added, words);
  }
  for (const auto& [key, words] : before) {
    const Meant as = meant(key);
    if (!now.contains(key) && (as == Meant::There || as == Meant::AsItWas)) name(removed, words);
  }
  if (added.empty() && removed.empty()) return;
  shell_.showErrorNotice(kTitle,
                         std::string(kBetween) + differences(added, removed) + std::string(kReadAgain));
}

}  // namespace ledgertree::shell
