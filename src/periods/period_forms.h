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

/// What the screens of the periods share. An account is shown in a period where tblAccountPeriodAccount has
/// the pair; to hide it is to delete that row, and nothing else of the account goes.
namespace ledgertree::periods {

inline constexpr std::string_view kTitleQuestion = "پرسش";

/// Gives a selector its views and the connection text of the host.
void bind(shell::Selector& selector, const shell::HostContext& context, std::string majorView,
          std::string minorView);
void bindToPeriods(shell::Selector& selector, const shell::HostContext& context);

/// Runs a statement that writes. Throws data::DataError.
void execute(shell::Shell& shell, data::DtEn& gateway, const std::string& statement);

/// Documents that forbid a hiding.
struct Dependency {
  std::int32_t documents = 0;  ///< how many, 1 or more
  std::string example;         ///< the ID of the first
};

/// Runs a test that returns the ID of each document in the way; nothing where there is none. Throws
/// data::DataError.
[[nodiscard]] std::optional<Dependency> findDependency(shell::Shell& shell, data::DtEn& gateway,
                                                       const std::string& test);

/// The one number that a counting statement returns. Throws data::DataError.
[[nodiscard]] std::int64_t countOf(shell::Shell& shell, data::DtEn& gateway, const std::string& statement);

/// The row that Offer::Preview adds below a screen of the periods: a button, and what the command would do in
/// numbers, until another period is chosen. Without the offer it is hidden, and the screen no larger.
class Outlook {
 public:
  static constexpr ui::Twips kHeight = 825;

  /// `top` is the height of the screen without it; `tell` gives the words, or nothing where it told something
  /// else instead. The form outlives it.
  Outlook(ui::Form& form, shell::Shell& shell, ui::Size size, std::function<std::string()> tell);
  /// The size of the screen with it.
  [[nodiscard]] static ui::Size grown(const shell::Shell& shell, ui::Size size);
  /// What was told is about another choice.
  void forget() { lblOutlook.setCaption(""); }

  ui::PushButton cmdPreview;
  ui::Label lblOutlook;
};

}  // namespace ledgertree::periods
