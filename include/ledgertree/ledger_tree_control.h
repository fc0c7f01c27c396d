#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "ledgertree/export.h"

namespace ledgertree {

class ControlSession;

/// What a property holds that takes any kind of value, and what a property store keeps.
using PropertyValue = std::variant<std::int16_t, std::int32_t, double, bool, std::string>;

/// The name-value store in which a host's container keeps the properties of a control between two runs.
///
/// It may keep a value in another kind than it was given, as a file of settings keeps all of them as text:
/// LedgerTreeControl::ReadProperties takes for a 16-bit number any number that fits, rounded, a flag (true is
/// -1) and a text that is nothing but a whole number ("7"); for a flag any number (0 is false) and the texts
/// "True", "true", "False", "false" or of a whole number; for a text only a text. DataSource and UserName
/// stay of the kind that the store gives.
class LEDGERTREE_API PropertyStore {
 public:
  virtual ~PropertyStore() = default;
  /// The value kept under a name, or the default where there is none.
  [[nodiscard]] virtual PropertyValue ReadProperty(std::string_view name,
                                                   const PropertyValue& defaultValue) = 0;
  /// Keeps a value; a store may leave out one that equals the default.
  virtual void WriteProperty(std::string_view name, const PropertyValue& value,
                             const PropertyValue& defaultValue) = 0;
};

/// The chart of accounts as a control of a host application: the host sets the properties, then calls
/// ClearShow or View.
///
/// All controls of a process share one screen. A host installs a desktop first (see qt_desktop.h); every call
/// belongs to the user-interface thread. The database is opened by the first command, with the text in
/// OLEConnectionString: "Provider=SQLite;Data Source=<file>" for an embedded database.
class LEDGERTREE_API LedgerTreeControl {
 public:
  /// Properties have their defaults, as after InitProperties.
  LedgerTreeControl();
  LedgerTreeControl(const LedgerTreeControl&) = delete;
  LedgerTreeControl& operator=(const LedgerTreeControl&) = delete;
  ~LedgerTreeControl();

  /// Opens the screen for work. Resolves the current period (AccPeriodSpecID, or the user's period in the
  /// database) and asks permission 301 of the user; without it the person is told, and the screen doesn't
  /// open. A screen that is open already comes up as it is, on a fresh connection; where OLEConnectionString
  /// leads to another database by then, it is left first, and a person in the middle of a new account or an
  /// edit is asked as by `leaveScreen`. If the person stays, nothing has changed. Where the desktop takes no
  /// modeless form, returns when the person has left the screen.
  ///
  /// Throws std::runtime_error with a text for the person where the connection text is malformed, where the
  /// database fails ahead of the screen's load, and where the screen is in the middle of something in the
  /// other database. A failure of the load itself, or of the showing, doesn't come back: the person has been
  /// told. Ask `screenIsOpen` (screen_in_host.h) whether the screen is up. One that never came up is gone.
  void ClearShow();

  /// Stored and kept only. Default: 16-bit 0.
  [[nodiscard]] const PropertyValue& DataSource() const;
  void DataSource(PropertyValue value);
  /// Stored and kept only. Default: 16-bit 0.
  [[nodiscard]] const PropertyValue& UserName() const;
  void UserName(PropertyValue value);
  /// Stored and kept only; it isn't the title of the screen. Default: empty.
  [[nodiscard]] const std::string& Caption() const;
  void Caption(std::string value);

  /// Opens the screen on one account, read-only, without resolving a period and without asking for permission
  /// 301: whoever is on the screen may go through the whole chart from there. An ID below 1 shows a blank
  /// record. On an open screen a person in the middle of a new account or an edit is asked first, as by
  /// `leaveScreen`; if the person stays, nothing has changed. Text counts by its leading number.
  ///
  /// Throws std::range_error for a number past 32 bits, and what ClearShow throws; other than there, a
  /// failure of the load and of the reading of the account comes back too.
  void View(const PropertyValue& ID);

  /// Stored and kept only. Default: false.
  [[nodiscard]] bool RefreshAlarm() const;
  void RefreshAlarm(bool value);
  /// The connection text of everything that follows the next ClearShow or View. Default: empty.
  [[nodiscard]] const std::string& OLEConnectionString() const;
  void OLEConnectionString(std::string value);
  /// Who works: asked for every permission. Default: 0.
  [[nodiscard]] std::int16_t UserID() const;
  void UserID(std::int16_t value);
  [[nodiscard]] std::int16_t PositionID() const;
  void PositionID(std::int16_t value);
  [[nodiscard]] std::int16_t EmployeeID() const;
  void EmployeeID(std::int16_t value);
  /// The current period where it is 1 or more; below, the database is asked for the user's. Default: 0.
  [[nodiscard]] std::int16_t AccPeriodSpecID() const;
  void AccPeriodSpecID(std::int16_t value);

  // The container.
  /// Sets the defaults on a new control.
  void InitProperties();
  /// Reads and writes all nine properties under their own names. Reading throws std::runtime_error with the
  /// name of a property whose value can't be taken (see PropertyStore); all of them are as they were then.
  void ReadProperties(PropertyStore& store);
  void WriteProperties(PropertyStore& store) const;
  /// Told the name of a property after each setter has stored its value.
  void OnPropertyChanged(std::function<void(std::string_view name)> listener);

 private:
  friend class ControlSession;
  explicit LedgerTreeControl(ControlSession& session);

  struct Properties;
  ControlSession& session_;
  std::unique_ptr<Properties> properties_;
  std::function<void(std::string_view)> listener_;

  void changed(std::string_view name);
  void takeIdentity();
  void resolvePeriod();
};

}  // namespace ledgertree
