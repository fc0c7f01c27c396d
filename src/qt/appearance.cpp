#include "qt/appearance.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "qt/window_icon.h"

namespace ledgertree::qt {

namespace {

constexpr double kTwipsPerPixel = 15;
constexpr double kDesignFontPixels = 11;
/// Its width tells how wide a font is; in the font of the design it is 19.4 times the font size.
constexpr const char* kSample = "سرفصل حسابها مركز هزينه/درآمد: 0123456789";

/// The first palette with these colours, kept for reuse. The toolkit caches what it painted by palette and
/// takes equal palettes of two windows for different ones: the cache would grow with every window.
const QPalette& firstLike(const QPalette& palette) {
  static QList<QPalette> known;
  const auto found = std::find(known.cbegin(), known.cend(), palette);
  return found != known.cend() ? *found : known.emplaceBack(palette);
}

/// Sets that palette on a style option during painting.
class SteadyPalette {
 public:
  explicit SteadyPalette(const QStyleOption& option)
      : option_(const_cast<QStyleOption&>(option)), own_(option.palette) {
    option_.palette = firstLike(own_);
    option_.palette.setCurrentColorGroup(own_.currentColorGroup());
  }
  SteadyPalette(const SteadyPalette&) = delete;
  SteadyPalette& operator=(const SteadyPalette&) = delete;
  ~SteadyPalette() { option_.palette = own_; }

 private:
  QStyleOption& option_;
  QPalette own_;
};

/// Texts painted by a style (menus, headers) follow the direction of the application, which is the host's.
/// Here they follow the direction of their widget.
class ScreenStyle : public QProxyStyle {
 public:
  ScreenStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    const SteadyPalette steady(*option);
    const Qt::LayoutDirection before = painter->layoutDirection();
    painter->setLayoutDirection(option->direction);
    QProxyStyle::drawControl(element, option, painter, widget);
    painter->setLayoutDirection(before);
  }

  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override {
    const SteadyPalette steady(*option);
    QProxyStyle::drawComplexControl(control, option, painter, widget);
  }

  /// Indicators of buttons grow with the letters, not with the line height: some fonts have lines of twice
  /// the letters' height.
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
    const int base = QProxyStyle::pixelMetric(metric, option, widget);
    const bool mark = metric == PM_IndicatorWidth || metric == PM_IndicatorHeight ||
                      metric == PM_ExclusiveIndicatorWidth || metric == PM_ExclusiveIndicatorHeight;
    return mark && widget != nullptr ? std::max(base, QFontInfo(widget->font()).pixelSize() * 7 / 6) : base;
  }

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    const SteadyPalette steady(*option);
    if (element == PE_Frame) return drawFrame(*option, *painter);
    const bool ofLine =
        element == PE_IndicatorArrowDown && qobject_cast<const QToolButton*>(widget) != nullptr;
    if (!ofLine && element != PE_IndicatorBranch)
      return QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!ofLine && !option->state.testFlag(State_Children)) return;
    const bool open = ofLine || option->state.testFlag(State_Open);
    drawMark(*option, *painter, open, widget);
  }

 private:
  /// The border of a list or a text. The toolkit draws a line, which is clipped away on one side if the scale
  /// of the screen is fractional.
  static void drawFrame(const QStyleOption& option, QPainter& painter) {
    const QRectF edge(option.rect);
    const QRectF inside = edge.adjusted(1, 1, -1, -1);
    const QColor colour = option.palette.color(QPalette::Mid);
    for (const QRectF& side :
         {QRectF(edge.topLeft(), inside.topRight() + QPointF(1, 0)),
          QRectF(inside.bottomLeft() - QPointF(1, 0), edge.bottomRight()),
          QRectF(edge.topLeft(), inside.bottomLeft()), QRectF(inside.topRight(), edge.bottomRight())})
      painter.fillRect(side, colour);
  }

  /// A triangle: downwards if the node is open, else in the direction of the text.
  static void drawMark(const QStyleOption& option, QPainter& painter, bool open, const QWidget* widget) {
    const double size = widget == nullptr ? 8 : widget->fontMetrics().height() * 0.5;
    const double half = size / 2;
    const double side = option.direction == Qt::RightToLeft ? -1 : 1;
    QPolygonF triangle;
    if (open) {
      triangle << QPointF(-half, -half / 2) << QPointF(half, -half / 2) << QPointF(0, half / 2);
    } else {
      triangle << QPointF(-side * half / 2, -half) << QPointF(-side * half / 2, half)
               << QPointF(side * half / 2, 0);
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const bool selected = option.state.testFlag(State_Selected);
    painter.setBrush(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    painter.setOpacity(0.75);
    painter.translate(QRectF(option.rect).center());
    painter.drawPolygon(triangle);
    painter.restore();
  }
};

QStyle& screenStyle() {
  static QPointer<QStyle> style;
  if (style.isNull()) {
    style = new ScreenStyle;
    style->setParent(qApp);
  }
  return *style;
}

}  // namespace

QFont screenFont() {
  QFont font = QApplication::font();
  font.setFamilies({QStringLiteral("Tahoma"), QStringLiteral("Vazirmatn"),
                    QStringLiteral("Noto Sans Arabic UI"), QStringLiteral("Noto Sans Arabic"),
                    QStringLiteral("Noto Sans"), QStringLiteral("DejaVu Sans")});
  return font;
}

QPalette screenPalette(const QColor& background) {
  const QColor text(0x1B, 0x22, 0x2C);
  // Faint but readable: disabled fields show values, and are on the background of the screens too.
  const QColor faint(0x4A, 0x55, 0x63);
  const QColor highlight(0x2F, 0x6F, 0xB7);
  QPalette palette;
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    const bool disabled = group == QPalette::Disabled;
    const QColor ink = disabled ? faint : text;
    palette.setColor(group, QPalette::Window, background);
    palette.setColor(group, QPalette::WindowText, ink);
    palette.setColor(group, QPalette::Base, disabled ? background.lighter(106) : QColor(Qt::white));
    palette.setColor(group, QPalette::AlternateBase, background.lighter(112));
    palette.setColor(group, QPalette::Text, ink);
    palette.setColor(group, QPalette::PlaceholderText, faint);
    palette.setColor(group, QPalette::Button, background.lighter(107));
    palette.setColor(group, QPalette::ButtonText, ink);
    palette.setColor(group, QPalette::BrightText, Qt::white);
    palette.setColor(group, QPalette::Light, background.lighter(125));
    palette.setColor(group, QPalette::Midlight, background.lighter(112));
    palette.setColor(group, QPalette::Mid, background.darker(135));
    palette.setColor(group, QPalette::Dark, background.darker(165));
    palette.setColor(group, QPalette::Shadow, background.darker(260));
    palette.setColor(group, QPalette::Highlight, disabled ? faint.lighter(130) : highlight);
    palette.setColor(group, QPalette::HighlightedText, Qt::white);
    palette.setColor(group, QPalette::Link, highlight);
    palette.setColor(group, QPalette::LinkVisited, highlight);
    palette.setColor(group, QPalette::ToolTipBase, QColor(0xFF, 0xFB, 0xE6));
    palette.setColor(group, QPalette::ToolTipText, text);
  }
  return palette;
}

void dress(QWidget& widget) {
  widget.setStyle(&screenStyle());
  const bool window = widget.windowType() == Qt::Window || widget.windowType() == Qt::Dialog;
  if (window && QApplication::windowIcon().isNull()) widget.setWindowIcon(windowIcon());
  for (QWidget* below : widget.findChildren<QWidget*>()) below->setStyle(&screenStyle());
}

QColor toQt(ui::Colour colour) { return QColor::fromRgb(static_cast<QRgb>(colour)); }

Scale::Scale(const QFont& font) {
  // A font wider than the one of the design needs wider controls, or captions would be cut off.
  constexpr double kDesignWidth = 19.4;
  const double size = QFontInfo(font).pixelSize();
  const double width = QFontMetricsF(font).horizontalAdvance(QString::fromUtf8(kSample)) / kDesignWidth;
  pixelsPerTwip_ = std::max(size, width) / (kDesignFontPixels * kTwipsPerPixel);
}

int Scale::pixels(ui::Twips twips) const { return static_cast<int>(std::lround(twips * pixelsPerTwip_)); }

ui::Twips Scale::twips(int pixels) const {
  return static_cast<ui::Twips>(std::lround(pixels / pixelsPerTwip_));
}

QSize Scale::pixels(ui::Size size) const { return {pixels(size.width), pixels(size.height)}; }

ui::Size Scale::twips(QSize size) const { return {twips(size.width()), twips(size.height())}; }

QRect Scale::pixels(const ui::Bounds& bounds) const {
  const int left = pixels(bounds.left);
  const int top = pixels(bounds.top);
  return {left, top, pixels(bounds.left + bounds.width) - left, pixels(bounds.top + bounds.height) - top};
}

}  // namespace ledgertree::qt
