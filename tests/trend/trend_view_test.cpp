#include "trend/trend_view.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QTableView>
#include <QTest>

#include "tests/fakes/until.h"
#include "tests/trend/trend_rows.h"
#include "trend/trend_plot.h"
#include "trend/trend_values.h"

namespace orvane::trend {
namespace {

class trend_view : public testing::Test {
 protected:
  void Show(const platform::RecordsetPtr& rs) {
    m_view.resize(700, 600);
    m_view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_view));
    m_view.ShowRows(rs, zones::TimeZone::Utc());
    Read();
  }
  void Read() {
    ASSERT_TRUE(tests::Until([&] { return !m_view.IsReading(); }));
  }
  QAbstractItemModel& Values() const {
    return *m_view.findChild<QTableView*>("trendValues")->model();
  }
  std::string Text(int nRow, int nColumn) const {
    return Values().index(nRow, nColumn).data().toString().toStdString();
  }
  std::string Message() const {
    const auto* label = m_view.findChild<QLabel*>("trendMessage");
    return label->isVisible() ? label->text().toStdString() : "";
  }
  TrendPlot& Plot() const { return *m_view.findChild<TrendPlot*>(); }
  QAction* Action(const QString& sText) const {
    for (QAction* action : m_view.findChildren<QAction*>()) {
      if (action->text().remove(u'&') == sText) return action;
    }
    return nullptr;
  }
  TrendView m_view;
};

TEST_F(trend_view, lists_the_value_of_each_line_at_the_cursor) {
  Show(TwoTags(100));
  ASSERT_EQ(Values().rowCount(), 2);
  EXPECT_EQ(Text(0, TrendValues::Name), "a");
  EXPECT_EQ(Text(0, TrendValues::Value), "");
  const auto* plot = &Plot();
  const QPoint at(static_cast<int>(plot->xAxis->coordToPixel(TrendTime(Second(49)) + 500'000)),
                  plot->axisRect()->rect().center().y());
  QTest::mouseMove(&Plot(), at);
  QTest::mouseClick(&Plot(), Qt::LeftButton, {}, at);
  EXPECT_EQ(Text(0, TrendValues::Value), "49");
  EXPECT_EQ(Text(1, TrendValues::Value), "no value");
  EXPECT_EQ(Text(1, TrendValues::Time), "2023-11-14 22:14:09");
}

TEST_F(trend_view, tells_the_value_that_is_stored_and_not_the_one_that_is_drawn) {
  ado::RecordsetBuilder builder({{"Timestamp", platform::DataType::DBTimeStamp},
                                 {"Count", platform::DataType::BigInt},
                                 {"Price", platform::DataType::Numeric}});
  builder.AppendRow({Second(0), std::int64_t{-9'007'199'254'740'993},
                     platform::Decimal{"1234567890123456789.0123456789"}});
  builder.AppendRow({Second(1), std::int64_t{100'000}, platform::Decimal{"2.5"}});
  Show(builder.Finish());
  Plot().Cursor(TrendTime(Second(0)));
  EXPECT_EQ(Text(0, TrendValues::Value), "-9007199254740993");
  EXPECT_EQ(Text(1, TrendValues::Value), "1234567890123456789.0123456789");
  Plot().Cursor(TrendTime(Second(1)));
  EXPECT_EQ(Text(0, TrendValues::Value), "100000");
  EXPECT_EQ(Text(1, TrendValues::Value), "2.5");
}

TEST_F(trend_view, speaks_what_stands_at_the_cursor) {
  Show(TwoTags(100));
  Plot().Cursor(TrendTime(Second(10)));
  EXPECT_EQ(Plot().accessibleName(), "Trend");
  EXPECT_EQ(Plot().accessibleDescription().toStdString(), "At 2023-11-14 22:13:30: a 10; b -5.");
}

TEST_F(trend_view, a_line_is_taken_out_by_its_check_box) {
  Show(TwoTags(100));
  EXPECT_TRUE(Values().setData(Values().index(1, 0), Qt::Unchecked, Qt::CheckStateRole));
  EXPECT_FALSE(Plot().LineShown(1));
  Plot().Cursor(TrendTime(Second(10)));
  EXPECT_EQ(Plot().accessibleDescription().toStdString(), "At 2023-11-14 22:13:30: a 10.");
}

TEST_F(trend_view, asks_once_for_the_units_of_tags) {
  int nAsked = 0;
  m_view.AskUnits([&] {
    ++nAsked;
    return TrendView::Units{{"a", "bar"}, {"z", "m"}};
  });
  Show(TwoTags(10));
  EXPECT_EQ(Text(0, TrendValues::Unit), "bar");
  EXPECT_EQ(Text(1, TrendValues::Unit), "");
  m_view.ShowRows(TwoTags(20), zones::TimeZone::Utc());
  Read();
  EXPECT_EQ(Text(0, TrendValues::Unit), "bar");
  EXPECT_EQ(nAsked, 1);
}

TEST_F(trend_view, asks_again_for_tags_that_it_does_not_know_and_when_told_to) {
  int nAsked = 0;
  platform::Text sUnit = "bar";
  m_view.AskUnits([&] {
    ++nAsked;
    return TrendView::Units{{"a", sUnit}, {"c", "m"}};
  });
  Show(TwoTags(10));
  sUnit = "psi";
  ado::RecordsetBuilder builder({{"Tag", platform::DataType::WChar},
                                 {"Timestamp", platform::DataType::DBTimeStamp},
                                 {"Value", platform::DataType::Double}});
  for (const char* sTag : {"a", "c"}) builder.AppendRow({sTag, Second(1), 1.0});
  const auto rs = builder.Finish();
  m_view.ShowRows(rs, zones::TimeZone::Utc());
  Read();
  EXPECT_EQ(nAsked, 2);
  EXPECT_EQ(Text(0, TrendValues::Unit), "psi");
  EXPECT_EQ(Text(1, TrendValues::Unit), "m");
  sUnit = "kPa";
  m_view.ShowRows(rs, zones::TimeZone::Utc());
  Read();
  EXPECT_EQ(Text(0, TrendValues::Unit), "psi") << "nothing is asked while rows are followed";
  m_view.ForgetUnits();
  m_view.ShowRows(rs, zones::TimeZone::Utc());
  Read();
  EXPECT_EQ(nAsked, 3);
  EXPECT_EQ(Text(0, TrendValues::Unit), "kPa");
}

/// Rows in the memory of a disk that is full.
class RowsOfFullDisk final : public platform::Recordset {
 public:
  platform::Fields& Fields() override { return m_rs->Fields(); }
  platform::Boolean Eof() const override { return m_rs->Eof(); }
  platform::Boolean Bof() const override { return m_rs->Bof(); }
  void MoveNext() override {}
  void MoveFirst() override {}
  void MoveLast() override {}
  platform::RowIndex Position() const override { return 0; }
  void Position(platform::RowIndex /*row*/) override {}
  platform::RowIndex RecordCount() const override { return m_rs->RecordCount(); }
  platform::ColumnIndex FieldCount() const override { return m_rs->FieldCount(); }
  const platform::Field& FieldAt(platform::ColumnIndex column) const override {
    return m_rs->FieldAt(column);
  }
  platform::Value ValueAt(platform::RowIndex row, platform::ColumnIndex column) const override {
    return m_rs->ValueAt(row, column);
  }
  platform::Boolean Truncated() const override { return false; }
  std::chrono::microseconds Elapsed() const override { return {}; }
  std::shared_ptr<std::pmr::memory_resource> Memory() const override {
    return {std::shared_ptr<void>(), std::pmr::null_memory_resource()};
  }

 private:
  platform::RecordsetPtr m_rs = TwoTags(10);
};

TEST_F(trend_view, says_where_there_is_no_memory_for_it) {
  Show(TwoTags(10));
  Show(std::make_shared<RowsOfFullDisk>());
  EXPECT_EQ(Message(), "There is not enough memory for the trend; choose a shorter range of time.");
  EXPECT_EQ(Values().rowCount(), 0);
  Show(TwoTags(10));
  EXPECT_EQ(Message(), "");
}

TEST_F(trend_view, draws_only_the_rows_that_are_seen) {
  Show(TwoTags(0));
  // The rows of "b" stand at odd places.
  m_view.ShowRows(TwoTags(10), zones::TimeZone::Utc(), std::nullopt,
                  [](platform::RowIndex row) { return row % 2 == 1; });
  Read();
  ASSERT_EQ(Values().rowCount(), 1);
  EXPECT_EQ(Text(0, TrendValues::Name), "b");
  m_view.ShowRows(TwoTags(10), zones::TimeZone::Utc(), std::nullopt,
                  [](platform::RowIndex) { return false; });
  Read();
  EXPECT_EQ(Message(), "There is nothing to draw: the filter leaves no row with a time.");
}

TEST_F(trend_view, may_go_while_units_are_asked_for) {
  auto view = std::make_unique<TrendView>();
  bool bAsked = false;
  view->AskUnits([&] {
    bAsked = true;
    view.reset();
    return TrendView::Units{};
  });
  view->show();
  view->ShowRows(TwoTags(10), zones::TimeZone::Utc());
  ASSERT_TRUE(tests::Until([&] { return bAsked; }));
  EXPECT_EQ(view, nullptr);
}

TEST_F(trend_view, rows_that_follow_are_looked_at_as_those_before) {
  Show(TwoTags(100));
  Values().setData(Values().index(1, 0), Qt::Unchecked, Qt::CheckStateRole);
  m_view.ShowSpan({Second(20), Second(30)});
  Plot().Cursor(TrendTime(Second(25)));
  m_view.ShowRows(TwoTags(120), zones::TimeZone::Utc());
  Read();
  EXPECT_EQ(Plot().Times().lower, TrendTime(Second(20)));
  EXPECT_EQ(Plot().Times().upper, TrendTime(Second(30)));
  EXPECT_EQ(Plot().Cursor(), TrendTime(Second(25)));
  EXPECT_FALSE(Plot().LineShown(1));
}

TEST_F(trend_view, rows_that_follow_keep_the_values_chosen_and_the_mark) {
  Show(TwoTags(100));
  QTest::keyClick(&Plot(), Qt::Key_Up, Qt::ShiftModifier);
  const QCPRange values = Plot().yAxis->range();
  m_view.Mark(TrendSpan{Second(20), Second(30)});
  m_view.ShowRows(TwoTags(120), zones::TimeZone::Utc());
  Read();
  EXPECT_EQ(Plot().yAxis->range().lower, values.lower);
  EXPECT_EQ(Plot().yAxis->range().upper, values.upper);
  ASSERT_TRUE(Plot().Marked());
  EXPECT_EQ(Plot().Marked()->upper, TrendTime(Second(30)));
}

TEST_F(trend_view, hands_out_and_speaks_of_the_times_that_are_marked) {
  std::optional<TrendSpan> marked;
  m_view.OnMarked([&](const std::optional<TrendSpan>& span) { marked = span; });
  Show(TwoTags(100));
  Plot().Cursor(TrendTime(Second(10)));
  QTest::keyClick(&Plot(), Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(marked, (TrendSpan{Second(10), Second(11)}));
  EXPECT_TRUE(Plot().accessibleDescription().endsWith(
      " Marked from 2023-11-14 22:13:30 to 2023-11-14 22:13:31."))
      << Plot().accessibleDescription().toStdString();
  QTest::keyClick(&Plot(), Qt::Key_Escape);
  EXPECT_EQ(marked, std::nullopt);
}

TEST_F(trend_view, a_view_to_the_last_point_stays_at_the_last_point) {
  Show(TwoTags(100));
  m_view.ShowSpan({Second(80), Second(105)});
  m_view.ShowRows(TwoTags(120), zones::TimeZone::Utc());
  Read();
  EXPECT_NEAR(Plot().Times().lower, TrendTime(Second(100)), 0.5e6);
  EXPECT_NEAR(Plot().Times().upper, TrendTime(Second(125)), 0.5e6);
}

TEST_F(trend_view, hands_out_the_times_in_sight) {
  std::optional<TrendSpan> span;
  m_view.OnRange([&](const TrendSpan& times) { span = times; });
  Show(TwoTags(100));
  m_view.ShowSpan({Second(20), Second(30)});
  ASSERT_NE(Action("As Time Range"), nullptr);
  Action("As Time Range")->trigger();
  EXPECT_EQ(span, (TrendSpan{Second(20), Second(30)}));
}

TEST_F(trend_view, steps_are_drawn_when_asked_for) {
  Show(TwoTags(5));
  // The parts of the view find their sizes in the event loop.
  QImage straight;
  ASSERT_TRUE(tests::Until([&] {
    Plot().replot();
    const QImage before = std::exchange(straight, Plot().grab().toImage());
    return before == straight;
  }));
  Action("Steps")->trigger();
  EXPECT_NE(Plot().grab().toImage(), straight);
  Action("Steps")->trigger();
  EXPECT_EQ(Plot().grab().toImage(), straight);
}

TEST_F(trend_view, says_why_there_is_nothing_to_see) {
  ado::RecordsetBuilder builder({{"Name", platform::DataType::WChar}});
  Show(builder.Finish());
  EXPECT_EQ(Message(), "These rows have no times and numbers to draw.");
  Show(TwoTags(0));
  EXPECT_EQ(Message(), "There is nothing to draw: no row has a time.");
  Show(TwoTags(2));
  EXPECT_EQ(Message(), "");
  Show(nullptr);
  EXPECT_EQ(Values().rowCount(), 0);
}

TEST_F(trend_view, copies_its_points_by_the_usual_keys) {
  std::string sRemark = "none";
  m_view.OnRemark([&](const QString& sSentence, bool) { sRemark = sSentence.toStdString(); });
  Show(TwoTags(3));
  QTest::keyClick(&Plot(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith("Line\tTimestamp\t"));
  EXPECT_EQ(sRemark, "");
  m_view.SaveAs("/nowhere/trend.png");
  EXPECT_NE(sRemark, "");
}

TEST_F(trend_view, reads_nothing_until_it_is_seen) {
  m_view.ShowRows(TwoTags(10), zones::TimeZone::Utc());
  // As long as one takes that is seen, and that begins behind it each time.
  for (int n = 0; n < 3; ++n) {
    TrendView seen;
    seen.show();
    seen.ShowRows(TwoTags(10), zones::TimeZone::Utc());
    ASSERT_TRUE(tests::Until([&] { return !seen.IsReading(); }));
  }
  EXPECT_TRUE(m_view.IsReading());
  m_view.show();
  Read();
  EXPECT_EQ(Values().rowCount(), 2);
}

}  // namespace
}  // namespace orvane::trend
