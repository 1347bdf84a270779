// Large blocks pasted and many rows refreshed under a host that waits: the window goes on, what
// is waited for is told, and a cancel loses nothing.
#include <atomic>
#include <functional>
#include <thread>
#include <utility>

#include "controls/editing/cell_query_dialog.h"
#include "platform/long_operation.h"
#include "tests/controls/editing_fixture.h"

namespace orvane::controls {
namespace {

using platform::Text;

/// Handles events while a worker works, as a host does; cancels the wait that a test names.
class WaitingHost final : public platform::LongOperation {
 public:
  void Run(const Text& sWhat, const std::function<void(std::stop_token)>& work) override {
    sWaited += sWhat + "\n";
    std::exception_ptr failed;
    std::atomic<bool> bDone = false;
    std::stop_source stop;
    if (sWhat == sCancelled && nRoundsUntilCancel == 0) stop.request_stop();
    std::jthread worker([&] {
      try {
        work(stop.get_token());
      } catch (...) {
        failed = std::current_exception();
      }
      bDone = true;
    });
    int nHandled = 0;
    if (const auto meanwhile = std::exchange(whileRunning, nullptr)) meanwhile(sWhat);
    while (!bDone) {
      if (sWhat == sCancelled && nHandled == nRoundsUntilCancel) stop.request_stop();
      if (stop.stop_requested()) {
        std::this_thread::yield();
        continue;
      }
      QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
      ++nHandled;
    }
    worker.join();
    nRounds = nHandled;
    if (failed) std::rethrow_exception(failed);
  }
  Text sWaited;
  Text sCancelled;
  int nRoundsUntilCancel = 3;
  int nRounds = 0;
  std::function<void(const Text& sWhat)> whileRunning;  ///< called once
};

class sliced_pastes : public EditingFixture {
 protected:
  static constexpr int kRows = 12'000;

  sliced_pastes() {
    m_server->Run("CREATE TABLE P..Many (Id INTEGER PRIMARY KEY, Name TEXT)");
    m_server->Run(
        "INSERT INTO P..Many WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 "
        "FROM n LIMIT " +
        std::to_string(kRows) + ") SELECT i, 'n' FROM n");
    m_query->MaxRows(0);
    m_longOperation = m_host;
    Open("Many");
  }
  void PasteNames() {
    QGuiApplication::clipboard()->setText(QString("pasted\n").repeated(kRows));
    GoTo(0, 1);
    m_host->sWaited.clear();
    Press(Qt::Key_V, Qt::ControlModifier);
  }
  std::shared_ptr<WaitingHost> m_host = std::make_shared<WaitingHost>();
};

TEST_F(sliced_pastes, are_read_beside_the_window_and_laid_in_slices) {
  PasteNames();
  EXPECT_EQ(m_host->sWaited, "Reading what is to be pasted\nChanging cells\n");
  EXPECT_GE(m_host->nRounds, kRows / 2'000) << "events were handled between the slices";
  EXPECT_EQ(Label("pending"), "12,000 rows not stored");
  EXPECT_EQ(Cell(kRows - 1, 1), "pasted");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(sliced_pastes, that_are_cancelled_change_nothing_and_say_so) {
  // The clipboard may be read before a few rounds are over.
  for (const auto& [sWhat, nRounds] :
       {std::pair{"Changing cells", 3}, std::pair{"Reading what is to be pasted", 0}}) {
    m_host->sCancelled = sWhat;
    m_host->nRoundsUntilCancel = nRounds;
    PasteNames();
    EXPECT_EQ(Label("pending"), "") << sWhat;
    EXPECT_EQ(Label("notice"), "Nothing was pasted. It was cancelled.") << sWhat;
    EXPECT_EQ(Cell(0, 1), "n");
  }
}

TEST_F(sliced_pastes, of_a_query_that_are_cancelled_leave_the_first_value_and_say_so) {
  GoTo(0, 1);
  m_editor->CellQuery();
  auto* dialog = Window()->findChild<CellQueryDialog*>();
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QPlainTextEdit*>("statement")
      ->setPlainText("SELECT 'filled' FROM P..Many LIMIT 9999");
  dialog->findChild<QPushButton*>("run")->click();
  Settle();
  m_host->sCancelled = "Changing cells";
  m_host->nRoundsUntilCancel = 0;
  Answer("Fill Down");
  EXPECT_EQ(Label("notice"), "The cells beneath stay as they are: it was cancelled.");
  EXPECT_EQ(Cell(0, 1), "filled");
  EXPECT_EQ(Cell(1, 1), "n");
  EXPECT_EQ(Label("pending"), "1 row not stored");
}

TEST_F(sliced_pastes, may_see_the_end_of_their_grid) {
  // Whoever hosts the grid takes it away while another thread reads the block.
  m_host->whileRunning = [&](const Text&) { m_editor.reset(); };
  QGuiApplication::clipboard()->setText(QString("pasted\n").repeated(kRows));
  GoTo(0, 1);
  RowView& rows = Rows();
  QTest::keyClick(&rows, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(m_host->sWaited, "Reading what is to be pasted\n");
  EXPECT_EQ(m_editor, nullptr);
  Settle();
}

TEST_F(sliced_pastes, are_laid_over_rows_fetched_anew_in_slices) {
  PasteNames();
  m_host->sWaited.clear();
  m_editor->Requery();
  EXPECT_EQ(m_host->sWaited,
            "Keeping the rows that are not stored\nLooking for the rows that are not stored\n"
            "Laying what is not stored over the rows\nLooking for the rows that are not stored\n");
  EXPECT_EQ(Label("pending"), "12,000 rows not stored");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "") << "with the steps that can be undone";
}

TEST_F(sliced_pastes, are_kept_under_a_wait_when_the_view_is_hidden) {
  PasteNames();
  m_host->sWaited.clear();
  platform::Long lState = 0;
  const auto rs = m_editor->DetachRecordset(lState);
  EXPECT_EQ(m_host->sWaited, "Keeping the rows that are not stored\n");
  m_editor->AttachRecordset({}, 0);
  EXPECT_EQ(Label("pending"), "");
  m_editor->AttachRecordset(rs, lState);
  EXPECT_EQ(Label("pending"), "12,000 rows not stored");
}

TEST_F(sliced_pastes, many_rows_are_deleted_with_the_window_going_on) {
  const auto deleteAll = [this] {
    Rows().selectAll();
    m_host->sWaited.clear();
    Press(Qt::Key_Delete);
    Answer("Delete");
  };
  m_host->sCancelled = "Marking rows";
  deleteAll();
  EXPECT_EQ(m_host->sWaited, "Marking rows\nTaking back what was changed\n");
  EXPECT_EQ(Label("notice"), "Nothing was deleted: it was cancelled.");
  EXPECT_EQ(Label("pending"), "");
  m_host->sCancelled.clear();
  deleteAll();
  EXPECT_EQ(m_host->sWaited,
            "Marking rows\nReading the rows to be deleted\nTaking the deleted rows out\n");
  EXPECT_EQ(Rows().Model().Places(), 0);
  EXPECT_EQ(Stored("SELECT count(*) FROM P..Many"), "0");
}

TEST_F(sliced_pastes, are_kept_where_the_laying_is_cancelled) {
  PasteNames();
  m_host->sCancelled = "Laying what is not stored over the rows";
  EXPECT_THROW(m_editor->Requery(), platform::Failure);
  EXPECT_EQ(Label("pending"), "12,000 rows not stored");
  EXPECT_EQ(Cell(7, 1), "pasted");
  m_host->sCancelled.clear();
  m_editor->Requery();
  EXPECT_EQ(Label("pending"), "12,000 rows not stored");
  EXPECT_EQ(Cell(7, 1), "pasted");
}

}  // namespace
}  // namespace orvane::controls
