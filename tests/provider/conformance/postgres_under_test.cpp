#include "tests/provider/conformance/postgres_under_test.h"

#include "provider/engines/postgres/postgres_engine.h"
#include "tests/provider/engines/postgres_cluster.h"

namespace orvane::provider::conformance {
namespace {

// A database of its own on the cluster of the process.
class PostgresServer final : public TestServer {
 public:
  PostgresServer() : m_sDatabase(tests::PostgresCluster::Get().NewDatabase()) {}
  PostgresServer(const PostgresServer&) = delete;
  PostgresServer& operator=(const PostgresServer&) = delete;
  ~PostgresServer() override { tests::PostgresCluster::Get().DropDatabase(m_sDatabase); }

  std::shared_ptr<engines::Engine> Engine() override {
    return std::make_shared<engines::PostgresEngine>();
  }
  platform::Text DataSource() const override {
    return tests::PostgresCluster::Get().AddressByPort(m_sDatabase);
  }
  platform::Text User() const override { return tests::PostgresCluster::kUser; }
  platform::Text Password() const override { return tests::PostgresCluster::kPassword; }
  platform::Text TrustingSource() const override {
    return tests::PostgresCluster::Get().Address(m_sDatabase);
  }
  platform::Text Path() const override { return "/"; }

 private:
  platform::Text m_sDatabase;
};

}  // namespace

EngineUnderTest PostgresUnderTest() {
  using enum Difference;
  return {"postgresql",
          []() -> std::unique_ptr<TestServer> { return std::make_unique<PostgresServer>(); },
          {kChoosesItsPlaces, kNoZeroCharacter, kNoStatementTimes},
          "integer double precision boolean bigint uuid bytea text numeric date time timestamptz "};
}

}  // namespace orvane::provider::conformance
