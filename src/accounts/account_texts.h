#pragma once

#include <string>

#include "accounts/differences.h"
#include "data/dten.h"
#include "mainform/main_screen.h"

namespace ledgertree::accounts {

/// Describes an account in the words of the main screen: names of groups, classes and the like are looked up
/// one by one. What can't be read is given by its number.
class AccountTexts {
 public:
  AccountTexts(const mainform::MainScreen& screen, data::DtEn& gateway)
      : screen_(screen), gateway_(gateway) {}

  [[nodiscard]] std::string nameOf(const FieldGroup& group) const;
  /// A whole group, its parts separated by a Persian comma.
  [[nodiscard]] std::string textOf(const FieldGroup& group, const data::Account& account) const;

 private:
  [[nodiscard]] std::string nameOf(const data::AccountMember& member) const;
  [[nodiscard]] std::string textOf(const data::AccountMember& member, const data::Account& account) const;
  [[nodiscard]] std::string relationOf(const data::Account& account) const;
  /// The text of the columns in the row with an ID; the number if there is no such row or it can't be read.
  [[nodiscard]] std::string lookUp(const std::string& columns, const std::string& table,
                                   std::int32_t id) const;
  [[nodiscard]] std::string nameIn(const std::string& view, std::int32_t id) const;

  const mainform::MainScreen& screen_;
  data::DtEn& gateway_;
};

}  // namespace ledgertree::accounts
