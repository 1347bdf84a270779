// What is asked of the server beside the rows: their number, and to take rows of a file.
#include "controls/grid/row_count.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>
#include <QToolButton>
#include <new>

#include "controls/grid/table_editor.h"
#include "controls/statements/table_query.h"
#include "tests/controls/grid_fixture.h"
#include "tests/controls/schema_connection.h"
#include "tests/files/temporary_folder.h"

namespace orvane::controls {
namespace {

class row_count : public GridFixture {
 protected:
  row_count() {
    m_query->Catalog("Machine");
    m_query->Table("Data");
    auto rows = Plant(3);
    rows->Truncated(true);
    m_server.answer = rows;
    m_editor = std::make_unique<TableEditor>(Services());
    m_editor->Connection(m_columns);
    m_editor->TableQuery(m_query);
    m_editor->Requery();
    Show(*m_editor);
  }
  QToolButton* Offer() { return WindowOf(*m_editor)->findChild<QToolButton*>("offer"); }
  struct Folder : files::FolderTest {
    using FolderTest::Path;
    using FolderTest::WriteBytes;
    void TestBody() override {}
  };
  void Import(const std::string& sBytes) {
    const std::string sPath = m_folder.Path("rows.csv");
    Folder::WriteBytes(sPath, sBytes);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      auto* files = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      if (!files) return;
      files->findChild<QLineEdit*>()->setText(QString::fromStdString(sPath));
      QTest::keyClick(files->findChild<QLineEdit*>(), Qt::Key_Return);
    });
    timer.start(5);
    QTest::keyClick(ViewOf(*m_editor), Qt::Key_I, Qt::ControlModifier | Qt::ShiftModifier);
  }

  std::shared_ptr<SchemaConnection> m_columns =
      std::make_shared<SchemaConnection>(SchemaConnection::Columns{
          {"Tag", platform::DataType::WChar}, {"Value", platform::DataType::BigInt}});
  std::shared_ptr<controls::TableQuery> m_query = std::make_shared<controls::TableQuery>();
  std::unique_ptr<TableEditor> m_editor;
  Folder m_folder;
};

TEST_F(row_count, asks_the_server_once_for_each_press_and_never_before) {
  EXPECT_EQ(m_server.nExecuted, 1);
  m_server.answer = OneCell(platform::Value(std::int64_t{1'234'567}));
  ASSERT_TRUE(Offer()->isVisible());
  EXPECT_EQ(Offer()->text(), "Count Rows");
  Offer()->click();
  EXPECT_EQ(m_server.nExecuted, 2);
  EXPECT_EQ(m_server.sCommandText, "SELECT count(*)\nFROM \"Machine\"..\"Data\"");
  EXPECT_EQ(m_server.lTimeout, 0);
  EXPECT_TRUE(m_server.bReadOnly);
  EXPECT_EQ(Label(*m_editor, "notice"), "1,234,567 rows in the table.");
  EXPECT_EQ(RowsOf(*m_editor), 3) << "the grid keeps its rows";
}

TEST_F(row_count, says_when_it_was_cancelled_or_failed) {
  m_server.whileRunning = [] {
    throw platform::Failure(platform::failure::kCancelled, "The statement was cancelled.");
  };
  Offer()->click();
  EXPECT_EQ(Label(*m_editor, "notice"), "The rows were not counted, as that was cancelled.");
  m_server.whileRunning = Refuse;
  Offer()->click();
  EXPECT_EQ(Label(*m_editor, "notice"), "There is no such column; correct it.");
  m_server.whileRunning = [] { throw std::bad_alloc(); };
  Offer()->click();
  EXPECT_EQ(Label(*m_editor, "notice"),
            "There is not enough memory for the rows; show fewer of them or close other programs.");
  EXPECT_EQ(RowsOf(*m_editor), 3);
}

TEST_F(row_count, outlives_a_grid_that_goes_while_the_server_counts) {
  m_server.answer = OneCell(platform::Value(std::int64_t{5}));
  m_server.whileRunning = [this] { m_editor.reset(); };
  Offer()->click();
  EXPECT_EQ(m_editor, nullptr);
}

TEST_F(row_count, rows_of_a_file_go_as_values_of_one_statement) {
  std::vector<std::vector<platform::Value>> sent;
  std::vector<platform::Text> statements;
  m_server.whileRunning = [&] {
    std::vector<platform::Value> values;
    while (m_server.batch && m_server.batch(values)) sent.push_back(values);
    m_server.batch = {};
    statements.push_back(m_server.sCommandText);
  };
  Import("value,Tag\n7,\"it's\"\n,b\n");
  ASSERT_EQ(statements.size(), 2U) << "and the rows are fetched again";
  EXPECT_EQ(statements.front(),
            "INSERT INTO \"Machine\"..\"Data\" (\"Value\", \"Tag\") VALUES (?, ?)");
  ASSERT_EQ(sent.size(), 2U);
  EXPECT_TRUE(sent[0] == (std::vector<platform::Value>{std::int64_t{7}, platform::Text("it's")}));
  EXPECT_TRUE(sent[1] == (std::vector<platform::Value>{{}, platform::Text("b")}));
  EXPECT_EQ(Label(*m_editor, "notice"), "Imported 2 rows");
}

TEST_F(row_count, a_cancelled_import_says_so_and_leaves_the_rows) {
  int nExecuted = 0;
  m_server.whileRunning = [&] {
    ++nExecuted;
    std::vector<platform::Value> values;
    m_server.batch(values);
    throw platform::Failure(platform::failure::kCancelled, "The statement was cancelled.");
  };
  Import("Tag\na\nb\n");
  EXPECT_EQ(nExecuted, 1);
  EXPECT_EQ(m_server.lTimeout, 0);
  EXPECT_EQ(m_server.rowsExpected, 1);
  EXPECT_EQ(Label(*m_editor, "notice"), "The import was cancelled; nothing was imported.");
  EXPECT_EQ(RowsOf(*m_editor), 3);
}

}  // namespace
}  // namespace orvane::controls
