// The program orvane-historian on a PostgreSQL server.
#include <pty.h>
#include <termios.h>

#include <functional>
#include <utility>

#include "tests/fakes/variable.h"
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
  void RunInit(const Text& sTyped) { RunTyped({"init", "--server", AddressOf("orvane")}, sTyped); }
  Text AddressOf(const Text& sUser) const {
    return "postgresql://" + sUser + "@127.0.0.1:" + std::to_string(PostgresCluster::Get().Port()) +
           "/" + m_sDatabase;
  }
  void RunTyped(std::vector<Text> arguments, const Text& sTyped,
                const std::function<void(pid_t)>& atEnd = {}) {
    arguments.insert(arguments.begin(), "orvane-historian");
    std::vector<char*> pointers;
    for (auto& sArgument : arguments) pointers.push_back(sArgument.data());
    pointers.push_back(nullptr);
    const pid_t child = forkpty(&m_nTerminal, nullptr, nullptr, nullptr);
    if (child == 0) {
      execv(ORVANE_HISTORIAN, pointers.data());
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
    if (atEnd) atEnd(child);
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

TEST_F(TerminalTest, asks_for_no_password_that_would_go_out_unencrypted) {
  RunTyped({"init", "--server",
            Text("postgresql://orvane@") + PostgresCluster::kFarHost + ":" +
                std::to_string(PostgresCluster::Get().Port()) + "/" + m_sDatabase},
           Text(PostgresCluster::kPassword) + "\n");
  EXPECT_TRUE(WIFEXITED(m_nStatus));
  EXPECT_EQ(WEXITSTATUS(m_nStatus), 1);
  EXPECT_THAT(m_sSeen, HasSubstr("does not encrypt what is sent, so nothing was sent to it"));
  EXPECT_THAT(m_sSeen, testing::Not(HasSubstr("Password")));
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

// A password that stands nowhere else, and everything that is written under the user's folders.
class CanaryTest : public TerminalTest {
 protected:
  static constexpr const char* kCanary = "Zeisig-7391-qXv;\"\\x";
  // Enough of it to be known, without what is written in another way in files.
  static constexpr const char* kBeginning = "Zeisig-7391";

  CanaryTest() {
    PostgresCluster::Get().Do(m_sDatabase, "DROP ROLE IF EXISTS canary");
    PostgresCluster::Get().Do(
        m_sDatabase, Text("CREATE ROLE canary LOGIN SUPERUSER PASSWORD '") + kCanary + "'");
    for (const char* const sFolder : {"home", "temporary"}) {
      std::filesystem::create_directory(m_root.Path() / sFolder);
    }
  }
  // The first file below the folders that holds it; the name of the file counts, too.
  Text FileWith(const Text& sText) const {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(m_root.Path())) {
      if (entry.path().string().find(sText) != Text::npos) return entry.path().string();
      if (entry.is_regular_file() && ContentOf(entry.path()).find(sText) != Text::npos) {
        return entry.path().string();
      }
    }
    return {};
  }
  static Text ContentOf(const std::filesystem::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
  }
  static void ExpectHidden(const std::filesystem::path& process) {
    for (const char* const sFile : {"cmdline", "environ", "comm"}) {
      const Text sContent = ContentOf(process / sFile);
      EXPECT_FALSE(sContent.empty()) << sFile;
      EXPECT_EQ(sContent.find(kBeginning), Text::npos) << sFile;
    }
  }
  Text Log() const { return (m_root.Path() / "statements.log").string(); }
  std::unique_ptr<ado::Session> LogOn(const Text& sPassword) const {
    return provider::HistorianProvider().Open(
        ado::ConnectionSettings::Parse("Data Source = " + AddressOf("canary") +
                                       "; User ID = canary; Log File = " + Log() +
                                       "; Log Level = 3"),
        sPassword, {});
  }

  // After the cluster was made, which is not the user's.
  fakes::Variable m_home{"HOME", (m_root.Path() / "home").c_str()};
  fakes::Variable m_temporary{"TMPDIR", (m_root.Path() / "temporary").c_str()};
};

TEST_F(CanaryTest, stands_nowhere_after_work_of_the_provider) {
  const auto opened = LogOn(kCanary);
  opened->Execute({"CREATE DATABASE \"Mill\" ", 0, {}}, {});
  ado::Statement statement{"INSERT INTO Mill..Data (Tag, Timestamp, Value) VALUES (?, ?, ?)"};
  statement.parameters = {platform::Value("T1"), platform::Value(provider::FixedNow()),
                          platform::Value(1.5)};
  opened->Execute(statement, {});
  EXPECT_THROW(opened->Execute(statement, {}), platform::Failure);
  EXPECT_THROW(opened->Execute({"SELECT nothing FROM Mill..Data", 0, {}}, {}), platform::Failure);
  ExpectHidden("/proc/self");
  PostgresCluster::Get().Do("postgres",
                            "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE usename "
                            "= 'canary'");
  EXPECT_THROW(opened->Execute({"SELECT 1", 0, {}}, {}), platform::Failure);
  try {
    LogOn(Text(kCanary) + "y");
    FAIL();
  } catch (const platform::Failure& failed) {
    EXPECT_EQ(failed.Description().find(kBeginning), Text::npos);
  }
  // It is looked for where there is something to find.
  EXPECT_EQ(FileWith("SELECT nothing FROM"), Log());
  EXPECT_EQ(FileWith(kBeginning), "");
}

TEST_F(CanaryTest, stands_nowhere_after_work_of_the_program) {
  RunTyped({"init", "--server", AddressOf("canary")}, Text(kCanary) + "\n");
  EXPECT_EQ(m_nStatus, 0) << m_sSeen;
  EXPECT_EQ(m_sSeen.find(kBeginning), Text::npos);
  close(std::exchange(m_nTerminal, -1));
  m_sSeen.clear();
  // One that fails behind the logon, and is looked at while it is a process still.
  const Text sFile = WriteFile("rows.csv", "Nothing\n1\n");
  bool bLooked = false;
  RunTyped({"import", sFile, "--server", AddressOf("canary"), "--catalog", "None"},
           Text(kCanary) + "\n", [&](pid_t process) {
             bLooked = true;
             const auto folder = std::filesystem::path("/proc") / std::to_string(process);
             EXPECT_EQ(ContentOf(folder / "cmdline").find(kBeginning), Text::npos);
             EXPECT_EQ(ContentOf(folder / "environ").find(kBeginning), Text::npos);
           });
  EXPECT_TRUE(bLooked);
  EXPECT_EQ(WEXITSTATUS(m_nStatus), 1) << m_sSeen;
  EXPECT_EQ(m_sSeen.find(kBeginning), Text::npos);
  EXPECT_EQ(FileWith("Nothing"), sFile);
  EXPECT_EQ(FileWith(kBeginning), "");
}

}  // namespace
}  // namespace orvane::tools
