#pragma once

#include <cstdint>
#include <string>

#include "data/dten.h"
#include "shell/shell.h"

namespace ledgertree::coding {

/// Proposes the own part of an account's code. A proposal writes nothing and reserves nothing: whether a code
/// is free is decided when the account is saved, and two users can be proposed the same one.
///
/// The coding mode of the installation decides: 0 numbers the children of each parent separately; 1 does so
/// only at the top, and from the second level down continues one running number per level, where an account
/// may reuse the number of one with the same title on that level; any other mode proposes nothing.
///
/// Reads tblAccount through rssqlBufferQuery, and closes the handle before its one question to the user.
class CodeProposal {
 public:
  explicit CodeProposal(shell::Shell& shell) : shell_(shell) {}

  /// What a proposal depends on besides the parent.
  struct Basis {
    std::int16_t codingMode = 0;
    std::string motherCode;  ///< the parent's code
    std::string title;       ///< of the new account
  };
  /// The proposal for an account below a parent (-1: at the top); empty if there is none. May ask the user
  /// whether to reuse the number of an account with the same title. Throws data::DataError.
  [[nodiscard]] std::string getNewAccountCode(std::int32_t parentID, const Basis& basis);

 private:
  [[nodiscard]] std::string nextByLevel(data::DtEn& gateway, std::int32_t parentID, const Basis& basis);
  [[nodiscard]] std::string searchLevel(data::DtEn& gateway, std::int32_t level, const std::string& title);

  shell::Shell& shell_;
};

}  // namespace ledgertree::coding
