// The program orvane-historian on a PostgreSQL server.
#include <pty.h>

#include "tests/provider/engines/postgres_cluster.h"
#include "tests/tools/historian_program.h"

namespace orvane::tools {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using tests::PostgresCluster;

class ServerProgramTest : public HistorianProgram {
 protected:
  ServerProgramTest() : m_sDatabase(PostgresCluster::Get().NewDatabase()) {}
  ~ServerProgramTest() override { PostgresCluster::Get().DropDatabase(m_sDatabase); }

  void Expect(const std::vector<Text>& arguments, const Text& sOutput) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.nStatus, 0) << outcome.sErrors;
    EXPECT_EQ(outcome.sOutput, sOutput);
  }
  Text SelectThere(const Text& sText) const {
    return provider::Rows(
        *provider::HistorianProvider()
             .Open(ado::ConnectionSettings::Parse("Data Source = " + m_sServer), "", {})
             ->Execute({sText, 0, {}}, {})
             .recordset);
  }

  std::string m_sDatabase;
  Text m_sServer = PostgresCluster::Get().Address(m_sDatabase);
};

TEST_F(ServerProgramTest, makes_fills_and_records_a_historian_there) {
  for (int n = 0; n < 2; ++n) {
    Expect({"init", "--server", m_sServer},
           "Made the historian in the database, or found it there.\n");
  }
  const Outcome generated = Run({"generate", "--server", m_sServer, "--hours", "1"});
  EXPECT_EQ(generated.nStatus, 0) << generated.sErrors;
  EXPECT_THAT(generated.sOutput, StartsWith("Generated 28"));
  EXPECT_EQ(SelectThere("SELECT count(*) FROM Plant1..Tags"), "9\n");
  EXPECT_EQ(SelectThere("SELECT Name FROM Orvane..Historians WHERE Created > '*-1h'"), "Plant1\n");

  const Text sFile = WriteFile("rows.csv",
                               "Tag,Timestamp,Value\nA,2024-05-15T12:00:00Z,1.5\n"
                               "A,2024-05-15T13:00:00Z,\n");
  const std::vector<Text> import = {"import",    sFile,    "--server", m_sServer,
                                    "--catalog", "plant1", "--table",  "data"};
  Expect(import, "Imported 2 rows into Plant1..data.\n");
  const Outcome again = Run(import);
  EXPECT_EQ(again.nStatus, 1);
  EXPECT_THAT(again.sErrors, HasSubstr("Line 2: "));
  auto replace = import;
  replace.emplace_back("--replace");
  Expect(replace, "Imported 2 rows into Plant1..data.\n");
  EXPECT_EQ(SelectThere("SELECT Value FROM Plant1..Data WHERE Tag = 'A' ORDER BY Timestamp"),
            "1.5\n\n");

  Expect({"record", "--server", m_sServer, "--count", "2"}, "Recorded 2 samples into Machine.\n");
  EXPECT_EQ(SelectThere("SELECT count(*) FROM Machine..Data WHERE Tag = 'load.1'"), "2\n");
  const Outcome files = Run({"attach", "--server", m_sServer, "X", sFile});
  EXPECT_EQ(files.sErrors,
            "A server keeps no files of catalogs; name a historian on this machine.\n");
}

// A catalog of somebody else is left alone.
TEST_F(ServerProgramTest, writes_no_signals_into_another_catalog) {
  PostgresCluster::Get().Do(m_sDatabase, "CREATE SCHEMA \"Plant1\"");
  EXPECT_EQ(Run({"generate", "--server", m_sServer}).nStatus, 1);
}

TEST_F(ServerProgramTest, asks_for_the_password_on_the_terminal_alone) {
  const Text sAddress =
      "postgresql://orvane@127.0.0.1:" + std::to_string(PostgresCluster::Get().Port()) + "/" +
      m_sDatabase;
  int nTerminal = -1;
  const pid_t child = forkpty(&nTerminal, nullptr, nullptr, nullptr);
  if (child == 0) {
    execl(ORVANE_HISTORIAN, "orvane-historian", "init", "--server", sAddress.c_str(), nullptr);
    _exit(127);
  }
  Text sSeen;
  bool bTyped = false;
  char character = 0;
  while (read(nTerminal, &character, 1) == 1) {
    sSeen += character;
    if (bTyped || !sSeen.ends_with("Password: ")) continue;
    const Text sPassword = Text(PostgresCluster::kPassword) + "\n";
    EXPECT_EQ(write(nTerminal, sPassword.data(), sPassword.size()),
              static_cast<ssize_t>(sPassword.size()));
    bTyped = true;
  }
  int nStatus = -1;
  waitpid(child, &nStatus, 0);
  close(nTerminal);
  EXPECT_EQ(nStatus, 0);
  EXPECT_THAT(sSeen, HasSubstr("Made the historian"));
  EXPECT_THAT(sSeen, testing::Not(HasSubstr(PostgresCluster::kPassword)));
}

}  // namespace
}  // namespace orvane::tools
