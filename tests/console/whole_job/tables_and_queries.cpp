// A table's grid and query, and named queries.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

#include "tests/console/whole_job/whole_job.h"

namespace orvane::console {

using platform::Text;

void WholeJobTest::LooksAtATable() {
  m_hands->Expand("localhost.Catalogs.Boiler");
  WaitUntilOpened("localhost.Catalogs.Boiler");
  m_hands->Select("localhost.Catalogs.Boiler.Data");
  Expect("the grid shows as many rows as the options allow, and one for a new row", [&] {
    const auto* rows = m_stage.Rows();
    return rows && rows->model()->rowCount() == 101 && m_stage.SqlBox();
  });
  const auto currentRow = [&] { return m_stage.Rows()->currentIndex().row(); };
  m_hands->ToolbarButton("MoveLast");
  Expect("the last row is current", [&] { return currentRow() == 99; });
  m_hands->ToolbarButton("MoveFirst");
  Expect("the first row is current", [&] { return currentRow() == 0; });
  m_hands->ToolbarButton("Sql");
  Expect("the statement is hidden", [&] { return !m_stage.SqlBox(); });
  m_hands->Tab("Structure");
  Expect("the structure is shown", [&] { return !m_stage.Rows(); });
  m_hands->Tab("Data");
  Expect("the rows are back, without the statement",
         [&] { return m_stage.Rows() && !m_stage.SqlBox(); });
  EXPECT_EQ(m_stage.Ask([&] { return m_stage.Rows()->model()->rowCount(); }), 101);
}

void WholeJobTest::BuildsTheTablesQuery() {
  m_hands->Command("localhost.Catalogs.Boiler.Data", "m_mnuQuery");
  auto* builder = m_stage.WaitForDialog("Table Query");
  auto* available = In<QAbstractItemView>(builder, "m_lvAvailableCols");
  auto* btnOk = In<QPushButton>(builder, "m_btnOk");
  // A table begins with all its columns.
  m_hands->PressIn(builder, "m_btnDeselectAllCols");
  EXPECT_FALSE(m_stage.Ask([&] { return btnOk->isEnabled(); }));
  auto* add = In<QAbstractButton>(builder, "m_btnSelectCol");
  for (const char* sColumn : {"Value", "Timestamp", "Tag"}) {
    m_hands->MoveColumn(available, sColumn, add);
  }
  m_hands->MoveColumn(In<QAbstractItemView>(builder, "m_lvSelCols"), "Tag",
                      In<QAbstractButton>(builder, "m_btnDeselectCol"));
  // The default condition is there and locked until it is switched off.
  auto* filter = In<QWidget>(builder, "m_txtFilterCond");
  EXPECT_EQ(m_stage.Ask([&] { return filter->property("plainText").toString(); }).toStdString(),
            "Timestamp BETWEEN '*-2h' AND '*'");
  m_hands->PressIn(builder, "m_chkDefaultFilterCond");
  m_hands->Enter(filter, "Tag = 'flow' AND Value > 1");
  m_hands->PressIn(builder, "m_chkNoSortingCriteria");
  m_hands->Choose(In<QComboBox>(builder, "m_cmbSortCol"), "Timestamp");
  m_hands->Choose(In<QComboBox>(builder, "m_cmbSortOrder"), "Descending");
  m_hands->Press(btnOk);
  Expect("the grid shows the chosen columns", [&] {
    const auto* rows = m_stage.Rows();
    return rows && rows->model()->columnCount() == 2 && m_stage.IsIdle();
  });
  m_hands->Refresh();
  Expect("the columns are as chosen after the rows were read again", [&] {
    const auto* model = m_stage.Rows()->model();
    return m_stage.IsIdle() && model->headerData(0, Qt::Horizontal).toString() == "Value" &&
           model->headerData(1, Qt::Horizontal).toString() == "Timestamp";
  });
}

void WholeJobTest::NewQuery(const Text& sName, const Text& sSql) {
  m_hands->Command("localhost.Queries", "m_mnuNewQuery");
  auto* dialog = m_stage.WaitForDialog("Query");
  m_hands->Enter(In<QWidget>(dialog, "m_txtName"), sName);
  m_hands->Enter(In<QWidget>(dialog, "m_sqlView"), sSql);
  m_hands->PressIn(dialog, "m_btnOk");
}

void WholeJobTest::KeepsNamedQueries() {
  NewQuery("Samples", kSamplesSql);
  m_stage.WaitUntilIdle();
  m_hands->Expand("localhost.Queries");
  WaitUntilOpened("localhost.Queries");
  NewQuery("Gone", "SELECT 1 AS One");
  Expect("the query is in the tree",
         [&] { return m_stage.Item("localhost.Queries.Gone") && m_stage.IsIdle(); });
  // A name that is there is refused; what was typed stays.
  NewQuery("SAMPLES", "SELECT 2 AS Two");
  m_hands->Answer("Error", "Query with the specified name already exists.", "OK");
  auto* again = m_stage.WaitForDialog("Query");
  EXPECT_EQ(
      m_stage.Ask([&] { return again->findChild<QLineEdit*>("m_txtName")->text(); }).toStdString(),
      "SAMPLES");
  m_hands->Enter(In<QWidget>(again, "m_txtName"), "Constant");
  m_hands->PressIn(again, "m_btnOk");
  Expect("the query is in the tree under its other name",
         [&] { return m_stage.Item("localhost.Queries.Constant") && m_stage.IsIdle(); });

  m_hands->Select("localhost.Queries.Samples");
  Expect("the query's rows are shown", [&] {
    const auto* rows = m_stage.Rows();
    return rows && rows->model()->rowCount() == 2 && m_stage.IsIdle();
  });
  m_hands->ToolbarButton("MoveLast");
  Expect("the last row is current", [&] { return m_stage.Rows()->currentIndex().row() == 1; });

  m_hands->Command("localhost.Queries.Samples", "m_mnuEdit");
  auto* edit = m_stage.WaitForDialog("Query");
  m_hands->Enter(In<QWidget>(edit, "m_txtName"), "Samples per tag");
  m_hands->Enter(In<QWidget>(edit, "m_sqlView"), kSamplesSql + "\nORDER BY Samples");
  m_hands->PressIn(edit, "m_btnOk");
  Expect("the query has its new name", [&] {
    return m_stage.Item("localhost.Queries.Samples per tag") &&
           !m_stage.Item("localhost.Queries.Samples") && m_stage.IsIdle();
  });
  m_hands->Command("localhost.Queries.Gone", "m_mnuRemove");
  m_hands->Answer("Confirm Query Removal", "Are you sure you want to remove the \"Gone\" query?",
                  "&Yes");
  Expect("the query is gone",
         [&] { return !m_stage.Item("localhost.Queries.Gone") && m_stage.IsIdle(); });
}

}  // namespace orvane::console
