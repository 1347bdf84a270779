// Rows of files as values for a table's columns.
#include "exports/row_import.h"

#include <gtest/gtest.h>

#include <sstream>

#include "platform/conversions.h"
#include "platform/row_failure.h"

namespace orvane::exports {
namespace {

using platform::DataType;
using platform::Failure;
using platform::Text;
using platform::Value;

const std::vector<ImportColumn> kColumns{
    {"Tag", DataType::WChar},          {"Timestamp", DataType::DBTimeStamp},
    {"Value", DataType::Double},       {"Price", DataType::Numeric, false, true},
    {"Twice", DataType::Double, true}, {"Money", DataType::Empty, false, true}};

Text Import(const Text& sFile) {
  std::istringstream stream(sFile);
  Text sRead;
  try {
    RowImport rows(stream, "Data", kColumns, zones::TimeZone("Europe/Berlin"));
    for (const auto& column : rows.Columns()) sRead += column.sName + " ";
    std::vector<Value> values;
    while (rows.Next(values)) {
      sRead += "/";
      for (const Value& vtValue : values) {
        sRead += (vtValue.IsNull() ? Text("null") : platform::ToText(vtValue)) + "|";
      }
    }
  } catch (const Failure& failed) {
    return failed.Description();
  }
  return sRead;
}

TEST(row_import, matches_columns_by_name_and_reads_their_types) {
  EXPECT_EQ(Import("value,TAG\r\n1.5,T1\r\n,\"\"\r\n"), "Value Tag /1.5|T1|/null||");
  EXPECT_EQ(Import("Timestamp\n2024-07-01 12:00\n\n"), "Timestamp /2024-07-01 10:00:00|/null|");
}

TEST(row_import, the_first_line_tells_the_separator) {
  EXPECT_EQ(Import("Tag;Value\r\n\"a;b\";1\r\nc,d;2\r\n"), "Tag Value /a;b|1|/c,d|2|");
  EXPECT_EQ(Import("\xEF\xBB\xBFTag\tValue\na;b\t1\n"), "Tag Value /a;b|1|");
  EXPECT_EQ(Import("\"Tag\";Value\na;1\n"), "Tag Value /a|1|");
  EXPECT_EQ(Import("Tag,\"Value;\"\n"),
            "Line 1: there is no column \"Value;\" in the table Data; nothing was imported.");
}

TEST(row_import, takes_what_only_a_text_writes_where_the_column_does) {
  const auto import = [](DataType type, bool bBeyond, const char* sField) {
    std::istringstream stream("a\n" + Text(sField) + "\n");
    const std::vector<ImportColumn> columns{{"a", type, false, false, bBeyond}};
    RowImport rows(stream, "T", columns, zones::TimeZone::Utc());
    std::vector<Value> values;
    try {
      rows.Next(values);
    } catch (const Failure&) {
      return Value("(refused)");
    }
    return values.at(0);
  };
  for (const auto& [type, sField] : {std::pair{DataType::DBDate, "infinity"},
                                     {DataType::DBDate, "0044-03-15 BC"},
                                     {DataType::DBTimeStamp, "-infinity"},
                                     {DataType::WallTime, "20000-01-01 00:00:00"}}) {
    EXPECT_EQ(import(type, true, sField), Value(sField));
    EXPECT_EQ(import(type, false, sField), Value("(refused)"));
  }
  EXPECT_EQ(import(DataType::DBTime, true, "24:00:00"),
            Value(platform::TimeOfDay(std::chrono::hours(24))));
  EXPECT_EQ(import(DataType::DBDate, true, "soon"), Value("(refused)"));
}

TEST(row_import, rounds_no_decimal) {
  EXPECT_EQ(Import("Price\n0.10\n9007199254740993\n1e22\n"),
            "Price /0.1|/9007199254740993|/1e+22|");
  EXPECT_EQ(
      Import("Tag,Price\na,0.1\nb,0.10000000000000000001\n"),
      "Line 3: \"0.10000000000000000001\" has more digits than the column Price keeps; 15 always "
      "fit; nothing was imported.");
  EXPECT_EQ(
      Import("Money\n1.5\nabc\n12345678901234567890\n"),
      "Line 4: \"12345678901234567890\" has more digits than the column Money keeps; 15 always "
      "fit; nothing was imported.");
  EXPECT_EQ(Import("Price\nabc\n"),
            "Line 2: \"abc\" is not a number for the column Price; nothing was imported.");
}

TEST(row_import, names_the_first_bad_line) {
  EXPECT_EQ(Import(""), "The file is empty; its first line must name columns of the table.");
  EXPECT_EQ(Import("Tag,Color\n"),
            "Line 1: there is no column \"Color\" in the table Data; nothing was imported.");
  EXPECT_EQ(Import("Tag,twice\n"),
            "Line 1: the column \"twice\" takes no value, as the table computes it; leave it out; "
            "nothing was imported.");
  EXPECT_EQ(Import("Tag,tag\n"),
            "Line 1: the column \"tag\" is named twice; nothing was imported.");
  EXPECT_EQ(Import("Tag,Value\na,1\nb\n"),
            "Line 3: it has 1 fields, but the first line names 2 columns; nothing was imported.");
  EXPECT_EQ(Import("Tag,Value\na,1\nb,x\nc,y\n"),
            "Line 3: \"x\" is not a number for the column Value; nothing was imported.");
}

TEST(row_import, tells_the_line_that_a_rule_of_the_table_has_refused) {
  // A row of two lines, and one that was read ahead.
  std::istringstream stream("Tag\n\"a\nA\"\nb\nc\n");
  RowImport rows(stream, "Data", kColumns, zones::TimeZone::Utc());
  std::vector<Value> values;
  while (rows.Next(values)) {
  }
  const auto told = [&](platform::Long lNumber, std::int64_t llRow = 2) {
    try {
      try {
        throw platform::RowFailure(Failure(lNumber, "It stands there already; correct it."), llRow);
      } catch (const Failure&) {
        rows.RethrowOfRow();
      }
    } catch (const Failure& failed) {
      return failed.Description();
    }
    return Text();
  };
  EXPECT_EQ(told(platform::failure::kConstraint),
            "Line 4: It stands there already; correct it; nothing was imported.");
  EXPECT_EQ(told(platform::failure::kConstraint, 1),
            "Line 2: It stands there already; correct it; nothing was imported.");
  EXPECT_EQ(told(platform::failure::kConstraint, 4), "It stands there already; correct it.");
  EXPECT_EQ(told(platform::failure::kConflict),
            "Line 4: the table has not taken this row; nothing was imported.");
  EXPECT_EQ(told(platform::failure::kStorage), "It stands there already; correct it.");
}

// Whoever stores them may have read so many rows ahead, and no more.
TEST(row_import, knows_the_lines_of_all_rows_that_may_fail_yet) {
  std::string sFile = "Tag\n";
  for (int n = 0; n < 20'000; ++n) sFile += "a\n";
  std::istringstream stream(sFile);
  RowImport rows(stream, "Data", kColumns, zones::TimeZone::Utc());
  std::vector<Value> values;
  while (rows.Next(values)) {
  }
  const auto told = [&](std::int64_t llRow) {
    try {
      try {
        throw platform::RowFailure(Failure(platform::failure::kConstraint, "No."), llRow);
      } catch (const Failure&) {
        rows.RethrowOfRow();
      }
    } catch (const Failure& failed) {
      return failed.Description();
    }
    return Text();
  };
  const auto llFirst = 20'000 - platform::kMostRowsAhead;
  EXPECT_EQ(told(llFirst), "Line " + std::to_string(llFirst + 1) + ": No; nothing was imported.");
  EXPECT_EQ(told(llFirst - 1), "No.");
}

}  // namespace
}  // namespace orvane::exports
