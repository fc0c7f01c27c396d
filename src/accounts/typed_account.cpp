#include "accounts/typed_account.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "accounts/field_rules_ceiling.h"
#include "data/numbers.h"
#include "text/characters.h"

namespace ledgertree::accounts {

namespace {

/// What is wrong with a text that is to be stored; empty where nothing is.
std::string faultOf(const std::string& name, const std::string& text, const data::Parameter& parameter) {
  if (!text::isCleanText(text)) {
    return "در " + name + " نويسه ناخوانا وجود دارد. آن را پاک کنيد و دوباره بنويسيد.";
  }
  const std::size_t length = text::characterCount(text);
  if (length <= static_cast<std::size_t>(parameter.width)) return {};
  return name + " بايد حداکثر " + std::to_string(parameter.width) + " نويسه باشد و اکنون " +
         std::to_string(length) + " نويسه است. آن را کوتاهتر کنيد.";
}

/// The digits of an amount that can just be stored, in the grouping of the field.
std::string greatestAmount() {
  constexpr std::int64_t kGreatest = std::numeric_limits<std::int64_t>::max() / data::Money::kScale;
  return data::groupDigits(std::to_string(kGreatest), "/");
}

const data::Parameter& parameterOf(const data::Procedure& procedure, std::string_view name) {
  return *std::find_if(procedure.parameters.begin(), procedure.parameters.end(),
                       [&](const data::Parameter& parameter) { return parameter.name == name; });
}

class Reader {
 public:
  Reader(shell::Shell& shell, const data::Procedure& procedure) : shell_(shell), procedure_(procedure) {}

  [[nodiscard]] bool accepts(ui::TextField& field, const std::string& name, const std::string& text,
                             std::string_view parameter) {
    const std::string fault = faultOf(name, text, parameterOf(procedure_, parameter));
    return fault.empty() || refuse(field, fault);
  }

  [[nodiscard]] bool reads(ui::TextField& field, const std::string& name, data::Money& amount) {
    try {
      amount = ceilingAmount(field.text());
      return true;
    } catch (const std::range_error&) {
      return refuse(field, name + " بايد حداکثر " + greatestAmount() + " باشد. مبلغ کوچکتري وارد کنيد.");
    }
  }

 private:
  bool refuse(ui::TextField& field, const std::string& message) {
    shell_.showErrorNotice(shell::kTitleSaveError, message);
    field.focus();
    return false;
  }

  shell::Shell& shell_;
  const data::Procedure& procedure_;
};

}  // namespace

std::int32_t accountOnScreen(const mainform::MainScreen& screen) {
  return data::toNumber(screen.txtID.text()).asInt32();
}

std::string wholeCode(const mainform::MainScreen& screen) {
  return std::string(text::trimmed(screen.txtMotherCode.text())) +
         std::string(text::trimmed(screen.txtCode.text()));
}

std::optional<TypedAccount> readTypedAccount(mainform::MainScreen& screen, shell::Shell& shell,
                                             const data::Procedure& procedure) {
  TypedAccount account{.title = std::string(text::trimmed(screen.txtTitle.text())),
                       .code = wholeCode(screen),
                       .notes = screen.txtNotes.text(),
                       .maxDebit = {},
                       .maxCredit = {}};
  Reader reader(shell, procedure);
  const bool complete = reader.accepts(screen.txtCode, "کد کامل حساب", account.code, "@Code") &&
                        reader.accepts(screen.txtTitle, "عنوان", account.title, "@Title") &&
                        reader.accepts(screen.txtNotes, "توضيحات", account.notes, "@Notes") &&
                        reader.reads(screen.txtMaxDebit, "سقف بدهکاري", account.maxDebit) &&
                        reader.reads(screen.txtMaxCredit, "سقف بستانکاري", account.maxCredit);
  if (!complete) return std::nullopt;
  return account;
}

}  // namespace ledgertree::accounts
