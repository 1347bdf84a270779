// The log of statements, as a connection to any server writes it.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/failure.h"
#include "tests/files/temporary_folder.h"
#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

class log : public Conformance {
 protected:
  struct Folder : files::FolderTest {
    using FolderTest::Path;
    void TestBody() override {}
  };

  Text Options(int nLevel) const {
    return "Log File = " + m_sFile + "; Log Level = " + std::to_string(nLevel) + ";";
  }
  Text Content() const {
    std::ostringstream content;
    content << std::ifstream(m_sFile).rdbuf();
    return content.str();
  }

  Folder m_folder;
  const Text m_sFile = m_folder.Path("statements.log");
};

ORVANE_ON_EVERY_ENGINE(log);

TEST_P(log, tells_each_statement_with_what_came_of_it) {
  const auto opened = OpenPlant(Options(2));
  Run(*opened, "SELECT Value FROM Plant1..Data WHERE Timestamp > '*-3h'");
  With(*opened, "UPDATE Plant1..Data SET Status = ? WHERE Value < ?",
       {Value("bound and unseen"), Value(4.0)});
  Failing(*opened, "SELECT nothing FROM Plant1..Data");
  const Text sLog = Content();
  EXPECT_THAT(sLog, ContainsRegex("info open [^\n]+\n"));
  EXPECT_THAT(sLog, ContainsRegex("SELECT Value FROM Plant1..Data WHERE Timestamp > '\\*-3h'\n"
                                  "# 20[0-9T:.-]+Z [^\n]+ info 3 rows, 0 changed, [0-9]+ ms\n"));
  EXPECT_THAT(sLog, ContainsRegex("UPDATE Plant1..Data SET Status = \\? WHERE Value < \\?\n"
                                  "# [^\n]+ info 0 rows, 4 changed, [0-9]+ ms\n"));
  EXPECT_THAT(sLog, ContainsRegex("SELECT nothing FROM Plant1..Data\n# [^\n]+ error "));
  EXPECT_THAT(sLog, Not(HasSubstr("bound and unseen")));
}

TEST_P(log, holds_neither_password_nor_bound_values_at_any_level) {
  const auto opened = OpenPlant(Options(3));
  With(*opened, "SELECT count(*) FROM Plant1..Data WHERE Status = ?", {Value("bound and unseen")});
  opened->OpenSchema(platform::SchemaNumber::Catalogs, {}, {});
  EXPECT_THAT(Content(), HasSubstr("schema rowset"));
  EXPECT_THAT(Content(), Not(HasSubstr("bound and unseen")));
  if (!m_server->Password().empty()) EXPECT_THAT(Content(), Not(HasSubstr(m_server->Password())));
}

TEST_P(log, tells_as_much_as_its_level_says) {
  OpenPlant(Options(0));
  EXPECT_FALSE(std::filesystem::exists(m_sFile));
  const auto opened = Open(Options(1));
  Run(*opened, "SELECT count(*) FROM Plant1..Data");
  Failing(*opened, "SELECT nothing FROM Plant1..Data");
  EXPECT_THAT(Content(), Not(HasSubstr("count")));
  EXPECT_THAT(Content(), HasSubstr("SELECT nothing"));
}

TEST_P(log, that_is_taken_away_stops_no_work) {
  const auto opened = OpenPlant(Options(3));
  std::filesystem::remove(m_sFile);
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
  EXPECT_FALSE(std::filesystem::exists(m_sFile));
}

}  // namespace
}  // namespace orvane::provider::conformance
