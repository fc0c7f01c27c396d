#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace ledgertree::qt {

/// The logic speaks UTF-8 and counts characters; Qt speaks UTF-16 and counts its units.
[[nodiscard]] QString toQt(std::string_view text);
[[nodiscard]] std::string fromQt(const QString& text);
/// The place of a character, in units; past the end it is the end.
[[nodiscard]] qsizetype unitsOf(const QString& text, std::size_t characters);
/// How many characters stand ahead of a unit.
[[nodiscard]] std::size_t charactersOf(const QString& text, qsizetype units);

/// A caption in which "&" is a letter and no mark of a key.
[[nodiscard]] QString literalCaption(std::string_view caption);
/// Text for a tooltip, which would otherwise read it as mark-up; the beginning of a very long one. Empty
/// stays empty.
[[nodiscard]] QString literalTip(const QString& text);

}  // namespace ledgertree::qt
