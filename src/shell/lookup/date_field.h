#pragma once

#include <optional>
#include <string>

#include "data/value.h"
#include "shell/shell.h"
#include "ui/lookup_field.h"

namespace ledgertree::shell {

/// A date, as a Gregorian value and as the Persian text shown. Initially empty.
class DateField : public ui::DateDisplay {
 public:
  using ui::DateDisplay::DateDisplay;

  /// The date. Throws std::logic_error if there is none; check IsEmpty() first.
  [[nodiscard]] data::DateTime englishdate() const;
  /// Throws std::invalid_argument for a date that isn't valid(), keeping the old one.
  void setEnglishdate(const data::DateTime& date);
  /// The date in the Persian calendar, "yyyy/mm/dd" with leading zeros; empty if there is none, and for days
  /// before that calendar's first year.
  [[nodiscard]] std::string farsidate() const;
  /// Sets today's date by a clock, at midnight.
  void setToday(const Shell::Clock& clock);
  [[nodiscard]] bool IsEmpty() const { return !date_.has_value(); }
  void Clear();

  /// A locked field only shows its date.
  [[nodiscard]] bool locked() const { return locked_; }
  void setLocked(bool locked);

  [[nodiscard]] std::string text() const override { return farsidate(); }

 private:
  std::optional<data::DateTime> date_;
  bool locked_ = false;
};

}  // namespace ledgertree::shell
