#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "data/dten.h"

namespace ledgertree::history {

/// What the rows of the chart's views are called: those that are wanted are read together, a statement a
/// view, and kept. What can't be read, or has no row any more, is called by its number.
class Names {
 public:
  explicit Names(data::DtEn& data) : data_(data) {}

  // The sources.
  static constexpr const char* kAccounts = "tblAccount";
  static constexpr const char* kUsers = "tblUser";
  static constexpr const char* kClasses = "vwAccountClass";

  void want(const std::string& source, std::int32_t id);
  /// An object of a class, whose view the class names.
  void wantObject(std::int32_t classID, std::int32_t id);
  /// Reads what was wanted and isn't known. Throws data::DataError where the connection fails.
  void read();

  [[nodiscard]] std::string of(const std::string& source, std::int32_t id) const;
  [[nodiscard]] std::string ofObject(std::int32_t classID, std::int32_t id) const;

 private:
  using Known = std::map<std::int32_t, std::string>;
  void readFrom(const std::string& source, const std::string& column, const std::set<std::int32_t>& ids,
                Known& known);

  data::DtEn& data_;
  std::map<std::string, std::set<std::int32_t>> wanted_;
  std::map<std::int32_t, std::set<std::int32_t>> wantedObjects_;
  std::map<std::string, Known> known_;
  Known views_;  ///< of the classes
  std::map<std::int32_t, Known> knownObjects_;
};

}  // namespace ledgertree::history
