// What goes wrong while a row is sent: what was typed stays, and the row at the server is whole.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <random>
#include <thread>

#include "tests/controls/edited_table.h"
#include "tests/provider/engines/refusing_disk.h"

namespace orvane::controls {
namespace {

namespace fs = std::filesystem;
using platform::RowState;
using platform::Text;
using platform::Value;
using provider::FailureOf;

class RowFaultsTest : public testing::Test {
 protected:
  RowFaultsTest() {
    m_server->Run("CREATE TABLE P..T (id INTEGER PRIMARY KEY, a TEXT, b TEXT)");
    m_server->Run("INSERT INTO P..T VALUES (1, '0', '0')");
    m_mine.emplace(m_server, "T");
    m_mine->rs->ValueAt(0, 1, "mine");
  }
  // The failure, and that what was typed is still to be sent.
  Text Failing() {
    const Text sFailure = FailureOf([&] { m_mine->Store(0); });
    EXPECT_EQ(m_mine->rs->StateAt(0), RowState::Edited);
    EXPECT_EQ(m_mine->rs->ValueAt(0, 1), Value("mine"));
    EXPECT_EQ(m_mine->rs->OriginalAt(0, 1), Value("0"));
    return sFailure;
  }
  // Once it is mended, the same row is sent again.
  void ExpectStoredNow() {
    EXPECT_FALSE(m_mine->Store(0));
    EXPECT_EQ(m_server->Read("SELECT * FROM P..T"), "1|mine|0\n");
  }

  std::shared_ptr<tests::HistorianServer> m_server = tests::HistorianServer::Make();
  std::optional<tests::EditedTable> m_mine;
};

TEST_F(RowFaultsTest, a_locked_catalog) {
  {
    tests::Raw other(m_server->CatalogFile());
    other.Run("BEGIN EXCLUSIVE");
    EXPECT_EQ(Failing(),
              "3803: The catalog \"P\" is locked by another program: try again when that is done.");
  }
  ExpectStoredNow();
}

TEST_F(RowFaultsTest, a_catalog_that_is_gone) {
  const fs::path aside = m_server->CatalogFile().string() + ".aside";
  fs::rename(m_server->CatalogFile(), aside);
  EXPECT_TRUE(Failing().starts_with("3800: "));
  EXPECT_FALSE(fs::exists(m_server->CatalogFile()));
  fs::rename(aside, m_server->CatalogFile());
  ExpectStoredNow();
}

TEST_F(RowFaultsTest, a_catalog_that_was_replaced) {
  const fs::path aside = m_server->CatalogFile().string() + ".aside";
  fs::rename(m_server->CatalogFile(), aside);
  std::ofstream(m_server->CatalogFile()) << "no database, but a text of some length";
  EXPECT_TRUE(Failing().starts_with("3802: "));
  fs::remove(m_server->CatalogFile());
  tests::Raw(m_server->CatalogFile())
      .Run("CREATE TABLE T (id INTEGER PRIMARY KEY, a TEXT, b TEXT)");
  const auto conflict = m_mine->Store(0);
  ASSERT_TRUE(conflict);
  EXPECT_TRUE(conflict->IsGone());
  EXPECT_EQ(m_mine->rs->ValueAt(0, 1), Value("mine"));
  fs::rename(aside, m_server->CatalogFile());
  ExpectStoredNow();
}

TEST_F(RowFaultsTest, a_full_disk) {
  {
    const tests::RefusingDisk full(ENOSPC);
    EXPECT_TRUE(Failing().starts_with("3807: ")) << Failing();
  }
  ExpectStoredNow();
}

TEST_F(RowFaultsTest, a_closed_connection) {
  m_mine->cn->Close();
  EXPECT_TRUE(Failing().starts_with("3704: "));
  m_mine->cn = m_server->Connect();
  ExpectStoredNow();
}

// Both cells get the same number in one send; a row of two different ones would be half a change.
TEST_F(RowFaultsTest, a_killed_program_leaves_the_row_whole) {
  constexpr int kKills = 12;
  std::mt19937 random(11);
  m_mine.reset();
  for (int nKill = 0; nKill < kKills; ++nKill) {
    int started[2];
    ASSERT_EQ(pipe(started), 0);
    const pid_t child = fork();
    if (child == 0) {
      try {
        const tests::EditedTable mine(m_server, "T");
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
    EXPECT_EQ(
        m_server->Read("SELECT id, a = b, a LIKE '" + std::to_string(nKill) + ".%' FROM P..T"),
        "1|1|1\n");
  }
}

}  // namespace
}  // namespace orvane::controls
