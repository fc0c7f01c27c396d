#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "data/dten.h"
#include "shell/lookup/selector.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"

/// Shared by the screens of the periods. An account is shown in a period if tblAccountPeriodAccount has the
/// pair; hiding it deletes that row, and nothing else of the account.
namespace ledgertree::periods {

inline constexpr std::string_view kTitleQuestion = "پرسش";

/// Sets the views of a selector and the connection text of the host.
void bind(shell::Selector& selector, const shell::HostContext& context, std::string majorView,
          std::string minorView);
void bindToPeriods(shell::Selector& selector, const shell::HostContext& context);

/// Runs a writing statement. Throws data::DataError.
void execute(shell::Shell& shell, data::DtEn& gateway, const std::string& statement);

/// Documents that prevent hiding.
struct Dependency {
  std::int32_t documents = 0;  ///< how many, 1 or more
  std::string example;         ///< the ID of the first
};

/// Runs a query for the IDs of documents that prevent hiding; nothing if there are none. Throws
/// data::DataError.
[[nodiscard]] std::optional<Dependency> findDependency(shell::Shell& shell, data::DtEn& gateway,
                                                       const std::string& test);

/// The number that a counting statement returns. Throws data::DataError.
[[nodiscard]] std::int64_t countOf(shell::Shell& shell, data::DtEn& gateway, const std::string& statement);

/// The row that Offer::Preview adds at the bottom of a period screen: a button, and the numbers of accounts
/// that the command would affect, until another period is chosen. Without the offer it is hidden, and the
/// screen isn't enlarged.
class Outlook {
 public:
  static constexpr ui::Twips kHeight = 825;

  /// `size` is the size of the screen without it; `tell` returns the text to show, or an empty text if it
  /// told the user something else instead. The form outlives it.
  Outlook(ui::Form& form, shell::Shell& shell, ui::Size size, std::function<std::string()> tell);
  /// The size of the screen, including the row if it is offered.
  [[nodiscard]] static ui::Size grown(const shell::Shell& shell, ui::Size size);
  /// Clears the text: it was about another choice.
  void forget() { lblOutlook.setCaption(""); }

  ui::PushButton cmdPreview;
  ui::Label lblOutlook;
};

}  // namespace ledgertree::periods
