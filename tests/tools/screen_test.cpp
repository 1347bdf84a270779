#include "tools/orvane/screen.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

constexpr const char* kAnew = "\x1B[H\x1B[2J\x1B[3J";

TEST(screen, shows_what_it_has_room_for) {
  EXPECT_EQ(ScreenAnew("one\ntwo\nthree\n", {3, 80}), platform::Text(kAnew) + "one\ntwo\n");
  EXPECT_EQ(ScreenAnew("one\ntwo", {24, 2}), platform::Text(kAnew) + "on\ntw\n");
  EXPECT_EQ(ScreenAnew("", {24, 80}), kAnew);
  EXPECT_EQ(ScreenAnew("one\n", {}), platform::Text(kAnew) + "one\n");
}

TEST(screen, cuts_between_characters) {
  EXPECT_EQ(ScreenAnew("K\xC3\xB6ln\n\xFF\xFEx\n", {24, 2}),
            platform::Text(kAnew) + "K\xC3\xB6\n\xFF\xFE\n");
}

}  // namespace
}  // namespace orvane::tools
