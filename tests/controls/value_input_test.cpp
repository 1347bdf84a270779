#include "controls/values/value_input.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "platform/conversions.h"
#include "platform/failure.h"
#include "tests/controls/failure_of.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::Decimal;
using platform::Text;
using platform::TimeOfDay;
using platform::Timestamp;
using platform::Value;
using platform::ValueKind;

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

const zones::TimeZone& Madrid() {
  static const zones::TimeZone zone("Europe/Madrid");
  return zone;
}

Value Read(const Text& sText, DataType type, const Value& vtCurrent = {}) {
  return ValueInput(Madrid()).Read(sText, type, vtCurrent);
}

Text Refusal(const Text& sText, DataType type, const Value& vtCurrent = {}) {
  return SentenceOf([&] { Read(sText, type, vtCurrent); });
}

Timestamp At(int nYear, unsigned nMonth, unsigned nDay, std::chrono::microseconds time) {
  return std::chrono::sys_days(std::chrono::year(nYear) / static_cast<int>(nMonth) /
                               static_cast<int>(nDay)) +
         time;
}

TEST(value_input, what_only_a_server_can_write_is_read_where_it_takes_that) {
  const std::pair<DataType, const char*> cases[] = {
      {DataType::Numeric, "NaN"},           {DataType::Numeric, "-Infinity"},
      {DataType::DBDate, "infinity"},       {DataType::DBDate, "0044-03-15 BC"},
      {DataType::DBTimeStamp, "-infinity"}, {DataType::WallTime, "20000-01-01 00:00:00"}};
  for (const auto& [type, sText] : cases) {
    ColumnTakes takes(type);
    EXPECT_NE(Refusal(sText, type), "") << sText;
    takes.bBeyond = true;
    const ValueInput input(Madrid());
    EXPECT_EQ(input.Read(" " + Text(sText), takes), Value(sText));
    EXPECT_EQ(input.ReadCopied(sText, ValueKind::Text, takes, Value()), Value(sText));
    EXPECT_EQ(SentenceOf([&] { input.Read("soon", takes); }), Refusal("soon", type));
  }
  ColumnTakes takes(DataType::DBTime);
  takes.bBeyond = true;
  EXPECT_EQ(ValueInput().Read("24:00:00", takes), Value(TimeOfDay(std::chrono::hours(24))));
}

TEST(value_input, whole_numbers_reach_their_limits_and_no_farther) {
  EXPECT_EQ(Read("9223372036854775807", DataType::BigInt), Value(kMost));
  EXPECT_EQ(Read(" -9223372036854775808 ", DataType::BigInt), Value(kLeast));
  EXPECT_EQ(Read("+5", DataType::Integer), Value(std::int32_t{5}));
  EXPECT_EQ(Refusal("9223372036854775808", DataType::BigInt),
            "\"9223372036854775808\" is outside the range of the column; enter a whole number from "
            "-9223372036854775808 to 9223372036854775807.");
  EXPECT_EQ(FailureNumberOf([] { Read("2147483648", DataType::Integer); }),
            platform::failure::kOverflow);
  for (const char* sText : {"5.0", "1e3", "1 000", "+-5", "0x10", "five", "-", "\u0665"}) {
    EXPECT_EQ(Refusal(sText, DataType::BigInt),
              "\"" + Text(sText) +
                  "\" is no whole number; enter digits only, with \"-\" before "
                  "them where it is negative.");
  }
}

TEST(value_input, a_number_too_wide_for_its_column_can_be_changed_where_it_is_one_already) {
  EXPECT_EQ(Read("3000000001", DataType::Integer, std::int64_t{3'000'000'000}),
            Value(std::int64_t{3'000'000'001}));
  EXPECT_EQ(Read("2.5", DataType::BigInt, 1.5), Value(2.5));
  EXPECT_NE(Refusal("many", DataType::BigInt, Text("few")), "");
}

TEST(value_input, doubles_are_exact_and_never_become_infinite_unasked) {
  EXPECT_EQ(Read("5e-324", DataType::Double), Value(5e-324));
  const Value vtZero = Read("-0.0", DataType::Double);
  EXPECT_TRUE(std::signbit(*vtZero.As<double>()));
  EXPECT_EQ(Read("inf", DataType::Double), Value(std::numeric_limits<double>::infinity()));
  EXPECT_TRUE(std::isnan(*Read("nan", DataType::Double).As<double>()));
  EXPECT_EQ(FailureNumberOf([] { Read("1e400", DataType::Double); }), platform::failure::kOverflow);
  EXPECT_EQ(Refusal("1,5", DataType::Double),
            "\"1,5\" is no number; enter digits, with \".\" as the decimal point.");
}

TEST(value_input, decimals_keep_every_digit) {
  EXPECT_EQ(Read("-00123456789012345678901234567890.12345678900", DataType::Numeric),
            Value(Decimal{"-123456789012345678901234567890.12345678900"}));
  EXPECT_EQ(Read("0.5", DataType::Numeric), Value(Decimal{"0.5"}));
  for (const char* sText : {".", "1.", ".5", "1e5", "1.2.3", "--1"}) {
    EXPECT_NE(Refusal(sText, DataType::Numeric), "") << sText;
  }
  // An engine may keep such a column's numbers as doubles.
  EXPECT_EQ(Read("2e+300", DataType::Numeric, 1e300), Value(2e300));
}

TEST(value_input, what_was_copied_is_the_same_value_in_a_column_of_any_type) {
  const Value values[] = {Text("5"),  std::int64_t{5},    5.0,  Text(""), Text("True"), true,
                          Text("0x"), platform::Bytes(2), -0.0, 0.1};
  const ValueInput input(Madrid());
  for (const Value& vtValue : values) {
    const Value vtRead =
        input.ReadCopied(input.Shown(vtValue), vtValue.Kind(), DataType::Empty, "else");
    EXPECT_EQ(vtRead, vtValue) << input.Shown(vtValue);
  }
  EXPECT_EQ(input.ReadCopied("1e+300", ValueKind::Double, DataType::Numeric, {}), Value(1e300));
  EXPECT_EQ(input.ReadCopied("5", ValueKind::LongLong, DataType::WChar, {}), Value("5"));
  EXPECT_THROW(input.ReadCopied("5.5", ValueKind::Double, DataType::BigInt, {}), platform::Failure);
}

TEST(value_input, a_boolean_is_one_of_two_words) {
  EXPECT_EQ(Read("TRUE", DataType::Boolean), Value(true));
  EXPECT_EQ(Read("0", DataType::Boolean), Value(false));
  EXPECT_EQ(Refusal("maybe", DataType::Boolean),
            "\"maybe\" is neither True nor False; enter one of them.");
}

TEST(value_input, the_empty_text_is_null_save_in_a_column_of_texts) {
  EXPECT_EQ(Read("", DataType::WChar, Text("a")), Value(Text()));
  EXPECT_EQ(Read("", DataType::WChar, Value()), Value());
  EXPECT_EQ(Read("NULL", DataType::WChar), Value(Text("NULL")));
  for (const auto type : {DataType::Double, DataType::DBTimeStamp, DataType::Binary,
                          DataType::Boolean, DataType::Guid}) {
    EXPECT_EQ(Read(" ", type, Text("x")), Value());
  }
  EXPECT_EQ(Read("0x", DataType::Binary), Value(platform::Bytes()));
}

TEST(value_input, what_is_shown_is_the_value_itself) {
  // Of another kind than the column's, and none that its reader would give.
  EXPECT_EQ(Read("1.1.2024", DataType::DBDate, Text("1.1.2024")), Value(Text("1.1.2024")));
  EXPECT_EQ(Read("7", DataType::Boolean, std::int64_t{7}), Value(std::int64_t{7}));
  const Value vtFar = Timestamp::max();
  EXPECT_EQ(Read(ValueInput(Madrid()).Shown(vtFar), DataType::DBTimeStamp, vtFar), vtFar);
}

TEST(value_input, times_are_those_of_the_zones_clocks_to_the_microsecond) {
  using namespace std::chrono_literals;
  EXPECT_EQ(Read("2026-07-01 12:00:00.000001", DataType::DBTimeStamp),
            Value(At(2026, 7, 1, 10h + 1us)));
  EXPECT_EQ(Read("2026-01-01T12:00", DataType::DBTimeStamp), Value(At(2026, 1, 1, 11h)));
  EXPECT_EQ(Read("2026-01-01", DataType::DBTimeStamp), Value(At(2025, 12, 31, 23h)));
  EXPECT_EQ(Read("2026-01-01 12:00:00Z", DataType::DBTimeStamp), Value(At(2026, 1, 1, 12h)));
  EXPECT_EQ(Read("2026-01-01 12:00 -03:30", DataType::DBTimeStamp),
            Value(At(2026, 1, 1, 15h + 30min)));
  EXPECT_EQ(Refusal("2026-02-30 10:00", DataType::DBTimeStamp),
            "There is no day 2026-02-30; enter a day of the years 1 to 9999.");
  for (const char* sText :
       {"2026-1-1", "01.01.2026", "2026-01-01 24:00:00", "2026-01-01 10:60", "2026-01-01 10",
        "2026-01-01 10:00:00.1234567", "2026-01-01 10:00:00.", "2026-01-01 10:00 CET", "now"}) {
    EXPECT_NE(Refusal(sText, DataType::DBTimeStamp).find("is no date and time; enter it as"),
              Text::npos)
        << sText;
  }
  const Value vtLast = At(9999, 12, 31, 23h + 30min);
  EXPECT_EQ(Read(ValueInput(Madrid()).Shown(vtLast), DataType::DBTimeStamp), vtLast);
  EXPECT_NE(
      Refusal("0001-01-01 00:00:00+02:00", DataType::DBTimeStamp).find("too early or too late"),
      Text::npos);
}

TEST(value_input, a_time_that_the_clocks_skip_is_refused) {
  EXPECT_EQ(
      Refusal("2026-03-29 02:30:00", DataType::DBTimeStamp),
      "There is no 2026-03-29 02:30:00 in Europe/Madrid: its clocks skip that time; enter one "
      "before or behind it.");
  // Behind the end of the database's table too.
  EXPECT_NE(Refusal("2050-03-27 02:30:00", DataType::DBTimeStamp), "");
}

TEST(value_input, a_time_that_the_clocks_show_twice_says_which_it_is) {
  using namespace std::chrono_literals;
  EXPECT_EQ(Refusal("2026-10-25 02:30:00", DataType::DBTimeStamp),
            "The clocks in Europe/Madrid show 2026-10-25 02:30:00 twice; add +02:00 for the first "
            "time or +01:00 for the second.");
  const ValueInput input(Madrid());
  EXPECT_EQ(input.Shown(At(2026, 10, 25, 30min)), "2026-10-25 02:30:00+02:00");
  EXPECT_EQ(input.Shown(At(2026, 10, 25, 90min)), "2026-10-25 02:30:00+01:00");
  EXPECT_EQ(Read("2026-10-25 02:30:00+01:00", DataType::DBTimeStamp),
            Value(At(2026, 10, 25, 90min)));
}

TEST(value_input, dates_times_bytes_and_identities_are_read_whole) {
  using namespace std::chrono_literals;
  EXPECT_EQ(Read("2024-02-29", DataType::DBDate),
            Value(platform::Date(std::chrono::year(2024) / 2 / 29)));
  EXPECT_EQ(Refusal("29.2.2024", DataType::DBDate),
            "\"29.2.2024\" is no date; enter it as YYYY-MM-DD.");
  EXPECT_EQ(Read("23:59:59.999999", DataType::DBTime), Value(TimeOfDay(24h - 1us)));
  EXPECT_EQ(Refusal("25:00", DataType::DBTime),
            "\"25:00\" is no time of day; enter it as HH:MM:SS, with up to six digits behind the "
            "seconds.");
  EXPECT_EQ(Read("0x00 fF", DataType::Binary),
            Value(platform::Bytes{std::byte{0}, std::byte{255}}));
  EXPECT_EQ(Refusal("00FF", DataType::Binary),
            "\"00FF\" stands for no bytes; enter 0x and behind it two hexadecimal digits for each "
            "byte.");
  EXPECT_NE(Refusal("0x0", DataType::Binary), "");
  EXPECT_EQ(platform::ToText(Read("00112233445566778899aabbccddeeff", DataType::Guid)),
            "{00112233-4455-6677-8899-AABBCCDDEEFF}");
  EXPECT_NE(Refusal("{00112233}", DataType::Guid), "");
}

TEST(value_input, a_column_of_any_type_takes_numbers_for_numbers_and_the_rest_for_text) {
  EXPECT_EQ(Read("12", DataType::Empty), Value(std::int64_t{12}));
  EXPECT_EQ(Read("1.5", DataType::Empty), Value(1.5));
  EXPECT_EQ(Read("007", DataType::Empty), Value(Text("007")));
  EXPECT_EQ(Read("0xAB", DataType::Empty, platform::Bytes()),
            Value(platform::Bytes{std::byte{0xAB}}));
  EXPECT_EQ(Read("word", DataType::Empty, std::int64_t{1}), Value(Text("word")));
}

TEST(value_input, a_long_text_is_named_by_its_beginning) {
  const Text sRefusal = Refusal(Text(10'000, '9') + "x", DataType::BigInt);
  EXPECT_LT(sRefusal.size(), 250U);
  EXPECT_NE(sRefusal.find("\u2026\" is no whole number"), Text::npos);
}

/// Random values of every type, written for typing and read again.
class Random {
 public:
  explicit Random(std::uint64_t seed) : m_engine(seed) {}

  std::int64_t Between(std::int64_t llLeast, std::int64_t llMost) {
    return std::uniform_int_distribution<std::int64_t>(llLeast, llMost)(m_engine);
  }
  Value Of(DataType type) {
    using std::chrono::microseconds;
    switch (type) {
      case DataType::Integer:
        return static_cast<std::int32_t>(Bits());
      case DataType::BigInt:
        return Bits() >> Between(0, 63);
      case DataType::Double: {
        double d = std::bit_cast<double>(Bits());
        return std::isnan(d) ? 0.1 : d;
      }
      case DataType::Numeric:
        return Decimal{(Between(0, 1) != 0 ? "-" : "") + std::to_string(Between(1, kMost)) +
                       std::to_string(Between(0, kMost)) + "." + std::to_string(Between(0, kMost))};
      case DataType::Boolean:
        return Between(0, 1) != 0;
      case DataType::DBTimeStamp:
        // The years 2 to 9998; every fourth near a change of the clocks.
        return Between(0, 3) != 0 ? Timestamp(microseconds(
                                        Between(-62'103'628'800'000'000, 253'370'764'800'000'000)))
                                  : At(2026, 10, 25, microseconds(Between(0, 7'200'000'000)));
      case DataType::WallTime:
        return platform::WallTime(
            microseconds(Between(-62'103'628'800'000'000, 253'370'764'800'000'000)));
      case DataType::DBDate:
        return platform::Date(std::chrono::days(Between(-719'162, 2'932'896)));
      case DataType::DBTime:
        return TimeOfDay(Between(0, 86'399'999'999));
      case DataType::Binary: {
        platform::Bytes bytes(static_cast<std::size_t>(Between(0, 40)));
        for (auto& byte : bytes) byte = static_cast<std::byte>(Between(0, 255));
        return bytes;
      }
      case DataType::Guid: {
        platform::Guid guid;
        for (auto& byte : guid.bytes) byte = static_cast<std::uint8_t>(Between(0, 255));
        return guid;
      }
      case DataType::WChar:
      case DataType::Empty:
        break;
    }
    static const std::vector<Text> kPieces = {"a",      "NULL",       "\n",    "\t", "\r\n",
                                              " ",      "\"",         "'",     "7",  Text(1, '\0'),
                                              "\u00e9", "\U0001F600", "\u2029"};
    Text sText;
    for (auto n = Between(0, 8); n > 0; --n) {
      sText += kPieces[static_cast<std::size_t>(
          Between(0, static_cast<std::int64_t>(kPieces.size()) - 1))];
    }
    return sText;
  }

 private:
  std::int64_t Bits() { return static_cast<std::int64_t>(m_engine()); }

  std::mt19937_64 m_engine;
};

TEST(value_input, what_is_written_for_typing_reads_back_identical) {
  Random random(20'261'122);
  const ValueInput input(Madrid());
  for (const auto type :
       {DataType::Integer, DataType::BigInt, DataType::Double, DataType::Numeric, DataType::Boolean,
        DataType::DBTimeStamp, DataType::WallTime, DataType::DBDate, DataType::DBTime,
        DataType::Binary, DataType::Guid, DataType::WChar}) {
    for (int n = 0; n < 300; ++n) {
      const Value vtValue = random.Of(type);
      const Text sText = input.Shown(vtValue);
      // Read as if somebody had typed it over another value.
      const Value vtRead = input.Read(sText, type, Text("another"));
      EXPECT_EQ(vtRead, vtValue) << sText;
      if (const auto* d = vtRead.As<double>()) {
        EXPECT_EQ(std::signbit(*d), std::signbit(*vtValue.As<double>()));
      }
    }
  }
}

}  // namespace
}  // namespace orvane::controls
