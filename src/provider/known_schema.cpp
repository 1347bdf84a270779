#include "provider/known_schema.h"

#include <algorithm>

#include "platform/historian_names.h"

namespace orvane::provider {

using platform::Text;

namespace {

dialect::Content ContentOf(const engines::ColumnSchema& column) {
  if (column.bTime) return dialect::Content::Time;
  switch (column.type) {
    case platform::DataType::DBTimeStamp:
      return dialect::Content::Time;
    case platform::DataType::DBDate:
      return dialect::Content::Day;
    case platform::DataType::DBTime:
      return dialect::Content::Clock;
    default:
      return dialect::Content::Other;
  }
}

// Of no type, or of bytes: a name that is not known means one of numbers, which rounds.
bool KeepsAsGiven(const engines::ColumnSchema& column) {
  return column.type == platform::DataType::Binary ||
         (column.type == platform::DataType::Empty && !column.bRounds);
}

// What to do instead of changing the catalog; empty for one that can be changed.
Text Advice(const engines::Catalog& catalog) {
  if (!catalog.bSystem) return {};
  return catalog.sName == platform::kSystemCatalog
             ? "the historian keeps it itself; use CREATE DATABASE and DROP DATABASE"
             : "it is there to be read; change a catalog of your own";
}

}  // namespace

std::optional<dialect::KnownCatalog> KnownSchema::FindCatalog(const Text& sName) {
  const auto* const catalog = m_names.Find(m_catalogs, sName);
  if (catalog == nullptr) return std::nullopt;
  return dialect::KnownCatalog{catalog->sName, Advice(*catalog)};
}

std::optional<dialect::KnownTable> KnownSchema::FindTable(const dialect::KnownCatalog& catalog,
                                                          const Text& sTable) {
  const auto tables = m_session.Schema(Catalog(catalog.sName), {sTable, true}, m_stop);
  if (tables.empty()) return std::nullopt;
  // Where names that differ in case only are two, the one that was written.
  auto table = std::ranges::find(tables, sTable, &engines::TableSchema::sName);
  if (table == tables.end()) table = tables.begin();
  dialect::KnownTable known{
      table->sName, {}, table->bView, table->sDefinition, table->sQuery, table->sConflictRules};
  for (const auto& column : table->columns) {
    known.columns.push_back({column.sName, ContentOf(column), column.sDefault, column.bGenerated,
                             column.type == platform::DataType::WChar, column.bRounds,
                             column.type == platform::DataType::WallTime, KeepsAsGiven(column)});
  }
  return known;
}

const engines::Catalog& KnownSchema::Catalog(const Text& sName) const {
  return *std::ranges::find(m_catalogs, sName, &engines::Catalog::sName);
}

}  // namespace orvane::provider
