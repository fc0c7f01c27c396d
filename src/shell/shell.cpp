#include "shell/shell.h"

#include <ctime>

#include "data/connection_text.h"
#include "data/permissions.h"
#include "shell/awaited_connection.h"
#include "text/characters.h"
#include "ui/control.h"

namespace ledgertree::shell {

namespace {

data::DateTime localNow() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  return {.year = local.tm_year + 1900,
          .month = local.tm_mon + 1,
          .day = local.tm_mday,
          .hour = local.tm_hour,
          .minute = local.tm_min,
          .second = local.tm_sec};
}

}  // namespace

Shell::Shell(ui::Desktop& desktop) : waits(desktop), clock(localNow), desktop_(desktop) {}

Shell::~Shell() = default;

ui::Surroundings Shell::surroundings() {
  return {.desktop = desktop_,
          .onFailure = [this](const std::exception& failure) { reportFailure(failure); },
          .enterMovesOn = isOffered(Offer::EnterAsTab)};
}

std::unique_ptr<data::Connection> Shell::connectionTo(std::string_view connectionText) {
  auto engine = providers.open(connectionText);
  if (engine->isRemote())
    return std::make_unique<AwaitedConnection>(
        waits, background, [this, text = std::string(connectionText)] { return providers.open(text); });
  engine->whileWaiting(waits.shown());
  return engine;
}

bool Shell::mayAskSecondary(const std::string& connectionText) const {
  if (waits.wrote()) return false;
  const auto intent = data::ConnectionText(connectionText).find("Search Intent");
  return intent && text::equalsIgnoringCase(*intent, "ReadOnly");
}

std::shared_ptr<data::DtEn> Shell::dtEn() {
  if (!dtEn_)
    dtEn_ = std::make_shared<data::DtEn>([this](std::string_view text) { return connectionTo(text); });
  return dtEn_;
}

void Shell::resetDataConnection() {
  dropDtEn();
  dtEn()->cnMainData.ConnectionString(context.gConnectionString);
}

void Shell::showNews() {
  const auto gateway = dtEn();
  for (const std::string& message : gateway->cnMainData.port().takeNews())
    showErrorNotice(kTitleProblem, message);
}

bool Shell::hasAccountMovement(std::int32_t accountID) {
  const auto gateway = dtEn();
  const data::OpenRows lines(
      gateway->rssqlBufferQuery,
      "Select top 1 * from tblAccountDocumentDetail Where AccountID = " + std::to_string(accountID));
  return lines->RecordCount() != 0;
}

bool Shell::permits(data::Permission permission) {
  const auto gateway = dtEn();
  if (data::isPermitted(*gateway, context.gUserID, permission)) return true;
  showErrorNotice(data::refusalTitle(permission), data::kNotPermitted);
  return false;
}

void Shell::chooseKeyboardLayout() {
  const int version = desktop_.operatingSystemVersion();
  if (version == 4) context.gKeyboardLayout = "00000401";
  if (version == 5) context.gKeyboardLayout = "00000429";
}

void Shell::switchLayoutAt(ui::Control& control) const {
  control.onGotFocus = [this] { desktop_.chooseKeyboardLayout(context.gKeyboardLayout); };
}

}  // namespace ledgertree::shell
