#include "accounts/unanswered_save.h"

#include <algorithm>

#include "data/data_error.h"
#include "data/quote_text.h"

namespace ledgertree::accounts {

bool UnansweredSave::mayBeDone(const std::exception& failure) {
  const auto* error = dynamic_cast<const data::DataError*>(&failure);
  return error != nullptr && error->leavesOpen();
}

bool UnansweredSave::isAbout(const Sent& now) const {
  return sent_ && sent_->record == now.record && (sent_->code == now.code || sent_->title == now.title);
}

std::optional<std::int32_t> UnansweredSave::find(data::DtEn& gateway) const {
  if (!sent_) return std::nullopt;
  const data::OpenRows rows(gateway.rssqlBufferQuery,
                            "Select ID From tblAccount Where Code = " + data::quoteText(sent_->code) +
                                " and Title = " + data::quoteText(sent_->title) +
                                " and isnull(ParentID,-1)=" + std::to_string(std::max(sent_->parentID, -1)));
  if (rows->Eof()) return std::nullopt;
  return rows->Fields("ID").toInt32();
}

}  // namespace ledgertree::accounts
