#pragma once

namespace ledgertree::ui {

/// A length on a screen: a twentieth of a point, 1440 to the inch. The renderer scales it to the font in use.
using Twips = int;

struct Size {
  Twips width = 0;
  Twips height = 0;
  bool operator==(const Size&) const = default;
};

/// Bounds within the form, or within the frame that holds the control. Left is left on a right-to-left screen
/// too.
struct Bounds {
  Twips left = 0;
  Twips top = 0;
  Twips width = 0;
  Twips height = 0;
  bool operator==(const Bounds&) const = default;
};

/// A colour as 0xRRGGBB.
using Colour = unsigned;

/// The background of every screen.
inline constexpr Colour kScreenBackground = 0xC2D9F7;

}  // namespace ledgertree::ui
