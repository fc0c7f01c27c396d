#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QRect>
#include <QSize>
#include <QWidget>

#include "ui/geometry.h"

namespace ledgertree::qt {

/// How all windows of the product look, whatever the desktop around them looks like: colours, style and fonts
/// are set window by window, so that the host's own windows keep theirs.

/// The font of the screens: a family with Persian letters, in the size of the application's font.
[[nodiscard]] QFont screenFont();
/// Colours that stay readable on a light `background`, also where the person's desktop is dark.
[[nodiscard]] QPalette screenPalette(const QColor& background);
/// Gives a widget and all below it the style of the screens, and a window an icon where the host has none.
void dress(QWidget& widget);
[[nodiscard]] QColor toQt(ui::Colour colour);

/// From the lengths of a form to the pixels of a window and back. The forms are designed for a font of 11
/// pixels with 15 twips to the pixel, and grow with the font.
class Scale {
 public:
  Scale() = default;
  explicit Scale(const QFont& font);

  [[nodiscard]] int pixels(ui::Twips twips) const;
  [[nodiscard]] ui::Twips twips(int pixels) const;
  [[nodiscard]] QSize pixels(ui::Size size) const;
  [[nodiscard]] ui::Size twips(QSize size) const;
  /// The edges are scaled, not the lengths, so that neighbours stay neighbours.
  [[nodiscard]] QRect pixels(const ui::Bounds& bounds) const;
  bool operator==(const Scale&) const = default;

 private:
  double pixelsPerTwip_ = 1.0 / 15;
};

}  // namespace ledgertree::qt
