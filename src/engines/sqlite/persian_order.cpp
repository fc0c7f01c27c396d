#include "engines/sqlite/persian_order.h"

#include <unicode/tblcoll.h>

#include <exception>
#include <memory>
#include <stdexcept>

#include "engines/sqlite/errors.h"

namespace ledgertree::engines::sqlite {
namespace {

/// The Persian rules treat the Arabic forms of ی and ک as accented variants, which would still separate names
/// that look the same to a user.
constexpr const char16_t* kSameLetters = u"&ک=ك&ی=ي=ى";

std::unique_ptr<icu::Collator> makePersianCollator() {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::Collator> plain(icu::Collator::createInstance(icu::Locale("fa"), status));
  const auto* const rules = dynamic_cast<const icu::RuleBasedCollator*>(plain.get());
  std::unique_ptr<icu::Collator> made;
  if (U_SUCCESS(status) != 0 && rules != nullptr) {
    made = std::make_unique<icu::RuleBasedCollator>(rules->getRules() + kSameLetters,
                                                    icu::Collator::SECONDARY, status);
  }
  if (U_FAILURE(status) != 0 || made == nullptr)
    throw std::runtime_error("ترتيب الفبايي فارسي در دسترس نيست؛ نصب ICU را بررسي کنيد.");
  return made;
}

int compare(void* collator, int leftSize, const void* left, int rightSize, const void* right) {
  UErrorCode status = U_ZERO_ERROR;
  return static_cast<const icu::Collator*>(collator)->compareUTF8(
      {static_cast<const char*>(left), leftSize}, {static_cast<const char*>(right), rightSize}, status);
}

/// Shared by all connections, on any thread: it only compares. Creating one takes some 15 ms and 4 MB.
icu::Collator* persianCollator() {
  static const std::unique_ptr<icu::Collator> collator = makePersianCollator();
  return collator.get();
}

/// SQLite's callback for a collation that a statement names and the connection lacks. If it provides none,
/// the statement fails, naming the collation.
void give(void*, sqlite3* database, int, const char* name) {
  if (name != kPersianOrder) return;
  try {
    sqlite3_create_collation_v2(database, name, SQLITE_UTF8, persianCollator(), compare, nullptr);
  } catch (const std::exception&) {
    // No exception may pass through SQLite.
  }
}

}  // namespace

int compareNames(std::string_view a, std::string_view b) {
  return compare(persianCollator(), static_cast<int>(a.size()), a.data(), static_cast<int>(b.size()),
                 b.data());
}

void addPersianOrder(sqlite3* database) {
  const int result = sqlite3_collation_needed(database, nullptr, give);
  if (result != SQLITE_OK) throw lastError(database, kPersianOrder);
}

}  // namespace ledgertree::engines::sqlite
