#include "access/schema_browsing.h"

#include <array>
#include <unordered_set>

#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::access {

using platform::Boolean;
using platform::Connection;
using platform::ConnectionPtr;
using platform::Field;
using platform::Long;
using platform::RecordsetPtr;
using platform::SchemaNumber;
using platform::Text;
using platform::Value;

namespace {

Connection& Connected(const ConnectionPtr& cn) {
  if (!cn) {
    throw platform::Failure(platform::failure::kObjectNotSet,
                            "The server is not connected; connect it first.");
  }
  return *cn;
}

RecordsetPtr OpenTableSchema(const ConnectionPtr& cn, SchemaNumber schema, const Text& sCatalog,
                             const Text& sTable) {
  // The schema name in the middle stays unset.
  const std::array<Value, 3> restrictions{sCatalog, Value(), sTable};
  return Connected(cn).OpenSchema(schema, restrictions);
}

void ForEachName(const RecordsetPtr& rs, const char* sField, const UseName& use) {
  Field& name = rs->Fields().Item(sField);
  for (; !rs->Eof(); rs->MoveNext()) use(platform::ToText(name.Value()));
}

/// Runs a step of which a failure counts as "nothing found".
template <class Step>
Boolean Succeeds(Step&& step) {
  try {
    step();
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

/// A rowset that is scanned from its first row again and again. A step of the scan that fails is
/// skipped, as if the row did not match; the scan ends where the rowset cannot go on.
template <class Matches>
Boolean Scan(platform::Recordset& rs, Matches&& matches) {
  Boolean bFound = false;
  Succeeds([&] {
    for (; !rs.Eof(); rs.MoveNext()) {
      if (Succeeds([&] { bFound = matches(); }) && bFound) break;
    }
  });
  Succeeds([&] { rs.MoveFirst(); });
  return bFound;
}

[[noreturn]] void FailColumnsGone(const platform::TableQuery& query) {
  throw platform::Failure(platform::failure::kOutOfRange,
                          "The table \"" + query.Table() + "\" of the catalog \"" +
                              query.Catalog() +
                              "\" has lost columns that its query names, and the query loses them "
                              "too; expand the catalog again to go on.");
}

struct StructureRowsets {
  RecordsetPtr columns;
  RecordsetPtr keys;
  RecordsetPtr types;
  Field* columnName = nullptr;
  Field* columnType = nullptr;
  Field* isNullable = nullptr;
  Field* keyName = nullptr;
  Field* typeNumber = nullptr;
  Field* bestMatch = nullptr;
  Field* typeName = nullptr;
};

/// All three are asked for, whichever is refused; false unless all of them and their fields are
/// there.
Boolean OpenStructure(StructureRowsets& rowsets, const ConnectionPtr& cn, const Text& sCatalog,
                      const Text& sTable) {
  const Boolean bColumns = Succeeds([&] {
    rowsets.columns = OpenTableSchema(cn, SchemaNumber::Columns, sCatalog, sTable);
    rowsets.columnName = &rowsets.columns->Fields().Item("COLUMN_NAME");
    rowsets.columnType = &rowsets.columns->Fields().Item("DATA_TYPE");
    rowsets.isNullable = &rowsets.columns->Fields().Item("IS_NULLABLE");
  });
  const Boolean bKeys = Succeeds([&] {
    rowsets.keys = OpenTableSchema(cn, SchemaNumber::PrimaryKeys, sCatalog, sTable);
    rowsets.keyName = &rowsets.keys->Fields().Item("COLUMN_NAME");
  });
  const Boolean bTypes = Succeeds([&] {
    rowsets.types = Connected(cn).OpenSchema(SchemaNumber::ProviderTypes);
    rowsets.typeNumber = &rowsets.types->Fields().Item("DATA_TYPE");
    rowsets.bestMatch = &rowsets.types->Fields().Item("BEST_MATCH");
    rowsets.typeName = &rowsets.types->Fields().Item("TYPE_NAME");
  });
  return bColumns && bKeys && bTypes;
}

}  // namespace

void ForEachCatalog(const ConnectionPtr& cn, const UseName& use) {
  ForEachName(Connected(cn).OpenSchema(SchemaNumber::Catalogs), "CATALOG_NAME", use);
}

void ForEachTable(const ConnectionPtr& cn, const Text& sCatalog, const UseName& use) {
  const std::array<Value, 1> restrictions{sCatalog};
  ForEachName(Connected(cn).OpenSchema(SchemaNumber::Tables, restrictions), "TABLE_NAME", use);
}

std::vector<Text> ColumnNames(platform::TableQuery& query, const ConnectionPtr& cn) {
  std::vector<Text> names;
  ForEachName(OpenTableSchema(cn, SchemaNumber::Columns, query.Catalog(), query.Table()),
              "COLUMN_NAME", [&](const Text& sName) { names.push_back(sName); });
  return names;
}

void GetTableColumns(platform::TableQuery& query, const ConnectionPtr& cn) {
  const std::vector<Text> names = ColumnNames(query, cn);
  platform::ColumnList& columns = query.Columns();
  if (columns.Count() == 0) {
    for (const Text& sName : names) columns.Add(sName);
    return;
  }
  const std::unordered_set<Text> serverNames(names.begin(), names.end());
  // The index goes on after a removal too, and up to the count of before: a saved query whose
  // columns the server no longer has is reported to the administrator instead of mended silently.
  const Long lCount = columns.Count();
  for (Long i = 1; i <= lCount; ++i) {
    if (i > columns.Count()) FailColumnsGone(query);
    if (!serverNames.contains(columns.Item(i))) columns.Remove(i);
  }
}

void ForEachStructureRow(const ConnectionPtr& cn, const Text& sCatalog, const Text& sTable,
                         const std::function<void(const TableStructureRow&)>& use) {
  StructureRowsets rowsets;
  if (!OpenStructure(rowsets, cn, sCatalog, sTable)) return;
  for (; !rowsets.columns->Eof(); rowsets.columns->MoveNext()) {
    TableStructureRow row;
    row.sColumn = platform::ToText(rowsets.columnName->Value());
    row.bKey = Scan(*rowsets.keys,
                    [&] { return platform::ToText(rowsets.keyName->Value()) == row.sColumn; });
    const Long lType = platform::ToLong(rowsets.columnType->Value());
    Scan(*rowsets.types, [&] {
      if (!platform::ToBoolean(rowsets.bestMatch->Value())) return false;
      if (platform::ToLong(rowsets.typeNumber->Value()) != lType) return false;
      // The first match is the match, also when its name cannot be read.
      Succeeds([&] { row.sTypeName = platform::ToText(rowsets.typeName->Value()); });
      return true;
    });
    row.nullable = [&] { return platform::ToBoolean(rowsets.isNullable->Value()); };
    use(row);
  }
}

}  // namespace orvane::access
