#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QRect>
#include <QSize>
#include <QWidget>

#include "ui/geometry.h"

namespace ledgertree::qt {

/// How all windows of the product look, whatever the desktop looks like: colours, style and fonts are set
/// window by window, so that the host's windows keep their own.

/// The font of the screens: a family with Persian letters, in the application's font size.
[[nodiscard]] QFont screenFont();
/// Colours that are readable on a light `background`, even if the user's desktop is dark.
[[nodiscard]] QPalette screenPalette(const QColor& background);
/// Applies the style of the screens to a widget and all below it, and gives a window an icon if the host has
/// none.
void dress(QWidget& widget);
[[nodiscard]] QColor toQt(ui::Colour colour);

/// Converts the lengths of a form to the pixels of a window and back. The forms are designed for a font of 11
/// pixels at 15 twips to the pixel, and grow with the font.
class Scale {
 public:
  Scale() = default;
  explicit Scale(const QFont& font);

  [[nodiscard]] int pixels(ui::Twips twips) const;
  [[nodiscard]] ui::Twips twips(int pixels) const;
  [[nodiscard]] QSize pixels(ui::Size size) const;
  [[nodiscard]] ui::Size twips(QSize size) const;
  /// Scales the edges, not the lengths, so that adjacent controls stay adjacent.
  [[nodiscard]] QRect pixels(const ui::Bounds& bounds) const;
  bool operator==(const Scale&) const = default;

 private:
  double pixelsPerTwip_ = 1.0 / 15;
};

}  // namespace ledgertree::qt
