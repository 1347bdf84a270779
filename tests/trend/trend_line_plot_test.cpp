#include "trend/trend_line_plot.h"

#include <gtest/gtest.h>

#include <QTest>

#include "trend/trend_data.h"
#include "trend/trend_output.h"
#include "trend/trend_plot.h"

namespace orvane::trend {
namespace {

class trend_line_plot : public testing::Test {
 protected:
  void Show(std::vector<TrendLine> lines) {
    m_lines = std::move(lines);
    m_plot.resize(640, 400);
    m_plot.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_plot));
    m_plot.Lines(m_lines, zones::TimeZone::Utc());
  }
  std::vector<TrendLine> m_lines;
  TrendPlot m_plot;
};

TEST_F(trend_line_plot, a_steep_line_has_its_slope_however_far_the_values_are_zoomed) {
  TrendSeries series;
  series.Append(1e15, 0);
  series.Append(1e15 + 1e6, 1e6);
  series.Finish();
  std::vector<TrendLine> lines;
  lines.push_back({"steep", "", "", std::move(series)});
  Show(std::move(lines));
  m_plot.Times({1e15, 1e15 + 1e6});
  const QRgb color = TrendLook(m_plot.palette()).Pen(0).color().rgb();
  const QRect rect = m_plot.axisRect()->rect();
  for (const double part : {0.25, 0.5, 0.9}) {
    m_plot.ChooseValues({{"", {part * 1e6 - 10, part * 1e6 + 10}}});
    const QImage picture = PictureOf(m_plot);
    const int y = rect.center().y();
    int nAt = -1;
    for (int x = rect.left() + 10; x < rect.right() - 10; ++x) {
      if (picture.pixel(x, y) == color) nAt = x;
    }
    EXPECT_NEAR(nAt, rect.left() + part * rect.width(), 2) << part;
    m_plot.DrawAllPoints(true);
    EXPECT_EQ(PictureOf(m_plot), picture) << part;
    m_plot.DrawAllPoints(false);
  }
}

TEST_F(trend_line_plot, is_drawn_in_the_pixels_of_a_fine_screen) {
  // The room that the values take depends on them.
  TrendSeries same;
  same.Append(1e15, 0);
  same.Append(1e15 + 1e6, 1'000);
  same.Finish();
  std::vector<TrendLine> lines;
  lines.push_back({"peak", "", "", std::move(same)});
  Show(std::move(lines));
  m_plot.Times({1e15, 1e15 + 1e6});
  m_plot.replot();
  const int nColumns = m_plot.axisRect()->rect().width() * 2;
  constexpr int kPeak = 101;
  TrendSeries series;
  for (int n = 0; n < nColumns; ++n) {
    for (int i = 0; i < 3; ++i) {
      series.Append(1e15 + n * 1'000 + 300 + i * 100, n == kPeak && i == 1 ? 1'000.0 : 0.0);
    }
  }
  series.Finish();
  std::vector<TrendLine> peak;
  peak.push_back({"peak", "", "", std::move(series)});
  m_plot.Lines(peak, zones::TimeZone::Utc());
  m_lines.swap(peak);
  m_plot.Times({1e15, 1e15 + nColumns * 1'000.0});
  const QImage picture = m_plot.toPixmap(m_plot.width(), m_plot.height(), 2).toImage();
  const QRect rect = m_plot.axisRect()->rect();
  ASSERT_EQ(rect.width() * 2, nColumns) << "the same room for the values";
  const QRgb color = TrendLook(m_plot.palette()).Pen(0).color().rgb();
  const auto pixelsIn = [&](int nColumn) {
    int nPixels = 0;
    for (int y = rect.top() * 2; y < rect.bottom() * 2; ++y) {
      nPixels += picture.pixel(rect.left() * 2 + nColumn, y) == color;
    }
    return nPixels;
  };
  EXPECT_GT(pixelsIn(kPeak), rect.height() * 2 * 8 / 10);
  EXPECT_LT(pixelsIn(kPeak - 1), 10);
  EXPECT_LT(pixelsIn(kPeak + 1), 10);
}

}  // namespace
}  // namespace orvane::trend
