// Names and values that would be more than that if anybody forgot to write them as such, through
// every statement that the grids form: each is one statement, about the table that it names.
#include <gmock/gmock.h>

#include <array>
#include <cstdlib>
#include <sstream>

#include "controls/statements/sql_text.h"
#include "controls/statements/table_statement.h"
#include "exports/row_import.h"
#include "exports/row_writer.h"
#include "platform/conversions.h"
#include "tests/controls/edited_table.h"
#include "tests/controls/on_engines.h"
#include "tests/fakes/hostile_texts.h"

namespace orvane::controls {
namespace {

using platform::QuotedName;
using platform::QuotedText;
using platform::RecordsetPtr;
using platform::RowIndex;
using platform::Text;
using platform::Value;
using Rows = std::vector<std::pair<Text, Text>>;

class hostile_statements : public testing::Test, public tests::OnEngines {
 protected:
  hostile_statements() {
    Run("CREATE TABLE P..Kept (k TEXT NOT NULL PRIMARY KEY, a TEXT)");
    Run("INSERT INTO P..Kept VALUES ('1', 'kept'), ('2', 'kept')");
    m_tables = Tables();
  }
  RecordsetPtr Run(const Text& sSql) { return m_server->Run(m_cn, sSql); }
  void Send(const Text& sSql, platform::ParameterRows rows) {
    const auto command = m_server->CreateCommand();
    command->ActiveConnection(m_cn);
    command->CommandText(sSql);
    command->Batch(std::move(rows));
    command->Execute();
  }
  std::vector<Text> Tables() {
    const std::array<Value, 4> restrictions{Value("P"), Value(), Value(), Value("TABLE")};
    std::vector<Text> names;
    for (auto rs = m_cn->OpenSchema(platform::SchemaNumber::Tables, restrictions); !rs->Eof();
         rs->MoveNext()) {
      names.push_back(platform::ToText(rs->Fields().Item("TABLE_NAME").Value()));
    }
    return names;
  }
  Text Kept() { return m_server->Read("SELECT k, a FROM P..Kept ORDER BY k"); }
  /// A table of hostile names, with nothing in it; false where the server makes none so.
  bool Make() {
    m_table = {"P", m_texts.Next(), {}};
    m_sKey = m_texts.Next();
    m_sColumn = m_texts.Next();
    try {
      Run("CREATE TABLE " + Name() + " (" + QuotedName(m_sKey) + " TEXT NOT NULL PRIMARY KEY, " +
          QuotedName(m_sColumn) + " TEXT)");
    } catch (const platform::Failure&) {
      return false;
    }
    const auto key = RowKeyOf(*m_cn, "P", m_table.sTable);
    EXPECT_EQ(key.columns, std::vector<Text>{m_sKey}) << key.sWhyNot;
    m_table.key = {0};
    return true;
  }
  Text Name() const { return TableInSql("P", m_table.sTable); }
  RecordsetPtr Select(const Text& sFilter = {}) {
    return Run(ComposeSelect({m_table.sCatalog,
                              m_table.sTable,
                              {m_sKey, m_sColumn},
                              sFilter,
                              {{m_sColumn, false}, {m_sKey, true}}}));
  }
  static Rows Of(const RecordsetPtr& rs) {
    Rows rows;
    for (RowIndex row = 0; row < rs->RecordCount(); ++row) {
      rows.emplace_back(platform::ToText(rs->ValueAt(row, 0)),
                        platform::ToText(rs->ValueAt(row, 1)));
    }
    return rows;
  }
  void Store(const RecordsetPtr& rs, RowIndex row) {
    const auto sent = RowChanges(m_cn, m_server, m_table, 10).Send(*rs, row);
    ASSERT_FALSE(sent.conflict);
    rs->Accept(row, sent.stored);
  }
  void DeleteAll(const RecordsetPtr& rs) {
    std::vector<RowIndex> rows;
    for (RowIndex row = 0; row < rs->RecordCount(); ++row) {
      rs->Delete(row);
      rows.push_back(row);
    }
    const auto deleted = RowChanges(m_cn, m_server, m_table, 10).Delete(*rs, rows);
    EXPECT_FALSE(deleted.refused) << deleted.sWhyNot;
  }
  Text Written(const RecordsetPtr& rs, const exports::WriterOptions& options) const {
    const auto writer = exports::MakeRowWriter(options);
    Text sOut;
    writer->Begin(*rs, exports::AllColumns(*rs), sOut);
    for (RowIndex row = 0; row < rs->RecordCount(); ++row) writer->Row(*rs, row, sOut);
    return sOut;
  }

  void InsertsAndUpdates() {
    const auto rs = Select();
    for (int n = 0; n < 2; ++n) {
      const Text sKeyOfRow = m_texts.Next() + std::to_string(n);
      const RowIndex row = rs->AddNew();
      rs->ValueAt(row, 0, sKeyOfRow);
      rs->ValueAt(row, 1, m_texts.Next());
      Store(rs, row);
      const Text sValue = m_texts.Next();
      rs->ValueAt(row, 1, sValue);
      Store(rs, row);
      m_rows.emplace_back(sKeyOfRow, sValue);
    }
  }
  void SelectsCountsAndSorts() {
    EXPECT_THAT(Of(Select()), testing::UnorderedElementsAreArray(m_rows));
    const auto& [sKeyOfRow, sValue] = m_rows.front();
    const Text sFilter = QuotedName(m_sKey) + " = " + QuotedText(sKeyOfRow);
    EXPECT_EQ(Of(Select(sFilter)), (Rows{{sKeyOfRow, sValue}}));
    EXPECT_EQ(platform::ToText(Run(ComposeCount(Name(), sFilter))->ValueAt(0, 0)), "1");
    EXPECT_EQ(platform::ToText(Run(ComposeCount(Name(), {}))->ValueAt(0, 0)), "2");
    const Text sQuery = "SELECT * FROM " + Name() + "; -- " + QuotedText("all of them");
    EXPECT_THAT(Of(Run(StatementWithin(sQuery, {{}, {}, {{m_sColumn, true}, {m_sKey, false}}}))),
                testing::UnorderedElementsAreArray(m_rows));
    EXPECT_EQ(Of(Run(ComposeWithin(sQuery, sFilter))), (Rows{{sKeyOfRow, sValue}}));
  }
  /// A row goes out as a statement, is deleted, and comes back by that.
  void ExportsAndDeletes() {
    for (const auto& [sKeyOfRow, sValue] : m_rows) {
      const auto rs = Select(QuotedName(m_sKey) + " = " + QuotedText(sKeyOfRow));
      exports::WriterOptions options;
      options.form = exports::Form::Sql;
      options.sInto = Name();
      const Text sStatement = Written(rs, options);
      DeleteAll(rs);
      EXPECT_EQ(Select()->RecordCount(), 1);
      Run(sStatement);
      EXPECT_THAT(Of(Select()), testing::UnorderedElementsAreArray(m_rows)) << sStatement;
    }
  }
  /// All rows go out into a file, are deleted together, and are imported.
  void DeletesTogetherAndImports() {
    const auto rs = Select();
    std::istringstream file(Written(rs, {}));
    DeleteAll(rs);
    EXPECT_EQ(Select()->RecordCount(), 0);
    const std::vector<exports::ImportColumn> columns = {{m_sKey, platform::DataType::WChar},
                                                        {m_sColumn, platform::DataType::WChar}};
    exports::RowImport import(file, m_table.sTable, columns, zones::TimeZone::Utc());
    std::vector<Text> names;
    for (const auto& column : import.Columns()) names.push_back(column.sName);
    Send(ComposeInsert(Name(), names),
         [&](std::vector<Value>& values) { return import.Next(values); });
    EXPECT_THAT(Of(Select()), testing::UnorderedElementsAreArray(m_rows));
  }

  std::shared_ptr<tests::HistorianServer> m_server = tests::HistorianServer::Make(GetParam());
  platform::ConnectionPtr m_cn = m_server->Connect();
  fakes::HostileTexts m_texts{21};
  std::vector<Text> m_tables;
  RowTable m_table;
  Text m_sKey;
  Text m_sColumn;
  Rows m_rows;
};

ORVANE_ON_ENGINES(hostile_statements);

TEST_P(hostile_statements, are_about_the_table_that_they_name) {
  const char* const sRounds = std::getenv("ORVANE_HOSTILE");
  const int nRounds = sRounds != nullptr ? std::atoi(sRounds) : 12;
  int nMade = 0;
  for (int nRound = 0; nRound < nRounds; ++nRound) {
    SCOPED_TRACE("round " + std::to_string(nRound));
    if (!Make()) {
      EXPECT_EQ(Tables(), m_tables);
      continue;
    }
    SCOPED_TRACE(Name() + " with " + m_sKey + " and " + m_sColumn);
    ++nMade;
    m_rows.clear();
    ASSERT_NO_FATAL_FAILURE(InsertsAndUpdates());
    SelectsCountsAndSorts();
    ASSERT_NO_FATAL_FAILURE(ExportsAndDeletes());
    DeletesTogetherAndImports();
    Run("DROP TABLE " + Name());
    ASSERT_EQ(Tables(), m_tables);
    ASSERT_EQ(Kept(), "1|kept\n2|kept\n");
    if (HasFailure()) return;
  }
  EXPECT_GT(nMade, nRounds / 3) << "most are names like any other";
}

// What is typed into the bar above the rows.
TEST_P(hostile_statements, of_a_range_of_time_hold_it_as_a_text) {
  Run("INSERT INTO P..Data (Tag, Timestamp, Value) VALUES ('T1', '*', 1)");
  for (int n = 0; n < 20; ++n) {
    const Text sCondition = ConditionOf({m_texts.Next(), m_texts.Next()}, "Timestamp");
    EXPECT_THROW(Run(ComposeSelect({"P", "Data", {}, sCondition, {}})), platform::Failure)
        << sCondition << ": it is no time";
  }
  EXPECT_EQ(Tables(), m_tables);
  EXPECT_EQ(m_server->Read("SELECT count(*) FROM P..Data"), "1\n");
  EXPECT_EQ(Kept(), "1|kept\n2|kept\n");
}

}  // namespace
}  // namespace orvane::controls
