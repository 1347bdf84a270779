#include "controls/grid/table_time.h"

#include <QAction>
#include <QLineEdit>
#include <QToolButton>

#include "controls/grid/grid_trend.h"
#include "controls/grid/query_results.h"
#include "tests/controls/table_time_fixture.h"
#include "tests/fakes/until.h"
#include "trend/trend_plot.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::Text;
using platform::Timestamp;

const Text kNewestFirst = "\nORDER BY \"Timestamp\" DESC";

class table_time : public TableTimeFixture {};

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
  m_query->FilterIsDefault(true);
  const Text sState = m_query->WriteState();
  m_editor->Requery();
  EXPECT_EQ(Sent(), "\nWHERE Timestamp BETWEEN '*-1h' AND '*'" + kNewestFirst);
  Pick("Last 10 minutes");
  EXPECT_EQ(Sent(), "\nWHERE \"Timestamp\" BETWEEN '*-10m' AND '*'" + kNewestFirst);
  EXPECT_EQ(m_query->WriteState(), sState);
  Find<QAction>("timeClear")->trigger();
  EXPECT_EQ(Sent(), "\nWHERE Timestamp BETWEEN '*-1h' AND '*'" + kNewestFirst);
}

TEST_F(table_time, a_range_narrows_the_user_s_own_range) {
  m_query->FilterCondition("Timestamp >= '2026-01-01'");
  m_editor->Requery();
  EXPECT_EQ(Find<QLineEdit>("timeFrom")->text(), "") << "it is not the bar's to move";
  Pick("Last 10 minutes");
  EXPECT_EQ(Sent(),
            "\nWHERE (\nTimestamp >= '2026-01-01'\n) AND (\n\"Timestamp\" BETWEEN '*-10m' AND "
            "'*'\n)" +
                kNewestFirst);
}

TEST_F(table_time, a_range_that_was_kept_gives_way_to_the_next_one) {
  m_query->FilterCondition("Value > 1");
  m_editor->Requery();
  Pick("Last hour");
  Find<QAction>("timeKeep")->trigger();
  EXPECT_EQ(Find<QLineEdit>("timeFrom")->text(), "*-1h");
  // As a document that is opened again has it.
  const auto restored = std::make_shared<controls::TableQuery>();
  restored->ReadState(m_query->WriteState());
  m_query = restored;
  m_editor = Bound();
  m_editor->Requery();
  EXPECT_EQ(Find<QLineEdit>("timeFrom")->text(), "*-1h");
  Pick("Last 7 days");
  EXPECT_EQ(Sent(), "\nWHERE (\nValue > 1\n) AND (\n\"Timestamp\" BETWEEN '*-7d' AND '*'\n)" +
                        kNewestFirst);
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
  m_query->FilterIsDefault(true);
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

TEST_F(table_time, a_server_that_does_not_tell_the_columns_leaves_the_range_in_force) {
  m_editor->Requery();
  Pick("Last hour");
  const Text sSent = Sent();
  ASSERT_NE(sSent.find("'*-1h'"), Text::npos);
  m_cn->whileAsked = [] { Refuse(); };
  m_editor->Requery();
  EXPECT_EQ(Sent(), sSent);
  m_cn->whileAsked = [] { throw std::runtime_error("no memory"); };
  m_editor->Requery();
  EXPECT_EQ(Sent(), sSent);
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

TEST_F(table_time, the_trend_s_times_become_the_range_and_its_units_are_asked_for) {
  Show(*m_editor);
  m_editor->Requery();
  QTest::mouseClick(Find<QToolButton>("asTrend"), Qt::LeftButton);
  auto& view = *static_cast<trend::TrendView*>(Find<QWidget>("trend"));
  ASSERT_TRUE(tests::Until([&] { return !view.IsReading(); }));
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
