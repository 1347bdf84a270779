#include "ado/recordset_builder.h"

#include <gtest/gtest.h>

#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

using platform::DataType;
using tests::FailureOf;
using tests::Told;

TEST(RecordsetBuilder, makes_a_recordset_of_whole_rows) {
  RecordsetBuilder builder({{"NAME", DataType::WChar, false}, {"SIZE", DataType::Integer}});
  builder.AppendRow({"one", 1});
  builder.AppendRow({"two", {}});
  EXPECT_EQ(builder.RowCount(), 2);
  const auto rs = builder.Finish();
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->FieldCount(), 2);
  EXPECT_EQ(rs->FieldAt(0).Name(), "NAME");
  EXPECT_FALSE(rs->FieldAt(0).Nullable());
  EXPECT_EQ(rs->FieldAt(1).Type(), DataType::Integer);
  EXPECT_TRUE(rs->FieldAt(1).Nullable());
  EXPECT_TRUE(rs->ValueAt(1, 0) == platform::Value("two"));
  EXPECT_TRUE(rs->ValueAt(1, 1).IsNull());
}

TEST(RecordsetBuilder, refuses_a_row_of_another_width) {
  RecordsetBuilder builder({{"A"}, {"B"}});
  EXPECT_EQ(
      FailureOf([&] { builder.AppendRow({1}); }),
      (Told{platform::failure::kInvalidArgument,
            "A row of 1 values does not fit a recordset of 2 columns; give it a value for each."}));
  EXPECT_EQ(builder.RowCount(), 0);
}

TEST(RecordsetBuilder, a_refused_object_leaves_no_half_row) {
  RecordsetBuilder builder({{"A"}, {"B"}});
  EXPECT_EQ(FailureOf([&] {
              builder.AppendRow({1, std::make_shared<platform::Object>()});
            }).lNumber,
            platform::failure::kTypeMismatch);
  EXPECT_EQ(builder.RowCount(), 0);
  EXPECT_EQ(builder.Finish()->RecordCount(), 0);
}

TEST(RecordsetBuilder, takes_the_type_of_an_undescribed_column_from_its_values) {
  RecordsetBuilder builder({{"A"}, {"B"}, {"C", DataType::Integer}});
  builder.AppendRow({1.5, {}, "not a number"});
  const auto rs = builder.Finish();
  EXPECT_EQ(rs->FieldAt(0).Type(), DataType::Double);
  EXPECT_EQ(rs->FieldAt(1).Type(), DataType::Empty);
  EXPECT_EQ(rs->FieldAt(2).Type(), DataType::Integer);
  EXPECT_TRUE(rs->ValueAt(0, 2) == platform::Value("not a number"));
}

TEST(RecordsetBuilder, passes_on_truncation_and_time_taken) {
  RecordsetBuilder builder({{"A"}});
  const auto rs = builder.Finish(true, std::chrono::microseconds(1234));
  EXPECT_TRUE(rs->Truncated());
  EXPECT_EQ(rs->Elapsed(), std::chrono::microseconds(1234));
  const auto whole = RecordsetBuilder({{"A"}}).Finish();
  EXPECT_FALSE(whole->Truncated());
}

TEST(RecordsetBuilder, makes_a_recordset_without_columns) {
  const auto rs = RecordsetBuilder({}).Finish();
  EXPECT_EQ(rs->FieldCount(), 0);
  EXPECT_EQ(rs->RecordCount(), 0);
  EXPECT_TRUE(rs->Eof());
}

TEST(RecordsetBuilder, is_empty_after_finish) {
  RecordsetBuilder builder({{"A"}});
  builder.AppendRow({1});
  builder.Finish();
  EXPECT_EQ(builder.ColumnCount(), 0);
  EXPECT_EQ(builder.RowCount(), 0);
}

}  // namespace
}  // namespace orvane::ado
