#include "console/look/contrast.h"

#include <algorithm>
#include <cmath>

namespace orvane::console {
namespace {

double Linear(double dChannel) {
  return dChannel <= 0.04045 ? dChannel / 12.92 : std::pow((dChannel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& color) {
  return 0.2126 * Linear(color.redF()) + 0.7152 * Linear(color.greenF()) +
         0.0722 * Linear(color.blueF());
}

}  // namespace

double Contrast(const QColor& one, const QColor& other) {
  const auto [dDarker, dLighter] = std::minmax({Luminance(one), Luminance(other)});
  return (dLighter + 0.05) / (dDarker + 0.05);
}

}  // namespace orvane::console
