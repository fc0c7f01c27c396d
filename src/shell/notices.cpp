#include <exception>
#include <memory>

#include "data/data_error.h"
#include "shell/shell.h"

namespace ledgertree::shell {

namespace {

constexpr std::int32_t kOneButton = 0;
constexpr std::int32_t kYesOrNo = 1;
// Colours as the component takes them: blue, green and red from the high byte down.
constexpr std::int32_t kFormBackColor = 12893912;
constexpr std::int32_t kBtmBackColor = 6510973;
constexpr std::int32_t kFrameBackColor = 14408673;

std::unique_ptr<OutsideComponent> showNotice(const OutsideComponents& components, std::string_view title,
                                             std::string_view message, std::int32_t type) {
  auto dialog = components.create("NoticeKit.NoticeDialog");
  dialog->set("FormTitle", title);
  dialog->set("FormMessage", message);
  dialog->set("FormType", type);
  dialog->set("FormBackColor", kFormBackColor);
  dialog->set("BtmBackColor", kBtmBackColor);
  dialog->set("FrameBackColor", kFrameBackColor);
  dialog->call("ClearShow", {});
  return dialog;
}

}  // namespace

void Shell::showErrorNotice(std::string_view title, std::string_view message) {
  try {
    showNotice(components, title, message, kOneButton);
  } catch (...) {
    // A notice that can't be shown is lost: there is nobody else to tell, and the caller goes on.
    return;
  }
}

Answer Shell::askConfirmNotice(std::string_view title, std::string_view message) {
  try {
    const auto dialog = showNotice(components, title, message, kYesOrNo);
    const data::Value answer = dialog->get("Resualt");
    if (answer == data::Value(1)) return Answer::Yes;
    if (answer == data::Value(0)) return Answer::No;
  } catch (...) {
    // A question that can't be put isn't confirmed.
    return Answer::None;
  }
  return Answer::None;
}

void Shell::reportFailure(const std::exception& failure) {
  desktop_.setCursor(ui::CursorShape::Default);
  const auto* const outage = dynamic_cast<const data::DataError*>(&failure);
  if (outage != nullptr && outage->isRepeated()) return;
  showErrorNotice(kTitleError, failure.what());
}

}  // namespace ledgertree::shell
