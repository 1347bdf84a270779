#include "platform/stored_text.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/conversions.h"

namespace orvane::platform {
namespace {

TEST(stored_text, stored_texts_of_dates_times_and_guids_come_out_typed) {
  const std::vector<std::pair<DataType, std::string>> cases = {
      {DataType::DBDate, "2024-02-29"}, {DataType::DBDate, "0001-01-01"},
      {DataType::DBTime, "00:00:00"},   {DataType::DBTime, "23:59:59.000001"},
      {DataType::DBTime, "12:30:00.5"}, {DataType::Guid, "{01234567-89AB-CDEF-0123-456789ABCDEF}"},
  };
  for (const auto& [type, sText] : cases) {
    const Value vtValue = FromStoredText(type, sText);
    EXPECT_EQ(vtValue.As<Text>(), nullptr) << sText;
    EXPECT_EQ(ToText(vtValue), sText);
  }
}

TEST(stored_text, stored_texts_in_another_spelling_stay_texts) {
  const std::vector<std::pair<DataType, std::string>> cases = {
      {DataType::DBDate, "2023-02-29"},
      {DataType::DBDate, "2024-2-29"},
      {DataType::DBDate, "2024/02/29"},
      {DataType::DBDate, "+024-02-29"},
      {DataType::DBDate, "2024-02--9"},
      {DataType::DBDate, "yesterday!"},
      {DataType::DBDate, ""},
      {DataType::DBTime, "24:00:00"},
      {DataType::DBTime, "12:60:00"},
      {DataType::DBTime, "12:00:60"},
      {DataType::DBTime, "12:00"},
      {DataType::DBTime, "12:30:00.500"},
      {DataType::DBTime, "12:30:00."},
      {DataType::DBTime, "12:30:00,5"},
      {DataType::DBTime, "12:30:00.1234567"},
      {DataType::Guid, "{01234567-89ab-cdef-0123-456789abcdef}"},
      {DataType::Guid, "01234567-89AB-CDEF-0123-456789ABCDEF"},
      {DataType::Guid, "0123456789ABCDEF0123456789ABCDEF"},
      {DataType::Guid, "{01234567-89AB-CDEF-0123-456789ABCDEG}"},
      {DataType::Guid, "{}"},
  };
  for (const auto& [type, sText] : cases) {
    EXPECT_TRUE(FromStoredText(type, sText) == Value(sText)) << sText;
  }
}

}  // namespace
}  // namespace orvane::platform
