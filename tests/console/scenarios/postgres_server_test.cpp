// A server that is not on this machine's disk, from the tree down to a PostgreSQL server and back:
// only a real one shows that nothing in the console or the snap-in minds which engine it is.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/provider/engines/postgres_cluster.h"
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

using tests::PostgresCluster;

class postgres_server : public command_scenario {
 protected:
  postgres_server() : m_sDatabase(PostgresCluster::Get().NewDatabase()) {
    // The user of the document.
    PostgresCluster::Get().Do("postgres",
                              "DO 'BEGIN CREATE ROLE orvanesnapin LOGIN SUPERUSER; EXCEPTION WHEN "
                              "duplicate_object THEN NULL; END'");
    std::ofstream(m_services) << "[mill]\nhost=" << PostgresCluster::Get().Folder().string()
                              << "\nport=" << PostgresCluster::Get().Port()
                              << "\ndbname=" << m_sDatabase << "\n";
    setenv("PGSERVICEFILE", m_services.c_str(), 1);
  }
  ~postgres_server() override {
    driver.reset();
    unsetenv("PGSERVICEFILE");
    std::filesystem::remove(m_services);
    PostgresCluster::Get().DropDatabase(m_sDatabase);
  }

  void OpenCatalogs() {
    driver->OpenDocument([&](PropertyBag& pb, platform::ObjectFactory&) {
      Write(pb, {.sServer = m_sServer,
                 .queries = {{"Last hour",
                              "SELECT Tag, Value FROM Mill..Data WHERE Timestamp >= '*-1h' ORDER "
                              "BY Value"}}});
    });
    for (const Text& sKey : {Text(kStaticNode), m_sServer, m_sCatalogs}) driver->Expand(sKey);
  }

  void ExpectLost() {
    const Text sText = ErrorBox();
    EXPECT_NE(sText.find("was lost"), Text::npos) << sText;
  }

  std::string m_sDatabase;
  std::filesystem::path m_services =
      std::filesystem::temp_directory_path() / ("orvane-mill-" + std::to_string(getpid()));
  Text m_sServer = "service=mill";
  Text m_sCatalogs = m_sServer + ".Catalogs";
  Text m_sMill = m_sCatalogs + ".Mill";
};

TEST_F(postgres_server, is_browsed_queried_and_given_catalogs_like_any_other) {
  OpenCatalogs();
  EXPECT_EQ(driver->LogonsSeen(), 1);
  ExpectNoBoxes();
  EXPECT_EQ(driver->Children(m_sCatalogs),
            (Texts{m_sCatalogs + ".Functions", m_sCatalogs + ".Orvane"}));

  Fill({{"m_txtName", "Mill"}});
  driver->Choose(m_sCatalogs, "Add Catalog...");
  ExpectNoBoxes();
  driver->Expand(m_sMill);
  EXPECT_EQ(driver->Children(m_sMill),
            (Texts{m_sMill + ".Data", m_sMill + ".Data2", m_sMill + ".Tags"}));
  PostgresCluster::Get().Do(m_sDatabase,
                            "INSERT INTO \"Mill\".\"Data\" VALUES ('T1', now(), 1.5), ('T2', "
                            "now(), 2.5), ('T3', now() - interval '2 h', 3.5)");
  const Text sQueries = m_sServer + ".Queries";
  driver->Expand(sQueries);
  driver->Select(sQueries + ".Last hour");
  ExpectNoBoxes();
  EXPECT_EQ(driver->Grid().columns, (Texts{"Tag", "Value"}));
  EXPECT_EQ(FirstColumn(), (Texts{"T1", "T2"}));
  driver->Select(m_sMill + ".Data");
  ExpectNoBoxes();
  EXPECT_EQ(driver->Grid().columns, (Texts{"Tag", "Timestamp", "Value", "Status"}));

  driver->AnswerBox(BoxAnswer::Yes);
  driver->Choose(m_sMill, "Remove");
  driver->TakeBoxes();
  EXPECT_FALSE(driver->HasItem(m_sMill));
  driver->SaveAndReopen();
  for (const Text& sKey : {Text(kStaticNode), m_sServer, m_sCatalogs}) driver->Expand(sKey);
  EXPECT_FALSE(driver->HasItem(m_sMill));
  ExpectNoBoxes();
}

// Cut, and connected again.
TEST_F(postgres_server, says_that_it_is_gone_and_comes_back) {
  OpenCatalogs();
  Fill({{"m_txtName", "Mill"}});
  driver->Choose(m_sCatalogs, "Add Catalog...");
  PostgresCluster::Get().Do(m_sDatabase, "INSERT INTO \"Mill\".\"Data\" VALUES ('T1', now(), 1.5)");
  driver->Expand(m_sMill);
  driver->Select(m_sMill + ".Data");
  EXPECT_EQ(FirstColumn(), Texts{"T1"});
  ExpectNoBoxes();

  PostgresCluster::Get().Do("postgres",
                            "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE "
                            "datname = '" +
                                m_sDatabase + "'");
  driver->Refresh();
  ExpectLost();
  EXPECT_EQ(FirstColumn(), Texts{"T1"}) << "what is on the screen stays";
  Fill({{"m_txtName", "Mill2"}});
  driver->Choose(m_sCatalogs, "Add Catalog...");
  ExpectLost();
  EXPECT_EQ(driver->LogonsSeen(), 1) << "nobody is asked who has not asked to come back";

  driver->Choose(m_sServer, "Disconnect");
  driver->Choose(m_sServer, "Connect...");
  EXPECT_EQ(driver->LogonsSeen(), 2);
  for (const Text& sKey : {m_sServer, m_sCatalogs, m_sMill}) driver->Expand(sKey);
  driver->Select(m_sMill + ".Data");
  EXPECT_EQ(FirstColumn(), Texts{"T1"});
  ExpectNoBoxes();
}

}  // namespace
}  // namespace orvane::scenarios::commands
