#include "exports/typed_text.h"

#include <gtest/gtest.h>

#include "platform/conversions.h"

namespace orvane::exports {
namespace {

using platform::DataType;
using platform::Text;

Text Read(DataType type, std::string_view sText, bool bRounds = true) {
  using namespace std::chrono;
  const auto vtValue = ReadTyped(type, sText, zones::TimeZone("UTC"),
                                 sys_days(year{2024} / 5 / 15) + hours(12), bRounds);
  return vtValue ? platform::ToText(*vtValue) : "none";
}

TEST(typed_text, takes_what_is_a_value_of_the_type) {
  EXPECT_EQ(Read(DataType::Integer, "-2147483648"), "-2147483648");
  EXPECT_EQ(Read(DataType::BigInt, "+9223372036854775807"), "9223372036854775807");
  EXPECT_EQ(Read(DataType::Double, "1.5e3"), "1500");
  EXPECT_EQ(Read(DataType::Double, "-.5"), "-0.5");
  EXPECT_EQ(Read(DataType::Double, "-inf"), "-inf");
  EXPECT_EQ(Read(DataType::Numeric, "12"), "12");
  EXPECT_EQ(Read(DataType::Numeric, "9007199254740993"), "9007199254740993");
  EXPECT_EQ(Read(DataType::Numeric, "0.5"), "0.5");
  EXPECT_EQ(Read(DataType::Numeric, "inf"), "inf");
  EXPECT_EQ(Read(DataType::Double, "nan"), "nan");
  EXPECT_EQ(Read(DataType::Numeric, "NaN"), "nan");
  EXPECT_EQ(Read(DataType::Numeric, "1.50"), "1.5");
  EXPECT_EQ(Read(DataType::Numeric, "1.50", false), "1.50");
  const Text sLong = "12345678901234567890.12345678900";
  EXPECT_EQ(Read(DataType::Numeric, sLong), sLong);
  EXPECT_EQ(Read(DataType::Numeric, "-000" + sLong), "-" + sLong);
  EXPECT_EQ(Read(DataType::Numeric, "+.10000000000000000001"), "0.10000000000000000001");
  EXPECT_EQ(Read(DataType::Numeric, "12345678901234567890123."), "12345678901234567890123");
  EXPECT_EQ(Read(DataType::Boolean, "TRUE"), "True");
  EXPECT_EQ(Read(DataType::Boolean, "0"), "False");
  EXPECT_EQ(Read(DataType::DBTimeStamp, "2024-05-31T17:45+02:00"), "2024-05-31 15:45:00");
  EXPECT_EQ(Read(DataType::DBTimeStamp, "*-1h"), "2024-05-15 11:00:00");
  EXPECT_EQ(Read(DataType::DBDate, "2024-05-31"), "2024-05-31");
  EXPECT_EQ(Read(DataType::DBTime, "17:45:30"), "17:45:30");
  EXPECT_EQ(Read(DataType::Guid, "{01234567-89AB-CDEF-0123-456789ABCDEF}"),
            "{01234567-89AB-CDEF-0123-456789ABCDEF}");
  EXPECT_EQ(Read(DataType::Binary, "0x00fF"), "0x00FF");
  EXPECT_EQ(Read(DataType::WChar, " text "), " text ");
}

TEST(typed_text, refuses_what_is_none) {
  for (const char* const sText : {"", "1.5", "abc", "1 ", "0x1", "2147483648", "--1", "1e3"}) {
    EXPECT_EQ(Read(DataType::Integer, sText), "none") << sText;
  }
  for (const char* const sText : {"", "1,5", "1e999", "1.5x", " 1"}) {
    EXPECT_EQ(Read(DataType::Double, sText), "none") << sText;
  }
  EXPECT_EQ(Read(DataType::BigInt, "9223372036854775808"), "none");
  for (const char* const sText :
       {"", "1,5", "1e999", "1.5x", " 1", "-", ".", "1.23456789012345678e5"}) {
    EXPECT_EQ(Read(DataType::Numeric, sText), "none") << sText;
  }
  EXPECT_EQ(Read(DataType::Boolean, "yes"), "none");
  EXPECT_EQ(Read(DataType::DBTimeStamp, "yesterday"), "none");
  EXPECT_EQ(Read(DataType::DBTimeStamp, "2024-02-30"), "none");
  EXPECT_EQ(Read(DataType::DBDate, "2024-02-30"), "none");
  EXPECT_EQ(Read(DataType::DBTime, "25:00:00"), "none");
  EXPECT_EQ(Read(DataType::Guid, "{0}"), "none");
  EXPECT_EQ(Read(DataType::Binary, "00FF"), "none");
  EXPECT_EQ(Read(DataType::Binary, "0x0G"), "none");
}

}  // namespace
}  // namespace orvane::exports
