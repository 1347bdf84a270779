#include "trend/trend_look.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace orvane::trend {
namespace {

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

/// What eyes make of light: all of it, or without one of the three kinds of cones (Machado,
/// Oliveira and Fernandes, 2009).
constexpr std::array<Matrix, 4> kEyes = {{{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
                                          {{{0.152286, 1.052583, -0.204868},
                                            {0.114503, 0.786281, 0.099216},
                                            {-0.003882, -0.048116, 1.051998}}},
                                          {{{0.367322, 0.860646, -0.227968},
                                            {0.280085, 0.672501, 0.047413},
                                            {-0.011820, 0.042940, 0.968881}}},
                                          {{{1.255528, -0.076749, -0.178779},
                                            {-0.078411, 0.930809, 0.147602},
                                            {0.004733, 0.691367, 0.303900}}}}};

double Linear(int n) {
  const double c = n / 255.0;
  return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& color) {
  return 0.2126729 * Linear(color.red()) + 0.7151522 * Linear(color.green()) +
         0.0721750 * Linear(color.blue());
}

Triple Seen(const QColor& color, const Matrix& eyes) {
  const Triple light = {Linear(color.red()), Linear(color.green()), Linear(color.blue())};
  Triple rgb{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) rgb[i] += eyes[i][j] * light[j];
    rgb[i] = std::min(1.0, std::max(0.0, rgb[i]));
  }
  const auto f = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116; };
  const double x = f((0.4124564 * rgb[0] + 0.3575761 * rgb[1] + 0.1804375 * rgb[2]) / 0.95047);
  const double y = f(0.2126729 * rgb[0] + 0.7151522 * rgb[1] + 0.0721750 * rgb[2]);
  const double z = f((0.0193339 * rgb[0] + 0.1191920 * rgb[1] + 0.9503041 * rgb[2]) / 1.08883);
  return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double Distance(const Triple& a, const Triple& b) {
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

QPalette Ground(QRgb base, QRgb text) {
  QPalette palette;
  palette.setColor(QPalette::Base, QColor(base));
  palette.setColor(QPalette::Text, QColor(text));
  return palette;
}

TEST(trend_look, colours_are_told_apart_by_every_eye_and_from_their_ground) {
  for (const QPalette& palette : {Ground(0xffffffff, 0xff000000), Ground(0xff141414, 0xfff0f0f0)}) {
    const TrendLook look(palette);
    const double ground = Luminance(look.Ground());
    for (std::size_t a = 0; a < TrendLook::kColors; ++a) {
      const QColor color = look.Pen(a).color();
      const double light = Luminance(color);
      EXPECT_GE((std::max(light, ground) + 0.05) / (std::min(light, ground) + 0.05), 3.0) << a;
      for (std::size_t b = 0; b < a; ++b) {
        for (std::size_t eye = 0; eye < kEyes.size(); ++eye) {
          EXPECT_GE(Distance(Seen(color, kEyes[eye]), Seen(look.Pen(b).color(), kEyes[eye])), 20)
              << "lines " << a << " and " << b << " to eye " << eye;
        }
      }
    }
  }
}

TEST(trend_look, no_two_lines_have_all_in_common) {
  const TrendLook look(Ground(0xffffffff, 0xff000000));
  for (std::size_t a = 0; a < 32; ++a) {
    for (std::size_t b = 0; b < a; ++b) {
      EXPECT_NE(look.Sample(a, {28, 14}, 1).toImage(), look.Sample(b, {28, 14}, 1).toImage())
          << a << " and " << b;
    }
  }
}

}  // namespace
}  // namespace orvane::trend
