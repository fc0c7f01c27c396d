#pragma once

#include <cstdint>
#include <string>

#include "data/dten.h"
#include "shell/shell.h"

namespace ledgertree::coding {

/// Proposes the own part of an account's code. A proposal writes nothing and reserves nothing: whether a code
/// is free is decided when the account is saved, and two people can be proposed the same one.
///
/// The coding mode of the installation decides: 0 numbers the children of each parent by themselves; 1 does
/// so at the top alone, and from the second level down gives one running number to a whole level, where an
/// account may take the number of one that has the same title there; any other mode proposes nothing.
///
/// It reads tblAccount through rssqlBufferQuery, and closes the handle ahead of its one question.
class CodeProposal {
 public:
  explicit CodeProposal(shell::Shell& shell) : shell_(shell) {}

  /// What a proposal goes by besides the parent.
  struct Basis {
    std::int16_t codingMode = 0;
    std::string motherCode;  ///< the parent's part of the code
    std::string title;       ///< of the account to come
  };
  /// The proposal for an account below a parent (-1: at the top); empty where there is none. May ask whether
  /// the number of an account of the same title is to be taken. Throws data::DataError.
  [[nodiscard]] std::string getNewAccountCode(std::int32_t parentID, const Basis& basis);

 private:
  [[nodiscard]] std::string nextByLevel(data::DtEn& gateway, std::int32_t parentID, const Basis& basis);
  [[nodiscard]] std::string searchLevel(data::DtEn& gateway, std::int32_t level, const std::string& title);

  shell::Shell& shell_;
};

}  // namespace ledgertree::coding
