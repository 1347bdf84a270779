#include <sqlite3.h>

#include <random>

#include "tests/provider/dialect/translated.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

TEST(translator_refusals, says_where_and_why_a_statement_is_refused) {
  const std::pair<const char*, const char*> rows[] = {
      {"SELECT * FROM Data",
       "The name \"Data\" stands without a catalog (character 15 of the statement); write "
       "catalog..Data, for example Plant1..Data."},
      {"INSERT INTO Data VALUES (1)",
       "The name \"Data\" stands without a catalog (character 13 of the statement); write "
       "catalog..Data, for example Plant1..Data."},
      {"SELECT * FROM Nowhere..Data",
       "There is no catalog \"Nowhere\" (character 15 of the statement); write the name of one "
       "that "
       "the server lists."},
      {"SELECT * FROM main.Data",
       "There is no catalog \"main\" (character 15 of the statement); write the name of one that "
       "the server lists."},
      {"SELECT * FROM Plant1..Nothing",
       "There is no table \"Nothing\" in the catalog Plant1 (character 23 of the statement); write "
       "the name of one that the catalog lists."},
      {"SELECT * FROM Plant1..sqlite_master",
       "There is no table \"sqlite_master\" in the catalog Plant1 (character 23 of the statement); "
       "write the name of one that the catalog lists."},
      {"SELECT * FROM sqlite_master",
       "The name \"sqlite_master\" stands without a catalog (character 15 of the statement); write "
       "catalog..sqlite_master, for example Plant1..sqlite_master."},
      {"SELECT * FROM Plant1.x.Data",
       "A name has too many parts (character 15 of the statement); write catalog..table, as in "
       "Plant1..Data."},
      {"SELECT Plant1..Data FROM Plant1..Data",
       "A column is not named as it should be (character 8 of the statement); write "
       "catalog..table.column, alias.column or column."},
      {"SELECT 1 FROM Plant1..Data WHERE Timestamp > 'yesterday'",
       "'yesterday' is no time (character 46 of the statement); at its character 2 + or - must "
       "follow."},
      {"SELECT 1 FROM Plant1..Data WHERE '*-1x' < Timestamp",
       "'*-1x' is no time (character 34 of the statement); at its character 4 the unit must be s, "
       "m, h, d, w, mo or y."},
      {"DELETE FROM Functions..Data",
       "The catalog Functions cannot be changed (character 13 of the statement); change another "
       "one."},
      {"DROP TABLE Functions..Data",
       "The catalog Functions cannot be changed (character 12 of the statement); change another "
       "one."},
      {"ATTACH 'x' AS y",
       "ATTACH is not possible (character 1 of the statement); a catalog is reached by writing its "
       "name, as in Plant1..Data."},
      {"DETACH y",
       "DETACH is not possible (character 1 of the statement); a catalog is reached by writing its "
       "name, as in Plant1..Data."},
      {"PRAGMA writable_schema = 1",
       "PRAGMA is not possible (character 1 of the statement); the historian does this work "
       "itself."},
      {"vacuum",
       "VACUUM is not possible (character 1 of the statement); the historian does this work "
       "itself."},
      {"BEGIN",
       "BEGIN is not possible (character 1 of the statement); every statement is a transaction of "
       "its own."},
      {"EXPLAIN PRAGMA x",
       "PRAGMA is not possible (character 9 of the statement); the historian does this work "
       "itself."},
      {"HELLO",
       "No statement begins like this (character 1 of the statement); begin with SELECT, WITH, "
       "VALUES, INSERT, UPDATE, DELETE, CREATE, ALTER or DROP."},
      {"SELECT load_extension('x')",
       "load_extension is not available to statements (character 8 of the statement); leave it "
       "out."},
      {"SELECT * FROM pragma_database_list",
       "pragma_database_list is not available to statements (character 15 of the statement); leave "
       "it out."},
      {"SELECT * FROM generate('x')",
       "This function makes no table (character 15 of the statement); read catalog..table, as in "
       "Plant1..Data."},
      {"CREATE TRIGGER Plant1..t",
       "This cannot be created, altered or dropped (character 8 of the statement); create and drop "
       "a TABLE, an INDEX, a VIEW or a DATABASE, or alter a TABLE."},
      {"CREATE TEMP TABLE x (a)",
       "TEMP is not possible (character 8 of the statement); tables live in catalogs; write "
       "catalog..table."},
      {"SELECT (1", "A bracket is never closed (character 8 of the statement); close it with )."},
      {"SELECT 1)",
       "A bracket closes that was never opened (character 9 of the statement); remove it or open "
       "it before."},
  };
  for (const auto& [sStatement, sFailure] : rows) EXPECT_EQ(Sql(sStatement), sFailure);
}

// What comes out is at most one statement to the engine, whatever goes in.
TEST(translator_refusals, never_crashes_and_never_passes_a_second_statement) {
  const char* const pieces[] = {"SELECT ",
                                "* ",
                                "FROM ",
                                "Plant1..Data ",
                                "Plant1",
                                "..",
                                ".",
                                "Data ",
                                "WHERE ",
                                "Timestamp ",
                                ">= ",
                                "'*-1h' ",
                                "'",
                                "\"",
                                "[",
                                "]",
                                "(",
                                ")",
                                ",",
                                ";",
                                "-- ",
                                "/* ",
                                "*/ ",
                                "\n",
                                "BETWEEN ",
                                "AND ",
                                "IN ",
                                "NOT ",
                                "WITH ",
                                "a ",
                                "AS ",
                                "UNION ",
                                "JOIN ",
                                "ON ",
                                "INSERT ",
                                "INTO ",
                                "VALUES ",
                                "UPDATE ",
                                "SET ",
                                "DELETE ",
                                "CREATE ",
                                "INDEX ",
                                "VIEW ",
                                "TABLE ",
                                "DROP ",
                                "x'00' ",
                                "1 ",
                                "-1.5e3 ",
                                "= ",
                                "\xC3\xA9",
                                "\xFF",
                                "\\",
                                "`",
                                "EXPLAIN ",
                                "Orv_Data ",
                                "max(",
                                "IS ",
                                "DISTINCT ",
                                "CASE ",
                                "END ",
                                "RETURNING ",
                                "LIMIT ",
                                "USING ",
                                "ATTACH ",
                                "main.",
                                "sqlite_master ",
                                "load_extension(",
                                "RECURSIVE ",
                                "+",
                                "||"};
  const char* const operators[] = {"= ", "< ", "OR ", "AND ", "|| ", "+ ", "IS NOT ", "LIKE "};
  const char* const operands[] = {"Timestamp ",
                                  "'*-1h' ",
                                  "Tag ",
                                  "1 ",
                                  "NULL ",
                                  "(SELECT 't') ",
                                  "date('now') ",
                                  "max(Timestamp, '*') ",
                                  "CASE 1 WHEN 2 THEN 't' END "};
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(":memory:", &database), SQLITE_OK);
  std::mt19937 random(20240515);
  int nTranslated = 0;
  for (int i = 0; i < 20000; ++i) {
    // Every third one is likely to be sound: operands and operators in turn.
    const bool bSound = i % 3 == 0;
    Text sStatement = bSound ? "SELECT * FROM Plant1..Data WHERE Tag " : "";
    const auto nPieces = random() % (bSound ? 4 : 14);
    for (unsigned piece = 0; piece < nPieces; ++piece) {
      if (bSound) sStatement += operators[random() % std::size(operators)];
      sStatement +=
          bSound ? operands[random() % std::size(operands)] : pieces[random() % std::size(pieces)];
    }
    try {
      const auto translation = Translated(sStatement, {i % 2 == 0, i % 5 == 0});
      ++nTranslated;
      sqlite3_stmt* statement = nullptr;
      const char* tail = nullptr;
      const auto& sSql = translation.sSql;
      if (sqlite3_prepare_v2(database, sSql.c_str(), static_cast<int>(sSql.size()), &statement,
                             &tail) == SQLITE_OK) {
        EXPECT_EQ(Text(tail).find_first_not_of("; \t\n\r\f"), Text::npos) << sStatement;
        EXPECT_EQ(sqlite3_bind_parameter_count(statement),
                  static_cast<int>(translation.parameters.size()))
            << sStatement;
      }
      sqlite3_finalize(statement);
    } catch (const platform::Failure& failure) {
      EXPECT_EQ(failure.Number(), platform::failure::kSqlError) << sStatement;
      EXPECT_FALSE(failure.Description().empty()) << sStatement;
    }
  }
  sqlite3_close(database);
  EXPECT_GT(nTranslated, 500);
}

}  // namespace
}  // namespace orvane::provider::dialect
