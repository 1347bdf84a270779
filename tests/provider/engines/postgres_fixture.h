// A session on the tests' own PostgreSQL server, in a schema that each test has for itself.
#pragma once

#include <gmock/gmock.h>

#include <memory>

#include "provider/engines/postgres/postgres_session.h"
#include "tests/ado/failure_of.h"
#include "tests/fakes/scripted_rows.h"
#include "tests/provider/engines/postgres_cluster.h"

namespace orvane::tests {

class PostgresTest : public testing::Test {
 protected:
  using Session = provider::engines::PostgresSession;
  using Statement = provider::engines::EngineStatement;

  PostgresTest() {
    Do("DROP SCHEMA IF EXISTS s CASCADE");
    Do("CREATE SCHEMA s");
  }

  static std::unique_ptr<Session> Open(const std::string& sAddress, const std::string& sUser = {},
                                       const std::string& sPassword = {},
                                       const std::stop_token& stop = {}) {
    return std::make_unique<Session>(std::make_unique<provider::engines::PostgresLink>(
        provider::engines::ReadPostgresAddress(sAddress), sUser, sPassword, stop));
  }
  static std::unique_ptr<Session> Open() { return Open(PostgresCluster::Get().Address()); }

  provider::engines::EngineResult Do(const std::string& sSql,
                                     std::vector<platform::Value> parameters = {}) const {
    return m_session->Run({sSql, std::move(parameters), {}}, {});
  }
  platform::RecordsetPtr Rows(const std::string& sSql,
                              std::vector<platform::Value> parameters = {}) const {
    return Do(sSql, std::move(parameters)).recordset;
  }
  /// The first value, read by another session.
  platform::Value Stored(const std::string& sSql) const {
    return m_other->Run({sSql, {}, {}}, {}).recordset->ValueAt(0, 0);
  }

  std::unique_ptr<Session> m_session = Open();
  std::unique_ptr<Session> m_other = Open();
};

}  // namespace orvane::tests
