// Every interface compiles beside every other, so that no member name hides a type it needs.
#include <gtest/gtest.h>

#include <type_traits>
#include <variant>

#include "ado/logon_prompt.h"
#include "ado/provider.h"
#include "platform/component.h"
#include "platform/console/snap_in.h"
#include "platform/grids/grids.h"

namespace orvane::platform {
namespace {

// A kind is the place of its type in the variant: neither may get another without the other.
template <ValueKind kind, class T>
constexpr bool kHolds =
    std::is_same_v<std::variant_alternative_t<static_cast<std::size_t>(kind), Value::Storage>, T>;

TEST(headers, every_kind_of_value_is_the_place_of_its_type) {
  static_assert(kHolds<ValueKind::Null, Null>);
  static_assert(kHolds<ValueKind::Boolean, bool>);
  static_assert(kHolds<ValueKind::Long, std::int32_t>);
  static_assert(kHolds<ValueKind::LongLong, std::int64_t>);
  static_assert(kHolds<ValueKind::Double, double>);
  static_assert(kHolds<ValueKind::Decimal, Decimal>);
  static_assert(kHolds<ValueKind::Text, Text>);
  static_assert(kHolds<ValueKind::Timestamp, Timestamp>);
  static_assert(kHolds<ValueKind::Date, Date>);
  static_assert(kHolds<ValueKind::TimeOfDay, TimeOfDay>);
  static_assert(kHolds<ValueKind::Bytes, Bytes>);
  static_assert(kHolds<ValueKind::Guid, Guid>);
  static_assert(kHolds<ValueKind::Object, ObjectPtr>);
  static_assert(kHolds<ValueKind::WallTime, WallTime>);
  static_assert(std::variant_size_v<Value::Storage> ==
                static_cast<std::size_t>(ValueKind::WallTime) + 1);
}

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
