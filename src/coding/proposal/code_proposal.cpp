#include "coding/proposal/code_proposal.h"

#include <optional>

#include "coding/proposal/suffix.h"
#include "data/quote_text.h"
#include "text/characters.h"

namespace ledgertree::coding {

namespace {

constexpr std::string_view kFirstOfAParent = "01";
/// From this level down, all accounts of a level share one running number.
constexpr std::int32_t kFirstSharedLevel = 2;
constexpr std::string_view kSameTitleTitle = "نام حساب تكراري";
constexpr std::string_view kSameTitleQuestion =
    "قبلا حسابي با همين نام ثبت شده آيا ميخواهيد كه همان كد واگذار شود .";

std::string codesOfSiblings(std::int32_t parentID) {
  if (parentID == -1) return "Select Code from tblAccount where ParentID Is Null Order By Code Desc";
  return "Select Code from tblAccount where ParentID=" + std::to_string(parentID) + " Order By Code Desc";
}

std::string codesAndLevelsOfSiblings(std::int32_t parentID) {
  if (parentID == -1) return "Select Code,NoLevel from tblAccount where ParentID Is Null Order By Code Desc";
  return "Select Code,NoLevel from tblAccount where ParentID=" + std::to_string(parentID) +
         " Order By Code Desc";
}

struct Sibling {
  std::string code;
  std::int32_t level;
};

std::optional<Sibling> greatestSibling(data::DtEn& gateway, std::int32_t parentID) {
  const data::OpenRows siblings(gateway.rssqlBufferQuery, codesAndLevelsOfSiblings(parentID));
  if (siblings->Eof()) return std::nullopt;
  return Sibling{.code = siblings->Fields("Code").toText(), .level = siblings->Fields("NoLevel").toInt32()};
}

/// The level of an account's children; 0 if there is no such account.
std::int32_t levelBelow(data::DtEn& gateway, std::int32_t parentID) {
  const data::OpenRows parent(gateway.rssqlBufferQuery,
                              "Select * from tblAccount where ID=" + std::to_string(parentID));
  return parent->Eof() ? 0 : parent->Fields("NoLevel").toInt32() + 1;
}

/// The last six characters of the code of an account with that title on that level; of several, the first
/// that the database returns.
std::optional<std::string> numberOfSameTitle(data::DtEn& gateway, const std::string& title,
                                             std::int32_t level) {
  // No stored title contains such characters, and no statement could carry them.
  if (!text::isCleanText(title)) return std::nullopt;
  const data::OpenRows rows(
      gateway.rssqlBufferQuery,
      "Select ID,right(Code,6) As rCode,Code,Title,NoLevel from tblAccount where Title =" +
          data::quoteText(title) + " and NoLevel =" + std::to_string(level));
  if (rows->Eof()) return std::nullopt;
  return rows->Fields("rCode").toText();
}

/// Codes are texts: the greatest sibling is the one with the greatest text, not the greatest number.
std::string nextOfSiblings(data::DtEn& gateway, std::int32_t parentID, const std::string& motherCode) {
  const data::OpenRows siblings(gateway.rssqlBufferQuery, codesOfSiblings(parentID));
  if (siblings->Eof()) return std::string(kFirstOfAParent);
  return nextSuffix(ownPart(siblings->Fields("Code").toText(), motherCode));
}

}  // namespace

std::string CodeProposal::getNewAccountCode(std::int32_t parentID, const Basis& basis) {
  const auto gateway = shell_.dtEn();
  switch (basis.codingMode) {
    case 0:
      return nextOfSiblings(*gateway, parentID, basis.motherCode);
    case 1:
      return nextByLevel(*gateway, parentID, basis);
    default:
      return {};
  }
}

std::string CodeProposal::nextByLevel(data::DtEn& gateway, std::int32_t parentID, const Basis& basis) {
  const auto greatest = greatestSibling(gateway, parentID);
  if (greatest && greatest->level < kFirstSharedLevel) {
    return nextSuffix(ownPart(greatest->code, basis.motherCode));
  }
  const std::int32_t level = greatest ? greatest->level : levelBelow(gateway, parentID);
  return level < kFirstSharedLevel ? std::string() : searchLevel(gateway, level, basis.title);
}

std::string CodeProposal::searchLevel(data::DtEn& gateway, std::int32_t level, const std::string& title) {
  const auto taken = numberOfSameTitle(gateway, title, level);
  if (taken && shell_.confirms(kSameTitleTitle, kSameTitleQuestion)) return *taken;
  const data::OpenRows numbers(
      gateway.rssqlBufferQuery,
      "Select ID,right(Code,6) As rCode,Title,NoLevel from tblAccount where NoLevel =" +
          std::to_string(level) + " Order By rCode desc");
  return numbers->Eof() ? std::string() : nextSuffix(numbers->Fields("rCode").toText());
}

}  // namespace ledgertree::coding
