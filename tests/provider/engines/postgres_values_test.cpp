// Every type from the server and back, in both forms in which it sends them.
#include <cmath>
#include <limits>
#include <random>

#include "platform/conversions.h"
#include "tests/provider/engines/postgres_fixture.h"

namespace orvane::provider::engines {
namespace {

using platform::DataType;
using platform::Decimal;
using platform::Text;
using platform::Value;
using std::chrono::microseconds;
using std::chrono::sys_days;

class PostgresValuesTest : public tests::PostgresTest {
 protected:
  // As the server sends it in its binary form, and beside a column that is known as its text only.
  void Expect(const Text& sExpression, const Value& vtExpected, DataType type) const {
    const auto binary = Rows("SELECT " + sExpression);
    const auto text = Rows("SELECT " + sExpression + ", '{1}'::int[]");
    EXPECT_EQ(text->ValueAt(0, 1), Value("{1}"));
    for (const auto& rs : {binary, text}) {
      EXPECT_TRUE(Same(rs->ValueAt(0, 0), vtExpected))
          << sExpression << " gives " << platform::ToText(rs->ValueAt(0, 0)) << ", kind "
          << static_cast<int>(rs->ValueAt(0, 0).Kind());
      EXPECT_EQ(rs->FieldAt(0).Type(), type) << sExpression;
    }
  }
  static bool Same(const Value& vtOne, const Value& vtOther) {
    const auto* const one = vtOne.As<double>();
    const auto* const other = vtOther.As<double>();
    if (one == nullptr || other == nullptr) return vtOne == vtOther;
    return std::signbit(*one) == std::signbit(*other) &&
           (*one == *other || (std::isnan(*one) && std::isnan(*other)));
  }
  static Value Moment(int nYear, unsigned nMonth, unsigned nDay, std::int64_t llMicroseconds) {
    return platform::Timestamp(sys_days(std::chrono::year(nYear) / std::chrono::month(nMonth) /
                                        std::chrono::day(nDay))) +
           microseconds(llMicroseconds);
  }
};

TEST_F(PostgresValuesTest, of_numbers_come_exactly) {
  Expect("true", true, DataType::Boolean);
  Expect("(-32768)::int2", std::int32_t{-32768}, DataType::Integer);
  Expect("(-2147483648)::int4", std::numeric_limits<std::int32_t>::min(), DataType::Integer);
  Expect("(-9223372036854775808)::int8", std::numeric_limits<std::int64_t>::min(),
         DataType::BigInt);
  Expect("9223372036854775807", std::numeric_limits<std::int64_t>::max(), DataType::BigInt);
  Expect("4294967295::oid", std::int64_t{4294967295}, DataType::BigInt);
  Expect("0.1::float4", 0.1, DataType::Double);
  Expect("'5e-324'::float8", 5e-324, DataType::Double);
  Expect("'-0'::float8", -0.0, DataType::Double);
  Expect("'1.7976931348623157e308'::float8", std::numeric_limits<double>::max(), DataType::Double);
  Expect("'NaN'::float8", std::numeric_limits<double>::quiet_NaN(), DataType::Double);
  Expect("'-Infinity'::float4", -std::numeric_limits<double>::infinity(), DataType::Double);
}

TEST_F(PostgresValuesTest, of_decimals_keep_every_digit) {
  for (const char* const sDigits :
       {"0", "0.00", "1", "-1", "10000", "9999", "100000000", "0.1", "0.0001", "0.00001",
        "0.000000001", "-0.50", "12345678901234567890123456789012345678.123456789012345678901",
        "99999999999999999999999999999999999999", "1000000000000.0000000000001", "10000.5"}) {
    Expect(Text("'") + sDigits + "'::numeric", Decimal{sDigits}, DataType::Numeric);
  }
  Expect("'NaN'::numeric", "NaN", DataType::Numeric);
  Expect("'-Infinity'::numeric", "-Infinity", DataType::Numeric);
}

TEST_F(PostgresValuesTest, of_times_come_to_the_microsecond) {
  Expect("'2026-01-31 23:59:59.123456+02'::timestamptz", Moment(2026, 1, 31, 79'199'123'456),
         DataType::DBTimeStamp);
  Expect("'1969-12-31 23:59:59.999999+00'::timestamptz", Moment(1969, 12, 31, 86'399'999'999),
         DataType::DBTimeStamp);
  Expect("'9999-12-31 23:59:59.999999+00'::timestamptz", Moment(9999, 12, 31, 86'399'999'999),
         DataType::DBTimeStamp);
  const auto wall = [](const Value& vt) {
    return platform::WallTime(vt.As<platform::Timestamp>()->time_since_epoch());
  };
  // Whatever the clocks of a zone do.
  Expect("'2026-03-29 02:30:00.5'::timestamp", wall(Moment(2026, 3, 29, 9'000'500'000)),
         DataType::WallTime);
  Expect("'0001-01-01'::timestamp", wall(Moment(1, 1, 1, 0)), DataType::WallTime);
  Expect("'9999-12-31 23:59:59.999999'::timestamp", wall(Moment(9999, 12, 31, 86'399'999'999)),
         DataType::WallTime);
  Expect("'2026-02-28'::date", sys_days(std::chrono::year(2026) / 2 / 28), DataType::DBDate);
  Expect("'23:59:59.5'::time", microseconds(86'399'500'000), DataType::DBTime);
  Expect("'24:00'::time", microseconds(86'400'000'000), DataType::DBTime);
}

TEST_F(PostgresValuesTest, of_times_that_are_no_moment_come_as_they_are_written) {
  Expect("'infinity'::timestamptz", "infinity", DataType::DBTimeStamp);
  Expect("'-infinity'::timestamp", "-infinity", DataType::WallTime);
  Expect("'infinity'::date", "infinity", DataType::DBDate);
  Expect("'0044-03-15 BC'::date", "0044-03-15 BC", DataType::DBDate);
  Expect("'4713-01-01 BC'::date", "4713-01-01 BC", DataType::DBDate);
  Expect("'32768-02-29'::date", "32768-02-29", DataType::DBDate);
  Expect("'5874897-12-31'::date", "5874897-12-31", DataType::DBDate);
  Expect("'294276-12-31 23:59:59+00'::timestamptz", "294276-12-31 23:59:59+00",
         DataType::DBTimeStamp);
  Expect("'10000-01-01'::date", "10000-01-01", DataType::DBDate);
  Expect("'0044-03-15 12:00 BC'::timestamp", "0044-03-15 12:00:00 BC", DataType::WallTime);
  Expect("'0044-03-15 12:00+00 BC'::timestamptz", "0044-03-15 12:00:00+00 BC",
         DataType::DBTimeStamp);
  Expect("'12:00+02'::timetz", "12:00:00+02", DataType::WChar);
  Expect("'1 day 2 hours'::interval", "1 day 02:00:00", DataType::WChar);
}

TEST_F(PostgresValuesTest, of_texts_bytes_and_the_rest_come_as_they_are) {
  Expect("''::text", "", DataType::WChar);
  Expect("NULL::text", Value(), DataType::WChar);
  Expect("E'a\\tb\\nc\\u00e4'::varchar", "a\tb\nc\xC3\xA4", DataType::WChar);
  Expect("'ab'::char(4)", "ab  ", DataType::WChar);
  Expect("'\\x00ff'::bytea", platform::Bytes{std::byte{0}, std::byte{255}}, DataType::Binary);
  Expect("''::bytea", platform::Bytes{}, DataType::Binary);
  platform::Guid guid;
  guid.bytes = {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF,
                0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10};
  Expect("'01234567-89ab-cdef-fedc-ba9876543210'::uuid", guid, DataType::Guid);
  Expect("'{\"a\": 1}'::json", "{\"a\": 1}", DataType::WChar);
  Expect("'{\"a\":1}'::jsonb", "{\"a\": 1}", DataType::WChar);
  Expect("'12.50'::money", "$12.50", DataType::WChar);
  Expect("'10.0.0.0/8'::cidr", "10.0.0.0/8", DataType::WChar);
}

TEST_F(PostgresValuesTest, go_and_come_back_the_same) {
  std::mt19937_64 random(20261122);
  const auto whole = [&](std::int64_t llFrom, std::int64_t llTo) {
    return std::uniform_int_distribution<std::int64_t>(llFrom, llTo)(random);
  };
  Do("CREATE TABLE s.v(b bool, i int, l bigint, d float8, n numeric, t text, m timestamptz, e "
     "date, "
     "c time, y bytea, u uuid, o timestamp)");
  for (int nRow = 0; nRow < 100; ++nRow) {
    Text sText;
    for (auto n = whole(0, 20); n > 0; --n) sText += static_cast<char>(whole(1, 127));
    platform::Bytes bytes;
    for (auto n = whole(0, 20); n > 0; --n) bytes.push_back(static_cast<std::byte>(whole(0, 255)));
    platform::Guid guid;
    for (auto& byte : guid.bytes) byte = static_cast<std::uint8_t>(whole(0, 255));
    const Decimal decimal{std::to_string(whole(1, 1'000'000'000'000'000'000)) +
                          std::to_string(whole(0, 1'000'000'000)) + "." +
                          std::to_string(whole(0, 1'000'000'000))};
    const std::vector<Value> row = {
        Value(whole(0, 1) == 1),
        Value(static_cast<std::int32_t>(whole(std::numeric_limits<std::int32_t>::min(),
                                              std::numeric_limits<std::int32_t>::max()))),
        Value(whole(std::numeric_limits<std::int64_t>::min(),
                    std::numeric_limits<std::int64_t>::max())),
        Value(std::ldexp(static_cast<double>(whole(-1'000'000, 1'000'000)),
                         static_cast<int>(whole(-900, 900)))),
        Value(decimal),
        Value(sText),
        Value(platform::Timestamp(
            microseconds(whole(-2'000'000'000'000'000, 5'000'000'000'000'000)))),
        Value(sys_days(std::chrono::days(whole(-100'000, 100'000)))),
        Value(microseconds(whole(0, 86'399'999'999))),
        Value(bytes),
        Value(guid),
        Value(platform::WallTime(
            microseconds(whole(-2'000'000'000'000'000, 5'000'000'000'000'000))))};
    Do("DELETE FROM s.v");
    EXPECT_EQ(
        Do("INSERT INTO s.v VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)", row).lRecordsAffected, 1);
    for (const char* const sColumns : {"*", "*, '{}'::int[]"}) {
      const auto rs = Rows(Text("SELECT ") + sColumns + " FROM s.v");
      for (platform::ColumnIndex n = 0; n < 12; ++n) {
        EXPECT_EQ(rs->ValueAt(0, n), row[static_cast<std::size_t>(n)])
            << rs->FieldAt(n).Name() << ": " << platform::ToText(row[static_cast<std::size_t>(n)]);
      }
    }
    // By which a row is named again.
    EXPECT_EQ(
        Do("DELETE FROM s.v WHERE b = ? AND i = ? AND l = ? AND d = ? AND n = ? AND t = ? AND "
           "m = ? AND e = ? AND c = ? AND y = ? AND u = ? AND o = ?",
           row)
            .lRecordsAffected,
        1);
  }
}

}  // namespace
}  // namespace orvane::provider::engines
