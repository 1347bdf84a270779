#include "controls/values/cell_format.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <limits>

#include "controls/statements/connection_zone.h"
#include "tests/controls/fake_data.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::Text;
using platform::Timestamp;
using platform::Value;
using std::chrono::microseconds;

std::string Shown(const Value& vtValue, const CellFormat& format = CellFormat()) {
  return format.Shown(vtValue).toStdString();
}
std::string Whole(const Value& vtValue, const CellFormat& format = CellFormat()) {
  return format.Whole(vtValue).toStdString();
}

TEST(cell_format, null_is_shown_as_the_word_and_copied_as_nothing) {
  EXPECT_EQ(Shown(Value()), "NULL");
  EXPECT_EQ(Whole(Value()), "");
}

TEST(cell_format, values_are_shown_by_the_one_conversion_to_text) {
  EXPECT_EQ(Shown(Value(true)), "True");
  EXPECT_EQ(Shown(Value(false)), "False");
  EXPECT_EQ(Shown(Value(std::int32_t{-7})), "-7");
  EXPECT_EQ(Shown(Value(std::numeric_limits<std::int64_t>::max())), "9223372036854775807");
  EXPECT_EQ(Shown(Value(0.1)), "0.1");
  EXPECT_EQ(Shown(Value(platform::Decimal{"1.50"})), "1.50");
  EXPECT_EQ(Shown(Value("")), "");
  EXPECT_EQ(Shown(Value("NULL")), "NULL");
  EXPECT_EQ(Shown(Value(platform::Guid{})), "{00000000-0000-0000-0000-000000000000}");
  EXPECT_EQ(Shown(Value(platform::Date(std::chrono::days(1)))), "1970-01-02");
  EXPECT_EQ(Shown(Value(platform::TimeOfDay(1'500'000))), "00:00:01.5");
}

TEST(cell_format, line_breaks_and_control_characters_appear_as_marks) {
  EXPECT_EQ(Shown(Value("a\nb\r\nc\rd\te")), "a↵b↵c↵d⇥e");
  EXPECT_EQ(Shown(Value(Text("a\0b", 3))),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(Shown(Value("a\xE2\x80\xA8z")), "a↵z");
  EXPECT_EQ(Whole(Value("a\r\nb")), "a\r\nb");
}

TEST(cell_format, text_that_is_not_utf8_is_shown_with_marks) {
  EXPECT_EQ(Shown(Value("a\xFFz")), "a\xEF\xBF\xBDz");
}

TEST(cell_format, a_long_text_is_cut_and_copied_whole) {
  const Text sLong(5'000'000, 'x');
  const std::string sShown = Shown(Value(sLong));
  EXPECT_EQ(sShown, std::string(1000, 'x') + "…");
  EXPECT_EQ(Whole(Value(sLong)).size(), sLong.size());
  EXPECT_EQ(Shown(Value(Text(1000, 'x'))), std::string(1000, 'x'));
}

TEST(cell_format, a_long_text_is_not_cut_within_a_character) {
  Text sLong;
  for (int n = 0; n < 2000; ++n) sLong += "😀";
  Text sCut;
  for (int n = 0; n < 500; ++n) sCut += "😀";
  EXPECT_EQ(Shown(Value(sLong)), sCut + "…");
  EXPECT_EQ(Shown(Value("a" + sLong)), "a" + sCut.substr(0, 1996) + "…");
}

TEST(cell_format, bytes_are_hexadecimal_and_cut_with_their_number) {
  EXPECT_EQ(Shown(Value(platform::Bytes{})), "0x");
  EXPECT_EQ(Shown(Value(platform::Bytes(3, std::byte{0xAB}))), "0xABABAB");
  const platform::Bytes longBytes(33, std::byte{1});
  std::string sHead = "0x";
  for (int n = 0; n < 32; ++n) sHead += "01";
  EXPECT_EQ(Shown(Value(longBytes)), sHead + "… (33 bytes)");
  EXPECT_EQ(Whole(Value(longBytes)), sHead + "01");
}

TEST(cell_format, the_beginning_of_a_value_tells_how_long_the_whole_is) {
  const CellFormat format;
  const auto expect = [&](const Value& vtValue) {
    const QString sWhole = format.Whole(vtValue);
    for (const qsizetype nCharacters : {1, 7, 8, 5'000}) {
      const auto part = format.Beginning(vtValue, nCharacters);
      EXPECT_EQ(part.nWhole, sWhole.size());
      EXPECT_TRUE(sWhole.startsWith(part.sText));
      EXPECT_LE(part.sText.size(), nCharacters);
      EXPECT_GE(part.sText.size(), std::min(nCharacters, sWhole.size()) - 1);
    }
  };
  expect(Value());
  expect(Value(5));
  expect(platform::Bytes(3'000, std::byte{0xA5}));
  expect(Value("short"));
  platform::Text sText;
  for (int n = 0; n < 1'000; ++n) sText += "a\u00fc\u20ac\U0001F600";
  expect(Value(sText));
  expect(Value("b" + sText));
}

TEST(cell_format, an_object_is_named_as_one) {
  EXPECT_EQ(Shown(Value(std::make_shared<FakeConnection>())), "(object)");
  EXPECT_EQ(Whole(Value(std::make_shared<FakeConnection>())), "(object)");
}

TEST(cell_format, times_are_shown_in_the_zone_with_the_fraction_they_have) {
  const Value vtSummer(Timestamp(microseconds(1'690'000'000'250'000)));
  const Value vtWinter(Timestamp(microseconds(1'700'000'000'000'001)));
  EXPECT_EQ(Shown(vtSummer), "2023-07-22 04:26:40.25");
  EXPECT_EQ(Shown(vtWinter), "2023-11-14 22:13:20.000001");
  const CellFormat berlin(zones::TimeZone("Europe/Berlin"));
  EXPECT_EQ(Shown(vtSummer, berlin), "2023-07-22 06:26:40.25");
  EXPECT_EQ(Shown(vtWinter, berlin), "2023-11-14 23:13:20.000001");
  EXPECT_EQ(Whole(vtSummer, berlin), "2023-07-22 06:26:40.25");
  const CellFormat newYork(zones::TimeZone("America/New_York"));
  EXPECT_EQ(Shown(vtWinter, newYork), "2023-11-14 17:13:20.000001");
}

TEST(cell_format, times_before_1970_keep_their_fraction) {
  EXPECT_EQ(Shown(Value(Timestamp(microseconds(-1)))), "1969-12-31 23:59:59.999999");
  EXPECT_EQ(Shown(Value(Timestamp(microseconds(-1))), CellFormat(zones::TimeZone("Etc/GMT-1"))),
            "1970-01-01 00:59:59.999999");
}

TEST(cell_format, the_last_time_there_is_can_be_shown_in_every_zone) {
  const Value vtLast{Timestamp(microseconds::max())};
  const CellFormat eastern{zones::TimeZone("Etc/GMT-1")};
  EXPECT_EQ(Shown(vtLast, eastern), Shown(vtLast));
}

TEST(cell_format, times_to_come_keep_daylight_saving_time) {
  const CellFormat madrid(zones::TimeZone("Europe/Madrid"));
  const auto at = [&](int nYear, int nMonth) {
    return Shown(Value(Timestamp(date::sys_days(date::year{nYear} / nMonth / 15))), madrid);
  };
  EXPECT_EQ(at(2037, 7), "2037-07-15 02:00:00");
  EXPECT_EQ(at(2038, 1), "2038-01-15 01:00:00");
  EXPECT_EQ(at(2038, 7), "2038-07-15 02:00:00");
  EXPECT_EQ(at(2500, 7), "2500-07-15 02:00:00");
}

Text ZoneNameOf(const platform::ConnectionPtr& cn) {
  return ZoneOf(cn).Name();
}

TEST(cell_format, the_zone_is_that_of_the_connection_or_of_this_machine) {
  EXPECT_EQ(ZoneNameOf(nullptr), "Local");
  EXPECT_EQ(ZoneNameOf(std::make_shared<FakeConnection>()), "Local");
  EXPECT_EQ(ZoneNameOf(std::make_shared<FakeConnection>(Value("Local"))), "Local");
  EXPECT_EQ(ZoneNameOf(std::make_shared<FakeConnection>(Value(""))), "Local");
  EXPECT_EQ(ZoneNameOf(std::make_shared<FakeConnection>(Value())), "Local");
  // What this machine does not know is shown in UTC, not in its own zone as if that were meant.
  EXPECT_EQ(ZoneNameOf(std::make_shared<FakeConnection>(Value("Nowhere/Land"))), "UTC");
  EXPECT_EQ(ZoneNameOf(std::make_shared<FakeConnection>(Value("CET-1CEST"))), "UTC");
  EXPECT_EQ(ZoneNameOf(std::make_shared<FakeConnection>(Value("UTC"))), "UTC");
  EXPECT_EQ(ZoneNameOf(std::make_shared<FakeConnection>(Value("Asia/Tokyo"))), "Asia/Tokyo");
}

TEST(cell_format, the_zone_is_the_one_in_which_the_connection_says_it_counts) {
  const auto zone = [](const char* sSet, const char* sInUse) {
    return ZoneNameOf(std::make_shared<FakeConnection>(Value(sSet), Value(sInUse)));
  };
  EXPECT_EQ(zone("Local", "Asia/Tokyo"), "Asia/Tokyo");
  EXPECT_EQ(zone("Local", "America/New_York"), "America/New_York");
  EXPECT_EQ(zone("UTC", "Etc/UTC"), "UTC");
  EXPECT_EQ(zone("Local", "Nowhere/Land"), "UTC");
  EXPECT_EQ(zone("Asia/Tokyo", ""), "Asia/Tokyo");
}

TEST(cell_format, numbers_stand_right_flags_in_the_middle_and_the_rest_left) {
  const auto right = Qt::AlignRight | Qt::AlignVCenter;
  const auto left = Qt::AlignLeft | Qt::AlignVCenter;
  for (const auto type :
       {DataType::Integer, DataType::BigInt, DataType::Double, DataType::Numeric}) {
    EXPECT_EQ(AlignmentOf(type), right);
  }
  EXPECT_EQ(AlignmentOf(DataType::Boolean), Qt::AlignCenter);
  for (const auto type : {DataType::WChar, DataType::Binary, DataType::Guid, DataType::DBDate,
                          DataType::DBTime, DataType::DBTimeStamp, DataType::Empty}) {
    EXPECT_EQ(AlignmentOf(type), left);
  }
}

TEST(cell_format, a_value_stands_by_its_own_type_and_null_by_its_column) {
  EXPECT_EQ(CellFormat::Alignment(Value("x"), DataType::Double), AlignmentOf(DataType::WChar));
  EXPECT_EQ(CellFormat::Alignment(Value(1.5), DataType::Empty), AlignmentOf(DataType::Double));
  EXPECT_EQ(CellFormat::Alignment(Value(true), DataType::Empty), AlignmentOf(DataType::Boolean));
  EXPECT_EQ(CellFormat::Alignment(Value(), DataType::Integer), AlignmentOf(DataType::Integer));
}

TEST(cell_format, every_type_has_a_name_of_its_own) {
  QSet<QString> names;
  for (const auto type :
       {DataType::Empty, DataType::Integer, DataType::Double, DataType::Boolean, DataType::BigInt,
        DataType::Guid, DataType::Binary, DataType::WChar, DataType::Numeric, DataType::DBDate,
        DataType::DBTime, DataType::DBTimeStamp}) {
    EXPECT_FALSE(names.contains(TypeName(type))) << TypeName(type).toStdString();
    names.insert(TypeName(type));
  }
}

}  // namespace
}  // namespace orvane::controls
