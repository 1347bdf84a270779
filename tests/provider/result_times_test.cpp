#include "provider/result_times.h"

#include <gtest/gtest.h>

#include <thread>

#include "ado/recordset_builder.h"
#include "tests/provider/temporary_root.h"

namespace orvane::provider {
namespace {

using dialect::Content;
using platform::DataType;
using platform::Value;

platform::RecordsetPtr Numbers(platform::RowIndex rows) {
  ado::RecordsetBuilder builder({{"t"}});
  for (platform::RowIndex row = 0; row < rows; ++row) builder.AppendRow({Value(std::int64_t{row})});
  return builder.Finish();
}

platform::RecordsetPtr Shown(platform::RecordsetPtr rs, Content content, bool bTimeAsDouble,
                             const ResultLimits& limits = {}) {
  return WithShownTimes(std::move(rs), {content}, {bTimeAsDouble, zones::TimeZone("UTC")}, limits);
}

TEST(result_times, are_made_of_the_numbers_in_columns_of_times) {
  const auto rs = Shown(Numbers(2), Content::Time, false);
  EXPECT_EQ(Rows(*rs), "1970-01-01 00:00:00\n1970-01-01 00:00:00.000001\n");
  EXPECT_EQ(rs->FieldAt(0).Type(), DataType::DBTimeStamp);
  EXPECT_EQ(Rows(*Shown(Numbers(1), Content::Time, true)), "25569\n");
  const auto same = Numbers(1);
  for (const Content content : {Content::Other, Content::Null, Content::Mixed}) {
    EXPECT_EQ(Shown(same, content, true), same);
  }
}

TEST(result_times, are_numbers_again_in_columns_that_mix) {
  const auto times = [] {
    ado::RecordsetBuilder builder({{"t", DataType::DBTimeStamp}});
    builder.AppendRow({Value(platform::Timestamp(std::chrono::microseconds(5)))});
    builder.AppendRow({Value()});
    return builder.Finish();
  };
  for (const bool bTimeAsDouble : {false, true}) {
    const auto rs = Shown(times(), Content::Mixed, bTimeAsDouble);
    EXPECT_EQ(Rows(*rs), "5\n\n");
    EXPECT_EQ(rs->FieldAt(0).Type(), DataType::BigInt);
  }
  EXPECT_EQ(Rows(*Shown(times(), Content::Other, false)), "1970-01-01 00:00:00.000005\n\n");
}

TEST(result_times, are_made_until_the_stop_only) {
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(FailureOf([&] {
              Shown(Numbers(1), Content::Time, true, {0, stop.get_token()});
            }),
            "3712: The statement was cancelled.");
}

TEST(result_times, are_made_within_their_memory_only) {
  const auto rs = Numbers(100'000);
  EXPECT_EQ(FailureOf([&] {
              Shown(rs, Content::Time, true, {100'000, {}});
            }),
            "3807: There is not enough memory for the statement: set a row limit, or narrow it "
            "down.");
  EXPECT_EQ(Shown(rs, Content::Time, true, {10'000'000, {}})->RecordCount(), 100'000);
}

}  // namespace
}  // namespace orvane::provider
