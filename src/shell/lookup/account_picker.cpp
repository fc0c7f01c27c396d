#include "shell/lookup/account_picker.h"

#include <chrono>
#include <utility>

namespace ledgertree::shell {
namespace {

/// Longer than the pause between two keys.
constexpr std::chrono::milliseconds kRest{300};

}  // namespace

AccountPicker::AccountPicker(ui::Form& form, Shell& shell, std::string name, ui::Bounds bounds,
                             ui::Frame* frame)
    : ui::LookupField(form, std::move(name), bounds, frame),
      shell_(shell),
      search_(shell,
              [this](std::vector<ui::LookupRow> rows, bool append, bool more, bool searching) {
                rest_.restart();
                showRows(std::move(rows), append, more, searching);
              }),
      rest_(form, this->name() + "Rest", kRest) {
  search_.setView("vwAccountMajor");
  search_.setOrder(data::SearchOrder::Code);
  search_.tellParents([this](const std::vector<ui::LookupRow>& parents) { showPlaces(parents); });
  rest_.onTick = [this] { search_.rested(); };
}

void AccountPicker::setPickerConnection(std::string text) {
  shell_.pickerConnection = std::move(text);
  readAgain();
}

void AccountPicker::setClosingFlag(bool closing) {
  closing_ = closing;
  if (closing) search_.close();
}

LookupSearch& AccountPicker::search() {
  search_.setConnectionText(closing_ ? std::string() : shell_.pickerConnection);
  return search_;
}

void AccountPicker::setAccountID(std::int32_t id) { hold(search().read(id)); }

void AccountPicker::readAgain() {
  if (search_.unread() && !IsEmpty() && !typing()) ReloadAccounts();
}

void AccountPicker::wishSearch(const std::string& text) { search().search(text); }

void AccountPicker::wishMore() { search().more(); }

void AccountPicker::wishStop() {
  search_.stop();
  search_.forgive();
  if (search_.unread()) search_.later([this] { readAgain(); });
}

void AccountPicker::wishDetail() {
  search_.later([this] {
    const std::string parent = search().nameIn("vwAccountMinor", AccountID());
    setDetail(parent.empty() ? AccountCode() : AccountCode() + " - " + parent);
  });
}

}  // namespace ledgertree::shell
