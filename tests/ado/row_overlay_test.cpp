#include "ado/row_overlay.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>

#include "ado/columnar_recordset.h"
#include "ado/fetched_rows.h"
#include "ado/recordset_builder.h"
#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

using platform::ColumnIndex;
using platform::RecordsetPtr;
using platform::RowIndex;
using platform::RowState;
using platform::Value;
using tests::FailureOf;
using tests::Told;
namespace failure = platform::failure;

using RowNumbers = std::vector<RowIndex>;

// Rows {"a", 1}, {"b", 2}, ...
RecordsetPtr SomeRows(int nRows) {
  RecordsetBuilder builder({{"Name"}, {"Number"}});
  for (int i = 0; i < nRows; ++i)
    builder.AppendRow({std::string(1, static_cast<char>('a' + i)), i + 1});
  return builder.Finish();
}

TEST(RowOverlay, an_edited_cell_covers_the_fetched_one_which_stays_the_original) {
  const auto rs = SomeRows(3);
  rs->ValueAt(1, 0, "new");
  EXPECT_EQ(rs->ValueAt(1, 0), Value("new"));
  EXPECT_EQ(rs->OriginalAt(1, 0), Value("b"));
  rs->Position(1);
  EXPECT_EQ(rs->Fields().Item("Name").Value(), Value("new"));
  EXPECT_EQ(rs->StateAt(1), RowState::Edited);
  EXPECT_TRUE(rs->IsEdited(1, 0));
  EXPECT_FALSE(rs->IsEdited(1, 1));
  EXPECT_FALSE(rs->IsEdited(0, 0));
  EXPECT_EQ(rs->PendingRows(), RowNumbers{1});
}

TEST(RowOverlay, a_value_equal_to_the_original_is_an_edit_until_it_is_restored) {
  const auto rs = SomeRows(2);
  rs->ValueAt(0, 1, 1);
  rs->ValueAt(0, 0, Value());
  EXPECT_TRUE(rs->IsEdited(0, 1));
  rs->Restore(0, 0);
  EXPECT_EQ(rs->ValueAt(0, 0), Value("a"));
  EXPECT_EQ(rs->StateAt(0), RowState::Edited);
  rs->Restore(0, 1);
  EXPECT_EQ(rs->StateAt(0), RowState::Fetched);
  EXPECT_TRUE(rs->PendingRows().empty());
}

TEST(RowOverlay, a_new_row_comes_last_and_has_nulls_until_it_gets_values) {
  const auto rs = SomeRows(2);
  EXPECT_EQ(rs->AddNew(), 2);
  EXPECT_EQ(rs->AddNew(), 3);
  EXPECT_EQ(rs->RecordCount(), 4);
  EXPECT_EQ(rs->FetchedCount(), 2);
  rs->ValueAt(3, 0, "d");
  rs->MoveLast();
  EXPECT_EQ(rs->Fields().Item(0).Value(), Value("d"));
  EXPECT_TRUE(rs->ValueAt(2, 0).IsNull());
  EXPECT_TRUE(rs->OriginalAt(3, 0).IsNull());
  rs->Restore(3, 0);
  EXPECT_EQ(rs->StateAt(3), RowState::New);
  rs->MoveNext();
  EXPECT_TRUE(rs->Eof());
  EXPECT_EQ(rs->Position(), 4);
}

TEST(RowOverlay, the_first_row_of_an_empty_recordset_may_be_a_new_one) {
  const auto rs = SomeRows(0);
  EXPECT_EQ(rs->AddNew(), 0);
  EXPECT_FALSE(rs->Bof());
  EXPECT_FALSE(rs->Eof());
  EXPECT_TRUE(rs->ValueAt(0, 1).IsNull());
}

TEST(RowOverlay, a_row_to_be_deleted_can_be_read_and_takes_no_values) {
  const auto rs = SomeRows(2);
  rs->ValueAt(1, 0, "x");
  rs->Delete(1);
  EXPECT_EQ(rs->StateAt(1), RowState::Deleted);
  EXPECT_EQ(rs->ValueAt(1, 0), Value("x"));
  EXPECT_EQ(rs->OriginalAt(1, 0), Value("b"));
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(FailureOf([&] { rs->ValueAt(1, 0, "y"); }),
            (Told{failure::kNotSupported,
                  "The row is deleted and takes no values: discard the deletion, or edit another "
                  "row."}));
  rs->CancelUpdate(1);
  EXPECT_EQ(rs->StateAt(1), RowState::Fetched);
  EXPECT_EQ(rs->ValueAt(1, 0), Value("b"));
}

TEST(RowOverlay, a_cancelled_new_row_keeps_the_numbers_of_others) {
  const auto rs = SomeRows(1);
  rs->ValueAt(rs->AddNew(), 0, "first");
  rs->ValueAt(rs->AddNew(), 0, "second");
  rs->CancelUpdate(1);
  EXPECT_EQ(rs->StateAt(1), RowState::Deleted);
  EXPECT_TRUE(rs->ValueAt(1, 0).IsNull());
  EXPECT_EQ(rs->ValueAt(2, 0), Value("second"));
  EXPECT_EQ(rs->PendingRows(), RowNumbers{2});
  rs->Delete(2);
  EXPECT_EQ(rs->StateAt(2), RowState::Deleted);
  EXPECT_TRUE(rs->PendingRows().empty());
  EXPECT_EQ(rs->RecordCount(), 3);
}

TEST(RowOverlay, what_was_stored_becomes_the_fetched_values) {
  const auto rs = SomeRows(2);
  rs->ValueAt(0, 0, "mine");
  rs->Accept(0);
  EXPECT_EQ(rs->StateAt(0), RowState::Fetched);
  EXPECT_EQ(rs->OriginalAt(0, 0), Value("mine"));
  EXPECT_EQ(rs->OriginalAt(0, 1), Value(1));
  const RowIndex row = rs->AddNew();
  rs->ValueAt(row, 0, "c");
  const std::vector<Value> stored{"C", 3};
  rs->Accept(row, stored);
  EXPECT_EQ(rs->StateAt(row), RowState::Fetched);
  EXPECT_FALSE(rs->IsEdited(row, 0));
  EXPECT_EQ(rs->ValueAt(row, 0), Value("C"));
  EXPECT_EQ(rs->OriginalAt(row, 1), Value(3));
  rs->ValueAt(row, 1, 4);
  EXPECT_EQ(rs->StateAt(row), RowState::Edited);
  rs->CancelUpdate(row);
  EXPECT_EQ(rs->ValueAt(row, 1), Value(3));
  EXPECT_EQ(rs->FetchedCount(), 2);
}

// A look at all stored rows for each of them would not end before the time-out of the tests.
TEST(RowOverlay, very_many_stored_rows_are_no_hindrance_to_finding_the_rows_between_them) {
  constexpr RowIndex kRows = 600'000;
  RowOverlay overlay;
  const Value stored[] = {1};
  for (RowIndex row = 0; row < kRows; row += 2) overlay.Accept(row, stored);
  using Rows = std::pair<RowIndex, RowIndex>;
  for (RowIndex row = 0; row < kRows - 1; row += 2) {
    ASSERT_EQ(overlay.UntouchedAround(row), (Rows{row, row}));
    ASSERT_EQ(overlay.UntouchedAround(row + 1).first, row + 1);
  }
  EXPECT_EQ(overlay.UntouchedAround(3), (Rows{3, 4}));
  EXPECT_EQ(overlay.UntouchedAround(kRows).first, kRows - 1);
}

TEST(RowOverlay, a_row_deleted_at_the_server_stays_deleted) {
  const auto rs = SomeRows(2);
  rs->Delete(0);
  rs->Accept(0);
  EXPECT_TRUE(rs->PendingRows().empty());
  EXPECT_EQ(rs->StateAt(0), RowState::Deleted);
  rs->CancelUpdate(0);
  rs->Delete(0);
  rs->Accept(0);
  EXPECT_EQ(rs->StateAt(0), RowState::Deleted);
  EXPECT_TRUE(rs->PendingRows().empty());
  EXPECT_EQ(rs->ValueAt(0, 0), Value("a"));
}

TEST(RowOverlay, rows_are_edited_but_not_added_while_others_still_come) {
  const auto fetched =
      std::make_shared<FetchedRows>(std::vector{ColumnDescription{"Name"}}, RowStorage{});
  ColumnarRecordset rs(fetched);
  const auto append = [&](const char* sName) {
    std::vector<Column> block(1);
    block.front().AppendText(sName);
    fetched->Append(block);
  };
  append("a");
  rs.ValueAt(0, 0, "mine");
  EXPECT_EQ(FailureOf([&] { rs.AddNew(); }),
            (Told{failure::kNotSupported,
                  "No row can be added while rows are still being fetched: wait for the last one, "
                  "or stop the fetch."}));
  append("b");
  fetched->End(platform::FetchState::Stopped, "Stopped.");
  EXPECT_EQ(rs.AddNew(), 2);
  EXPECT_EQ(rs.ValueAt(0, 0), Value("mine"));
  EXPECT_EQ(rs.ValueAt(1, 0), Value("b"));
  EXPECT_EQ(rs.RecordCount(), 3);
}

TEST(RowOverlay, what_does_not_exist_or_cannot_be_held_is_refused_and_changes_nothing) {
  const auto rs = SomeRows(2);
  const std::vector<Value> one{"a"};
  EXPECT_EQ(FailureOf([&] { rs->ValueAt(2, 0, "x"); }).lNumber, failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rs->ValueAt(0, 2, "x"); }).lNumber, failure::kItemNotFound);
  EXPECT_EQ(FailureOf([&] { rs->ValueAt(0, 0, Value(rs)); }).lNumber, failure::kTypeMismatch);
  EXPECT_EQ(FailureOf([&] { rs->Restore(-1, 0); }).lNumber, failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rs->Delete(2); }).lNumber, failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rs->CancelUpdate(2); }).lNumber, failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rs->Accept(0, one); }).lNumber, failure::kInvalidArgument);
  EXPECT_EQ(FailureOf([&] { rs->StateAt(2); }).lNumber, failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rs->IsEdited(0, -1); }).lNumber, failure::kItemNotFound);
  EXPECT_TRUE(rs->PendingRows().empty());
}

// The same written as plainly as can be: every row whole.
class PlainRows {
 public:
  struct Row {
    std::vector<Value> originals;
    std::vector<std::optional<Value>> edits;
    bool bNew = false;
    bool bDeleted = false;
    bool bGone = false;
  };

  explicit PlainRows(const platform::Recordset& rs) {
    for (RowIndex row = 0; row < rs.RecordCount(); ++row) {
      rows.push_back({{rs.ValueAt(row, 0), rs.ValueAt(row, 1)}, {{}, {}}});
    }
  }
  bool Takes(std::size_t row) const { return !rows[row].bDeleted && !rows[row].bGone; }
  void Set(std::size_t row, std::size_t column, const Value& vt) { rows[row].edits[column] = vt; }
  void Restore(std::size_t row, std::size_t column) { rows[row].edits[column].reset(); }
  void AddNew() { rows.push_back({{{}, {}}, {{}, {}}, true}); }
  void Delete(std::size_t row) {
    if (rows[row].bNew) {
      Cancel(row);
    } else if (!rows[row].bGone) {
      rows[row].bDeleted = true;
    }
  }
  void Cancel(std::size_t row) {
    Row& one = rows[row];
    one.edits = {{}, {}};
    one.bDeleted = false;
    if (one.bNew) one.bGone = true;
    one.bNew = false;
  }
  void Accept(std::size_t row, const std::vector<Value>& stored) {
    Row& one = rows[row];
    if (one.bDeleted || one.bGone) {
      one.bGone = true;
    } else {
      for (std::size_t i = 0; i < 2; ++i) {
        if (!stored.empty()) {
          one.originals[i] = stored[i];
        } else if (one.edits[i]) {
          one.originals[i] = *one.edits[i];
        }
      }
    }
    one.edits = {{}, {}};
    one.bDeleted = one.bNew = false;
  }
  RowState StateAt(std::size_t row) const {
    const Row& one = rows[row];
    if (one.bDeleted || one.bGone) return RowState::Deleted;
    if (one.bNew) return RowState::New;
    return one.edits[0] || one.edits[1] ? RowState::Edited : RowState::Fetched;
  }
  bool IsPending(std::size_t row) const {
    return !rows[row].bGone && StateAt(row) != RowState::Fetched;
  }

  std::vector<Row> rows;
};

void ExpectSame(const platform::Recordset& rs, const PlainRows& plain) {
  ASSERT_EQ(rs.RecordCount(), static_cast<RowIndex>(plain.rows.size()));
  RowNumbers pending;
  for (std::size_t i = 0; i < plain.rows.size(); ++i) {
    const auto row = static_cast<RowIndex>(i);
    ASSERT_EQ(rs.StateAt(row), plain.StateAt(i)) << "row " << row;
    if (plain.IsPending(i)) pending.push_back(row);
    for (ColumnIndex column = 0; column < 2; ++column) {
      const auto& edit = plain.rows[i].edits[static_cast<std::size_t>(column)];
      const Value& original = plain.rows[i].originals[static_cast<std::size_t>(column)];
      ASSERT_EQ(rs.IsEdited(row, column), edit.has_value()) << "row " << row;
      ASSERT_EQ(rs.ValueAt(row, column), edit ? *edit : original) << "row " << row;
      ASSERT_EQ(rs.OriginalAt(row, column), original) << "row " << row;
    }
  }
  ASSERT_EQ(rs.PendingRows(), pending);
}

TEST(RowOverlay, random_edits_leave_what_plain_rows_hold) {
  for (unsigned nSeed = 1; nSeed <= 20; ++nSeed) {
    SCOPED_TRACE("seed " + std::to_string(nSeed));
    std::mt19937 random(nSeed);
    const auto rs = SomeRows(static_cast<int>(random() % 8));
    PlainRows plain(*rs);
    for (int nStep = 0; nStep < 300; ++nStep) {
      if (plain.rows.empty() || random() % 20 == 0) {
        ASSERT_EQ(rs->AddNew(), static_cast<RowIndex>(plain.rows.size()));
        plain.AddNew();
        continue;
      }
      const std::size_t nRow = random() % plain.rows.size();
      const auto row = static_cast<RowIndex>(nRow);
      const std::size_t nColumn = random() % 2;
      const auto column = static_cast<ColumnIndex>(nColumn);
      switch (random() % 8) {
        case 0:
          rs->Delete(row);
          plain.Delete(nRow);
          break;
        case 1:
          rs->CancelUpdate(row);
          plain.Cancel(nRow);
          break;
        case 2: {
          std::vector<Value> stored;
          if (random() % 2 == 0) stored = {static_cast<std::int32_t>(random() % 9), Value()};
          rs->Accept(row, stored);
          plain.Accept(nRow, stored);
          break;
        }
        case 3:
        case 4:
          rs->Restore(row, column);
          plain.Restore(nRow, nColumn);
          break;
        default: {
          const Value vt = random() % 4 == 0 ? Value() : Value(static_cast<std::int32_t>(nStep));
          if (!plain.Takes(nRow)) {
            ASSERT_EQ(FailureOf([&] { rs->ValueAt(row, column, vt); }).lNumber,
                      failure::kNotSupported);
          } else {
            rs->ValueAt(row, column, vt);
            plain.Set(nRow, nColumn, vt);
          }
        }
      }
      ASSERT_NO_FATAL_FAILURE(ExpectSame(*rs, plain)) << "step " << nStep;
    }
  }
}

}  // namespace
}  // namespace orvane::ado
