// What goes wrong while a row is sent: what was typed stays, and the row at the server is whole.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/controls/catalog_faults.h"
#include "tests/controls/edited_table.h"
#include "tests/controls/on_engines.h"
#include "tests/provider/conformance/postgres_under_test.h"
#include "tests/provider/engines/postgres_cluster.h"

namespace orvane::controls {
namespace {

using platform::RowState;
using platform::Text;
using platform::Value;
using provider::FailureOf;
using tests::Difference;

constexpr const char* kInOrder = "SELECT * FROM P..T ORDER BY id";

class FaultyRows : public testing::Test {
 protected:
  explicit FaultyRows(const tests::EngineUnderTest& engine)
      : m_server(tests::HistorianServer::Make(engine)),
        m_faults(tests::CatalogFaults::Of(engine, m_server->Server())) {
    m_server->Run("CREATE TABLE P..T (id INTEGER PRIMARY KEY, a TEXT, b TEXT)");
    m_server->Run("INSERT INTO P..T VALUES (1, '0', '0'), (2, 'other', NULL)");
    m_mine.emplace(m_server, "T");
    m_mine->lTimeout = 1;
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
  Text Stored() { return m_server->Read(kInOrder); }
  // Once it is mended, the same row is sent again.
  void ExpectStoredNow() {
    EXPECT_FALSE(m_mine->Store(0));
    EXPECT_EQ(Stored(), "1|mine|0\n2|other|\n");
  }

  std::shared_ptr<tests::HistorianServer> m_server;
  std::unique_ptr<tests::CatalogFaults> m_faults;
  std::optional<tests::EditedTable> m_mine;
};

class row_faults : public FaultyRows, public tests::OnEngines {
 protected:
  row_faults() : FaultyRows(GetParam()) {}
};

class row_faults_of_files : public FaultyRows {
 protected:
  row_faults_of_files() : FaultyRows(provider::conformance::EmbeddedUnderTest()) {}
};

class row_faults_of_servers : public FaultyRows {
 protected:
  row_faults_of_servers() : FaultyRows(provider::conformance::PostgresUnderTest()) {}
};

ORVANE_ON_ENGINES(row_faults);

TEST_P(row_faults, a_locked_catalog) {
  {
    const auto lock = m_faults->Lock();
    EXPECT_TRUE(Failing().starts_with(m_faults->OfLocked())) << Failing();
  }
  ExpectStoredNow();
}

TEST_P(row_faults, a_catalog_that_is_gone) {
  m_faults->TakeAway();
  EXPECT_TRUE(Failing().starts_with(m_faults->OfTakenAway())) << Failing();
  m_faults->BringBack();
  ExpectStoredNow();
}

TEST_P(row_faults, a_catalog_that_was_replaced) {
  m_faults->TakeAway();
  m_faults->Replace();
  const auto conflict = m_mine->Store(0);
  ASSERT_TRUE(conflict);
  EXPECT_TRUE(conflict->IsGone());
  EXPECT_EQ(m_mine->rs->ValueAt(0, 1), Value("mine"));
  EXPECT_EQ(Stored(), "") << "nothing in the other one";
  m_faults->BringBack();
  ExpectStoredNow();
}

TEST_F(row_faults_of_files, a_catalog_in_whose_place_another_file_stands) {
  m_faults->TakeAway();
  std::ofstream(m_server->CatalogFile()) << "no database, but a text of some length";
  EXPECT_TRUE(Failing().starts_with("3802: "));
  m_faults->BringBack();
  ExpectStoredNow();
}

TEST_P(row_faults, a_full_disk) {
  {
    const auto full = m_faults->FillDisk();
    EXPECT_TRUE(Failing().starts_with("3807: ")) << Failing();
  }
  ExpectStoredNow();
}

TEST_P(row_faults, a_closed_connection) {
  m_mine->cn->Close();
  EXPECT_TRUE(Failing().starts_with("3704: "));
  m_mine->cn = m_server->Connect();
  ExpectStoredNow();
}

TEST_F(row_faults_of_servers, a_server_that_breaks_down) {
  tests::PostgresCluster::Get().Kill();
  EXPECT_TRUE(Failing().starts_with("3704: ")) << Failing();
  tests::PostgresCluster::Get().Start();
  m_mine->cn = m_server->Connect();
  ExpectStoredNow();
}

}  // namespace
}  // namespace orvane::controls
