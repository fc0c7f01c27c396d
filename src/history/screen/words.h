#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "history/history.h"
#include "history/screen/names.h"

namespace ledgertree::history {

/// A moment of UTC as a person reads it: "1405/09/02 14:05", on this machine's clock.
[[nodiscard]] std::string momentInWords(const data::DateTime& moment);

/// All kinds of operations, in the order in which a person chooses among them.
[[nodiscard]] const std::vector<data::OperationKind>& allKinds();
[[nodiscard]] std::string_view nameOf(data::OperationKind kind);

/// The same change backwards, as its taking back makes it.
[[nodiscard]] Change backwards(Change change);

/// Says what was changed, in the words of the screens.
class Words {
 public:
  explicit Words(data::DtEn& data) : names_(data) {}

  /// Reads the names that some changes need. Throws data::DataError.
  void learn(const std::vector<Change>& changes);
  void learnUsers(const std::vector<std::int32_t>& users);
  void learnAccounts(const std::vector<std::int32_t>& accounts);

  /// By the name, else the number; a word for nobody.
  [[nodiscard]] std::string user(const std::optional<std::int32_t>& userID) const;
  /// Code and title as they are today, else the number.
  [[nodiscard]] std::string account(std::int32_t accountID) const;
  /// "کد: 10106 ← 10108", and all else that differs.
  [[nodiscard]] std::string whatChanged(const Change& change) const;

 private:
  void learnField(const Field& field);
  [[nodiscard]] std::string ofAccount(const Change& change) const;
  [[nodiscard]] std::string ofLink(const Change& change) const;
  [[nodiscard]] std::string valueOf(std::string_view column, const data::Value& value) const;

  Names names_;
};

}  // namespace ledgertree::history
