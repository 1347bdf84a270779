#include "tools/orvane_historian/import.h"

#include "exports/row_import.h"
#include "platform/quoting.h"
#include "platform/row_failure.h"
#include "provider/dialect/conflict_rules.h"
#include "tools/orvane_historian/catalog_database.h"

namespace orvane::tools {
namespace {

using exports::ImportColumn;
using platform::QuotedName;
using platform::Text;
using platform::Value;

std::vector<ImportColumn> ColumnsOf(const provider::engines::TableSchema& table) {
  std::vector<ImportColumn> columns;
  for (const auto& column : table.columns) {
    columns.push_back({column.sName, column.type, column.bGenerated, column.bRounds});
  }
  return columns;
}

// Rows that are there already stay, whatever the table says of rows that conflict.
Text Verb(const provider::engines::TableSchema& table, bool bReplace) {
  if (bReplace) return "INSERT OR REPLACE";
  provider::dialect::StatementWork work{provider::Deadline({}, {})};
  return provider::dialect::GivesRowsUp(table.sConflictRules, work) ? "INSERT OR ABORT" : "INSERT";
}

Text InsertStatement(const provider::engines::TableSchema& table,
                     const std::vector<ImportColumn>& columns, bool bReplace) {
  Text sNames;
  Text sMarks;
  for (const auto& column : columns) {
    sNames += (sNames.empty() ? "" : ", ") + QuotedName(column.sName);
    sMarks += sMarks.empty() ? "?" : ", ?";
  }
  return Verb(table, bReplace) + " INTO " + QuotedName(table.sName) + " (" + sNames + ") VALUES (" +
         sMarks + ")";
}

[[noreturn]] void RethrowOfRow(const exports::RowImport& rows, const platform::Failure& failed,
                               std::int64_t llRow) {
  try {
    throw platform::RowFailure(failed, llRow);
  } catch (const platform::RowFailure&) {
    rows.RethrowOfRow();
  }
}

}  // namespace

std::int64_t Import(const provider::historian::CatalogRecord& record, std::istream& stream,
                    const ImportOrder& order) {
  const auto table = FindTable(record, order.sTable);
  exports::RowImport rows(stream, table.sName, ColumnsOf(table), order.zone);
  CatalogDatabase database(record);
  std::int64_t llRows = 0;
  database.InTransaction([&] {
    PreparedStatement insert(database, InsertStatement(table, rows.Columns(), order.bReplace));
    std::vector<Value> values;
    while (rows.Next(values)) {
      ++llRows;
      try {
        for (const Value& vtValue : values) insert << vtValue;
        insert.Run();
      } catch (const platform::Failure& failed) {
        RethrowOfRow(rows, failed, llRows);
      }
    }
  });
  return llRows;
}

}  // namespace orvane::tools
