// Exports of all rows of a real historian, by the key and the dialogs: of a table and of a query,
// with and without the row limit, cancelled, on a full disk, and from a server that dies in the
// middle. A file is there whole or not at all.
#include <sys/resource.h>

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QRadioButton>
#include <QTimer>

#include "controls/grid/export_dialog.h"
#include "controls/grid/query_results.h"
#include "platform/long_operation.h"
#include "tests/controls/catalog_faults.h"
#include "tests/controls/editing_fixture.h"
#include "tests/controls/on_engines.h"
#include "tests/controls/watched_objects.h"
#include "tests/files/temporary_folder.h"

namespace orvane::controls {
namespace {

using platform::Text;

constexpr int kAllRows = 12'000;
constexpr int kLimit = 100;

/// A host that runs the work here and lets somebody stop it from within.
class StoppingHost final : public platform::LongOperation {
 public:
  void Run(const Text& /*sWhat*/, const std::function<void(std::stop_token)>& work) override {
    stop = std::stop_source();
    work(stop.get_token());
  }
  std::stop_source stop;
};

class whole_exports : public EditingFixture, public tests::OnEngines {
 protected:
  whole_exports() : EditingFixture(tests::HistorianServer::Make(GetParam())) {
    m_server->longOperation = m_host;
    m_server->Run("CREATE TABLE P..Large (id INTEGER PRIMARY KEY, a TEXT, b DOUBLE)");
    m_server->Run(
        "INSERT INTO P..Large WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE "
        "i < 12000) SELECT i, 'a row of the table with a text of some length', i * 0.5 FROM n");
  }
  GridServices Watched() {
    GridServices services = Services();
    services.objects = m_objects;
    return services;
  }
  void OpenTable() {
    m_cn = m_server->Connect();
    m_query->Catalog("P");
    m_query->Table("Large");
    m_query->MaxRows(kLimit);
    m_editor = std::make_unique<controls::TableEditor>(Watched());
    m_editor->Connection(m_cn);
    m_editor->TableQuery(m_query);
    m_editor->Requery();
    Show();
  }
  void OpenQuery() {
    m_cn = m_server->Connect();
    m_results = std::make_unique<controls::QueryResults>(Watched());
    m_results->Connection(m_cn);
    m_results->QueryName("Large ones");
    m_results->SqlText("SELECT id AS Number, a FROM P..Large ORDER BY id DESC");
    m_results->MaxRows(kLimit);
    m_results->Execute();
    Show();
  }
  QWidget* Window() override {
    return m_results ? static_cast<QWidget*>(m_results->Window()) : EditingFixture::Window();
  }

  void Export(const char* sChoice) {
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      QWidget* const dialog = QApplication::activeModalWidget();
      if (auto* choice = dynamic_cast<ExportDialog*>(dialog)) {
        choice->findChild<QRadioButton*>(sChoice)->click();
        choice->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
      } else if (auto* files = qobject_cast<QFileDialog*>(dialog)) {
        files->findChild<QLineEdit*>()->setText(QString::fromStdString(m_sPath));
        QTest::keyClick(files->findChild<QLineEdit*>(), Qt::Key_Return);
      }
    });
    // By a timer of its own: the question whether a file is to be replaced comes within the key.
    QTimer boxes;
    QObject::connect(&boxes, &QTimer::timeout, [&] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      auto* const yes = box->button(QMessageBox::Yes);
      if (yes == nullptr) m_sTold = box->text().toStdString();
      (yes != nullptr ? yes : box->button(QMessageBox::Ok))->click();
    });
    timer.start(5);
    boxes.start(5);
    QTest::keyClick(&Rows(), Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
    Settle();
  }
  /// All rows are asked for; what happens behind the second piece of them ends it.
  void ExportUntil(std::function<void()> happens) {
    Folder::WriteBytes(m_sPath, "old");
    m_objects->nPieces = 0;
    m_objects->betweenPieces = [this, happens = std::move(happens)] {
      if (m_objects->nPieces == 2) happens();
    };
    Export("m_optAll");
    EXPECT_GE(m_objects->nPieces, 2);
    m_objects->betweenPieces = nullptr;
  }
  void ExpectOldFileAlone() {
    EXPECT_EQ(Folder::BytesOf(m_sPath), "old");
    EXPECT_EQ(m_folder.FilesInFolder(), 1U);
  }
  /// And the next one has all rows.
  void ExpectWholeNow() {
    Export("m_optAll");
    const std::string sBytes = Folder::BytesOf(m_sPath);
    EXPECT_EQ(std::ranges::count(sBytes, '\n'), kAllRows + 1) << m_sTold << Label("notice");
    EXPECT_EQ(m_folder.FilesInFolder(), 1U);
  }

  struct Folder : files::FolderTest {
    using FolderTest::BytesOf;
    using FolderTest::FilesInFolder;
    using FolderTest::Path;
    using FolderTest::WriteBytes;
    void TestBody() override {}
  };
  const std::shared_ptr<StoppingHost> m_host = std::make_shared<StoppingHost>();
  const std::shared_ptr<tests::WatchedObjects> m_objects =
      std::make_shared<tests::WatchedObjects>(m_server);
  const std::unique_ptr<tests::CatalogFaults> m_faults =
      tests::CatalogFaults::Of(GetParam(), m_server->Server());
  std::unique_ptr<controls::QueryResults> m_results;
  Folder m_folder;
  const std::string m_sPath = m_folder.Path("rows.csv");
  std::string m_sTold;
};

ORVANE_ON_ENGINES(whole_exports);

TEST_P(whole_exports, of_a_table_have_all_rows_without_the_row_limit_and_say_so_with_it) {
  OpenTable();
  ASSERT_EQ(Label("rowCount"), "100 rows");
  Export("m_optAll");
  std::string sExpected = "id,a,b\r\n";
  for (int n = 1; n <= kAllRows; ++n) {
    sExpected += std::to_string(n) + ",a row of the table with a text of some length," +
                 std::to_string(n / 2) + (n % 2 == 0 ? "\r\n" : ".5\r\n");
  }
  EXPECT_TRUE(Folder::BytesOf(m_sPath) == sExpected);
  EXPECT_EQ(Label("notice"), "Exported 12,000 rows to " + m_sPath);
  EXPECT_GE(m_objects->nPieces, 3) << "they come in pieces";
  EXPECT_EQ(Rows().Model().Places(), kLimit) << "the grid keeps its rows";
  Export("m_optShown");
  const std::string sCut = m_folder.Path("rows (first 100 rows).csv");
  EXPECT_EQ(Label("notice"), "Exported only the first 100 rows, as the source has more: " + sCut);
  EXPECT_EQ(std::ranges::count(Folder::BytesOf(sCut), '\n'), kLimit + 1);
  EXPECT_EQ(m_folder.FilesInFolder(), 2U);
}

TEST_P(whole_exports, of_a_query_have_all_rows_without_the_row_limit_and_say_so_with_it) {
  OpenQuery();
  ASSERT_EQ(Label("rowCount"), "100 rows");
  Export("m_optAll");
  std::string sExpected = "Number,a\r\n";
  for (int n = kAllRows; n > 0; --n) {
    sExpected += std::to_string(n) + ",a row of the table with a text of some length\r\n";
  }
  EXPECT_TRUE(Folder::BytesOf(m_sPath) == sExpected);
  EXPECT_EQ(Label("notice"), "Exported 12,000 rows to " + m_sPath);
  EXPECT_GE(m_objects->nPieces, 3) << "they come in pieces";
  Export("m_optShown");
  EXPECT_EQ(Label("notice"), "Exported only the first 100 rows, as the source has more: " +
                                 m_folder.Path("rows (first 100 rows).csv"));
}

TEST_P(whole_exports, cancelled_in_the_middle_leave_nothing) {
  OpenTable();
  ExportUntil([this] { m_host->stop.request_stop(); });
  EXPECT_EQ(Label("notice"), "The export was cancelled; no file was written.");
  EXPECT_EQ(m_sTold, "");
  ExpectOldFileAlone();
  ExpectWholeNow();
}

// A disk that refuses more does so by the same error as one that is full.
TEST_P(whole_exports, on_a_disk_that_fills_in_the_middle_leave_what_was_there) {
  OpenTable();
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  ExportUntil([&] {
    const rlimit small{1024, before.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  });
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  EXPECT_EQ(m_sTold, "The disk of the file " + m_sPath +
                         " has no room left, so nothing was written: make room and try again.");
  ExpectOldFileAlone();
  ExpectWholeNow();
}

TEST_P(whole_exports, from_a_server_that_dies_in_the_middle_leave_what_was_there) {
  if (!Differs(tests::Difference::kChoosesItsPlaces)) {
    // A file that is open is read to its end, whatever becomes of its name.
    OpenTable();
    ExportUntil([this] { m_faults->Lose(); });
    m_faults->Find();
    EXPECT_EQ(m_sTold, "");
    EXPECT_EQ(std::ranges::count(Folder::BytesOf(m_sPath), '\n'), kAllRows + 1);
    return;
  }
  OpenTable();
  ExportUntil([this] { m_faults->Lose(); });
  EXPECT_NE(m_sTold, "");
  ExpectOldFileAlone();
  m_faults->Find();
  m_cn->Close();
  m_cn->Open({}, {}, {}, platform::kOptionUnspecified);
  ExpectWholeNow();
}

}  // namespace
}  // namespace orvane::controls
