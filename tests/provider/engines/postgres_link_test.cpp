// Logging on, and links that break at every moment. ORVANE_ROUNDS sets how many moments are tried.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "tests/fakes/variable.h"
#include "tests/provider/engines/postgres_fixture.h"
#include "tests/provider/engines/way_to_server.h"

namespace orvane::provider::engines {
namespace {

using platform::Text;
using platform::Value;
using testing::HasSubstr;
using testing::Not;
using tests::FailureOf;
using tests::PostgresCluster;
namespace failure = platform::failure;

int Rounds() {
  const char* const sRounds = std::getenv("ORVANE_ROUNDS");
  return sRounds != nullptr ? std::atoi(sRounds) : 30;
}

class PostgresLinkTest : public tests::PostgresTest {
 protected:
  PostgresLinkTest() {
    Do("DROP ROLE IF EXISTS anna");
    Do("CREATE ROLE anna LOGIN PASSWORD 'correct horse'");
    Do("CREATE TABLE s.t(a int)");
  }
  std::int32_t ProcessOf(Session& session) {
    return *session.Run({"SELECT pg_backend_pid()", {}, {}}, {})
                .recordset->ValueAt(0, 0)
                .As<std::int32_t>();
  }
  void Terminate(std::int32_t lProcess) {
    m_other->Run({"SELECT pg_terminate_backend(?)", {Value(lProcess)}, {}}, {});
  }
};

TEST_F(PostgresLinkTest, logs_on_with_a_password) {
  const auto session = Open(PostgresCluster::Get().AddressByPort(), "anna", "correct horse");
  EXPECT_EQ(session->Run({"SELECT current_user::text", {}, {}}, {}).recordset->ValueAt(0, 0),
            Value("anna"));
}

TEST_F(PostgresLinkTest, logs_on_with_the_password_of_the_users_file) {
  const auto file =
      std::filesystem::temp_directory_path() / ("orvane-passwords-" + std::to_string(getpid()));
  std::ofstream(file) << "*:*:*:anna:correct horse\n";
  std::filesystem::permissions(file, std::filesystem::perms::owner_read);
  const fakes::Variable passwords("PGPASSFILE", file.c_str());
  EXPECT_EQ(Open(PostgresCluster::Get().AddressByPort(), "anna")
                ->Run({"SELECT current_user::text", {}, {}}, {})
                .recordset->ValueAt(0, 0),
            Value("anna"));
  std::filesystem::remove(file);
}

TEST_F(PostgresLinkTest, is_refused_with_a_wrong_password_or_none) {
  for (const char* const sPassword : {"wrong", ""}) {
    const auto failed =
        FailureOf([&] { Open(PostgresCluster::Get().AddressByPort(), "anna", sPassword); });
    EXPECT_EQ(failed.lNumber, failure::kNoRights) << sPassword;
    EXPECT_THAT(failed.sSentence, HasSubstr("The server at 127.0.0.1 does not let you in ("));
    EXPECT_THAT(failed.sSentence, HasSubstr("): check user and password."));
    EXPECT_THAT(failed.sSentence, Not(HasSubstr("\n")));
  }
}

TEST_F(PostgresLinkTest, is_refused_for_a_user_that_the_server_does_not_know) {
  const auto failed =
      FailureOf([] { Open(PostgresCluster::Get().Address(), "nobody by that name"); });
  EXPECT_EQ(failed.lNumber, failure::kNoRights);
  EXPECT_THAT(failed.sSentence, HasSubstr("): check user and password."));
}

TEST_F(PostgresLinkTest, says_when_nobody_answers) {
  const auto failed = FailureOf([] { Open("postgresql://127.0.0.1:1/d", "anna"); });
  EXPECT_EQ(failed.lNumber, failure::kServerNotFound);
  EXPECT_THAT(failed.sSentence, HasSubstr("There is no connection to the server at 127.0.0.1 ("));
}

TEST_F(PostgresLinkTest, says_when_there_is_no_such_database) {
  const auto failed = FailureOf([] { Open(PostgresCluster::Get().Address("nowhere")); });
  EXPECT_EQ(failed.lNumber, failure::kServerNotFound);
  EXPECT_THAT(failed.sSentence, HasSubstr("database \"nowhere\" does not exist"));
}

TEST_F(PostgresLinkTest, a_link_that_was_ended_says_so_once_and_for_all) {
  Terminate(ProcessOf(*m_session));
  const auto failed = FailureOf([&] { Do("SELECT 1"); });
  EXPECT_EQ(failed.lNumber, failure::kObjectClosed);
  EXPECT_THAT(failed.sSentence, HasSubstr("The connection to the server at "));
  EXPECT_THAT(failed.sSentence, HasSubstr("was lost ("));
  // Also to whoever comes later.
  const auto again = FailureOf([&] { Do("SELECT 1"); });
  EXPECT_EQ(again.lNumber, failure::kObjectClosed);
  EXPECT_EQ(again.sSentence, failed.sSentence);
}

TEST_F(PostgresLinkTest, rows_that_came_before_the_link_broke_stay) {
  Statement statement{"SELECT generate_series(1, 100000000)", {}, {}};
  const auto rows = std::make_shared<tests::ScriptedRows>();
  statement.rows = rows;
  const auto lProcess = ProcessOf(*m_session);
  rows->onTake = [&] {
    if (rows->blocks.size() == 3) Terminate(lProcess);
  };
  EXPECT_EQ(FailureOf([&] { m_session->Run(statement, {}); }).lNumber, failure::kObjectClosed);
  EXPECT_GE(rows->Recordset()->RecordCount(), 896);
}

// Rows that were shown stay, and they are the first ones, without a gap.
TEST_F(PostgresLinkTest, broken_at_any_moment_of_a_fetch_keeps_what_came) {
  std::mt19937_64 random(5);
  for (int nRound = 0; nRound < Rounds(); ++nRound) {
    m_session = Open();
    // Of long rows few are on their way.
    Statement statement{"SELECT generate_series(1, 100000000), repeat('x', 100)", {}, {}};
    const auto rows = std::make_shared<tests::ScriptedRows>();
    statement.rows = rows;
    const auto nAt = std::uniform_int_distribution<std::size_t>(1, 3)(random);
    rows->onTake = [&, lProcess = ProcessOf(*m_session)] {
      if (rows->blocks.size() == nAt) Terminate(lProcess);
    };
    EXPECT_EQ(FailureOf([&] { m_session->Run(statement, {}); }).lNumber, failure::kObjectClosed);
    const auto kept = rows->Recordset();
    ASSERT_GE(rows->blocks.size(), nAt);
    ASSERT_GT(kept->RecordCount(), 0);
    EXPECT_EQ(kept->ValueAt(0, 0), Value(1));
    EXPECT_EQ(kept->ValueAt(kept->RecordCount() - 1, 0),
              Value(static_cast<std::int32_t>(kept->RecordCount())));
    EXPECT_EQ(FailureOf([&] { Do("SELECT 1"); }).lNumber, failure::kObjectClosed);
  }
}

// What was told to be stored is stored, what was told to have failed is not, and of what nobody can
// tell that is said. No row is changed without the others.
TEST_F(PostgresLinkTest, broken_at_any_moment_of_a_change_tells_the_truth) {
  m_other->Run({"INSERT INTO s.t SELECT 0 FROM generate_series(1, 300)", {}, {}}, {});
  std::mt19937_64 random(7);
  std::int64_t llStored = 0;
  for (int nRound = 0; nRound < Rounds(); ++nRound) {
    m_session = Open();
    std::thread breaks([&, lProcess = ProcessOf(*m_session),
                        nDelay = std::uniform_int_distribution<int>(0, 5000)(random)] {
      std::this_thread::sleep_for(std::chrono::microseconds(nDelay));
      Terminate(lProcess);
    });
    std::int64_t llTold = llStored;
    Text sSentence;
    try {
      for (;;) {
        Statement statement{"UPDATE s.t SET a = a + 1", {}, {}};
        statement.rowsExpected = 300;
        m_session->Run(statement, {});
        ++llTold;
      }
    } catch (const platform::Failure& failed) {
      EXPECT_EQ(failed.Number(), failure::kObjectClosed);
      sSentence = failed.Description();
    }
    breaks.join();
    EXPECT_EQ(Stored("SELECT count(DISTINCT a) FROM s.t"), Value(std::int64_t{1}));
    llStored = *Stored("SELECT max(a) FROM s.t").As<std::int32_t>();
    if (sSentence.find("nobody can tell") != Text::npos) {
      EXPECT_GE(llStored, llTold);
      EXPECT_LE(llStored, llTold + 1);
    } else {
      EXPECT_EQ(llStored, llTold) << sSentence;
    }
  }
}

// The same at the one moment at which a change is made for good.
TEST_F(PostgresLinkTest, broken_while_a_change_is_made_for_good_claims_nothing) {
  std::mt19937_64 random(9);
  std::int64_t llUntold = 0;
  for (int nRound = 0; nRound < Rounds(); ++nRound) {
    m_session = Open();
    std::thread breaks;
    Statement statement{"INSERT INTO s.t VALUES (?)", {Value(nRound)}, {}};
    statement.mayCommit = [&, lProcess = ProcessOf(*m_session)] {
      // Every other time it is over before the server is asked.
      if (nRound % 2 == 0) {
        Terminate(lProcess);
        while (Stored("SELECT count(*) FROM pg_stat_activity WHERE pid = " +
                      std::to_string(lProcess)) != Value(std::int64_t{0})) {
        }
      } else {
        breaks = std::thread(
            [this, lProcess, nDelay = std::uniform_int_distribution<int>(0, 150)(random)] {
              std::this_thread::sleep_for(std::chrono::microseconds(nDelay));
              Terminate(lProcess);
            });
      }
      return true;
    };
    bool bTold = false;
    Text sSentence;
    try {
      m_session->Run(statement, {});
      bTold = true;
    } catch (const platform::Failure& failed) {
      EXPECT_EQ(failed.Number(), failure::kObjectClosed);
      sSentence = failed.Description();
    }
    if (breaks.joinable()) breaks.join();
    const auto rs =
        m_other->Run({"SELECT count(*) FROM s.t WHERE a = ?", {Value(nRound)}, {}}, {}).recordset;
    const bool bStored = rs->ValueAt(0, 0) == Value(std::int64_t{1});
    if (bTold) {
      EXPECT_TRUE(bStored);
    } else {
      EXPECT_THAT(sSentence, HasSubstr("nobody can tell whether it was: connect again and look."));
      ++llUntold;
    }
    if (nRound % 2 == 0) {
      EXPECT_FALSE(bTold || bStored);
    }
  }
  EXPECT_GE(llUntold, Rounds() / 2);
}

// A link that swallows everything, as one behind a firewall that forgot it: how long nothing may
// come is set in the address.
TEST_F(PostgresLinkTest, a_link_that_swallows_everything_is_noticed) {
  bool bMade = false;
  tests::Told waiting;
  tests::Told sending;
  tests::Told cancelled;
  std::thread alone([&] {
    bMade = tests::WayToServer::MakeNetwork();
    if (!bMade) return;
    const tests::WayToServer way;
    const auto open = [&] {
      return Open("postgresql://127.0.0.1:" + std::to_string(way.Port()) +
                      "/postgres?tcp_user_timeout=1000&keepalives_idle=1&keepalives_interval=1&"
                      "keepalives_count=1",
                  "anna", "correct horse");
    };
    const auto waits = open();
    const auto sends = open();
    const auto stops = open();
    std::thread waiter([&] {
      waiting = FailureOf([&] { waits->Run({"SELECT pg_sleep(600)", {}, {}}, {}); });
    });
    std::stop_source stop;
    std::thread stopper([&] {
      cancelled = FailureOf([&] {
        stops->Run({"SELECT pg_sleep(600)", {}, {}}, stop.get_token());
      });
    });
    while (
        *Stored("SELECT count(*) FROM pg_stat_activity WHERE query LIKE '%sleep(600)%' AND pid <> "
                "pg_backend_pid() AND state = 'active'")
             .As<std::int64_t>() < 2) {
      std::this_thread::yield();
    }
    tests::WayToServer::SwallowEverything();
    stop.request_stop();
    sending = FailureOf([&] { sends->Run({"SELECT 1", {}, {}}, {}); });
    waiter.join();
    stopper.join();
  });
  alone.join();
  if (!bMade) GTEST_SKIP() << "only an administrator makes networks";
  for (const auto& told : {waiting, sending}) {
    EXPECT_EQ(told.lNumber, failure::kObjectClosed);
    EXPECT_THAT(told.sSentence, HasSubstr("The connection to the server at 127.0.0.1 was lost ("));
  }
  EXPECT_THAT(cancelled.lNumber, testing::AnyOf(failure::kCancelled, failure::kObjectClosed));
}

// What is asked to end a statement may find nobody who listens.
TEST_F(PostgresLinkTest, a_stop_is_answered_although_the_server_does_not_take_it) {
  tests::WayToServer way;
  const auto session = Open("postgresql://127.0.0.1:" + std::to_string(way.Port()) + "/postgres",
                            "anna", "correct horse");
  std::stop_source stop;
  std::thread stops([&] {
    while (
        Stored("SELECT count(*) FROM pg_stat_activity WHERE query LIKE '%sleep(600)%' AND pid <> "
               "pg_backend_pid() AND state = 'active'") == Value(std::int64_t{0})) {
      std::this_thread::yield();
    }
    way.TakeNoMore();
    stop.request_stop();
  });
  const auto failed = FailureOf([&] {
    session->Run({"SELECT pg_sleep(600)", {}, {}}, stop.get_token());
  });
  stops.join();
  EXPECT_EQ(failed.lNumber, failure::kCancelled);
  EXPECT_EQ(failed.sSentence,
            "The statement was cancelled, but the server did not answer: connect again.");
}

TEST_F(PostgresLinkTest, a_server_that_is_killed_is_noticed_and_can_be_connected_again) {
  PostgresCluster& cluster = PostgresCluster::Get();
  cluster.Kill();
  EXPECT_EQ(FailureOf([&] { Do("SELECT 1"); }).lNumber, failure::kObjectClosed);
  EXPECT_EQ(FailureOf([&] { Open(); }).lNumber, failure::kServerNotFound);
  cluster.Start();
  m_session = Open();
  EXPECT_EQ(Rows("SELECT 1")->ValueAt(0, 0), Value(1));
}

}  // namespace
}  // namespace orvane::provider::engines
