#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace ledgertree::qt {

/// The logic uses UTF-8 and counts characters; Qt uses UTF-16 and counts code units.
[[nodiscard]] QString toQt(std::string_view text);
[[nodiscard]] std::string fromQt(const QString& text);
/// The offset of a character in units; the end for one past it.
[[nodiscard]] qsizetype unitsOf(const QString& text, std::size_t characters);
/// How many characters there are before a unit.
[[nodiscard]] std::size_t charactersBefore(const QString& text, qsizetype units);

/// A caption in which "&" is a letter and doesn't mark a mnemonic.
[[nodiscard]] QString literalCaption(std::string_view caption);
/// Text for a tooltip, escaped so that it isn't read as mark-up; cut if it is very long. Empty stays empty.
[[nodiscard]] QString literalTip(const QString& text);

}  // namespace ledgertree::qt
