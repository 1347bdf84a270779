#include "provider/engines/postgres/postgres_historian.h"

#include <utility>

#include "platform/historian_names.h"
#include "provider/engines/same_catalog.h"
#include "provider/historian/functions_catalog.h"

namespace orvane::provider::engines {

using platform::DataType;
using platform::Text;

namespace {

ColumnSchema Column(const char* sName, DataType type, bool bNullable = false, int nKey = 0) {
  ColumnSchema column;
  column.sName = sName;
  column.type = type;
  column.bNullable = bNullable;
  column.lKeyOrdinal = nKey;
  return column;
}

TableSchema Historians(bool bRecords) {
  TableSchema table{"Historians", false, {}};
  table.columns = {
      Column("Name", DataType::WChar, false, 1),      Column("Identity", DataType::Guid),
      Column("Created", DataType::DBTimeStamp, true), Column("Path", DataType::WChar),
      Column("SizeLimit", DataType::BigInt, true),    Column("Description", DataType::WChar)};
  table.sQuery = PostgresHistoriansQuery(bRecords);
  return table;
}

TableSchema Functions() {
  TableSchema table{"Functions", false, {}};
  table.columns = {Column("Name", DataType::WChar, false, 1), Column("Kind", DataType::WChar),
                   Column("Description", DataType::WChar), Column("Example", DataType::WChar)};
  table.sQuery = "SELECT * FROM (VALUES " + historian::FunctionRows() +
                 ") AS f(\"Name\", \"Kind\", \"Description\", \"Example\")";
  return table;
}

TableSchema TimeExpressions() {
  TableSchema table{"TimeExpressions", false, {}};
  table.columns = {Column("Expression", DataType::WChar, false, 1),
                   Column("Description", DataType::WChar), Column("Example", DataType::WChar)};
  table.sQuery = "SELECT * FROM (VALUES " + historian::TimeExpressionRows() +
                 ") AS t(\"Expression\", \"Description\", \"Example\")";
  return table;
}

}  // namespace

const char* const kNewPostgresHistorian = R"(
CREATE SCHEMA IF NOT EXISTS "Orvane";
CREATE TABLE IF NOT EXISTS "Orvane"."Historians" (
  "Name" text PRIMARY KEY,
  "Identity" uuid NOT NULL UNIQUE DEFAULT gen_random_uuid(),
  "Created" timestamptz NOT NULL DEFAULT now(),
  "Description" text NOT NULL DEFAULT '');
GRANT USAGE ON SCHEMA "Orvane" TO PUBLIC;
GRANT SELECT ON "Orvane"."Historians" TO PUBLIC;
INSERT INTO "Orvane"."Historians" ("Name", "Identity")
  SELECT n.nspname, md5(current_database() || '.' || n.oid)::uuid FROM pg_namespace n
  WHERE n.nspname !~ '^pg_' AND n.nspname NOT IN ('information_schema', 'Orvane', 'Functions')
  ON CONFLICT DO NOTHING)";

bool IsPostgresSystemCatalog(const Text& sName) {
  return sName == platform::kSystemCatalog || sName == platform::kFunctionsCatalog;
}

Text PostgresHistoriansQuery(bool bRecords) {
  const Text sIdentity = "md5(current_database() || '.' || n.oid)::uuid";
  const Text sDescription = "coalesce(obj_description(n.oid, 'pg_namespace'), '')";
  Text sQuery = "SELECT n.nspname::text AS \"Name\", ";
  if (bRecords) {
    sQuery +=
        "coalesce(h.\"Identity\", " + sIdentity + ") AS \"Identity\", h.\"Created\" AS \"Created\"";
  } else {
    sQuery += sIdentity + " AS \"Identity\", NULL::timestamptz AS \"Created\"";
  }
  sQuery += ", ''::text AS \"Path\", NULL::bigint AS \"SizeLimit\", ";
  sQuery +=
      bRecords ? "coalesce(nullif(h.\"Description\", ''), " + sDescription + ")" : sDescription;
  sQuery += " AS \"Description\" FROM pg_catalog.pg_namespace n ";
  if (bRecords) sQuery += "LEFT JOIN \"Orvane\".\"Historians\" h ON h.\"Name\" = n.nspname ";
  return sQuery +
         "WHERE n.nspname !~ '^pg_' AND n.nspname NOT IN ('information_schema', 'Orvane', "
         "'Functions')";
}

std::vector<TableSchema> PostgresSystemTables(const Text& sCatalog, const SchemaRequest& request,
                                              bool bRecords) {
  std::vector<TableSchema> all;
  if (sCatalog == platform::kSystemCatalog) {
    all.push_back(Historians(bRecords));
  } else {
    all.push_back(Functions());
    all.push_back(TimeExpressions());
  }
  std::vector<TableSchema> tables;
  for (TableSchema& table : all) {
    if (request.sTable && !IsSameCatalog(table.sName, *request.sTable)) continue;
    if (request.bIndexes) table.indexes = {{table.sName + "_pkey", true, true, {}, {}}};
    if (request.bIndexes) table.indexes.front().parts = {{table.columns.front().sName, false}};
    if (!request.bColumns) table.columns.clear();
    tables.push_back(std::move(table));
  }
  return tables;
}

}  // namespace orvane::provider::engines
