#include "provider/statement_log.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "tests/provider/temporary_root.h"

namespace orvane::provider {
namespace {

using platform::Text;
using testing::HasSubstr;
using testing::Not;

class statement_log : public testing::Test {
 protected:
  Text File() const { return (m_root.Path() / "log.txt").string(); }
  Text Content() const {
    std::ostringstream content;
    content << std::ifstream(File()).rdbuf();
    return content.str();
  }
  std::unique_ptr<ado::Session> Open(int nLevel) {
    HistorianProvider provider(PlaceAt(m_root.Path()));
    return provider.Open(
        ado::ConnectionSettings::Parse("Data Source = localhost;Log File = " + File() +
                                       ";Log Level = " + std::to_string(nLevel) + ";"),
        "secret", {});
  }
  static void Work(ado::Session& session) {
    session.Execute({"SELECT\n1", 0, {}}, {});
    FailureOf([&] { session.Execute({"SELECT nothing", 0, {}}, {}); });
    session.OpenSchema(platform::SchemaNumber::Catalogs, {}, {});
  }

  TemporaryRoot m_root;
};

TEST_F(statement_log, writes_nothing_at_level_0) {
  Work(*Open(0));
  EXPECT_FALSE(std::filesystem::exists(File()));
}

TEST_F(statement_log, writes_failures_at_level_1) {
  Work(*Open(1));
  EXPECT_THAT(Content(), HasSubstr("error"));
  EXPECT_THAT(Content(), HasSubstr("SELECT nothing"));
  EXPECT_THAT(Content(), Not(HasSubstr("SELECT\\n1")));
}

TEST_F(statement_log, writes_statements_at_level_2_on_one_line_each) {
  Work(*Open(2));
  EXPECT_THAT(Content(), HasSubstr("SELECT\\n1\n"));
  EXPECT_THAT(Content(), HasSubstr("open localhost"));
  EXPECT_THAT(Content(), Not(HasSubstr("schema rowset")));
}

TEST_F(statement_log, writes_schema_rowsets_at_level_3) {
  Work(*Open(3));
  EXPECT_THAT(Content(), HasSubstr("schema rowset 1\n"));
}

TEST_F(statement_log, writes_failed_opening_and_never_a_password) {
  Open(3)->Close();
  HistorianProvider provider(PlaceAt(m_root.Path()));
  FailureOf([&] {
    provider.Open(ado::ConnectionSettings::Parse("Data Source = x://u:secret@h;Log Level = 3;Log "
                                                 "File = " +
                                                 File() + ";"),
                  "secret", {});
  });
  EXPECT_THAT(Content(), HasSubstr("holds a password"));
  EXPECT_THAT(Content(), Not(HasSubstr("secret")));
}

TEST_F(statement_log, begins_and_ends_on_an_open_connection) {
  const auto session = Open(0);
  session->PropertyValue("Log Level", 2);
  session->Execute({"SELECT 2", 0, {}}, {});
  session->PropertyValue("Log Level", 0);
  session->Execute({"SELECT 3", 0, {}}, {});
  EXPECT_THAT(Content(), HasSubstr("SELECT 2"));
  EXPECT_THAT(Content(), Not(HasSubstr("SELECT 3")));
}

TEST_F(statement_log, says_that_its_file_cannot_be_opened_and_changes_nothing) {
  const auto session = Open(0);
  session->PropertyValue("Log Level", 2);
  EXPECT_EQ(
      FailureOf([&] { session->PropertyValue("Log File", m_root.Path().string()); }),
      "3807: The log file " + m_root.Path().string() +
          " cannot be opened; name one in the server's extended options that lies in a folder "
          "that you may write to.");
  EXPECT_EQ(session->PropertyValue("Log File"), platform::Value(File()));
  session->Execute({"SELECT 4", 0, {}}, {});
  EXPECT_THAT(Content(), HasSubstr("SELECT 4"));
}

TEST_F(statement_log, refuses_a_pipe_instead_of_waiting_for_its_reader) {
  const Text sPipe = (m_root.Path() / "pipe").string();
  ASSERT_EQ(mkfifo(sPipe.c_str(), 0600), 0);
  HistorianProvider provider(PlaceAt(m_root.Path()));
  const auto sentence = [](const Text& sFile) {
    return "3807: The log file " + sFile +
           " is no file but a pipe or a device; name a file in the server's extended options.";
  };
  for (const Text& sFile : {sPipe, Text("/dev/null")}) {
    EXPECT_EQ(FailureOf([&] {
                provider.Open(ado::ConnectionSettings::Parse("Log Level = 1;Log File = " + sFile),
                              "", {});
              }),
              sentence(sFile));
  }
  // Nor is one taken that somebody reads: it would hold up the console once it is full.
  const int nReader = open(sPipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(nReader, 0);
  EXPECT_EQ(FailureOf([&] {
              provider.Open(ado::ConnectionSettings::Parse("Log Level = 3;Log File = " + sPipe), "",
                            {});
            }),
            sentence(sPipe));
  char c = 0;
  EXPECT_EQ(read(nReader, &c, 1), 0);
  close(nReader);
}

TEST_F(statement_log, lets_nothing_act_that_a_statement_or_a_name_brings) {
  const auto session = Open(3);
  FailureOf([&] {
    session->Execute(
        {"SELECT 'a\r\n$(touch /tmp/x)\x1B[2J\xE2\x80\xAE' FROM \"no\nsuch\"..t", 0, {}}, {});
  });
  std::istringstream lines(Content());
  int nLines = 0;
  for (Text sLine; std::getline(lines, sLine); ++nLines) {
    EXPECT_THAT(sLine, testing::StartsWith("# "));
    EXPECT_TRUE(std::ranges::none_of(sLine, [](char c) { return c >= 0 && c < 0x20; })) << sLine;
  }
  EXPECT_GE(nLines, 3);
  EXPECT_THAT(Content(), HasSubstr("'a\\r\\n$(touch /tmp/x)\\x1B[2J\\u{202E}'"));
}

TEST_F(statement_log, is_its_users_alone) {
  const mode_t before = umask(0);
  Open(2);
  umask(before);
  struct stat status {};
  ASSERT_EQ(stat(File().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(statement_log, leaves_every_file_that_is_none_as_it_is) {
  const Text sOther = (m_root.Path() / "other").string();
  const auto refusal = [&] {
    HistorianProvider provider(PlaceAt(m_root.Path()));
    return FailureOf([&] {
      provider.Open(ado::ConnectionSettings::Parse("Log Level = 2;Log File = " + File()), "", {});
    });
  };
  std::ofstream(File()) << "alias ls=ls\n";
  EXPECT_EQ(refusal(), "3807: The log file " + File() +
                           " holds something else than a log of statements, which is left as it "
                           "is; name a new file in the server's extended options.");
  EXPECT_EQ(Content(), "alias ls=ls\n");
  std::filesystem::remove(File());
  std::filesystem::create_symlink(sOther, File());
  EXPECT_EQ(refusal(), "3807: The log file " + File() +
                           " is a symbolic link, or another user's link leads to it; name the "
                           "file itself in the server's extended options.");
  EXPECT_FALSE(std::filesystem::exists(sOther));
  std::filesystem::remove(File());
  std::ofstream(sOther).flush();
  std::filesystem::create_hard_link(sOther, File());
  EXPECT_EQ(refusal(), "3807: The log file " + File() +
                           " has other names as well (hard links); name a new file in the "
                           "server's extended options.");
  EXPECT_EQ(Content(), "");
}

TEST_F(statement_log, appends_to_its_file_and_makes_the_folder_for_it) {
  const Text sFile = (m_root.Path() / "new" / "folder" / "log.txt").string();
  HistorianProvider provider(PlaceAt(m_root.Path()));
  const auto log = [&](const Text& sStatement) {
    const auto session =
        provider.Open(ado::ConnectionSettings::Parse("Log Level = 2;Log File = " + sFile), "", {});
    session->Execute({sStatement, 0, {}}, {});
  };
  log("SELECT 1");
  log("SELECT 2");
  std::ostringstream content;
  content << std::ifstream(sFile).rdbuf();
  EXPECT_THAT(content.str(), HasSubstr("SELECT 1\n"));
  EXPECT_THAT(content.str(), HasSubstr("SELECT 2\n"));
}

}  // namespace
}  // namespace orvane::provider
