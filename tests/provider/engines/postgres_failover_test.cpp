// A server that goes and another that takes its place.
#include <chrono>
#include <thread>

#include "tests/provider/engines/postgres_fixture.h"

namespace orvane::provider::engines {
namespace {

using platform::Text;
using platform::Value;
using tests::FailureOf;
using tests::PostgresCluster;
namespace failure = platform::failure;

class PostgresFailoverTest : public tests::PostgresTest {
 protected:
  ~PostgresFailoverTest() override {
    if (m_bKilled) PostgresCluster::Get().Start();
  }

  static std::unique_ptr<Session> OpenAt(const Text& sAddress) {
    return Open(sAddress, PostgresCluster::kUser, PostgresCluster::kPassword);
  }
  static Value First(Session& session, const Text& sSql) {
    return session.Run({sSql, {}, {}}, {}).recordset->ValueAt(0, 0);
  }

  bool m_bKilled = false;
};

TEST_F(PostgresFailoverTest, is_survived_by_an_address_of_several_hosts) {
  PostgresCluster& primary = PostgresCluster::Get();
  Do("CREATE TABLE s.t(a int)");
  const auto standby = primary.NewStandby();
  // The one that takes no changes is asked first, and passed over.
  const Text sAddress = "postgresql://127.0.0.1:" + std::to_string(standby->Port()) +
                        ",127.0.0.1:" + std::to_string(primary.Port()) +
                        "/postgres?target_session_attrs=read-write";
  const auto session = OpenAt(sAddress);
  EXPECT_EQ(First(*session, "SELECT inet_server_port()"), Value(primary.Port()));
  session->Run({"INSERT INTO s.t VALUES (1)", {}, {}}, {});
  const auto follower = OpenAt(standby->AddressByPort());
  while (First(*follower, "SELECT count(*) FROM s.t") != Value(std::int64_t{1})) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }

  primary.Kill();
  m_bKilled = true;
  standby->Do("postgres", "SELECT pg_promote()");
  EXPECT_EQ(FailureOf([&] { First(*session, "SELECT 1"); }).lNumber, failure::kObjectClosed);
  const auto again = OpenAt(sAddress);
  EXPECT_EQ(First(*again, "SELECT inet_server_port()"), Value(standby->Port()));
  again->Run({"INSERT INTO s.t VALUES (2)", {}, {}}, {});
  EXPECT_EQ(First(*again, "SELECT count(*) FROM s.t"), Value(std::int64_t{2}));
}

}  // namespace
}  // namespace orvane::provider::engines
