#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "data/dten.h"
#include "shell/lookup/selector.h"
#include "shell/shell.h"

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

}  // namespace ledgertree::periods
