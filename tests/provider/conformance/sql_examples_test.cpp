// The examples of docs/sql.md, each with what stands below it, on every engine.
#include <algorithm>
#include <fstream>
#include <sstream>

#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

struct Example {
  platform::Text sStatement;
  platform::Text sResult;    ///< a line each, without the mark before it
  platform::Text sOnServer;  ///< on a PostgreSQL server, where that is something else
};

constexpr std::string_view kMark = "-- ";
constexpr std::string_view kServerMark = "-- PostgreSQL: ";

std::vector<Example> Examples() {
  std::ifstream page(ORVANE_SQL_PAGE);
  std::vector<Example> examples;
  bool bExample = false;
  for (platform::Text sLine; std::getline(page, sLine);) {
    if (sLine.starts_with("```")) {
      bExample = sLine == "```sql";
    } else if (bExample && !sLine.starts_with(kMark)) {
      examples.push_back({sLine, {}, {}});
    } else if (bExample && sLine.starts_with(kServerMark)) {
      examples.back().sOnServer += sLine.substr(kServerMark.size()) + "\n";
    } else if (bExample) {
      examples.back().sResult += sLine.substr(kMark.size()) + "\n";
    }
  }
  return examples;
}

/// The lines of a result; in one order where the statement asks for none.
std::vector<platform::Text> LinesOf(const platform::Text& sResult, const Example& example) {
  std::vector<platform::Text> lines;
  std::istringstream stream(sResult);
  for (platform::Text sLine; std::getline(stream, sLine);) lines.push_back(sLine);
  if (example.sStatement.find("ORDER BY") == platform::Text::npos) std::ranges::sort(lines);
  return lines;
}

class sql_examples : public Conformance {
 protected:
  sql_examples() {
    Run(*m_opened, "CREATE DATABASE \"Plant1\" ");
    Run(*m_opened,
        "CREATE TABLE Plant1..Copy (Tag TEXT, Timestamp TIMESTAMP, Value DOUBLE, Status TEXT)");
    Text sRows;
    for (int i = 0; i < 24; ++i) {
      const Text sHour = std::to_string(i);
      sRows += (i == 0 ? "" : ", ") + ("('T1', '*-" + sHour + "h', " + sHour + ", 'Good')");
    }
    Run(*m_opened, "INSERT INTO Plant1..Copy VALUES " + sRows);
    Run(*m_opened,
        "INSERT INTO Plant1..Tags (Tag, Description) VALUES ('T1', '*-2h'), ('T2', "
        "'none')");
    Run(*m_opened, "CREATE TABLE Plant1..Shifts (Day DATE, Begins TIME, Note TEXT)");
    PutBack();
  }

  void PutBack() {
    for (const char* const sStatement :
         {"DROP TABLE IF EXISTS Plant1..Last", "DELETE FROM Plant1..Data",
          "INSERT INTO Plant1..Data SELECT * FROM Plant1..Copy", "DELETE FROM Plant1..Shifts"}) {
      Run(*m_opened, sStatement);
    }
    Run(*m_opened,
        "INSERT INTO Plant1..Shifts VALUES ('2024-05-13', '06:00', 'y'), ('2024-05-14', '14:00', "
        "'2024-05-14'), ('2024-05-15', '22:00', 't')");
  }

  Text ResultOf(const Text& sStatement) {
    try {
      const auto result = Run(*m_opened, sStatement);
      if (result.recordset->FieldCount() == 0) {
        return std::to_string(result.lRecordsAffected) + " rows changed\n";
      }
      Text sRows;
      for (const char c : Rows(*result.recordset)) sRows += c == '|' ? " | " : Text(1, c);
      return sRows;
    } catch (const platform::Failure& failed) {
      return "refused: " + failed.Description() + "\n";
    }
  }

  std::unique_ptr<ado::Session> m_opened = Open("Time Zone = Europe/Madrid;");
};

ORVANE_ON_EVERY_ENGINE(sql_examples);

TEST_P(sql_examples, come_to_what_the_page_tells) {
  const bool bServer = Text(GetParam().sName) == "postgresql";
  const auto examples = Examples();
  EXPECT_GE(examples.size(), 20U);
  for (const Example& example : examples) {
    const bool bElse = bServer && !example.sOnServer.empty();
    EXPECT_EQ(LinesOf(ResultOf(example.sStatement), example),
              LinesOf(bElse ? example.sOnServer : example.sResult, example))
        << example.sStatement;
    PutBack();
  }
}

TEST(sql_page, tells_the_results_of_its_examples) {
  for (const Example& example : Examples()) {
    EXPECT_NE(example.sResult, "") << example.sStatement;
    EXPECT_NE(example.sResult, example.sOnServer) << "told twice: " << example.sStatement;
  }
}

// Every block of the page is one of examples.
TEST(sql_page, shows_nothing_but_examples) {
  std::ifstream page(ORVANE_SQL_PAGE);
  for (platform::Text sLine; std::getline(page, sLine);) {
    EXPECT_FALSE(sLine.starts_with("    ")) << sLine;
    EXPECT_TRUE(!sLine.starts_with("```") || sLine == "```sql" || sLine == "```") << sLine;
  }
}

}  // namespace
}  // namespace orvane::provider::conformance
