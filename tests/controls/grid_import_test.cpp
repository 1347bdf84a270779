// Imports as a user makes them, into a table of a real historian: the key, the file dialog, and
// what another connection reads afterwards.
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <atomic>
#include <thread>

#include "controls/grid/table_editor.h"
#include "controls/statements/table_query.h"
#include "exports/row_export.h"
#include "platform/conversions.h"
#include "tests/controls/historian_server.h"
#include "tests/controls/random_rows.h"
#include "tests/files/temporary_folder.h"
#include "tests/provider/engines/database_folder.h"

namespace orvane::controls {
namespace {

using platform::Text;
using platform::Value;

class GridImportTest : public testing::Test {
 protected:
  GridImportTest() {
    m_server->Run("CREATE TABLE P..T (Nr INTEGER PRIMARY KEY, a TEXT, d DOUBLE, t TIMESTAMP)");
    m_query->Catalog("P");
    ShowTable("T");
  }

  struct Folder : files::FolderTest {
    using FolderTest::Path;
    using FolderTest::WriteBytes;
    void TestBody() override {}
  };

  void ShowTable(const Text& sTable, const Text& sOptions = {}) {
    m_query->Table(sTable);
    m_editor = std::make_unique<TableEditor>(
        GridServices{m_server, std::make_shared<RowsStates>(), std::make_shared<int>()});
    m_connection = m_server->Connect(sOptions);
    m_editor->Connection(m_connection);
    m_editor->TableQuery(m_query);
    m_editor->Requery();
    Window().show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&Window()));
  }
  QWidget& Window() { return *static_cast<QWidget*>(m_editor->Window()); }
  std::string Notice() {
    const auto* label = Window().findChild<QLabel*>("notice");
    return label->isVisibleTo(&Window()) ? label->text().toStdString() : "";
  }
  /// Presses the keys, and answers the dialogs that come up.
  void Import(const std::string& sPath) {
    m_sTold.clear();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      QWidget* dialog = QApplication::activeModalWidget();
      if (auto* files = qobject_cast<QFileDialog*>(dialog)) {
        files->findChild<QLineEdit*>()->setText(QString::fromStdString(sPath));
        QTest::keyClick(files->findChild<QLineEdit*>(), Qt::Key_Return);
      } else if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
        m_sTold = box->text().toStdString();
        box->button(QMessageBox::Ok)->click();
      }
    });
    timer.start(5);
    QTest::keyClick(Window().findChild<QWidget*>("rows"), Qt::Key_I,
                    Qt::ControlModifier | Qt::ShiftModifier);
  }
  void ImportBytes(const std::string& sBytes) {
    const std::string sPath = m_folder.Path("rows.csv");
    Folder::WriteBytes(sPath, sBytes);
    Import(sPath);
  }
  Text Stored() { return m_server->Read("SELECT * FROM P..T ORDER BY Nr"); }

  std::shared_ptr<tests::HistorianServer> m_server = tests::HistorianServer::Make();
  std::shared_ptr<controls::TableQuery> m_query = std::make_shared<controls::TableQuery>();
  platform::ConnectionPtr m_connection;
  std::unique_ptr<TableEditor> m_editor;
  Folder m_folder;
  std::string m_sTold;
};

TEST_F(GridImportTest, inserts_the_rows_and_shows_them) {
  ImportBytes("A,nr,t\r\nx,7,2024-05-31T12:00:00+02:00\r\n\"y,\"\"z\",8,\r\n");
  EXPECT_EQ(m_sTold, "");
  EXPECT_EQ(Stored(), "7|x||2024-05-31 10:00:00\n8|y,\"z||\n");
  EXPECT_EQ(Notice(), "Imported 2 rows");
  EXPECT_EQ(Window().findChild<RowView*>("rows")->Model().Places(), 2);
}

TEST_F(GridImportTest, gives_no_row_up_for_another_whatever_the_table_says) {
  for (const char* const sRule : {"REPLACE", "IGNORE"}) {
    tests::Raw(m_server->CatalogFile())
        .Run("DROP TABLE T; CREATE TABLE T (Nr INTEGER PRIMARY KEY ON CONFLICT " + Text(sRule) +
             ", a TEXT); INSERT INTO T VALUES (1, 'x')");
    ImportBytes("Nr,a\n2,y\n1,mine\n");
    EXPECT_EQ(m_sTold,
              "Line 3: A rule of the table refuses this: UNIQUE constraint failed: T.Nr; correct "
              "the row; nothing was imported.");
    EXPECT_EQ(Stored(), "1|x\n") << sRule;
  }
}

TEST_F(GridImportTest, imports_nothing_when_one_line_is_wrong) {
  const std::pair<const char*, const char*> cases[] = {
      {"Nr,a\n1,x\n2\n",
       "Line 3: it has 1 fields, but the first line names 2 columns; nothing was imported."},
      {"Nr,d\n1,1\n2,abc\n",
       "Line 3: \"abc\" is not a number for the column d; nothing was imported."},
      {"Nr,a\n1,x\n1,y\n",
       "Line 3: A rule of the table refuses this: UNIQUE constraint failed: T.Nr; correct the row; "
       "nothing was imported."},
      {"Nr,colour\n",
       "Line 1: there is no column \"colour\" in the table T; nothing was imported."},
      {"", "The file is empty; its first line must name columns of the table."}};
  for (const auto& [sFile, sTold] : cases) {
    ImportBytes(sFile);
    EXPECT_EQ(m_sTold, sTold);
    EXPECT_EQ(Stored(), "");
    EXPECT_EQ(Notice(), "");
  }
}

/// Runs statements on a thread of their own while the window goes on, as a host does.
class RunningBeside final : public platform::LongOperation {
 public:
  void Run(const Text& sWhat, const std::function<void(std::stop_token)>& work) override {
    std::exception_ptr failed;
    std::atomic<bool> bDone = false;
    const bool bStatement = !sWhat.starts_with("Reading");
    std::jthread worker([&](std::stop_token token) {
      std::stop_source cancelled;
      if (bCancel && bStatement) cancelled.request_stop();
      try {
        work(bCancel && bStatement ? cancelled.get_token() : std::move(token));
      } catch (...) {
        failed = std::current_exception();
      }
      bDone = true;
    });
    while (!bDone || (bStatement && until && !until())) {
      QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    }
    worker.join();
    if (failed) std::rethrow_exception(failed);
  }

  std::function<bool()> until;  ///< a statement takes as long at least
  bool bCancel = false;         ///< statements are, before they begin
};

TEST_F(GridImportTest, tells_how_many_rows_were_read) {
  const auto beside = std::make_shared<RunningBeside>();
  m_server->longOperation = beside;
  ShowTable("T");
  const char* const sCount = "Importing: 2 rows so far\u2026";
  bool bSeen = false;
  beside->until = [&] { return bSeen = bSeen || Notice() == sCount; };
  ImportBytes("Nr,a\n1,x\n2,y\n");
  EXPECT_TRUE(bSeen);
  EXPECT_EQ(Notice(), "Imported 2 rows");
  EXPECT_EQ(Stored(), "1|x||\n2|y||\n");
}

TEST_F(GridImportTest, leaves_nothing_when_it_is_cancelled) {
  const auto beside = std::make_shared<RunningBeside>();
  m_server->longOperation = beside;
  ShowTable("T");
  beside->bCancel = true;
  ImportBytes("Nr,a\n1,x\n2,y\n");
  beside->bCancel = false;
  EXPECT_EQ(m_sTold, "");
  EXPECT_EQ(Notice(), "The import was cancelled; nothing was imported.");
  EXPECT_EQ(Stored(), "");
}

TEST_F(GridImportTest, tells_in_a_sentence_whatever_ends_it) {
  m_server->bWithoutMemory = true;
  ImportBytes("Nr,a\n1,x\n");
  m_server->bWithoutMemory = false;
  EXPECT_EQ(m_sTold,
            "There is not enough memory for the rows; show fewer of them or close other programs.");
  EXPECT_EQ(Notice(), "");
  EXPECT_EQ(Stored(), "");
}

TEST_F(GridImportTest, ends_with_its_window_whatever_is_asked_then) {
  bool bAsked = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    if (qobject_cast<QFileDialog*>(QApplication::activeModalWidget()) == nullptr) return;
    bAsked = true;
    timer.stop();
    m_editor.reset();
  });
  timer.start(5);
  QTest::keyClick(Window().findChild<QWidget*>("rows"), Qt::Key_I,
                  Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(bAsked);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_EQ(Stored(), "");
}

TEST_F(GridImportTest, refuses_numbers_that_could_be_times) {
  ShowTable("T", "Time as Double = True;");
  ImportBytes("Nr,d\n1,1.5\n");
  EXPECT_EQ(m_sTold,
            "Rows cannot be imported while the server gives times as numbers; set its extended "
            "option \"Time as Double\" to False and connect again.");
  ImportBytes("Nr,a\n1,x\n");
  EXPECT_EQ(m_sTold, "");
  EXPECT_EQ(Stored(), "1|x||\n");
}

TEST_F(GridImportTest, counts_the_rows_of_the_table_when_asked) {
  std::string sRows = "Nr\n";
  for (int i = 1; i <= 1234; ++i) sRows += std::to_string(i) + "\n";
  m_query->MaxRows(10);
  ImportBytes(sRows);
  auto* count = Window().findChild<QToolButton*>("offer");
  ASSERT_TRUE(count->isVisibleTo(&Window())) << "the row limit has cut the rows";
  QTest::mouseClick(count, Qt::LeftButton);
  EXPECT_EQ(Notice(), "1,234 rows in the table.");
  m_query->FilterCondition("Nr > 1200 -- the last ones");
  m_editor->Requery();
  QTest::mouseClick(count, Qt::LeftButton);
  EXPECT_EQ(Notice(), "34 rows in the table meet the query's filter.");
  m_query->MaxRows(0);
  m_editor->Requery();
  EXPECT_FALSE(count->isVisibleTo(&Window()));
}

TEST_F(GridImportTest, rows_stay_when_the_connection_is_gone_and_come_anew_after_reconnecting) {
  ImportBytes("Nr\n1\n2\n");
  auto* view = Window().findChild<RowView*>("rows");
  view->GoTo(1, 0);
  m_connection->Close();
  try {
    m_editor->Requery();
    ADD_FAILURE();
  } catch (const platform::Failure& failed) {
    EXPECT_EQ(failed.Number(), platform::failure::kObjectClosed);
    EXPECT_EQ(Notice(), failed.Description());
  }
  EXPECT_EQ(view->Model().Places(), 2);
  EXPECT_EQ(view->currentIndex().row(), 1);
  m_server->Run("INSERT INTO P..T (Nr) VALUES (3)");
  auto* reconnect = Window().findChild<QToolButton*>("offer");
  ASSERT_TRUE(reconnect->isVisibleTo(&Window()));
  EXPECT_EQ(reconnect->text(), "Reconnect");
  QTest::mouseClick(reconnect, Qt::LeftButton);
  EXPECT_TRUE(m_connection->IsOpen());
  EXPECT_EQ(view->Model().Places(), 3);
  EXPECT_EQ(Notice(), "");
  EXPECT_FALSE(reconnect->isVisibleTo(&Window()));
}

TEST_F(GridImportTest, reconnecting_that_fails_keeps_the_rows_and_says_why) {
  ImportBytes("Nr\n1\n");
  auto* view = Window().findChild<RowView*>("rows");
  m_connection->Close();
  EXPECT_THROW(m_editor->Requery(), platform::Failure);
  m_connection->ConnectionString("Provider = ORVOLEDB; Data Source = Nowhere");
  QTest::mouseClick(Window().findChild<QToolButton*>("offer"), Qt::LeftButton);
  EXPECT_FALSE(m_connection->IsOpen());
  EXPECT_EQ(view->Model().Places(), 1);
  EXPECT_NE(Notice().find("Nowhere"), std::string::npos) << Notice();
  EXPECT_TRUE(Window().findChild<QToolButton*>("offer")->isVisibleTo(&Window()));
}

TEST_F(GridImportTest, rows_that_were_exported_come_back_as_they_were) {
  m_server->Run(Text("CREATE TABLE P..Sent") + tests::kColumnOfEachType);
  m_server->Run(Text("CREATE TABLE P..Back") + tests::kColumnOfEachType);
  const auto command = m_server->CreateCommand();
  command->ActiveConnection(m_server->Connect());
  command->CommandText("INSERT INTO P..Sent VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
  tests::RandomRows random(11);
  std::int64_t llNumber = 0;
  command->Batch([&](std::vector<Value>& values) {
    values = random.Row(++llNumber);
    return llNumber <= 300;
  });
  command->Execute();
  const auto sent = m_server->Run("SELECT * FROM P..Sent ORDER BY Nr");
  ASSERT_EQ(sent->RecordCount(), 300);
  exports::RowExport file({}, m_folder.Path("sent.csv"));
  file.Rows(*sent);
  file.Finish(false);

  ShowTable("Back");
  Import(m_folder.Path("sent.csv"));
  EXPECT_EQ(m_sTold, "");
  const auto back = m_server->Run("SELECT * FROM P..Back ORDER BY Nr");
  ASSERT_EQ(back->RecordCount(), 300);
  for (platform::RowIndex row = 0; row < 300; ++row) {
    for (platform::ColumnIndex column = 0; column < sent->FieldCount(); ++column) {
      EXPECT_TRUE(back->ValueAt(row, column) == sent->ValueAt(row, column))
          << "row " << row << ", column " << column << ": "
          << platform::ToText(sent->ValueAt(row, column)) << " came back as "
          << platform::ToText(back->ValueAt(row, column));
    }
  }
}

TEST_F(GridImportTest, a_column_of_its_own_keeps_its_nulls) {
  m_server->Run("CREATE TABLE P..S (s TEXT)");
  ShowTable("S");
  ImportBytes("s\r\na\r\n\r\n\"\"\r\n");
  EXPECT_EQ(m_server->Read("SELECT count(*), count(s) FROM P..S"), "3|2\n");
}

TEST_F(GridImportTest, is_not_offered_where_the_rows_are_those_of_no_table) {
  const auto bOffered = [&] {
    QMenu menu;
    Window().findChild<RowView*>("rows")->Commands().Fill(menu);
    return std::ranges::any_of(menu.actions(), [](const QAction* action) {
      return action->text().startsWith("&Import Rows");
    });
  };
  EXPECT_TRUE(bOffered());
  m_server->Run("CREATE TABLE P..Keyless (a TEXT)");
  ShowTable("Keyless");
  EXPECT_TRUE(bOffered()) << "no key is needed to add rows";
  m_server->Run("CREATE VIEW P..V AS SELECT * FROM P..T");
  ShowTable("V");
  EXPECT_FALSE(bOffered());
  ImportBytes("Nr\n1\n");
  EXPECT_EQ(Stored(), "");
}

}  // namespace
}  // namespace orvane::controls
