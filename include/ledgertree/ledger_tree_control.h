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

/// A property value of any kind, as a property store keeps it.
using PropertyValue = std::variant<std::int16_t, std::int32_t, double, bool, std::string>;

/// The name-value store in which a host's container keeps a control's properties between runs.
///
/// A store may return a value as another type than it was given, such as a settings file that keeps
/// everything as text: LedgerTreeControl::ReadProperties accepts for a 16-bit number any number that fits,
/// rounded, a flag (true is -1) and a text that is just a whole number ("7"); for a flag any number (0 is
/// false) and the texts "True", "true", "False", "false" or a whole number; for a text only a text.
/// DataSource and UserName keep the type that the store returns.
class LEDGERTREE_API PropertyStore {
 public:
  virtual ~PropertyStore() = default;
  /// The value kept under a name, or the default where there is none.
  [[nodiscard]] virtual PropertyValue ReadProperty(std::string_view name,
                                                   const PropertyValue& defaultValue) = 0;
  /// Stores a value; a store may omit one that equals the default.
  virtual void WriteProperty(std::string_view name, const PropertyValue& value,
                             const PropertyValue& defaultValue) = 0;
};

/// The chart of accounts as a control of a host application: the host sets the properties, then calls
/// ClearShow or View.
///
/// All controls of a process share one screen. A host installs a desktop first (see qt_desktop.h); all calls
/// must come from the user-interface thread. The first command opens the database by the text in
/// OLEConnectionString: "Provider=SQLite;Data Source=<file>" for an embedded database.
class LEDGERTREE_API LedgerTreeControl {
 public:
  /// Properties start with their defaults, as after InitProperties.
  LedgerTreeControl();
  LedgerTreeControl(const LedgerTreeControl&) = delete;
  LedgerTreeControl& operator=(const LedgerTreeControl&) = delete;
  ~LedgerTreeControl();

  /// Opens the screen for work. Resolves the current period (AccPeriodSpecID, or the user's period in the
  /// database) and checks the user's permission 301; without it the user is told, and the screen doesn't
  /// open. A screen that is already open comes to the front, on a fresh connection; if OLEConnectionString
  /// now leads to another database, it is left first, and a user in the middle of a new account or an edit is
  /// asked as by `leaveScreen`. If the user stays, nothing has changed. If the desktop doesn't support
  /// modeless forms, returns when the user has left the screen.
  ///
  /// Throws std::runtime_error with a message for the user if the connection text is malformed, if the
  /// database fails before the screen loads, and if the screen is busy in the other database. A failure while
  /// loading or showing isn't thrown: the user has been told. Use `screenIsOpen` (screen_in_host.h) to find
  /// out whether the screen is open. A screen that never opened is discarded.
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

  /// Opens the screen on one account, read-only, without resolving a period or checking permission 301: from
  /// there, the user can browse the whole chart. An ID below 1 shows a blank record. On an open screen a user
  /// in the middle of a new account or an edit is asked first, as by `leaveScreen`; if the user stays,
  /// nothing has changed. A text counts by its leading number.
  ///
  /// Throws std::range_error for a number past 32 bits, and what ClearShow throws; unlike there, failures
  /// while loading and reading the account are thrown, too.
  void View(const PropertyValue& ID);

  /// Stored and kept only. Default: false.
  [[nodiscard]] bool RefreshAlarm() const;
  void RefreshAlarm(bool value);
  /// The connection text, used from the next ClearShow or View on. Default: empty.
  [[nodiscard]] const std::string& OLEConnectionString() const;
  void OLEConnectionString(std::string value);
  /// The user whose permissions are checked. Default: 0.
  [[nodiscard]] std::int16_t UserID() const;
  void UserID(std::int16_t value);
  [[nodiscard]] std::int16_t PositionID() const;
  void PositionID(std::int16_t value);
  [[nodiscard]] std::int16_t EmployeeID() const;
  void EmployeeID(std::int16_t value);
  /// The current period if 1 or more; otherwise the user's period in the database is used. Default: 0.
  [[nodiscard]] std::int16_t AccPeriodSpecID() const;
  void AccPeriodSpecID(std::int16_t value);

  // For the container.
  /// Sets the defaults on a new control.
  void InitProperties();
  /// Read and write all nine properties under their own names. ReadProperties throws std::runtime_error with
  /// the name of a property whose value isn't acceptable (see PropertyStore); no property has changed then.
  void ReadProperties(PropertyStore& store);
  void WriteProperties(PropertyStore& store) const;
  /// Sets the listener that is told a property's name after each setter has stored its value.
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
