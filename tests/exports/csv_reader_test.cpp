#include "exports/csv_reader.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "platform/failure.h"

namespace orvane::exports {
namespace {

using platform::Text;

// Fields in brackets, those in quotes with a "q", records parted by their line and a blank.
Text Read(const Text& sFile) {
  std::istringstream stream(sFile);
  Text sRead;
  try {
    CsvReader reader(stream);
    while (const auto record = reader.Next()) {
      sRead += std::to_string(reader.Line()) + ":";
      for (const auto& field : *record) {
        sRead += (field.bQuoted ? "q[" : "[") + field.sText + "]";
      }
      sRead += " ";
    }
  } catch (const platform::Failure& failure) {
    return failure.Description();
  }
  return sRead;
}

TEST(csv_reader, reads_records_and_counts_their_lines) {
  EXPECT_EQ(Read("a,b\n1,2\n"), "1:[a][b] 2:[1][2] ");
  EXPECT_EQ(Read("a,b\r\n1,2"), "1:[a][b] 2:[1][2] ");
  EXPECT_EQ(Read("a,,b\n,\n"), "1:[a][][b] 2:[][] ");
  EXPECT_EQ(Read(""), "");
  EXPECT_EQ(Read("a\n\n\nb\n"), "1:[a] 4:[b] ");
  EXPECT_EQ(Read("a b\t, c \n"), "1:[a b\t][ c ] ");
}

TEST(csv_reader, reads_quoted_fields) {
  EXPECT_EQ(Read("\"a,b\",\"c\"\"d\"\n"), "1:q[a,b]q[c\"d] ");
  EXPECT_EQ(Read("\"a\r\nb\"\r\nc\n"), "1:q[a\r\nb] 3:[c] ");
  EXPECT_EQ(Read("\"\"\n"), "1:q[] ");
  EXPECT_EQ(Read("\"\",x"), "1:q[][x] ");
}

TEST(csv_reader, skips_a_byte_order_mark_at_the_start_only) {
  EXPECT_EQ(Read("\xEF\xBB\xBF"
                 "a\n"),
            "1:[a] ");
  EXPECT_EQ(Read("\xEF\xBB\xBF\"a\"\n"), "1:q[a] ");
  EXPECT_EQ(Read("\xEF\xBB\xA0\n"), "1:[\xEF\xBB\xA0] ");
}

TEST(csv_reader, says_on_which_line_a_quote_is_wrong) {
  EXPECT_EQ(Read("a\nb\"c\n"),
            "Line 2: a quote stands inside of a field that does not begin with one; nothing was "
            "imported.");
  EXPECT_EQ(Read("a\n\"b\nc"), "Line 2: a quote is opened and never closed; nothing was imported.");
  EXPECT_EQ(Read("\"a\"b\n"), "Line 1: something follows a closing quote; nothing was imported.");
}

TEST(csv_reader, refuses_bytes_that_are_no_text) {
  EXPECT_EQ(Read("a\n\xFF\n"), "Line 2: a field is no UTF-8 text; nothing was imported.");
  EXPECT_EQ(Read("\xC0\xAF"), "Line 1: a field is no UTF-8 text; nothing was imported.");
  EXPECT_EQ(Read("\xED\xA0\x80"), "Line 1: a field is no UTF-8 text; nothing was imported.");
  EXPECT_EQ(Read("\xF0\x9F\x98"), "Line 1: a field is no UTF-8 text; nothing was imported.");
  EXPECT_EQ(Read("\xF0\x9F\x98\x80"), "1:[\xF0\x9F\x98\x80] ");
  EXPECT_EQ(Read(Text("a\n\0b", 4)), "Line 2: there is a zero byte; nothing was imported.");
  EXPECT_EQ(Read(Text("\"a\0b\"", 5)), Text("1:q[a\0b] ", 9)) << "in quotes it is one as any other";
}

TEST(csv_reader, reads_back_whatever_is_written_in_quotes) {
  std::mt19937 random(7);
  const Text sCharacters("a,\"\n\r ;'\0", 9);
  for (int i = 0; i < 2000; ++i) {
    Text sField;
    for (auto n = random() % 8; n > 0; --n) sField += sCharacters[random() % sCharacters.size()];
    Text sQuoted = "\"";
    for (const char c : sField) sQuoted += c == '"' ? Text("\"\"") : Text(1, c);
    std::istringstream stream(sQuoted + "\",x\n");
    CsvReader reader(stream);
    const auto record = reader.Next();
    ASSERT_TRUE(record.has_value());
    ASSERT_EQ(record->size(), 2U);
    EXPECT_EQ(record->front().sText, sField);
  }
}

TEST(csv_reader, keeps_empty_lines_where_it_is_told_to) {
  std::istringstream stream("a\n\r\n\nb\n");
  CsvReader reader(stream);
  reader.KeepEmptyLines(true);
  int nRecords = 0;
  while (const auto record = reader.Next()) {
    ++nRecords;
    EXPECT_EQ(record->front().sText.empty(), reader.Line() == 2 || reader.Line() == 3);
  }
  EXPECT_EQ(nRecords, 4);
}

TEST(csv_reader, takes_no_record_of_any_length_into_memory) {
  // As a file is that has a quote too many.
  std::istringstream stream("a\n\"" + Text(50, 'b') + ",\n" + Text(50, 'b'));
  CsvReader reader(stream);
  reader.MostBytes(100);
  reader.Next();
  try {
    reader.Next();
    ADD_FAILURE();
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Description(), "Line 2: it is too long for a row; nothing was imported.");
  }
}

}  // namespace
}  // namespace orvane::exports
