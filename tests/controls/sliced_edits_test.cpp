// Many cells changed, undone and redone in slices, between which the window goes on; whoever
// cancels finds everything as it was.
#include <gtest/gtest.h>

#include <numeric>
#include <random>

#include "ado/recordset_builder.h"
#include "controls/editing/edit_session.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::RowIndex;
using platform::Text;
using platform::Value;

constexpr RowIndex kFetched = 9'000;

class sliced_edits : public testing::Test {
 protected:
  sliced_edits() {
    ado::RecordsetBuilder builder({{"Id", DataType::BigInt, false}, {"Name", DataType::WChar}});
    for (RowIndex row = 0; row < kFetched; ++row) builder.AppendRow({row, Text("as fetched")});
    m_recordset = builder.Finish();
    Updatability all;
    all.bUpdate = all.bInsert = all.bDelete = true;
    all.table.key = {0};
    m_session.Show(m_recordset, all, ValueInput(), {});
    m_session.InSlices([this](const Text& sWhat, const std::function<bool()>& slice) {
      m_sDone += sWhat + ";";
      m_nSlices = 0;
      for (;;) {
        if (m_nCancelAt > 0 && m_nSlices == m_nCancelAt) {
          m_nCancelAt = 0;
          return false;
        }
        ++m_nSlices;
        if (slice()) return true;
      }
    });
  }
  /// One cell of each of so many rows, also behind the last one.
  static std::vector<CellEdit> Names(RowIndex first, RowIndex count, const char* sName) {
    std::vector<CellEdit> edits;
    for (RowIndex row = first; row < first + count; ++row) edits.push_back({row, 1, Text(sName)});
    return edits;
  }
  /// What lies over all rows, and what can be taken back.
  std::string Picture() const {
    std::string sPicture = std::to_string(m_session.PendingCount()) + " pending, " +
                           (m_session.Notes()->steps.CanUndo() ? "undo " : "") +
                           (m_session.Notes()->steps.CanRedo() ? "redo " : "");
    for (RowIndex row = 0; row < m_recordset->RecordCount(); ++row) {
      if (!m_recordset->IsPending(row)) continue;
      sPicture += std::to_string(row) + *m_recordset->ValueAt(row, 1).As<Text>() + " ";
    }
    return sPicture;
  }

  static std::vector<RowIndex> Rows(RowIndex first, RowIndex count) {
    std::vector<RowIndex> rows(static_cast<std::size_t>(count));
    std::iota(rows.begin(), rows.end(), first);
    return rows;
  }
  /// What lies over the rows, without their numbers: those of new ones change.
  std::string Values() const {
    std::string sValues;
    for (const RowIndex row : m_session.Pending()) {
      sValues += *m_recordset->ValueAt(row, 1).As<Text>() +
                 (m_recordset->StateAt(row) == platform::RowState::Deleted ? "x " : " ");
    }
    return sValues;
  }

  platform::RecordsetPtr m_recordset;
  int m_nTold = 0;
  int m_nSlices = 0;
  int m_nCancelAt = 0;
  Text m_sDone;
  EditSession m_session{[this](std::span<const RowIndex>) { ++m_nTold; }};
};

TEST_F(sliced_edits, change_undo_and_redo_a_few_at_a_time) {
  EXPECT_TRUE(m_session.Edit(Names(0, 9'000, "x")));
  EXPECT_EQ(m_sDone, "Changing cells;");
  EXPECT_EQ(m_nSlices, 5) << "2,000 cells in each";
  EXPECT_EQ(m_session.PendingCount(), 9'000);
  EXPECT_EQ(m_nTold, 1) << "who looks is told once";
  EXPECT_EQ(m_session.Undo(), 0);
  EXPECT_EQ(m_nSlices, 5);
  EXPECT_EQ(m_session.PendingCount(), 0);
  EXPECT_EQ(m_session.Redo(7), 7);
  EXPECT_EQ(m_nSlices, 5);
  EXPECT_EQ(m_session.PendingCount(), 9'000);
  EXPECT_EQ(m_sDone, "Changing cells;Undoing changes;Redoing changes;");
}

TEST_F(sliced_edits, few_are_changed_at_once) {
  EXPECT_TRUE(m_session.Edit(Names(0, 2'000, "x")));
  m_session.Undo();
  m_session.Redo();
  EXPECT_EQ(m_sDone, "");
}

TEST_F(sliced_edits, that_are_cancelled_leave_all_as_it_was) {
  m_session.Edit(5, 1, Text("before"));
  m_session.Edit(6, 1, Text("undone"));
  m_session.Undo();
  const std::string sBefore = Picture();
  ASSERT_NE(sBefore.find("redo"), std::string::npos);
  m_nCancelAt = 3;
  // Also such as add rows.
  EXPECT_FALSE(m_session.Edit(Names(4'000, 8'000, "x")));
  EXPECT_EQ(Picture(), sBefore);
  EXPECT_EQ(m_sDone, "Changing cells;Taking back what was changed;");
  EXPECT_EQ(m_session.Redo(), 6) << "what was undone can still be redone";
}

TEST_F(sliced_edits, of_an_undo_that_is_cancelled_nothing_is_undone) {
  m_session.Edit(Names(4'000, 8'000, "x"));  // 5,000 fetched rows and 3,000 new ones
  const auto values = [this] {
    std::vector<Value> all;
    for (RowIndex row = 0; row < m_recordset->RecordCount(); ++row) {
      if (m_recordset->IsPending(row)) all.push_back(m_recordset->ValueAt(row, 1));
    }
    return all;
  };
  const auto before = values();
  m_nCancelAt = 3;
  EXPECT_EQ(m_session.Undo(), std::nullopt);
  EXPECT_EQ(values(), before);
  EXPECT_TRUE(m_session.Notes()->steps.CanUndo());
  EXPECT_FALSE(m_session.Notes()->steps.CanRedo());
  m_session.Undo();
  EXPECT_EQ(m_session.PendingCount(), 0);
  const std::string sUndone = Picture();
  m_nCancelAt = 1;
  EXPECT_EQ(m_session.Redo(), std::nullopt);
  EXPECT_EQ(Picture(), sUndone);
  m_session.Redo();
  EXPECT_EQ(values(), before);
}

TEST_F(sliced_edits, rows_are_marked_and_taken_out_a_few_at_a_time) {
  m_session.Edit(Names(8'000, 2'000, "x"));  // 1,000 of them new
  m_nTold = 0;
  const auto toSend = m_session.Delete(Rows(0, 10'000));
  ASSERT_TRUE(toSend);
  EXPECT_EQ(toSend->size(), 9'000U);
  EXPECT_EQ(m_sDone, "Marking rows;");
  EXPECT_EQ(m_nSlices, 5);
  EXPECT_EQ(m_nTold, 1);
  m_sDone.clear();
  m_session.Deleted(*toSend);
  EXPECT_EQ(m_sDone, "Taking the deleted rows out;");
  EXPECT_EQ(m_nSlices, 5) << "2,000 in each";
  EXPECT_EQ(m_nTold, 2);
  EXPECT_EQ(m_session.PendingCount(), 0);
  EXPECT_EQ(m_session.GoneRows().size(), 10'000U);
}

TEST_F(sliced_edits, rows_that_are_deleted_at_the_server_go_also_where_that_is_cancelled) {
  const auto toSend = m_session.Delete(Rows(0, 9'000));
  m_nCancelAt = 1;
  m_session.Deleted(*toSend);
  EXPECT_EQ(m_session.GoneRows().size(), 9'000U);
  EXPECT_EQ(m_session.PendingCount(), 0);
}

TEST_F(sliced_edits, of_a_deletion_that_is_cancelled_no_row_is_marked) {
  m_session.Edit(8'998, 1, Text("edited"));
  m_session.Edit(Names(9'000, 2'500, "new"));
  const std::string sBefore = Values();
  const auto steps = [this] {
    m_session.Undo();
    m_session.Undo();
    const std::string sUndone = Values();
    m_session.Redo();
    m_session.Redo();
    return sUndone;
  };
  const std::string sUndone = steps();
  ASSERT_EQ(Values(), sBefore);
  m_session.Remark(8'998, "as it was");
  m_nCancelAt = 1;
  // Rows that were never sent are gone at once, and come back as others.
  EXPECT_FALSE(m_session.Delete(m_session.Pending()));
  EXPECT_EQ(m_sDone.substr(m_sDone.find("Marking")), "Marking rows;")
      << "few are taken back at once";
  EXPECT_EQ(Values(), sBefore);
  EXPECT_EQ(m_session.RemarkOf(8'998), "as it was");
  EXPECT_EQ(steps(), sUndone) << "the steps before find the rows, whatever their numbers";
  EXPECT_EQ(Values(), sBefore);
}

TEST_F(sliced_edits, are_discarded_a_few_at_a_time_or_all_kept) {
  m_session.Edit(Names(4'000, 8'000, "x"));
  const std::string sBefore = Values();
  m_nCancelAt = 2;
  EXPECT_FALSE(m_session.Discard(m_session.Pending()));
  EXPECT_EQ(Values(), sBefore);
  m_sDone.clear();
  EXPECT_TRUE(m_session.Discard(m_session.Pending()));
  EXPECT_EQ(m_sDone, "Discarding changes;");
  EXPECT_EQ(m_nSlices, 4);
  EXPECT_EQ(m_session.PendingCount(), 0);
  m_session.Undo();
  EXPECT_EQ(Values(), sBefore);
}

// Whatever is cancelled where: the same as if it had never been begun.
TEST_F(sliced_edits, by_chance_end_where_a_model_does) {
  std::mt19937 random(7);
  const auto below = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
  for (int n = 0; n < 60; ++n) {
    const std::string sBefore = Picture();
    const bool bCancel = below(2) == 0;
    m_nCancelAt = bCancel ? 1 + below(2) : 0;
    bool bDone = true;
    switch (below(3)) {
      case 0:
        bDone =
            m_session.Edit(Names(below(kFetched), 2'001 + below(4'000), below(2) == 0 ? "a" : "b"));
        break;
      case 1:
        bDone = m_session.Undo().has_value();
        break;
      default:
        bDone = m_session.Redo().has_value();
    }
    const bool bWasCancelled = bCancel && m_nCancelAt == 0;
    m_nCancelAt = 0;
    EXPECT_EQ(bDone && bWasCancelled, false) << n;
    // A new row that is taken away and comes back has another number.
    const auto withoutNumbers = [](std::string s) {
      std::erase_if(s, [](char c) { return c >= '0' && c <= '9'; });
      return s;
    };
    if (bWasCancelled) EXPECT_EQ(withoutNumbers(Picture()), withoutNumbers(sBefore)) << n;
  }
}

}  // namespace
}  // namespace orvane::controls
