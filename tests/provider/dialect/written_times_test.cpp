#include "provider/dialect/written_times.h"

#include <gtest/gtest.h>

namespace orvane::provider::dialect {
namespace {

TEST(written_times, sort_when_they_go_from_the_year_down) {
  for (const char* const sFormat :
       {"%Y-%m-%d", "%F %T", "%Y", "%Y-%j", "%Y%m%d%H%M", "%Y-%W-%w", "%Y-%m-%d %H:%M:%f"}) {
    EXPECT_TRUE(ReadFormat(sFormat).bSorts) << sFormat;
    EXPECT_TRUE(ReadFormat(sFormat).bFromYear) << sFormat;
  }
  for (const char* const sFormat : {"%H", "%H:%M", "%m-%d", "%d %R", "at %Y", "%g-%m"}) {
    EXPECT_TRUE(ReadFormat(sFormat).bSorts) << sFormat;
    EXPECT_FALSE(ReadFormat(sFormat).bFromYear) << sFormat;
  }
  for (const char* const sFormat :
       {"%d.%m.%Y", "%f%w", "%H:%H", "%m/%d/%Y", "%Y-%d-%m", "%j-%d", "%q", "%", "%s"}) {
    EXPECT_FALSE(ReadFormat(sFormat).bSorts) << sFormat;
  }
}

TEST(written_times, begin_with_texts_of_their_shape) {
  const auto date = ReadFormat("%Y-%m-%d");
  for (const char* const sText : {"", "2024", "2024-05", "2024-05-15", "2024-05-15 10:00"}) {
    EXPECT_TRUE(CanBegin(date, sText)) << sText;
  }
  for (const char* const sText : {"24-05-15", "15.05.2024", "2024/05/15", "x", "2024-5-15"}) {
    EXPECT_FALSE(CanBegin(date, sText)) << sText;
  }
  const auto hour = ReadFormat("%H");
  EXPECT_TRUE(CanBegin(hour, "07"));
  EXPECT_FALSE(CanBegin(hour, "2024-01-01"));
  EXPECT_TRUE(CanBegin(ReadFormat("%d.%m.%Y"), "15.05.2024"));
  EXPECT_FALSE(CanBegin(ReadFormat("%d.%m.%Y"), "15.05.2024 10:00"));
  EXPECT_TRUE(CanBegin(ReadFormat("%f"), "59.999"));
  EXPECT_FALSE(ReadFormat("W2%W").bKnown);
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
