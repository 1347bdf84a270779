#include "provider/historian/functions_catalog.h"

#include <fmt/format.h>

#include <cstdint>

#include "platform/quoting.h"

namespace orvane::provider::historian {
namespace {

using platform::Text;

struct FunctionRow {
  const char* sName;
  const char* sKind;
  const char* sDescription;
  const char* sExample;
};

// The examples over Plant1 run as they stand on a historian with generated plant signals.
constexpr FunctionRow kFunctions[] = {
    {"avg", "aggregate", "Mean of the values that are not null.",
     "SELECT Tag, avg(Value) FROM Plant1..Data GROUP BY Tag"},
    {"count", "aggregate", "Number of rows, or of values that are not null.",
     "SELECT count(*) FROM Plant1..Data"},
    {"group_concat", "aggregate", "Texts of a group, joined by a separator.",
     "SELECT group_concat(Tag, ', ') FROM Plant1..Tags"},
    {"max", "aggregate", "Greatest value; of times the last one.",
     "SELECT Tag, max(Timestamp) FROM Plant1..Data GROUP BY Tag"},
    {"min", "aggregate", "Least value; of times the first one.",
     "SELECT Tag, min(Timestamp) FROM Plant1..Data GROUP BY Tag"},
    {"sum", "aggregate", "Sum of the values, null when there are none.",
     "SELECT sum(Value) FROM Plant1..Data"},
    {"total", "aggregate", "Sum of the values as a number, 0 when there are none.",
     "SELECT total(Value) FROM Plant1..Data"},
    {"abs", "number", "The number without its sign.", "SELECT abs(-1.5)"},
    {"round", "number", "The number rounded to so many digits behind the point.",
     "SELECT round(3.14159, 2)"},
    {"sign", "number", "-1, 0 or 1.", "SELECT sign(-7)"},
    {"random", "number", "Any 64-bit integer.", "SELECT random()"},
    {"coalesce", "general", "The first argument that is not null.",
     "SELECT coalesce(NULL, 'none')"},
    {"ifnull", "general", "The first argument, or the second when it is null.",
     "SELECT ifnull(NULL, 0)"},
    {"iif", "general", "The second argument when the first is true, otherwise the third.",
     "SELECT iif(2 > 1, 'yes', 'no')"},
    {"nullif", "general", "The first argument, or null when both are equal.",
     "SELECT nullif('a', 'a')"},
    {"typeof", "general", "How a value is stored.", "SELECT typeof(1.5)"},
    {"format", "text", "Text made from a pattern and values.", "SELECT format('%.1f', 3.14159)"},
    {"instr", "text", "Place of a text in another, from 1; 0 when it is not there.",
     "SELECT instr('Plant1', '1')"},
    {"length", "text", "Number of characters.", "SELECT length('Plant1')"},
    {"lower", "text", "The text in small ASCII letters.", "SELECT lower('Plant1')"},
    {"replace", "text", "The text with one part replaced by another.",
     "SELECT replace('a-b', '-', '.')"},
    {"substr", "text", "Part of a text from a place, so many characters long.",
     "SELECT substr('Plant1', 1, 5)"},
    {"trim", "text", "The text without blanks at its ends.", "SELECT trim('  a  ')"},
    {"upper", "text", "The text in ASCII capitals.", "SELECT upper('Plant1')"},
    {"lag", "window", "The value of an earlier row.",
     "SELECT Timestamp, Value - lag(Value) OVER (ORDER BY Timestamp) FROM Plant1..Data"},
    {"lead", "window", "The value of a later row.",
     "SELECT Timestamp, lead(Value) OVER (ORDER BY Timestamp) FROM Plant1..Data"},
    {"row_number", "window", "Number of the row, from 1.",
     "SELECT row_number() OVER (ORDER BY Tag), Tag FROM Plant1..Tags"},
};

struct TimeRow {
  const char* sExpression;
  const char* sDescription;
  const char* sExample;
};

constexpr TimeRow kTimes[] = {
    {"*", "Now.", "SELECT * FROM Plant1..Data WHERE Timestamp <= '*'"},
    {"t", "Today: the first moment of the day in the connection's time zone.",
     "SELECT * FROM Plant1..Data WHERE Timestamp >= 't'"},
    {"y", "Yesterday: the first moment of the day before.",
     "SELECT * FROM Plant1..Data WHERE Timestamp BETWEEN 'y' AND 't'"},
    {"2024-05-31", "A date, in the connection's time zone.",
     "SELECT * FROM Plant1..Data WHERE Timestamp >= '2024-05-31'"},
    {"2024-05-31T17:45:30", "A date and a time, in the connection's time zone.",
     "SELECT * FROM Plant1..Data WHERE Timestamp >= '2024-05-31T17:45:30'"},
    {"2024-05-31T17:45:30Z", "A date and a time in UTC; +01:00 and the like are offsets from it.",
     "SELECT * FROM Plant1..Data WHERE Timestamp >= '2024-05-31T17:45:30Z'"},
    {"*-30s", "So many seconds before; + is after.",
     "SELECT * FROM Plant1..Data WHERE Timestamp >= '*-30s'"},
    {"*-15m", "So many minutes before.", "SELECT * FROM Plant1..Data WHERE Timestamp >= '*-15m'"},
    {"*-1h", "So many hours before.",
     "SELECT * FROM Plant1..Data WHERE Timestamp BETWEEN '*-1h' AND '*'"},
    {"*-1d", "The same time so many days before.",
     "SELECT * FROM Plant1..Data WHERE Timestamp >= '*-1d'"},
    {"*-1w", "The same time so many weeks before.",
     "SELECT * FROM Plant1..Data WHERE Timestamp >= '*-1w'"},
    {"*-1mo", "The same day of the month so many months before, or the month's last day.",
     "SELECT * FROM Plant1..Data WHERE Timestamp >= '*-1mo'"},
    {"*-1y", "The same day so many years before.",
     "SELECT * FROM Plant1..Data WHERE Timestamp >= '*-1y'"},
    {"t+8h-30m", "Any number of such steps, from left to right.",
     "SELECT * FROM Plant1..Data WHERE Timestamp BETWEEN 't+8h-30m' AND 't+16h'"},
};

}  // namespace

Text FunctionsFile() {
  // Asked for whenever catalogs are listed, and always the same.
  static const Text sFile = [] {
    std::uint32_t nSum = 2166136261U;
    for (const char c : FunctionsStatements()) {
      nSum = (nSum ^ static_cast<unsigned char>(c)) * 16777619U;
    }
    return fmt::format("Functions.{:08x}.db", nSum);
  }();
  return sFile;
}

Text FunctionRows() {
  Text sRows;
  for (const auto& row : kFunctions) {
    sRows += sRows.empty() ? "(" : ", (";
    sRows += platform::QuotedText(row.sName) + "," + platform::QuotedText(row.sKind) + "," +
             platform::QuotedText(row.sDescription) + "," + platform::QuotedText(row.sExample) +
             ")";
  }
  return sRows;
}

Text TimeExpressionRows() {
  Text sRows;
  for (const auto& row : kTimes) {
    sRows += sRows.empty() ? "(" : ", (";
    sRows += platform::QuotedText(row.sExpression) + "," + platform::QuotedText(row.sDescription) +
             "," + platform::QuotedText(row.sExample) + ")";
  }
  return sRows;
}

Text FunctionsStatements() {
  return "CREATE TABLE Functions (Name TEXT NOT NULL PRIMARY KEY, Kind TEXT NOT NULL, "
         "Description TEXT NOT NULL, Example TEXT NOT NULL) WITHOUT ROWID;"
         "CREATE TABLE TimeExpressions (Expression TEXT NOT NULL PRIMARY KEY, "
         "Description TEXT NOT NULL, Example TEXT NOT NULL) WITHOUT ROWID;"
         "INSERT INTO Functions VALUES " +
         FunctionRows() + ";INSERT INTO TimeExpressions VALUES " + TimeExpressionRows() + ";";
}

}  // namespace orvane::provider::historian
