#include "exports/row_writer.h"

#include <gtest/gtest.h>

#include <limits>

#include "ado/recordset_builder.h"

namespace orvane::exports {
namespace {

using platform::Decimal;
using platform::Null;
using platform::RecordsetPtr;
using platform::Text;
using platform::Timestamp;
using platform::Value;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

Timestamp At(std::int64_t llMicroseconds) {
  return Timestamp(std::chrono::microseconds(llMicroseconds));
}

RecordsetPtr One(const Value& vtValue, const char* sName = "v") {
  ado::RecordsetBuilder builder({{sName}});
  builder.AppendRow({vtValue});
  return builder.Finish();
}

Text Written(const platform::Recordset& rs, WriterOptions options) {
  const auto writer = MakeRowWriter(std::move(options));
  Text sOut;
  writer->Begin(rs, AllColumns(rs), sOut);
  for (platform::RowIndex row = 0; row < rs.RecordCount(); ++row) writer->Row(rs, row, sOut);
  return sOut;
}

Text Csv(const Value& vtValue, WriterOptions options = {}) {
  options.bNames = false;
  return Written(*One(vtValue), std::move(options));
}

Text Json(const Value& vtValue) {
  return Written(*One(vtValue), {.form = Form::JsonLines});
}

Text Sql(const Value& vtValue) {
  return Written(*One(vtValue), {.form = Form::Sql, .sInto = R"("Plant1".."Data")"});
}

Text Inserted(const Text& sValue) {
  return R"(INSERT INTO "Plant1".."Data" ("v") VALUES ()" + sValue + ");\n";
}

TEST(CsvWriter, tells_null_from_the_empty_text) {
  EXPECT_EQ(Csv(Null()), "\r\n");
  EXPECT_EQ(Csv(""), "\"\"\r\n");
  EXPECT_EQ(Csv("NULL"), "NULL\r\n");
}

TEST(CsvWriter, quotes_what_would_be_read_as_something_else) {
  EXPECT_EQ(Csv("a,b"), "\"a,b\"\r\n");
  EXPECT_EQ(Csv("a;b"), "a;b\r\n");
  EXPECT_EQ(Csv("a;b", {.cSeparator = ';'}), "\"a;b\"\r\n");
  EXPECT_EQ(Csv("say \"no\""), "\"say \"\"no\"\"\"\r\n");
  EXPECT_EQ(Csv("two\nlines"), "\"two\nlines\"\r\n");
  EXPECT_EQ(Csv("two\rlines"), "\"two\rlines\"\r\n");
  EXPECT_EQ(Csv(" a"), "\" a\"\r\n");
  EXPECT_EQ(Csv("a "), "\"a \"\r\n");
  EXPECT_EQ(Csv(-1, {.cSeparator = '-'}), "\"-1\"\r\n");
}

TEST(CsvWriter, writes_numbers_so_that_they_read_back_the_same) {
  EXPECT_EQ(Csv(5e-324), "5e-324\r\n");
  EXPECT_EQ(Csv(-0.0), "-0\r\n");
  EXPECT_EQ(Csv(0.1), "0.1\r\n");
  EXPECT_EQ(Csv(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808\r\n");
  EXPECT_EQ(Csv(Decimal{"12345678901234567890.123456789"}), "12345678901234567890.123456789\r\n");
  EXPECT_EQ(Csv(true), "True\r\n");
  EXPECT_EQ(Csv(platform::Bytes{std::byte{0}, std::byte{255}}), "0x00FF\r\n");
}

TEST(CsvWriter, writes_times_with_what_the_zone_is_ahead_of_utc) {
  const zones::TimeZone madrid("Europe/Madrid");
  // 2024-10-27 00:30 and 01:30 UTC: half past two, twice.
  EXPECT_EQ(Csv(At(1729989000'000000), {.zone = madrid}), "2024-10-27 02:30:00+02:00\r\n");
  EXPECT_EQ(Csv(At(1729992600'000001), {.zone = madrid}), "2024-10-27 02:30:00.000001+01:00\r\n");
  EXPECT_EQ(Csv(At(0)), "1970-01-01 00:00:00+00:00\r\n");
  EXPECT_EQ(Csv(At(0), {.zone = zones::TimeZone("America/New_York")}),
            "1969-12-31 19:00:00-05:00\r\n");
  // Before 1901 Madrid was 14 minutes and 44 seconds behind.
  EXPECT_EQ(Csv(At(-2500000000'000000), {.zone = madrid}), "1890-10-11 19:33:20Z\r\n");
}

TEST(CsvWriter, begins_with_the_names) {
  ado::RecordsetBuilder builder({{"Tag"}, {"a,b"}, {"Tag"}});
  builder.AppendRow({"x", 1, Null()});
  EXPECT_EQ(Written(*builder.Finish(), {.cSeparator = '\t'}), "Tag\ta,b\tTag\r\nx\t1\t\r\n");
}

TEST(RowWriter, writes_the_columns_it_was_given_in_their_order) {
  ado::RecordsetBuilder builder({{"a"}, {"b"}, {"c"}});
  builder.AppendRow({1, 2, 3});
  const auto rs = builder.Finish();
  const auto writer = MakeRowWriter({});
  Text sOut;
  writer->Begin(*rs, {2, 0}, sOut);
  writer->Row(*rs, 0, sOut);
  EXPECT_EQ(sOut, "c,a\r\n3,1\r\n");
}

TEST(JsonLinesWriter, writes_each_kind_as_json_has_it) {
  EXPECT_EQ(Json(Null()), "{\"v\":null}\n");
  EXPECT_EQ(Json(false), "{\"v\":false}\n");
  EXPECT_EQ(Json(std::numeric_limits<std::int64_t>::max()), "{\"v\":9223372036854775807}\n");
  EXPECT_EQ(Json(-0.0), "{\"v\":-0.0}\n");
  EXPECT_EQ(Json(2.0), "{\"v\":2.0}\n");
  EXPECT_EQ(Json(1e300), "{\"v\":1e+300}\n");
  EXPECT_EQ(Json(kInfinity), "{\"v\":\"inf\"}\n");
  EXPECT_EQ(Json(Decimal{"0.10"}), "{\"v\":0.10}\n");
  EXPECT_EQ(Json("a\"b\n"), "{\"v\":\"a\\\"b\\n\"}\n");
  EXPECT_EQ(Json("\xFF"), "{\"v\":{\"bytes\":\"0xFF\"}}\n");
  EXPECT_EQ(Json(At(500'000)), "{\"v\":\"1970-01-01T00:00:00.5+00:00\"}\n");
}

TEST(JsonLinesWriter, keeps_columns_of_one_name_apart) {
  ado::RecordsetBuilder builder({{"a"}, {"a (2)"}, {"a"}});
  builder.AppendRow({1, 2, 3});
  EXPECT_EQ(Written(*builder.Finish(), {.form = Form::JsonLines}),
            "{\"a\":1,\"a (2)\":2,\"a (3)\":3}\n");
}

TEST(SqlWriter, writes_each_kind_as_the_dialect_reads_it) {
  EXPECT_EQ(Sql(Null()), Inserted("NULL"));
  EXPECT_EQ(Sql(true), Inserted("TRUE"));
  EXPECT_EQ(Sql(1.0), Inserted("1.0"));
  EXPECT_EQ(Sql(-0.0), Inserted("CAST('-0.0' AS DOUBLE)"));
  EXPECT_EQ(Sql(1e300), Inserted("1e+300"));
  EXPECT_EQ(Sql(-kInfinity), Inserted("CAST(-9e999 AS DOUBLE)"));
  EXPECT_EQ(Sql(std::numeric_limits<double>::quiet_NaN()),
            Inserted("CAST(9e999 AS DOUBLE) - CAST(9e999 AS DOUBLE)"));
  EXPECT_EQ(Sql("it's"), Inserted("'it''s'"));
  EXPECT_EQ(Sql(Text("a\0b", 3)), Inserted("CAST(X'610062' AS TEXT)"));
  EXPECT_EQ(Sql(platform::Bytes{std::byte{1}}), Inserted("X'01'"));
  EXPECT_EQ(Sql(At(0)), Inserted("'1970-01-01 00:00:00+00:00'"));
  EXPECT_EQ(Sql(platform::Date(std::chrono::days(1))), Inserted("'1970-01-02'"));
}

TEST(SqlWriter, quotes_names) {
  EXPECT_EQ(Written(*One(1, "a\"b"), {.form = Form::Sql, .sInto = "t"}),
            "INSERT INTO t (\"a\"\"b\") VALUES (1);\n");
}

}  // namespace
}  // namespace orvane::exports
