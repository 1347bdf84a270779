// What a command asks of rows that come: shown meanwhile, kept when the statement is stopped, or
// handed to a sink.
#include "ado/fetch.h"

#include <gtest/gtest.h>

#include "ado/command.h"
#include "tests/ado/connection_fakes.h"
#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

using platform::Failure;
using platform::FetchState;
using platform::RecordsetPtr;
using platform::RowIndex;
using platform::Value;
using tests::FailureOf;
using tests::Told;
namespace failure = platform::failure;

class FetchTest : public ::testing::Test, protected tests::ConnectionFixture {
 protected:
  FetchTest() {
    cn->Open(tests::kString, "", "", 0);
    m_command.ActiveConnection(cn);
    m_command.CommandText("SELECT n");
    m_command.KeepRows(true);
  }

  /// Hands over the next rows, one column of numbers from 0.
  void Give(RowReceiver& rows, RowIndex count) {
    std::vector<Column> block(1);
    while (count > 0) {
      block[0].Clear();
      for (RowIndex i = 0; i < 4096 && count > 0; ++i, --count) block[0].AppendLongLong(m_given++);
      rows.Take(block);
    }
  }
  /// A statement that gives that many rows and then does something.
  void Runs(RowIndex rows, std::function<void(const std::stop_token&)> then, bool bReads = true) {
    journal.runs = [=, this](RowReceiver& receiver, const std::stop_token& stop) {
      m_given = 0;
      receiver.Begin({{"n"}}, bReads);
      if (rows > 0) Give(receiver, rows);
      then(stop);
      receiver.End(false);
    };
  }
  static void ExpectNumbers(const platform::Recordset& rs, RowIndex count) {
    ASSERT_EQ(rs.RecordCount(), count);
    for (RowIndex row = 0; row < count; ++row) ASSERT_TRUE(rs.ValueAt(row, 0) == Value(row));
  }

  Command m_command;
  RowIndex m_given = 0;
};

void Fail(platform::Long lNumber, const char* sSentence) {
  throw Failure(lNumber, sSentence);
}

TEST_F(FetchTest, a_cancelled_statement_keeps_what_came) {
  Runs(12'400, tests::WaitForCancel);
  longOperation->bCancel = true;
  const auto rs = m_command.Execute();
  EXPECT_EQ(rs->State(), FetchState::Stopped);
  EXPECT_EQ(rs->FetchRemark(), "Stopped after 12,400 rows.");
  EXPECT_FALSE(rs->Truncated());
  ExpectNumbers(*rs, 12'400);
}

TEST_F(FetchTest, a_time_out_keeps_what_came) {
  m_command.CommandTimeout(60);
  Runs(1, [](const std::stop_token&) { Fail(failure::kTimeout, "The statement did not end."); });
  EXPECT_EQ(m_command.Execute()->FetchRemark(),
            "Stopped after 1 row. The time-out of 60 seconds is over.");
  m_command.CommandTimeout(1);
  EXPECT_EQ(m_command.Execute()->FetchRemark(),
            "Stopped after 1 row. The time-out of 1 second is over.");
}

TEST_F(FetchTest, a_lack_of_room_keeps_what_came) {
  Runs(1'234'567 / 1000, [](const std::stop_token&) { Fail(failure::kStorage, "No room."); });
  EXPECT_EQ(m_command.Execute()->FetchRemark(), "Stopped after 1,234 rows. No room.");
  Runs(3, [](const std::stop_token&) { throw std::bad_alloc(); });
  EXPECT_EQ(m_command.Execute()->FetchRemark(),
            "Stopped after 3 rows. There is not enough memory for the statement: set a row limit, "
            "or narrow it down.");
}

TEST_F(FetchTest, a_lost_connection_keeps_what_came) {
  for (const auto lNumber : {failure::kServerNotFound, failure::kObjectClosed}) {
    Runs(5'000, [=](const std::stop_token&) { Fail(lNumber, "The server is gone."); });
    const auto rs = m_command.Execute();
    EXPECT_EQ(rs->State(), FetchState::Stopped);
    EXPECT_EQ(rs->FetchRemark(), "Stopped after 5,000 rows. The server is gone.");
    EXPECT_EQ(rs->FetchFailure(), lNumber);
    ExpectNumbers(*rs, 5'000);
  }
  Runs(3, [](const std::stop_token&) {});
  EXPECT_EQ(m_command.Execute()->FetchFailure(), 0);
}

TEST_F(FetchTest, every_other_failure_is_told_and_keeps_nothing) {
  Runs(5, [](const std::stop_token&) { Fail(failure::kSqlError, "Malformed."); });
  EXPECT_EQ(FailureOf([&] { m_command.Execute(); }), (Told{failure::kSqlError, "Malformed."}));
}

TEST_F(FetchTest, rows_are_kept_only_when_asked_for_and_of_what_only_reads) {
  const Told cancelled{failure::kCancelled, "The statement was cancelled."};
  longOperation->bCancel = true;
  Runs(0, tests::WaitForCancel);
  EXPECT_EQ(FailureOf([&] { m_command.Execute(); }), cancelled);
  Runs(5, tests::WaitForCancel, false);
  EXPECT_EQ(FailureOf([&] { m_command.Execute(); }), cancelled);
  Runs(5, tests::WaitForCancel);
  m_command.KeepRows(false);
  EXPECT_EQ(FailureOf([&] { m_command.Execute(); }), cancelled);
}

TEST_F(FetchTest, rows_are_shown_on_the_callers_thread_while_they_come) {
  const auto caller = std::this_thread::get_id();
  std::atomic<RowIndex> shown{0};
  RecordsetPtr growing;
  int nShown = 0;
  journal.runs = [&](RowReceiver& receiver, const std::stop_token&) {
    receiver.Begin({{"n"}}, true);
    Give(receiver, 3);
    while (shown < 3) std::this_thread::yield();
    // More is wanted than was given.
    while (!receiver.Wanted()) std::this_thread::yield();
    Give(receiver, 4);
    while (shown < 7) std::this_thread::yield();
    receiver.End(true);
  };
  m_command.OnRows([&](const RecordsetPtr& rs) {
    EXPECT_EQ(std::this_thread::get_id(), caller);
    EXPECT_EQ(rs->State(), FetchState::Running);
    if (!growing) growing = rs;
    EXPECT_EQ(rs, growing);
    ++nShown;
    ExpectNumbers(*rs, rs->RecordCount());
    shown = rs->RecordCount();
  });
  const auto rs = m_command.Execute();
  EXPECT_EQ(rs, growing);
  EXPECT_EQ(nShown, 2);
  EXPECT_TRUE(longOperation->bShown);
  EXPECT_EQ(rs->State(), FetchState::Truncated);
  ExpectNumbers(*rs, 7);
}

TEST_F(FetchTest, cancel_ends_the_statement_from_within_a_handler) {
  Runs(9, tests::WaitForCancel);
  m_command.OnRows([&](const RecordsetPtr&) { m_command.Cancel(); });
  EXPECT_EQ(m_command.Execute()->FetchRemark(), "Stopped after 9 rows.");
  // It was about that one only.
  Runs(2, [](const std::stop_token& stop) { EXPECT_FALSE(stop.stop_requested()); });
  m_command.OnRows({});
  EXPECT_EQ(m_command.Execute()->State(), FetchState::Complete);
}

TEST_F(FetchTest, what_a_handler_throws_ends_the_statement_and_is_told) {
  Runs(9, tests::WaitForCancel);
  RecordsetPtr growing;
  m_command.OnRows([&](const RecordsetPtr& rs) {
    growing = rs;
    throw std::runtime_error("the handler's own");
  });
  EXPECT_THROW(m_command.Execute(), std::runtime_error);
  EXPECT_EQ(growing->State(), FetchState::Stopped);
}

TEST_F(FetchTest, rows_of_a_change_are_not_shown_before_it_is_done) {
  journal.runs = [&](RowReceiver& receiver, const std::stop_token&) {
    m_given = 0;
    receiver.Begin({{"n"}}, false);
    // Whenever the caller was there to be shown rows.
    for (int n = 0; n < 3; ++n) {
      Give(receiver, 3);
      receiver.Wanted() = false;
      while (!receiver.Wanted()) std::this_thread::yield();
    }
    receiver.End(false);
  };
  m_command.OnRows([&](const RecordsetPtr&) { ADD_FAILURE(); });
  EXPECT_EQ(m_command.Execute()->RecordCount(), 9);
}

TEST_F(FetchTest, a_connection_does_one_thing_at_a_time) {
  std::atomic<bool> bTried{false};
  Runs(1, [&](const std::stop_token&) {
    while (!bTried) std::this_thread::yield();
  });
  m_command.OnRows([&](const RecordsetPtr&) {
    const Told busy{failure::kBusy,
                    "The connection is still running a statement: wait until it is done, or cancel "
                    "it."};
    EXPECT_EQ(FailureOf([&] { m_command.Execute(); }), busy);
    EXPECT_EQ(FailureOf([&] { cn->Close(); }), busy);
    bTried = true;
  });
  m_command.Execute();
  cn->Close();
}

TEST_F(FetchTest, a_sink_gets_the_rows_and_nothing_is_kept) {
  std::vector<RowIndex> sizes;
  RowIndex next = 0;
  journal.runs = [&](RowReceiver& receiver, const std::stop_token&) {
    receiver.Begin({{"n"}}, true);
    for (const RowIndex size : {128, 4096, 7}) Give(receiver, size);
    receiver.End(true);
  };
  m_command.Sink([&](const RecordsetPtr& rs) {
    sizes.push_back(rs->RecordCount());
    EXPECT_EQ(rs->State(), FetchState::Complete);
    for (RowIndex row = 0; row < rs->RecordCount(); ++row) {
      ASSERT_TRUE(rs->ValueAt(row, 0) == Value(next++));
    }
  });
  const auto rs = m_command.Execute();
  EXPECT_EQ(sizes, (std::vector<RowIndex>{128, 4096, 7}));
  EXPECT_EQ(rs->RecordCount(), 0);
  EXPECT_EQ(rs->FieldAt(0).Name(), "n");
  EXPECT_EQ(rs->State(), FetchState::Truncated);
}

TEST_F(FetchTest, a_stopped_sink_is_told_of) {
  longOperation->bCancel = true;
  Runs(40, tests::WaitForCancel);
  m_command.Sink([](const RecordsetPtr&) {});
  const auto rs = m_command.Execute();
  EXPECT_EQ(rs->RecordCount(), 0);
  EXPECT_EQ(rs->FetchRemark(), "Stopped after 40 rows.");
}

TEST_F(FetchTest, what_a_sink_throws_is_told) {
  Runs(40, [](const std::stop_token&) { ADD_FAILURE(); });
  m_command.Sink([](const RecordsetPtr&) { throw std::bad_alloc(); });
  EXPECT_THROW(m_command.Execute(), std::bad_alloc);
  m_command.Sink([](const RecordsetPtr&) { Fail(failure::kStorage, "The file is full."); });
  EXPECT_EQ(FailureOf([&] { m_command.Execute(); }),
            (Told{failure::kStorage, "The file is full."}));
}

TEST_F(FetchTest, rows_are_counted_on_the_programs_budget) {
  const auto budget = std::make_shared<MemoryBudget>(100'000);
  auto other = std::make_shared<Connection>(
      ConnectionServices{providers, prompt, longOperation, {}, budget});
  other->Open(tests::kString, "", "", 0);
  m_command.ActiveConnection(other);
  journal.runs = [&](RowReceiver& receiver, const std::stop_token&) {
    receiver.Begin({{"n"}}, true);
    for (int i = 0; i < 20; ++i) Give(receiver, 4096);
    receiver.End(false);
  };
  {
    const auto rs = m_command.Execute();
    ExpectNumbers(*rs, RowIndex{20} * 4096);
    EXPECT_GT(budget->Taken(), 60'000U);
    EXPECT_LE(budget->Taken(), 100'000U);
    journal.statement = {};
  }
  EXPECT_EQ(budget->Taken(), 0U);
}

}  // namespace
}  // namespace orvane::ado
