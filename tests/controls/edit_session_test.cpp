#include "controls/editing/edit_session.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>

#include "ado/recordset_builder.h"
#include "platform/conversions.h"

namespace orvane::controls {
namespace {

using platform::ColumnIndex;
using platform::DataType;
using platform::RecordsetPtr;
using platform::RowIndex;
using platform::RowState;
using platform::Text;
using platform::Value;

constexpr RowIndex kFetched = 6;

RecordsetPtr Rows() {
  ado::RecordsetBuilder builder({{"Number", DataType::BigInt, false},
                                 {"Name", DataType::WChar},
                                 {"Level", DataType::Double}});
  for (std::int64_t n = 0; n < kFetched; ++n) {
    builder.AppendRow({n, Text("row " + std::to_string(n)), static_cast<double>(n) / 2});
  }
  return builder.Finish();
}

Updatability All() {
  Updatability all;
  all.bUpdate = all.bInsert = all.bDelete = true;
  all.table.key = {0};
  return all;
}

class edit_session : public testing::Test {
 protected:
  edit_session() { m_session.Show(m_recordset, All(), ValueInput(), {}); }

  Value At(RowIndex row, ColumnIndex column) const { return m_recordset->ValueAt(row, column); }

  RecordsetPtr m_recordset = Rows();
  std::vector<RowIndex> m_told;
  int m_nTold = 0;
  EditSession m_session{[this](std::span<const RowIndex> rows) {
    ++m_nTold;
    m_told.insert(m_told.end(), rows.begin(), rows.end());
  }};
};

TEST_F(edit_session, lays_a_value_over_a_cell_and_tells_of_the_row) {
  m_session.Edit(2, 1, Text("other"));
  EXPECT_EQ(At(2, 1), Value(Text("other")));
  EXPECT_EQ(m_recordset->OriginalAt(2, 1), Value(Text("row 2")));
  EXPECT_EQ(m_session.Pending(), std::vector<RowIndex>{2});
  EXPECT_EQ(m_told, std::vector<RowIndex>{2});
}

TEST_F(edit_session, the_value_that_was_fetched_is_no_edit) {
  m_session.Edit(2, 2, 1.0);
  EXPECT_TRUE(m_session.Pending().empty());
  m_session.Edit(0, 2, -0.0);
  EXPECT_EQ(m_session.Pending().size(), 1U);
  m_session.Edit(0, 2, 0.0);
  EXPECT_TRUE(m_session.Pending().empty());
}

TEST_F(edit_session, typing_into_the_empty_row_adds_one) {
  m_session.Edit(kFetched, 1, Text("new"));
  EXPECT_EQ(m_recordset->RecordCount(), kFetched + 1);
  EXPECT_EQ(m_recordset->StateAt(kFetched), RowState::New);
  EXPECT_TRUE(m_session.OffersNewRow());
}

TEST_F(edit_session, without_a_key_nothing_can_be_edited) {
  m_session.Show(m_recordset, {}, ValueInput(), {});
  EXPECT_FALSE(m_session.CanEdit(0, 1));
  EXPECT_FALSE(m_session.OffersNewRow());
  m_session.Edit(0, 1, Text("x"));
  const RowIndex rows[] = {0};
  EXPECT_TRUE(m_session.Delete(rows)->empty());
  EXPECT_TRUE(m_session.Pending().empty());
}

// Whoever stands in a row of the step is not made to leave it, which would store the row.
TEST_F(edit_session, a_step_leads_to_the_row_at_hand_where_it_changes_that) {
  const std::vector<CellEdit> block = {{1, 2, 9.0}, {3, 2, 8.0}};
  m_session.Edit(block);
  EXPECT_EQ(m_session.Undo(3), std::optional<RowIndex>(3));
  EXPECT_EQ(m_session.Redo(3), std::optional<RowIndex>(3));
  EXPECT_EQ(m_session.Undo(2), std::optional<RowIndex>(1));
  EXPECT_EQ(m_session.Redo(), std::optional<RowIndex>(1));
}

TEST_F(edit_session, steps_go_back_and_forth) {
  m_session.Edit(1, 1, Text("a"));
  m_session.Edit(1, 1, Text("b"));
  const std::vector<CellEdit> block = {{1, 2, 9.0}, {kFetched, 1, Text("n")}, {3, 0, Value()}};
  m_session.Edit(block);
  EXPECT_EQ(m_session.Undo(), std::optional<RowIndex>(1));
  EXPECT_EQ(At(1, 1), Value(Text("b")));
  EXPECT_EQ(At(1, 2), Value(0.5));
  EXPECT_EQ(m_session.Pending(), std::vector<RowIndex>{1});
  EXPECT_EQ(m_session.GoneRows(), std::set<RowIndex>{kFetched});
  m_session.Undo();
  EXPECT_EQ(At(1, 1), Value(Text("a")));
  m_session.Undo();
  EXPECT_EQ(At(1, 1), Value(Text("row 1")));
  EXPECT_EQ(m_session.Undo(), std::nullopt);
  m_session.Redo();
  m_session.Redo();
  m_session.Redo();
  EXPECT_EQ(At(1, 1), Value(Text("b")));
  EXPECT_EQ(At(1, 2), Value(9.0));
  EXPECT_EQ(At(3, 0), Value());
  // The new row came back under another number; the steps know it by that now.
  EXPECT_EQ(At(kFetched + 1, 1), Value(Text("n")));
  m_session.Undo();
  EXPECT_EQ(m_recordset->StateAt(kFetched + 1), RowState::Deleted);
  EXPECT_EQ(m_session.Redo().has_value(), true);
  m_session.Edit(1, 1, Text("c"));
  EXPECT_EQ(m_session.Redo(), std::nullopt);
}

TEST_F(edit_session, a_row_that_was_discarded_can_be_brought_back) {
  m_session.Edit(1, 1, Text("a"));
  m_session.Edit(1, 2, 7.0);
  const RowIndex rows[] = {1};
  m_session.Discard(rows);
  EXPECT_TRUE(m_session.Pending().empty());
  m_session.Undo();
  EXPECT_EQ(At(1, 1), Value(Text("a")));
  EXPECT_EQ(At(1, 2), Value(7.0));
}

TEST_F(edit_session, a_row_that_was_stored_is_no_step_any_more) {
  m_session.Edit(1, 1, Text("a"));
  m_session.Edit(2, 1, Text("b"));
  m_session.Stored(1, {});
  EXPECT_EQ(m_recordset->OriginalAt(1, 1), Value(Text("a")));
  EXPECT_EQ(m_session.Undo(), std::optional<RowIndex>(2));
  EXPECT_EQ(m_session.Undo(), std::nullopt);
  EXPECT_EQ(At(1, 1), Value(Text("a")));
}

TEST_F(edit_session, new_rows_go_at_once_and_others_when_they_were_deleted_at_the_server) {
  m_session.Edit(kFetched, 1, Text("new"));
  const RowIndex rows[] = {0, kFetched};
  EXPECT_EQ(m_session.Delete(rows), std::vector<RowIndex>{0});
  EXPECT_EQ(m_session.GoneRows(), std::set<RowIndex>{kFetched});
  EXPECT_FALSE(m_session.CanEdit(0, 1));
  m_session.Stored(0, {});
  EXPECT_EQ(m_session.GoneRows(), (std::set<RowIndex>{0, kFetched}));
  EXPECT_TRUE(m_session.Pending().empty());
}

TEST_F(edit_session, what_is_no_value_of_its_column_is_kept_and_not_fit_to_be_sent) {
  m_session.Edit(1, 2, Text("high"));
  EXPECT_EQ(At(1, 2), Value(Text("high")));
  EXPECT_EQ(m_session.WhyNotFit(1).toStdString(),
            "Level: \"high\" is no number; enter digits, with \".\" as the decimal point.");
  EXPECT_EQ(m_session.WhyNotFit(2), "");
}

TEST_F(edit_session, a_remark_lasts_until_the_row_changes) {
  m_session.Edit(1, 1, Text("a"));
  m_session.Remark(1, "The server refused it.");
  EXPECT_EQ(m_session.RemarkOf(1), "The server refused it.");
  EXPECT_EQ(m_session.RemarkOf(2), "");
  m_session.Edit(1, 1, Text("b"));
  EXPECT_EQ(m_session.RemarkOf(1), "");
}

TEST_F(edit_session, notes_go_with_the_rows) {
  m_session.Edit(1, 1, Text("a"));
  m_session.Remark(1, "Refused.");
  EditSession other([](auto) {});
  other.Show(m_recordset, All(), ValueInput(), m_session.Notes());
  EXPECT_EQ(other.RemarkOf(1), "Refused.");
  EXPECT_EQ(other.Undo(), std::optional<RowIndex>(1));
  EXPECT_EQ(At(1, 1), Value(Text("row 1")));
}

TEST_F(edit_session, random_edits_undone_and_redone_end_where_they_began) {
  std::mt19937_64 random(7);
  const auto below = [&](std::int64_t n) {
    return std::uniform_int_distribution<std::int64_t>(0, n - 1)(random);
  };
  const auto picture = [&] {
    std::vector<std::vector<Value>> rows;
    for (RowIndex row = 0; row < m_recordset->RecordCount(); ++row) {
      const bool bGone =
          m_session.GoneRows().contains(row) && m_recordset->StateAt(row) == RowState::Deleted;
      if (bGone) continue;
      std::vector<Value> values = {static_cast<std::int32_t>(m_recordset->StateAt(row))};
      for (ColumnIndex column = 0; column < 3; ++column) values.push_back(At(row, column));
      rows.push_back(std::move(values));
    }
    std::ranges::sort(rows, {}, [](const auto& row) {
      Text sRow;
      for (const Value& vtValue : row) sRow += platform::ToText(vtValue) + "|";
      return sRow;
    });
    return rows;
  };
  for (int nRound = 0; nRound < 30; ++nRound) {
    const auto before = picture();
    int nSteps = 0;
    std::vector<std::vector<std::vector<Value>>> pictures = {before};
    for (int n = 0; n < 10; ++n) {
      const auto kind = below(4);
      const RowIndex row = below(m_recordset->RecordCount() + (kind == 0 ? 1 : 0));
      const RowIndex rows[] = {row};
      if (kind <= 1) m_session.Edit(row, 1, Text("edit " + std::to_string(below(1000))));
      if (kind == 2) m_session.Delete(rows);
      if (kind == 3) m_session.Discard(rows);
      if (auto now = picture(); now != pictures.back()) {
        pictures.push_back(std::move(now));
        ++nSteps;
      }
    }
    for (int n = nSteps; n > 0; --n) {
      m_session.Undo();
      ASSERT_EQ(picture(), pictures[static_cast<std::size_t>(n) - 1]) << nRound;
    }
    for (int n = 1; n <= nSteps; ++n) {
      m_session.Redo();
      ASSERT_EQ(picture(), pictures[static_cast<std::size_t>(n)]) << nRound;
    }
  }
}

/// As many rows and steps as there may be: each of the one for each of the other would not end.
TEST(edit_session_of_many, rows_are_looked_for_in_steps_of_few_and_not_the_other_way_round) {
  constexpr RowIndex kRowsOfMany = 50'000;
  ado::RecordsetBuilder builder({{"Number", DataType::BigInt, false}, {"Level", DataType::Double}});
  for (std::int64_t n = 0; n < kRowsOfMany; ++n) builder.AppendRow({n, 0.5});
  const RecordsetPtr rs = builder.Finish();
  EditSession session([](std::span<const RowIndex>) {});
  session.Show(rs, All(), ValueInput(), {});
  std::vector<CellEdit> added;
  std::vector<RowIndex> rows;
  for (RowIndex row = 0; row < kRowsOfMany; ++row) {
    added.push_back({kRowsOfMany + row, 1, 1.5});
    rows.push_back(kRowsOfMany + row);
  }
  session.Edit(added);
  for (std::size_t n = 0; n < UndoSteps::kMostSteps - 2; ++n) {
    session.Edit(static_cast<RowIndex>(n), 1, 7.5);
  }
  session.Discard(rows);
  EXPECT_EQ(session.PendingCount(), static_cast<RowIndex>(UndoSteps::kMostSteps) - 2);
  EXPECT_EQ(session.Undo(), std::optional<RowIndex>(2 * kRowsOfMany)) << "they came back";
  EXPECT_EQ(rs->ValueAt(2 * kRowsOfMany, 1), Value(1.5));
  EXPECT_EQ(session.Undo(), std::optional<RowIndex>(UndoSteps::kMostSteps - 3));
  session.Redo();
  rows.clear();
  for (RowIndex row = 0; row < kRowsOfMany; ++row) rows.push_back(row);
  EXPECT_EQ(session.Delete(rows)->size(), rows.size());
  session.Deleted(rows);
  EXPECT_EQ(session.PendingCount(), kRowsOfMany) << "the new ones are left";
  EXPECT_EQ(session.Undo(), std::optional<RowIndex>(2 * kRowsOfMany)) << "which came in one step";
  EXPECT_EQ(session.PendingCount(), 0);
}

}  // namespace
}  // namespace orvane::controls
