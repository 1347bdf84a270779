// What a recordset tells of many cells at once.
#include <gtest/gtest.h>

#include "ado/recordset_builder.h"

namespace orvane::ado {
namespace {

using platform::CellRun;
using platform::DataType;
using platform::RowIndex;
using platform::Value;
using platform::ValueKind;

constexpr RowIndex kRowCount = 10'000;

platform::RecordsetPtr Rows() {
  RecordsetBuilder builder({{"Tag", DataType::WChar},
                            {"Value", DataType::Double},
                            {"Mixed", DataType::Empty},
                            {"Nothing", DataType::WChar}});
  for (RowIndex row = 0; row < kRowCount; ++row) {
    builder.AppendRow({row % 10 == 0 ? Value() : Value("tag" + std::to_string(row % 50)),
                       Value(0.5), row % 2 == 0 ? Value("x") : Value(row), Value()});
  }
  return builder.Finish();
}

TEST(cell_runs, follow_each_other_without_gaps_and_hold_what_their_cells_do) {
  const auto rs = Rows();
  int nRuns = 0;
  for (RowIndex row = 0; row < kRowCount;) {
    const CellRun run = rs->RunAt(row, 0);
    ASSERT_EQ(run.begin, row);
    ASSERT_GT(run.end, row);
    EXPECT_EQ(run.kind, ValueKind::Text);
    for (RowIndex within = row; within < run.end; ++within) {
      const Value vtValue = rs->ValueAt(within, 0);
      if (vtValue.IsNull()) continue;
      EXPECT_NE(run.texts.find(*vtValue.As<platform::Text>()), std::string_view::npos);
      const CellRun same = rs->RunAt(within, 0);
      ASSERT_EQ(same.begin, run.begin);
      ASSERT_EQ(same.end, run.end);
    }
    row = run.end;
    ++nRuns;
  }
  EXPECT_GT(nRuns, 1);
  EXPECT_LT(nRuns, 200);
  EXPECT_EQ(rs->RunAt(5'000, 1).kind, ValueKind::Double);
  EXPECT_EQ(rs->RunAt(5'000, 1).texts, "");
  EXPECT_EQ(rs->RunAt(5'000, 2).kind, std::nullopt);
  EXPECT_EQ(rs->RunAt(5'000, 3).kind, ValueKind::Null);
}

TEST(cell_runs, leave_rows_alone_that_were_edited) {
  const auto rs = Rows();
  const CellRun before = rs->RunAt(50, 0);
  ASSERT_LT(before.begin, 40);
  ASSERT_GT(before.end, 61);
  rs->ValueAt(40, 3, Value("typed"));
  const std::vector<Value> stored{Value("stored"), Value(1.0), Value(), Value()};
  rs->ValueAt(60, 0, Value("typed"));
  rs->Accept(60, stored);
  const auto ends = [&](RowIndex row) {
    const CellRun run = rs->RunAt(row, 0);
    return std::pair(run.begin, run.end);
  };
  EXPECT_EQ(ends(39), std::pair(before.begin, RowIndex{40}));
  EXPECT_EQ(ends(40), std::pair(RowIndex{40}, RowIndex{41}));
  EXPECT_EQ(rs->RunAt(40, 0).kind, std::nullopt);
  EXPECT_EQ(ends(50), std::pair(RowIndex{41}, RowIndex{60}));
  EXPECT_EQ(ends(60), std::pair(RowIndex{60}, RowIndex{61}));
  EXPECT_EQ(ends(61), std::pair(RowIndex{61}, before.end));
  const RowIndex added = rs->AddNew();
  EXPECT_EQ(ends(added), std::pair(added, added + 1));
}

}  // namespace
}  // namespace orvane::ado
