// Sorting and filtering in the view of the rows.
#include <gtest/gtest.h>

#include <QScrollBar>
#include <QSignalSpy>
#include <chrono>
#include <memory_resource>
#include <thread>

#include "ado/recordset_builder.h"
#include "tests/controls/row_view_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

/// Numbers that go up and down, a text of three kinds, and the row's number.
std::shared_ptr<FakeRecordset> Mixed(RowIndex rows) {
  auto rs = std::make_shared<FakeRecordset>(rows, [](auto row, auto column) -> Value {
    if (column == 0) return (row * 7919) % 10'007;
    if (column == 1) return Value("kind " + std::to_string(row % 3));
    return row;
  });
  rs->Column("Value", platform::DataType::BigInt)
      .Column("Kind", platform::DataType::WChar)
      .Column("Row", platform::DataType::BigInt);
  return rs;
}

std::int64_t NumberAt(const RowView& view, int nPlace, int nColumn) {
  return *view.Model().ValueAt(nPlace, nColumn).As<std::int64_t>();
}

/// Lets come what work that was ended has left in the event loop. Its thread has ended by then.
void LetLeftoversCome() {
  for (int n = 0; n < 10; ++n) QCoreApplication::processEvents();
}

/// Waits for what is worked out off the thread.
void AwaitOrder(const RowView& view) {
  ASSERT_TRUE(tests::Until([&] { return !view.Arranging(); }));
}

void ClickArrow(RowView& view, int nColumn, Qt::KeyboardModifiers modifiers = {}) {
  QTest::mouseClick(view.Names().viewport(), Qt::LeftButton, modifiers,
                    view.Names().ArrowOf(nColumn).center());
}

TEST(arranged_rows, a_second_click_on_a_name_s_arrow_sorts_up_down_and_not_at_all) {
  RowView view;
  view.ShowRows(Mixed(500), kUtcZone);
  Show(view);
  EXPECT_FALSE(view.Names().ArrowOf(1).isValid());
  ClickColumnName(view, 1);
  ASSERT_TRUE(view.Names().ArrowOf(1).isValid());
  EXPECT_TRUE(view.Arranged().sort.empty()) << "the first click selects the column";
  ClickArrow(view, 1);
  EXPECT_EQ(view.Arranged().sort, (std::vector<SortColumn>{{1, true}}));
  EXPECT_EQ(view.Model().RecordRow(1), 3) << "equal rows stay as they came";
  ClickArrow(view, 1);
  EXPECT_EQ(view.Model().RecordRow(0), 2);
  EXPECT_EQ(view.Model().RecordRow(1), 5);
  ClickArrow(view, 1);
  EXPECT_TRUE(view.Arranged().sort.empty());
  EXPECT_EQ(view.Model().Order(), nullptr);
}

TEST(arranged_rows, a_few_rows_of_large_values_are_read_in_slices) {
  int nRead = 0;
  const auto rs = std::make_shared<FakeRecordset>(200, [&](auto row, auto) -> platform::Value {
    ++nRead;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return platform::Text(5'000, static_cast<char>('z' - row % 20));
  });
  rs->Column("Note", platform::DataType::WChar);
  RowView view;
  view.ShowRows(rs, kUtcZone);
  nRead = 0;
  view.SortBy(0, true);
  EXPECT_LT(nRead, 200) << "the window goes on before all are read";
  ASSERT_TRUE(tests::Until([&] { return view.Model().Order() != nullptr; }));
  EXPECT_EQ(view.Model().RecordRow(0), 19);
}

TEST(arranged_rows, several_columns_sort_one_after_the_other) {
  RowView view;
  view.ShowRows(Mixed(500), kUtcZone);
  Show(view);
  view.SortBy(1, true);
  ClickColumnName(view, 0);
  ClickArrow(view, 0, Qt::ShiftModifier);
  ClickArrow(view, 0, Qt::ShiftModifier);
  EXPECT_EQ(view.Arranged().sort, (std::vector<SortColumn>{{1, true}, {0, false}}));
  for (int n = 1; n < 500; ++n) {
    const auto one = view.Model().ValueAt(n - 1, 1);
    const auto other = view.Model().ValueAt(n, 1);
    ASSERT_LE(CompareValues(one, other), 0);
    if (one == other) ASSERT_GE(NumberAt(view, n - 1, 0), NumberAt(view, n, 0));
  }
}

TEST(arranged_rows, are_filtered_by_the_order_of_their_column) {
  const auto seen = [](platform::TextOrder order, const char* sFilter) {
    ado::RecordsetBuilder builder({{"Name", platform::DataType::WChar, true, {}, order}});
    for (const char* sName : {"a", "B", "b", "c", "b  ", "\u00c4"}) builder.AppendRow({sName});
    RowView view;
    view.ShowRows(builder.Finish(), kUtcZone);
    view.Filter({ColumnFilter::Read(sFilter, 0, platform::DataType::WChar, kUtcZone)});
    std::string sSeen;
    for (int nPlace = 0; nPlace < view.Model().Places(); ++nPlace) {
      sSeen += *view.Model().ValueAt(nPlace, 0).As<platform::Text>() + "|";
    }
    return sSeen;
  };
  using enum platform::TextOrder;
  EXPECT_EQ(seen(Bytes, ">= b"), "b|c|b  |\u00c4|");
  EXPECT_EQ(seen(NoCase, ">= b"), "B|b|c|b  |\u00c4|");
  EXPECT_EQ(seen(NoCase, "= B"), "B|b|");
  EXPECT_EQ(seen(NoCase, "A..b"), "a|B|b|");
  EXPECT_EQ(seen(TrailingBlanks, "= b"), "b|b  |");
  EXPECT_EQ(seen(TrailingBlanks, "> b"), "c|\u00c4|");
}

TEST(arranged_rows, the_current_cell_the_selection_and_the_scroll_bar_follow) {
  RowView view;
  view.ShowRows(Mixed(5'000), kUtcZone);
  Show(view);
  view.verticalScrollBar()->setValue(1'000);
  ClickRowNumber(view, 1'002);
  ClickRowNumber(view, 1'004, Qt::ControlModifier);
  const int nBelowTop = view.currentIndex().row() - view.TopRow();
  QSignalSpy current(view.selectionModel(), &QItemSelectionModel::currentChanged);
  view.SortBy(0, true);
  EXPECT_EQ(view.Model().RecordRow(view.currentIndex().row()), 1'004);
  EXPECT_EQ(view.currentIndex().row() - view.TopRow(), nBelowTop);
  std::set<RowIndex> selected;
  for (const CellRange& range : view.State().selection) {
    for (int n = range.nTop; n <= range.nBottom; ++n) selected.insert(view.Model().RecordRow(n));
  }
  EXPECT_EQ(selected, (std::set<RowIndex>{1'002, 1'004}));
  EXPECT_TRUE(view.RowsSelected());
  view.Sort({});
  EXPECT_EQ(view.State().selection,
            (std::vector<CellRange>{{1'002, 0, 1'002, 2}, {1'004, 0, 1'004, 2}}));
}

TEST(arranged_rows, all_selected_stay_all_selected) {
  RowView view;
  view.ShowRows(Mixed(5'000), kUtcZone);
  view.selectAll();
  view.SortBy(0, true);
  EXPECT_EQ(view.State().selection, (std::vector<CellRange>{{0, 0, 4'999, 2}}));
}

TEST(arranged_rows, many_rows_are_sorted_while_events_go_on) {
  RowView view;
  const auto rs = Mixed(300'000);
  view.ShowRows(rs, kUtcZone);
  int nTold = 0;
  view.OnArranged([&](const QString&) { ++nTold; });
  view.SortBy(0, false);
  EXPECT_TRUE(view.Arranging());
  EXPECT_EQ(view.Model().Order(), nullptr) << "until then the rows stand as they did";
  AwaitOrder(view);
  EXPECT_EQ(nTold, 2);
  for (int n = 1; n < 300'000; ++n) {
    const auto one = NumberAt(view, n - 1, 0);
    const auto other = NumberAt(view, n, 0);
    ASSERT_TRUE(one > other || (one == other && NumberAt(view, n - 1, 2) < NumberAt(view, n, 2)));
  }
}

TEST(arranged_rows, other_rows_or_another_order_end_the_work_on_one) {
  RowView view;
  view.ShowRows(Mixed(300'000), kUtcZone);
  view.SortBy(0, false);
  view.SortBy(2, false);
  AwaitOrder(view);
  EXPECT_EQ(NumberAt(view, 0, 2), 299'999);
  view.SortBy(0, false);
  view.ShowRows(OneColumn({Value("x")}), kUtcZone);
  EXPECT_FALSE(view.Arranging());
  LetLeftoversCome();
  EXPECT_EQ(view.Model().Order(), nullptr);
  {
    RowView gone;
    gone.ShowRows(Mixed(300'000), kUtcZone);
    gone.SortBy(0, true);
  }
  LetLeftoversCome();
}

TEST(arranged_rows, escape_ends_a_long_sort_and_leaves_the_rows_as_they_stood) {
  RowView view;
  view.ShowRows(Mixed(300'000), kUtcZone);
  Show(view);
  view.GoTo(7, 1);
  int nStopped = 0;
  view.OnArrangingStopped([&] { ++nStopped; });
  view.SortBy(1, true);
  ASSERT_TRUE(view.Arranging());
  QTest::keyClick(&view, Qt::Key_Escape);
  EXPECT_FALSE(view.Arranging());
  EXPECT_TRUE(view.Arranged().IsNone());
  EXPECT_EQ(view.Model().Order(), nullptr);
  EXPECT_EQ(view.currentIndex().row(), 7);
  EXPECT_EQ(nStopped, 1);
  LetLeftoversCome();
  EXPECT_EQ(view.Model().Order(), nullptr) << "nothing of it comes later";
  view.SortBy(0, false);
  AwaitOrder(view);
  const auto order = view.Model().Order();
  view.SortBy(1, true);
  QTest::keyClick(&view, Qt::Key_Escape);
  EXPECT_EQ(view.Arranged().sort, (std::vector<SortColumn>{{0, false}}));
  EXPECT_EQ(view.Model().Order(), order);
  view.Filter({ColumnFilter::Read("kind 1", 1, platform::DataType::WChar, kUtcZone)});
  ASSERT_TRUE(view.Arranging());
  EXPECT_TRUE(view.StopArranging());
  EXPECT_TRUE(view.Arranged().filters.empty());
  EXPECT_EQ(view.Model().Order(), order);
  EXPECT_FALSE(view.StopArranging()) << "nothing is being worked out any more";
}

TEST(arranged_rows, a_state_from_the_middle_of_a_sort_begins_it_anew) {
  RowView view;
  const auto rs = Mixed(300'000);
  view.ShowRows(rs, kUtcZone);
  view.SortBy(0, true);
  AwaitOrder(view);
  view.SortBy(0, false);
  ASSERT_TRUE(view.Arranging());
  const RowsState state = view.State();
  EXPECT_EQ(state.order, nullptr) << "what stands is in another order than is said";
  RowView other;
  other.ShowRows(rs, kUtcZone, &state);
  AwaitOrder(other);
  EXPECT_EQ(other.Arranged().sort, (std::vector<SortColumn>{{0, false}}));
  EXPECT_EQ(NumberAt(other, 0, 0), 10'006);
}

TEST(arranged_rows, new_rows_stand_behind_all_others) {
  RowView view;
  const auto rs = Mixed(100);
  view.ShowRows(rs, kUtcZone);
  view.SortBy(2, false);
  rs->Rows(102);
  view.Model().TakeRowsIn();
  EXPECT_EQ(view.model()->rowCount(), 102);
  EXPECT_EQ(view.Model().RecordRow(0), 99);
  EXPECT_EQ(view.Model().RecordRow(100), 100);
  EXPECT_EQ(view.Model().RecordRow(101), 101);
  EXPECT_EQ(view.Model().PlaceOf(99), 0);
  EXPECT_EQ(view.Model().PlaceOf(101), 101);
}

TEST(arranged_rows, an_order_comes_back_with_its_state_and_with_rows_fetched_anew) {
  const auto rs = Mixed(500);
  RowView view;
  view.ShowRows(rs, kUtcZone);
  view.SortBy(2, false);
  view.Filter({ColumnFilter::Equal(1, Value("kind 1"))});
  const RowsState state = view.State();
  RowView fresh;
  fresh.ShowRows(rs, kUtcZone, &state);
  EXPECT_EQ(fresh.Arranged().sort, (std::vector<SortColumn>{{2, false}}));
  EXPECT_EQ(fresh.Model().RecordRow(0), 499);
  EXPECT_EQ(fresh.model()->rowCount(), 167);
  fresh.ShowRows(nullptr, kUtcZone);
  fresh.ShowRows(Mixed(50), kUtcZone);
  EXPECT_EQ(fresh.Model().RecordRow(0), 49);
  EXPECT_EQ(Current(fresh), std::pair(0, 0)) << "rows fetched anew are seen from the first on";
  EXPECT_EQ(fresh.model()->rowCount(), 17);
  fresh.ShowRows(Plant(50), kUtcZone);
  EXPECT_TRUE(fresh.Arranged().IsNone()) << "other columns begin anew";
}

TEST(arranged_rows, a_row_that_is_filtered_out_leaves_the_keys_in_the_first_one) {
  RowView view;
  view.ShowRows(Mixed(500), kUtcZone);
  Show(view);
  view.GoTo(300, 1);  // of kind 0
  view.Filter({ColumnFilter::Equal(1, Value("kind 2"))});
  EXPECT_EQ(Current(view), std::pair(0, 1));
  EXPECT_EQ(view.Model().RecordRow(0), 2);
  EXPECT_EQ(view.Model().PlaceOf(300), -1);
  view.Filter({ColumnFilter::Equal(1, Value("none of them"))});
  EXPECT_EQ(view.model()->rowCount(), 0);
  view.grab();
  view.Filter({});
  EXPECT_EQ(view.model()->rowCount(), 500);
}

/// Memory that ends when a test says so, as that of rows does when the disk is full.
class FullMemory final : public std::pmr::memory_resource {
 public:
  std::size_t most = 0;

 private:
  void* do_allocate(std::size_t bytes, std::size_t alignment) override {
    if (bytes > most) throw platform::Failure(platform::failure::kStorage, "The disk is full.");
    return std::pmr::new_delete_resource()->allocate(bytes, alignment);
  }
  void do_deallocate(void* piece, std::size_t bytes, std::size_t alignment) override {
    std::pmr::new_delete_resource()->deallocate(piece, bytes, alignment);
  }
  bool do_is_equal(const memory_resource& other) const noexcept override { return this == &other; }
};

class RowsInFullMemory final : public FakeRecordset {
 public:
  using FakeRecordset::FakeRecordset;
  std::shared_ptr<FullMemory> memory = std::make_shared<FullMemory>();

 private:
  std::shared_ptr<std::pmr::memory_resource> Memory() const override { return memory; }
};

TEST(arranged_rows, stand_as_they_stood_where_there_is_no_memory_for_an_order) {
  for (const RowIndex rows : {500, 60'000}) {  // at once, and beside the window
    const auto rs = std::make_shared<RowsInFullMemory>(
        rows, [rows](auto row, auto) -> Value { return rows - row; });
    rs->Column("Value", platform::DataType::BigInt);
    rs->memory->most = std::size_t{1} << 30;
    RowView view;
    view.ShowRows(rs, kUtcZone);
    QString sWhyNot;
    view.OnArranged([&](const QString& sSentence) { sWhyNot = sSentence; });
    view.SortBy(0, true);
    AwaitOrder(view);
    EXPECT_EQ(NumberAt(view, 0, 0), 1);
    // Room for the rows' numbers, not for keys; then for keys, not for merging them.
    for (const std::size_t bytesOfRow : {std::size_t{2}, std::size_t{6}, std::size_t{17}}) {
      rs->memory->most = static_cast<std::size_t>(rows) * bytesOfRow;
      sWhyNot.clear();
      view.SortBy(0, false);
      AwaitOrder(view);
      if (bytesOfRow == 17) {
        EXPECT_EQ(NumberAt(view, 0, 0), rows) << "that is enough";
        continue;
      }
      EXPECT_EQ(sWhyNot.toStdString(), "The disk is full.") << bytesOfRow;
      EXPECT_EQ(NumberAt(view, 0, 0), 1);
      EXPECT_EQ(view.Arranged().sort, (std::vector<SortColumn>{{0, true}}));
    }
  }
}

TEST(arranged_rows, any_number_of_rows_is_sorted_and_filtered) {
  RowView view;
  view.ShowRows(Plant(200'000'000), kUtcZone);
  QString sWhyNot;
  view.OnArranged([&](const QString& sSentence) { sWhyNot = sSentence; });
  view.SortBy(0, true);
  EXPECT_TRUE(view.Arranging()) << "it goes on beside the window";
  EXPECT_EQ(sWhyNot.toStdString(), "");
  EXPECT_TRUE(view.StopArranging());
}

TEST(arranged_rows, are_put_in_order_again_where_a_state_lost_it) {
  const auto rs = Mixed(500);
  RowView view;
  view.ShowRows(rs, kUtcZone);
  view.SortBy(2, false);
  view.GoTo(7, 1);
  RowsState state = view.State();
  state.order.reset();
  state.bOrderLost = true;
  RowView fresh;
  fresh.ShowRows(rs, kUtcZone, &state);
  EXPECT_EQ(fresh.Model().RecordRow(0), 499);
  EXPECT_EQ(fresh.currentIndex().row(), 0);
}

TEST(arranged_rows, leave_the_keys_where_somebody_went_while_they_were_sorted) {
  RowView view;
  Show(view);
  for (const bool bMoves : {false, true}) {
    view.ShowRows(Mixed(500), kUtcZone);
    view.SortBy(0, true);
    view.ShowRows(Mixed(100'000), kUtcZone);
    ASSERT_TRUE(view.Arranging());
    if (bMoves) view.GoTo(500, 1);
    AwaitOrder(view);
    const int nRow = view.currentIndex().row();
    if (bMoves) {
      EXPECT_EQ(view.Model().RecordRow(nRow), 500);
      EXPECT_EQ(view.currentIndex().column(), 1);
    } else {
      EXPECT_EQ(nRow, 0);
    }
  }
}

}  // namespace
}  // namespace orvane::controls
