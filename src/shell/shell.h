#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "data/dten.h"
#include "data/operation.h"
#include "data/permissions.h"
#include "ledgertree/offers.h"
#include "shell/background.h"
#include "shell/chart_news.h"
#include "shell/database_waits.h"
#include "shell/host_context.h"
#include "shell/outside_components.h"
#include "ui/desktop.h"
#include "ui/form.h"

namespace ledgertree::shell {

/// The answers to a question.
enum class Answer : std::int32_t { None = 0, Yes = 6, No = 7 };

/// Titles shared by many notices.
inline constexpr std::string_view kTitleProblem = "اشکال";
inline constexpr std::string_view kTitleError = "خطا";
inline constexpr std::string_view kTitleSaveError = "خطا در ثبت";

/// What all forms share: the host's values, the gateway, the notices, the desktop, the
/// outside components, the clock, and the pickers' connection text. One serves
/// LedgerTreeControl until the process ends; tests create their own.
class Shell {
 public:
  using Clock = std::function<data::DateTime()>;

  explicit Shell(ui::Desktop& desktop);
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;
  ~Shell();

  HostContext context;
  data::Providers providers;
  OutsideComponents components;
  Background background;
  DatabaseWaits waits;
  /// Set on one account picker, it applies to all of them.
  std::string pickerConnection;
  /// The current date and time.
  Clock clock;
  /// The optional extensions that the host offers; applied at the next load of a form.
  std::set<Offer> offers;
  /// How much of the record's width the user gave to the tree, by the divider between them.
  ui::Twips givenToTree = 0;
  /// Events to tell the host when the action is over.
  ChartNews news;

  [[nodiscard]] bool isOffered(Offer what) const { return offers.contains(what); }
  [[nodiscard]] ui::Desktop& desktop() const { return desktop_; }
  /// What the product's forms need: this desktop, and a notice for uncaught failures.
  [[nodiscard]] ui::Surroundings surroundings();

  /// A connection for the user-interface thread: long waits are shown to the user, whatever the command. It
  /// isn't opened. Throws as data::Providers does for a text.
  [[nodiscard]] std::unique_ptr<data::Connection> connectionTo(std::string_view connectionText);

  /// Whether searches off the user-interface thread may use a readable secondary: if the text has "Search
  /// Intent=ReadOnly", and nothing was written from here that might not have arrived there yet.
  [[nodiscard]] bool mayAskSecondary(const std::string& connectionText) const;

  // The gateway.
  /// The gateway of the process, created on first use. Hold the result during an operation, so that a gateway
  /// replaced in the middle of it lives until its end.
  [[nodiscard]] std::shared_ptr<data::DtEn> dtEn();
  [[nodiscard]] bool hasDtEn() const { return dtEn_ != nullptr; }
  /// Drops the gateway, whose connection closes when the last operation on it has ended.
  void dropDtEn() { dtEn_.reset(); }
  /// Drops the gateway, creates a new one and gives its connection the text of gConnectionString.
  void resetDataConnection();
  /// Within the block, what gUserID does through the gateway is one operation in
  /// the memory of the chart. `gateway` outlives it.
  [[nodiscard]] data::OperationBlock operation(data::DtEn& gateway, data::OperationKind kind) const {
    return {gateway.cnMainData, {.kind = kind, .userID = context.gUserID}};
  }

  // The notices: each creates the component NoticeKit.NoticeDialog. They never throw.
  /// Without the component, the message is lost.
  void showErrorNotice(std::string_view title, std::string_view message);
  /// Without the component the answer is None.
  Answer askConfirmNotice(std::string_view title, std::string_view message);
  /// Whether the user answers a question with yes.
  [[nodiscard]] bool confirms(std::string_view title, std::string_view question) {
    return askConfirmNotice(title, question) == Answer::Yes;
  }
  /// Reports a failure that no event procedure caught: resets the mouse pointer, and shows a notice, except
  /// for an outage already reported.
  void reportFailure(const std::exception& failure);

  /// Shows what the open database reports about its data, one notice per message.
  void showNews();

  /// Whether an account has at least one line in tblAccountDocumentDetail. Throws data::DataError.
  [[nodiscard]] bool hasAccountMovement(std::int32_t accountID);
  /// Checks a permission of gUserID; tells the user if it is refused. Throws data::DataError, and then the
  /// guarded operation must not run.
  [[nodiscard]] bool permits(data::Permission permission);

  /// Chooses the keyboard layout that a form's fields switch to, by the version of
  /// the operating system; called when a form loads.
  void chooseKeyboardLayout();
  /// Makes a control switch to that layout whenever it gets the focus. The shell outlives the control.
  void switchLayoutAt(ui::Control& control) const;

 private:
  ui::Desktop& desktop_;
  std::shared_ptr<data::DtEn> dtEn_;
};

/// Shows the hourglass for the length of a block; the mouse pointer is reset however the block is left.
class Hourglass {
 public:
  explicit Hourglass(ui::Desktop& desktop) : desktop_(desktop) {
    desktop_.setCursor(ui::CursorShape::Hourglass);
  }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;
  ~Hourglass() { desktop_.setCursor(ui::CursorShape::Default); }

 private:
  ui::Desktop& desktop_;
};

}  // namespace ledgertree::shell
