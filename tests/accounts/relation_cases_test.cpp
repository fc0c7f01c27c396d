#include "accounts/relation_cases.h"

#include "accounts/account_story.h"

namespace ledgertree::testing {
namespace {

/// What the user has picked; -1 for nothing.
struct Picked {
  std::int32_t group = -1;
  std::int32_t entityClass = -1;
  std::int32_t object = -1;
  std::int32_t position = -1;
};

constexpr std::int32_t kHolder = 10;
constexpr std::int32_t kGuarded = 20;  // below 1
constexpr std::int32_t kPlain = 30;    // at the top, like the last new account

/// Saves an account in each of the three ways, and infers from the commands what became of its relation.
class RelationStory : public AccountStory {
 protected:
  RelationStory() {
    account(1, 0, "1", "دارايي");
    account(kHolder, 0, "2", "دارنده");
    account(kGuarded, 1, "101", "نگهبان");
    account(kPlain, 0, "3", "ساده");
    start();
    const std::int32_t first = saveNew(-1, "نخست", "4");  // from now on, an edit at the top is a plain one
    database.execute("delete from tblAccountRelatedObjects; delete from tblAccount where ID = " +
                     std::to_string(first));
    person.acts["holder"] = [this](auto& place) { holderHas(place); };
    person.acts["holderAt10"] = [this](auto& place) { holderHas(place, 10); };
    person.acts["saves"] = [this](auto& ids) {
      std::istringstream numbers(ids);
      Picked picked;
      numbers >> picked.group >> picked.entityClass >> picked.object >> picked.position;
      return threeWays(picked);
    };
  }

  /// Another account in this place.
  void holderHas(const std::string& groupClassAndObject, int position = 0) {
    database.execute(
        "delete from tblAccountRelatedObjects;"
        "update tblAccount set PositionID = " +
        std::to_string(position) + " where ID = 10; insert into tblAccountRelatedObjects values (10, " +
        groupClassAndObject + ")");
  }

  /// "new: … / guarded: … / plain: …"; T1 to T5 the tests, R a reset, Add, Ins, Del, and the message.
  std::string threeWays(const Picked& picked) {
    picked_ = picked;
    typeNew(-1, "تازه", "99");
    const std::string asNew = saved(-1);
    database.execute(
        "delete from tblAccountRelatedObjects where AccountID not in (10);"
        "delete from tblAccount where Code = '99'");
    return asNew + " / " + edited(kGuarded) + " / " + edited(kPlain);
  }

  std::string edited(std::int32_t id) {
    const std::string account = std::to_string(id);
    database.execute("delete from tblAccountRelatedObjects where AccountID = " + account +
                     "; insert into tblAccountRelatedObjects values (" + account + ", 5, 12, 6)");
    edit(id);
    std::string trace = saved(id);
    database.execute("delete from tblAccountRelatedObjects where AccountID = " + account);
    return trace;
  }

  std::string saved(std::int32_t id) {
    if (!form->settings.MultiEntityMode) {
      pick(form->sltEntityType, picked_.entityClass);
      if (picked_.entityClass != -1) pick(form->sltEntity, picked_.object);
      pick(form->sltPosition, picked_.position);
    }
    pick(form->sltGroup, picked_.group);
    static_cast<void>(faults.take());
    notices.onShow = [this](const Notice&) {
      EXPECT_TRUE(form->sltGroup.IsEmpty() && form->sltEntityType.IsEmpty() && form->sltEntity.IsEmpty());
      EXPECT_FALSE(form->sltEntity.IsActive());
    };
    const std::int32_t shown = save();
    notices.onShow = nullptr;
    EXPECT_TRUE(id == -1 || shown == id);
    std::string trace;
    for (const std::string& command : faults.take()) trace += meaning(command, shown);
    const auto told = notices.take();
    if (!told.empty()) trace += ending(told.front());
    const bool reset = trace.find('R') != std::string::npos;
    if (reset) {
      EXPECT_EQ(form->GroupValue, -1);
      EXPECT_EQ(form->EntityTypeValue, -1);
    }
    EXPECT_EQ(stored(shown, "GroupID"), reset ? "null" : column(picked_.group));
    const bool deleted = trace.find("Del") != std::string::npos;
    const bool given = trace.find("Add") != std::string::npos || trace.find("Ins") != std::string::npos;
    EXPECT_EQ(relations(shown),
              given ? column(picked_.group) + "|" + column(picked_.entityClass) + "|" + column(picked_.object)
              : deleted || id == -1 ? ""
                                    : "5|12|6");
    if (!trace.empty()) trace.pop_back();
    return trace;
  }

  static std::string column(std::int32_t number) { return number == -1 ? "null" : std::to_string(number); }

  /// The exact text of each statement of a relation.
  std::string meaning(const std::string& command, std::int32_t id) const {
    const std::string a = std::to_string(id);
    const std::string g = std::to_string(picked_.group);
    const std::string t = std::to_string(picked_.entityClass);
    const std::string o = std::to_string(picked_.object);
    const std::string p = std::to_string(picked_.position);
    const std::string test = "Select * From vwAccountRelatedObjects Where AccountGroupID=" + g;
    const std::string entity = " And RelatedClassID =" + t + " And RelatedObjectID =" + o;
    const std::string insert =
        "INSERT INTO tblAccountRelatedObjects (AccountID,AccountGroupID,RelatedClassID,RelatedObjectID) "
        "VALUES (";
    const std::pair<std::string, const char*> words[] = {
        {test + " And RelatedClassID Is Null And RelatedObjectID Is Null", "T1 "},
        {test + " And AccountID <>" + a + " And RelatedClassID Is Null And RelatedObjectID Is Null", "T2 "},
        {test + entity, "T3 "},
        {test + entity + " And AccountID <> " + a, "T4 "},
        {test + entity + " And AccountID <> " + a + " And PositionID = " + p, "T5 "},
        {"Update tblAccount Set GroupID = null Where ID =" + a, "R "},
        {"spAccountInsertRelatedObject", "Add "},
        {"Delete tblAccountRelatedObjects Where AccountID =" + a, "Del "},
        {"delete tblAccountRelatedObjects Where AccountID=" + a, "Del "},
        {insert + a + "," + g + "," + t + "," + o + ")", "Ins "}};
    for (const auto& [statement, word] : words) {
      if (command == statement) return word;
    }
    const bool known = command.find("RelatedObjects") == std::string::npos ||
                       command == "Select * from tblAccountRelatedObjects where AccountID =" + a;
    return known ? "" : "?" + command + " ";
  }

  static std::string ending(const Notice& told) {
    const std::string start = "از آنجايي كه قبلا حساب 2...دارنده";
    const std::string end = " تخصيص داده شده است، امكان تعريف حساب ديگري با همين مشخصات وجود ندارد. ";
    EXPECT_EQ(told.title, "خطا در ثبت");
    if (told.message == start + " به اين گروه حساب، نوع موجوديت و موجوديت" + end) return "A ";
    if (told.message == start + " به اين گروه حساب" + end) return "B ";
    if (told.message == start + " به اين نوع حساب، نوع موجوديت و موجوديت" + end) return "C ";
    return told.message;
  }

  Picked picked_;
};

TEST_F(RelationStory, WhereThePlaceIsFree) {
  go("a place that is free");
  form->settings.PositionInEntityTest = 1;
  go("a place that is free, with a position");
}

TEST_F(RelationStory, WhereAnotherAccountStands) {
  go("a place that is taken");
  // If the installation is set so, the position distinguishes accounts, except in a guarded edit.
  form->settings.PositionInEntityTest = 1;
  go("a place that is taken, with a position");
}

TEST_F(RelationStory, WithSeveralEntitiesAnAccountOnlyAGuardedEditClears) {
  form->settings.MultiEntityMode = true;
  EXPECT_EQ(threeWays({.group = 4}), " / Del / ");
}

}  // namespace
}  // namespace ledgertree::testing
