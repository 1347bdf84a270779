#include "provider/result_times.h"

#include "ado/recordset_builder.h"

namespace orvane::provider {
namespace {

using platform::ColumnIndex;
using platform::DataType;
using platform::Value;

bool IsMarked(const std::vector<platform::Boolean>& timeColumns, ColumnIndex column) {
  return static_cast<std::size_t>(column) < timeColumns.size() &&
         timeColumns[static_cast<std::size_t>(column)];
}

Value AsTimestamp(Value vtValue) {
  if (const auto* const ll = vtValue.As<std::int64_t>()) {
    return platform::Timestamp(std::chrono::microseconds(*ll));
  }
  return vtValue;
}

Value AsDays(const Value& vtValue, const dialect::TimeZone& zone) {
  const auto* const time = vtValue.As<platform::Timestamp>();
  return time != nullptr && dialect::IsInRange(*time) ? Value(zone.ToDays(*time)) : vtValue;
}

}  // namespace

platform::RecordsetPtr WithShownTimes(platform::RecordsetPtr rs,
                                      const std::vector<platform::Boolean>& timeColumns,
                                      platform::Boolean bTimeAsDouble,
                                      const dialect::TimeZone& zone) {
  std::vector<ado::ColumnDescription> columns;
  std::vector<bool> times;
  bool bSame = true;
  for (ColumnIndex column = 0; column < rs->FieldCount(); ++column) {
    const auto& field = rs->FieldAt(column);
    DataType type = field.Type();
    const bool bNumbers = type == DataType::BigInt || type == DataType::Empty;
    const bool bTime = type == DataType::DBTimeStamp || (bNumbers && IsMarked(timeColumns, column));
    if (bTime && (bTimeAsDouble || type != DataType::DBTimeStamp)) {
      type = bTimeAsDouble ? DataType::Double : DataType::DBTimeStamp;
      bSame = false;
    }
    columns.push_back({field.Name(), type, field.Nullable()});
    times.push_back(bTime);
  }
  if (bSame) return rs;

  ado::RecordsetBuilder builder(std::move(columns));
  for (ColumnIndex column = 0; column < rs->FieldCount(); ++column) {
    auto& target = builder.ColumnAt(column);
    const bool bTime = times[static_cast<std::size_t>(column)];
    for (platform::RowIndex row = 0; row < rs->RecordCount(); ++row) {
      Value vtValue = rs->ValueAt(row, column);
      if (bTime) vtValue = AsTimestamp(std::move(vtValue));
      if (bTime && bTimeAsDouble) vtValue = AsDays(vtValue, zone);
      target.AppendValue(vtValue);
    }
  }
  return builder.Finish(rs->Truncated(), rs->Elapsed());
}

}  // namespace orvane::provider
