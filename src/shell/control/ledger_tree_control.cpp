#include "ledgertree/ledger_tree_control.h"

#include <optional>
#include <utility>

#include "data/ahead.h"
#include "data/numbers.h"
#include "shell/control/ledger_tree_control_session.h"

namespace ledgertree {

struct LedgerTreeControl::Properties {
  PropertyValue dataSource = std::int16_t{0};
  PropertyValue userName = std::int16_t{0};
  std::string caption;
  bool refreshAlarm = false;
  std::string oleConnectionString;
  std::int16_t userID = 0;
  std::int16_t positionID = 0;
  std::int16_t employeeID = 0;
  std::int16_t accPeriodSpecID = 0;
};

namespace {

/// The 32-bit number in a value that a host may pass as any type.
std::int32_t toAccountID(const PropertyValue& value) {
  struct Reader {
    std::int32_t operator()(std::int16_t number) const { return number; }
    std::int32_t operator()(std::int32_t number) const { return number; }
    std::int32_t operator()(double number) const { return data::roundToInt32(number); }
    /// As a Boolean converts in the host's language.
    std::int32_t operator()(bool flag) const { return flag ? -1 : 0; }
    std::int32_t operator()(const std::string& text) const { return data::toNumber(text).asInt32(); }
  };
  return std::visit(Reader{}, value);
}

/// The whole number in a value that a store may keep as text; throws if it holds none.
std::int16_t toWhole(const PropertyValue& value) {
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) return data::toInt16(toAccountID(value));
  return data::toInt16(data::Value(*text).toInt64());
}

bool toFlag(const PropertyValue& value) {
  if (value == PropertyValue("True") || value == PropertyValue("true")) return true;
  if (value == PropertyValue("False") || value == PropertyValue("false")) return false;
  return toWhole(value) != 0;
}

template <typename Kind>
Kind kindOf(const PropertyValue& value, std::string_view name) {
  if (const auto* held = std::get_if<Kind>(&value)) return *held;
  try {
    if constexpr (std::is_same_v<Kind, std::int16_t>) return toWhole(value);
    if constexpr (std::is_same_v<Kind, bool>) return toFlag(value);
  } catch (const std::exception&) {
    // Reported with the property's name.
  }
  throw std::runtime_error("the property store holds no acceptable value for " + std::string(name));
}

/// A period's start or end date. Nothing in the chart depends on it: if a host's table holds an invalid date
/// there, that is reported, and the chart opens without it.
data::DateTime boundOf(shell::Shell& shell, const char* column, const data::Value& stored) {
  if (stored.isNull()) return {};
  try {
    return stored.toDateTime();
  } catch (const std::invalid_argument&) {
    shell.showErrorNotice(shell::kTitleProblem,
                          "تاريخ «" + stored.toText() + "» در ستون " + column +
                              " جدول tblAccountPeriod (دوره " + std::to_string(shell.context.gPeriodID) +
                              ") خوانا نيست. آن را اصلاح نماييد. سرفصل حسابها بدون آن باز ميشود.");
    return {};
  }
}

}  // namespace

LedgerTreeControl::LedgerTreeControl() : LedgerTreeControl(ControlSession::process()) {}

LedgerTreeControl::LedgerTreeControl(ControlSession& session)
    : session_(session), properties_(std::make_unique<Properties>()) {}

LedgerTreeControl::~LedgerTreeControl() = default;

void LedgerTreeControl::ClearShow() {
  session_.requireAnswered();
  const ui::Desktop::Procedure procedure(session_.shell().desktop());
  if (!session_.makeWay(properties_->oleConnectionString, false)) return;
  takeIdentity();
  session_.shell().resetDataConnection();
  resolvePeriod();
  const auto gateway = session_.shell().dtEn();
  std::optional<data::Ahead> ahead(std::in_place, gateway->cnMainData, session_.questionsOfStart());
  if (!session_.shell().permits(data::Permission::ShowChart)) return;

  try {
    mainform::FormMain& form = session_.loadedForm();
    ahead.reset();
    form.ClearShow();
  } catch (const ui::DesktopError&) {
    // Any other refusal of the desktop isn't reported: the host checks.
  } catch (const std::exception& failure) {
    // A screen that didn't open is reported to the user, not to the host.
    session_.shell().reportFailure(failure);
  }
  session_.dropUnshown();
}

void LedgerTreeControl::View(const PropertyValue& ID) {
  session_.requireAnswered();
  const ui::Desktop::Procedure procedure(session_.shell().desktop());
  if (!session_.makeWay(properties_->oleConnectionString, true)) return;
  takeIdentity();
  session_.shell().resetDataConnection();
  const std::int32_t accountID = toAccountID(ID);
  try {
    session_.loadedForm().View(accountID);
  } catch (...) {
    session_.dropUnshown();
    throw;
  }
  ui::Desktop& desktop = session_.shell().desktop();
  try {
    desktop.show(session_.loadedForm());
  } catch (const std::exception&) {
    try {
      desktop.showModal(session_.loadedForm());
    } catch (const std::exception& failure) {
      session_.shell().reportFailure(failure);
    }
  }
  session_.dropUnshown();
}

void LedgerTreeControl::takeIdentity() {
  shell::HostContext& context = session_.shell().context;
  context.gUserID = properties_->userID;
  context.gPositionID = properties_->positionID;
  context.gEmployeeID = properties_->employeeID;
  context.gConnectionString = properties_->oleConnectionString;
}

void LedgerTreeControl::resolvePeriod() {
  const auto gateway = session_.shell().dtEn();
  shell::HostContext& context = session_.shell().context;
  const bool named = properties_->accPeriodSpecID >= 1;
  const std::int16_t period = named ? properties_->accPeriodSpecID
                                    : data::toInt16(gateway->spAccountGetCurrentUserPeriod(context.gUserID));
  if (named) context.gPeriodID = period;
  const std::string statement =
      named ? "Select * From tblAccountPeriod Where ID =" : "Select * From tblAccountPeriod Where ID=";
  data::OpenRows row(gateway->rssqlAccPeriodSpec, statement + std::to_string(period));
  if (row->Eof()) return;
  context.gPeriodID = period;
  const data::Value begin = row->Fields("BeginDate");
  const data::Value end = row->Fields("EndDate");
  row.close();
  context.gPeriodBegin = boundOf(session_.shell(), "BeginDate", begin);
  context.gPeriodEnd = boundOf(session_.shell(), "EndDate", end);
}

const PropertyValue& LedgerTreeControl::DataSource() const { return properties_->dataSource; }
void LedgerTreeControl::DataSource(PropertyValue value) {
  properties_->dataSource = std::move(value);
  changed("DataSource");
}

const PropertyValue& LedgerTreeControl::UserName() const { return properties_->userName; }
void LedgerTreeControl::UserName(PropertyValue value) {
  properties_->userName = std::move(value);
  changed("UserName");
}

const std::string& LedgerTreeControl::Caption() const { return properties_->caption; }
void LedgerTreeControl::Caption(std::string value) {
  properties_->caption = std::move(value);
  changed("Caption");
}

bool LedgerTreeControl::RefreshAlarm() const { return properties_->refreshAlarm; }
void LedgerTreeControl::RefreshAlarm(bool value) {
  properties_->refreshAlarm = value;
  changed("RefreshAlarm");
}

const std::string& LedgerTreeControl::OLEConnectionString() const { return properties_->oleConnectionString; }
void LedgerTreeControl::OLEConnectionString(std::string value) {
  properties_->oleConnectionString = std::move(value);
  session_.shell().context.gConnectionString = properties_->oleConnectionString;
  changed("OLEConnectionString");
}

std::int16_t LedgerTreeControl::UserID() const { return properties_->userID; }
void LedgerTreeControl::UserID(std::int16_t value) {
  properties_->userID = value;
  changed("UserID");
}

std::int16_t LedgerTreeControl::PositionID() const { return properties_->positionID; }
void LedgerTreeControl::PositionID(std::int16_t value) {
  properties_->positionID = value;
  changed("PositionID");
}

std::int16_t LedgerTreeControl::EmployeeID() const { return properties_->employeeID; }
void LedgerTreeControl::EmployeeID(std::int16_t value) {
  properties_->employeeID = value;
  changed("EmployeeID");
}

std::int16_t LedgerTreeControl::AccPeriodSpecID() const { return properties_->accPeriodSpecID; }
void LedgerTreeControl::AccPeriodSpecID(std::int16_t value) {
  properties_->accPeriodSpecID = value;
  changed("AccPeriodSpecID");
}

void LedgerTreeControl::InitProperties() { *properties_ = Properties{}; }

void LedgerTreeControl::ReadProperties(PropertyStore& store) {
  const Properties defaults;
  Properties read;
  const auto take = [&store]<typename Kind>(Kind& field, std::string_view name, const Kind& standard) {
    if constexpr (std::is_same_v<Kind, PropertyValue>) {
      field = store.ReadProperty(name, standard);
    } else {
      field = kindOf<Kind>(store.ReadProperty(name, standard), name);
    }
  };
  take(read.dataSource, "DataSource", defaults.dataSource);
  take(read.userName, "UserName", defaults.userName);
  take(read.caption, "Caption", defaults.caption);
  take(read.refreshAlarm, "RefreshAlarm", defaults.refreshAlarm);
  take(read.oleConnectionString, "OLEConnectionString", defaults.oleConnectionString);
  take(read.userID, "UserID", defaults.userID);
  take(read.positionID, "PositionID", defaults.positionID);
  take(read.employeeID, "EmployeeID", defaults.employeeID);
  take(read.accPeriodSpecID, "AccPeriodSpecID", defaults.accPeriodSpecID);
  *properties_ = std::move(read);
}

void LedgerTreeControl::WriteProperties(PropertyStore& store) const {
  const Properties defaults;
  store.WriteProperty("DataSource", properties_->dataSource, defaults.dataSource);
  store.WriteProperty("UserName", properties_->userName, defaults.userName);
  store.WriteProperty("Caption", properties_->caption, defaults.caption);
  store.WriteProperty("RefreshAlarm", properties_->refreshAlarm, defaults.refreshAlarm);
  store.WriteProperty("OLEConnectionString", properties_->oleConnectionString, defaults.oleConnectionString);
  store.WriteProperty("UserID", properties_->userID, defaults.userID);
  store.WriteProperty("PositionID", properties_->positionID, defaults.positionID);
  store.WriteProperty("EmployeeID", properties_->employeeID, defaults.employeeID);
  store.WriteProperty("AccPeriodSpecID", properties_->accPeriodSpecID, defaults.accPeriodSpecID);
}

void LedgerTreeControl::OnPropertyChanged(std::function<void(std::string_view)> listener) {
  listener_ = std::move(listener);
}

void LedgerTreeControl::changed(std::string_view name) {
  if (listener_) listener_(name);
}

}  // namespace ledgertree
