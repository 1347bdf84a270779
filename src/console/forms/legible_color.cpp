#include "console/forms/legible_color.h"

#include <QPalette>
#include <algorithm>
#include <cmath>

namespace orvane::console {
namespace {

/// Below this ratio large text and marks cannot be told from the background.
constexpr double kLeastContrast = 3.0;

double Linear(double dChannel) {
  return dChannel <= 0.04045 ? dChannel / 12.92 : std::pow((dChannel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& color) {
  return 0.2126 * Linear(color.redF()) + 0.7152 * Linear(color.greenF()) +
         0.0722 * Linear(color.blueF());
}

double Contrast(const QColor& one, const QColor& other) {
  const auto [dDarker, dLighter] = std::minmax({Luminance(one), Luminance(other)});
  return (dLighter + 0.05) / (dDarker + 0.05);
}

}  // namespace

QColor LegibleColor(platform::Color color, const QPalette& palette) {
  const QColor own = palette.color(QPalette::Text);
  if (color == platform::Color{}) return own;
  const QColor background = palette.color(QPalette::Base);
  const QColor wanted(color.red, color.green, color.blue);
  if (Contrast(wanted, background) >= kLeastContrast) return wanted;
  const QColor turned =
      QColor::fromHslF(wanted.hslHueF(), wanted.hslSaturationF(), 1.0F - wanted.lightnessF());
  return Contrast(turned, background) >= kLeastContrast ? turned : own;
}

}  // namespace orvane::console
