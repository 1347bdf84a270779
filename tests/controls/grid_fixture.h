// What tests of both grid controls stand on: a server that answers what it is told to, and a look
// into a control's window.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLabel>
#include <QTest>
#include <QTextEdit>
#include <QWidget>

#include "controls/grid/grid_core.h"
#include "controls/view/header_view.h"
#include "controls/view/row_numbers.h"
#include "controls/view/row_view.h"
#include "controls/view/sql_pane.h"
#include "platform/grids/grids.h"
#include "tests/controls/fake_data.h"

namespace orvane::controls {

class GridFixture : public testing::Test {
 protected:
  GridServices Services() {
    return {m_objects, m_states, m_life, [this] { return m_now; }, m_failures};
  }

  static QWidget* WindowOf(platform::Control& control) {
    return static_cast<QWidget*>(control.Window());
  }
  static void Show(platform::Control& control) {
    WindowOf(control)->resize(700, 500);
    WindowOf(control)->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(WindowOf(control)));
  }
  static RowView* ViewOf(platform::Control& control) {
    return WindowOf(control)->findChild<RowView*>("rows");
  }
  static int RowsOf(platform::Control& control) { return ViewOf(control)->model()->rowCount(); }
  static std::string CellOf(platform::Control& control, int nRow, int nColumn) {
    return ViewOf(control)->model()->index(nRow, nColumn).data().toString().toStdString();
  }
  /// The text of a label of the window; empty when it is hidden.
  static std::string Label(platform::Control& control, const char* sName) {
    if (const auto* text = WindowOf(control)->findChild<QTextEdit*>(sName)) {
      return text->isVisibleTo(WindowOf(control)) ? text->toPlainText().toStdString() : "";
    }
    const auto* label = WindowOf(control)->findChild<QLabel*>(sName);
    return label->isVisibleTo(WindowOf(control)) ? label->text().toStdString() : "";
  }
  static std::string SqlOf(platform::Control& control) {
    return WindowOf(control)->findChild<QWidget*>("sqlStatement")->isVisibleTo(WindowOf(control))
               ? PaneOf(control).text().toStdString()
               : "(hidden)";
  }
  static SqlPane& PaneOf(platform::Control& control) {
    return *static_cast<SqlPane*>(WindowOf(control)->findChild<QWidget*>("sqlStatement"));
  }
  static void ClickColumnName(platform::Control& control, int nColumn) {
    const auto& names = ViewOf(control)->Names();
    QTest::mouseClick(names.viewport(), Qt::LeftButton, {},
                      {names.sectionViewportPosition(nColumn) + 15, names.height() / 2});
  }
  static void ClickRowNumber(platform::Control& control, int nRow) {
    auto& numbers = ViewOf(control)->Numbers();
    QTest::mouseClick(&numbers, Qt::LeftButton, {}, {8, numbers.YOf(nRow) + 5});
  }
  static void ClickCell(platform::Control& control, int nRow, int nColumn) {
    auto* view = ViewOf(control);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                      view->visualRect(view->model()->index(nRow, nColumn)).center());
  }
  [[noreturn]] static void Refuse() {
    throw platform::Failure(platform::failure::kSqlError, "There is no such column; correct it.",
                            "engine", 1, "SELECT");
  }

  /// What the clock on the wall of this machine shows.
  void Now(zones::LocalTime local) { m_now = zones::TimeZone().ToTimestamp(local); }

  FakeServer m_server;
  platform::Timestamp m_now = zones::TimeZone().ToTimestamp(
      date::local_days(date::year{2026} / 11 / 21) + std::chrono::hours(14) +
      std::chrono::minutes(2) + std::chrono::seconds(11));
  std::shared_ptr<FakeObjects> m_objects = std::make_shared<FakeObjects>(m_server);
  std::shared_ptr<RowsStates> m_states = std::make_shared<RowsStates>();
  std::shared_ptr<FakeFailures> m_failures = std::make_shared<FakeFailures>();
  std::shared_ptr<void> m_life = std::make_shared<int>();
  std::shared_ptr<FakeConnection> m_connection =
      std::make_shared<FakeConnection>(platform::Value("UTC"));
};

/// Counts the events of a grid.
struct EventCounts {
  explicit EventCounts(platform::Grid& grid) : subscriptions{} {
    subscriptions.push_back(grid.OnRowColChange([this] { ++nRowColChange; }));
    subscriptions.push_back(grid.OnSelChange([this] { ++nSelChange; }));
    subscriptions.push_back(grid.OnInsert([this] { ++nInsert; }));
    subscriptions.push_back(grid.OnDelete([this] { ++nDelete; }));
    if (auto* editor = dynamic_cast<platform::TableEditor*>(&grid)) {
      subscriptions.push_back(editor->OnHeadClick([this] { ++nHeadClick; }));
    }
  }
  /// RowColChange, SelChange and HeadClick since the last call; no row was inserted or deleted.
  std::vector<int> Take() {
    EXPECT_EQ(nInsert, 0);
    EXPECT_EQ(nDelete, 0);
    return {std::exchange(nRowColChange, 0), std::exchange(nSelChange, 0),
            std::exchange(nHeadClick, 0)};
  }
  int nRowColChange = 0;
  int nSelChange = 0;
  int nInsert = 0;
  int nDelete = 0;
  int nHeadClick = 0;
  std::vector<platform::Subscription> subscriptions;
};

}  // namespace orvane::controls
