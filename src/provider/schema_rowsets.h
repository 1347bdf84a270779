// The six schema rowsets with the field names that data access publishes for them.
// Rows are made here from what the engine tells; used by the session.
#pragma once

#include <span>
#include <vector>

#include "ado/recordset_builder.h"
#include "provider/engines/engine.h"

namespace orvane::provider {

/// TYPE of all indexes in their rowset.
constexpr platform::Long kBalancedTree = 1;

/// A catalog as it is shown.
struct ShownCatalog {
  platform::Text sName;
  platform::Text sDescription;
  platform::Boolean bSystem = false;
};

/// CATALOG_NAME, DESCRIPTION.
platform::RecordsetPtr CatalogsRowset(std::span<const ShownCatalog> catalogs);

/// TABLE_CATALOG, TABLE_SCHEMA, TABLE_NAME, TABLE_TYPE ("TABLE", "VIEW" or "SYSTEM TABLE") and
/// the usual further fields.
class TablesRowset {
 public:
  TablesRowset();
  void Append(const ShownCatalog& catalog, const platform::Text& sShownTable,
              const engines::TableSchema& table);
  /// TABLE_TYPE of a table.
  static platform::Text TypeOf(const ShownCatalog& catalog, const engines::TableSchema& table);
  platform::RecordsetPtr Finish() { return m_builder.Finish(); }

 private:
  ado::RecordsetBuilder m_builder;
};

/// COLUMN_NAME, ORDINAL_POSITION, IS_NULLABLE, DATA_TYPE and the usual further fields.
class ColumnsRowset {
 public:
  /// With bTimeAsDouble, columns of times are columns of numbers.
  explicit ColumnsRowset(platform::Boolean bTimeAsDouble);
  /// Appends the columns, or only the one of that name, ASCII letters without regard to case.
  void Append(const ShownCatalog& catalog, const platform::Text& sShownTable,
              const engines::TableSchema& table, const platform::Text* sColumn);
  platform::RecordsetPtr Finish() { return m_builder.Finish(); }

 private:
  platform::Boolean m_bTimeAsDouble;
  ado::RecordsetBuilder m_builder;
};

/// COLUMN_NAME, ORDINAL, PK_NAME and the usual further fields, in the order of the key.
class PrimaryKeysRowset {
 public:
  PrimaryKeysRowset();
  void Append(const ShownCatalog& catalog, const platform::Text& sShownTable,
              const engines::TableSchema& table);
  platform::RecordsetPtr Finish() { return m_builder.Finish(); }

 private:
  ado::RecordsetBuilder m_builder;
};

/// INDEX_NAME, PRIMARY_KEY, UNIQUE, ORDINAL_POSITION, COLUMN_NAME, FILTER_CONDITION and the usual
/// further fields: a row for each part of an index, in its order. An expression has no COLUMN_NAME.
class IndexesRowset {
 public:
  IndexesRowset();
  void Append(const ShownCatalog& catalog, const platform::Text& sShownTable,
              const engines::IndexSchema& index);
  platform::RecordsetPtr Finish() { return m_builder.Finish(); }

 private:
  ado::RecordsetBuilder m_builder;
};

/// TYPE_NAME, DATA_TYPE, BEST_MATCH and the usual further fields, a row for each of the types. Null
/// restrictions are unset.
platform::RecordsetPtr ProviderTypesRowset(std::span<const engines::TypeSchema> types,
                                           const platform::Value& vtType,
                                           const platform::Value& vtBestMatch);

}  // namespace orvane::provider
