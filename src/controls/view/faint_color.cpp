#include "controls/view/faint_color.h"

#include <algorithm>
#include <cmath>

namespace orvane::controls {

namespace {

/// Small letters need 4.5, and their strokes are thinner than a dot here and there.
constexpr double kReadable = 6;
constexpr int kSteps = 10;

double LinearOf(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double LuminanceOf(const QColor& colour) {
  return 0.2126 * LinearOf(colour.redF()) + 0.7152 * LinearOf(colour.greenF()) +
         0.0722 * LinearOf(colour.blueF());
}

/// How the eye tells one from the other, from 1 to 21.
double ContrastOf(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({LuminanceOf(one), LuminanceOf(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

}  // namespace

QColor FaintColor(const QColor& text, const QColor& ground) {
  const auto between = [&](int nStep) {
    const auto mixed = [nStep](int nFrom, int nTo) {
      return nFrom + (nTo - nFrom) * nStep / kSteps;
    };
    return QColor(mixed(text.red(), ground.red()), mixed(text.green(), ground.green()),
                  mixed(text.blue(), ground.blue()));
  };
  // Half way at most: beyond that it is faint in any palette.
  for (int nStep = kSteps / 2; nStep > 0; --nStep) {
    if (ContrastOf(between(nStep), ground) >= kReadable) return between(nStep);
  }
  return text;
}

}  // namespace orvane::controls
