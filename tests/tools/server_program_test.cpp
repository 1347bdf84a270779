// The program orvane-historian on a PostgreSQL server.
#include <pty.h>
#include <termios.h>

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
  const Outcome outcome = Run({"generate", "--server", m_sServer});
  EXPECT_EQ(outcome.nStatus, 2);
  EXPECT_THAT(outcome.sErrors, StartsWith("The catalog \"Plant1\" holds no generated signals"));
}

// The program on a terminal of its own, where something is typed when it asks for the password.
class TerminalTest : public ServerProgramTest {
 protected:
  void RunInit(const Text& sTyped) {
    const Text sAddress =
        "postgresql://orvane@127.0.0.1:" + std::to_string(PostgresCluster::Get().Port()) + "/" +
        m_sDatabase;
    const pid_t child = forkpty(&m_nTerminal, nullptr, nullptr, nullptr);
    if (child == 0) {
      execl(ORVANE_HISTORIAN, "orvane-historian", "init", "--server", sAddress.c_str(), nullptr);
      _exit(127);
    }
    bool bTyped = false;
    char character = 0;
    while (read(m_nTerminal, &character, 1) == 1) {
      m_sSeen += character;
      // It ends when the program does, or has given the terminal back.
      if (bTyped && m_sSeen.ends_with(".\r\n")) break;
      if (bTyped || !m_sSeen.ends_with("Password: ")) continue;
      EXPECT_EQ(write(m_nTerminal, sTyped.data(), sTyped.size()),
                static_cast<ssize_t>(sTyped.size()));
      bTyped = true;
    }
    waitpid(child, &m_nStatus, 0);
  }
  ~TerminalTest() override {
    if (m_nTerminal >= 0) close(m_nTerminal);
  }

  int m_nTerminal = -1;
  int m_nStatus = -1;
  Text m_sSeen;
};

TEST_F(TerminalTest, asks_for_the_password_on_the_terminal_alone) {
  RunInit(Text(PostgresCluster::kPassword) + "\n");
  EXPECT_EQ(m_nStatus, 0);
  EXPECT_THAT(m_sSeen, HasSubstr("Made the historian"));
  EXPECT_THAT(m_sSeen, testing::Not(HasSubstr(PostgresCluster::kPassword)));
}

TEST_F(TerminalTest, is_given_back_as_it_was_when_the_question_is_broken_off) {
  RunInit("some\x03");
  EXPECT_TRUE(WIFEXITED(m_nStatus));
  EXPECT_EQ(WEXITSTATUS(m_nStatus), 1);
  EXPECT_THAT(m_sSeen, testing::Not(HasSubstr("some")));
  termios now{};
  ASSERT_EQ(tcgetattr(m_nTerminal, &now), 0);
  EXPECT_NE(now.c_lflag & ECHO, 0U);
  EXPECT_NE(now.c_lflag & ISIG, 0U);
  EXPECT_NE(now.c_cc[VEOL], 3);
}

}  // namespace
}  // namespace orvane::tools
