// Names and values that would be more than that if anybody forgot to write them as such: whatever
// they hold, a statement is one statement, about the object that it names.
#include <gmock/gmock.h>

#include "platform/conversions.h"
#include "platform/quoting.h"
#include "tests/fakes/hostile_texts.h"
#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

using platform::QuotedName;
using platform::QuotedText;
using platform::SchemaNumber;

class hostile : public Conformance {
 protected:
  static constexpr const char* kKept = "1|kept\n2|kept\n";

  hostile() {
    Run(*m_opened, "CREATE DATABASE \"P\" ");
    Run(*m_opened, "CREATE TABLE P..Kept (Nr INTEGER PRIMARY KEY, a TEXT)");
    Run(*m_opened, "INSERT INTO P..Kept VALUES (1, 'kept'), (2, 'kept')");
  }
  Text Next() { return m_texts.Next(); }
  std::vector<Text> Names(SchemaNumber schema, std::vector<Value> restrictions,
                          platform::Long lField) {
    const auto rs = m_opened->OpenSchema(schema, restrictions, {});
    std::vector<Text> names;
    for (platform::RowIndex row = 0; row < rs->RecordCount(); ++row) {
      names.push_back(platform::ToText(rs->ValueAt(row, lField)));
    }
    return names;
  }
  /// Empty when nothing failed.
  Text Refused(const Text& sText) {
    const Text sTold = Failing(*m_opened, sText);
    return sTold == "no failure" ? Text() : sTold;
  }
  std::vector<Text> Tables() {
    return Names(SchemaNumber::Tables, {Value("P"), Value(), Value(), Value("TABLE")}, 2);
  }
  Text Kept() { return Select(*m_opened, "SELECT * FROM P..Kept ORDER BY Nr"); }

  std::unique_ptr<ado::Session> m_opened = Open();
  fakes::HostileTexts m_texts{20};
};

ORVANE_ON_EVERY_ENGINE(hostile);

TEST_P(hostile, values_are_stored_as_they_are) {
  constexpr std::int64_t kValues = 10'000;
  Run(*m_opened, "CREATE TABLE P..T (Nr INTEGER PRIMARY KEY, a TEXT)");
  std::vector<Text> values;
  for (std::int64_t n = 0; n < kValues; ++n) values.push_back(Next());
  ado::Statement statement{"INSERT INTO P..T (Nr, a) VALUES (?, ?)"};
  statement.rowsExpected = 1;
  statement.batch = [&, llNumber = std::int64_t{0}](std::vector<Value>& row) mutable {
    if (llNumber == kValues) return false;
    row = {llNumber, values[static_cast<std::size_t>(llNumber)]};
    ++llNumber;
    return true;
  };
  EXPECT_EQ(m_opened->Execute(statement, {}).lRecordsAffected, kValues);
  const auto rs = Run(*m_opened, "SELECT a FROM P..T ORDER BY Nr").recordset;
  ASSERT_EQ(rs->RecordCount(), kValues);
  for (std::int64_t n = 0; n < kValues; ++n) {
    ASSERT_EQ(rs->ValueAt(n, 0), Value(values[static_cast<std::size_t>(n)])) << n;
  }
  EXPECT_EQ(Kept(), kKept);
}

// Written out, and by parameters beside what is written out.
TEST_P(hostile, values_in_statements_are_values) {
  Run(*m_opened, "CREATE TABLE P..T (a TEXT, b TEXT)");
  for (int n = 0; n < 100; ++n) {
    const Text sWritten = Next();
    const Text sGiven = Next();
    With(*m_opened, "INSERT INTO P..T (a, b) VALUES (" + QuotedText(sWritten) + ", ?)", {sGiven});
    const auto rs = With(*m_opened,
                         "SELECT a, b, " + QuotedText(sGiven) +
                             " FROM P..T WHERE b = ? AND a = " + QuotedText(sWritten),
                         {sGiven})
                        .recordset;
    ASSERT_EQ(rs->RecordCount(), 1) << sWritten << " and " << sGiven;
    EXPECT_EQ(rs->ValueAt(0, 0), Value(sWritten));
    EXPECT_EQ(rs->ValueAt(0, 1), Value(sGiven));
    EXPECT_EQ(rs->ValueAt(0, 2), Value(sGiven));
    Run(*m_opened, "DELETE FROM P..T WHERE a = " + QuotedText(sWritten));
    EXPECT_EQ(Select(*m_opened, "SELECT count(*) FROM P..T"), "0\n");
  }
  EXPECT_EQ(Kept(), kKept);
}

// A table of that name, with a column of that name, and none besides; or none at all.
TEST_P(hostile, names_of_tables_and_columns_are_names) {
  const auto before = Tables();
  int nMade = 0;
  for (int n = 0; n < 60; ++n) {
    const Text sTable = Next();
    const Text sColumn = Next();
    const Text sInStatements = "P.." + QuotedName(sTable);
    if (!Refused("CREATE TABLE " + sInStatements + " (Nr INTEGER PRIMARY KEY, " +
                 QuotedName(sColumn) + " TEXT)")
             .empty()) {
      EXPECT_EQ(Tables(), before) << sTable;
      continue;
    }
    ++nMade;
    auto with = before;
    with.push_back(sTable);
    EXPECT_THAT(Tables(), testing::UnorderedElementsAreArray(with));
    EXPECT_THAT(Names(SchemaNumber::Columns, {Value("P"), Value(), Value(sTable)}, 3),
                testing::ElementsAre(testing::StrCaseEq("Nr"), sColumn));
    With(*m_opened,
         "INSERT INTO " + sInStatements + " (Nr, " + QuotedName(sColumn) + ") VALUES (1, ?)",
         {sColumn});
    With(*m_opened,
         "UPDATE " + sInStatements + " SET " + QuotedName(sColumn) + " = ? WHERE " +
             QuotedName(sColumn) + " = ?",
         {sTable, sColumn});
    const auto rs =
        Run(*m_opened, "SELECT " + QuotedName(sColumn) + " FROM " + sInStatements).recordset;
    EXPECT_EQ(rs->FieldAt(0).Name(), sColumn);
    EXPECT_EQ(rs->ValueAt(0, 0), Value(sTable));
    Run(*m_opened, "DROP TABLE " + sInStatements);
    EXPECT_EQ(Tables(), before) << sTable;
  }
  EXPECT_GT(nMade, 30) << "most are names like any other";
  EXPECT_EQ(Kept(), kKept);
}

TEST_P(hostile, names_of_catalogs_are_names) {
  const auto before = Names(SchemaNumber::Catalogs, {}, 0);
  int nMade = 0;
  for (int n = 0; n < 25; ++n) {
    const Text sCatalog = Next();
    if (!Refused("CREATE DATABASE " + QuotedName(sCatalog) + " ").empty()) {
      EXPECT_EQ(Names(SchemaNumber::Catalogs, {}, 0), before) << sCatalog;
      continue;
    }
    ++nMade;
    const auto with = Names(SchemaNumber::Catalogs, {}, 0);
    EXPECT_EQ(with.size(), before.size() + 1);
    EXPECT_THAT(with, testing::Contains(sCatalog));
    With(*m_opened,
         "INSERT INTO " + QuotedName(sCatalog) + "..Data (Tag, Timestamp) VALUES (?, '*')",
         {sCatalog});
    EXPECT_EQ(Run(*m_opened, "SELECT Tag FROM " + QuotedName(sCatalog) + "..Data")
                  .recordset->ValueAt(0, 0),
              Value(sCatalog));
    Run(*m_opened, "DROP DATABASE " + QuotedName(sCatalog));
    EXPECT_EQ(Names(SchemaNumber::Catalogs, {}, 0), before) << sCatalog;
  }
  EXPECT_GT(nMade, 1);
  EXPECT_EQ(Kept(), kKept);
}

}  // namespace
}  // namespace orvane::provider::conformance
