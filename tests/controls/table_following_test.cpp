// Following the newest rows of a table: what stays in its place, and what gives way.
#include <QLineEdit>
#include <QScrollBar>
#include <QToolButton>

#include "controls/grid/grid_trend.h"
#include "tests/controls/table_time_fixture.h"
#include "tests/fakes/until.h"
#include "trend/trend_plot.h"

namespace orvane::controls {
namespace {

using platform::Timestamp;

class table_following : public TableTimeFixture {};

TEST_F(table_following, following_keeps_the_place_and_marks_what_came_new) {
  Show(*m_editor);
  m_editor->Requery();
  const int nAsked = m_cn->nAsked;
  ClickCell(*m_editor, 3, 2);
  EXPECT_EQ(CellOf(*m_editor, 3, 2), "97");
  m_server.answer = Samples(102, 53);
  FollowOnce();
  EXPECT_EQ(ViewOf(*m_editor)->currentIndex().row(), 5);
  EXPECT_EQ(CellOf(*m_editor, 5, 2), "97");
  const auto isNew = [&](int nRow) {
    return ViewOf(*m_editor)->model()->headerData(nRow, Qt::Vertical, RowModel::kNewRole).toBool();
  };
  EXPECT_TRUE(isNew(0));
  EXPECT_TRUE(isNew(1));
  EXPECT_FALSE(isNew(2));
  EXPECT_EQ(m_cn->nAsked, nAsked) << "what the table's columns are is known";
  m_editor->Requery();
  EXPECT_FALSE(isNew(0));
}

TEST_F(table_following, following_keeps_the_order_made_here_and_the_place_in_it) {
  Show(*m_editor);
  m_editor->Requery();
  ViewOf(*m_editor)->SortBy(2, true);
  ASSERT_TRUE(tests::Until([&] { return CellOf(*m_editor, 0, 2) == "51"; }));
  ViewOf(*m_editor)->selectionModel()->setCurrentIndex(ViewOf(*m_editor)->model()->index(3, 2),
                                                       QItemSelectionModel::ClearAndSelect);
  EXPECT_EQ(CellOf(*m_editor, 3, 2), "54");
  m_server.answer = Samples(80, 53);  // fewer than before
  FollowOnce();
  ASSERT_TRUE(tests::Until([&] { return CellOf(*m_editor, 0, 2) == "53"; }));
  EXPECT_EQ(RowsOf(*m_editor), 28);
  ASSERT_TRUE(tests::Until([&] { return ViewOf(*m_editor)->currentIndex().row() == 1; }));
  EXPECT_EQ(CellOf(*m_editor, 1, 2), "54");
}

/// The rows of an order made here keep their place in the window.
class followed_order : public table_following {
 protected:
  /// As the rows stand, from the first in sight on.
  std::string FirstInSight() { return CellOf(*m_editor, View().TopRow(), 2); }
  RowView& View() { return *ViewOf(*m_editor); }
  std::set<std::string> Selected() {
    std::set<std::string> values;
    for (const CellRange& range : View().State().selection) {
      for (int nRow = range.nTop; nRow <= range.nBottom; ++nRow) {
        if (nRow < View().Model().Places()) values.insert(CellOf(*m_editor, nRow, 2));
      }
    }
    return values;
  }
  void Select(int nTop, int nBottom) {
    View().selectionModel()->select(
        QItemSelection(View().model()->index(nTop, 0), View().model()->index(nBottom, 2)),
        QItemSelectionModel::ClearAndSelect);
  }
  void Filter(const char* sFilter) {
    View().Filter({ColumnFilter::Read(sFilter, 2, platform::DataType::Double, CellFormat())});
  }
};

TEST_F(followed_order, a_sort_leaves_the_first_row_in_sight_where_it_is) {
  m_server.answer = Samples(200, 1);
  Show(*m_editor);
  m_editor->Requery();
  View().SortBy(2, true);
  View().verticalScrollBar()->setValue(46);
  EXPECT_EQ(FirstInSight(), "47");
  Select(48, 49);
  m_server.answer = Samples(202, 3);
  FollowOnce();
  EXPECT_EQ(FirstInSight(), "47") << "the current row is far away, in the first place";
  EXPECT_EQ(View().TopRow(), 44);
  EXPECT_EQ(Selected(), (std::set<std::string>{"49", "50"}));
}

TEST_F(followed_order, a_filter_leaves_the_first_row_in_sight_where_it_is) {
  m_server.answer = Samples(200, 1);
  Show(*m_editor);
  m_editor->Requery();
  Filter("<= 150");
  View().verticalScrollBar()->setValue(46);
  EXPECT_EQ(FirstInSight(), "104");
  m_server.answer = Samples(202, 3);
  FollowOnce();
  EXPECT_EQ(FirstInSight(), "104");
  // A row that went leaves the place to another.
  m_server.answer = Samples(100, 3);
  FollowOnce();
  EXPECT_EQ(View().TopRow(), 46);
}

TEST_F(followed_order, who_looks_at_the_first_row_of_an_order_goes_on_doing_so) {
  m_server.answer = Samples(200, 1);
  Show(*m_editor);
  m_editor->Requery();
  View().SortBy(2, false);
  EXPECT_EQ(FirstInSight(), "200");
  m_server.answer = Samples(205, 6);
  FollowOnce();
  EXPECT_EQ(FirstInSight(), "205");
}

TEST_F(followed_order, all_stays_all_and_a_few_stay_these_few) {
  m_server.answer = Samples(5'000, 1);
  Show(*m_editor);
  m_editor->Requery();
  const auto follow = [this](int nNewest) {
    m_server.answer = Samples(nNewest, 1);
    FollowOnce();
    ASSERT_TRUE(tests::Until([&] { return View().Model().Recordset() == m_server.answer; }));
  };
  View().SortBy(2, true);
  View().selectAll();
  follow(5'010);
  EXPECT_EQ(Selected().size(), 5'010U);
  Select(0, 2'499);
  follow(5'010);
  EXPECT_EQ(Selected().size(), 0U) << "a part of them would be another selection";
  Filter("<= 3");
  View().selectAll();
  follow(5'020);
  EXPECT_EQ(Selected(), (std::set<std::string>{"1", "2", "3"}));
  View().Filter({});
  EXPECT_EQ(View().Model().Places(), 5'020);
  EXPECT_EQ(Selected(), (std::set<std::string>{"1", "2", "3"})) << "more were never selected";
}

TEST_F(table_following, a_row_is_known_by_the_key_of_its_table) {
  const auto rows = [](int nNewest, double offset) {
    ado::RecordsetBuilder builder({{"Tag", platform::DataType::WChar},
                                   {"Timestamp", platform::DataType::DBTimeStamp},
                                   {"Id", platform::DataType::BigInt}});
    for (int n = nNewest; n > nNewest - 20; --n) {
      builder.AppendRow({"a",
                         platform::Timestamp(std::chrono::milliseconds(
                             static_cast<std::int64_t>((n + offset) * 1000))),
                         std::int64_t{n}});
    }
    return builder.Finish();
  };
  m_server.answer = rows(100, 0);
  m_editor->Connection(std::make_shared<KeyedConnection>(
      SchemaConnection::Columns{{"Tag", platform::DataType::WChar},
                                {"Timestamp", platform::DataType::DBTimeStamp},
                                {"Id", platform::DataType::BigInt}},
      "Id"));
  m_editor->TableQuery(m_query);
  Show(*m_editor);
  m_editor->Requery();
  ClickCell(*m_editor, 3, 2);
  EXPECT_EQ(CellOf(*m_editor, 3, 2), "97");
  // Each has another time now.
  m_server.answer = rows(101, 0.5);
  FollowOnce();
  EXPECT_EQ(ViewOf(*m_editor)->currentIndex().row(), 4);
  EXPECT_TRUE(ViewOf(*m_editor)->Model().IsNew(0));
  EXPECT_FALSE(ViewOf(*m_editor)->Model().IsNew(1));
}

TEST_F(table_following, following_leaves_the_columns_as_they_were_made_meanwhile) {
  Show(*m_editor);
  m_editor->Requery();
  m_server.whileRunning = [this] {
    m_editor->Layout(R"({"version":1,"columns":[{"name":"Tag","hidden":true}]})");
  };
  FollowOnce();
  EXPECT_EQ(ViewOf(*m_editor)->HiddenColumns(), (std::vector<bool>{true, false, false}));
}

TEST_F(table_following, a_failure_leaves_the_rows_and_following_goes_on) {
  Show(*m_editor);
  m_editor->Requery();
  ClickCell(*m_editor, 3, 2);
  auto* follow = Find<QCheckBox>("follow");
  follow->click();
  m_server.whileRunning = [] { Refuse(); };
  EndPause();
  EndPause();
  EXPECT_TRUE(follow->isChecked());
  EXPECT_EQ(RowsOf(*m_editor), 50);
  EXPECT_EQ(ViewOf(*m_editor)->currentIndex().row(), 3);
  EXPECT_EQ(Label(*m_editor, "notice"),
            "Not fetched again yet: There is no such column; correct it.");
  EXPECT_EQ(m_failures->noted.size(), 1U) << "not once for each try";
  m_server.whileRunning = nullptr;
  m_server.answer = Samples(101, 52);
  EndPause();
  EXPECT_EQ(CellOf(*m_editor, 0, 2), "101");
  EXPECT_EQ(Label(*m_editor, "notice"), "");
}

TEST_F(table_following, a_server_that_is_gone_leaves_the_rows_and_offers_to_reconnect) {
  Show(*m_editor);
  m_editor->Requery();
  auto* follow = Find<QCheckBox>("follow");
  follow->click();
  m_server.whileRunning = [] {
    throw platform::Failure(platform::failure::kServerNotFound, "The server is gone; reconnect.");
  };
  EndPause();
  EXPECT_EQ(RowsOf(*m_editor), 50);
  EXPECT_EQ(Label(*m_editor, "notice"), "The server is gone; reconnect.");
  EXPECT_TRUE(Find<QToolButton>("offer")->isVisible());
  EXPECT_TRUE(follow->isChecked());
  m_cn->Close();
  const int nExecuted = m_server.nExecuted;
  EndPause();
  EXPECT_EQ(m_server.nExecuted, nExecuted) << "over a closed connection nothing is asked";
}

TEST_F(table_following, following_gives_way_to_the_user_and_leaves_the_rows_to_him) {
  Show(*m_editor);
  m_editor->Requery();
  EXPECT_FALSE(m_server.bGivesWay);
  auto* follow = Find<QCheckBox>("follow");
  follow->click();
  const auto rs = ViewOf(*m_editor)->Model().Recordset();
  m_server.whileRunning = [&] {
    EXPECT_TRUE(m_server.bGivesWay);
    EXPECT_FALSE(m_server.bKeepRows) << "a part of them is not what is followed";
    EXPECT_EQ(ViewOf(*m_editor)->Model().Recordset(), rs);
    EXPECT_EQ(RowsOf(*m_editor), 50);
    ViewOf(*m_editor)->verticalScrollBar()->setValue(7);
    throw platform::Failure(platform::failure::kCancelled, "It was cancelled.");
  };
  EndPause();
  EXPECT_EQ(ViewOf(*m_editor)->Model().Recordset(), rs);
  EXPECT_EQ(ViewOf(*m_editor)->TopRow(), 7);
  EXPECT_EQ(Label(*m_editor, "notice"), "");
  EXPECT_TRUE(m_failures->noted.empty());
  EXPECT_TRUE(follow->isChecked());
}

TEST_F(table_following, rows_that_come_while_somebody_edits_are_dropped) {
  Show(*m_editor);
  m_editor->Requery();
  Find<QCheckBox>("follow")->click();
  const auto rs = ViewOf(*m_editor)->Model().Recordset();
  m_server.answer = Samples(110, 61);
  m_server.whileRunning = [&] { rs->ValueAt(0, 2, 5.0); };
  EndPause();
  EXPECT_EQ(ViewOf(*m_editor)->Model().Recordset(), rs);
  EXPECT_EQ(CellOf(*m_editor, 0, 2), "5");
}

TEST_F(table_following, a_grid_may_go_while_it_follows) {
  Show(*m_editor);
  m_editor->Requery();
  Find<QCheckBox>("follow")->click();
  auto* pause = Find<QTimer>("pause");
  m_server.whileRunning = [&] { m_editor.reset(); };
  StrikeNow(*pause);
  EXPECT_EQ(m_editor, nullptr);
}

TEST_F(table_following, the_trend_of_followed_rows_ends_now) {
  Show(*m_editor);
  const auto at = [](int nSeconds) { return static_cast<double>(nSeconds) * 1e6; };
  m_now = Timestamp(std::chrono::seconds(130));
  m_editor->Requery();
  QTest::mouseClick(Find<QToolButton>("asTrend"), Qt::LeftButton);
  auto& view = *static_cast<trend::TrendView*>(Find<QWidget>("trend"));
  const auto& plot = *view.findChild<trend::TrendPlot*>();
  const auto read = [&] {
    return tests::Until([&] { return !view.IsReading() && plot.AllTimes().upper > 1; });
  };
  ASSERT_TRUE(read());
  EXPECT_LT(plot.Times().upper, at(110)) << "nobody follows yet";
  Pick("Last 10 minutes");
  Find<QCheckBox>("follow")->click();
  EndPause();
  ASSERT_TRUE(tests::Until([&] { return plot.Times().upper == at(130); }));
  EXPECT_EQ(plot.Times().lower, at(130 - 600));
  // Nothing has come since, and time has gone on.
  m_now = Timestamp(std::chrono::seconds(140));
  EndPause();
  ASSERT_TRUE(tests::Until([&] { return plot.Times().upper == at(140); }));
  view.ShowSpan({Timestamp(std::chrono::seconds(90)), m_now});
  m_now = Timestamp(std::chrono::seconds(150));
  EndPause();
  ASSERT_TRUE(tests::Until([&] { return plot.Times().upper == at(150); }));
  EXPECT_EQ(plot.Times().lower, at(100)) << "as wide as it was chosen";
  view.ShowSpan({Timestamp(std::chrono::seconds(60)), Timestamp(std::chrono::seconds(70))});
  EndPause();
  ASSERT_TRUE(read());
  EXPECT_EQ(plot.Times().upper, at(70)) << "who looks elsewhere goes on doing so";
}

TEST_F(table_following, following_waits_while_rows_are_copied_or_looked_through) {
  m_server.answer = Samples(60'000, 1);
  Show(*m_editor);
  m_editor->Requery();
  auto& view = *ViewOf(*m_editor);
  Find<QCheckBox>("follow")->click();
  const int nExecuted = m_server.nExecuted;
  view.selectAll();
  view.Copy(false);
  ASSERT_TRUE(view.Copier().Busy());
  EndPause();
  EXPECT_EQ(m_server.nExecuted, nExecuted);
  ASSERT_TRUE(tests::Until([&] { return !view.Copier().Busy(); }));
  EXPECT_EQ(Label(*m_editor, "notice"), "");
  EndPause();
  EXPECT_EQ(m_server.nExecuted, nExecuted + 1);
  ASSERT_TRUE(tests::Until([&] { return view.Model().Recordset() == m_server.answer; }));

  QTest::keyClick(&view, Qt::Key_F, Qt::ControlModifier);
  auto* text = Find<QLineEdit>("findText");
  QTest::keyClicks(text, "nowhere");
  QTest::keyClick(text, Qt::Key_Return);
  const auto outcome = [&] { return Label(*m_editor, "findOutcome"); };
  ASSERT_EQ(outcome(), "Looking\u2026 Escape ends it");
  EndPause();
  EXPECT_EQ(m_server.nExecuted, nExecuted + 1);
  ASSERT_TRUE(tests::Until([&] { return outcome() == "Not found in the 60,000 rows here"; }));
}

TEST_F(table_following, following_waits_while_rows_are_edited) {
  Show(*m_editor);
  m_editor->Requery();
  Find<QCheckBox>("follow")->click();
  const int nExecuted = m_server.nExecuted;
  EndPause();
  EXPECT_EQ(m_server.nExecuted, nExecuted + 1);
  platform::Long lState = 0;
  m_editor->DetachRecordset(lState)->ValueAt(0, 2, 5.0);
  EndPause();
  EXPECT_EQ(m_server.nExecuted, nExecuted + 1);
}

}  // namespace
}  // namespace orvane::controls
