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

/// The answers of a question.
enum class Answer : std::int32_t { None = 0, Yes = 6, No = 7 };

/// Titles that many notices share.
inline constexpr std::string_view kTitleProblem = "اشکال";
inline constexpr std::string_view kTitleError = "خطا";
inline constexpr std::string_view kTitleSaveError = "خطا در ثبت";

/// What all forms share: the values of the host, the gateway's slot, the notices, the desktop, the outside
/// components, the clock, and the connection text of the pickers. One serves LedgerTreeControl for the life
/// of the process; a test makes its own.
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
  /// The text that was given to one account picker serves all of them.
  std::string pickerConnection;
  /// Today, and the time of day.
  Clock clock;
  /// What the host offers beyond the screens as they are; counts from the next load of a form on.
  std::set<Offer> offers;
  /// What a person gave to the tree of the width of the record, by the divider between them.
  ui::Twips givenToTree = 0;
  /// What the host is told when the act is over.
  ChartNews news;

  [[nodiscard]] bool isOffered(Offer what) const { return offers.contains(what); }
  [[nodiscard]] ui::Desktop& desktop() const { return desktop_; }
  /// What a form of the product stands on: this desktop, and a notice for what nobody caught.
  [[nodiscard]] ui::Surroundings surroundings();

  /// A connection for the user-interface thread: whatever it is asked, a person sees a long wait. It opens
  /// nothing. Throws as data::Providers does for a text.
  [[nodiscard]] std::unique_ptr<data::Connection> connectionTo(std::string_view connectionText);

  /// Whether searches beside the user-interface thread may ask a readable secondary: the text says so with
  /// "Search Intent=ReadOnly", and nothing was written from here, which might not have arrived there yet.
  [[nodiscard]] bool mayAskSecondary(const std::string& connectionText) const;

  // The gateway.
  /// The gateway of the process, made on first use. An operation holds what it gets, so that a gateway that
  /// is replaced in the middle of it lives on to its end.
  [[nodiscard]] std::shared_ptr<data::DtEn> dtEn();
  [[nodiscard]] bool hasDtEn() const { return dtEn_ != nullptr; }
  /// Drops the gateway, which closes its connection when the last operation on it has ended.
  void dropDtEn() { dtEn_.reset(); }
  /// Drops the gateway, makes a new one and gives its connection the text of gConnectionString.
  void resetDataConnection();
  /// What gUserID does through the gateway for the length of the block is one operation in the memory of the
  /// chart. `gateway` outlives it.
  [[nodiscard]] data::OperationBlock operation(data::DtEn& gateway, data::OperationKind kind) const {
    return {gateway.cnMainData, {.kind = kind, .userID = context.gUserID}};
  }

  // The notices: each makes the component NoticeKit.NoticeDialog anew. They never fail towards the caller.
  /// Without the component the message is lost.
  void showErrorNotice(std::string_view title, std::string_view message);
  /// Without the component the answer is None.
  Answer askConfirmNotice(std::string_view title, std::string_view message);
  /// A failure that no event procedure caught: the pointer goes back to its default, and a notice tells of
  /// it, but for an outage that was told of already.
  void reportFailure(const std::exception& failure);

  /// Shows what the open database has to tell about its data, a notice a message.
  void showNews();

  /// Whether an account has at least one line in tblAccountDocumentDetail. Throws data::DataError.
  [[nodiscard]] bool hasAccountMovement(std::int32_t accountID);
  /// Asks for a permission of gUserID; a refusal is told. Throws data::DataError, and then the
  /// guarded operation must not run.
  [[nodiscard]] bool permits(data::Permission permission);

  /// The layout that the fields of a form switch to, from the version of the operating system; a form's load
  /// runs it.
  void chooseKeyboardLayout();
  /// Makes a control switch to that layout whenever it gets the focus. The shell outlives the control.
  void switchLayoutAt(ui::Control& control) const;

 private:
  ui::Desktop& desktop_;
  std::shared_ptr<data::DtEn> dtEn_;
};

/// The hourglass for the length of a block; the pointer is back to its default on every path out of it.
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
