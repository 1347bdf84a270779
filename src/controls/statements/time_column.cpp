#include "controls/statements/time_column.h"

#include <array>

#include "controls/statements/row_key.h"
#include "platform/ado/column_flags.h"
#include "platform/ado/extended_options.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::DataType;
using platform::Text;
using platform::Value;

namespace {

/// The historian's own name for it; a table may have other times beside it.
constexpr const char* kTimeColumn = "Timestamp";

bool NullIsNewest(const platform::RecordsetPtr& columns) {
  const platform::Long lFlags = FlagsOfColumn(columns).value_or(0);
  if ((lFlags & platform::column_flags::kNullIsLast) == 0) return false;
  return platform::ToBoolean(columns->Fields().Item("IS_NULLABLE").Value());
}

}  // namespace

TableTimeColumn TimeColumnOf(platform::Connection& cn, const Text& sCatalog, const Text& sTable) {
  // The schema's name in the middle stays unset.
  const std::array<Value, 3> restrictions{sCatalog.empty() ? Value() : Value(sCatalog), Value(),
                                          Value(sTable)};
  const platform::RecordsetPtr rs = cn.OpenSchema(platform::SchemaNumber::Columns, restrictions);
  if (!rs) return {};
  const bool bNumbers = GivesTimesAsNumbers(cn);
  const platform::Field& name = rs->Fields().Item("COLUMN_NAME");
  const platform::Field& type = rs->Fields().Item("DATA_TYPE");
  TableTimeColumn found;
  for (; !rs->Eof(); rs->MoveNext()) {
    const auto told = static_cast<DataType>(platform::ToLong(type.Value()));
    const bool bDays = told == DataType::Double && bNumbers;
    if (told != DataType::DBTimeStamp && told != DataType::WallTime && !bDays) continue;
    Text sName = platform::ToText(name.Value());
    const bool bNamed = sName == kTimeColumn;
    if (!bNamed && (found.name || bDays)) continue;
    found = {std::move(sName), NullIsNewest(rs)};
    if (bNamed) return found;
  }
  return found;
}

std::optional<ColumnIndex> TimeColumnOf(const platform::Recordset& rs) {
  std::optional<ColumnIndex> found;
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    const platform::Field& field = rs.FieldAt(column);
    if (!field.HoldsTimes()) continue;
    if (field.Name() == kTimeColumn) return column;
    if (!found) found = column;
  }
  return found;
}

std::optional<platform::Timestamp> TimeIn(const Value& vt, const zones::TimeZone& zone) {
  if (const auto* time = vt.As<platform::Timestamp>()) return *time;
  if (const auto* wall = vt.As<platform::WallTime>()) return zone.ToTimestamp(*wall);
  if (const auto* days = vt.As<double>()) return zone.FromDays(*days);
  return std::nullopt;
}

bool GivesTimesAsNumbers(platform::Connection& cn) {
  try {
    return platform::ToBoolean(cn.Properties().Item(platform::kTimeAsDoubleOption).Value());
  } catch (const platform::Failure&) {
    return false;  // another provider, without the option
  }
}

}  // namespace orvane::controls
