// The examples of docs/sql.md, each with what stands below it.
#include <fstream>

#include "tests/provider/dialect/plant.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

struct Example {
  Text sStatement;
  Text sResult;  ///< a line each, without the mark before it
};

constexpr std::string_view kMark = "-- ";

std::vector<Example> Examples() {
  std::ifstream page(ORVANE_SQL_PAGE);
  std::vector<Example> examples;
  bool bExample = false;
  for (Text sLine; std::getline(page, sLine);) {
    if (sLine.starts_with("```")) {
      bExample = sLine == "```sql";
    } else if (bExample && !sLine.starts_with(kMark)) {
      examples.push_back({sLine, {}});
    } else if (bExample) {
      examples.back().sResult += sLine.substr(kMark.size()) + "\n";
    }
  }
  return examples;
}

class sql_examples : public Plant {
 protected:
  sql_examples() {
    Run("UPDATE Plant1..Tags SET Description = '*-2h' WHERE Tag = 'T1'");
    Run("CREATE TABLE Plant1..Shifts (Day DATE, Begins TIME, Note TEXT)");
    PutBack();
  }

  void PutBack() {
    Run("DELETE FROM Plant1..Data");
    Run("INSERT INTO Plant1..Data SELECT * FROM Plant1..Copy");
    Run("DELETE FROM Plant1..Shifts");
    Run("INSERT INTO Plant1..Shifts VALUES ('2024-05-13', '06:00', 'y'), ('2024-05-14', '14:00', "
        "'2024-05-14'), ('2024-05-15', '22:00', 't')");
  }

  Text ResultOf(const Text& sStatement) {
    try {
      const auto result = m_session->Execute({sStatement, 0, std::chrono::seconds(0)}, {});
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
};

TEST_F(sql_examples, come_to_what_the_page_tells) {
  const auto examples = Examples();
  EXPECT_GE(examples.size(), 20U);
  for (const Example& example : examples) {
    EXPECT_EQ(ResultOf(example.sStatement), example.sResult) << example.sStatement;
    PutBack();
  }
}

TEST_F(sql_examples, are_told_with_their_results) {
  for (const Example& example : Examples()) {
    EXPECT_NE(example.sResult, "") << example.sStatement;
  }
}

// Every block of the page is one of examples.
TEST_F(sql_examples, are_all_that_the_page_shows) {
  std::ifstream page(ORVANE_SQL_PAGE);
  for (Text sLine; std::getline(page, sLine);) {
    EXPECT_FALSE(sLine.starts_with("    ")) << sLine;
    EXPECT_TRUE(!sLine.starts_with("```") || sLine == "```sql" || sLine == "```") << sLine;
  }
}

}  // namespace
}  // namespace orvane::provider::dialect
