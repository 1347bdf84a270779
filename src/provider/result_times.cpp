#include "provider/result_times.h"

#include <cmath>

#include "ado/out_of_memory.h"
#include "ado/recordset_builder.h"

namespace orvane::provider {
namespace {

using dialect::Content;
using platform::ColumnIndex;
using platform::DataType;
using platform::Value;

enum class Change : std::uint8_t { None, ToTimes, ToDays, ToNumbers };

Content ContentAt(const std::vector<Content>& contents, ColumnIndex column) {
  const auto place = static_cast<std::size_t>(column);
  return place < contents.size() ? contents[place] : Content::Other;
}

Change ChangeOf(DataType type, Content content, bool bTimeAsDouble) {
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

DataType Changed(DataType type, Change change) {
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

Value Changed(Value vtValue, Change change, const zones::TimeZone& zone) {
  switch (change) {
    case Change::ToTimes:
      return AsTimestamp(std::move(vtValue));
    case Change::ToDays:
      return AsDays(AsTimestamp(std::move(vtValue)), zone);
    case Change::ToNumbers:
      return AsNumber(std::move(vtValue));
    case Change::None:
      break;
  }
  return vtValue;
}

}  // namespace

platform::RecordsetPtr WithShownTimes(platform::RecordsetPtr rs,
                                      const std::vector<Content>& contents,
                                      const TimeDisplay& display, const ResultLimits& limits) {
  std::vector<ado::ColumnDescription> columns;
  std::vector<Change> changes;
  bool bSame = true;
  for (ColumnIndex column = 0; column < rs->FieldCount(); ++column) {
    const auto& field = rs->FieldAt(column);
    const Change change = ChangeOf(field.Type(), ContentAt(contents, column), display.bAsDouble);
    if (change != Change::None) bSame = false;
    columns.push_back({field.Name(), Changed(field.Type(), change), field.Nullable()});
    changes.push_back(change);
  }
  if (bSame) return rs;

  constexpr platform::RowIndex kRowsBetweenLooks = 4096;
  ado::RecordsetBuilder builder(std::move(columns));
  const auto look = [&] {
    if (limits.stop.stop_requested()) {
      throw platform::Failure(platform::failure::kCancelled, "The statement was cancelled.");
    }
    if (limits.maxBytes != 0 && builder.Bytes() > limits.maxBytes) throw ado::OutOfMemory();
  };
  for (ColumnIndex column = 0; column < rs->FieldCount(); ++column) {
    auto& target = builder.ColumnAt(column);
    const Change change = changes[static_cast<std::size_t>(column)];
    for (platform::RowIndex row = 0; row < rs->RecordCount(); ++row) {
      if (row % kRowsBetweenLooks == 0) look();
      target.AppendValue(Changed(rs->ValueAt(row, column), change, display.zone));
    }
  }
  return builder.Finish(rs->Truncated(), rs->Elapsed());
}

}  // namespace orvane::provider
