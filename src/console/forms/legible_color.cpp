#include "console/forms/legible_color.h"

#include <QPalette>

#include "console/look/contrast.h"

namespace orvane::console {

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
