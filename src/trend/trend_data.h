// The lines of a trend, read from rows: which columns tell the time, the numbers and whose they
// are, and all values as doubles, with their digits where no double has them; read once and in
// slices, so that nobody waits for them. Without a toolkit; one thread at a time.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "platform/ado/recordset.h"
#include "trend/trend_series.h"
#include "zones/time_zone.h"

namespace orvane::trend {

/// The columns that a trend is made of.
struct TrendColumns {
  platform::ColumnIndex time = 0;
  std::vector<platform::ColumnIndex> numbers;
  std::optional<platform::ColumnIndex> tag;  ///< says whose a number is
  std::optional<platform::ColumnIndex> unit;

  /// None where there is no time, or no number, to be drawn. A text column says whose the numbers
  /// are when it is called "Tag", or else when it is the first one and the first rows hold few
  /// different texts and several at one time.
  static std::optional<TrendColumns> Of(const platform::Recordset& rs);
};

/// One line. Its times are microseconds since 1970 in UTC.
struct TrendLine {
  platform::Text sName;
  platform::Text sTag;   ///< empty where no column says whose the numbers are
  platform::Text sUnit;  ///< empty where it is not known
  TrendSeries series;
  bool bWhole = false;  ///< its column holds whole numbers

  /// The value of a point as it is stored, where that is written otherwise than the double that is
  /// drawn; empty where it is that double, or nothing.
  platform::Text StoredText(std::size_t point) const;
};

/// From the lowest value in sight to the highest, by unit.
struct ValueRange {
  double lowest = 0;
  double highest = 0;
};
using ValueRanges = std::map<platform::Text, ValueRange>;

/// Whether a row of the recordset is one of those that are drawn.
using SeenRows = std::function<bool(platform::RowIndex row)>;

double TrendTime(platform::Timestamp time);
platform::Timestamp TimestampOf(double time);

class TrendReader {
 public:
  /// More cannot be told from each other; further tags are counted only.
  static constexpr std::size_t kMostLines = 32;

  /// Keeps the rows until they are read. Where their times are numbers, these are days of the zone.
  /// Without `seen` all rows are read.
  TrendReader(platform::RecordsetPtr rs, TrendColumns columns,
              zones::TimeZone zone = zones::TimeZone::Utc(), SeenRows seen = {});

  /// Reads the next rows and says whether there are more. What is read lies in the memory of the
  /// rows; fails as that does.
  bool Read(platform::RowIndex rows);
  /// Readies the lines, when all is read, on any thread; fails likewise. Ends early when it is
  /// stopped; the lines are of no use then.
  void Finish(const std::stop_token& stop = {});
  /// Part of the rows that has been read, from 0 to 1.
  double Progress() const;
  /// The lines, when they are ready; they are the caller's.
  std::vector<TrendLine> TakeLines() { return std::move(m_lines); }
  /// Tags that have no line because there are too many.
  std::size_t TagsLeftOut() const { return m_tagsLeftOut.size(); }
  /// How many rows were read where their source had more when they began to be; else 0.
  platform::RowIndex CutAfter() const { return m_bCut ? m_next : 0; }

 private:
  void ReadRow(platform::RowIndex row);
  /// The first line of the tag; none where there are too many.
  std::optional<std::size_t> LinesOf(const platform::Value& vtTag);

  platform::RecordsetPtr m_rs;
  std::shared_ptr<std::pmr::memory_resource> m_memory;
  TrendColumns m_columns;
  zones::TimeZone m_zone;
  SeenRows m_seen;
  bool m_bCut;
  platform::RowIndex m_next = 0;
  std::vector<TrendLine> m_lines;
  std::map<platform::Text, std::size_t, std::less<>> m_firstLines;
  std::set<platform::Text> m_tagsLeftOut;
};

}  // namespace orvane::trend
