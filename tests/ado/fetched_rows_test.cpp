// Rows in blocks: read while more come, and kept beyond the memory budget.
#include "ado/fetched_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <fstream>
#include <string>
#include <thread>

#include "ado/columnar_recordset.h"
#include "ado/row_receiver.h"
#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

using platform::DataType;
using platform::FetchState;
using platform::RowIndex;
using platform::Value;

/// What stands in a row; every third number is null, texts repeat and do not.
Value CellOf(RowIndex row, int column) {
  switch (column) {
    case 0:
      return row;
    case 1:
      return row % 3 == 0 ? Value() : Value(static_cast<double>(row) / 7);
    case 2:
      return "tag" + std::to_string(row % 10);
    default:
      return "text number " + std::to_string(row);
  }
}

constexpr int kColumns = 4;

std::vector<Column> BlockOf(RowIndex first, std::size_t rows) {
  std::vector<Column> block(kColumns);
  for (RowIndex row = first; row < first + static_cast<RowIndex>(rows); ++row) {
    for (int i = 0; i < kColumns; ++i)
      block[static_cast<std::size_t>(i)].AppendValue(CellOf(row, i));
  }
  return block;
}

const std::vector<ColumnDescription> kDescriptions = {
    {"n", DataType::BigInt}, {"d"}, {"tag", DataType::WChar}, {"text"}};

void ExpectRows(const FetchedRows& rows, RowIndex count, RowIndex step = 1) {
  ASSERT_EQ(rows.RowCount(), count);
  for (RowIndex row = 0; row < count; row += step) {
    for (int i = 0; i < kColumns; ++i) {
      ASSERT_TRUE(rows.ValueAt(row, i) == CellOf(row, i)) << row << ' ' << i;
    }
  }
}

TEST(FetchedRows, finds_rows_in_blocks_of_any_size) {
  FetchedRows rows(kDescriptions, {});
  RowIndex count = 0;
  for (const std::size_t size : {1U, 128U, 3U, 4096U, 1U, 1U, 1U, 4095U, 64U, 65U, 4096U, 2U}) {
    rows.Append(BlockOf(count, size));
    count += static_cast<RowIndex>(size);
    ASSERT_EQ(rows.RowCount(), count);
  }
  for (int i = 0; i < 1000; ++i) rows.Append(BlockOf(count++, 1));
  for (int i = 0; i < 5; ++i, count += 4096) rows.Append(BlockOf(count, 4096));
  ExpectRows(rows, count);
}

TEST(FetchedRows, takes_an_empty_block_for_nothing) {
  FetchedRows rows(kDescriptions, {});
  rows.Append(std::vector<Column>(kColumns));
  EXPECT_EQ(rows.RowCount(), 0);
  rows.Append(BlockOf(0, 2));
  rows.Append(std::vector<Column>(kColumns));
  ExpectRows(rows, 2);
}

TEST(FetchedRows, tell_the_type_of_what_has_come_so_far) {
  FetchedRows rows({{"a"}, {"b", DataType::Integer}}, {});
  EXPECT_EQ(rows.TypeOf(0), DataType::Empty);
  const auto append = [&](const Value& vtValue) {
    std::vector<Column> block(2);
    for (Column& column : block) column.AppendValue(vtValue);
    rows.Append(block);
  };
  append({});
  EXPECT_EQ(rows.TypeOf(0), DataType::Empty);
  append(std::int64_t{1});
  EXPECT_EQ(rows.TypeOf(0), DataType::BigInt);
  append(1.5);
  EXPECT_EQ(rows.TypeOf(0), DataType::Double);
  append("text");
  EXPECT_EQ(rows.TypeOf(0), DataType::WChar);
  EXPECT_EQ(rows.TypeOf(1), DataType::Integer);
  EXPECT_TRUE(rows.ValueAt(1, 0) == Value(std::int64_t{1}));
  EXPECT_TRUE(rows.ValueAt(2, 0) == Value(1.5));
}

TEST(FetchedRows, are_read_by_others_while_they_come) {
  const auto rows = std::make_shared<FetchedRows>(kDescriptions, RowStorage{});
  constexpr RowIndex kRows = 60'000;
  std::atomic<int> bad{0};
  const auto read = [&] {
    ColumnarRecordset rs(rows);
    RowIndex seen = 0;
    while (true) {
      const bool bEnded = rs.State() != FetchState::Running;
      const RowIndex count = rs.RecordCount();
      if (count < seen) ++bad;
      seen = count;
      for (RowIndex row = count - 1; row >= 0; row -= std::max<RowIndex>(1, count / 50)) {
        const int column = static_cast<int>(row % kColumns);
        if (!(rs.ValueAt(row, column) == CellOf(row, column))) ++bad;
        if (rs.FieldAt(1).Type() != DataType::Double && row > 1000) ++bad;
      }
      if (bEnded) break;
    }
    if (seen != kRows || rs.State() != FetchState::Stopped || rs.FetchRemark() != "Why.") ++bad;
  };
  std::thread one(read);
  std::thread other(read);
  for (RowIndex row = 0; row < kRows;) {
    const auto size = static_cast<RowIndex>(1 + row * 31 % 500);
    const RowIndex next = std::min(size, kRows - row);
    rows->Append(BlockOf(row, static_cast<std::size_t>(next)));
    row += next;
  }
  rows->End(FetchState::Stopped, "Why.");
  one.join();
  other.join();
  EXPECT_EQ(bad, 0);
}

TEST(FetchedRows, end_for_good_with_state_remark_and_time) {
  FetchedRows rows(kDescriptions, {});
  EXPECT_EQ(rows.State(), FetchState::Running);
  EXPECT_EQ(rows.Remark(), "");
  rows.End(FetchState::Stopped, "Stopped.");
  EXPECT_EQ(rows.State(), FetchState::Stopped);
  EXPECT_EQ(rows.Remark(), "Stopped.");
  EXPECT_EQ(rows.Elapsed(), rows.Elapsed());
}

/// Bytes of the process that no file stands behind.
std::size_t AnonymousBytes() {
  std::ifstream file("/proc/self/smaps_rollup");
  std::string sWord;
  while (file >> sWord) {
    std::size_t kilobytes = 0;
    if (sWord == "Anonymous:" && file >> kilobytes) return kilobytes * 1024;
  }
  return 0;
}

// Fills the columns as CellOf says, without memory of its own: what a sanitizer holds back of that
// would be counted.
void Refill(std::vector<Column>& block, RowIndex first, std::size_t rows) {
  char sText[40];
  for (Column& column : block) column.Clear();
  for (RowIndex row = first; row < first + static_cast<RowIndex>(rows); ++row) {
    block[0].AppendLongLong(row);
    row % 3 == 0 ? block[1].AppendNull() : block[1].AppendDouble(static_cast<double>(row) / 7);
    std::snprintf(sText, sizeof sText, "tag%d", static_cast<int>(row % 10));
    block[2].AppendText(sText);
    std::snprintf(sText, sizeof sText, "text number %lld", static_cast<long long>(row));
    block[3].AppendText(sText);
  }
}

TEST(FetchedRows, beyond_the_budget_take_no_memory) {
  constexpr std::size_t kMegabyte = std::size_t{1} << 20;
  const auto budget = std::make_shared<MemoryBudget>(4 * kMegabyte);
  constexpr RowIndex kRows = 2'000'000;  // of about 50 bytes
  {
    FetchedRows rows(kDescriptions, {budget, true});
    std::vector<Column> block(kColumns);
    std::size_t warm = 0;
    for (RowIndex row = 0; row < kRows; row += 4000) {
      Refill(block, row, 4000);
      rows.Append(block);
      if (row == 200'000) warm = AnonymousBytes();
    }
    rows.End(FetchState::Complete);
    ASSERT_GT(warm, 0U);
    EXPECT_LT(AnonymousBytes(), warm + 8 * kMegabyte);
    EXPECT_LE(budget->Taken(), 4 * kMegabyte);
    EXPECT_EQ(budget->Taken(), rows.Bytes());
    EXPECT_GT(rows.Bytes(), 3 * kMegabyte);
    for (RowIndex row = 0; row < kRows; row += 29) {
      const int column = static_cast<int>(row % kColumns);
      ASSERT_TRUE(rows.ValueAt(row, column) == CellOf(row, column)) << row;
    }
    for (RowIndex first = 0; first < kRows; first += 250'000) {
      // Every value of some blocks, on the heap and in the file.
      for (RowIndex row = first; row < first + 5000; ++row) {
        for (int i = 0; i < kColumns; ++i) ASSERT_TRUE(rows.ValueAt(row, i) == CellOf(row, i));
      }
    }
  }
  EXPECT_EQ(budget->Taken(), 0U);
}

TEST(FetchedRows, beyond_the_budget_fail_where_they_may_not_go_on) {
  FetchedRows rows(kDescriptions, {std::make_shared<MemoryBudget>(150'000)});
  rows.Append(BlockOf(0, 1000));
  EXPECT_THROW(rows.Append(BlockOf(1000, kRowsInBlock)), std::bad_alloc);
  ExpectRows(rows, 1000);
}

TEST(FetchedRows, share_one_budget) {
  const auto budget = std::make_shared<MemoryBudget>(1'000'000);
  auto one = std::make_unique<FetchedRows>(kDescriptions, RowStorage{budget, false});
  FetchedRows other(kDescriptions, {budget, false});
  RowIndex count = 0;
  while (budget->Taken() < 700'000) {
    one->Append(BlockOf(count, 1000));
    count += 1000;
  }
  const auto append = [&] {
    for (RowIndex first = 0; first < 12'000; first += 4000) other.Append(BlockOf(first, 4000));
  };
  EXPECT_THROW(append(), std::bad_alloc);
  const RowIndex held = other.RowCount();
  EXPECT_LT(held, 12'000);
  one.reset();
  append();
  EXPECT_EQ(other.RowCount(), held + 12'000);
}

}  // namespace
}  // namespace orvane::ado
