#include "ado/secret.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvane::ado {
namespace {

bool RoomIsZero(const platform::Text& sText) {
  // The room stays the text's own after it was emptied.
  return std::all_of(sText.data(), sText.data() + sText.capacity(),
                     [](char byte) { return byte == '\0'; });
}

TEST(Secret, wipe_overwrites_the_whole_room_of_the_text) {
  for (const std::size_t length : {1U, 15U, 16U, 200U}) {
    platform::Text sText(length, 's');
    sText.resize(length / 2);
    const std::size_t capacity = sText.capacity();
    Wipe(sText);
    EXPECT_TRUE(sText.empty());
    EXPECT_EQ(sText.capacity(), capacity);
    EXPECT_TRUE(RoomIsZero(sText));
  }
}

TEST(Secret, wipe_at_end_wipes_also_when_something_fails) {
  platform::Text sText = "swordfish";
  try {
    const WipeAtEnd wipe(sText);
    throw 1;
  } catch (int) {
  }
  EXPECT_TRUE(sText.empty());
}

}  // namespace
}  // namespace orvane::ado
