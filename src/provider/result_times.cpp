#include "provider/result_times.h"

#include <cmath>
#include <utility>

namespace orvane::provider {
namespace {

using dialect::Content;
using platform::DataType;
using platform::Value;

Content ContentAt(const std::vector<Content>& contents, std::size_t place) {
  return place < contents.size() ? contents[place] : Content::Other;
}

Value AsTimestamp(Value vtValue) {
  if (const auto* const ll = vtValue.As<std::int64_t>()) {
    return platform::Timestamp(std::chrono::microseconds(*ll));
  }
  // What was added to a time may have led to a part of a microsecond.
  constexpr double kMost = 9.2e18;
  const auto* const d = vtValue.As<double>();
  if (d != nullptr && *d > -kMost && *d < kMost) {
    return platform::Timestamp(std::chrono::microseconds(std::llround(*d)));
  }
  return vtValue;
}

Value AsNumber(Value vtValue) {
  if (const auto* const time = vtValue.As<platform::Timestamp>()) {
    return static_cast<std::int64_t>(time->time_since_epoch().count());
  }
  return vtValue;
}

Value AsDays(const Value& vtValue, const zones::TimeZone& zone) {
  const auto* const time = vtValue.As<platform::Timestamp>();
  return time != nullptr && zones::IsInRange(*time) ? Value(zone.ToDays(*time)) : vtValue;
}

}  // namespace

ShownTimes::Change ShownTimes::ChangeOf(DataType type, Content content, bool bTimeAsDouble) {
  // The engine goes by the first of the SELECTs that are joined.
  if (content == Content::Mixed) {
    return type == DataType::DBTimeStamp ? Change::ToNumbers : Change::None;
  }
  const bool bNumbers =
      type == DataType::BigInt || type == DataType::Double || type == DataType::Empty;
  if (type != DataType::DBTimeStamp && !(bNumbers && content == Content::Time)) return Change::None;
  if (bTimeAsDouble) return Change::ToDays;
  return type == DataType::DBTimeStamp ? Change::None : Change::ToTimes;
}

DataType ShownTimes::Changed(DataType type, Change change) {
  switch (change) {
    case Change::ToTimes:
      return DataType::DBTimeStamp;
    case Change::ToDays:
      return DataType::Double;
    case Change::ToNumbers:
      return DataType::Empty;
    case Change::None:
      break;
  }
  return type;
}

Value ShownTimes::Changed(Value vtValue, Change change) const {
  switch (change) {
    case Change::ToTimes:
      return AsTimestamp(std::move(vtValue));
    case Change::ToDays:
      return AsDays(AsTimestamp(std::move(vtValue)), m_display.zone);
    case Change::ToNumbers:
      return AsNumber(std::move(vtValue));
    case Change::None:
      break;
  }
  return vtValue;
}

void ShownTimes::Begin(std::vector<ado::ColumnDescription> columns, platform::Boolean bReads) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const Change change = ChangeOf(columns[i].type, ContentAt(m_contents, i), m_display.bAsDouble);
    columns[i].type = Changed(columns[i].type, change);
    columns[i].bDays = change == Change::ToDays;
    m_changes.push_back(change);
  }
  m_rows->Begin(std::move(columns), bReads);
}

void ShownTimes::Take(std::span<ado::Column> block) {
  for (std::size_t i = 0; i < block.size(); ++i) {
    if (m_changes[i] == Change::None) continue;
    m_changed.Clear();
    for (platform::RowIndex row = 0; row < block[i].RowCount(); ++row) {
      m_changed.AppendValue(Changed(block[i].ValueAt(row), m_changes[i]));
    }
    std::swap(block[i], m_changed);
  }
  const platform::RowIndex rows = block.empty() ? 0 : block.front().RowCount();
  m_rows->Take(block);
  m_taken += rows;
}

}  // namespace orvane::provider
