// Every interface compiles beside every other, so that no member name hides a type it needs.
#include <gtest/gtest.h>

#include "ado/logon_prompt.h"
#include "ado/provider.h"
#include "platform/component.h"
#include "platform/console/snap_in.h"
#include "platform/grids/grids.h"

namespace orvane::platform {
namespace {

TEST(headers, fixed_file_information_is_52_bytes) {
  EXPECT_EQ(sizeof(FixedFileInfo), 52U);
}

TEST(headers, result_codes_have_their_published_numbers) {
  EXPECT_EQ(static_cast<std::uint32_t>(kFail), 0x80004005U);
  EXPECT_EQ(static_cast<std::uint32_t>(kNoInterface), 0x80004002U);
  EXPECT_EQ(static_cast<std::uint32_t>(kClassNotAvailable), 0x80040111U);
}

}  // namespace
}  // namespace orvane::platform
