#include "batch/branch.h"

#include <utility>
#include <vector>

namespace ledgertree::batch {

namespace {

std::string text(std::int64_t number) { return std::to_string(number); }

/// "4 سطر سند؛ نخستين سند با ش.ر. «501» به تاريخ 1403/01/01".
std::string linesInWords(std::int64_t lines, const std::string& document, const std::string& date) {
  return text(lines) + " سطر سند؛ نخستين سند با ش.ر. «" + document + "» به تاريخ " + date;
}

/// The statement for a page of rows after the account `last`.
std::string pageAfter(std::int32_t mother, bool stayingOnly, const std::string& last) {
  const std::string lines = "From tblAccountDocumentDetail dd Where dd.AccountID=a.ID";
  const std::string inUseBelow =
      "From tblAccountParent q Where q.ID=a.ID and exists(Select dd.* From tblAccountDocumentDetail dd Where "
      "dd.AccountID=q.ChildID)";
  std::string statement = "Select top " + std::to_string(shell::Preview::kPage + 1) +
                          " a.ID,a.Code,a.Title,(Select count(*) " + lines +
                          ") As DocumentLines,(Select min(dd.DocumentID) " + lines +
                          ") As FirstDocument,(Select d.FarsiDocumentDate From tblAccountDocument d Where "
                          "d.ID=(Select min(dd.DocumentID) " +
                          lines + ")) As FirstDate,(Select top 1 q.ChildID " + inUseBelow +
                          ") As InUseBelow,(Select count(*) From tblAccountPeriodAccount m Where "
                          "m.AccountID=a.ID) As Periods,(Select count(*) From tblAccountRelatedObjects r "
                          "Where r.AccountID=a.ID)+(Select count(*) From tblAccountRelatedClasses c Where "
                          "c.AccountID=a.ID)+(Select count(*) From tblAccountRelatedClassesDetail o Where "
                          "o.AccountID=a.ID) As Relations From tblAccountParent p inner join tblAccount a on "
                          "a.ID=p.ChildID Where p.ID=" +
                          std::to_string(mother) + " and p.ChildID>" + last;
  if (stayingOnly)
    statement += " and (exists(Select dd.* " + lines + ") or exists(Select q.* " + inUseBelow + "))";
  return statement + " Order By p.ChildID";
}

std::string fateOf(const data::RecordHandle& account, const Branch& branch) {
  const std::int64_t lines = account.Fields("DocumentLines").toInt64();
  if (lines > 0)
    return "نميشود: " + linesInWords(lines, account.Fields("FirstDocument").toText(),
                                     account.Fields("FirstDate").toText());
  if (!account.Fields("InUseBelow").isNull()) return "نميشود: زيرشاخه اي دارد که ميماند";
  return branch.inUse > 0 ? "خود مانعي ندارد" : "ميشود";
}

shell::Preview::Page pageOf(data::DtEn& gateway, const std::string& statement, std::size_t first,
                            const Branch& branch) {
  shell::Preview::Page page;
  const data::OpenRows rows(gateway.rssqlAccounts, statement);
  page.more = rows->RecordCount() > static_cast<std::int32_t>(shell::Preview::kPage);
  for (; !rows->Eof() && page.rows.size() < shell::Preview::kPage; rows->MoveNext())
    page.rows.push_back({std::to_string(first + page.rows.size() + 1), rows->Fields("Code").toText(),
                         rows->Fields("Title").toText(), rows->Fields("Periods").toText(),
                         rows->Fields("Relations").toText(), fateOf(*rows, branch),
                         rows->Fields("ID").toText()});
  return page;
}

/// Reads each page starting after the last account of the page before.
class Pages {
 public:
  Pages(std::shared_ptr<data::DtEn> gateway, std::int32_t mother, const Branch& branch)
      : gateway_(std::move(gateway)), mother_(mother), branch_(branch) {}

  shell::Preview::Page operator()(bool stayingOnly, std::size_t number) {
    if (stayingOnly != stayingOnly_) ends_ = {"0"};
    stayingOnly_ = stayingOnly;
    auto page = pageOf(*gateway_, pageAfter(mother_, stayingOnly, ends_[number]),
                       number * shell::Preview::kPage, branch_);
    ends_.resize(number + 1);
    if (page.more) ends_.push_back(page.rows.back().back());
    return page;
  }

 private:
  std::shared_ptr<data::DtEn> gateway_;
  std::int32_t mother_;
  Branch branch_;
  bool stayingOnly_ = false;
  std::vector<std::string> ends_ = {"0"};  ///< the account before each page
};

std::vector<std::string> summaryOf(data::DtEn& gateway, const std::string& mother, const Branch& branch) {
  if (branch.accounts == 0) return {"زير حساب " + mother + " هيچ حسابي نيست."};
  std::vector<std::string> lines = {"زير حساب " + mother + "، " + text(branch.accounts) + " حساب هست."};
  if (branch.inUse > 0) {
    lines.push_back(text(branch.inUse) + " حساب در سندها آمده است: " +
                    linesInWords(branch.lines, text(branch.firstDocument), branch.firstDate) + ".");
    lines.emplace_back("تا چنين است هيچ حسابي حذف نميشود.");
  } else {
    lines.emplace_back(
        "هيچ يک در سندي نيامده است. حسابي که جدول ديگري از برنامه به آن وابسته باشد و حسابهاي بالاي آن "
        "ميمانند؛ بقيه حذف ميشوند.");
  }
  lines.push_back("همراه با آنها " + text(branch.periods) + " عضويت در دوره هاي مالي و " +
                  text(branch.relations) + " ارتباط با گروه، نوع موجوديت و موجوديت از ميان ميرود.");
  lines.emplace_back(shell::wayBack(gateway));
  return lines;
}

}  // namespace

Branch branchBelow(data::DtEn& gateway, std::int32_t account) {
  const std::string id = std::to_string(account);
  const std::string below = " Where AccountID In (Select ChildID From tblAccountParent Where ID=" + id + ")";
  Branch branch;
  {
    const data::OpenRows sums(
        gateway.rssqlAccounts,
        "Select (Select count(*) From tblAccountParent Where ID=" + id +
            ") As Accounts,(Select max(ChildID) From tblAccountParent Where ID=" + id +
            ") As Newest,(Select count(*) From tblAccountParent p Where p.ID=" + id +
            " and exists(Select dd.* From tblAccountDocumentDetail dd Where dd.AccountID=p.ChildID)) As "
            "InUse,"
            "(Select count(*) From tblAccountDocumentDetail" +
            below + ") As DocumentLines,(Select min(DocumentID) From tblAccountDocumentDetail" + below +
            ") As FirstDocument,(Select count(*) From tblAccountPeriodAccount" + below +
            ") As Periods,(Select count(*) From tblAccountRelatedObjects" + below +
            ")+(Select count(*) From tblAccountRelatedClasses" + below +
            ")+(Select count(*) From tblAccountRelatedClassesDetail" + below + ") As Relations");
    const auto number = [&](std::string_view column) {
      const data::Value value = sums->Fields(column);
      return value.isNull() ? 0 : value.toInt64();
    };
    branch = {.accounts = number("Accounts"),
              .newest = number("Newest"),
              .inUse = number("InUse"),
              .lines = number("DocumentLines"),
              .firstDocument = number("FirstDocument"),
              .periods = number("Periods"),
              .relations = number("Relations")};
  }
  if (branch.firstDocument == 0) return branch;
  const data::OpenRows document(
      gateway.rssqlAccounts,
      "Select FarsiDocumentDate From tblAccountDocument Where ID=" + text(branch.firstDocument));
  if (!document->Eof()) branch.firstDate = document->Fields("FarsiDocumentDate").toText();
  return branch;
}

shell::Preview previewOf(std::shared_ptr<data::DtEn> gateway, std::int32_t account, const std::string& mother,
                         const Branch& branch) {
  return {.title = "پيش نمايش حذف دسته اي",
          .summary = summaryOf(*gateway, mother, branch),
          .columns = {{.header = "رديف", .width = 700},
                      {.header = "کد", .width = 1700},
                      {.header = "عنوان", .width = 2300},
                      {.header = "دوره", .width = 600},
                      {.header = "ارتباط", .width = 750},
                      {.header = "حذف", .width = 4500},
                      {.header = "ش.ر.", .width = 0}},
          .filter = "فقط آنچه حذف نميشود",
          .command = "حذف",
          .possible = branch.accounts > 0 && branch.inUse == 0,
          .rows = Pages(std::move(gateway), account, branch)};
}

}  // namespace ledgertree::batch
