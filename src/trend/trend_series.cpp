#include "trend/trend_series.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvane::trend {

namespace {

/// Points beneath a node of the first level, and nodes beneath a node of the others.
constexpr std::size_t kFan = 32;
/// Further out of sight than this no painter can count; the line is cut there.
constexpr double kFarOut = 10'000;

/// Thrown through what sorts, which nothing else ends.
struct Stopped {};

void AddCorner(std::vector<Corner>& corners, double column, double value) {
  if (value != value) {
    if (!corners.empty() && corners.back().value == corners.back().value) corners.push_back({});
    return;
  }
  const Corner corner{column, value};
  if (corners.empty() || corners.back() != corner) corners.push_back(corner);
}

/// Where the line from a corner far out of sight to one within it is at the cut.
Corner CutTowards(const Corner& far, const Corner& near, double column) {
  const double part = (column - near.column) / (far.column - near.column);
  return {column, near.value + (far.value - near.value) * part};
}

/// Pulls the corners that are far out of sight to where they can be drawn.
void CutFarCorners(std::vector<Corner>& corners, const PixelColumns& columns, LineKind kind) {
  const double left = -kFarOut;
  const double right = columns.nCount + kFarOut;
  const bool bStraight = kind == LineKind::Straight;
  const std::vector<Corner> whole = corners;
  const auto isBreak = [&](std::size_t n) { return whole[n].value != whole[n].value; };
  for (std::size_t n = 0; n < whole.size(); ++n) {
    if (isBreak(n)) continue;
    const bool bNext = n + 1 < whole.size() && !isBreak(n + 1);
    const bool bBefore = n > 0 && !isBreak(n - 1);
    if (whole[n].column < left) {
      if (bStraight && bNext && whole[n + 1].column > left) {
        corners[n] = CutTowards(whole[n], whole[n + 1], left);
      } else {
        corners[n].column = left;
      }
    } else if (whole[n].column > right) {
      if (bStraight && bBefore && whole[n - 1].column < right) {
        corners[n] = CutTowards(whole[n], corners[n - 1], right);
      } else {
        corners[n].column = right;
      }
    }
  }
}

}  // namespace

double PixelColumns::At(double time) const {
  return std::floor((time - start) * perUnit);
}

TrendSeries::TrendSeries(std::shared_ptr<std::pmr::memory_resource> memory)
    : m_memory(std::move(memory)),
      m_times(m_memory ? m_memory.get() : std::pmr::new_delete_resource()),
      m_values(Memory()),
      m_stored(Memory()),
      m_texts(Memory()) {}

void TrendSeries::Reserve(std::size_t points) {
  m_times.reserve(points);
  m_values.reserve(points);
}

void TrendSeries::Append(double time, double value, std::string_view sStored) {
  if (!sStored.empty()) {
    m_stored.push_back({Size(), m_texts.size(), sStored.size()});
    m_texts.insert(m_texts.end(), sStored.begin(), sStored.end());
  }
  m_times.push_back(time);
  m_values.push_back(std::isfinite(value) ? value : kGap);
}

const TrendSeries::Stored* TrendSeries::FindStored(std::size_t point) const {
  const auto found = std::ranges::lower_bound(m_stored, point, {}, &Stored::point);
  return found != m_stored.end() && found->point == point ? &*found : nullptr;
}

std::string_view TrendSeries::StoredAt(std::size_t point) const {
  const Stored* stored = FindStored(point);
  return stored ? std::string_view(m_texts.data() + stored->begin, stored->length)
                : std::string_view();
}

void TrendSeries::Finish(const std::stop_token& stop) {
  try {
    Sort(stop);
    BuildLevels(stop);
  } catch (const Stopped&) {
    m_levels.clear();
  }
}

void TrendSeries::Sort(const std::stop_token& stop) {
  if (std::is_sorted(m_times.begin(), m_times.end())) return;
  // Newest first is how most rows come; those of one time then stand in that order as well.
  const bool bNewestFirst = std::is_sorted(m_times.rbegin(), m_times.rend());
  if (bNewestFirst) {
    std::reverse(m_times.begin(), m_times.end());
    std::reverse(m_values.begin(), m_values.end());
    std::reverse(m_stored.begin(), m_stored.end());
    for (Stored& stored : m_stored) stored.point = Size() - 1 - stored.point;
    return;
  }
  struct Placed {
    double time;
    std::size_t point;
  };
  std::pmr::vector<Placed> order(Memory());
  order.reserve(Size());
  for (std::size_t n = 0; n < Size(); ++n) order.push_back({m_times[n], n});
  // In place: the room that a stable sort takes would count nowhere.
  std::ranges::sort(order, [&stop](const Placed& one, const Placed& other) {
    if (stop.stop_requested()) throw Stopped();
    return one.time != other.time ? one.time < other.time : one.point < other.point;
  });
  Numbers values(Memory());
  values.reserve(Size());
  for (std::size_t n = 0; n < order.size(); ++n) {
    m_times[n] = order[n].time;
    values.push_back(m_values[order[n].point]);
  }
  m_values.swap(values);
  if (m_stored.empty()) return;
  std::pmr::vector<Stored> moved(Memory());
  moved.reserve(m_stored.size());
  for (std::size_t n = 0; n < order.size(); ++n) {
    if (stop.stop_requested()) throw Stopped();
    if (const Stored* stored = FindStored(order[n].point)) {
      moved.push_back({n, stored->begin, stored->length});
    }
  }
  m_stored.swap(moved);
}

void TrendSeries::BuildLevels(const std::stop_token& stop) {
  m_levels.clear();
  std::size_t nBelow = m_values.size();
  while (nBelow > kFan) {
    Level level((nBelow + kFan - 1) / kFan, Memory());
    for (std::size_t node = 0; node < level.size(); ++node) {
      if (stop.stop_requested()) throw Stopped();
      const std::size_t end = std::min(nBelow, (node + 1) * kFan);
      Extremes extremes;
      for (std::size_t n = node * kFan; n < end; ++n) {
        if (m_levels.empty()) {
          extremes.Take(m_values[n]);
        } else {
          extremes.Take(m_levels.back()[n]);
        }
      }
      level[node] = extremes;
    }
    nBelow = level.size();
    m_levels.push_back(std::move(level));
  }
}

std::size_t TrendSeries::From(double time) const {
  return static_cast<std::size_t>(std::lower_bound(m_times.begin(), m_times.end(), time) -
                                  m_times.begin());
}

std::optional<std::size_t> TrendSeries::LastUntil(double time) const {
  const auto behind = std::upper_bound(m_times.begin(), m_times.end(), time);
  if (behind == m_times.begin()) return std::nullopt;
  return static_cast<std::size_t>(behind - m_times.begin()) - 1;
}

Extremes TrendSeries::Between(std::size_t begin, std::size_t end) const {
  Extremes extremes;
  // Up the levels as long as whole nodes lie between, the rest at each end taken one by one.
  std::size_t level = 0;
  const auto take = [&](std::size_t n) {
    if (level == 0) {
      extremes.Take(m_values[n]);
    } else {
      extremes.Take(m_levels[level - 1][n]);
    }
  };
  while (begin < end) {
    if (level == m_levels.size()) {
      for (; begin < end; ++begin) take(begin);
      break;
    }
    for (; begin < end && begin % kFan != 0; ++begin) take(begin);
    for (; begin < end && end % kFan != 0; --end) take(end - 1);
    begin /= kFan;
    end /= kFan;
    ++level;
  }
  return extremes;
}

Extremes TrendSeries::Seen(double from, double to) const {
  const std::size_t begin = LastUntil(from).value_or(0);
  const auto behind = std::upper_bound(m_times.begin(), m_times.end(), to);
  const std::size_t end = std::min(Size(), static_cast<std::size_t>(behind - m_times.begin()) + 1);
  return Between(begin, std::max(begin, end));
}

std::size_t TrendSeries::FirstAtLeast(const PixelColumns& columns, double column,
                                      std::size_t begin) const {
  const auto found =
      std::partition_point(m_times.begin() + static_cast<std::ptrdiff_t>(begin), m_times.end(),
                           [&](double time) { return columns.At(time) < column; });
  return static_cast<std::size_t>(found - m_times.begin());
}

std::size_t TrendSeries::CountIn(const PixelColumns& columns) const {
  const std::size_t begin = FirstAtLeast(columns, 0, 0);
  return FirstAtLeast(columns, columns.nCount, begin) - begin;
}

std::vector<Corner> TrendSeries::Corners(const PixelColumns& columns, LineKind kind) const {
  std::vector<Corner> corners;
  std::size_t point = FirstAtLeast(columns, 0, 0);
  const std::size_t behind = FirstAtLeast(columns, columns.nCount, point);
  const bool bAll = behind - point <= kMostDashed;
  if (point > 0) AddCorner(corners, columns.At(m_times[point - 1]), m_values[point - 1]);
  while (point < behind) {
    const double column = columns.At(m_times[point]);
    const std::size_t end = bAll ? point + 1 : FirstAtLeast(columns, column + 1, point);
    const Extremes extremes = Between(point, end);
    if (extremes.bGap && end - point <= kMostAroundGaps) {
      for (std::size_t n = point; n < end; ++n) AddCorner(corners, column, m_values[n]);
    } else {
      AddCorner(corners, column, m_values[point]);
      if (extremes.HasValues() && end - point > 1) {
        AddCorner(corners, column, extremes.lowest);
        AddCorner(corners, column, extremes.highest);
      }
      AddCorner(corners, column, m_values[end - 1]);
    }
    point = end;
  }
  if (behind < Size()) AddCorner(corners, columns.At(m_times[behind]), m_values[behind]);
  CutFarCorners(corners, columns, kind);
  return corners;
}

std::vector<Corner> TrendSeries::AllCorners(const PixelColumns& columns, LineKind kind) const {
  std::vector<Corner> corners;
  for (std::size_t n = 0; n < Size(); ++n) {
    AddCorner(corners, columns.At(m_times[n]), m_values[n]);
  }
  CutFarCorners(corners, columns, kind);
  return corners;
}

}  // namespace orvane::trend
