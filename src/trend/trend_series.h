// The points of one line of a trend, and what of them is drawn: for each column of pixels where the
// line comes in, its lowest and highest value, and where it goes out. No peak is lost, and the work
// grows with the pixels, not with the points. Without a toolkit; one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <memory_resource>
#include <optional>
#include <stop_token>
#include <string_view>
#include <vector>

namespace orvane::trend {

/// Not a number: nothing was measured, and the line is not drawn.
constexpr double kGap = std::numeric_limits<double>::quiet_NaN();

/// Lowest and highest of some values. Without a value among them the lowest is above the highest.
struct Extremes {
  double lowest = std::numeric_limits<double>::infinity();
  double highest = -std::numeric_limits<double>::infinity();
  bool bGap = false;  ///< there is a gap among them

  bool HasValues() const { return lowest <= highest; }
  void Take(double value) {
    if (value < lowest) lowest = value;
    if (value > highest) highest = value;
    bGap = bGap || value != value;
  }
  void Take(const Extremes& other) {
    if (other.lowest < lowest) lowest = other.lowest;
    if (other.highest > highest) highest = other.highest;
    bGap = bGap || other.bGap;
  }
};

/// Which column of pixels a time falls into.
struct PixelColumns {
  double start = 0;         ///< time at the left edge of column 0
  double perUnit = 1;       ///< columns for each unit of time, above 0
  std::int32_t nCount = 1;  ///< columns in sight

  /// May lie out of sight by any distance.
  double At(double time) const;
};

/// How a line goes from point to point.
enum class LineKind : std::uint8_t {
  Straight,
  Steps,  ///< a value holds until the next one
};

/// A corner of a line: column, and value or kGap where the line ends.
struct Corner {
  double column = 0;
  double value = kGap;
  friend bool operator==(const Corner&, const Corner&) = default;
};

class TrendSeries {
 public:
  /// Points of one column of pixels that has gaps are all drawn up to this number; of more, the
  /// column is drawn from the lowest to the highest as if it had none.
  static constexpr std::size_t kMostAroundGaps = 2'000;
  /// Up to this number of points in sight all are corners: so few that a line may be dashed, whose
  /// dashes depend on each of them.
  static constexpr std::size_t kMostDashed = 1'000;

  /// The points lie in the memory, or on the heap, and fail to be appended as it does.
  explicit TrendSeries(std::shared_ptr<std::pmr::memory_resource> memory = nullptr);

  TrendSeries(TrendSeries&&) = default;
  /// Points do not go from one memory into another.
  TrendSeries& operator=(TrendSeries&&) = delete;

  void Reserve(std::size_t points);
  /// In any order of times. A value that is not finite is a gap. What is stored, as a text, goes
  /// with the value where that does not say it exactly.
  void Append(double time, double value, std::string_view sStored = {});
  /// Puts the points in the order of their times and readies them for drawing. Those of one time
  /// stay as they came; where all came newest first, the last one comes first. Nothing is appended
  /// afterwards. Ends early, with nothing that can be drawn, when it is stopped.
  void Finish(const std::stop_token& stop = {});

  std::size_t Size() const { return m_times.size(); }
  double TimeAt(std::size_t point) const { return m_times[point]; }
  double ValueAt(std::size_t point) const { return m_values[point]; }
  /// What is stored there, where the value does not say it exactly; empty where it does.
  std::string_view StoredAt(std::size_t point) const;
  /// The first point not before the time; Size() behind the last one.
  std::size_t From(double time) const;
  /// The last point at the time or before it.
  std::optional<std::size_t> LastUntil(double time) const;

  /// Of the points from begin up to end.
  Extremes Between(std::size_t begin, std::size_t end) const;
  /// Of all that is seen of the line between the times: also of the points beside them, to which
  /// the line leads.
  Extremes Seen(double from, double to) const;

  /// Points in sight.
  std::size_t CountIn(const PixelColumns& columns) const;
  /// The line's corners in sight and the one before and behind them, as few as draw the same pixels
  /// as all. kGap stands between pieces. Of steps the corners between the points are left out.
  std::vector<Corner> Corners(const PixelColumns& columns, LineKind kind) const;
  /// All corners of the line: what Corners is held against.
  std::vector<Corner> AllCorners(const PixelColumns& columns, LineKind kind) const;

 private:
  using Numbers = std::pmr::vector<double>;
  /// Each over kFan nodes of the one before; the first over points.
  using Level = std::pmr::vector<Extremes>;
  /// A text of m_texts, of a point.
  struct Stored {
    std::size_t point;
    std::size_t begin;
    std::size_t length;
  };

  std::size_t FirstAtLeast(const PixelColumns& columns, double column, std::size_t begin) const;
  const Stored* FindStored(std::size_t point) const;
  void Sort(const std::stop_token& stop);
  void BuildLevels(const std::stop_token& stop);
  std::pmr::memory_resource* Memory() const { return m_times.get_allocator().resource(); }

  std::shared_ptr<std::pmr::memory_resource> m_memory;  ///< outlives what lies in it
  Numbers m_times;
  Numbers m_values;
  std::pmr::vector<Stored> m_stored;  ///< by point
  std::pmr::vector<char> m_texts;
  std::vector<Level> m_levels;
};

}  // namespace orvane::trend
