#include "provider/engines/sqlite/sqlite_stored_times.h"

#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/quoting.h"
#include "provider/engines/sqlite/sqlite_statement.h"

namespace orvane::provider::engines {
namespace {

using platform::Text;

/// By which its row is told: its number, or in a table whose rows have none its type.
struct OddTime {
  Text sRow;
  Text sCondition;
  Text sValue;
};

bool NumbersRows(sqlite3* database, const TimeColumn& column) {
  return sqlite3_table_column_metadata(database, column.sCatalog.c_str(), column.sTable.c_str(),
                                       "rowid", nullptr, nullptr, nullptr, nullptr,
                                       nullptr) == SQLITE_OK;
}

/// What the column should hold, what to write there, and what else can be done.
struct Instead {
  Text sKind;
  Text sSuch;
  Text sAdvice{};
};

Instead InsteadOf(const TimeColumn& column) {
  if (column.type == platform::DataType::DBTimeStamp) return {"time", "'2024-05-31 10:00'"};
  const Text sAdvice = ", or write CAST(" + platform::QuotedName(column.sColumn) +
                       " AS INTEGER) where numbers are meant";
  if (column.type == platform::DataType::DBDate) return {"date", "'2024-05-31'", sAdvice};
  return {"time of day", "'08:30'", sAdvice};
}

std::optional<OddTime> FindOdd(sqlite3* database, const TimeColumn& column, const Text& sSubject) {
  const bool bNumbered = NumbersRows(database, column);
  const Text sColumn = platform::QuotedName(column.sColumn);
  // Behind all numbers come the texts, and behind these the bytes.
  const Text sOdd = column.type == platform::DataType::DBTimeStamp
                        ? sColumn + " >= ''"
                        : "(" + sColumn + " < '' OR " + sColumn + " >= x'')";
  const Text sSql = "SELECT CASE WHEN " + sColumn + " < '' THEN quote(" + sColumn +
                    ") ELSE quote(substr(" + sColumn + ", 1, 40)) END, length(" + sColumn +
                    ") > 40, typeof(" + sColumn + ")" + (bNumbered ? ", quote(rowid)" : Text()) +
                    " FROM " + platform::QuotedName(column.sCatalog) + "." +
                    platform::QuotedName(column.sTable) + " WHERE " + sOdd + " LIMIT 1";
  SqliteStatement statement(database, sSql, sSubject);
  const auto rs = statement.FetchAll(false);
  if (rs->RecordCount() == 0) return std::nullopt;
  OddTime odd;
  odd.sValue = platform::ToText(rs->ValueAt(0, 0));
  if (platform::ToLong(rs->ValueAt(0, 1)) != 0) odd.sValue += "...";
  if (bNumbered) {
    const Text sNumber = platform::ToText(rs->ValueAt(0, 3));
    odd.sRow = "its row " + sNumber;
    odd.sCondition = "rowid = " + sNumber;
  } else {
    odd.sRow = "one of its rows";
    odd.sCondition = "typeof(" + sColumn + ") = '" + platform::ToText(rs->ValueAt(0, 2)) + "'";
  }
  return odd;
}

}  // namespace

void CheckStoredTimes(sqlite3* database, std::span<const TimeColumn> columns,
                      const Text& sSubject) {
  for (const TimeColumn& column : columns) {
    const auto odd = FindOdd(database, column, sSubject);
    if (!odd) continue;
    const Instead instead = InsteadOf(column);
    const Text sMend = column.bComputed ? "change what it is computed from WHERE " + odd->sCondition
                                        : "write a " + instead.sKind + " there by UPDATE ... SET " +
                                              platform::QuotedName(column.sColumn) + " = " +
                                              instead.sSuch + " WHERE " + odd->sCondition;
    throw platform::Failure(platform::failure::kSqlError,
                            "The column \"" + column.sColumn + "\" of the table \"" +
                                column.sTable + "\" in the catalog " + column.sCatalog + " holds " +
                                odd->sValue + " in " + odd->sRow + " and no " + instead.sKind +
                                ", so nothing can be compared with it: " + sMend +
                                ", or DELETE that row" + instead.sAdvice + ".",
                            "SQLite");
  }
}

}  // namespace orvane::provider::engines
