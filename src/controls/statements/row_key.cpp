#include "controls/statements/row_key.h"

#include <array>
#include <utility>

#include "platform/ado/column_flags.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::controls {

using platform::Connection;
using platform::RecordsetPtr;
using platform::SchemaNumber;
using platform::Text;
using platform::Value;

namespace {

RecordsetPtr OfTable(Connection& cn, SchemaNumber schema, const Text& sCatalog,
                     const Text& sTable) {
  const Value vtCatalog = sCatalog.empty() ? Value() : Value(sCatalog);
  if (schema == SchemaNumber::Indexes) {
    return cn.OpenSchema(schema, std::array<Value, 5>{vtCatalog, {}, {}, {}, sTable});
  }
  return cn.OpenSchema(schema, std::array<Value, 3>{vtCatalog, {}, sTable});
}

Value KeyValueAt(const RecordsetPtr& rs, const char* sField) {
  return rs->Fields().Item(sField).Value();
}

struct ColumnRules {
  std::set<Text> neverNull;
  std::set<Text> computed;
};

ColumnRules RulesOf(Connection& cn, const Text& sCatalog, const Text& sTable) {
  ColumnRules rules;
  const auto rs = OfTable(cn, SchemaNumber::Columns, sCatalog, sTable);
  for (; !rs->Eof(); rs->MoveNext()) {
    const Text sName = platform::ToText(KeyValueAt(rs, "COLUMN_NAME"));
    if (!platform::ToBoolean(KeyValueAt(rs, "IS_NULLABLE"))) rules.neverNull.insert(sName);
    if (IsComputed(rs)) rules.computed.insert(sName);
  }
  return rules;
}

// Of the unique keys that name a row the one of the fewest columns.
std::vector<Text> UniqueKey(Connection& cn, const Text& sCatalog, const Text& sTable,
                            const std::set<Text>& neverNull) {
  std::vector<Text> best;
  std::vector<Text> key;
  bool bNames = false;
  const auto take = [&] {
    if (bNames && !key.empty() && (best.empty() || key.size() < best.size())) best = key;
  };
  const auto rs = OfTable(cn, SchemaNumber::Indexes, sCatalog, sTable);
  for (; !rs->Eof(); rs->MoveNext()) {
    if (platform::ToLong(KeyValueAt(rs, "ORDINAL_POSITION")) == 1) {
      take();
      key.clear();
      // One with a filter says nothing of the rows that it leaves out.
      bNames = platform::ToBoolean(KeyValueAt(rs, "UNIQUE")) &&
               KeyValueAt(rs, "FILTER_CONDITION").IsNull();
    }
    const Value vtColumn = KeyValueAt(rs, "COLUMN_NAME");
    key.push_back(platform::ToText(vtColumn));
    if (vtColumn.IsNull() || !neverNull.contains(key.back())) bNames = false;
  }
  take();
  return best;
}

}  // namespace

std::optional<platform::Long> FlagsOfColumn(const RecordsetPtr& columns) {
  for (platform::ColumnIndex column = 0; column < columns->FieldCount(); ++column) {
    if (columns->FieldAt(column).Name() != "COLUMN_FLAGS") continue;
    const Value vtFlags = KeyValueAt(columns, "COLUMN_FLAGS");
    if (!vtFlags.IsNull()) return platform::ToLong(vtFlags);
  }
  return std::nullopt;
}

bool IsComputed(const RecordsetPtr& columns) {
  const auto lFlags = FlagsOfColumn(columns);
  return lFlags && (*lFlags & platform::column_flags::kTakesValues) == 0;
}

RowKey RowKeyOf(Connection& cn, const Text& sCatalog, const Text& sTable) {
  const auto tables = OfTable(cn, SchemaNumber::Tables, sCatalog, sTable);
  if (!tables || tables->RecordCount() != 1) {
    return {{}, {}, "These rows can only be looked at: they are not those of one table.", false};
  }
  const Text sType = platform::ToText(KeyValueAt(tables, "TABLE_TYPE"));
  if (sType == "VIEW") {
    return {{},
            {},
            "These rows can only be looked at: they are those of a view; edit its tables.",
            true};
  }
  if (sType != "TABLE") {
    return {
        {}, {}, "These rows can only be looked at: the historian keeps this table itself.", true};
  }
  RowKey key;
  const auto keys = OfTable(cn, SchemaNumber::PrimaryKeys, sCatalog, sTable);
  for (; !keys->Eof(); keys->MoveNext()) {
    key.columns.push_back(platform::ToText(KeyValueAt(keys, "COLUMN_NAME")));
  }
  ColumnRules rules = RulesOf(cn, sCatalog, sTable);
  if (key.columns.empty()) key.columns = UniqueKey(cn, sCatalog, sTable, rules.neverNull);
  key.computed = std::move(rules.computed);
  if (key.columns.empty()) {
    key.sWhyNot =
        "These rows can only be looked at: the table has no key by which one row is told from "
        "another; give it a primary key.";
  }
  return key;
}

std::vector<Text> NeededColumns(Connection& cn, const Text& sCatalog, const Text& sTable) {
  std::vector<Text> columns;
  const auto rs = OfTable(cn, SchemaNumber::Columns, sCatalog, sTable);
  for (; !rs->Eof(); rs->MoveNext()) {
    if (platform::ToBoolean(KeyValueAt(rs, "IS_NULLABLE")) ||
        platform::ToBoolean(KeyValueAt(rs, "COLUMN_HASDEFAULT")) || IsComputed(rs)) {
      continue;
    }
    columns.push_back(platform::ToText(KeyValueAt(rs, "COLUMN_NAME")));
  }
  return columns;
}

}  // namespace orvane::controls
