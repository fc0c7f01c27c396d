#include "accounts/dependants.h"

namespace ledgertree::accounts {

Dependants dependantsOf(data::DtEn& gateway, std::int32_t account) {
  const std::string id = std::to_string(account);
  const std::string lines = " From tblAccountDocumentDetail Where AccountID=" + id;
  Dependants found;
  {
    const data::OpenRows counts(gateway.rssqlBufferQuery,
                                "Select (Select count(*) From tblAccount Where ParentID=" + id +
                                    ") As Children,(Select count(*)" + lines + ") As DocumentLines");
    found.children = counts->Fields("Children").toInt64();
    found.lines = counts->Fields("DocumentLines").toInt64();
  }
  if (found.children > 0) {
    const data::OpenRows child(
        gateway.rssqlBufferQuery,
        "Select top 1 ID,Code,Title From tblAccount Where ParentID=" + id + " Order By Code");
    if (!child->Eof()) {
      found.firstChild = child->Fields("ID").toInt32();
      found.firstChildCode = child->Fields("Code").toText();
      found.firstChildTitle = child->Fields("Title").toText();
    }
  }
  if (found.lines > 0) {
    const data::OpenRows document(
        gateway.rssqlBufferQuery,
        "Select ID,FarsiDocumentDate From tblAccountDocument Where ID=(Select min(DocumentID)" + lines + ")");
    if (!document->Eof()) {
      found.firstDocument = document->Fields("ID").toText();
      found.firstDate = document->Fields("FarsiDocumentDate").toText();
    }
  }
  return found;
}

std::string inWords(const Dependants& dependants) {
  if (dependants.children == 0 && dependants.lines == 0)
    return "اين حساب نه زيرشاخه دارد و نه سند. جدول ديگري از برنامه به آن وابسته است؛ مدير پايگاه داده را "
           "آگاه "
           "نماييد.";
  std::string words;
  if (dependants.children > 0)
    words = std::to_string(dependants.children) + " زيرشاخه دارد؛ نخستين آنها «" +
            dependants.firstChildTitle + "» با کد " + dependants.firstChildCode + " است.";
  if (dependants.children > 0 && dependants.lines > 0) words += '\n';
  if (dependants.lines > 0)
    words += std::to_string(dependants.lines) + " سطر سند دارد؛ نخستين آنها در سند با ش.ر. «" +
             dependants.firstDocument + "» به تاريخ " + dependants.firstDate + " است.";
  return words;
}

}  // namespace ledgertree::accounts
