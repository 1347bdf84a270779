// Exports as a user makes them: the key, the dialog, the file dialog, and what stands in the file.
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <filesystem>
#include <new>
#include <system_error>
#include <thread>

#include "controls/grid/export_dialog.h"
#include "controls/grid/query_results.h"
#include "controls/grid/table_editor.h"
#include "controls/statements/table_query.h"
#include "platform/long_operation.h"
#include "tests/controls/grid_fixture.h"
#include "tests/fakes/until.h"
#include "tests/files/temporary_folder.h"

namespace orvane::controls {
namespace {

class GridExportTest : public GridFixture {
 protected:
  GridExportTest() {
    m_query->Catalog("Machine");
    m_query->Table("Data");
    m_server.answer = Plant(3);
    m_editor = std::make_unique<TableEditor>(Services());
    m_editor->Connection(m_connection);
    m_editor->TableQuery(m_query);
    m_editor->Requery();
    Show(*m_editor);
  }

  struct Folder : files::FolderTest {
    using FolderTest::BytesOf;
    using FolderTest::FilesInFolder;
    using FolderTest::Path;
    using FolderTest::WriteBytes;
    void TestBody() override {}
  };

  /// Answers the dialogs that come up, in this order, and then presses the key.
  void Export(const std::string& sPath, const std::function<void(ExportDialog&)>& choose) {
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      QWidget* dialog = QApplication::activeModalWidget();
      if (auto* choice = dynamic_cast<ExportDialog*>(dialog)) {
        choose(*choice);
        choice->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
      } else if (auto* files = qobject_cast<QFileDialog*>(dialog)) {
        m_sSuggested = QFileInfo(files->selectedFiles().value(0)).fileName().toStdString();
        files->findChild<QLineEdit*>()->setText(QString::fromStdString(sPath));
        QTest::keyClick(files->findChild<QLineEdit*>(), Qt::Key_Return);
      } else if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
        m_sTold = box->text().toStdString();
        box->button(QMessageBox::Ok)->click();
      }
    });
    timer.start(5);
    QTest::keyClick(ViewOf(*m_editor), Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
  }
  static void Take(ExportDialog& dialog, const char* sChoice) {
    auto* button = dialog.findChild<QRadioButton*>(sChoice);
    ASSERT_TRUE(button->isEnabled());
    button->click();
  }

  std::shared_ptr<controls::TableQuery> m_query = std::make_shared<controls::TableQuery>();
  std::unique_ptr<TableEditor> m_editor;
  Folder m_folder;
  std::string m_sSuggested;
  std::string m_sTold;
};

TEST_F(GridExportTest, writes_the_rows_that_are_shown) {
  const std::string sPath = m_folder.Path("out.csv");
  Export(sPath, [](ExportDialog& dialog) { Take(dialog, "m_optShown"); });
  EXPECT_EQ(m_sSuggested, "Data.csv");
  EXPECT_EQ(m_folder.BytesOf(sPath),
            "Number,Name,Flag,Timestamp\r\n"
            "0,row 0,,2023-11-14 22:13:20+00:00\r\n"
            "1,row 1,False,2023-11-14 22:13:21+00:00\r\n"
            "2,row 2,True,2023-11-14 22:13:22+00:00\r\n");
  EXPECT_EQ(Label(*m_editor, "notice"), "Exported 3 rows to " + sPath);
  EXPECT_EQ(m_server.nExecuted, 1);
}

TEST_F(GridExportTest, writes_the_selected_rows_and_columns_as_they_stand) {
  auto* view = ViewOf(*m_editor);
  view->Names().moveSection(1, 0);
  const auto* model = view->model();
  view->selectionModel()->select(QItemSelection(model->index(1, 0), model->index(2, 1)),
                                 QItemSelectionModel::ClearAndSelect);
  const std::string sPath = m_folder.Path("out.csv");
  Export(sPath, [](ExportDialog& dialog) { Take(dialog, "m_optSelected"); });
  EXPECT_EQ(m_folder.BytesOf(sPath), "Name,Number\r\nrow 1,1\r\nrow 2,2\r\n");
}

TEST_F(GridExportTest, fetches_all_rows_anew_without_the_limit) {
  m_server.whileRunning = [this] {
    if (m_server.sink) m_server.sink(Plant(4));
    if (m_server.sink) m_server.sink(Plant(2));
  };
  const std::string sPath = m_folder.Path("out.csv");
  Export(sPath, [](ExportDialog& dialog) { Take(dialog, "m_optAll"); });
  EXPECT_EQ(m_server.nExecuted, 2);
  EXPECT_EQ(m_server.lMaxRecords, 0);
  EXPECT_EQ(m_server.lTimeout, 0);
  EXPECT_TRUE(m_server.bReadOnly);
  EXPECT_EQ(m_server.sCommandText, "SELECT *\nFROM \"Machine\"..\"Data\"");
  EXPECT_EQ(Label(*m_editor, "notice"), "Exported 6 rows to " + sPath);
  const std::string sBytes = m_folder.BytesOf(sPath);
  EXPECT_EQ(std::ranges::count(sBytes, '\n'), 7);
  EXPECT_EQ(RowsOf(*m_editor), 3) << "the grid keeps its rows";
}

/// Has work done on a thread of its own, as a host does.
class BesideTheWindow final : public platform::LongOperation {
 public:
  void Run(const platform::Text& sWhat, const std::function<void(std::stop_token)>& work) override {
    sDone += sWhat + "\n";
    stop = {};
    if (bCancel) stop.request_stop();
    std::exception_ptr failed;
    if (before) before();
    std::thread([&] {
      try {
        work(stop.get_token());
      } catch (...) {
        failed = std::current_exception();
      }
    }).join();
    if (failed) std::rethrow_exception(failed);
  }
  platform::Text sDone;
  std::stop_source stop;  ///< of the run that is going on
  std::function<void()> before;
  bool bCancel = false;
};

class export_end : public GridExportTest {
 protected:
  export_end() {
    GridServices services = Services();
    services.longOperation = m_operation;
    m_editor = std::make_unique<TableEditor>(std::move(services));
    m_editor->Connection(m_connection);
    m_editor->TableQuery(m_query);
    m_editor->Requery();
    Show(*m_editor);
    m_operation->before = [this] { bWasThere = std::filesystem::exists(m_sPath); };
    m_server.whileRunning = [this] {
      if (m_server.sink) m_server.sink(Plant(4));
    };
  }
  std::shared_ptr<BesideTheWindow> m_operation = std::make_shared<BesideTheWindow>();
  std::string m_sPath = m_folder.Path("out.csv");
  bool bWasThere = true;
};

TEST_F(export_end, is_beside_the_window_wherever_the_rows_come_from) {
  ViewOf(*m_editor)->SelectRow(1);
  for (const char* sChoice : {"m_optShown", "m_optSelected", "m_optAll"}) {
    bWasThere = true;
    m_operation->sDone.clear();
    Export(m_sPath, [&](ExportDialog& dialog) { Take(dialog, sChoice); });
    const platform::Text sEnd = "Writing the end of the file\n";
    EXPECT_EQ(m_operation->sDone,
              sChoice == platform::Text("m_optAll") ? sEnd : "Writing rows\n" + sEnd);
    EXPECT_FALSE(bWasThere) << sChoice;
    EXPECT_TRUE(std::filesystem::exists(m_sPath)) << sChoice;
    std::filesystem::remove(m_sPath);
  }
}

TEST_F(export_end, that_is_cancelled_leaves_no_file) {
  m_operation->bCancel = true;
  Export(m_sPath, [](ExportDialog& dialog) { Take(dialog, "m_optShown"); });
  EXPECT_EQ(Label(*m_editor, "notice"), "The export was cancelled; no file was written.");
  EXPECT_EQ(m_folder.FilesInFolder(), 0U);
}

TEST_F(export_end, that_fails_is_told_as_any_other_failure) {
  // A folder takes the name while the end is being written.
  m_operation->before = [this] { std::filesystem::create_directory(m_sPath); };
  Export(m_sPath, [](ExportDialog& dialog) { Take(dialog, "m_optShown"); });
  EXPECT_NE(m_sTold.find("stands for a folder, a device or the like and no file"),
            std::string::npos)
      << m_sTold;
}

TEST_F(export_end, finds_the_grid_gone_and_touches_nothing_of_it) {
  m_operation->before = [this] { m_editor.reset(); };
  Export(m_sPath, [](ExportDialog& dialog) { Take(dialog, "m_optShown"); });
  EXPECT_EQ(m_folder.BytesOf(m_sPath).substr(0, 6), "Number") << "what was asked for is done";
}

TEST_F(GridExportTest, tells_how_many_rows_were_written_so_far) {
  std::string sTold;
  m_server.whileRunning = [&] {
    if (!m_server.sink) return;
    m_server.sink(Plant(4));
    EXPECT_TRUE(tests::Until([&] { return !Label(*m_editor, "notice").empty(); }));
    sTold = Label(*m_editor, "notice");
  };
  Export(m_folder.Path("out.csv"), [](ExportDialog& dialog) { Take(dialog, "m_optAll"); });
  EXPECT_EQ(sTold, "Exporting: 4 rows written so far\u2026");
}

TEST_F(export_end, of_rows_that_are_shown_is_not_come_to_when_it_is_cancelled_between_two) {
  const auto window = std::this_thread::get_id();
  platform::RowIndex last = 0;
  bool bWriting = false;
  const auto many = std::make_shared<FakeRecordset>(5'000, [&](auto row, auto) -> platform::Value {
    if (std::this_thread::get_id() == window) return row;
    bWriting = true;
    last = row;
    if (row == 40) m_operation->stop.request_stop();
    return row;
  });
  many->Column("Number", platform::DataType::BigInt);
  m_server.answer = many;
  m_server.whileRunning = nullptr;
  m_editor->Requery();
  for (const char* sChoice : {"m_optShown", "m_optSelected"}) {
    ViewOf(*m_editor)->selectAll();
    bWriting = false;
    Export(m_sPath, [&](ExportDialog& dialog) { Take(dialog, sChoice); });
    EXPECT_TRUE(bWriting) << "rows are read beside the window";
    EXPECT_EQ(last, 40) << sChoice;
    EXPECT_EQ(Label(*m_editor, "notice"), "The export was cancelled; no file was written.");
    EXPECT_EQ(m_folder.FilesInFolder(), 0U);
  }
}

TEST_F(GridExportTest, marks_what_the_row_limit_cut) {
  std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(true);
  Export(m_folder.Path("out.csv"), [](ExportDialog& dialog) { Take(dialog, "m_optShown"); });
  const std::string sPath = m_folder.Path("out (first 3 rows).csv");
  EXPECT_EQ(std::ranges::count(m_folder.BytesOf(sPath), '\n'), 4);
  EXPECT_EQ(m_folder.FilesInFolder(), 1U);
  EXPECT_EQ(Label(*m_editor, "notice"),
            "Exported only the first 3 rows, as the source has more: " + sPath);
}

TEST_F(export_end, marks_rows_that_go_on_coming_until_the_last_of_these_is_written) {
  const auto window = std::this_thread::get_id();
  std::shared_ptr<FakeRecordset> rs;
  rs = std::make_shared<FakeRecordset>(3, [&](auto row, auto) -> platform::Value {
    const bool bExporting = std::this_thread::get_id() != window;
    if (bExporting) rs->Rows(5).State(platform::FetchState::Complete);
    return row;
  });
  rs->Column("Number", platform::DataType::BigInt);
  m_server.answer = rs;
  m_server.whileRunning = nullptr;
  m_editor->Requery();
  rs->State(platform::FetchState::Running);
  Export(m_folder.Path("out.csv"), [](ExportDialog& dialog) { Take(dialog, "m_optShown"); });
  const std::string sPath = m_folder.Path("out (first 3 rows).csv");
  EXPECT_EQ(m_folder.BytesOf(sPath), "Number\r\n0\r\n1\r\n2\r\n");
  EXPECT_EQ(Label(*m_editor, "notice"),
            "Exported only the first 3 rows, as the source has more: " + sPath);
}

TEST_F(GridExportTest, marks_a_selection_of_all_rows_that_the_row_limit_cut_and_no_other) {
  std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(true);
  ViewOf(*m_editor)->selectAll();
  Export(m_folder.Path("out.csv"), [](ExportDialog& dialog) { Take(dialog, "m_optSelected"); });
  const std::string sPath = m_folder.Path("out (first 3 rows).csv");
  EXPECT_EQ(std::ranges::count(m_folder.BytesOf(sPath), '\n'), 4);
  EXPECT_EQ(Label(*m_editor, "notice"),
            "Exported only the first 3 rows, as the source has more: " + sPath);
  const auto* model = ViewOf(*m_editor)->model();
  ViewOf(*m_editor)->selectionModel()->select(
      QItemSelection(model->index(1, 0), model->index(2, 3)), QItemSelectionModel::ClearAndSelect);
  Export(m_folder.Path("part.csv"), [](ExportDialog& dialog) { Take(dialog, "m_optSelected"); });
  EXPECT_EQ(Label(*m_editor, "notice"), "Exported 2 rows to " + m_folder.Path("part.csv"));
}

TEST_F(GridExportTest, leaves_no_file_when_it_was_cancelled_or_failed) {
  m_server.whileRunning = [] {
    throw platform::Failure(platform::failure::kCancelled, "The statement was cancelled.");
  };
  Export(m_folder.Path("out.csv"), [](ExportDialog& dialog) { Take(dialog, "m_optAll"); });
  EXPECT_EQ(Label(*m_editor, "notice"), "The export was cancelled; no file was written.");
  EXPECT_EQ(m_sTold, "");
  m_server.whileRunning = Refuse;
  Export(m_folder.Path("out.csv"), [](ExportDialog& dialog) { Take(dialog, "m_optAll"); });
  EXPECT_EQ(m_sTold, "There is no such column; correct it.");
  EXPECT_EQ(m_folder.FilesInFolder(), 0U);
}

TEST_F(GridExportTest, tells_in_a_sentence_whatever_ends_it) {
  const auto all = [](ExportDialog& dialog) { Take(dialog, "m_optAll"); };
  m_server.whileRunning = [] { throw std::bad_alloc(); };
  Export(m_folder.Path("out.csv"), all);
  EXPECT_EQ(m_sTold,
            "There is not enough memory for the rows; show fewer of them or close other programs.");
  m_server.whileRunning = [] {
    throw std::filesystem::filesystem_error("rename", std::make_error_code(std::errc::io_error));
  };
  Export(m_folder.Path("out.csv"), all);
  EXPECT_EQ(m_sTold, "The file cannot be used: Input/output error; choose another name or folder.");
  EXPECT_EQ(m_folder.FilesInFolder(), 0U);
}

// What is closed beneath the dialogs takes them with it.
TEST_F(GridExportTest, ends_with_its_window_whatever_is_asked_then) {
  bool bAsked = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    QWidget* dialog = QApplication::activeModalWidget();
    if (auto* choice = dynamic_cast<ExportDialog*>(dialog)) {
      choice->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    } else if (qobject_cast<QFileDialog*>(dialog) != nullptr) {
      bAsked = true;
      timer.stop();
      m_editor.reset();
    }
  });
  timer.start(5);
  QTest::keyClick(ViewOf(*m_editor), Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(bAsked);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_EQ(m_folder.FilesInFolder(), 0U);
}

TEST_F(GridExportTest, replaces_a_file_only_after_a_question) {
  const std::string sPath = m_folder.Path("out.csv");
  Folder::WriteBytes(sPath, "old");
  QStringList asked;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return;
    asked << box->text();
    box->button(QMessageBox::No)->click();
    // The name is asked for again.
    QTimer::singleShot(0, [] {
      if (auto* files = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
        files->reject();
      }
    });
  });
  timer.start(5);
  bool bNamed = false;
  QTimer names;
  QObject::connect(&names, &QTimer::timeout, [&] {
    QWidget* dialog = QApplication::activeModalWidget();
    if (auto* choice = dynamic_cast<ExportDialog*>(dialog)) {
      choice->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    } else if (auto* files = qobject_cast<QFileDialog*>(dialog); files && !bNamed) {
      bNamed = true;
      files->findChild<QLineEdit*>()->setText(QString::fromStdString(sPath));
      QTest::keyClick(files->findChild<QLineEdit*>(), Qt::Key_Return);
    }
  });
  names.start(5);
  QTest::keyClick(ViewOf(*m_editor), Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
  ASSERT_EQ(asked.size(), 1);
  EXPECT_TRUE(asked.front().contains("out.csv")) << asked.front().toStdString();
  EXPECT_EQ(m_folder.BytesOf(sPath), "old");
}

TEST_F(GridExportTest, names_the_table_in_sql) {
  m_query->Table("Da\"ta");
  m_editor->TableQuery(m_query);
  const std::string sPath = m_folder.Path("out.sql");
  Export(sPath, [](ExportDialog& dialog) {
    Take(dialog, "m_optShown");
    QTest::keyClick(dialog.findChild<QWidget*>("m_cboForm"), Qt::Key_End);
  });
  EXPECT_EQ(m_sSuggested, "Da_ta.sql");
  EXPECT_EQ(m_folder.BytesOf(sPath).substr(0, 34), "INSERT INTO \"Machine\"..\"Da\"\"ta\" (\"");
}

TEST_F(GridExportTest, cannot_fetch_over_a_closed_connection) {
  m_connection->Close();
  bool bOffered = true;
  Export(m_folder.Path("out.csv"), [&](ExportDialog& dialog) {
    bOffered = dialog.findChild<QRadioButton*>("m_optAll")->isEnabled();
  });
  EXPECT_FALSE(bOffered);
}

}  // namespace
}  // namespace orvane::controls
