#include "controls/view/row_view.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>

#include "tests/controls/row_view_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

TEST(row_view, copies_the_selection_with_the_keys) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickCell(view, 1, 0);
  ClickCell(view, 2, 1, Qt::ShiftModifier);
  QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "1\trow 1\n2\trow 2\n");
  QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "Number\tName\n1\trow 1\n2\trow 2\n");
}

TEST(row_view, more_rows_than_can_be_copied_leave_the_clipboard_alone_and_are_not_read) {
  QGuiApplication::clipboard()->setText("before");
  RowView view;
  QString sWhyNot;
  view.Copier().OnCopied([&](const QString& sSentence) { sWhyNot = sSentence; });
  const auto rs = Plant(1'000'000);
  view.ShowRows(rs, kUtcZone);
  view.selectAll();
  rs->TakeCellsAsked();
  view.Copy(false);
  EXPECT_EQ(rs->TakeCellsAsked(), 0U);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "before");
  EXPECT_EQ(sWhyNot.toStdString(),
            "Not copied: 1,000,000 rows are selected, and at most 100,000 rows can be copied at "
            "once. Select fewer, or export them into a file (Ctrl+Shift+E).");
  view.SelectRow(7);
  view.Copy(false);
  EXPECT_EQ(sWhyNot, "");
  EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith("7\trow 7\t"));
}

TEST(row_view, says_where_more_is_copied_than_keeps_its_kinds) {
  RowView view;
  constexpr const char* kNothing = "nothing yet";
  QString sTold = kNothing;
  const auto copyAll = [&] {
    view.selectAll();
    view.Copy(false);
    return tests::Until([&] { return sTold != kNothing; });
  };
  view.Copier().OnCopied([&](const QString& sSentence) { sTold = sSentence; });
  view.ShowRows(Plant(50'001), kUtcZone);  // of four columns
  ASSERT_TRUE(copyAll());
  EXPECT_EQ(sTold.toStdString(),
            "Copied as text: of more than 200,000 cells the kinds of values are not kept. Select "
            "fewer to paste them exactly, or export them into a file (Ctrl+Shift+E).");
  EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith("0\trow 0\t"));
  view.ShowRows(Plant(50'000), kUtcZone);
  sTold = kNothing;
  ASSERT_TRUE(copyAll());
  EXPECT_EQ(sTold.toStdString(), "");
}

TEST(row_view, more_text_than_can_be_copied_leaves_the_clipboard_alone) {
  QGuiApplication::clipboard()->setText("before");
  RowView view;
  QString sWhyNot;
  view.Copier().OnCopied([&](const QString& sSentence) { sWhyNot = sSentence; });
  const platform::Text sLong(1'000'000, 'x');
  const auto rs = std::make_shared<FakeRecordset>(1'000, [&](auto, auto) { return Value(sLong); });
  rs->Column("a", platform::DataType::WChar);
  view.ShowRows(rs, kUtcZone);
  view.selectAll();
  view.Copy(true);
  ASSERT_TRUE(tests::Until([&] { return !sWhyNot.isEmpty(); }));
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "before");
  EXPECT_EQ(sWhyNot.toStdString(),
            "Not copied: the selection has more than 32 million characters. Select fewer cells, or "
            "export them into a file (Ctrl+Shift+E).");
}

TEST(row_view, copies_the_current_cell_without_a_line_end_when_nothing_is_selected) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  view.Copy(false);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "0");
}

TEST(row_view, without_rows_leaves_the_clipboard_alone) {
  QGuiApplication::clipboard()->setText("before");
  RowView view;
  view.Copy(false);
  view.ShowRows(Plant(0), kUtcZone);
  view.Copy(true);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "before");
}

TEST(row_view, has_a_menu_wherever_there_are_columns) {
  RowView view;
  Show(view);
  const auto asked = [&](QContextMenuEvent::Reason reason) {
    QContextMenuEvent event(reason, {20, 20}, view.viewport()->mapToGlobal(QPoint(20, 20)));
    QWidget* target = reason == QContextMenuEvent::Mouse ? view.viewport() : &view;
    QCoreApplication::sendEvent(target, &event);
    auto* menu = view.findChild<QMenu*>();
    const bool bMenu = menu && menu->isVisible();
    delete menu;
    return bMenu;
  };
  EXPECT_FALSE(asked(QContextMenuEvent::Mouse)) << "there is nothing at all";
  view.ShowRows(Plant(0), kUtcZone);
  EXPECT_TRUE(asked(QContextMenuEvent::Mouse));
  EXPECT_TRUE(asked(QContextMenuEvent::Keyboard));
  view.ShowRows(Plant(3), kUtcZone);
  EXPECT_TRUE(asked(QContextMenuEvent::Mouse));
}

TEST(row_view, the_menu_of_the_rows_copies_and_selects) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickCell(view, 1, 1);
  const QPoint point = view.visualRect(view.currentIndex()).center();
  QContextMenuEvent event(QContextMenuEvent::Mouse, point, view.viewport()->mapToGlobal(point));
  QCoreApplication::sendEvent(view.viewport(), &event);
  auto* menu = view.findChild<QMenu*>();
  ASSERT_NE(menu, nullptr);
  QStringList labels;
  for (const QAction* action : menu->actions()) labels << action->text().section(u'\t', 0, 0);
  EXPECT_EQ(labels,
            (QStringList{"&Copy", "Copy with Column &Names", "Cop&y As", "", "Select &All"}));
  QStringList forms;
  for (const QAction* action : menu->actions().at(2)->menu()->actions()) forms << action->text();
  EXPECT_EQ(forms, (QStringList{"CS&V", "&JSON Lines", "SQL &INSERT"}));
  menu->actions().at(1)->trigger();
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "Name\nrow 1\n");
  menu->actions().at(4)->trigger();
  EXPECT_TRUE(view.RowsSelected());
  menu->close();
}

TEST(row_view, a_state_comes_back_in_a_fresh_view) {
  const auto rs = Plant(1'000'000);
  RowsState state;
  {
    RowView view;
    view.ShowRows(rs, kUtcZone);
    Show(view);
    view.ColumnWidth(1, 533);
    QCoreApplication::processEvents();
    view.verticalScrollBar()->setValue(700'000);
    ClickCell(view, 700'003, 2);
    ClickCell(view, 700'005, 1, Qt::ControlModifier);
    view.horizontalScrollBar()->setValue(20);
    state = view.State();
  }
  EXPECT_EQ(state.nTopRow, 700'000);
  EXPECT_EQ(state.nLeftOffset, 20);
  RowView fresh;
  fresh.ShowRows(rs, kUtcZone, &state);
  Show(fresh);
  QCoreApplication::processEvents();
  EXPECT_EQ(fresh.verticalScrollBar()->value(), 700'000);
  EXPECT_EQ(fresh.horizontalScrollBar()->value(), 20);
  EXPECT_EQ(fresh.ColumnWidth(1), 533);
  EXPECT_EQ(Current(fresh), std::pair(700'005, 1));
  EXPECT_EQ(fresh.State().selection, state.selection);
  EXPECT_EQ(state.selection.size(), 2U);
}

TEST(row_view, selected_rows_come_back_as_rows) {
  const auto rs = OneColumn({Value("x"), Value("y")});
  RowView view;
  view.ShowRows(rs, kUtcZone);
  view.SelectRow(1);
  const RowsState state = view.State();
  RowView fresh;
  fresh.ShowRows(rs, kUtcZone, &state);
  EXPECT_TRUE(fresh.RowsSelected());
  EXPECT_EQ(Current(fresh), std::pair(1, 0));
}

TEST(row_view, the_last_page_comes_back_though_the_fresh_view_starts_out_larger) {
  const auto rs = Plant(1'000);
  RowView view;
  view.ShowRows(rs, kUtcZone);
  Show(view, {600, 200});
  view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
  const RowsState state = view.State();
  RowView fresh;
  fresh.resize(600, 2'000);
  fresh.ShowRows(rs, kUtcZone, &state);
  EXPECT_EQ(fresh.State().nTopRow, state.nTopRow);
  Show(fresh, {600, 200});
  QCoreApplication::processEvents();
  EXPECT_EQ(fresh.verticalScrollBar()->value(), state.nTopRow);
}

TEST(row_view, scrolling_by_the_user_ends_the_restored_position) {
  const auto rs = Plant(1'000);
  RowsState state;
  state.nTopRow = 500;
  RowView view;
  view.ShowRows(rs, kUtcZone, &state);
  Show(view);
  ASSERT_EQ(view.verticalScrollBar()->value(), 500);
  view.verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
  const int nAfter = view.verticalScrollBar()->value();
  EXPECT_GT(nAfter, 500);
  view.resize(640, 420);
  QCoreApplication::processEvents();
  EXPECT_EQ(view.verticalScrollBar()->value(), nAfter);
}

TEST(row_view, a_state_of_more_rows_than_there_are_is_taken_as_far_as_it_goes) {
  RowsState state;
  state.nCurrentRow = 500;
  state.nCurrentColumn = 9;
  state.selection = {{1, 0, 1, 3}, {400, 0, 500, 3}};
  state.nTopRow = 400;
  state.columnWidths = {100};
  RowView view;
  view.ShowRows(Plant(5), kUtcZone, &state);
  EXPECT_FALSE(view.currentIndex().isValid());
  EXPECT_EQ(view.State().selection, (std::vector<CellRange>{{1, 0, 1, 3}}));
}

TEST(row_view, showing_rows_raises_no_signal_of_the_selection) {
  RowView view;
  view.ShowRows(Plant(5), kUtcZone);
  QSignalSpy current(view.selectionModel(), &QItemSelectionModel::currentChanged);
  QSignalSpy selection(view.selectionModel(), &QItemSelectionModel::selectionChanged);
  view.SelectRow(2);
  EXPECT_EQ(current.count(), 1);
  EXPECT_EQ(selection.count(), 1);
  view.ShowRows(Plant(6), kUtcZone);
  view.ShowRows(nullptr, kUtcZone);
  EXPECT_EQ(current.count(), 1);
  EXPECT_EQ(selection.count(), 1);
}

TEST(row_view, copies_in_forms_for_other_programs) {
  RowView view;
  view.ShowRows(OneColumn({Value(), Value(""), Value("NULL"), Value("a\tb\nc"), Value("<b>")}),
                kUtcZone);
  view.selectAll();
  const QClipboard* clipboard = QGuiApplication::clipboard();
  view.Copy(false);
  EXPECT_EQ(clipboard->text().toStdString(), "\n\"\"\nNULL\n\"a\tb\nc\"\n<b>\n");
  const QString sPage = clipboard->mimeData()->html();
  for (const char* sCell :
       {"<td><i></i></td>", "@\"></td>", ">NULL</td>", ">a&#9;b<br>c</td>", ">&lt;b&gt;</td>"}) {
    EXPECT_TRUE(sPage.contains(sCell)) << sCell;
  }
  view.CopyAs(exports::Form::Csv);
  EXPECT_EQ(clipboard->text().toStdString(), "a\r\n\r\n\"\"\r\nNULL\r\n\"a\tb\nc\"\r\n<b>\r\n");
  view.Copier().Into("\"Plant\"..\"Data\"");
  view.SelectRow(2);
  view.CopyAs(exports::Form::Sql);
  EXPECT_TRUE(
      clipboard->text().startsWith("INSERT INTO \"Plant\"..\"Data\" (\"a\") VALUES ('NULL')"));
  view.CopyAs(exports::Form::JsonLines);
  EXPECT_EQ(clipboard->text().toStdString(), "{\"a\":\"NULL\"}\n");
}

TEST(row_view, times_of_a_column_have_equally_many_digits_of_a_second) {
  const auto rs = std::make_shared<FakeRecordset>(3, [](auto row, auto) -> Value {
    return platform::Timestamp(std::chrono::seconds(1'700'000'000 + row) +
                               std::chrono::milliseconds(row == 1 ? 250 : 0));
  });
  rs->Column("Time", platform::DataType::DBTimeStamp);
  RowView view;
  view.ShowRows(rs, kUtcZone);
  EXPECT_EQ(view.Model().CellAt(0, 0).sText, "2023-11-14 22:13:20.000");
  EXPECT_EQ(view.Model().CellAt(1, 0).sText, "2023-11-14 22:13:21.250");
}

TEST(row_view, a_time_further_down_takes_the_digits_of_its_whole_column_along) {
  constexpr int kExact = 5'000;
  const auto rs = std::make_shared<FakeRecordset>(10'000, [](auto row, auto column) -> Value {
    const auto more = std::chrono::microseconds(row == kExact && column == 0 ? 7 : 0);
    return platform::Timestamp(std::chrono::seconds(1'700'000'000) + more);
  });
  rs->Column("Exact", platform::DataType::DBTimeStamp)
      .Column("Whole", platform::DataType::DBTimeStamp);
  RowView view;
  view.ShowRows(rs, kUtcZone);
  Show(view);
  const auto shown = [&](int nRow, int nColumn) {
    return view.Model().CellAt(nRow, nColumn).sText.toStdString();
  };
  EXPECT_EQ(shown(0, 0), "2023-11-14 22:13:20");
  view.GoTo(kExact, 0);
  view.grab();
  EXPECT_EQ(shown(kExact, 0), "2023-11-14 22:13:20.000007");
  EXPECT_EQ(shown(kExact + 1, 0), "2023-11-14 22:13:20.000000");
  EXPECT_EQ(shown(kExact, 1), "2023-11-14 22:13:20");
  // They stay while the rows scroll on, until others are shown.
  view.GoTo(0, 0);
  view.grab();
  EXPECT_EQ(shown(0, 0), "2023-11-14 22:13:20.000000");
  view.ShowRows(rs, kUtcZone);
  EXPECT_EQ(shown(0, 0), "2023-11-14 22:13:20");
}

}  // namespace
}  // namespace orvane::controls
