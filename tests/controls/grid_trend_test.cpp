#include "controls/grid_trend.h"

#include <QAbstractItemView>
#include <QToolButton>

#include "ado/recordset_builder.h"
#include "controls/query_results.h"
#include "controls/row_view.h"
#include "tests/controls/grid_fixture.h"
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
  void ShowTrend() {
    QTest::mouseClick(&Switch("asTrend"), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !View().IsReading(); }));
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
  const double end = View().Plot().AllTimes().upper;
  Run(Measured(50));
  EXPECT_TRUE(IsSeen("trend"));
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return !View().IsReading() && View().Plot().AllTimes().upper > end; }));
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
  EXPECT_EQ(View().Plot().Times().lower, trend::TrendTime(Timestamp(std::chrono::seconds(70))));
  EXPECT_EQ(View().Plot().Times().upper, trend::TrendTime(Timestamp(std::chrono::seconds(89))));
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
