#include "controls/grid/grid_trend.h"

#include <QAbstractItemView>
#include <QToolButton>

#include "ado/recordset_builder.h"
#include "controls/grid/query_results.h"
#include "controls/view/row_view.h"
#include "controls/view/span_rows.h"
#include "tests/controls/grid_fixture.h"
#include "tests/fakes/until.h"
#include "trend/trend_plot.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::Timestamp;

platform::RecordsetPtr Measured(int nRows) {
  ado::RecordsetBuilder builder({{"Tag", DataType::WChar},
                                 {"Timestamp", DataType::DBTimeStamp},
                                 {"Value", DataType::Double}});
  for (int n = nRows - 1; n >= 0; --n) {
    builder.AppendRow({"a", Timestamp(std::chrono::seconds(n)), 1.0 * n});
  }
  return builder.Finish();
}

class grid_trend : public GridFixture {
 protected:
  grid_trend() {
    m_results.Connection(m_connection);
    m_results.SqlText("SELECT *");
  }
  void Run(const platform::RecordsetPtr& rs) {
    m_server.answer = rs;
    m_results.Execute();
  }
  QToolButton& Switch(const char* sName) {
    return *WindowOf(m_results)->findChild<QToolButton*>(sName);
  }
  bool IsSeen(const char* sName) {
    const auto* widget = WindowOf(m_results)->findChild<QWidget*>(sName);
    return widget != nullptr && widget->isVisibleTo(WindowOf(m_results));
  }
  trend::TrendView& View() {
    return *static_cast<trend::TrendView*>(WindowOf(m_results)->findChild<QWidget*>("trend"));
  }
  trend::TrendPlot& Plot() { return *View().findChild<trend::TrendPlot*>(); }
  void ShowTrend() {
    QTest::mouseClick(&Switch("asTrend"), Qt::LeftButton);
    ASSERT_TRUE(tests::Until([&] { return !View().IsReading(); }));
  }
  controls::QueryResults m_results{Services()};
};

TEST_F(grid_trend, is_offered_where_there_are_times_and_numbers) {
  Show(m_results);
  EXPECT_FALSE(IsSeen("asTrend"));
  Run(Measured(10));
  EXPECT_TRUE(IsSeen("asTrend"));
  EXPECT_TRUE(Switch("asRows").isChecked());
  ado::RecordsetBuilder texts({{"Name", DataType::WChar}});
  Run(texts.Finish());
  EXPECT_FALSE(IsSeen("asTrend"));
}

TEST_F(grid_trend, stands_in_the_place_of_the_rows_and_gives_it_back) {
  Show(m_results);
  Run(Measured(10));
  ShowTrend();
  EXPECT_TRUE(IsSeen("trend"));
  EXPECT_FALSE(IsSeen("rows"));
  EXPECT_EQ(View().findChild<QAbstractItemView*>("trendValues")->model()->rowCount(), 1);
  QTest::mouseClick(&Switch("asRows"), Qt::LeftButton);
  EXPECT_FALSE(IsSeen("trend"));
  EXPECT_TRUE(IsSeen("rows"));
}

TEST_F(grid_trend, follows_the_rows) {
  Show(m_results);
  Run(Measured(10));
  ShowTrend();
  const double end = Plot().AllTimes().upper;
  Run(Measured(50));
  EXPECT_TRUE(IsSeen("trend"));
  ASSERT_TRUE(tests::Until([&] { return !View().IsReading() && Plot().AllTimes().upper > end; }));
  ado::RecordsetBuilder texts({{"Name", DataType::WChar}});
  Run(texts.Finish());
  EXPECT_TRUE(IsSeen("rows"));
  EXPECT_FALSE(IsSeen("trend"));
}

TEST_F(grid_trend, has_the_times_of_the_selected_rows_in_sight) {
  Show(m_results);
  Run(Measured(100));
  auto& rows = *ViewOf(m_results);
  rows.selectionModel()->select(
      QItemSelection(rows.model()->index(10, 0), rows.model()->index(29, 2)),
      QItemSelectionModel::ClearAndSelect);
  ShowTrend();
  EXPECT_EQ(Plot().Times().lower, trend::TrendTime(Timestamp(std::chrono::seconds(70))));
  EXPECT_EQ(Plot().Times().upper, trend::TrendTime(Timestamp(std::chrono::seconds(89))));
}

TEST_F(grid_trend, times_marked_in_it_select_their_rows) {
  Show(m_results);
  Run(Measured(100));
  ShowTrend();
  auto& rows = *ViewOf(m_results);
  Plot().Cursor(trend::TrendTime(Timestamp(std::chrono::seconds(70))));
  for (int n = 0; n < 4; ++n) QTest::keyClick(&Plot(), Qt::Key_Right, Qt::ShiftModifier);
  ASSERT_TRUE(tests::Until([&] { return rows.RowsSelected(); }));
  ASSERT_EQ(rows.selectionModel()->selection().size(), 1);
  EXPECT_EQ(rows.selectionModel()->selection()[0].top(), 25) << "the newest stand first";
  EXPECT_EQ(rows.selectionModel()->selection()[0].bottom(), 29);
  EXPECT_TRUE(m_results.RowsSelected());
  ASSERT_TRUE(Plot().Marked()) << "the mark stays as it was made";
  EXPECT_EQ(Plot().Marked()->upper, trend::TrendTime(Timestamp(std::chrono::seconds(74))));
  // The rows that come in their place are those of the same times.
  Run(Measured(200));
  ASSERT_TRUE(tests::Until([&] {
    return !rows.selectionModel()->selection().isEmpty() &&
           rows.selectionModel()->selection()[0].top() == 125;
  }));
  QTest::mouseClick(&Switch("asRows"), Qt::LeftButton);
  EXPECT_EQ(rows.selectionModel()->selection()[0].bottom(), 129);
  EXPECT_LE(rows.TopRow(), 125);
  EXPECT_GT(rows.TopRow() + rows.RowsInSight(), 125) << "they are in sight";
}

TEST_F(grid_trend, selected_rows_are_marked_in_it_and_a_mark_taken_away_selects_none) {
  Show(m_results);
  Run(Measured(100));
  auto& rows = *ViewOf(m_results);
  const auto select = [&](int nTop, int nBottom) {
    rows.selectionModel()->select(
        QItemSelection(rows.model()->index(nTop, 0), rows.model()->index(nBottom, 2)),
        QItemSelectionModel::ClearAndSelect);
  };
  select(10, 29);
  ShowTrend();
  ASSERT_TRUE(Plot().Marked());
  EXPECT_EQ(Plot().Marked()->lower, trend::TrendTime(Timestamp(std::chrono::seconds(70))));
  select(0, 9);
  ASSERT_TRUE(Plot().Marked());
  EXPECT_EQ(Plot().Marked()->lower, trend::TrendTime(Timestamp(std::chrono::seconds(90))));
  QTest::keyClick(&Plot(), Qt::Key_Escape);
  EXPECT_FALSE(Plot().Marked());
  EXPECT_FALSE(rows.selectionModel()->hasSelection());
}

TEST_F(grid_trend, times_without_rows_select_none_and_too_many_pieces_are_told) {
  Show(m_results);
  ado::RecordsetBuilder builder(
      {{"Timestamp", DataType::DBTimeStamp}, {"Value", DataType::Double}});
  constexpr int kRows = 3 * SpanRows::kMostPieces;
  for (int n = 0; n < kRows; ++n) {
    builder.AppendRow({Timestamp(std::chrono::seconds(n % 2 == 0 ? n : n + 1'000'000)), 1.0 * n});
  }
  Run(builder.Finish());
  ShowTrend();
  auto& rows = *ViewOf(m_results);
  Plot().Cursor(trend::TrendTime(Timestamp(std::chrono::seconds(0))));
  Plot().Times({0, trend::TrendTime(Timestamp(std::chrono::seconds(kRows)))});
  QTest::keyClick(&Plot(), Qt::Key_End, Qt::ShiftModifier);
  ASSERT_TRUE(tests::Until([&] { return !Label(m_results, "notice").empty(); }));
  EXPECT_EQ(Label(m_results, "notice"),
            "The rows of the marked times lie in more than 5000 pieces and are not selected; sort "
            "them by their time.");
  EXPECT_FALSE(rows.selectionModel()->hasSelection());
}

TEST_F(grid_trend, draws_the_rows_that_the_filter_row_leaves) {
  Show(m_results);
  ado::RecordsetBuilder builder({{"Tag", DataType::WChar},
                                 {"Timestamp", DataType::DBTimeStamp},
                                 {"Value", DataType::Double}});
  for (int n = 0; n < 40; ++n) {
    builder.AppendRow({"tag " + std::to_string(n), Timestamp(std::chrono::seconds(n)), 1.0 * n});
  }
  Run(builder.Finish());
  ShowTrend();
  const auto* lines = View().findChild<QAbstractItemView*>("trendValues")->model();
  EXPECT_EQ(lines->rowCount(), 32);
  EXPECT_EQ(Label(m_results, "notice"),
            "The first 32 tags are drawn, 8 more are not; choose fewer with a filter.");
  auto& rows = *ViewOf(m_results);
  rows.Filter({ColumnFilter::Read("tag 3", 0, DataType::WChar, CellFormat())});
  ASSERT_TRUE(tests::Until([&] { return !View().IsReading() && lines->rowCount() == 11; }));
  EXPECT_EQ(lines->index(0, 0).data().toString(), "tag 3");
  EXPECT_EQ(lines->index(1, 0).data().toString(), "tag 30");
  // An order takes none away, and changes nothing of what is drawn.
  rows.SortBy(2, false);
  rows.Filter({ColumnFilter::Read("tag 39", 0, DataType::WChar, CellFormat())});
  ASSERT_TRUE(tests::Until([&] { return !View().IsReading() && lines->rowCount() == 1; }));
  rows.Filter({});
  ASSERT_TRUE(tests::Until([&] { return !View().IsReading() && lines->rowCount() == 32; }));
  EXPECT_EQ(lines->index(0, 0).data().toString(), "tag 0");
}

TEST_F(grid_trend, says_in_the_strip_what_could_not_be_done) {
  Show(m_results);
  Run(Measured(10));
  ShowTrend();
  View().SaveAs("/nowhere/trend.png");
  EXPECT_NE(Label(m_results, "notice"), "");
}

}  // namespace
}  // namespace orvane::controls
