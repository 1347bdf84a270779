// Who logs on from a shell, on a PostgreSQL server that asks for a password.
#include "tests/provider/engines/postgres_cluster.h"
#include "tests/tools/orvane_program.h"
#include "tests/tools/terminal_run.h"

namespace orvane::tools {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using tests::PostgresCluster;

constexpr const char* kPassword = PostgresCluster::kPassword;

class orvane_logon : public OrvaneProgram {
 protected:
  orvane_logon() : m_sDatabase(PostgresCluster::Get().NewDatabase()) {
    component::RegisterLibrary(ORVANE_PROVIDER, m_folder / "data/orvane/components");
    m_sServer = "postgresql://127.0.0.1:" + std::to_string(PostgresCluster::Get().Port()) + "/" +
                m_sDatabase;
    WriteSample("Plant.orvc", "\"Server\",\"text\":\"localhost\"",
                "\"Server\",\"text\":\"" + m_sServer + "\"");
    Orvane("seal Plant.orvc");
    const auto made = Shell("'" ORVANE_HISTORIAN "' init --server '" +
                            PostgresCluster::Get().Address(m_sDatabase) + "'");
    EXPECT_EQ(made.nStatus, 0) << made.sErrors;
  }
  ~orvane_logon() override { PostgresCluster::Get().DropDatabase(m_sDatabase); }

  Text Line() const {
    return "echo SELECT 1 AS one > one.sql; orvane sql Plant.orvc '" + m_sServer +
           "' - --csv --user orvane ";
  }
  TerminalRun OnTerminal(const std::vector<Typed>& typed) const {
    return RunOnTerminal(InFolder(Line() + "< one.sql; echo status $?"), typed);
  }

  Text m_sDatabase;
  Text m_sServer;
};

TEST_F(orvane_logon, asks_the_terminal_where_the_server_wants_a_password) {
  const Text sPrompt = "Password for " + m_sServer + ": ";
  auto run = OnTerminal({{sPrompt, Text(kPassword) + "\n"}});
  EXPECT_THAT(run.sSeen, StartsWith(sPrompt));
  EXPECT_THAT(run.sSeen, EndsWith("one\r\r\n1\r\r\nstatus 0\r\n"));
  EXPECT_THAT(run.sSeen, Not(HasSubstr(kPassword)));
  run = OnTerminal({{sPrompt, "another\n"}});
  EXPECT_THAT(run.sSeen, EndsWith("status 3\r\n"));
  // Ctrl+C is no password.
  run = OnTerminal({{sPrompt, "\x03"}});
  EXPECT_THAT(run.sSeen, EndsWith("status 3\r\n"));
}

TEST_F(orvane_logon, takes_the_password_of_a_file_descriptor_and_asks_nobody) {
  const Text sWith = Line() + "--password-fd 3 < one.sql 3<<'END'\n";
  auto ended = Shell(sWith + kPassword + "\nEND\n:");
  EXPECT_EQ(ended.sOutput, "one\r\n1\r\n") << ended.sErrors;
  ended = Shell("{ " + sWith + "another\nEND\n}");
  EXPECT_EQ(ended.nStatus, 3);
  EXPECT_EQ(ended.sOutput, "");
  ended = Shell("setsid -w '" ORVANE_PROGRAM "' structure Plant.orvc '" + m_sServer +
                "/Plant1/Data' --user orvane");
  EXPECT_EQ(ended.nStatus, 3);
}

TEST_F(orvane_logon, gives_the_terminal_back_when_it_is_ended) {
  const auto run = RunOnTerminal(InFolder("exec '" ORVANE_PROGRAM "' structure Plant.orvc '" +
                                          m_sServer + "/P/T' --user orvane"),
                                 {{"Password for " + m_sServer + ": ", "", SIGTERM}});
  EXPECT_EQ(run.nStatus, 143);
  EXPECT_TRUE(run.bEchoes);
}

}  // namespace
}  // namespace orvane::tools
