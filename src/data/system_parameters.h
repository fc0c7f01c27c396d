#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "data/packet.h"

namespace ledgertree::data {

class DtEn;

/// The installation's settings: rows of tblTarvoSystemParameters, and the row of vwTarvoBasePath. The initial
/// values here apply if a row is missing.
struct SystemParameters {
  std::int16_t CodeIsNumeric = 0;  ///< 301; 1: the code field takes digits, "." and "/" alone
  bool MultiEntityMode = false;    ///< 311; classes and objects of an account in dialogs of their own
  bool EditCodeAllowed = false;    ///< 319; the code of an account with movement may change
  /// 210; 1: the test for a repeated entity compares the position too
  std::int16_t PositionInEntityTest = 0;
  std::int16_t CodingMode = 0;   ///< 307; 0: codes number per parent, 1: per level, else: none is proposed
  bool ShowCompleteCode = true;  ///< 302; tree labels show the whole code at the start
  std::string BasePath;          ///< the host's folder with its closing separator; empty if there is no row
};

/// Reads them through rssqlKelmoSystemConfig and rssqlTarvoBasePath, which are closed again in any case.
/// Throws DataError, and std::range_error naming the parameter for a number that doesn't fit 16 bits.
[[nodiscard]] SystemParameters readSystemParameters(DtEn& data);
/// The commands that readSystemParameters will run, for announcing them (see Ahead).
[[nodiscard]] std::vector<Command> systemParameterQuestions();

}  // namespace ledgertree::data
