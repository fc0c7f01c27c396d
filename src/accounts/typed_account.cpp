#include "accounts/typed_account.h"

#include <limits>
#include <stdexcept>

#include "accounts/field_rules_ceiling.h"
#include "data/numbers.h"
#include "text/characters.h"

namespace ledgertree::accounts {

namespace {

using Amount = std::optional<data::Money>;

constexpr const char* kWholeCode = "کد کامل حساب";

/// What is wrong with a text to be stored; empty if nothing is.
std::string faultOf(const std::string& name, const std::string& text, int width) {
  if (!text::isCleanText(text)) {
    return "در " + name + " نويسه ناخوانا وجود دارد. آن را پاک کنيد و دوباره بنويسيد.";
  }
  const std::size_t length = text::characterCount(text);
  if (length <= static_cast<std::size_t>(width)) return {};
  return name + " بايد حداکثر " + std::to_string(width) + " نويسه باشد و اکنون " + std::to_string(length) +
         " نويسه است. آن را کوتاهتر کنيد.";
}

/// The digits of the largest amount that can be stored, grouped as in the field.
std::string greatestAmount() {
  constexpr std::int64_t kGreatest = std::numeric_limits<std::int64_t>::max() / data::Money::kScale;
  return data::groupDigits(std::to_string(kGreatest), "/");
}

/// Reads a ceiling, and returns what is wrong with it.
std::string readCeiling(const ui::TextField& field, Amount& amount) {
  try {
    amount = ceilingAmount(field.text());
    return {};
  } catch (const std::range_error&) {
    return field.accessibleName() + " بايد حداکثر " + greatestAmount() + " باشد. مبلغ کوچکتري وارد کنيد.";
  }
}

/// A single-line field loses the blanks at its ends; a multi-line one is kept as typed.
std::string typedText(const ui::TextField& field) {
  return field.multiline() ? field.text() : std::string(text::trimmed(field.text()));
}

/// Reads a typed field into the account, and returns what is wrong with it.
std::string readField(const mainform::MainScreen& screen, const mainform::TypedField& typed,
                      data::AccountCall call, data::Account& account) {
  const ui::TextField& field = screen.*typed.control;
  if (!typed.isText()) return readCeiling(field, account.*std::get<Amount data::Account::*>(typed.holds));
  std::string& text = account.*std::get<std::string data::Account::*>(typed.holds);
  const bool isCode = &field == &screen.txtCode;
  text = (isCode ? typedText(screen.txtMotherCode) : std::string()) + typedText(field);
  return faultOf(isCode ? kWholeCode : field.accessibleName(), text, data::widthOf(call, typed.holds));
}

std::int32_t picked(const shell::Selector& selector, std::int32_t none) {
  return selector.IsEmpty() ? none : selector.SelectedID();
}

/// Everything that isn't typed.
data::Account readChoices(const mainform::MainScreen& screen) {
  data::Account account;
  account.parentID = screen.sltParent.AccountID();
  account.groupID = picked(screen.sltGroup, -1);
  account.branchID = picked(screen.sltBranch, 0);
  account.positionID = picked(screen.sltPosition, 0);
  if (!screen.datCreate.IsEmpty()) account.createDate = screen.datCreate.englishdate();
  account.farsiCreateDate = screen.datCreate.farsidate();
  account.accountNatureID = screen.NatureValue;
  account.isPermanent = screen.PermanentValue;
  account.isClosed = screen.ClosedValue;
  account.relation = {.classID = picked(screen.sltEntityType, -1), .objectID = picked(screen.sltEntity, -1)};
  return account;
}

}  // namespace

TypedAccount readTypedAccount(const mainform::MainScreen& screen, data::AccountCall call) {
  TypedAccount typed{
      .account = readChoices(screen), .ownCode = typedText(screen.txtCode), .fault = std::nullopt};
  if (call == data::AccountCall::Update) typed.account.id = screen.accountID();
  for (const mainform::TypedField& field : mainform::typedFields()) {
    std::string fault = readField(screen, field, call, typed.account);
    if (!fault.empty() && !typed.fault) typed.fault = {.member = field.holds, .message = std::move(fault)};
  }
  return typed;
}

void focusField(mainform::MainScreen& screen, const data::AccountMember& member) {
  for (const auto& [control, holds] : mainform::typedFields())
    if (holds == member) return (screen.*control).focus();
  if (member == data::AccountMember(&data::Account::createDate)) screen.datCreate.focus();
}

}  // namespace ledgertree::accounts
