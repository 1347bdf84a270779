// What is done to the rows of a table, each read back from the catalog's file by the engine's own
// library: a range of time, sorting, editing, deleting, filling, exporting, and the trend.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

#include "tests/console/whole_job/whole_job.h"

namespace orvane::console {

using platform::Text;

namespace {

int ColumnOf(const QAbstractItemModel& model, const char* sName) {
  for (int i = 0; i < model.columnCount(); ++i) {
    if (model.headerData(i, Qt::Horizontal).toString() == sName) return i;
  }
  throw Stopped(Text("The grid has no column ") + sName + ".");
}

/// Without the empty one behind the last, for new rows.
int RowsOf(const QAbstractItemModel& model) {
  return model.rowCount() - 1;
}

bool Falls(const QAbstractItemModel& model, int iColumn) {
  for (int i = 1; i < RowsOf(model); ++i) {
    if (model.index(i - 1, iColumn).data().toDouble() < model.index(i, iColumn).data().toDouble()) {
      return false;
    }
  }
  return true;
}

}  // namespace

Text WholeJobTest::Stored(const Text& sSql) {
  return ReadFromCatalog("localhost", "Boiler", sSql);
}

QAbstractItemView* WholeJobTest::ShowsTheLastMinutes() {
  m_hands->Choose(InGrid<QComboBox>("timeRange"), "Last 10 minutes");
  // One every ten seconds and one every thirty.
  Expect("only the last ten minutes are shown", [&] {
    const auto* rows = m_stage.Rows();
    return m_stage.IsIdle() && rows && RowsOf(*rows->model()) < 90 && RowsOf(*rows->model()) > 70;
  });
  return m_stage.Ask([&] { return m_stage.Rows(); });
}

void WholeJobTest::SortsAndEdits(QAbstractItemView* rows, int iColumn) {
  m_hands->GoToCell(rows, 1, iColumn);
  m_hands->ToolbarButton("SortDesc");
  Expect("the highest values are first", [&] {
    const auto& model = *rows->model();
    return m_stage.IsIdle() && model.index(0, iColumn).data() == "6.5" && Falls(model, iColumn);
  });
  const auto sRows = Stored("SELECT COUNT(*) FROM Data");
  const auto sHighest = Stored("SELECT COUNT(*) - 1 FROM Data WHERE Value = 6.5");
  // The current cell went with its row.
  m_hands->ToolbarButton("MoveFirst");
  Expect("the first row is current", [&] { return rows->currentIndex().row() == 0; });
  m_hands->GoToCell(rows, 0, iColumn);
  m_hands->Type("77.25");
  Expect("the cell takes what is typed", [] {
    const auto* line = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    return line && line->text() == "77.25";
  });
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM Data WHERE Value = 77.25"), "0")
      << "a row is sent when it is left";
  m_stage.Input().Key("Return");
  Expect("the row was left and is stored", [&] {
    return m_stage.IsIdle() && rows->currentIndex().row() == 1 &&
           Stored("SELECT COUNT(*) FROM Data WHERE Value = 77.25") == "1";
  });
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM Data WHERE Value = 6.5"), sHighest);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM Data"), sRows);
}

void WholeJobTest::DeletesARow(QAbstractItemView* rows) {
  const auto sOneLess = Stored("SELECT COUNT(*) - 1 FROM Data");
  const int iShown = m_stage.Ask([&] { return RowsOf(*rows->model()); });
  for (const char* sAnswer : {"Cancel", "&Delete"}) {
    EXPECT_NE(Stored("SELECT COUNT(*) FROM Data"), sOneLess);
    m_hands->MarkRow(rows, 2);
    m_hands->PressToolbar("Delete");
    m_hands->Answer("deleteRows", "Delete 1 row?", sAnswer);
    m_stage.WaitUntilIdle();
  }
  Expect("the row is gone", [&] {
    return m_stage.IsIdle() && RowsOf(*rows->model()) == iShown - 1 &&
           Stored("SELECT COUNT(*) FROM Data") == sOneLess;
  });
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM Data WHERE Value = 77.25"), "1");
}

void WholeJobTest::FillsFromAQuery(QAbstractItemView* rows, int iColumn) {
  m_hands->GoToCell(rows, 3, iColumn);
  m_hands->PressToolbar("CellQuery");
  auto* dialog = m_stage.WaitForDialog("cellQuery");
  m_hands->Enter(In<QWidget>(dialog, "statement"), "SELECT MIN(Value) - 100 FROM Boiler..Data");
  m_hands->PressIn(dialog, "run");
  Expect("the value is in the cell",
         [&] { return m_stage.IsIdle() && rows->model()->index(3, iColumn).data() == "-99.5"; });
  m_hands->GoToCell(rows, 4, iColumn);
  Expect("the value is stored", [&] {
    return m_stage.IsIdle() && Stored("SELECT COUNT(*) FROM Data WHERE Value = -99.5") == "1";
  });
}

void WholeJobTest::ExportsWhatIsShown(QAbstractItemView* rows) {
  const auto sFile = m_folder.filePath("shown.csv");
  QFile::remove(sFile);
  m_hands->MenuOfCell(rows, "Export Rows…");
  auto* choice = m_stage.WaitForDialog("Export Rows");
  const int iShown = m_stage.Ask([&] { return RowsOf(*rows->model()); });
  EXPECT_EQ(m_stage.Ask([&] { return choice->findChild<QAbstractButton*>("m_optShown")->text(); })
                .toStdString(),
            "The rows &shown (" + std::to_string(iShown) + " rows)");
  m_hands->Press(m_stage.Ask(
      [&] { return choice->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok); }));
  TypesFileName(m_stage.WaitForDialog("QFileDialog"), "shown.csv");
  Expect("the file is written", [&] { return QFile::exists(sFile) && m_stage.IsIdle(); });
  QFile file(sFile);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const auto lines = file.readAll().split('\n');
  ASSERT_EQ(lines.size(), iShown + 2) << "the names, and nothing behind the last line's end";
  EXPECT_TRUE(lines[0].startsWith("Tag,Timestamp,Value")) << lines[0].constData();
  EXPECT_TRUE(lines[1].startsWith("flow,") && lines[1].contains(",77.25")) << lines[1].constData();
  EXPECT_TRUE(lines[4].contains(",-99.5")) << lines[4].constData();
}

void WholeJobTest::ReadsATrend() {
  m_hands->Press(InGrid<QToolButton>("asTrend"));
  QAbstractItemView* values = nullptr;
  Expect("the trend has both tags", [&] {
    for (auto* one : m_stage.Window().findChildren<QAbstractItemView*>("trendValues")) {
      if (one->isVisible()) values = one;
    }
    return values && values->model()->rowCount() == 2 && m_stage.IsIdle();
  });
  EXPECT_FALSE(m_stage.Ask([&] { return m_stage.Rows()->isVisible(); }));
  const auto valueOf = [&](const char* sLine) {
    const auto& model = *values->model();
    const int iLine = model.index(0, 0).data() == sLine ? 0 : 1;
    return model.index(iLine, 0).data() == sLine ? model.index(iLine, 1).data().toString()
                                                 : QString();
  };
  m_hands->PointInto(InGrid<QWidget>("trendPlot"));
  Expect("both values of one instant can be read",
         [&] { return !valueOf("flow").isEmpty() && valueOf("pressure") == "4.25"; });
  m_hands->Press(InGrid<QToolButton>("asRows"));
  Expect("the rows are back", [&] { return m_stage.Rows()->isVisible() && m_stage.IsIdle(); });
}

void WholeJobTest::WorksOnRows() {
  auto* rows = ShowsTheLastMinutes();
  const int iColumn = m_stage.Ask([&] { return ColumnOf(*rows->model(), "Value"); });
  SortsAndEdits(rows, iColumn);
  DeletesARow(rows);
  FillsFromAQuery(rows, iColumn);
  ExportsWhatIsShown(rows);
  ReadsATrend();
  m_hands->Choose(InGrid<QComboBox>("timeRange"), "As the query says");
  Expect("the range of the options is back",
         [&] { return m_stage.IsIdle() && RowsOf(*m_stage.Rows()->model()) == 100; });
}

}  // namespace orvane::console
