// A program that is killed between any two steps of what it does with rows: one that it sends is at
// the server as it was or as it was to become, rows that are deleted together are all there or all
// gone, and an export is under its name whole or not at all.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>
#include <set>
#include <thread>

#include "controls/editing/row_outbox.h"
#include "controls/grid/grid_statements.h"
#include "exports/row_export.h"
#include "tests/controls/catalog_faults.h"
#include "tests/controls/edited_table.h"
#include "tests/controls/on_engines.h"
#include "tests/fakes/killed_program.h"
#include "tests/files/temporary_folder.h"

namespace orvane::controls {
namespace {

using platform::RecordsetPtr;
using platform::RowIndex;
using platform::Text;
using tests::Difference;
using tests::EditedTable;
using tests::Ended;

constexpr const char* kRowsInOrder = "SELECT * FROM P..T ORDER BY id";

class killed_rows : public testing::Test, public tests::OnEngines {
 protected:
  killed_rows() {
    m_server->Run("CREATE TABLE P..T (id INTEGER PRIMARY KEY, a TEXT, b TEXT)");
    m_server->Run("INSERT INTO P..T VALUES (1, '0', '0'), (2, 'other', NULL)");
    m_server->Run("INSERT INTO P..Data (Tag, Timestamp, Value) VALUES ('T1', '*', 1.5)");
    m_sData = m_server->Read("SELECT * FROM P..Data");
  }
  Text Stored() { return Read(kRowsInOrder); }
  Text Stored(const Text& sWhere) {
    return Read("SELECT * FROM P..T WHERE " + sWhere + " ORDER BY id");
  }
  /// A file that is open here would be in use in the programs that are killed.
  Text Read(const Text& sSql) {
    if (!Differs(Difference::kChoosesItsPlaces)) return m_server->Read(sSql);
    if (!m_reader) m_reader = m_server->Connect();
    return provider::Rows(*m_server->Run(m_reader, sSql));
  }

  /// Does the work before each of its steps once more in a process that is killed there, until one
  /// gets to its end. Gives how many were killed.
  template <class Work, class Check>
  int KillAtEachStep(Work&& work, Check&& check) {
    const bool bServer = Differs(Difference::kChoosesItsPlaces);
    const tests::Steps steps{bServer ? &tests::TalksToServer : &tests::ChangesFiles, true};
    for (int nStep = 1;; ++nStep) {
      const Ended ended = tests::KilledBefore(
          nStep, [&] { work(nStep); }, steps);
      if (ended == Ended::Untraceable) {
        ADD_FAILURE() << "this machine lets no process be traced";
        return 0;
      }
      m_faults->AwaitGone();
      SCOPED_TRACE("killed before step " + std::to_string(nStep));
      check(nStep, ended == Ended::Killed);
      EXPECT_EQ(Read("SELECT * FROM P..Data"), m_sData);
      if (ended != Ended::Killed || HasFailure()) return nStep - 1;
    }
  }

  std::shared_ptr<tests::HistorianServer> m_server = tests::HistorianServer::Make(GetParam());
  const std::unique_ptr<tests::CatalogFaults> m_faults =
      tests::CatalogFaults::Of(GetParam(), m_server->Server());
  platform::ConnectionPtr m_reader;
  Text m_sData;
};

ORVANE_ON_ENGINES(killed_rows);

// Both cells get the same number in one send; a row of two different ones would be half a change.
TEST_P(killed_rows, an_edited_one_is_as_it_was_or_as_it_was_to_become) {
  std::set<Text> seen;
  Text sBefore = "0";
  const int nKilled = KillAtEachStep(
      [&](int nStep) {
        const EditedTable mine(m_server, "T", {}, kRowsInOrder);
        mine.rs->ValueAt(0, 1, std::to_string(nStep));
        mine.rs->ValueAt(0, 2, std::to_string(nStep));
        tests::CountFromHere();
        mine.Store(0);
      },
      [&](int nStep, bool bKilled) {
        const Text sNumber = std::to_string(nStep);
        const Text sNew = "1|" + sNumber + "|" + sNumber + "\n2|other|\n";
        const Text sNow = Stored();
        EXPECT_TRUE(sNow == sNew || sNow == "1|" + sBefore + "|" + sBefore + "\n2|other|\n")
            << sNow;
        if (!bKilled) {
          EXPECT_EQ(sNow, sNew);
        }
        seen.insert(sNow == sNew ? "new" : "old");
        if (sNow == sNew) sBefore = sNumber;
      });
  EXPECT_EQ(seen.size(), 2U);
  EXPECT_GT(nKilled, 6);
}

TEST_P(killed_rows, an_added_one_is_there_whole_or_not_at_all) {
  std::set<Text> seen;
  const int nKilled = KillAtEachStep(
      [&](int nStep) {
        const EditedTable mine(m_server, "T", {}, kRowsInOrder);
        const RowIndex row = mine.rs->AddNew();
        mine.rs->ValueAt(row, 0, 100 + nStep);
        mine.rs->ValueAt(row, 1, "new");
        mine.rs->ValueAt(row, 2, std::to_string(nStep));
        tests::CountFromHere();
        mine.Store(row);
      },
      [&](int nStep, bool bKilled) {
        const Text sKey = std::to_string(100 + nStep);
        const Text sWhole = sKey + "|new|" + std::to_string(nStep) + "\n";
        const Text sNow = Stored("id = " + sKey);
        EXPECT_TRUE(sNow == sWhole || (bKilled && sNow.empty())) << sNow;
        EXPECT_EQ(Stored("id < 100"), "1|0|0\n2|other|\n");
        seen.insert(sNow.empty() ? "old" : "new");
      });
  EXPECT_EQ(seen.size(), 2U);
  EXPECT_GT(nKilled, 6);
}

TEST_P(killed_rows, those_deleted_together_are_all_there_or_all_gone) {
  const Text sThree = "11|a|a\n12|b|\n13|c|c\n";
  const auto refill = [&] {
    m_server->Run("DELETE FROM P..T WHERE id > 10");
    m_server->Run("INSERT INTO P..T VALUES (11, 'a', 'a'), (12, 'b', NULL), (13, 'c', 'c')");
  };
  refill();
  std::set<Text> seen;
  const int nKilled = KillAtEachStep(
      [&](int /*nStep*/) {
        const EditedTable mine(m_server, "T", {}, "SELECT * FROM P..T ORDER BY id DESC");
        const RowIndex rows[] = {0, 1, 2};
        for (const RowIndex row : rows) mine.rs->Delete(row);
        tests::CountFromHere();
        RowChanges(mine.cn, mine.objects, mine.table, 10).Delete(*mine.rs, rows);
      },
      [&](int /*nStep*/, bool bKilled) {
        const Text sNow = Stored("id > 10");
        EXPECT_TRUE(sNow.empty() || (bKilled && sNow == sThree)) << sNow;
        EXPECT_EQ(Stored("id < 10"), "1|0|0\n2|other|\n");
        seen.insert(sNow.empty() ? "new" : "old");
        if (sNow.empty()) refill();
      });
  EXPECT_EQ(seen.size(), 2U);
  EXPECT_GT(nKilled, 4);
}

// As a grid sends a page that was pasted over the last row and the empty one behind it.
TEST_P(killed_rows, those_of_a_pasted_page_are_each_as_they_were_or_as_they_were_to_become) {
  std::set<std::size_t> seen;
  Text sSecond = "other|";
  const int nKilled = KillAtEachStep(
      [&](int nStep) {
        const EditedTable mine(m_server, "T", {}, kRowsInOrder);
        GridStatements statements(m_server, nullptr);
        statements.Connection(mine.cn);
        EditSession session([](const auto&) {});
        session.Show(mine.rs, UpdatabilityOf(*mine.cn, {"P", "T", {}, {}}, *mine.rs), ValueInput(),
                     {});
        RowOutbox outbox(session,
                         {[&](const auto& rs, RowIndex row, const auto& can) {
                            return statements.Send(rs, row, can, 10);
                          },
                          [&](const auto& rs, const auto& rows, const auto& can) {
                            return statements.Delete(rs, rows, can, 10);
                          }},
                         {}, nullptr);
        const Text sNumber = std::to_string(nStep);
        const RowIndex last = mine.rs->RecordCount();
        session.Edit(std::vector<CellEdit>{{1, 1, sNumber},
                                           {1, 2, sNumber},
                                           {last, 0, 100 + nStep},
                                           {last, 1, sNumber},
                                           {last, 2, sNumber}});
        tests::CountFromHere();
        outbox.SendAll();
      },
      [&](int nStep, bool bKilled) {
        const Text sNumber = std::to_string(nStep);
        const Text sPasted = sNumber + "|" + sNumber;
        const Text sKey = std::to_string(100 + nStep);
        // They go one behind the other.
        const Text sPastedOver = "1|0|0\n2|" + sPasted + "\n";
        const std::vector<Text> states = {"1|0|0\n2|" + sSecond + "\n", sPastedOver,
                                          sPastedOver + sKey + "|" + sPasted + "\n"};
        const Text sNow = Stored("id < 100 OR id = " + sKey);
        const auto found = std::ranges::find(states, sNow);
        ASSERT_NE(found, states.end()) << sNow;
        const auto nStored = static_cast<std::size_t>(found - states.begin());
        if (!bKilled) {
          EXPECT_EQ(nStored, 2U);
        }
        seen.insert(nStored);
        if (nStored > 0) sSecond = sPasted;
      });
  EXPECT_EQ(seen.size(), 3U);
  EXPECT_GT(nKilled, 12);
}

TEST_P(killed_rows, of_an_export_leave_the_old_file_or_the_new_one_and_nothing_beside_the_next) {
  struct Folder : files::FolderTest {
    using FolderTest::BytesOf;
    using FolderTest::FilesInFolder;
    using FolderTest::Path;
    using FolderTest::WriteBytes;
    void TestBody() override {}
  };
  // Enough for several pieces of rows and for several writes into the file.
  m_server->Run("CREATE TABLE P..Large (id INTEGER PRIMARY KEY, a TEXT)");
  m_server->Run(
      "INSERT INTO P..Large WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i "
      "< 12000) SELECT i, 'a row of the table with a text of some length' FROM n");
  const Folder folder;
  const std::string sPath = folder.Path("rows.csv");
  const auto exportRows = [&] {
    GridStatements statements(m_server, nullptr);
    statements.Connection(m_server->Connect());
    tests::CountFromHere();
    exports::RowExport target({}, sPath);
    statements.FetchAgain("SELECT * FROM P..Large ORDER BY id",
                          [&](const RecordsetPtr& rows) { target.Rows(*rows); });
    target.Finish(false);
  };
  exportRows();
  const std::string sWhole = Folder::BytesOf(sPath);
  ASSERT_EQ(std::ranges::count(sWhole, '\n'), 12'001);
  int nStep = 1;
  std::set<std::size_t> seen;
  for (Ended ended = Ended::Killed; ended == Ended::Killed; ++nStep) {
    SCOPED_TRACE("killed before step " + std::to_string(nStep));
    Folder::WriteBytes(sPath, "old");
    ended = tests::KilledBefore(nStep, exportRows, {&tests::ChangesFiles, true});
    ASSERT_NE(ended, Ended::Untraceable) << "this machine lets no process be traced";
    const std::string sBytes = Folder::BytesOf(sPath);
    ASSERT_TRUE(sBytes == sWhole || (ended == Ended::Killed && sBytes == "old"))
        << sBytes.size() << " bytes";
    EXPECT_LE(folder.FilesInFolder(), 2U);
    seen.insert(folder.FilesInFolder());
  }
  // What was left beside it went with the next one.
  EXPECT_EQ(folder.FilesInFolder(), 1U);
  EXPECT_EQ(seen.size(), 2U) << "one was killed that had its hidden name already";
  EXPECT_GT(nStep, 4);
}

// At any moment, also within a step.
TEST_P(killed_rows, an_edited_one_is_whole_whenever_its_program_is_killed) {
  constexpr int kKills = 12;
  std::mt19937 random(11);
  for (int nKill = 0; nKill < kKills; ++nKill) {
    int started[2];
    ASSERT_EQ(pipe(started), 0);
    const pid_t child = fork();
    if (child == 0) {
      try {
        const EditedTable mine(m_server, "T", {}, kRowsInOrder);
        for (int n = 0;; ++n) {
          const Text sNumber = std::to_string(nKill) + "." + std::to_string(n);
          mine.rs->ValueAt(0, 1, sNumber);
          mine.rs->ValueAt(0, 2, sNumber);
          mine.Store(0);
          if (n == 0 && write(started[1], "x", 1) != 1) _exit(1);
        }
      } catch (...) {
      }
      _exit(1);
    }
    close(started[1]);
    char c = 0;
    ASSERT_EQ(read(started[0], &c, 1), 1) << "the child did not send its first row";
    close(started[0]);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
    kill(child, SIGKILL);
    int nStatus = 0;
    waitpid(child, &nStatus, 0);
    ASSERT_TRUE(WIFSIGNALED(nStatus));
    m_faults->AwaitGone();
    EXPECT_EQ(m_server->Read("SELECT CASE WHEN a = b AND a LIKE '" + std::to_string(nKill) +
                             ".%' THEN 'whole' END FROM P..T WHERE id = 1"),
              "whole\n");
  }
}

}  // namespace
}  // namespace orvane::controls
