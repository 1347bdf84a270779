// A stop that comes at the end of a change: before it is made for good it takes the change back,
// afterwards it is too late, and either is what is told.
#include <condition_variable>
#include <mutex>

#include "provider/deadline.h"
#include "tests/fakes/scripted_rows.h"
#include "tests/provider/engines/database_folder.h"

namespace orvane::provider::engines {
namespace {

using tests::FailureOf;
using tests::SqlCall;
using tests::Told;
namespace failure = platform::failure;

class SqliteCommitTest : public tests::DatabaseFolder {
 protected:
  SqliteCommitTest() : m_call([this] { m_stop.request_stop(); }) {
    m_catalog = Make("m.db", "PRAGMA journal_mode = WAL; CREATE TABLE t(a)");
    m_session = Open(m_catalog);
  }
  Told Fails(const EngineStatement& statement) {
    return FailureOf([&] { m_session->Run(statement, m_stop.get_token()); });
  }
  Value Count() { return One(*m_session, "SELECT count(*) FROM t"); }

  std::stop_source m_stop;
  std::shared_ptr<tests::ScriptedRows> m_rows = std::make_shared<tests::ScriptedRows>();
  SqlCall m_call;
  Catalog m_catalog;
  std::unique_ptr<FileSession> m_session;
  const Told m_cancelled{failure::kCancelled, "The statement was cancelled."};
};

TEST_F(SqliteCommitTest, a_stop_in_the_last_step_of_the_work_takes_the_change_back) {
  EXPECT_EQ(Fails({"INSERT INTO t VALUES (called())", {}, {}}), m_cancelled);
  EXPECT_EQ(Count(), Value(std::int64_t{0}));
}

TEST_F(SqliteCommitTest, a_stop_in_the_last_step_takes_the_change_of_a_catalog_back) {
  m_session = Open();
  EXPECT_EQ(Fails({"INSERT INTO m.t VALUES (called())", {}, {m_catalog}}), m_cancelled);
  m_session = Open(m_catalog);
  EXPECT_EQ(Count(), Value(std::int64_t{0}));
}

TEST_F(SqliteCommitTest, a_stop_behind_the_last_row_takes_the_change_back) {
  EngineStatement statement{"INSERT INTO t VALUES (1) RETURNING a", {}, {}};
  statement.rows = m_rows;
  m_rows->onEnd = [&] {
    EXPECT_EQ(m_rows->Recordset()->RecordCount(), 1);
    m_stop.request_stop();
  };
  EXPECT_EQ(Fails(statement), m_cancelled);
  EXPECT_EQ(Count(), Value(std::int64_t{0}));
}

TEST_F(SqliteCommitTest, a_time_out_behind_the_last_row_takes_the_change_back) {
  EngineStatement statement{"INSERT INTO t VALUES (1)", {}, {}};
  EXPECT_EQ(FailureOf([&] {
              Deadline({}, std::chrono::milliseconds(1)).Run([&](const std::stop_token& stop) {
                statement.rows = m_rows;
                m_rows->onEnd = [stop] {
                  std::mutex mutex;
                  std::condition_variable_any woken;
                  std::unique_lock lock(mutex);
                  woken.wait(lock, stop, [] { return false; });
                };
                m_session->Run(statement, stop);
              });
            }).lNumber,
            failure::kTimeout);
  EXPECT_EQ(Count(), Value(std::int64_t{0}));
}

TEST_F(SqliteCommitTest, rows_that_nobody_can_take_take_the_change_back) {
  EngineStatement statement{"INSERT INTO t VALUES (1) RETURNING a", {}, {}};
  statement.rows = m_rows;
  m_rows->onTake = [] { throw platform::Failure(failure::kStorage, "There is no memory."); };
  EXPECT_EQ(Fails(statement), (Told{failure::kStorage, "There is no memory."}));
  m_rows->onTake = [] { throw std::bad_alloc(); };
  EXPECT_EQ(Fails(statement).sSentence,
            "There is not enough memory for the statement: set a row limit, or narrow it down.");
  EXPECT_EQ(Count(), Value(std::int64_t{0}));
}

TEST_F(SqliteCommitTest, a_change_that_may_not_be_made_for_good_is_taken_back) {
  EngineStatement statement{"INSERT INTO t VALUES (1)", {}, {}};
  statement.mayCommit = [] { return false; };
  EXPECT_EQ(Fails(statement), m_cancelled);
  EXPECT_EQ(Count(), Value(std::int64_t{0}));
}

TEST_F(SqliteCommitTest, a_stop_that_comes_too_late_is_not_told) {
  EngineStatement statement{"INSERT INTO t VALUES (1)", {}, {}};
  int nAsked = 0;
  statement.mayCommit = [&] { return ++nAsked == 1; };
  // Behind the last question nothing can be taken back.
  EXPECT_EQ(m_session->Run(statement, m_stop.get_token()).lRecordsAffected, 1);
  EXPECT_EQ(nAsked, 1);
  EXPECT_EQ(Count(), Value(std::int64_t{1}));
}

TEST_F(SqliteCommitTest, nobody_asks_about_what_changes_nothing) {
  EngineStatement statement{"SELECT a FROM t", {}, {}};
  statement.mayCommit = [] { return false; };
  EXPECT_EQ(m_session->Run(statement, {}).recordset->RecordCount(), 0);
}

TEST_F(SqliteCommitTest, a_stop_in_the_last_step_of_a_transaction_takes_it_back) {
  EXPECT_EQ(FailureOf([&] {
              m_session->InTransaction(
                  {},
                  [&] {
                    m_session->Run({"INSERT INTO t VALUES (called())", {}, {}}, {});
                  },
                  m_stop.get_token());
            }),
            m_cancelled);
  EXPECT_EQ(Count(), Value(std::int64_t{0}));
}

TEST_F(SqliteCommitTest, the_session_goes_on_behind_a_change_that_was_taken_back) {
  Fails({"INSERT INTO t VALUES (called())", {}, {}});
  m_session->Run({"INSERT INTO t VALUES (2)", {}, {}}, {});
  EXPECT_EQ(Count(), Value(std::int64_t{1}));
}

}  // namespace
}  // namespace orvane::provider::engines
