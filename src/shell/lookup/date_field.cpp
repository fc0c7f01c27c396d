#include "shell/lookup/date_field.h"

#include <stdexcept>

#include "data/persian_calendar.h"

namespace ledgertree::shell {

data::DateTime DateField::englishdate() const {
  if (!date_) throw std::logic_error(name() + " holds no date");
  return *date_;
}

void DateField::setEnglishdate(const data::DateTime& date) {
  if (!date.valid()) throw std::invalid_argument("an invalid date was given to " + name());
  date_ = date;
  changed(ui::Change::Text);
}

std::string DateField::farsidate() const { return date_ ? data::toPersianDate(*date_) : std::string(); }

void DateField::setToday(const Shell::Clock& clock) {
  const data::DateTime now = clock();
  setEnglishdate({.year = now.year, .month = now.month, .day = now.day});
}

void DateField::Clear() {
  date_.reset();
  changed(ui::Change::Text);
}

void DateField::setLocked(bool locked) {
  if (locked_ == locked) return;
  locked_ = locked;
  changed(ui::Change::Enabled);
}

}  // namespace ledgertree::shell
