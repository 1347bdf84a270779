#include "provider/engines/postgres/postgres_schema.h"

#include <algorithm>

#include "platform/conversions.h"
#include "provider/engines/postgres/postgres_types.h"

namespace orvane::provider::engines {

using platform::Text;
using platform::Value;

namespace {

enum : platform::ColumnIndex {
  kTable,
  kView,
  kColumn,
  kDeclared,
  kType,
  kNotNull,
  kKey,
  kDefault,
  kGenerated,
  kTableNumber,
  kColumnNumber,
  kBytes
};

constexpr const char* kNamesOnly = "SELECT c.relname, c.relkind IN ('v', 'm')";

// The type beneath a domain is what its values are.
constexpr const char* kWithColumns =
    "SELECT c.relname, c.relkind IN ('v', 'm'), a.attname, format_type(a.atttypid, a.atttypmod), "
    "CASE t.typtype WHEN 'd' THEN t.typbasetype ELSE a.atttypid END, a.attnotnull OR t.typnotnull, "
    "coalesce(array_position(k.indkey::int2[], a.attnum) + 1, 0), "
    "CASE WHEN a.attgenerated = '' THEN pg_get_expr(d.adbin, d.adrelid) END, "
    "a.attgenerated <> '' OR a.attidentity = 'a', "
    "c.oid, a.attnum, ";

// By their bytes stand texts of the C locale and of the engine's own ones, and those of C.UTF-8,
// where code points count. What the server's encoding makes of bytes is another order only where
// its characters lie otherwise than Unicode's. Servers before 15 know of the system's locales
// alone.
constexpr const char* kByBytes =
    "coalesce((SELECT pg_encoding_to_char(b.encoding) IN ('UTF8', 'SQL_ASCII', 'LATIN1') AND "
    "CASE WHEN l.collprovider = 'd' THEN coalesce(to_jsonb(b)->>'datlocprovider', 'c') ELSE "
    "l.collprovider::text END || lower(CASE WHEN l.collprovider = 'd' THEN b.datcollate ELSE "
    "l.collcollate END) IN ('cc', 'cposix', 'cc.utf-8', 'cc.utf8', 'bc', 'bc.utf-8', "
    "'bpg_unicode_fast') "
    "FROM pg_database b WHERE b.datname = current_database()), l.collprovider = 'b', false)";

constexpr const char* kColumns =
    " LEFT JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT a.attisdropped"
    " LEFT JOIN pg_type t ON t.oid = a.atttypid"
    " LEFT JOIN pg_collation l ON l.oid = a.attcollation"
    " LEFT JOIN pg_attrdef d ON d.adrelid = c.oid AND d.adnum = a.attnum"
    " LEFT JOIN pg_index k ON k.indrelid = c.oid AND k.indisprimary";

constexpr const char* kTables = " FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace";

constexpr const char* kWhich = " WHERE n.nspname = ? AND c.relkind IN ('r', 'p', 'f', 'v', 'm')";
constexpr const char* kOneTable = " AND lower(c.relname COLLATE \"C\") = lower(? COLLATE \"C\")";
constexpr const char* kOrder = " ORDER BY lower(c.relname COLLATE \"C\"), c.relname COLLATE \"C\"";

// Columns that an index only includes are no part of its order.
constexpr const char* kIndexes =
    "SELECT c.relname, i.relname, x.indisprimary, x.indisunique, "
    "CASE WHEN x.indpred IS NOT NULL THEN pg_get_indexdef(x.indexrelid) END, a.attname, "
    "x.indoption[p.part] & 1 = 1 "
    "FROM pg_index x JOIN pg_class c ON c.oid = x.indrelid JOIN pg_class i ON i.oid = x.indexrelid "
    "JOIN pg_namespace n ON n.oid = c.relnamespace "
    "CROSS JOIN LATERAL generate_series(0, x.indnkeyatts - 1) AS p(part) "
    "LEFT JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum = x.indkey[p.part] "
    "AND a.attnum > 0 WHERE n.nspname = ? AND x.indisvalid";
constexpr const char* kIndexOrder = ", i.relname COLLATE \"C\", p.part";

Text TextAt(const platform::Recordset& rs, platform::RowIndex row, platform::ColumnIndex column) {
  return platform::ToText(rs.ValueAt(row, column));
}

std::optional<Text> TextOrNone(const platform::Recordset& rs, platform::RowIndex row,
                               platform::ColumnIndex column) {
  if (rs.ValueAt(row, column).IsNull()) return std::nullopt;
  return TextAt(rs, row, column);
}

ColumnSchema ColumnAt(const platform::Recordset& rs, platform::RowIndex row) {
  ColumnSchema column;
  column.sName = TextAt(rs, row, kColumn);
  column.sDeclaredType = TextAt(rs, row, kDeclared);
  const auto type = static_cast<Oid>(*rs.ValueAt(row, kType).As<std::int64_t>());
  column.type = TypeOfOid(type);
  column.bBeyond = TextOrderOf(type, false) == platform::TextOrder::BeyondValues;
  column.bNullIsLast = true;
  column.bNullable = !platform::ToBoolean(rs.ValueAt(row, kNotNull));
  column.lKeyOrdinal = platform::ToLong(rs.ValueAt(row, kKey));
  column.sDefault = TextOrNone(rs, row, kDefault);
  column.bTime = column.sDeclaredType.starts_with("timestamp");
  column.bGenerated = platform::ToBoolean(rs.ValueAt(row, kGenerated));
  return column;
}

std::vector<TableSchema> TablesOf(const platform::Recordset& rs) {
  std::vector<TableSchema> tables;
  for (platform::RowIndex row = 0; row < rs.RecordCount(); ++row) {
    Text sName = TextAt(rs, row, kTable);
    if (tables.empty() || tables.back().sName != sName) {
      tables.push_back({std::move(sName), platform::ToBoolean(rs.ValueAt(row, kView)), {}, {}});
    }
    if (rs.FieldCount() <= kColumn || rs.ValueAt(row, kColumn).IsNull()) continue;
    tables.back().columns.push_back(ColumnAt(rs, row));
  }
  return tables;
}

void TakeDown(const platform::Recordset& rs, TableColumns& columns) {
  for (platform::RowIndex row = 0; row < rs.RecordCount(); ++row) {
    if (rs.ValueAt(row, kColumn).IsNull()) continue;
    const auto table = static_cast<Oid>(*rs.ValueAt(row, kTableNumber).As<std::int64_t>());
    columns[{table, platform::ToLong(rs.ValueAt(row, kColumnNumber))}] = {
        TextAt(rs, row, kColumn), platform::ToBoolean(rs.ValueAt(row, kBytes))};
  }
}

void AddIndexes(std::vector<TableSchema>& tables, const platform::Recordset& rs) {
  auto table = tables.begin();
  for (platform::RowIndex row = 0; row < rs.RecordCount(); ++row) {
    // Both are in the same order.
    const Text sTable = TextAt(rs, row, 0);
    while (table != tables.end() && table->sName != sTable) ++table;
    if (table == tables.end()) return;
    const Text sName = TextAt(rs, row, 1);
    if (table->indexes.empty() || table->indexes.back().sName != sName) {
      table->indexes.push_back({sName,
                                platform::ToBoolean(rs.ValueAt(row, 2)),
                                platform::ToBoolean(rs.ValueAt(row, 3)),
                                TextOrNone(rs, row, 4),
                                {}});
    }
    table->indexes.back().parts.push_back(
        {TextOrNone(rs, row, 5), platform::ToBoolean(rs.ValueAt(row, 6))});
  }
}

}  // namespace

std::vector<TableSchema> ReadPostgresSchema(const Text& sSchema, const SchemaRequest& request,
                                            const AskServer& ask, TableColumns& columns) {
  std::vector<Value> vtParameters = {Value(sSchema)};
  if (request.sTable) vtParameters.emplace_back(*request.sTable);
  const Text sOneTable = request.sTable ? kOneTable : "";
  Text sSql = request.bColumns ? Text(kWithColumns) + kByBytes : kNamesOnly;
  sSql += kTables;
  if (request.bColumns) sSql += kColumns;
  sSql += kWhich + sOneTable + kOrder;
  if (request.bColumns) sSql += ", a.attnum";
  const auto rs = ask(sSql, vtParameters);
  auto tables = TablesOf(*rs);
  if (request.bColumns && request.sTable) TakeDown(*rs, columns);
  if (request.bIndexes && !tables.empty()) {
    AddIndexes(tables, *ask(kIndexes + sOneTable + kOrder + kIndexOrder, vtParameters));
  }
  return tables;
}

}  // namespace orvane::provider::engines
