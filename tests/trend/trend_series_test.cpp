#include "trend/trend_series.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>

#include "ado/spilling_memory.h"

namespace orvane::trend {
namespace {

/// The same points, kept plainly.
struct PlainSeries {
  std::vector<double> times;
  std::vector<double> values;

  Extremes Between(std::size_t begin, std::size_t end) const {
    Extremes extremes;
    for (std::size_t n = begin; n < end; ++n) extremes.Take(values[n]);
    return extremes;
  }
};

class trend_series : public testing::TestWithParam<unsigned> {
 protected:
  /// Points in order, some at one time, some without a value.
  void Fill(std::size_t nPoints, double gaps) {
    std::exponential_distribution<double> pause(0.1);
    std::normal_distribution<double> noise(0, 100);
    std::uniform_real_distribution<double> chance(0, 1);
    double time = 1e15;
    for (std::size_t n = 0; n < nPoints; ++n) {
      if (chance(m_random) < 0.95) time += std::floor(pause(m_random));
      m_plain.times.push_back(time);
      m_plain.values.push_back(chance(m_random) < gaps ? kGap : noise(m_random));
    }
    for (std::size_t n = 0; n < nPoints; ++n) m_series.Append(m_plain.times[n], m_plain.values[n]);
    m_series.Finish();
  }
  std::size_t Any(std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(m_random);
  }

  std::mt19937_64 m_random{GetParam()};
  PlainSeries m_plain;
  TrendSeries m_series;
};

TEST_P(trend_series, knows_the_extremes_between_any_two_points) {
  Fill(5'000 + Any(5'000), 0.01);
  for (int n = 0; n < 2'000; ++n) {
    const std::size_t begin = Any(m_series.Size());
    const std::size_t end =
        begin + Any(n % 2 == 0 ? m_series.Size() - begin
                               : std::min<std::size_t>(40, m_series.Size() - begin));
    const Extremes expected = m_plain.Between(begin, end);
    const Extremes found = m_series.Between(begin, end);
    ASSERT_EQ(found.lowest, expected.lowest) << begin << " to " << end;
    ASSERT_EQ(found.highest, expected.highest) << begin << " to " << end;
    ASSERT_EQ(found.bGap, expected.bGap) << begin << " to " << end;
  }
}

TEST_P(trend_series, finds_points_by_time) {
  Fill(3'000, 0);
  for (int n = 0; n < 1'000; ++n) {
    const double time = m_plain.times[Any(m_plain.times.size() - 1)] + (n % 3 - 1) * 0.5;
    std::size_t from = 0;
    while (from < m_plain.times.size() && m_plain.times[from] < time) ++from;
    ASSERT_EQ(m_series.From(time), from);
    std::optional<std::size_t> last;
    for (std::size_t i = 0; i < m_plain.times.size() && m_plain.times[i] <= time; ++i) last = i;
    ASSERT_EQ(m_series.LastUntil(time), last);
  }
}

TEST_P(trend_series, of_a_pixel_column_has_what_comes_in_goes_out_and_lies_farthest) {
  Fill(20'000, 0);
  const double span = m_plain.times.back() - m_plain.times.front();
  const PixelColumns columns{m_plain.times.front() + span * 0.2, 300 / (span * 0.5), 300};
  const auto corners = m_series.Corners(columns, LineKind::Straight);
  EXPECT_LE(corners.size(), 4U * 300U + 2U);
  for (int column = 0; column < 300; ++column) {
    std::vector<double> all;
    for (std::size_t n = 0; n < m_plain.times.size(); ++n) {
      if (columns.At(m_plain.times[n]) == column) all.push_back(m_plain.values[n]);
    }
    std::vector<double> drawn;
    for (const Corner& corner : corners) {
      if (corner.column == column) drawn.push_back(corner.value);
    }
    ASSERT_EQ(all.empty(), drawn.empty()) << column;
    if (all.empty()) continue;
    ASSERT_EQ(all.front(), drawn.front());
    ASSERT_EQ(all.back(), drawn.back());
    ASSERT_EQ(*std::ranges::min_element(all), *std::ranges::min_element(drawn));
    ASSERT_EQ(*std::ranges::max_element(all), *std::ranges::max_element(drawn));
  }
}

TEST_P(trend_series, leads_to_the_points_out_of_sight) {
  Fill(5'000, 0);
  const double first = m_plain.times.front();
  const double span = m_plain.times.back() - first;
  const PixelColumns columns{first + span / 3, 100 / (span / 3), 100};
  const auto corners = m_series.Corners(columns, LineKind::Straight);
  const auto all = m_series.AllCorners(columns, LineKind::Straight);
  ASSERT_LT(corners.front().column, 0);
  ASSERT_GE(corners.back().column, 100);
  EXPECT_NE(std::ranges::find(all, corners.front()), all.end());
  EXPECT_NE(std::ranges::find(all, corners.back()), all.end());
}

TEST_P(trend_series, comes_in_the_order_of_times_however_it_was_appended) {
  Fill(2'000, 0.1);
  std::vector<std::size_t> order(m_plain.times.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  TrendSeries backwards;
  for (auto n = order.rbegin(); n != order.rend(); ++n) {
    backwards.Append(m_plain.times[*n], m_plain.values[*n]);
  }
  backwards.Finish();
  std::ranges::shuffle(order, m_random);
  TrendSeries shuffled;
  for (const std::size_t n : order) shuffled.Append(m_plain.times[n], m_plain.values[n]);
  shuffled.Finish();
  for (std::size_t n = 0; n < order.size(); ++n) {
    ASSERT_EQ(backwards.TimeAt(n), m_plain.times[n]);
    ASSERT_EQ(shuffled.TimeAt(n), m_plain.times[n]);
    ASSERT_TRUE(backwards.ValueAt(n) == m_plain.values[n] || std::isnan(m_plain.values[n]));
  }
}

INSTANTIATE_TEST_SUITE_P(seeds, trend_series, testing::Range(1U, 6U));

TEST(TrendSeriesTest, values_that_are_no_numbers_are_gaps) {
  TrendSeries series;
  series.Append(1, 5);
  series.Append(2, std::numeric_limits<double>::infinity());
  series.Append(3, -std::numeric_limits<double>::infinity());
  series.Append(4, kGap);
  series.Append(5, 7);
  series.Finish();
  const Extremes extremes = series.Between(0, 5);
  EXPECT_EQ(extremes.lowest, 5);
  EXPECT_EQ(extremes.highest, 7);
  EXPECT_TRUE(extremes.bGap);
  const auto corners = series.Corners({0, 1, 10}, LineKind::Straight);
  ASSERT_EQ(corners.size(), 3U);
  EXPECT_EQ(corners[0], (Corner{1, 5}));
  EXPECT_TRUE(std::isnan(corners[1].value));
  EXPECT_EQ(corners[2], (Corner{5, 7}));
}

TEST(TrendSeriesTest, what_is_stored_stays_with_its_point_when_the_newest_came_first) {
  TrendSeries series;
  series.Append(3, 30, "30.0");
  series.Append(2, 20);
  series.Append(1, kGap, "nan");
  series.Finish();
  EXPECT_EQ(series.StoredAt(0), "nan");
  EXPECT_EQ(series.StoredAt(1), "");
  EXPECT_EQ(series.StoredAt(2), "30.0");
}

TEST(TrendSeriesTest, stands_in_order_whatever_order_it_came_in) {
  std::mt19937 random(7);
  std::vector<std::pair<double, double>> plain;
  TrendSeries series;
  for (int n = 0; n < 20'000; ++n) {
    // Many of one time: these stay as they came.
    plain.emplace_back(std::uniform_int_distribution<int>(0, 2'000)(random), n);
    series.Append(plain.back().first, plain.back().second,
                  n % 3 == 0 ? std::to_string(n) + ".0" : std::string());
  }
  series.Finish();
  std::ranges::stable_sort(plain, {}, &std::pair<double, double>::first);
  ASSERT_EQ(series.Size(), plain.size());
  std::size_t nWrong = 0;
  for (std::size_t n = 0; n < plain.size(); ++n) {
    nWrong += series.TimeAt(n) == plain[n].first && series.ValueAt(n) == plain[n].second ? 0 : 1;
    const auto nCame = static_cast<int>(plain[n].second);
    nWrong += series.StoredAt(n) == (nCame % 3 == 0 ? std::to_string(nCame) + ".0" : "") ? 0 : 1;
  }
  EXPECT_EQ(nWrong, 0U);
}

TEST(TrendSeriesTest, lies_in_the_memory_that_it_was_given) {
  const auto budget = std::make_shared<ado::MemoryBudget>(std::size_t{1} << 20);
  {
    TrendSeries series(std::make_shared<ado::SpillingMemory>(budget));
    // Far more than the budget, in no order.
    for (int n = 0; n < 300'000; ++n) series.Append((n * 7919LL) % 300'007, n);
    series.Finish();
    EXPECT_GT(budget->Taken(), 0U);
    EXPECT_LE(budget->Taken(), budget->Bytes());
    EXPECT_EQ(series.ValueAt(0), 0);
    EXPECT_EQ(series.Between(0, series.Size()).highest, 299'999);
  }
  EXPECT_EQ(budget->Taken(), 0U);
}

TEST(TrendSeriesTest, an_empty_one_has_nothing_to_draw) {
  TrendSeries series;
  series.Finish();
  EXPECT_TRUE(series.Corners({0, 1, 10}, LineKind::Straight).empty());
  EXPECT_FALSE(series.Seen(0, 10).HasValues());
  EXPECT_EQ(series.LastUntil(5), std::nullopt);
}

TEST(TrendSeriesTest, many_gaps_in_one_column_lose_no_peak) {
  TrendSeries series;
  for (int n = 0; n < 100'000; ++n)
    series.Append(n, n % 2 == 0 ? kGap : (n == 50'001 ? 1e6 : n % 7));
  series.Finish();
  const auto corners = series.Corners({0, 1e-4, 10}, LineKind::Straight);
  EXPECT_LT(corners.size(), 100U);
  EXPECT_NE(std::ranges::find(corners, Corner{5, 1e6}), corners.end());
}

TEST(TrendSeriesTest, is_cut_far_out_of_sight_where_it_passes) {
  TrendSeries series;
  series.Append(-1e15, 0);
  series.Append(1e15, 100);
  series.Finish();
  const PixelColumns columns{-5, 1, 10};
  const auto straight = series.Corners(columns, LineKind::Straight);
  ASSERT_EQ(straight.size(), 2U);
  EXPECT_GE(straight.front().column, -20'000);
  EXPECT_LE(straight.back().column, 20'000);
  EXPECT_NEAR(straight.front().value, 50, 0.1);
  EXPECT_NEAR(straight.back().value, 50, 0.1);
  const auto steps = series.Corners(columns, LineKind::Steps);
  EXPECT_EQ(steps.front().value, 0) << "a value holds until the next one";
}

}  // namespace
}  // namespace orvane::trend
