#include "provider/engines/sqlite/sqlite_schema.h"

#include <algorithm>

#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/quoting.h"
#include "provider/engines/declared_types.h"
#include "provider/engines/sqlite/sqlite_statement.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

namespace {

// The places of the query's columns.
enum : platform::ColumnIndex {
  kTable,
  kKind,
  kColumn,
  kType,
  kNotNull,
  kKey,
  kDefault,
  kHidden,
  kDefinition,
  kConflictRules
};

Text TextAt(const platform::Recordset& rs, platform::RowIndex row, platform::ColumnIndex column) {
  return platform::ToText(rs.ValueAt(row, column));
}

ColumnSchema ColumnAt(const platform::Recordset& rs, platform::RowIndex row) {
  ColumnSchema column;
  column.sName = TextAt(rs, row, kColumn);
  column.sDeclaredType = TextAt(rs, row, kType);
  column.type = TypeOfDeclaration(column.sDeclaredType);
  // A type of another name is one of numbers, and only no type is none.
  column.bRounds = column.type == platform::DataType::Numeric ||
                   (column.type == platform::DataType::Empty && !column.sDeclaredType.empty());
  column.bNullable = !platform::ToBoolean(rs.ValueAt(row, kNotNull));
  column.lKeyOrdinal = platform::ToLong(rs.ValueAt(row, kKey));
  if (!rs.ValueAt(row, kDefault).IsNull()) column.sDefault = TextAt(rs, row, kDefault);
  column.bGenerated = platform::ToLong(rs.ValueAt(row, kHidden)) != 0;
  return column;
}

// A row for each column, or for each table where columns were not asked for.
std::vector<TableSchema> TablesOf(const platform::Recordset& rs) {
  std::vector<TableSchema> tables;
  for (platform::RowIndex row = 0; row < rs.RecordCount(); ++row) {
    const Text sName = TextAt(rs, row, kTable);
    if (tables.empty() || tables.back().sName != sName) {
      tables.push_back({sName, TextAt(rs, row, kKind) == "view", {}, {}});
    }
    if (rs.FieldCount() <= kColumn) continue;
    TableSchema& table = tables.back();
    if (table.sDefinition.empty()) table.sDefinition = TextAt(rs, row, kDefinition);
    if (!rs.ValueAt(row, kConflictRules).IsNull()) {
      table.sConflictRules = TextAt(rs, row, kConflictRules);
    }
    if (!rs.ValueAt(row, kColumn).IsNull()) table.columns.push_back(ColumnAt(rs, row));
  }
  return tables;
}

// A key of one INTEGER column is the row's own number, which is never null.
void CorrectKey(TableSchema& table) {
  const auto bKey = [](const ColumnSchema& column) { return column.lKeyOrdinal != 0; };
  if (std::ranges::count_if(table.columns, bKey) != 1) return;
  ColumnSchema& key = *std::ranges::find_if(table.columns, bKey);
  if (sqlite3_stricmp(key.sDeclaredType.c_str(), "INTEGER") == 0) key.bNullable = false;
}

}  // namespace

SqliteSchema::SqliteSchema(sqlite3* database, Text sQualifier, Text sSubject, bool bUtf8)
    : m_database(database),
      m_sQualifier(std::move(sQualifier)),
      m_sSubject(std::move(sSubject)),
      m_bUtf8(bUtf8) {}

std::vector<TableSchema> SqliteSchema::Read(const SchemaRequest& request) const {
  auto tables =
      request.bColumns ? ReadAll(request.sTable) : TablesOf(*Query(Columns::None, request.sTable));
  for (TableSchema& table : tables) CorrectKey(table);
  if (request.bIndexes) ReadIndexes(tables, request.sTable);
  return tables;
}

// The row's own number, when it is the key, has no index.
void SqliteSchema::ReadIndexes(std::vector<TableSchema>& tables,
                               const std::optional<Text>& sTable) const {
  const Text sCatalog = platform::QuotedText(m_sQualifier);
  const Text sMaster = platform::QuotedName(m_sQualifier) + ".sqlite_master";
  Text sSql =
      "SELECT m.name, l.name, l.\"unique\", l.origin = 'pk', CASE WHEN l.partial THEN d.sql END, "
      "i.name, i.\"desc\" FROM " +
      sMaster + " AS m JOIN pragma_index_list(m.name, " + sCatalog +
      ") AS l JOIN pragma_index_xinfo(l.name, " + sCatalog + ") AS i ON i.\"key\" LEFT JOIN " +
      sMaster + " AS d ON d.type = 'index' AND d.name = l.name WHERE m.type = 'table'";
  if (sTable) sSql += " AND m.name = ? COLLATE NOCASE";
  sSql += " ORDER BY m.name, l.name COLLATE NOCASE, l.name, i.seqno";
  SqliteStatement statement(m_database, sSql, m_sSubject);
  std::vector<Value> vtParameters;
  if (sTable) vtParameters.emplace_back(*sTable);
  statement.Bind(vtParameters);
  const auto rs = statement.FetchAll(m_bUtf8);
  for (platform::RowIndex row = 0; row < rs->RecordCount(); ++row) {
    const auto table = std::ranges::find(tables, TextAt(*rs, row, 0), &TableSchema::sName);
    if (table == tables.end()) continue;
    const auto optionalText = [&](platform::ColumnIndex column) -> std::optional<Text> {
      if (rs->ValueAt(row, column).IsNull()) return std::nullopt;
      return TextAt(*rs, row, column);
    };
    const auto isSet = [&](platform::ColumnIndex column) {
      return platform::ToLong(rs->ValueAt(row, column)) != 0;
    };
    const Text sName = TextAt(*rs, row, 1);
    if (table->indexes.empty() || table->indexes.back().sName != sName) {
      table->indexes.push_back({sName, isSet(3), isSet(2), optionalText(4), {}});
    }
    table->indexes.back().parts.push_back({optionalText(5), isSet(6)});
  }
}

std::vector<TableSchema> SqliteSchema::ReadAll(const std::optional<Text>& sTable) const {
  auto tables = Try(Columns::OfAll, sTable);
  return tables ? std::move(*tables) : ReadOneByOne(sTable);
}

// One view over something that is gone fails all. Then the tables at once and the views one by
// one; where a table cannot be read either, one by one too.
std::vector<TableSchema> SqliteSchema::ReadOneByOne(const std::optional<Text>& sTable) const {
  auto all = Try(Columns::OfTables, sTable);
  if (!all) all = TablesOf(*Query(Columns::None, sTable));
  for (TableSchema& table : *all) {
    if (!table.columns.empty()) continue;
    auto one = Try(Columns::OfAll, table.sName);
    if (one && !one->empty()) table = std::move(one->front());
  }
  return std::move(*all);
}

std::optional<std::vector<TableSchema>> SqliteSchema::Try(Columns which,
                                                          const std::optional<Text>& sTable) const {
  try {
    return TablesOf(*Query(which, sTable));
  } catch (const Failure& failed) {
    if (failed.Number() != failure::kSqlError) throw;
    return std::nullopt;
  }
}

platform::RecordsetPtr SqliteSchema::Query(Columns which, const std::optional<Text>& sTable) const {
  const bool bColumns = which != Columns::None;
  Text sSql = "SELECT m.name, m.type";
  if (bColumns) {
    sSql +=
        ", c.name, c.type, c.\"notnull\", c.pk, c.dflt_value, c.hidden, CASE WHEN m.type = "
        "'view' OR c.hidden <> 0 OR c.type LIKE '%TIME%' OR c.type LIKE '%DATE%' THEN "
        "m.sql END, CASE WHEN m.type = 'table' AND c.cid = 0 AND m.sql LIKE '%CONFLICT%' THEN "
        "m.sql "
        "END";
  }
  sSql += " FROM " + platform::QuotedName(m_sQualifier) + ".sqlite_master AS m";
  if (bColumns) {
    // The hidden columns of virtual tables are no columns to anyone but their module.
    const char* const sOf =
        which == Columns::OfAll ? "m.name" : "CASE m.type WHEN 'table' THEN m.name END";
    sSql += " LEFT JOIN pragma_table_xinfo(" + Text(sOf) + ", " +
            platform::QuotedText(m_sQualifier) + ") AS c ON c.hidden <> 1";
  }
  sSql += " WHERE m.type IN ('table', 'view') AND m.name NOT LIKE 'sqlite\\_%' ESCAPE '\\'";
  if (sTable) sSql += " AND m.name = ? COLLATE NOCASE";
  sSql += " ORDER BY m.name COLLATE NOCASE, m.name";
  if (bColumns) sSql += ", c.cid";
  SqliteStatement statement(m_database, sSql, m_sSubject);
  std::vector<Value> vtParameters;
  if (sTable) vtParameters.emplace_back(*sTable);
  statement.Bind(vtParameters);
  return statement.FetchAll(m_bUtf8);
}

}  // namespace orvane::provider::engines
