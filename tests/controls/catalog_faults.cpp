#include "tests/controls/catalog_faults.h"

#include <libpq-fe.h>

#include "tests/provider/engines/database_folder.h"
#include "tests/provider/engines/postgres_cluster.h"
#include "tests/provider/engines/refusing_disk.h"

namespace orvane::tests {

namespace fs = std::filesystem;
using platform::Text;
using provider::conformance::Difference;

namespace {

constexpr const char* kEmptyTable = "T (id INTEGER PRIMARY KEY, a TEXT, b TEXT)";

class EmbeddedFaults final : public CatalogFaults {
 public:
  explicit EmbeddedFaults(const provider::conformance::TestServer& server)
      : m_file(fs::path(server.Path()) / "historians/localhost/catalogs/P.db"),
        m_aside(m_file.string() + ".aside") {}

  std::shared_ptr<void> Lock() override {
    const auto other = std::make_shared<Raw>(m_file);
    other->Run("BEGIN EXCLUSIVE");
    return other;
  }
  Text OfLocked() const override {
    return "3803: The catalog \"P\" is locked by another program: try again when that is done.";
  }
  void TakeAway() override { fs::rename(m_file, m_aside); }
  Text OfTakenAway() const override { return "3800: "; }
  void Replace() override { Raw(m_file).Run(Text("CREATE TABLE ") + kEmptyTable); }
  void BringBack() override { fs::rename(m_aside, m_file); }
  void Lose() override { TakeAway(); }
  void Find() override { BringBack(); }
  std::shared_ptr<void> FillDisk() override { return std::make_shared<RefusingDisk>(ENOSPC); }
  void AwaitGone() override {}

 private:
  fs::path m_file;
  fs::path m_aside;
};

class PostgresFaults final : public CatalogFaults {
 public:
  explicit PostgresFaults(const provider::conformance::TestServer& server)
      : m_sDatabase(DatabaseOf(server)) {}

  std::shared_ptr<void> Lock() override {
    const std::shared_ptr<PGconn> other(PQconnectdb(Cluster().Address(m_sDatabase).c_str()),
                                        &PQfinish);
    PQclear(PQexec(other.get(), "BEGIN; LOCK TABLE \"P\".\"T\""));
    return other;
  }
  Text OfLocked() const override { return "3804: "; }
  void TakeAway() override { Do("ALTER SCHEMA \"P\" RENAME TO \"Aside\""); }
  Text OfTakenAway() const override { return "3805: There is no catalog \"P\""; }
  void Replace() override { Do(Text("CREATE SCHEMA \"P\" CREATE TABLE \"P\".") + kEmptyTable); }
  void BringBack() override {
    Do("DROP SCHEMA IF EXISTS \"P\" CASCADE; ALTER SCHEMA \"Aside\" RENAME TO \"P\"");
  }
  void Lose() override {
    Do("SELECT pg_terminate_backend(pid, 5000) FROM pg_stat_activity WHERE datname = "
       "current_database() AND pid <> pg_backend_pid()");
  }
  void Find() override {}
  // As the server tells it; the disk of the tests is not filled.
  std::shared_ptr<void> FillDisk() override {
    Do("CREATE FUNCTION \"P\".full() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RAISE 'could not "
       "extend file: No space left on device' USING ERRCODE = 'disk_full'; END $$; CREATE TRIGGER "
       "\"full\" BEFORE UPDATE ON \"P\".\"T\" EXECUTE FUNCTION \"P\".full()");
    return {this, [this](void*) { Do("DROP FUNCTION \"P\".full() CASCADE"); }};
  }
  // Who changes the table keeps others from this lock until the change is stored or given up.
  void AwaitGone() override { Do("BEGIN; LOCK TABLE \"P\".\"T\"; COMMIT"); }

 private:
  static PostgresCluster& Cluster() { return PostgresCluster::Get(); }
  void Do(const Text& sSql) const { Cluster().Do(m_sDatabase, sSql); }

  Text m_sDatabase;
};

}  // namespace

Text DatabaseOf(const provider::conformance::TestServer& server) {
  const Text sSource = server.DataSource();
  return sSource.substr(sSource.rfind('/') + 1);
}

std::unique_ptr<CatalogFaults> CatalogFaults::Of(
    const provider::conformance::EngineUnderTest& engine,
    const provider::conformance::TestServer& server) {
  if (engine.differences.contains(Difference::kChoosesItsPlaces)) {
    return std::make_unique<PostgresFaults>(server);
  }
  return std::make_unique<EmbeddedFaults>(server);
}

}  // namespace orvane::tests
