#include "data/permissions.h"

#include "data/catalogue.h"
#include "data/dten.h"

namespace ledgertree::data {

std::string_view refusalTitle(Permission permission) {
  switch (permission) {
    case Permission::PeriodsOfAccount:
    case Permission::CopyPeriod:
    case Permission::HidePeriod:
      return "اشکال";
    case Permission::ShowChart:
    case Permission::NewAccount:
    case Permission::EditAccount:
    case Permission::DeleteAccount:
    case Permission::RecodeAccounts:
    case Permission::DeleteInBatch:
      break;
  }
  return "خطا";
}

Command permissionQuestion(std::int32_t userID, Permission permission) {
  return {.procedure = &procedures::spTarvoHasPermission,
          .values = {userID, static_cast<std::int32_t>(permission)}};
}

bool isPermitted(DtEn& data, std::int32_t userID, Permission permission) {
  return data.spTarvoHasPermission(userID, static_cast<std::int32_t>(permission)) != 0;
}

}  // namespace ledgertree::data
