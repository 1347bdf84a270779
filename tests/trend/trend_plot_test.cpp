#include "trend/trend_plot.h"

#include <gtest/gtest.h>

#include <QTest>
#include <random>

#include "tests/trend/trend_rows.h"
#include "trend/trend_output.h"

namespace orvane::trend {
namespace {

TrendSeries Noise(std::size_t nPoints, double gaps, unsigned seed) {
  std::mt19937_64 random(seed);
  std::normal_distribution<double> noise(0, 1);
  std::exponential_distribution<double> pause(1e-6);
  std::uniform_real_distribution<double> chance(0, 1);
  TrendSeries series;
  double time = 1.7e15;
  double level = 0;
  for (std::size_t n = 0; n < nPoints; ++n) {
    time += std::floor(pause(random));
    level = level * 0.999 + noise(random);
    series.Append(time, chance(random) < gaps ? kGap : chance(random) < 0.0005 ? level * 5 : level);
  }
  series.Finish();
  return series;
}

class trend_plot : public testing::Test {
 protected:
  void Show(std::vector<TrendLine> lines) {
    m_lines = std::move(lines);
    m_plot.resize(640, 400);
    m_plot.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_plot));
    m_plot.Lines(m_lines, zones::TimeZone::Utc());
  }
  void ShowTwo() {
    TrendReader reader(m_rs, *TrendColumns::Of(*m_rs));
    reader.Read(1'000'000);
    reader.Finish();
    Show(reader.TakeLines());
  }
  /// The same picture, drawn of every point and of as few as are needed.
  void ExpectSamePixels(const char* sWhat) {
    m_plot.DrawAllPoints(true);
    const QImage all = PictureOf(m_plot);
    m_plot.DrawAllPoints(false);
    const QImage few = PictureOf(m_plot);
    ASSERT_EQ(all.size(), few.size());
    if (all == few) return;
    int nDifferent = 0;
    for (int y = 0; y < all.height(); ++y) {
      for (int x = 0; x < all.width(); ++x) nDifferent += all.pixel(x, y) != few.pixel(x, y);
    }
    EXPECT_EQ(nDifferent, 0) << sWhat;
  }
  void Wheel(QPoint at, int nDelta, Qt::KeyboardModifiers modifiers) {
    QWheelEvent wheel(at, m_plot.mapToGlobal(at), {}, {0, nDelta}, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&m_plot, &wheel);
  }
  void Drag(QPoint from, QPoint to, Qt::KeyboardModifiers modifiers) {
    QTest::mousePress(&m_plot, Qt::LeftButton, modifiers, from);
    QMouseEvent move(QEvent::MouseMove, to, m_plot.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     modifiers);
    QApplication::sendEvent(&m_plot, &move);
    QTest::mouseRelease(&m_plot, Qt::LeftButton, modifiers, to);
  }
  double Middle() const { return m_plot.Times().center(); }
  QPoint PixelOf(double time) const {
    return {static_cast<int>(m_plot.xAxis->coordToPixel(time)),
            m_plot.axisRect()->rect().center().y()};
  }

  platform::RecordsetPtr m_rs = TwoTags(100);
  std::vector<TrendLine> m_lines;
  TrendPlot m_plot;
};

TEST_F(trend_plot, draws_the_pixels_that_all_points_would_draw) {
  for (unsigned seed = 1; seed <= 3; ++seed) {
    std::vector<TrendLine> lines;
    lines.push_back({"noise", "noise", "", Noise(30'000, 0, seed)});
    lines.push_back({"holes", "holes", "bar", Noise(15'000, 0.002, seed + 100)});
    lines.push_back({"few", "few", "bar", Noise(300, 0.1, seed + 200)});
    Show(std::move(lines));
    for (const LineKind kind : {LineKind::Straight, LineKind::Steps}) {
      m_plot.Kind(kind);
      m_plot.Times(m_plot.AllTimes());
      ExpectSamePixels("all of it");
      for (int n = 0; n < 6; ++n) {
        m_plot.Zoom(0.4, Middle() + m_plot.Times().size() * 0.05 * n);
        ExpectSamePixels("zoomed in");
        m_plot.Pan(n % 2 == 0 ? 0.37 : -0.21);
        ExpectSamePixels("panned");
      }
    }
  }
}

TEST_F(trend_plot, shows_a_peak_of_one_point_among_a_million) {
  TrendSeries series;
  for (int n = 0; n < 1'000'000; ++n) series.Append(1e15 + n, n == 123'456 ? 1'000.0 : 0.0);
  series.Finish();
  std::vector<TrendLine> lines;
  lines.push_back({"peak", "", "", std::move(series)});
  Show(std::move(lines));
  const QImage picture = PictureOf(m_plot);
  const int nColumn = PixelOf(1e15 + 123'456).x();
  const QRgb color = TrendLook(m_plot.palette()).Pen(0).color().rgb();
  int nPixels = 0;
  for (int x = nColumn - 1; x <= nColumn + 1; ++x) {
    for (int y = 0; y < picture.height(); ++y) nPixels += picture.pixel(x, y) == color;
  }
  EXPECT_GT(nPixels, m_plot.axisRect()->rect().height() * 8 / 10);
}

TEST_F(trend_plot, has_an_axis_a_unit) {
  ShowTwo();
  EXPECT_EQ(m_plot.axisRect()->axes(QCPAxis::atLeft).size(), 1);
  for (TrendLine& line : m_lines) line.sUnit = line.sTag;
  m_plot.Lines(m_lines, zones::TimeZone::Utc());
  QStringList labels;
  for (const QCPAxis* axis : m_plot.axisRect()->axes(QCPAxis::atLeft | QCPAxis::atRight)) {
    if (axis->visible()) labels << axis->label();
  }
  labels.sort();
  EXPECT_EQ(labels, (QStringList{"a", "b"}));
}

TEST_F(trend_plot, units_beyond_the_last_axis_share_it) {
  std::vector<TrendLine> lines;
  for (int n = 0; n < 9; ++n) {
    lines.push_back({"l", "l", "u" + std::to_string(n), Noise(10, 0, static_cast<unsigned>(n))});
  }
  Show(std::move(lines));
  m_plot.resize(1600, 400);
  m_plot.replot();
  QStringList labels;
  for (const QCPAxis* axis : m_plot.axisRect()->axes(QCPAxis::atLeft | QCPAxis::atRight)) {
    if (axis->visible()) labels << axis->label();
  }
  EXPECT_EQ(labels.size(), ValueAxes::kMostAxes);
  EXPECT_TRUE(labels.contains("u5, u6, u7, u8")) << labels.join(" | ").toStdString();
}

TEST_F(trend_plot, axes_leave_half_of_the_width_to_the_lines) {
  std::vector<TrendLine> lines;
  for (int n = 0; n < 6; ++n) {
    lines.push_back({"l", "l", "u" + std::to_string(n), Noise(10, 0, static_cast<unsigned>(n))});
  }
  Show(std::move(lines));
  const auto shown = [&] {
    return std::ranges::count_if(m_plot.axisRect()->axes(QCPAxis::atLeft | QCPAxis::atRight),
                                 [](const QCPAxis* axis) { return axis->visible(); });
  };
  for (const int nLetters : {10, 20, 30}) {
    QFont font = m_plot.font();
    font.setPixelSize(nLetters);
    m_plot.setFont(font);
    m_plot.Lines(m_lines, zones::TimeZone::Utc());
    m_plot.replot();
    EXPECT_GE(shown(), 2);
    if (shown() > 2) EXPECT_GE(m_plot.axisRect()->width(), m_plot.width() / 2) << nLetters;
  }
  EXPECT_EQ(shown(), 2) << "at the largest letters";
}

TEST_F(trend_plot, the_wheel_zooms_and_the_time_under_the_pointer_stays) {
  ShowTwo();
  const QCPRange before = m_plot.Times();
  const QPoint at = m_plot.axisRect()->rect().topLeft() + QPoint(100, 50);
  const double time = m_plot.xAxis->pixelToCoord(at.x());
  QWheelEvent wheel(at, m_plot.mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&m_plot, &wheel);
  EXPECT_LT(m_plot.Times().size(), before.size());
  EXPECT_NEAR(m_plot.xAxis->coordToPixel(time), at.x(), 0.5);
  QTest::mouseDClick(&m_plot, Qt::LeftButton, {}, at);
  EXPECT_NEAR(m_plot.Times().size(), before.size(), 1);
}

TEST_F(trend_plot, is_dragged_by_the_mouse) {
  ShowTwo();
  m_plot.Zoom(0.5, Middle());
  const double time = Middle();
  const QPoint from = PixelOf(time);
  QTest::mousePress(&m_plot, Qt::LeftButton, {}, from);
  QMouseEvent move(QEvent::MouseMove, from + QPoint(-80, 0),
                   m_plot.mapToGlobal(from + QPoint(-80, 0)), Qt::NoButton, Qt::LeftButton,
                   Qt::NoModifier);
  QApplication::sendEvent(&m_plot, &move);
  QTest::mouseRelease(&m_plot, Qt::LeftButton, {}, from + QPoint(-80, 0));
  EXPECT_NEAR(PixelOf(time).x(), from.x() - 80, 1);
}

TEST_F(trend_plot, keys_move_the_cursor_from_point_to_point_and_what_is_in_sight) {
  ShowTwo();
  QTest::keyClick(&m_plot, Qt::Key_Right);
  EXPECT_EQ(m_plot.Cursor(), TrendTime(Second(0)));
  QTest::keyClick(&m_plot, Qt::Key_Right);
  EXPECT_EQ(m_plot.Cursor(), TrendTime(Second(1)));
  QTest::keyClick(&m_plot, Qt::Key_Left);
  EXPECT_EQ(m_plot.Cursor(), TrendTime(Second(0)));
  QTest::keyClick(&m_plot, Qt::Key_Left);
  EXPECT_EQ(m_plot.Cursor(), TrendTime(Second(0))) << "there is nothing before the first point";
  const QCPRange whole = m_plot.Times();
  QTest::keyClick(&m_plot, Qt::Key_Plus);
  EXPECT_LT(m_plot.Times().size(), whole.size());
  QTest::keyClick(&m_plot, Qt::Key_Minus);
  EXPECT_NEAR(m_plot.Times().size(), whole.size(), 10);
  QTest::keyClick(&m_plot, Qt::Key_Right, Qt::ControlModifier);
  EXPECT_NEAR(m_plot.Times().lower, whole.lower + whole.size() * 0.1, 10);
  QTest::keyClick(&m_plot, Qt::Key_0);
  EXPECT_EQ(m_plot.Times().lower, whole.lower);
}

TEST_F(trend_plot, a_cursor_that_leaves_the_sight_takes_it_along) {
  ShowTwo();
  m_plot.Cursor(TrendTime(Second(50)));
  m_plot.Zoom(0.001, TrendTime(Second(50)));
  QTest::keyClick(&m_plot, Qt::Key_Right);
  EXPECT_EQ(m_plot.Cursor(), TrendTime(Second(51)));
  EXPECT_TRUE(m_plot.Times().contains(TrendTime(Second(51))));
}

TEST_F(trend_plot, has_no_more_marks_of_time_than_there_is_room_for) {
  ShowTwo();
  for (int n = 0; n < 20; ++n) {
    m_plot.Zoom(0.6, Middle());
    const QVector<double> marks = m_plot.xAxis->tickVector();
    EXPECT_FALSE(marks.isEmpty());
    const int nWidth = m_plot.fontMetrics().horizontalAdvance("2026-11-22");
    for (qsizetype i = 1; i < marks.size(); ++i) {
      EXPECT_GT(m_plot.xAxis->coordToPixel(marks[i]) - m_plot.xAxis->coordToPixel(marks[i - 1]),
                nWidth);
    }
  }
}

TEST_F(trend_plot, the_mouse_points_at_times_that_can_be_read) {
  ShowTwo();
  QTest::mouseClick(&m_plot, Qt::LeftButton, {}, PixelOf(TrendTime(Second(50)) + 12'345));
  ASSERT_TRUE(m_plot.Cursor());
  EXPECT_EQ(std::fmod(*m_plot.Cursor(), 100'000), 0) << "a pixel is more than a tenth of a second";
}

TEST_F(trend_plot, what_is_in_sight_fills_the_value_axis) {
  ShowTwo();
  m_plot.LineShown(1, false);
  m_plot.Times({TrendTime(Second(40)), TrendTime(Second(60))});
  EXPECT_NEAR(m_plot.yAxis->range().lower, 39, 2);
  EXPECT_NEAR(m_plot.yAxis->range().upper, 61, 2);
}

TEST_F(trend_plot, values_at_the_ends_of_all_numbers_are_drawn_somehow) {
  TrendSeries series;
  series.Append(1e15, 1.7e308);
  series.Append(1e15 + 1e6, -1.7e308);
  series.Append(1e15 + 2e6, 5e-324);
  series.Finish();
  std::vector<TrendLine> lines;
  lines.push_back({"wild", "", "", std::move(series)});
  Show(std::move(lines));
  EXPECT_FALSE(PictureOf(m_plot).isNull());
  for (int n = 0; n < 200; ++n) m_plot.Zoom(0.5, 1e15);
  EXPECT_GE(m_plot.Times().size(), 999);
  for (int n = 0; n < 400; ++n) m_plot.Zoom(2, 1e15);
  EXPECT_FALSE(PictureOf(m_plot).isNull());
}

TEST_F(trend_plot, values_are_zoomed_by_wheel_and_keys_until_they_are_to_fit_again) {
  ShowTwo();
  const QCPRange fitted = m_plot.yAxis->range();
  const QCPRange times = m_plot.Times();
  const QPoint at = m_plot.axisRect()->rect().center() - QPoint(0, 40);
  const double under = m_plot.yAxis->pixelToCoord(at.y());
  Wheel(at, 120, Qt::ControlModifier);
  EXPECT_NEAR(m_plot.yAxis->range().size(), fitted.size() * 0.8, 1e-6);
  EXPECT_NEAR(m_plot.yAxis->coordToPixel(under), at.y(), 0.5) << "the value stays in its place";
  EXPECT_EQ(m_plot.Times().lower, times.lower) << "the times do, too";
  const QCPRange chosen = m_plot.yAxis->range();
  m_plot.Pan(0.3);
  EXPECT_EQ(m_plot.yAxis->range().lower, chosen.lower) << "what was chosen stays";
  QTest::keyClick(&m_plot, Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_NEAR(m_plot.yAxis->range().size(), chosen.size() * 0.8, 1e-6);
  QTest::keyClick(&m_plot, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_NEAR(m_plot.yAxis->range().size(), chosen.size(), 1e-6);
  QTest::keyClick(&m_plot, Qt::Key_Up, Qt::ControlModifier);
  EXPECT_NEAR(m_plot.yAxis->range().lower, chosen.lower + chosen.size() * 0.1, 1e-6);
  QTest::keyClick(&m_plot, Qt::Key_V);
  EXPECT_TRUE(m_plot.Values().Chosen().empty());
  QTest::keyClick(&m_plot, Qt::Key_0);
  EXPECT_NEAR(m_plot.yAxis->range().size(), fitted.size(), 1e-6);
}

TEST_F(trend_plot, one_axis_of_several_is_zoomed_and_dragged_by_itself) {
  ShowTwo();
  for (TrendLine& line : m_lines) line.sUnit = line.sTag;
  m_plot.Lines(m_lines, zones::TimeZone::Utc());
  m_plot.replot();
  ASSERT_EQ(m_plot.Values().InUse().size(), 2U);
  QCPAxis* left = m_plot.Values().InUse()[0];
  QCPAxis* right = m_plot.Values().InUse()[1];
  const QCPRange leftBefore = left->range();
  const QCPRange rightBefore = right->range();
  const QPoint besides(m_plot.axisRect()->left() - 12, m_plot.axisRect()->rect().center().y());
  ASSERT_EQ(m_plot.Values().At(besides), left);
  Wheel(besides, -120, Qt::NoModifier);
  EXPECT_GT(left->range().size(), leftBefore.size());
  EXPECT_EQ(right->range().lower, rightBefore.lower);
  const QCPRange zoomed = left->range();
  Drag(besides, besides + QPoint(0, 30), Qt::NoModifier);
  EXPECT_NEAR(left->coordToPixel(zoomed.center()), besides.y() + 30, 1.5);
  QTest::mouseDClick(&m_plot, Qt::LeftButton, {}, besides);
  EXPECT_NEAR(left->range().size(), leftBefore.size(), 1e-6);
  EXPECT_EQ(m_plot.Times().lower, m_plot.AllTimes().lower);
}

TEST_F(trend_plot, values_are_zoomed_as_far_as_numbers_go) {
  ShowTwo();
  // Fifty notches at a time until that is too much, then one at a time.
  const auto zoom = [this](int nDelta, Qt::Key key) {
    const QPoint at = m_plot.axisRect()->rect().center();
    for (int n = 0; n < 100; ++n) Wheel(at, nDelta * 50, Qt::ControlModifier);
    for (int n = 0; n < 200; ++n) QTest::keyClick(&m_plot, key, Qt::ShiftModifier);
    const QCPRange reached = m_plot.yAxis->range();
    QTest::keyClick(&m_plot, key, Qt::ShiftModifier);
    EXPECT_EQ(m_plot.yAxis->range(), reached) << "this is the end";
  };
  zoom(120, Qt::Key_Up);
  EXPECT_GT(m_plot.yAxis->range().size(), 0);
  EXPECT_FALSE(PictureOf(m_plot).isNull());
  zoom(-120, Qt::Key_Down);
  EXPECT_TRUE(std::isfinite(m_plot.yAxis->range().size()));
  EXPECT_FALSE(PictureOf(m_plot).isNull());
  QTest::keyClick(&m_plot, Qt::Key_V);
  EXPECT_LT(m_plot.yAxis->range().size(), 1'000);
}

TEST_F(trend_plot, times_are_marked_by_mouse_and_keys) {
  ShowTwo();
  int nTold = 0;
  m_plot.OnMarked([&] { ++nTold; });
  const QCPRange times = m_plot.Times();
  Drag(PixelOf(TrendTime(Second(60))), PixelOf(TrendTime(Second(40))), Qt::ShiftModifier);
  ASSERT_TRUE(m_plot.Marked());
  EXPECT_NEAR(m_plot.Marked()->lower, TrendTime(Second(40)), 0.4e6);
  EXPECT_NEAR(m_plot.Marked()->upper, TrendTime(Second(60)), 0.4e6);
  EXPECT_EQ(nTold, 1);
  EXPECT_EQ(m_plot.Times().lower, times.lower) << "nothing is dragged along";
  QTest::keyClick(&m_plot, Qt::Key_Escape);
  EXPECT_FALSE(m_plot.Marked());
  EXPECT_EQ(nTold, 2);
  m_plot.Cursor(TrendTime(Second(10)));
  for (int n = 0; n < 3; ++n) QTest::keyClick(&m_plot, Qt::Key_Right, Qt::ShiftModifier);
  ASSERT_TRUE(m_plot.Marked());
  EXPECT_EQ(m_plot.Marked()->lower, TrendTime(Second(10)));
  EXPECT_EQ(m_plot.Marked()->upper, TrendTime(Second(13)));
  for (int n = 0; n < 5; ++n) QTest::keyClick(&m_plot, Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(m_plot.Marked()->lower, TrendTime(Second(8)));
  EXPECT_EQ(m_plot.Marked()->upper, TrendTime(Second(10)));
  QTest::keyClick(&m_plot, Qt::Key_Return);
  EXPECT_EQ(m_plot.Times().lower, TrendTime(Second(8)));
  EXPECT_EQ(m_plot.Times().upper, TrendTime(Second(10)));
  m_plot.Mark(std::nullopt);
  EXPECT_EQ(nTold, 10) << "who takes the mark away knows";
}

TEST_F(trend_plot, marked_times_are_seen) {
  ShowTwo();
  const QImage before = PictureOf(m_plot);
  m_plot.Mark(QCPRange(TrendTime(Second(40)), TrendTime(Second(60))));
  const QImage after = PictureOf(m_plot);
  const QPoint within = PixelOf(TrendTime(Second(50))) - QPoint(0, 100);
  const QPoint outside = PixelOf(TrendTime(Second(70))) - QPoint(0, 100);
  EXPECT_NE(before.pixel(within), after.pixel(within));
  EXPECT_EQ(before.pixel(outside), after.pixel(outside));
}

TEST_F(trend_plot, is_as_dark_as_its_palette) {
  ShowTwo();
  QPalette dark;
  dark.setColor(QPalette::Base, QColor(20, 20, 20));
  dark.setColor(QPalette::Text, QColor(230, 230, 230));
  m_plot.setPalette(dark);
  const QImage picture = PictureOf(m_plot);
  EXPECT_LT(QColor(picture.pixel(2, 2)).lightness(), 60);
  for (std::size_t line = 0; line < 14; ++line) {
    EXPECT_GT(TrendLook(dark).Pen(line).color().lightness(), 100) << line;
    EXPECT_LT(TrendLook(QPalette(Qt::white)).Pen(line).color().lightness(), 160) << line;
  }
}

}  // namespace
}  // namespace orvane::trend
