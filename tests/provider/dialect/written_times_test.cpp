#include "provider/dialect/written_times.h"

#include <gtest/gtest.h>

namespace orvane::provider::dialect {
namespace {

TEST(written_times, sort_when_they_go_from_the_year_down) {
  for (const char* const sFormat : {"%Y-%m-%d", "%F %T", "%Y", "%Y-%j", "%Y%m%d%H%M", "%Y-%W-%w",
                                    "%Y-%m-%d %H:%M:%f", "%Y-%m-01"}) {
    EXPECT_TRUE(SortsAsTimes(ShapeOfFormat(sFormat))) << sFormat;
    EXPECT_TRUE(BeginsWithYear(ShapeOfFormat(sFormat))) << sFormat;
  }
  for (const char* const sFormat : {"%H", "%H:%M", "%m-%d", "%d %R", "at %Y", "%g-%m", "%f"}) {
    EXPECT_TRUE(SortsAsTimes(ShapeOfFormat(sFormat))) << sFormat;
    EXPECT_FALSE(BeginsWithYear(ShapeOfFormat(sFormat))) << sFormat;
  }
  for (const char* const sFormat : {"%d.%m.%Y", "%f%w", "%H:%H", "%m/%d/%Y", "%Y-%d-%m", "%j-%d",
                                    "%q", "%", "%s", "\1%Y", "%Y\7"}) {
    EXPECT_FALSE(SortsAsTimes(ShapeOfFormat(sFormat))) << sFormat;
  }
}

TEST(written_times, come_before_or_behind_texts_of_their_shape) {
  for (const char* const sText : {"2024", "2024-05", "2024-05-15", "2024-05-15 10:00"}) {
    EXPECT_TRUE(CanBegin(kDayShape, sText)) << sText;
  }
  for (const char* const sText : {"", "2", "202", "24-05-15", "15.05.2024", "2024/05/15", "x"}) {
    EXPECT_FALSE(CanBegin(kDayShape, sText)) << sText;
  }
  const auto hour = ShapeOfFormat("%H");
  EXPECT_TRUE(CanBegin(hour, "07"));
  EXPECT_TRUE(CanBegin(hour, "07:30"));
  for (const char* const sText : {"7", "2024-01-01", "31.12.2023", "7:30"}) {
    EXPECT_FALSE(CanBegin(hour, sText)) << sText;
    EXPECT_FALSE(CanBegin(kPartShape, sText)) << sText;
    EXPECT_FALSE(CanBegin(kClockShape, sText)) << sText;
  }
  EXPECT_TRUE(CanBegin(kClockShape, "07:30:00.5"));
  EXPECT_TRUE(CanBegin(kWholeShape, "20240515"));
  EXPECT_FALSE(CanBegin(kWholeShape, "31.12.2023"));
  EXPECT_TRUE(CanBegin(ShapeOfFormat("%d.%m.%Y"), "15.05.2024"));
  EXPECT_FALSE(CanBegin(ShapeOfFormat("%d.%m.%Y"), "15.05.2024 10:00"));
  EXPECT_TRUE(CanBegin(ShapeOfFormat("%f"), "59.999"));
  EXPECT_TRUE(CanBegin(ShapeOfFormat("W2%W"), "W251"));
  EXPECT_FALSE(CanBegin(ShapeOfFormat("W2%W"), "W2"));
}

TEST(written_times, are_texts_of_their_length) {
  EXPECT_TRUE(CanBe(kDayShape, "2024-05-15"));
  EXPECT_FALSE(CanBe(kDayShape, "2024-05"));
  EXPECT_FALSE(CanBe(kDayShape, "2024-05-15 10:00"));
  EXPECT_TRUE(CanBe(kClockShape, "08:30:00.25"));
  EXPECT_FALSE(CanBe(kClockShape, "08:30"));
}

TEST(written_times, have_one_format_where_digits_meet_digits) {
  EXPECT_TRUE(HaveOneFormat(kDayShape, ShapeOfFormat("%Y-%m-%d %H:%M")));
  EXPECT_TRUE(HaveOneFormat(kDayShape, ShapeOfFormat("%Y-%m-01")));
  EXPECT_TRUE(HaveOneFormat(kClockShape, ShapeOfFormat("%H")));
  EXPECT_FALSE(HaveOneFormat(kDayShape, ShapeOfFormat("%Y%m%d")));
  EXPECT_FALSE(HaveOneFormat(ShapeOfFormat("%H%M"), kClockShape));
}

TEST(written_times, are_no_numbers_where_they_have_signs) {
  EXPECT_TRUE(LooksLikeNoNumber(kDayShape));
  EXPECT_TRUE(LooksLikeNoNumber(kClockShape));
  for (const char* const sFormat : {"%Y", "%Y%m%d", "-%Y", "%Y.%m", ""}) {
    EXPECT_FALSE(LooksLikeNoNumber(ShapeOfFormat(sFormat))) << sFormat;
  }
}

TEST(written_times, tell_a_date_by_its_year) {
  EXPECT_TRUE(BeginsAsDate("2024-01-01"));
  EXPECT_TRUE(BeginsAsDate("2024-1"));
  for (const char* const sText : {"", "2024", "0830", "2024-", "24-01-01", "2024:01", "2024-x"}) {
    EXPECT_FALSE(BeginsAsDate(sText)) << sText;
  }
}

}  // namespace
}  // namespace orvane::provider::dialect
