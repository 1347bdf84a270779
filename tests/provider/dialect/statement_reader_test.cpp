#include "provider/dialect/statement_reader.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "tests/provider/dialect/tokens.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

class statement_reader : public testing::Test {
 protected:
  const StatementTree& Read(std::string_view sStatement) {
    m_sStatement = sStatement;
    m_tree = StatementReader(sStatement, Tokens(sStatement), m_work).Read();
    return m_tree;
  }
  Text Written(TokenRange range) const {
    const Token& first = m_tree.tokens[range.begin];
    const Token& last = m_tree.tokens[range.end - 1];
    return Text(m_sStatement.substr(first.position, last.position + last.length - first.position));
  }
  // Every operator with brackets around what it joins; what joins nothing as it is written.
  Text Shape(const Expr& expr) const {
    if (expr.children.empty()) return Written(expr.range);
    Text sShape = "[";
    for (const auto* const child : expr.children) {
      sShape += (sShape.size() > 1 ? " " : "") + Shape(*child);
    }
    return sShape + "]";
  }
  Text ShapeOf(const Text& sExpression) {
    const Text sStatement = "SELECT " + sExpression;
    try {
      const auto& tree = Read(sStatement);
      return Shape(*tree.mainQuery->cores[0]->items[0].expr);
    } catch (const platform::Failure& failed) {
      return failed.Description();
    }
  }

  std::string_view m_sStatement;
  StatementWork m_work{Deadline({}, {})};
  StatementTree m_tree;
};

TEST_F(statement_reader, binds_operators_as_the_engine_does) {
  const std::pair<const char*, const char*> rows[] = {
      {"a OR b AND c", "[a [b c]]"},
      {"a AND b AND c", "[a b c]"},
      {"NOT a = b", "[[a b]]"},
      {"a = b < c", "[a [b c]]"},
      {"a < b + c * d || e", "[a [b [c [d e]]]]"},
      {"a - b - c", "[[a b] c]"},
      {"- a * b", "[[a] b]"},
      {"a BETWEEN b AND c AND d", "[[a b c] d]"},
      {"a NOT BETWEEN b AND c = d", "[[a b c] d]"},
      {"a IN (b, c) IS NULL", "[[a b c] NULL]"},
      {"a IS NOT DISTINCT FROM b OR c", "[[a b] c]"},
      {"a LIKE b ESCAPE c AND d NOT NULL", "[[a b c] [d]]"},
      {"a COLLATE x || b", "[[a] b]"},
      {"(a, b) = (c, d)", "[[a b] [c d]]"},
      {"CASE a WHEN b THEN c ELSE d END + e", "[[a b c d] e]"},
      {"f(a, b) FILTER (WHERE c) OVER (PARTITION BY d ORDER BY e ROWS 1 PRECEDING) < g",
       "[[a b] g]"},
      {"CAST(a AS VARCHAR(10)) = b", "[[a] b]"},
  };
  for (const auto& [sText, sShape] : rows) EXPECT_EQ(ShapeOf(sText), sShape) << sText;
}

TEST_F(statement_reader, finds_tables_items_and_clauses) {
  const auto& tree = Read(
      "WITH n(x) AS (SELECT 1) SELECT a.*, b AS c, d e, 'f' FROM P..A a JOIN P..B USING (k, l) "
      "NATURAL JOIN (SELECT 2), n WHERE g GROUP BY h HAVING i ORDER BY j LIMIT 1 OFFSET 2");
  const Scope& core = *tree.mainQuery->cores[0];
  ASSERT_EQ(core.items.size(), 4U);
  EXPECT_EQ(core.items[0].expr, nullptr);
  EXPECT_TRUE(core.items[0].star.bStar);
  EXPECT_EQ(core.items[1].sAlias, "c");
  EXPECT_EQ(core.items[2].sAlias, "e");
  EXPECT_EQ(core.items[3].sAlias, "");
  ASSERT_EQ(core.sources.size(), 4U);
  EXPECT_EQ(core.sources[0]->sAlias, "a");
  EXPECT_EQ(core.sources[1]->usedNames.size(), 2U);
  EXPECT_TRUE(core.sources[2]->bNatural);
  EXPECT_NE(core.sources[2]->query, nullptr);
  EXPECT_EQ(core.conditions.size(), 4U);  // WHERE, HAVING, LIMIT, OFFSET
  EXPECT_EQ(core.sorts.size(), 1U);
  EXPECT_EQ(tree.mainQuery->sorts.size(), 1U);
  // A subquery does not see the tables beside it.
  EXPECT_EQ(core.sources[2]->query->cores[0]->parent, core.parent);
  EXPECT_EQ(core.parent->namedQueries[0].columns, std::vector<Text>{"x"});
}

TEST_F(statement_reader, finds_what_a_change_changes) {
  const auto& insert = Read(
      "INSERT INTO P..T (a, b) VALUES (1, 2), (3, 4) ON CONFLICT (a) DO "
      "UPDATE SET (a, b) = (5, 6), c = 7 WHERE d RETURNING e");
  EXPECT_TRUE(insert.bInsert);
  EXPECT_EQ(insert.targetColumns.size(), 2U);
  EXPECT_EQ(insert.mainQuery->cores[0]->rows.size(), 2U);
  ASSERT_EQ(insert.assignments.size(), 2U);
  EXPECT_EQ(insert.assignments[0].columns.size(), 2U);
  EXPECT_EQ(insert.changeScope->items.size(), 1U);
  const auto& update =
      Read("UPDATE OR IGNORE P..T AS t SET a = 1 FROM P..U WHERE b ORDER BY c LIMIT 5");
  EXPECT_EQ(update.targetSource->sAlias, "t");
  EXPECT_EQ(update.changeScope->sources.size(), 2U);
  const auto& remove = Read("WITH w AS (SELECT 1) DELETE FROM P..T WHERE a IN w");
  EXPECT_EQ(remove.kind, StatementKind::Change);
  EXPECT_NE(remove.changeScope->parent, nullptr);
}

TEST_F(statement_reader, finds_what_a_definition_defines) {
  const auto& table = Read(
      "CREATE TABLE P..T (a TIMESTAMP(3) NOT NULL DEFAULT 1, b \"datetime\" "
      "CHECK (b > 0), c DOUBLE PRECISION REFERENCES x (y), d, PRIMARY KEY (a, "
      "b), CHECK (a < b)) WITHOUT ROWID");
  ASSERT_EQ(table.columns.size(), 4U);
  EXPECT_EQ(table.columns[0].type, platform::DataType::DBTimeStamp);
  EXPECT_NE(table.columns[0].initial, nullptr);
  EXPECT_EQ(table.columns[1].type, platform::DataType::DBTimeStamp);
  EXPECT_NE(table.columns[2].type, platform::DataType::DBTimeStamp);
  EXPECT_EQ(table.columns[3].sName, "d");
  EXPECT_EQ(table.changeScope->conditions.size(), 2U);
  EXPECT_TRUE(Read("CREATE VIEW P..V (a, b) AS SELECT 1, 2").bView);
  EXPECT_TRUE(Read("CREATE INDEX IF NOT EXISTS P..i ON T (a COLLATE x DESC) WHERE b").bIndex);
  EXPECT_EQ(Read("ALTER TABLE P..T ADD COLUMN x DATETIME").columns.size(), 1U);
  Read("ALTER TABLE P..T RENAME COLUMN a TO b");
}

TEST_F(statement_reader, says_what_it_does_not_know) {
  const std::pair<const char*, const char*> rows[] = {
      {"1 2",
       "\"2\" is not expected here (character 10 of the statement); correct the statement "
       "before or at it."},
      {"1 +", "The statement ends too early (character 11 of the statement); complete it."},
      {"CASE WHEN 1 END", "THEN is missing (character 20 of the statement); write THEN here."},
      {"a BETWEEN 1", "AND is missing (character 19 of the statement); write AND here."},
      {"f(", "A bracket is never closed (character 9 of the statement); close it with )."},
      {"1 FROM (P..A) x",
       "A bracket of tables has a name (character 22 of the statement); name "
       "the tables in it."},
      {"EXISTS 1",
       "\"1\" is not expected here (character 15 of the statement); correct the "
       "statement before or at it."},
  };
  for (const auto& [sText, sFailure] : rows) EXPECT_EQ(ShapeOf(sText), sFailure) << sText;
}

}  // namespace
}  // namespace orvane::provider::dialect
