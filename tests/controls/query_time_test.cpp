// Ranges of time of named queries, and of rows whose times are numbers, against a real historian.
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QTimer>
#include <QToolButton>

#include "controls/grid/grid_trend.h"
#include "controls/grid/query_results.h"
#include "controls/grid/time_bar.h"
#include "controls/view/sql_pane.h"
#include "tests/controls/editing_fixture.h"
#include "tests/controls/struck_clock.h"
#include "tests/fakes/until.h"
#include "trend/trend_plot.h"

namespace orvane::controls {
namespace {

using platform::Text;

/// The table's grid or the query's: both have a window.
class query_time : public EditingFixture {
 protected:
  query_time() {
    m_server->Run(
        "INSERT INTO P..Data (Tag, Timestamp, Value) VALUES "
        "('a', '2024-05-01 10:00:00Z', 1), ('a', '2024-05-01 11:00:00Z', 2), "
        "('a', '2024-05-02 10:00:00Z', 3), ('b', '2024-05-02 11:00:00Z', 4)");
  }
  void Run(const Text& sSql, const Text& sOptions = "Time Zone = UTC;") {
    m_results = MakeResults(sOptions);
    m_results->SqlText(sSql);
    m_results->Execute();
    auto* window = ResultsWindow();
    window->resize(1200, 400);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
  }
  std::unique_ptr<controls::QueryResults> MakeResults(const Text& sOptions) {
    m_cn = m_server->Connect(sOptions);
    auto results = std::make_unique<controls::QueryResults>(Services());
    results->Connection(m_cn);
    results->ShowSqlStatements(true);
    return results;
  }
  QWidget* ResultsWindow() { return static_cast<QWidget*>(m_results->Window()); }
  template <class Widget>
  static Widget* Find(QWidget* window, const char* sName) {
    return window->findChild<Widget*>(sName);
  }
  static bool HasBar(QWidget* window) {
    return Find<QWidget>(window, "timeBar")->isVisibleTo(window);
  }
  static void Choose(QWidget* window, const char* sFrom, const char* sTo) {
    Find<QLineEdit>(window, "timeFrom")->setText(sFrom);
    auto* to = Find<QLineEdit>(window, "timeTo");
    to->setText(sTo);
    QTest::keyClick(to, Qt::Key_Return);
  }
  static std::string Values(QWidget* window, int nColumn) {
    const auto* model = Find<RowView>(window, "rows")->model();
    std::string sValues;
    for (int n = 0; n < static_cast<const RowModel*>(model)->Places(); ++n) {
      sValues += model->index(n, nColumn).data().toString().toStdString() + " ";
    }
    return sValues;
  }
  static std::string Sql(QWidget* window) {
    return static_cast<SqlPane*>(Find<QWidget>(window, "sqlStatement"))->text().toStdString();
  }
  static std::string Told(QWidget* window) {
    return Find<QLabel>(window, "timeTold")->text().toStdString();
  }
  std::unique_ptr<controls::QueryResults> m_results;
};

TEST_F(query_time, a_range_is_put_around_the_query_and_the_statement_shows_it) {
  Run("SELECT Tag, Timestamp, Value FROM P..Data ORDER BY Value DESC; -- the high ones first");
  EXPECT_TRUE(HasBar(ResultsWindow()));
  EXPECT_EQ(Values(ResultsWindow(), 2), "4 3 2 1 ");
  Choose(ResultsWindow(), "2024-05-01 10:30", "2024-05-02 10:30");
  EXPECT_EQ(Values(ResultsWindow(), 2), "3 2 ");
  EXPECT_EQ(
      Sql(ResultsWindow()),
      "SELECT *\nFROM (\nSELECT Tag, Timestamp, Value FROM P..Data ORDER BY Value DESC -- the "
      "high ones first\n)\nWHERE \"Timestamp\" BETWEEN '2024-05-01 10:30' AND '2024-05-02 "
      "10:30'");
  EXPECT_EQ(
      m_results->SqlText(),
      "SELECT Tag, Timestamp, Value FROM P..Data ORDER BY Value DESC; -- the high ones first");
  EXPECT_FALSE(Find<QAction>(ResultsWindow(), "timeKeep")->isVisible())
      << "the text is its author's";
  Find<QAction>(ResultsWindow(), "timeForward")->trigger();
  EXPECT_EQ(Values(ResultsWindow(), 2), "4 ");
  Find<QAction>(ResultsWindow(), "timeClear")->trigger();
  EXPECT_EQ(Values(ResultsWindow(), 2), "4 3 2 1 ");
}

TEST_F(query_time, ranges_go_around_whatever_reads) {
  for (const char* sSql :
       {"SELECT Tag, Timestamp FROM P..Data WHERE Tag = 'a' OR Tag = 'b'",
        "WITH d AS (SELECT Timestamp, Tag FROM P..Data) SELECT Tag, Timestamp FROM d",
        "SELECT Tag, Timestamp FROM P..Data UNION ALL SELECT 'c', Timestamp FROM P..Data",
        "SELECT ';' AS Tag, MAX(Timestamp) AS Last FROM P..Data GROUP BY Tag",
        "SELECT DISTINCT Tag AS \"a;b\", Timestamp FROM P..Data /* ; */ ;"}) {
    Run(sSql);
    ASSERT_TRUE(HasBar(ResultsWindow())) << sSql;
    Choose(ResultsWindow(), "2024-05-02", "2024-05-03");
    EXPECT_EQ(Told(ResultsWindow()), "") << sSql;
    const auto sSeen = Values(ResultsWindow(), 1);
    EXPECT_NE(sSeen.find("2024-05-02"), Text::npos) << sSql << ": " << sSeen;
    EXPECT_EQ(sSeen.find("2024-05-01"), Text::npos) << sSql << ": " << sSeen;
  }
}

TEST_F(query_time, two_times_of_one_name_leave_no_doubt) {
  Run("SELECT a.Timestamp, b.Timestamp, b.Value FROM P..Data a JOIN P..Data b ON a.Value = b.Value "
      "ORDER BY b.Value");
  ASSERT_TRUE(HasBar(ResultsWindow()));
  Choose(ResultsWindow(), "2024-05-02", "2024-05-03");
  // Either both columns mean the same rows, or the bar says why there is no range.
  if (Told(ResultsWindow()).empty()) {
    EXPECT_EQ(Values(ResultsWindow(), 2), "3 4 ");
  } else {
    EXPECT_TRUE(Told(ResultsWindow()).starts_with("This query takes no range of time. "));
    EXPECT_EQ(Values(ResultsWindow(), 2), "1 2 3 4 ");
  }
}

TEST_F(query_time, the_range_goes_with_another_text_and_comes_back_with_the_rows) {
  const Text sSql = "SELECT Tag, Timestamp, Value FROM P..Data";
  Run(sSql);
  Choose(ResultsWindow(), "2024-05-02", "2024-05-03");
  const auto rs = m_results->Recordset();
  auto other = MakeResults("Time Zone = UTC;");
  other->SqlText(sSql);
  other->Recordset(rs);
  auto* window = static_cast<QWidget*>(other->Window());
  EXPECT_EQ(Find<QLineEdit>(window, "timeFrom")->text(), "2024-05-02");
  other->Execute();
  EXPECT_EQ(Values(window, 2), "3 4 ");
  other->SqlText(sSql + " WHERE Value < 4");
  other->Execute();
  EXPECT_EQ(Values(window, 2), "1 2 3 ");
  EXPECT_EQ(Find<QLineEdit>(window, "timeFrom")->text(), "");
}

TEST_F(query_time, results_without_a_time_have_no_bar) {
  Run("SELECT Tag, Value FROM P..Data");
  EXPECT_FALSE(HasBar(ResultsWindow()));
  m_results->SqlText("SELECT Timestamp FROM P..Data");
  m_results->Execute();
  EXPECT_TRUE(HasBar(ResultsWindow()));
  m_results->SqlText("SELECT COUNT(*) FROM P..Data");
  m_results->Execute();
  EXPECT_FALSE(HasBar(ResultsWindow()));
}

TEST_F(query_time, a_query_is_followed) {
  Run("SELECT Tag, Timestamp, Value FROM P..Data");
  Find<QCheckBox>(ResultsWindow(), "follow")->click();
  m_server->Run(
      "INSERT INTO P..Data (Tag, Timestamp, Value) VALUES ('c', '2024-05-03 00:00:00Z', 5)");
  StrikeNow(*Find<QTimer>(ResultsWindow(), "pause"));
  EXPECT_EQ(Values(ResultsWindow(), 2), "1 2 3 4 5 ");
  const auto* model = Find<RowView>(ResultsWindow(), "rows")->model();
  EXPECT_TRUE(model->headerData(4, Qt::Vertical, RowModel::kNewRole).toBool());
  EXPECT_FALSE(model->headerData(3, Qt::Vertical, RowModel::kNewRole).toBool());
}

TEST_F(query_time, units_of_a_query_over_one_table_are_those_of_its_catalog) {
  m_server->Run("INSERT INTO P..Tags (Tag, Unit) VALUES ('a', 'bar')");
  Run("SELECT Tag, Timestamp, Value FROM P..Data");
  Find<QToolButton>(ResultsWindow(), "asTrend")->click();
  auto* values =
      Find<QWidget>(ResultsWindow(), "trend")->findChild<QAbstractItemView*>("trendValues");
  ASSERT_TRUE(tests::Until([&] { return values->model()->rowCount() == 2; }));
  EXPECT_EQ(values->model()->index(0, 2).data().toString(), "bar");
}

TEST_F(query_time, rows_with_a_range_around_their_query_are_looked_at_only) {
  Run("SELECT Tag, Timestamp, Value FROM P..Data");
  EXPECT_EQ(Find<QLabel>(ResultsWindow(), "readOnly")->isVisibleTo(ResultsWindow()), false);
  Choose(ResultsWindow(), "2024-05-02", "2024-05-03");
  const auto whyNot = [this] {
    const auto* label = Find<QLabel>(ResultsWindow(), "readOnly");
    return label->isVisibleTo(ResultsWindow()) ? label->text().toStdString() : "";
  };
  EXPECT_EQ(whyNot(),
            "These rows can only be looked at: the range of time stands around the query; clear it "
            "to edit them.");
  EXPECT_FALSE(m_results->DeleteAllowed());
  // The server has more rows than these, and is asked for their order.
  m_results->MaxRows(1);
  m_results->Execute();
  Find<RowView>(ResultsWindow(), "rows")->SortBy(2, true);
  EXPECT_EQ(whyNot(),
            "These rows can only be looked at: the order and the range of time stand around the "
            "query; take both away to edit them.");
  Find<QAction>(ResultsWindow(), "timeClear")->trigger();
  EXPECT_EQ(whyNot(),
            "These rows can only be looked at: the order stands around the query; take it away to "
            "edit them.");
  const auto rs = m_results->Recordset();
  m_results = MakeResults("Time Zone = UTC;");
  m_results->SqlText("SELECT Tag, Timestamp, Value FROM P..Data");
  m_results->MaxRows(1);
  m_results->Recordset(rs);
  m_results->Execute();
  EXPECT_TRUE(whyNot().ends_with("take it away to edit them.")) << whyNot();
  Find<RowView>(ResultsWindow(), "rows")->Sort({});
  EXPECT_EQ(whyNot(), "");
  EXPECT_TRUE(m_results->DeleteAllowed());
}

TEST_F(query_time, rows_that_could_not_be_edited_anyhow_keep_their_own_reason) {
  Run("SELECT DISTINCT Tag, Timestamp FROM P..Data");
  const auto whyNot = [this] {
    return Find<QLabel>(ResultsWindow(), "readOnly")->text().toStdString();
  };
  const std::string sOwn = whyNot();
  EXPECT_TRUE(sOwn.ends_with("(DISTINCT); read the rows themselves.")) << sOwn;
  Choose(ResultsWindow(), "2024-05-02", "2024-05-03");
  EXPECT_EQ(whyNot(), sOwn);
  const auto rs = m_results->Recordset();
  m_results = MakeResults("Time Zone = UTC;");
  m_results->SqlText("SELECT DISTINCT Tag, Timestamp FROM P..Data");
  m_results->Recordset(rs);
  m_results->Execute();
  EXPECT_EQ(whyNot(), sOwn);
}

TEST_F(query_time, rows_over_a_connection_that_is_closed_say_why_they_are_looked_at_only) {
  Run("SELECT Tag, Timestamp, Value FROM P..Data");
  const auto rs = m_results->Recordset();
  m_states = std::make_shared<RowsStates>();  // nobody knows how these were being looked at
  m_results = MakeResults("Time Zone = UTC;");
  m_cn->Close();
  m_results->Recordset(rs);
  EXPECT_EQ(Find<QLabel>(ResultsWindow(), "readOnly")->text(),
            "These rows can only be looked at: the connection is closed; reconnect first.");
}

TEST_F(query_time, times_that_are_numbers_have_a_bar_and_a_trend_too) {
  Run("SELECT Tag, Timestamp AS At, Value FROM P..Data ORDER BY Value",
      "Time Zone = Europe/Madrid; Time as Double = True;");
  ASSERT_TRUE(HasBar(ResultsWindow()));
  EXPECT_EQ(Values(ResultsWindow(), 1).find('-'), std::string::npos) << "these are numbers";
  // By the clocks of the zone, like everything that is typed: two hours ahead of UTC.
  Choose(ResultsWindow(), "2024-05-02", "2024-05-02 12:30");
  EXPECT_EQ(Told(ResultsWindow()), "");
  EXPECT_EQ(Values(ResultsWindow(), 2), "3 ");
  Find<QAction>(ResultsWindow(), "timeClear")->trigger();
  auto* asTrend = Find<QToolButton>(ResultsWindow(), "asTrend");
  ASSERT_TRUE(asTrend->isVisibleTo(ResultsWindow()));
  asTrend->click();
  auto& view = *static_cast<trend::TrendView*>(Find<QWidget>(ResultsWindow(), "trend"));
  ASSERT_TRUE(tests::Until([&] { return !view.IsReading(); }));
  const auto first = std::chrono::duration_cast<std::chrono::microseconds>(
      platform::Timestamp(date::sys_days(date::year{2024} / 5 / 1) + std::chrono::hours(10))
          .time_since_epoch());
  EXPECT_NEAR(view.findChild<trend::TrendPlot*>()->AllTimes().lower,
              static_cast<double>(first.count()), 3.6e9);
  EXPECT_EQ(view.findChild<QAbstractItemView*>("trendValues")->model()->rowCount(), 2);
}

TEST_F(query_time, a_table_whose_times_are_numbers_comes_newest_first_and_has_its_range) {
  Open("Data", "Time Zone = UTC; Time as Double = True;");
  m_editor->ShowSqlStatements(true);
  ASSERT_TRUE(HasBar(Window()));
  EXPECT_EQ(Values(Window(), 2), "4 3 2 1 ");
  Choose(Window(), "2024-05-01", "2024-05-02");
  EXPECT_EQ(Values(Window(), 2), "2 1 ");
  EXPECT_EQ(Sql(Window()),
            "SELECT *\nFROM \"P\"..\"Data\"\nWHERE \"Timestamp\" BETWEEN '2024-05-01' AND "
            "'2024-05-02'\nORDER BY \"Timestamp\" DESC");
}

TEST_F(query_time, a_table_with_a_time_of_another_name_keeps_its_bar_when_times_are_numbers) {
  m_server->Run("CREATE TABLE P..Log (Id INTEGER PRIMARY KEY, Happened TIMESTAMP, Level DOUBLE)");
  m_server->Run(
      "INSERT INTO P..Log VALUES (1, '2024-05-01 06:00:00Z', 1), (2, '2024-05-02 06:00:00Z', 2)");
  Open("Log", "Time Zone = UTC; Time as Double = True;");
  ASSERT_TRUE(HasBar(Window()));
  Choose(Window(), "2024-05-02", "");
  EXPECT_EQ(Values(Window(), 2), "2 ");
  m_editor->Requery();
  EXPECT_TRUE(HasBar(Window()));
  EXPECT_EQ(Values(Window(), 2), "2 ");
}

}  // namespace
}  // namespace orvane::controls
