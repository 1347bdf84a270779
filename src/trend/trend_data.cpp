#include "trend/trend_data.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "platform/case_folding.h"
#include "platform/conversions.h"
#include "platform/exact_number.h"

namespace orvane::trend {

using platform::ColumnIndex;
using platform::DataType;
using platform::Recordset;
using platform::RowIndex;
using platform::Text;
using platform::Timestamp;
using platform::Value;

namespace {

constexpr RowIndex kRowsLookedAt = 1'000;

bool IsNumber(DataType type) {
  return type == DataType::Integer || type == DataType::BigInt || type == DataType::Double ||
         type == DataType::Numeric;
}

/// Up to here a double has each whole number.
constexpr std::int64_t kMostWhole = std::int64_t{1} << 53;

/// A number as a double; anything else is a gap. What is stored is told where the double is another
/// number.
double NumberOf(const Value& vt, Text& sStored) {
  if (const auto* d = vt.As<double>()) {
    if (!std::isfinite(*d)) sStored = platform::ToText(vt);
    return *d;
  }
  if (const auto* l = vt.As<std::int32_t>()) return *l;
  if (const auto* ll = vt.As<std::int64_t>()) {
    if (*ll < -kMostWhole || *ll > kMostWhole) sStored = platform::ToText(vt);
    return static_cast<double>(*ll);
  }
  if (const auto* decimal = vt.As<platform::Decimal>()) {
    const Text& sDigits = decimal->sDigits;
    const auto exact = platform::ExactNumber(sDigits);
    if (!exact || exact->As<double>() == nullptr) sStored = sDigits;
    // Not by the locale: its comma is no point.
    double number = kGap;
    std::from_chars(sDigits.data(), sDigits.data() + sDigits.size(), number);
    return number;
  }
  return kGap;
}

bool TellsWhose(const Recordset& rs, ColumnIndex text, ColumnIndex time) {
  std::set<Text> texts;
  std::set<double> times;
  bool bSeveralAtOnce = false;
  for (RowIndex row = 0; row < std::min(rs.RecordCount(), kRowsLookedAt); ++row) {
    if (const Value vt = rs.ValueAt(row, text); vt.As<Text>() != nullptr)
      texts.insert(*vt.As<Text>());
    if (texts.size() > TrendReader::kMostLines) return false;
    // In whatever form the time is: that it is the same is enough.
    const Value vtTime = rs.ValueAt(row, time);
    if (const auto* at = vtTime.As<Timestamp>())
      bSeveralAtOnce |= !times.insert(TrendTime(*at)).second;
    if (const auto* wall = vtTime.As<platform::WallTime>()) {
      bSeveralAtOnce |= !times.insert(static_cast<double>(wall->time_since_epoch().count())).second;
    }
    if (const auto* days = vtTime.As<double>()) bSeveralAtOnce |= !times.insert(*days).second;
  }
  return bSeveralAtOnce;
}

std::optional<ColumnIndex> TagColumn(const Recordset& rs, ColumnIndex time) {
  std::optional<ColumnIndex> first;
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    const platform::Field& field = rs.FieldAt(column);
    if (field.Type() != DataType::WChar) continue;
    if (platform::FoldCase(field.Name()) == "tag") return column;
    if (!first) first = column;
  }
  return first && TellsWhose(rs, *first, time) ? first : std::nullopt;
}

}  // namespace

Text TrendLine::StoredText(std::size_t point) const {
  if (const auto sStored = series.StoredAt(point); !sStored.empty()) return Text(sStored);
  const double value = series.ValueAt(point);
  // Of whole numbers a double would be written shorter (1e+05).
  const bool bInteger = bWhole && value == std::trunc(value);
  return bInteger ? platform::ToText(static_cast<std::int64_t>(value)) : Text();
}

double TrendTime(Timestamp time) {
  return static_cast<double>(time.time_since_epoch().count());
}

Timestamp TimestampOf(double time) {
  return Timestamp(std::chrono::microseconds(static_cast<std::int64_t>(time)));
}

std::optional<TrendColumns> TrendColumns::Of(const Recordset& rs) {
  TrendColumns columns;
  bool bTime = false;
  bool bNamed = false;
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    const platform::Field& field = rs.FieldAt(column);
    if (IsNumber(field.Type()) && !field.HoldsTimes()) columns.numbers.push_back(column);
    if (field.Type() == DataType::WChar && platform::FoldCase(field.Name()) == "unit") {
      columns.unit = column;
    }
    if (!field.HoldsTimes() || bNamed) continue;
    bNamed = field.Name() == "Timestamp";
    if (!bTime || bNamed) columns.time = column;
    bTime = true;
  }
  if (!bTime || columns.numbers.empty()) return std::nullopt;
  columns.tag = TagColumn(rs, columns.time);
  return columns;
}

TrendReader::TrendReader(platform::RecordsetPtr rs, TrendColumns columns, zones::TimeZone zone,
                         SeenRows seen)
    : m_rs(std::move(rs)),
      m_memory(m_rs->Memory()),
      m_columns(std::move(columns)),
      m_zone(std::move(zone)),
      m_seen(std::move(seen)),
      m_bCut(m_rs->State() != platform::FetchState::Complete) {
  if (!m_columns.tag) LinesOf({});
}

double TrendReader::Progress() const {
  const RowIndex rows = m_rs ? m_rs->RecordCount() : 0;
  return rows == 0 ? 1.0 : static_cast<double>(m_next) / static_cast<double>(rows);
}

bool TrendReader::Read(RowIndex rows) {
  if (!m_rs) return false;
  const RowIndex end = std::min(m_rs->RecordCount(), m_next + rows);
  for (; m_next < end; ++m_next) ReadRow(m_next);
  if (m_next < m_rs->RecordCount()) return true;
  m_rs.reset();
  return false;
}

void TrendReader::Finish(const std::stop_token& stop) {
  for (TrendLine& line : m_lines) line.series.Finish(stop);
}

void TrendReader::ReadRow(RowIndex row) {
  if (m_seen && !m_seen(row)) return;
  const Value vtTime = m_rs->ValueAt(row, m_columns.time);
  std::optional<Timestamp> time;
  if (const auto* at = vtTime.As<Timestamp>()) time = *at;
  if (const auto* wall = vtTime.As<platform::WallTime>()) time = m_zone.ToTimestamp(*wall);
  if (const auto* days = vtTime.As<double>()) time = m_zone.FromDays(*days);
  if (!time || m_rs->StateAt(row) == platform::RowState::Deleted) return;
  const auto line = LinesOf(m_columns.tag ? m_rs->ValueAt(row, *m_columns.tag) : Value());
  if (!line) return;
  if (m_columns.unit && m_lines[*line].sUnit.empty()) {
    const Value vtUnit = m_rs->ValueAt(row, *m_columns.unit);
    const Text sUnit = vtUnit.IsNull() ? Text() : platform::ToText(vtUnit);
    for (std::size_t n = 0; n < m_columns.numbers.size(); ++n) m_lines[*line + n].sUnit = sUnit;
  }
  for (std::size_t n = 0; n < m_columns.numbers.size(); ++n) {
    Text sStored;
    const double number = NumberOf(m_rs->ValueAt(row, m_columns.numbers[n]), sStored);
    m_lines[*line + n].series.Append(TrendTime(*time), number, sStored);
  }
}

std::optional<std::size_t> TrendReader::LinesOf(const Value& vtTag) {
  if (!m_columns.tag && !m_lines.empty()) return 0;
  static const Text kNobody;
  const Text* sText = vtTag.As<Text>();
  const Text& sTag = sText != nullptr ? *sText : kNobody;
  if (const auto found = m_firstLines.find(sTag); found != m_firstLines.end()) return found->second;
  if (!m_lines.empty() && m_lines.size() + m_columns.numbers.size() > kMostLines) {
    m_tagsLeftOut.insert(sTag);
    return std::nullopt;
  }
  const std::size_t first = m_lines.size();
  for (const ColumnIndex column : m_columns.numbers) {
    const Text& sColumn = m_rs->FieldAt(column).Name();
    const DataType type = m_rs->FieldAt(column).Type();
    TrendLine line{
        {}, sTag, {}, TrendSeries(m_memory), type == DataType::Integer || type == DataType::BigInt};
    line.sName = !m_columns.tag                  ? sColumn
                 : m_columns.numbers.size() == 1 ? sTag
                                                 : sTag + ", " + sColumn;
    if (m_lines.size() - first < kMostLines) m_lines.push_back(std::move(line));
  }
  m_columns.numbers.resize(m_lines.size() - first);
  m_firstLines.emplace(sTag, first);
  return first;
}

}  // namespace orvane::trend
