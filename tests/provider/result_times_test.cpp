#include "provider/result_times.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ado/row_collector.h"
#include "tests/provider/temporary_root.h"

namespace orvane::provider {
namespace {

using dialect::Content;
using platform::DataType;
using platform::Value;

/// The rows of one column as they arrive behind the times, in blocks of so many.
platform::RecordsetPtr Shown(const std::vector<Value>& values, DataType type, Content content,
                             bool bTimeAsDouble, std::size_t rowsInBlock = 100) {
  const auto rows = std::make_shared<ado::RowCollector>();
  ShownTimes times(rows, {content}, {bTimeAsDouble, zones::TimeZone("UTC")});
  times.Begin({{"t", type}, {"same"}}, true);
  for (std::size_t first = 0; first < values.size(); first += rowsInBlock) {
    std::vector<ado::Column> block(2);
    for (std::size_t i = first; i < std::min(first + rowsInBlock, values.size()); ++i) {
      block[0].AppendValue(values[i]);
      block[1].AppendText("x");
    }
    times.Take(block);
  }
  times.End(false);
  return rows->Recordset();
}

Value Number(std::int64_t llNumber) {
  return llNumber;
}

TEST(result_times, are_made_of_the_numbers_in_columns_of_times) {
  const auto rs = Shown({Number(0), Number(1), {}}, DataType::Empty, Content::Time, false, 1);
  EXPECT_EQ(Rows(*rs), "1970-01-01 00:00:00|x\n1970-01-01 00:00:00.000001|x\n|x\n");
  EXPECT_EQ(rs->FieldAt(0).Type(), DataType::DBTimeStamp);
  EXPECT_EQ(Rows(*Shown({Number(0)}, DataType::BigInt, Content::Time, true)), "25569|x\n");
  for (const Content content : {Content::Other, Content::Null, Content::Mixed}) {
    const auto same = Shown({Number(7)}, DataType::BigInt, content, true);
    EXPECT_EQ(Rows(*same), "7|x\n");
    EXPECT_EQ(same->FieldAt(0).Type(), DataType::BigInt);
  }
}

TEST(result_times, are_numbers_again_in_columns_that_mix) {
  const Value time = platform::Timestamp(std::chrono::microseconds(5));
  for (const bool bTimeAsDouble : {false, true}) {
    const auto rs = Shown({time, {}}, DataType::DBTimeStamp, Content::Mixed, bTimeAsDouble);
    EXPECT_EQ(Rows(*rs), "5|x\n|x\n");
    EXPECT_EQ(rs->FieldAt(0).Type(), DataType::BigInt);
  }
  EXPECT_EQ(Rows(*Shown({time, {}}, DataType::DBTimeStamp, Content::Other, false)),
            "1970-01-01 00:00:00.000005|x\n|x\n");
}

}  // namespace
}  // namespace orvane::provider
