// A query that changes data: it waits for its button.
#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>

#include "tests/controls/query_results_fixture.h"

namespace orvane::controls {
namespace {

class changing_query : public QueryResultsFixture {
 protected:
  changing_query() {
    m_server.answer =
        std::make_shared<FakeRecordset>(0, [](auto, auto) { return platform::Value(); });
    m_server.lRecordsAffected = 3;
    m_server.whileRunning = [this] {
      if (m_server.bReadOnly) RefuseToChange();
      ++m_nChanges;
    };
  }
  [[noreturn]] static void RefuseToChange() {
    throw platform::Failure(platform::failure::kWouldChange, "It changes data.");
  }
  static QPushButton* ButtonOf(platform::Control& control) {
    return WindowOf(control)->findChild<QPushButton*>("emptyButton");
  }
  static bool Asks(platform::Control& control) {
    return ButtonOf(control)->isVisibleTo(WindowOf(control));
  }
  int m_nChanges = 0;
};

TEST_F(changing_query, is_not_run_before_its_button_is_pressed) {
  const auto results = Bound();
  results->Execute();
  EXPECT_EQ(m_nChanges, 0);
  EXPECT_EQ(Label(*results, "emptySentence"), "This query changes data. It has not been run.");
  EXPECT_EQ(Label(*results, "rowCount"), "Not run");
  EXPECT_EQ(results->Recordset(), nullptr) << "so that the next visit asks again";
  ASSERT_TRUE(Asks(*results));
  EXPECT_EQ(ButtonOf(*results)->text(), "&Run Query");
  ButtonOf(*results)->click();
  EXPECT_EQ(m_nChanges, 1);
  EXPECT_FALSE(m_server.bReadOnly);
  EXPECT_EQ(m_server.sCommandText, "SELECT * FROM Pumps");
  EXPECT_EQ(m_server.lMaxRecords, 7);
  EXPECT_EQ(m_server.lTimeout, 8);
  EXPECT_EQ(Label(*results, "emptySentence"), "The statement gives no rows. It changed 3 rows.");
  EXPECT_EQ(results->Recordset(), m_server.answer);
  EXPECT_FALSE(Asks(*results));
}

TEST_F(changing_query, is_run_once_for_a_press) {
  const auto results = Bound();
  for (int nPresses = 1; nPresses <= 3; ++nPresses) {
    results->Execute();
    ASSERT_TRUE(Asks(*results));
    ButtonOf(*results)->click();
    ButtonOf(*results)->click();
    EXPECT_EQ(m_nChanges, nPresses);
  }
  results->Execute();
  results->SqlText("DELETE FROM Pumps");
  results->QueryName("Cold pumps");
  results->Execute();
  EXPECT_EQ(m_nChanges, 3) << "neither a new name nor a new text runs it";
}

TEST_F(changing_query, is_run_by_enter_on_its_button) {
  const auto results = Bound();
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    results->Execute();
    m_nChanges = 0;
    QTest::keyClick(ButtonOf(*results), key);
    EXPECT_EQ(m_nChanges, 1);
  }
  results->Execute();
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
  QCoreApplication::sendEvent(ButtonOf(*results), &held);
  EXPECT_EQ(m_nChanges, 1) << "a key that is held was pressed for something else";
}

TEST_F(changing_query, that_gives_no_rows_says_nothing_of_looking_at_them) {
  const auto results = Bound();
  results->Execute();
  ButtonOf(*results)->click();
  EXPECT_EQ(Label(*results, "readOnly"), "");
}

TEST_F(changing_query, cannot_be_run_when_something_else_is_shown) {
  const auto results = Bound();
  results->Execute();
  results->Recordset(Plant(5));
  EXPECT_FALSE(Asks(*results));
  ButtonOf(*results)->click();
  results->Recordset(nullptr);
  ButtonOf(*results)->click();
  EXPECT_EQ(m_nChanges, 0);
}

TEST_F(changing_query, that_fails_when_it_is_run_says_why_in_its_place) {
  const auto results = Bound();
  results->Execute();
  m_server.whileRunning = [] { Refuse(); };
  ButtonOf(*results)->click();
  EXPECT_EQ(Label(*results, "emptySentence"), "There is no such column; correct it.");
  EXPECT_FALSE(Asks(*results));
  // Refused although it may change: asking again would lead nowhere.
  m_server.whileRunning = [] { RefuseToChange(); };
  results->Execute();
  ASSERT_TRUE(Asks(*results));
  ButtonOf(*results)->click();
  EXPECT_EQ(Label(*results, "emptySentence"), "It changes data.");
  EXPECT_FALSE(Asks(*results));
}

TEST_F(changing_query, that_fails_behind_its_button_is_in_the_log) {
  const auto results = Bound();
  results->Execute();
  EXPECT_TRUE(m_failures->noted.empty());
  m_server.whileRunning = [] { Refuse(); };
  ButtonOf(*results)->click();
  ASSERT_EQ(m_failures->noted.size(), 1U);
  EXPECT_EQ(m_failures->noted.front().Number(), platform::failure::kSqlError);
  EXPECT_EQ(m_failures->noted.front().SqlText(), "SELECT");
}

TEST_F(changing_query, whose_grid_goes_while_it_runs_touches_nothing) {
  auto results = Bound();
  results->Execute();
  const QPointer<QWidget> window(WindowOf(*results));
  auto* button = ButtonOf(*results);
  m_server.whileRunning = [&] {
    results.reset();
    EXPECT_FALSE(window.isNull()) << "its button is still being pressed";
  };
  const auto nHeld = m_server.answer.use_count();
  button->click();
  EXPECT_EQ(m_server.answer.use_count(), nHeld);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(window.isNull());
}

TEST_F(changing_query, whose_grid_goes_while_it_fails_touches_nothing) {
  auto results = Bound();
  results->Execute();
  auto* button = ButtonOf(*results);
  m_server.whileRunning = [&] {
    results.reset();
    Refuse();
  };
  button->click();
  EXPECT_EQ(m_failures->noted.size(), 1U);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(changing_query, whose_connection_is_gone_says_so_when_it_is_run) {
  const auto results = Bound();
  results->Execute();
  results->Connection(nullptr);
  ButtonOf(*results)->click();
  EXPECT_EQ(m_nChanges, 0);
  EXPECT_EQ(Label(*results, "emptySentence"),
            "The grid has no connection to a server; connect the server first.");
}

TEST_F(changing_query, takes_the_focus_for_its_button_only_when_asked_to) {
  const auto results = Bound();
  Show(*results);
  ViewOf(*results)->setFocus();
  results->Execute();
  EXPECT_TRUE(ViewOf(*results)->hasFocus());
  QTest::keyClick(ViewOf(*results), Qt::Key_Return);
  QTest::keyClick(ViewOf(*results), Qt::Key_Space);
  EXPECT_EQ(m_nChanges, 0);
  QTest::keyClick(ViewOf(*results), Qt::Key_Tab);
  ASSERT_TRUE(ButtonOf(*results)->hasFocus());
  QTest::keyClick(ButtonOf(*results), Qt::Key_Space);
  EXPECT_EQ(m_nChanges, 1);
  EXPECT_TRUE(ViewOf(*results)->hasFocus());
}

TEST_F(changing_query, may_be_dropped_by_whoever_hears_of_its_rows) {
  auto results = Bound();
  results->Recordset(Plant(5));
  results->Execute();
  const QPointer<QWidget> window = WindowOf(*results);
  const QPointer<QPushButton> button = ButtonOf(*results);
  m_server.answer = Plant(5);
  const auto heard = results->OnRowColChange([&] { results.reset(); });
  button->click();
  EXPECT_EQ(results, nullptr);
  EXPECT_EQ(m_nChanges, 1);
  if (button) button->click();
  EXPECT_EQ(m_nChanges, 1);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(window.isNull());
}

}  // namespace
}  // namespace orvane::controls
