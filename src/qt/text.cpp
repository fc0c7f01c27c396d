#include "qt/text.h"

#include <algorithm>

namespace ledgertree::qt {

QString toQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string fromQt(const QString& text) { return text.toStdString(); }

qsizetype unitsOf(const QString& text, std::size_t characters) {
  qsizetype units = 0;
  for (; characters > 0 && units < text.size(); --characters)
    units += text.at(units).isHighSurrogate() && units + 1 < text.size() ? 2 : 1;
  return units;
}

std::size_t charactersBefore(const QString& text, qsizetype units) {
  units = std::clamp<qsizetype>(units, 0, text.size());
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.begin() + units, [](QChar unit) { return !unit.isLowSurrogate(); }));
}

QString literalCaption(std::string_view caption) {
  return toQt(caption).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString literalTip(const QString& text) {
  constexpr qsizetype kMost = 500;
  if (text.isEmpty()) return text;
  const QString shown = text.size() <= kMost ? text : text.left(kMost) + QStringLiteral("...");
  return QLatin1String("<span>") + shown.toHtmlEscaped() + QLatin1String("</span>");
}

}  // namespace ledgertree::qt
