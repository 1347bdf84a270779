// Finding, going to a row and filtering, by the keys.
#include "controls/view/grid_seeking.h"

#include <gtest/gtest.h>

#include <QInputDialog>
#include <QMenu>
#include <QPushButton>
#include <limits>

#include "controls/grid/query_results.h"
#include "controls/view/giving_label.h"
#include "tests/controls/grid_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

class grid_seeking : public GridFixture {
 protected:
  grid_seeking() : m_results(Services()) {
    m_results.Recordset(Plant(500));
    Show(m_results);
    View().activateWindow();
    View().setFocus();
  }
  RowView& View() { return *ViewOf(m_results); }
  template <class Widget>
  Widget* Part(const char* sName) {
    return WindowOf(m_results)->findChild<Widget*>(sName);
  }
  QLineEdit* FilterBox(int nColumn) {
    return &static_cast<FilterRow*>(Part<QWidget>("filterRow"))->Box(nColumn);
  }
  void Type(QLineEdit* box, const char* sText) {
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, sText);
    QTest::keyClick(box, Qt::Key_Return);
  }
  /// A key that begins a search, waited for until that is over.
  void Seek(QWidget* target, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(target, key, modifiers);
    ASSERT_TRUE(tests::Until(
        [&] { return Label(m_results, "findOutcome") != "Looking\u2026 Escape ends it"; }));
  }
  std::pair<int, int> Cell() {
    return {View().currentIndex().row(), View().currentIndex().column()};
  }
  controls::QueryResults m_results;
};

TEST_F(grid_seeking, finds_forwards_backwards_and_around_the_end) {
  QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier);
  auto* text = Part<QLineEdit>("findText");
  ASSERT_TRUE(text->hasFocus());
  EXPECT_EQ(Label(m_results, "findOutcome"), "Looks through the 500 rows here");
  QTest::keyClicks(text, "ROW 49");
  Seek(text, Qt::Key_Return);
  EXPECT_EQ(Cell(), std::pair(49, 1)) << "without regard to case";
  Seek(text, Qt::Key_Return);
  EXPECT_EQ(Cell(), std::pair(490, 1));
  Seek(text, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(Cell(), std::pair(49, 1));
  Seek(text, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(Cell(), std::pair(499, 1));
  EXPECT_EQ(Label(m_results, "findOutcome"), "Went on from the other end");
  QTest::keyClick(text, Qt::Key_Escape);
  EXPECT_FALSE(Part<QWidget>("findBar")->isVisible());
  EXPECT_TRUE(View().hasFocus());
  Seek(&View(), Qt::Key_F3);
  EXPECT_EQ(Cell(), std::pair(49, 1));
  Seek(&View(), Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(Cell(), std::pair(499, 1));
}

TEST_F(grid_seeking, enter_presses_the_button_of_the_find_bar_that_has_the_keys) {
  QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(Part<QLineEdit>("findText"), "row 49");
  auto* previous = Part<QToolButton>("findPrevious");
  previous->setFocus();
  Seek(previous, Qt::Key_Return);
  EXPECT_EQ(Cell(), std::pair(499, 1)) << "backwards";
  auto* close = Part<QToolButton>("findClose");
  close->setFocus();
  QTest::keyClick(close, Qt::Key_Enter);
  EXPECT_FALSE(Part<QWidget>("findBar")->isVisible());
}

TEST_F(grid_seeking, says_where_a_text_was_not_found) {
  QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier);
  auto* text = Part<QLineEdit>("findText");
  QTest::keyClicks(text, "nowhere");
  Seek(text, Qt::Key_Return);
  EXPECT_EQ(Label(m_results, "findOutcome"), "Not found in the 500 rows here");
  EXPECT_EQ(Cell(), std::pair(0, 0));
}

TEST_F(grid_seeking, a_search_through_many_rows_can_be_ended) {
  m_results.Recordset(Plant(100'000'000));
  QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier);
  auto* text = Part<QLineEdit>("findText");
  QTest::keyClicks(text, "nowhere");
  QTest::keyClick(text, Qt::Key_Return);
  EXPECT_EQ(Label(m_results, "findOutcome"), "Looking\u2026 Escape ends it");
  QTest::keyClick(text, Qt::Key_Escape);
  EXPECT_EQ(Label(m_results, "findOutcome"), "Ended before all rows were looked at");
  EXPECT_TRUE(Part<QWidget>("findBar")->isVisible());
}

TEST_F(grid_seeking, a_search_from_the_rows_is_ended_from_the_rows) {
  m_results.Recordset(Plant(100'000'000));
  QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(Part<QLineEdit>("findText"), "nowhere");
  QTest::keyClick(Part<QLineEdit>("findText"), Qt::Key_Escape);
  ASSERT_FALSE(Part<QWidget>("findBar")->isVisible());
  QTest::keyClick(&View(), Qt::Key_F3);
  EXPECT_TRUE(Part<QWidget>("findBar")->isVisible()) << "where it is told that it goes on";
  EXPECT_EQ(Label(m_results, "findOutcome"), "Looking\u2026 Escape ends it");
  QTest::keyClick(&View(), Qt::Key_Escape);
  EXPECT_EQ(Label(m_results, "findOutcome"), "Ended before all rows were looked at");
  EXPECT_EQ(Cell(), std::pair(0, 0));
}

TEST_F(grid_seeking, says_that_it_does_not_look_through_what_the_row_limit_left_out) {
  const auto rs = Plant(5);
  rs->Truncated(true);
  m_results.Recordset(rs);
  QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(Label(m_results, "findOutcome"), "Only the 5 rows here; the server has more");
}

TEST_F(grid_seeking, what_the_bar_has_no_room_for_ends_in_an_ellipsis) {
  const auto rs = Plant(5);
  rs->Truncated(true);
  m_results.Recordset(rs);
  WindowOf(m_results)->resize(400, 300);
  QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier);
  QCoreApplication::processEvents();
  const auto& outcome = *static_cast<GivingLabel*>(Part<QLabel>("findOutcome"));
  const QString sSeen = outcome.Seen();
  EXPECT_TRUE(sSeen.endsWith(QChar(0x2026))) << sSeen.toStdString();
  EXPECT_LE(outcome.fontMetrics().horizontalAdvance(sSeen), outcome.width());
  EXPECT_EQ(outcome.toolTip(), "Only the 5 rows here; the server has more");
  WindowOf(m_results)->resize(2'000, 300);
  QCoreApplication::processEvents();
  EXPECT_EQ(outcome.Seen(), outcome.toolTip());
}

TEST_F(grid_seeking, a_long_sort_is_told_and_stopped_by_the_strip) {
  m_results.Recordset(Plant(300'000));
  View().GoTo(5, 1);
  auto* stop = Part<QPushButton>("stopFetch");
  EXPECT_FALSE(stop->isVisible());
  QTest::keyClick(&View(), Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Label(m_results, "arrangement"), "Sorting\u2026");
  ASSERT_TRUE(stop->isVisible());
  QTest::mouseClick(stop, Qt::LeftButton);
  EXPECT_FALSE(stop->isVisible());
  EXPECT_EQ(Label(m_results, "arrangement"), "");
  EXPECT_EQ(Label(m_results, "notice"), "Stopped: the rows stand as they did before.");
  EXPECT_EQ(CellOf(m_results, 5, 1), "row 5");
  EXPECT_EQ(Cell(), std::pair(5, 1));
}

TEST_F(grid_seeking, a_long_filter_is_stopped_from_its_box) {
  m_results.Recordset(Plant(300'000));
  QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  Type(FilterBox(1), "row 7");
  EXPECT_EQ(Label(m_results, "arrangement"), "Filtering\u2026");
  QTest::keyClick(FilterBox(1), Qt::Key_Escape);
  EXPECT_TRUE(FilterBox(1)->hasFocus()) << "the box is left by the next one";
  EXPECT_EQ(FilterBox(1)->text(), "row 7") << "to be mended, or entered again";
  EXPECT_EQ(RowsOf(m_results), 300'000);
  EXPECT_EQ(Label(m_results, "arrangement"), "");
  // The thread of a filter that was stopped has ended; this is what it may have left.
  for (int n = 0; n < 10; ++n) QCoreApplication::processEvents();
  EXPECT_EQ(RowsOf(m_results), 300'000);
}

TEST_F(grid_seeking, goes_to_a_row_by_its_number) {
  View().GoTo(3, 2);
  QTest::keyClick(&View(), Qt::Key_G, Qt::ControlModifier);
  auto* dialog = View().findChild<QInputDialog*>();
  ASSERT_NE(dialog, nullptr);
  dialog->setIntValue(321);
  dialog->accept();
  EXPECT_EQ(Cell(), std::pair(320, 2));
}

TEST_F(grid_seeking, filters_by_what_is_typed_beneath_the_names) {
  QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  ASSERT_TRUE(Part<QWidget>("filterRow")->isVisible());
  EXPECT_EQ(View().Numbers().YOf(0), View().HeadHeight());
  Type(FilterBox(0), ">= 490");
  EXPECT_EQ(RowsOf(m_results), 10);
  EXPECT_EQ(Label(m_results, "arrangement"), "Filtered here: 10 rows seen");
  Type(FilterBox(1), "9");
  EXPECT_EQ(CellOf(m_results, 0, 1), "row 490") << "both conditions";
  Type(FilterBox(2), "null");
  EXPECT_EQ(RowsOf(m_results), 3);
  Type(FilterBox(0), "> many");
  EXPECT_EQ(RowsOf(m_results), 32) << "what says nothing of a number is no condition";
  EXPECT_NE(Label(m_results, "notice").find("Number: "), std::string::npos);
  Type(FilterBox(0), "1..2");
  EXPECT_EQ(Label(m_results, "notice"), "");
  EXPECT_EQ(RowsOf(m_results), 0);
  EXPECT_EQ(Label(m_results, "emptySentence"), "The filter leaves none of the 500 rows here.");
  QTest::keyClick(FilterBox(0), Qt::Key_Escape);
  EXPECT_TRUE(View().hasFocus());
}

TEST_F(grid_seeking, filters_by_the_value_of_the_current_cell) {
  View().GoTo(6, 2);  // null in every third row
  QTest::keyClick(&View(), Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(RowsOf(m_results), 167);
  EXPECT_EQ(FilterBox(2)->text(), "null");
  View().GoTo(0, 3);
  QTest::keyClick(&View(), Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(RowsOf(m_results), 1);
}

TEST_F(grid_seeking, the_menu_has_all_of_it) {
  const QPoint point = View().visualRect(View().currentIndex()).center();
  QContextMenuEvent event(QContextMenuEvent::Mouse, point, View().viewport()->mapToGlobal(point));
  QCoreApplication::sendEvent(View().viewport(), &event);
  auto* menu = View().findChild<QMenu*>();
  ASSERT_NE(menu, nullptr);
  const auto labelsOf = [](const QMenu& shown) {
    QStringList labels;
    for (const QAction* action : shown.actions()) {
      labels << action->text().section(u'\t', 0, 0).remove(u'&');
    }
    return labels;
  };
  const QStringList labels = labelsOf(*menu);
  for (const char* sLabel :
       {"Sort", "Filter by This Value", "Filter Row", "Find\u2026", "Go to Row\u2026"}) {
    EXPECT_EQ(labels.count(sLabel), 1) << sLabel;
  }
  EXPECT_EQ(labelsOf(*menu->actions().at(labels.indexOf("Sort"))->menu()),
            (QStringList{"Sort Ascending", "Sort Descending", "Then Ascending", "Then Descending",
                         "Order as Fetched"}));
  menu->close();
}

TEST(column_filter, reads_what_is_typed) {
  using platform::DataType;
  const CellFormat format;
  const auto holds = [&](const char* sText, DataType type, const platform::Value& vtValue) {
    return ColumnFilter::Read(sText, 0, type, format).Holds(vtValue, format);
  };
  using platform::Value;
  EXPECT_TRUE(holds("Pump", DataType::WChar, Value("the pump house")));
  EXPECT_FALSE(holds("pump", DataType::WChar, Value()));
  EXPECT_TRUE(holds("= pump", DataType::WChar, Value("pump")));
  EXPECT_FALSE(holds("= pump", DataType::WChar, Value("Pump")));
  EXPECT_TRUE(holds("<> 3", DataType::BigInt, Value(4)));
  EXPECT_FALSE(holds("<> 3", DataType::BigInt, Value(3.0)));
  EXPECT_FALSE(holds("<> 3", DataType::BigInt, Value()));
  EXPECT_TRUE(holds("< 3", DataType::Double, Value(2.9)));
  EXPECT_FALSE(holds("< 3", DataType::Double, Value(3.0)));
  EXPECT_TRUE(holds("<= 3", DataType::Double, Value(std::int64_t{3})));
  EXPECT_FALSE(holds("< 3", DataType::Double, Value("2")));
  EXPECT_TRUE(holds("1..3", DataType::Double, Value(1.0)));
  EXPECT_TRUE(holds("1..3", DataType::Double, Value(3.0)));
  EXPECT_FALSE(holds("1..3", DataType::Double, Value(3.1)));
  EXPECT_TRUE(holds("NULL", DataType::WChar, Value()));
  EXPECT_FALSE(holds("null", DataType::WChar, Value("null")));
  EXPECT_TRUE(holds("= null", DataType::WChar, Value("null")));
  EXPECT_TRUE(holds("not null", DataType::WChar, Value("")));
  EXPECT_TRUE(holds("= \"\"", DataType::WChar, Value("")));
  EXPECT_FALSE(holds("= \"\"", DataType::WChar, Value()));
  EXPECT_FALSE(holds("= \"\"", DataType::WChar, Value("x")));
  EXPECT_TRUE(holds("\"\"", DataType::WChar, Value("")));
  EXPECT_FALSE(holds("\"\"", DataType::WChar, Value("x")));
  EXPECT_TRUE(holds("<> \"\"", DataType::WChar, Value("x")));
  EXPECT_FALSE(holds("<> \"\"", DataType::WChar, Value("")));
  EXPECT_TRUE(holds("= \" a \"\"b\"\" \"", DataType::WChar, Value(" a \"b\" ")));
  EXPECT_THROW(holds("> many", DataType::BigInt, Value(1)), platform::Failure);
}

TEST(column_filter, what_is_no_number_is_like_none_of_them) {
  using platform::DataType;
  using platform::Value;
  const CellFormat format;
  const Value vtNone(std::numeric_limits<double>::quiet_NaN());
  for (const char* sText : {"= 5", "< 5", "<= 5", "> 5", ">= 5", "1..9", "null"}) {
    EXPECT_FALSE(ColumnFilter::Read(sText, 0, DataType::Double, format).Holds(vtNone, format))
        << sText;
  }
  for (const char* sText : {"<> 5", "not null"}) {
    EXPECT_TRUE(ColumnFilter::Read(sText, 0, DataType::Double, format).Holds(vtNone, format))
        << sText;
  }
  const auto same = ColumnFilter::Equal(0, vtNone, format);
  EXPECT_TRUE(same.Holds(vtNone, format));
  EXPECT_FALSE(same.Holds(Value(5.0), format));
  EXPECT_FALSE(same.Holds(Value(), format));
  EXPECT_LT(CompareValues(vtNone, Value(5.0)), 0) << "as it is sorted";
  EXPECT_EQ(CompareValues(vtNone, Value()), 0);
}

TEST(column_filter, of_a_value_is_told_as_it_is_typed) {
  using platform::DataType;
  using platform::Value;
  const CellFormat format{zones::TimeZone("Europe/Berlin")};
  const platform::Timestamp noon(std::chrono::seconds(1'700'000'000));
  const auto told = [&](const Value& vtValue, DataType type) {
    const auto filter = ColumnFilter::Equal(0, vtValue, format);
    const auto read = ColumnFilter::Read(filter.Text(), 0, type, format);
    EXPECT_TRUE(read.Holds(vtValue, format)) << filter.Text().toStdString();
    return filter.Text().toStdString();
  };
  EXPECT_EQ(told(noon, DataType::DBTimeStamp), "=2023-11-14 23:13:20") << "by the clocks shown";
  EXPECT_EQ(told(Value(""), DataType::WChar), "=\"\"");
  EXPECT_EQ(told(Value(" a"), DataType::WChar), "=\" a\"");
  EXPECT_EQ(told(Value("\"a\""), DataType::WChar), "=\"\"\"a\"\"\"");
  EXPECT_EQ(told(Value("a"), DataType::WChar), "=a");
  EXPECT_EQ(told(Value(), DataType::WChar), "null");
}

TEST_F(grid_seeking, says_that_there_is_no_such_row) {
  const auto goTo = [this](int nNumber) {
    QTest::keyClick(&View(), Qt::Key_G, Qt::ControlModifier);
    auto* dialog = View().findChild<QInputDialog*>();
    dialog->setIntValue(nNumber);
    dialog->accept();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  };
  goTo(1'000'000);
  EXPECT_EQ(Cell(), std::pair(499, 0));
  EXPECT_EQ(Label(m_results, "notice"),
            "There is no row 1,000,000: this is the last one of 500 rows.");
  goTo(500);
  EXPECT_EQ(Label(m_results, "notice"),
            "There is no row 1,000,000: this is the last one of 500 rows.")
      << "nothing was moved";
  goTo(7);
  EXPECT_EQ(Cell(), std::pair(6, 0));
}

TEST_F(grid_seeking, a_search_that_other_rows_end_says_so) {
  m_results.Recordset(Plant(1'000'000));
  QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier);
  auto* text = Part<QLineEdit>("findText");
  QTest::keyClicks(text, "nowhere");
  QTest::keyClick(text, Qt::Key_Return);
  ASSERT_EQ(Label(m_results, "findOutcome"), "Looking\u2026 Escape ends it");
  View().SortBy(0, false);
  m_results.Recordset(Plant(5));
  EXPECT_EQ(Label(m_results, "findOutcome"), "Ended: the rows have changed; look again");
}

}  // namespace
}  // namespace orvane::controls
