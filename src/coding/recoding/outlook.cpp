#include "coding/recoding/outlook.h"

#include <algorithm>
#include <memory>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "data/ahead.h"
#include "data/quote_text.h"
#include "text/fold.h"

namespace ledgertree::coding {

namespace {

constexpr std::size_t kCodesTogether = 200;

/// The ways in which a code may be stored: with Persian or Arabic forms of letters.
std::set<std::string> spellingsOf(const std::string& code) {
  constexpr std::pair<std::string_view, std::string_view> kForms[] = {{"ی", "ي"}, {"ک", "ك"}};
  std::set<std::string> spellings = {code};
  for (const auto& [persian, arabic] : kForms)
    for (const auto& [from, to] : {std::pair(persian, arabic), std::pair(arabic, persian)})
      for (std::string spelling : std::set(spellings)) {
        for (std::size_t at = 0; (at = spelling.find(from, at)) != std::string::npos; at += to.size())
          spelling.replace(at, from.size(), to);
        spellings.insert(std::move(spelling));
      }
  return spellings;
}

std::vector<data::Command> questionsOf(const std::vector<NewCode>& codes) {
  std::vector<data::Command> questions;
  for (std::size_t first = 0; first < codes.size(); first += kCodesTogether) {
    std::string list;
    for (std::size_t place = first; place < std::min(first + kCodesTogether, codes.size()); ++place)
      for (const std::string& spelling : spellingsOf(codes[place].code))
        list.append(list.empty() ? "" : ",").append(data::quoteText(spelling));
    questions.push_back(
        {.statement = "Select ID,Code,Title From tblAccount Where Code In (" + list + ") Order By ID"});
  }
  return questions;
}

std::map<std::int32_t, Outlook::Documents> documentsOf(data::DtEn& gateway, const std::string& accounts) {
  const std::string lines = "From tblAccountDocumentDetail d Where d.AccountID=tblAccount.ID";
  std::map<std::int32_t, Outlook::Documents> found;
  const data::OpenRows rows(gateway.rssqlAccounts, "Select ID,(Select count(*) " + lines +
                                                       ") As DocumentLines,(Select min(d.DocumentID) " +
                                                       lines + ") As FirstDocument From tblAccount Where " +
                                                       accounts + " and exists(Select d.* " + lines + ")");
  for (; !rows->Eof(); rows->MoveNext())
    found[rows->Fields("ID").toInt32()] = {.lines = rows->Fields("DocumentLines").toInt64(),
                                           .first = rows->Fields("FirstDocument").toInt64()};
  return found;
}

bool changes(const NewCode& account) { return account.old != account.code; }

std::string remarkOn(const Outlook& outlook, std::size_t place) {
  if (isTooLong(outlook.codes[place])) return "بيش از 20 حرف دارد";
  const auto collision = outlook.collisions.find(place);
  if (collision != outlook.collisions.end()) return collision->second;
  return changes(outlook.codes[place]) ? "" : "بي تغيير";
}

shell::Preview::Row rowOf(const Outlook& outlook, std::size_t place) {
  const NewCode& account = outlook.codes[place];
  const auto documents = outlook.documents.find(account.account);
  std::string lines;
  if (changes(account) && documents != outlook.documents.end())
    lines = std::to_string(documents->second.lines) + " سطر، ش.ر. «" +
            std::to_string(documents->second.first) + "»";
  return {std::to_string(place + 1),
          account.old,
          account.code,
          account.title,
          lines,
          remarkOn(outlook, place),
          std::to_string(account.account)};
}

std::vector<std::string> summaryOf(data::DtEn& gateway, const Outlook& outlook) {
  const auto text = [](auto number) { return std::to_string(number); };
  std::int64_t inDocuments = 0;
  std::int64_t documentLines = 0;
  for (const NewCode& account : outlook.codes) {
    const auto documents = outlook.documents.find(account.account);
    if (!changes(account) || documents == outlook.documents.end()) continue;
    ++inDocuments;
    documentLines += documents->second.lines;
  }
  const auto& codes = outlook.codes;
  std::vector<std::string> lines = {text(codes.size()) + " حساب شماره ميگيرد و کد " +
                                    text(std::count_if(codes.begin(), codes.end(), changes)) +
                                    " حساب تغيير ميکند."};
  lines.push_back(outlook.collisions.empty()
                      ? "هيچ کد تازه اي با کد حساب ديگري برخورد نميکند."
                      : text(outlook.collisions.size()) + " کد تازه با کد حساب ديگري برخورد ميکند.");
  if (outlook.tooLong)
    lines.push_back(text(std::count_if(codes.begin(), codes.end(), isTooLong)) +
                    " کد تازه بيش از 20 حرف دارد. تا چنين است هيچ کدي تغيير نميکند.");
  if (documentLines > 0)
    lines.push_back(text(documentLines) + " سطر سند با کد کنوني " + text(inDocuments) +
                    " حساب ثبت شده است؛ آنچه از آنها چاپ شده، کد پيشين را دارد.");
  lines.emplace_back(shell::wayBack(gateway));
  return lines;
}

}  // namespace

std::map<std::size_t, std::string> collisionsOf(data::DtEn& gateway, const std::vector<NewCode>& codes) {
  std::map<std::size_t, std::string> collisions;
  std::unordered_map<std::string, std::size_t> places;
  std::unordered_set<std::int32_t> series;
  for (std::size_t place = 0; place < codes.size(); ++place) {
    series.insert(codes[place].account);
    const auto [first, alone] = places.try_emplace(text::fold(codes[place].code), place);
    if (!alone) collisions[place] = "رديف " + std::to_string(first->second + 1) + " هم همين کد را ميگيرد";
  }
  const std::vector<data::Command> questions = questionsOf(codes);
  const data::Ahead ahead(gateway.cnMainData, questions);
  for (const data::Command& question : questions) {
    const data::OpenRows rows(gateway.rssqlAccounts, question.statement);
    for (; !rows->Eof(); rows->MoveNext()) {
      if (series.contains(rows->Fields("ID").toInt32())) continue;
      const auto place = places.find(text::fold(rows->Fields("Code").toText()));
      if (place != places.end())
        collisions[place->second] = "حساب «" + rows->Fields("Title").toText() + "» همين کد را دارد";
    }
  }
  return collisions;
}

Outlook outlookOf(data::DtEn& gateway, const Numbering& numbering, std::vector<NewCode> codes) {
  Outlook outlook{.codes = std::move(codes)};
  outlook.collisions = collisionsOf(gateway, outlook.codes);
  outlook.documents = documentsOf(gateway, numbering.accounts);
  outlook.tooLong = std::any_of(outlook.codes.begin(), outlook.codes.end(), isTooLong);
  return outlook;
}

shell::Preview previewOf(data::DtEn& gateway, const Outlook& outlook, std::string command) {
  // Indices of the rows that pass the filter.
  const auto changing = std::make_shared<std::vector<std::size_t>>();
  for (std::size_t place = 0; place < outlook.codes.size(); ++place)
    if (changes(outlook.codes[place])) changing->push_back(place);
  const auto page = [&outlook, changing](bool filtered, std::size_t number) {
    const std::size_t all = filtered ? changing->size() : outlook.codes.size();
    const std::size_t first = number * shell::Preview::kPage;
    const std::size_t end = std::min(first + shell::Preview::kPage, all);
    shell::Preview::Page rows{.more = end < all};
    for (std::size_t at = first; at < end; ++at)
      rows.rows.push_back(rowOf(outlook, filtered ? (*changing)[at] : at));
    return rows;
  };
  return {.title = "پيش نمايش کدينگ",
          .summary = summaryOf(gateway, outlook),
          .columns = {{.header = "رديف", .width = 700},
                      {.header = "کد کنوني", .width = 1700},
                      {.header = "کد تازه", .width = 1700},
                      {.header = "عنوان", .width = 2300},
                      {.header = "در سندها", .width = 1700},
                      {.header = "توجه", .width = 2400},
                      {.header = "ش.ر.", .width = 0}},
          .filter = "فقط آنچه تغيير ميکند",
          .command = std::move(command),
          .possible = !outlook.codes.empty() && !outlook.tooLong,
          .rows = page};
}

}  // namespace ledgertree::coding
