// Logging on, and links that break at every moment.
#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <random>
#include <thread>

#include "tests/provider/engines/postgres_fixture.h"

namespace orvane::provider::engines {
namespace {

using platform::Text;
using platform::Value;
using testing::HasSubstr;
using testing::Not;
using tests::FailureOf;
using tests::PostgresCluster;
namespace failure = platform::failure;

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

// A host that takes the call and says nothing.
TEST_F(PostgresLinkTest, connecting_can_be_cancelled) {
  const int file = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  ASSERT_EQ(bind(file, any, size), 0);
  ASSERT_EQ(listen(file, 1), 0);
  ASSERT_EQ(getsockname(file, any, &size), 0);
  std::stop_source stop;
  std::thread stops([&] {
    const int caller = accept(file, nullptr, nullptr);
    stop.request_stop();
    close(caller);
  });
  const auto failed = FailureOf([&] {
    Open("postgresql://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/d", "anna", {},
         stop.get_token());
  });
  stops.join();
  close(file);
  EXPECT_EQ(failed.lNumber, failure::kCancelled);
  EXPECT_EQ(failed.sSentence, "The connection was cancelled.");
}

TEST_F(PostgresLinkTest, a_link_that_was_ended_says_so_once_and_for_all) {
  Terminate(ProcessOf(*m_session));
  const auto failed = FailureOf([&] { Do("SELECT 1"); });
  EXPECT_EQ(failed.lNumber, failure::kObjectClosed);
  EXPECT_THAT(failed.sSentence, HasSubstr("The connection to the server at "));
  EXPECT_THAT(failed.sSentence, HasSubstr("was lost ("));
  EXPECT_EQ(FailureOf([&] { Do("SELECT 1"); }).lNumber, failure::kObjectClosed);
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

// What was told to be stored is stored, what was told to have failed is not, and of what nobody can
// tell that is said.
TEST_F(PostgresLinkTest, broken_at_any_moment_of_a_change_tells_the_truth) {
  std::mt19937_64 random(7);
  for (int nRound = 0; nRound < 30; ++nRound) {
    m_session = Open();
    const auto lProcess = ProcessOf(*m_session);
    const auto nDelay = std::uniform_int_distribution<int>(0, 2000)(random);
    std::thread breaks([&] {
      std::this_thread::sleep_for(std::chrono::microseconds(nDelay));
      Terminate(lProcess);
    });
    int nTold = 0;
    Text sSentence;
    try {
      for (;;) {
        Do("INSERT INTO s.t VALUES (?)", {Value(nRound)});
        ++nTold;
      }
    } catch (const platform::Failure& failed) {
      EXPECT_EQ(failed.Number(), failure::kObjectClosed);
      sSentence = failed.Description();
    }
    breaks.join();
    const auto nStored =
        *m_other->Run({"SELECT count(*) FROM s.t WHERE a = ?", {Value(nRound)}, {}}, {})
             .recordset->ValueAt(0, 0)
             .As<std::int64_t>();
    if (sSentence.find("nobody can tell") != Text::npos) {
      EXPECT_GE(nStored, nTold);
      EXPECT_LE(nStored, nTold + 1);
    } else {
      EXPECT_EQ(nStored, nTold) << sSentence;
    }
  }
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
