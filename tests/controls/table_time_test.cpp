#include "controls/grid/table_time.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QScrollBar>
#include <QTimer>
#include <QToolButton>

#include "controls/grid/grid_trend.h"
#include "controls/grid/query_results.h"
#include "controls/grid/table_editor.h"
#include "controls/grid/table_query.h"
#include "tests/controls/grid_fixture.h"
#include "tests/controls/schema_connection.h"
#include "tests/controls/struck_clock.h"
#include "trend/trend_plot.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::Text;
using platform::Timestamp;

const Text kSelect = "SELECT *\nFROM \"Machine\"..\"Data\"";
const Text kNewestFirst = "\nORDER BY \"Timestamp\" DESC";

platform::RecordsetPtr Samples(int nNewest, int nOldest) {
  ado::RecordsetBuilder builder({{"Tag", DataType::WChar},
                                 {"Timestamp", DataType::DBTimeStamp},
                                 {"Value", DataType::Double}});
  for (int n = nNewest; n >= nOldest; --n) {
    builder.AppendRow({"a", Timestamp(std::chrono::seconds(n)), 1.0 * n});
  }
  return builder.Finish();
}

class table_time : public GridFixture {
 protected:
  table_time() {
    m_query->Catalog("Machine");
    m_query->Table("Data");
    m_server.answer = Samples(100, 51);
    m_editor = Bound();
  }
  std::unique_ptr<controls::TableEditor> Bound() {
    auto editor = std::make_unique<controls::TableEditor>(Services());
    editor->Connection(m_cn);
    editor->TableQuery(m_query);
    return editor;
  }
  TimeBar& Bar() { return *static_cast<TimeBar*>(Find<QWidget>("timeBar")); }
  template <class Widget>
  Widget* Find(const char* sName) {
    return WindowOf(*m_editor)->findChild<Widget*>(sName);
  }
  void Pick(const char* sName) {
    auto* ranges = Find<QComboBox>("timeRange");
    ranges->setCurrentIndex(ranges->findText(sName));
    emit ranges->activated(ranges->currentIndex());
  }
  /// What the last statement said behind the table's name.
  Text Sent() const {
    EXPECT_TRUE(m_server.sCommandText.starts_with(kSelect)) << m_server.sCommandText;
    return m_server.sCommandText.substr(kSelect.size());
  }
  /// The next fetch of a grid that follows.
  void FollowOnce() {
    auto* follow = Find<QCheckBox>("follow");
    if (!follow->isChecked()) follow->click();
    const int nExecuted = m_server.nExecuted;
    EndPause();
    ASSERT_EQ(m_server.nExecuted, nExecuted + 1);
    follow->click();
  }
  /// Has the pause between two runs end now; the run behind it is done afterwards.
  void EndPause() {
    auto* pause = Find<QTimer>("pause");
    ASSERT_TRUE(pause->isActive());
    StrikeNow(*pause);
  }

  std::shared_ptr<SchemaConnection> m_cn = std::make_shared<SchemaConnection>(
      SchemaConnection::Columns{{"Tag", DataType::WChar}, {"Timestamp", DataType::DBTimeStamp}});
  std::shared_ptr<controls::TableQuery> m_query = std::make_shared<controls::TableQuery>();
  std::unique_ptr<controls::TableEditor> m_editor;
};

TEST_F(table_time, the_bar_stands_where_the_table_has_a_time_column) {
  Show(*m_editor);
  EXPECT_FALSE(Bar().isVisible());
  m_editor->Requery();
  EXPECT_TRUE(Bar().isVisible());
  const auto texts =
      std::make_shared<SchemaConnection>(SchemaConnection::Columns{{"Tag", DataType::WChar}});
  m_editor->Connection(texts);
  m_editor->TableQuery(m_query);
  ado::RecordsetBuilder builder({{"Tag", DataType::WChar}});
  m_server.answer = builder.Finish();
  m_editor->Requery();
  EXPECT_FALSE(Bar().isVisible());
}

TEST_F(table_time, a_range_takes_the_place_of_the_default_filter_and_is_not_stored) {
  m_query->FilterCondition("Timestamp BETWEEN '*-1h' AND '*'");
  const Text sState = m_query->WriteState();
  m_editor->Requery();
  EXPECT_EQ(Sent(), "\nWHERE Timestamp BETWEEN '*-1h' AND '*'" + kNewestFirst);
  Pick("Last 10 minutes");
  EXPECT_EQ(Sent(), "\nWHERE \"Timestamp\" BETWEEN '*-10m' AND '*'" + kNewestFirst);
  EXPECT_EQ(m_query->WriteState(), sState);
  Find<QAction>("timeClear")->trigger();
  EXPECT_EQ(Sent(), "\nWHERE Timestamp BETWEEN '*-1h' AND '*'" + kNewestFirst);
}

TEST_F(table_time, the_statement_shows_the_range_and_so_does_a_table_without_rows) {
  m_editor->ShowSqlStatements(true);
  m_server.answer = Samples(0, 1);
  m_query->FilterCondition("Value > 1 -- high");
  m_editor->Requery();
  Pick("Last hour");
  EXPECT_EQ(SqlOf(*m_editor), kSelect +
                                  "\nWHERE (\nValue > 1 -- high\n) AND (\n\"Timestamp\" BETWEEN "
                                  "'*-1h' AND '*'\n)" +
                                  kNewestFirst);
  EXPECT_NE(Label(*m_editor, "emptySentence").find("BETWEEN '*-1h'"), Text::npos);
}

TEST_F(table_time, keep_makes_the_range_the_query_s_filter) {
  m_query->FilterCondition("Timestamp BETWEEN '*-1h' AND '*'");
  m_editor->Requery();
  Pick("Last 7 days");
  const Text sSent = Sent();
  Text sKept;
  const auto kept = m_editor->OnFilterKept([&] { sKept += m_query->FilterCondition(); });
  Find<QAction>("timeKeep")->trigger();
  EXPECT_EQ(sKept, m_query->FilterCondition());
  EXPECT_EQ(m_query->FilterCondition(), "\"Timestamp\" BETWEEN '*-7d' AND '*'");
  m_editor->Requery();
  EXPECT_EQ(Sent(), sSent);
  EXPECT_FALSE(Find<QAction>("timeKeep")->isEnabled());
}

TEST_F(table_time, comes_back_with_the_rows) {
  m_editor->Requery();
  Pick("Today");
  platform::Long lState = 0;
  const auto rs = m_editor->DetachRecordset(lState);
  m_editor = Bound();
  m_editor->AttachRecordset(rs, lState);
  EXPECT_EQ(Find<QComboBox>("timeRange")->currentText(), "Today");
  m_editor->Requery();
  EXPECT_EQ(Sent(), "\nWHERE \"Timestamp\" BETWEEN 't' AND 't+1d'" + kNewestFirst);
}

TEST_F(table_time, a_query_with_an_order_of_its_own_has_a_range_by_its_rows) {
  m_query->SortCriterion(platform::SortCriterion{"Value", true});
  m_editor->Requery();
  Pick("Last hour");
  EXPECT_EQ(Sent(), "\nWHERE \"Timestamp\" BETWEEN '*-1h' AND '*'\nORDER BY \"Value\" ASC");
  EXPECT_EQ(m_cn->nAsked, 0);
}

TEST_F(table_time, a_failure_behind_the_bar_is_shown_and_taken_down) {
  m_editor->Requery();
  m_server.whileRunning = [] { Refuse(); };
  Pick("Last hour");
  EXPECT_EQ(Label(*m_editor, "emptySentence"), "There is no such column; correct it.");
  EXPECT_EQ(m_failures->noted.size(), 1U);
}

TEST_F(table_time, following_keeps_the_place_and_marks_what_came_new) {
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

TEST_F(table_time, following_keeps_the_order_made_here_and_the_place_in_it) {
  Show(*m_editor);
  m_editor->Requery();
  ViewOf(*m_editor)->SortBy(2, true);
  ASSERT_TRUE(QTest::qWaitFor([&] { return CellOf(*m_editor, 0, 2) == "51"; }));
  ViewOf(*m_editor)->selectionModel()->setCurrentIndex(ViewOf(*m_editor)->model()->index(3, 2),
                                                       QItemSelectionModel::ClearAndSelect);
  EXPECT_EQ(CellOf(*m_editor, 3, 2), "54");
  m_server.answer = Samples(80, 53);  // fewer than before
  FollowOnce();
  ASSERT_TRUE(QTest::qWaitFor([&] { return CellOf(*m_editor, 0, 2) == "53"; }));
  EXPECT_EQ(RowsOf(*m_editor), 28);
  ASSERT_TRUE(QTest::qWaitFor([&] { return ViewOf(*m_editor)->currentIndex().row() == 1; }));
  EXPECT_EQ(CellOf(*m_editor, 1, 2), "54");
}

TEST_F(table_time, following_leaves_the_columns_as_they_were_made_meanwhile) {
  Show(*m_editor);
  m_editor->Requery();
  m_server.whileRunning = [this] {
    m_editor->Layout(R"({"version":1,"columns":[{"name":"Tag","hidden":true}]})");
  };
  FollowOnce();
  EXPECT_EQ(ViewOf(*m_editor)->HiddenColumns(), (std::vector<bool>{true, false, false}));
}

TEST_F(table_time, a_failure_leaves_the_rows_and_following_goes_on) {
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

TEST_F(table_time, a_server_that_is_gone_leaves_the_rows_and_offers_to_reconnect) {
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

TEST_F(table_time, following_gives_way_to_the_user_and_leaves_the_rows_to_him) {
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

TEST_F(table_time, rows_that_come_while_somebody_edits_are_dropped) {
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

TEST_F(table_time, a_grid_may_go_while_it_follows) {
  Show(*m_editor);
  m_editor->Requery();
  Find<QCheckBox>("follow")->click();
  auto* pause = Find<QTimer>("pause");
  m_server.whileRunning = [&] { m_editor.reset(); };
  StrikeNow(*pause);
  EXPECT_EQ(m_editor, nullptr);
}

TEST_F(table_time, the_trend_of_followed_rows_ends_now) {
  Show(*m_editor);
  const auto at = [](int nSeconds) { return static_cast<double>(nSeconds) * 1e6; };
  m_now = Timestamp(std::chrono::seconds(130));
  m_editor->Requery();
  QTest::mouseClick(Find<QToolButton>("asTrend"), Qt::LeftButton);
  auto& view = *static_cast<trend::TrendView*>(Find<QWidget>("trend"));
  const auto& plot = *view.findChild<trend::TrendPlot*>();
  const auto read = [&] {
    return QTest::qWaitFor([&] { return !view.IsReading() && plot.AllTimes().upper > 1; });
  };
  ASSERT_TRUE(read());
  EXPECT_LT(plot.Times().upper, at(110)) << "nobody follows yet";
  Pick("Last 10 minutes");
  Find<QCheckBox>("follow")->click();
  EndPause();
  ASSERT_TRUE(QTest::qWaitFor([&] { return plot.Times().upper == at(130); }));
  EXPECT_EQ(plot.Times().lower, at(130 - 600));
  // Nothing has come since, and time has gone on.
  m_now = Timestamp(std::chrono::seconds(140));
  EndPause();
  ASSERT_TRUE(QTest::qWaitFor([&] { return plot.Times().upper == at(140); }));
  view.ShowSpan({Timestamp(std::chrono::seconds(90)), m_now});
  m_now = Timestamp(std::chrono::seconds(150));
  EndPause();
  ASSERT_TRUE(QTest::qWaitFor([&] { return plot.Times().upper == at(150); }));
  EXPECT_EQ(plot.Times().lower, at(100)) << "as wide as it was chosen";
  view.ShowSpan({Timestamp(std::chrono::seconds(60)), Timestamp(std::chrono::seconds(70))});
  EndPause();
  ASSERT_TRUE(read());
  EXPECT_EQ(plot.Times().upper, at(70)) << "who looks elsewhere goes on doing so";
}

TEST_F(table_time, no_range_is_chosen_while_rows_are_fetched) {
  Show(*m_editor);
  m_editor->Requery();
  bool bAsked = false;
  m_server.whileRunning = [&] {
    if (!std::exchange(bAsked, true)) Pick("Last hour");
  };
  m_editor->Requery();
  ASSERT_TRUE(bAsked);
  EXPECT_EQ(Find<QComboBox>("timeRange")->currentText(), "As the query says");
  EXPECT_EQ(Sent(), kNewestFirst);
  EXPECT_TRUE(m_failures->noted.empty());
  m_editor->Requery();
  EXPECT_EQ(Sent(), kNewestFirst) << "nothing of it is left";
}

TEST_F(table_time, following_waits_while_rows_are_edited) {
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

TEST_F(table_time, the_trend_s_times_become_the_range_and_its_units_are_asked_for) {
  Show(*m_editor);
  m_editor->Requery();
  QTest::mouseClick(Find<QToolButton>("asTrend"), Qt::LeftButton);
  auto& view = *static_cast<trend::TrendView*>(Find<QWidget>("trend"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !view.IsReading(); }));
  EXPECT_EQ(m_server.sCommandText, "SELECT \"Tag\", \"Unit\" FROM \"Machine\"..\"Tags\"");
  EXPECT_TRUE(m_server.bReadOnly);
  view.ShowSpan({Timestamp(std::chrono::seconds(60)), Timestamp(std::chrono::seconds(70))});
  for (QAction* action : view.findChildren<QAction*>()) {
    if (action->text().contains("Range")) action->trigger();
  }
  EXPECT_EQ(Sent(),
            "\nWHERE \"Timestamp\" BETWEEN '1970-01-01 00:01:00' AND '1970-01-01 00:01:10'" +
                kNewestFirst);
}

class named_query_time : public GridFixture {
 protected:
  named_query_time() {
    m_server.answer = Samples(100, 51);
    m_results.Connection(m_connection);
    m_results.SqlText(kText);
    m_server.whileRunning = [this] {
      m_sent.push_back(m_server.sCommandText);
      if (m_server.sCommandText.starts_with("EXPLAIN ") && m_refusal) {
        throw platform::Failure(*m_refusal);
      }
    };
    Show(m_results);
    m_results.Execute();
  }
  template <class Widget>
  Widget* Find(const char* sName) {
    return WindowOf(m_results)->findChild<Widget*>(sName);
  }
  void PickLastHour() {
    auto* ranges = Find<QComboBox>("timeRange");
    ranges->setCurrentIndex(ranges->findText("Last hour"));
    emit ranges->activated(ranges->currentIndex());
  }
  const Text kText = "SELECT * FROM Plant";
  const Text kWithin =
      "SELECT *\nFROM (\n" + kText + "\n)\nWHERE \"Timestamp\" BETWEEN '*-1h' AND '*'";
  std::vector<Text> m_sent;
  std::optional<platform::Failure> m_refusal;
  controls::QueryResults m_results{Services()};
};

TEST_F(named_query_time, the_server_is_asked_before_a_range_stands_around_the_text) {
  EXPECT_EQ(m_sent, std::vector<Text>{kText}) << "nothing is asked before there is a range";
  PickLastHour();
  EXPECT_EQ(m_sent, (std::vector<Text>{kText, "EXPLAIN " + kWithin, kWithin}));
  EXPECT_TRUE(m_server.bReadOnly);
}

TEST_F(named_query_time, a_text_that_takes_no_range_says_why_and_its_rows_stay) {
  m_refusal = platform::Failure(platform::failure::kSqlError, "It cannot stand there; move it.");
  PickLastHour();
  EXPECT_EQ(Label(m_results, "timeTold"),
            "This query takes no range of time. It cannot stand there; move it.");
  EXPECT_EQ(m_sent.back(), "EXPLAIN " + kWithin);
  EXPECT_EQ(RowsOf(m_results), 50);
  EXPECT_EQ(Find<QComboBox>("timeRange")->currentText(), "As the query says");
  for (const char* sName : {"timeRange", "timeFrom", "timeTo"}) {
    EXPECT_FALSE(Find<QWidget>(sName)->isEnabled()) << sName;
  }
  EXPECT_TRUE(Find<QCheckBox>("follow")->isEnabled());
  m_results.Execute();
  EXPECT_EQ(m_sent.back(), kText);
  m_refusal.reset();
  m_results.SqlText("SELECT * FROM Pumps");
  m_results.Execute();
  EXPECT_EQ(Label(m_results, "timeTold"), "");
  EXPECT_TRUE(Find<QWidget>("timeRange")->isEnabled());
}

TEST_F(named_query_time, following_ends_with_the_time_column) {
  Find<QCheckBox>("follow")->click();
  StrikeNow(*Find<QTimer>("pause"));
  EXPECT_EQ(m_sent.size(), 2U);
  ado::RecordsetBuilder builder({{"Tag", DataType::WChar}});
  m_server.answer = builder.Finish();
  m_results.SqlText("SELECT Tag FROM Plant");
  m_results.Execute();
  EXPECT_FALSE(Find<QWidget>("timeBar")->isVisible());
  EXPECT_FALSE(Find<QCheckBox>("follow")->isChecked());
  EXPECT_FALSE(Find<QTimer>("pause")->isActive());
}

TEST_F(named_query_time, what_else_goes_wrong_is_told_by_the_rows) {
  m_refusal = platform::Failure(platform::failure::kTimeout, "Too slow; wait longer.");
  PickLastHour();
  EXPECT_EQ(m_sent.back(), kWithin);
  EXPECT_EQ(Label(m_results, "timeTold"), "");
}

TEST_F(named_query_time, a_grid_may_go_while_the_server_is_asked) {
  auto results = std::make_unique<controls::QueryResults>(Services());
  results->Connection(m_connection);
  results->SqlText(kText);
  results->Execute();
  const auto* bar = WindowOf(*results)->findChild<QAction*>("timeBack");
  ASSERT_NE(bar, nullptr);
  auto* ranges = WindowOf(*results)->findChild<QComboBox*>("timeRange");
  m_server.whileRunning = [&] { results.reset(); };
  emit ranges->activated(2);
  EXPECT_EQ(results, nullptr);
}

}  // namespace
}  // namespace orvane::controls
