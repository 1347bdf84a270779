#include "provider/known_schema.h"

#include <algorithm>

#include "platform/historian_names.h"
#include "provider/historian/historian.h"

namespace orvane::provider {

using historian::CatalogRecord;
using platform::Text;

namespace {

// What to do instead of changing the catalog; empty for one that can be changed.
Text Advice(const CatalogRecord& record) {
  if (!record.bOwn) return {};
  return record.sName == platform::kSystemCatalog
             ? "the historian keeps it itself; use CREATE DATABASE and DROP DATABASE"
             : "it is there to be read; change a catalog of your own";
}

}  // namespace

std::optional<dialect::KnownCatalog> KnownSchema::FindCatalog(const Text& sName) {
  for (const auto& record : m_records) {
    if (m_names.IsKnownAs(record, sName)) {
      return dialect::KnownCatalog{record.sName, Advice(record)};
    }
  }
  return std::nullopt;
}

std::optional<dialect::KnownTable> KnownSchema::FindTable(const dialect::KnownCatalog& catalog,
                                                          const Text& sTable) {
  const auto tables = m_session.Schema(historian::EngineCatalog(Record(catalog.sName), true),
                                       {sTable, true}, m_stop);
  if (tables.empty()) return std::nullopt;
  dialect::KnownTable known{
      tables.front().sName, {}, tables.front().bView, tables.front().sDefinition};
  for (const auto& column : tables.front().columns) {
    const bool bTime = column.type == platform::DataType::DBTimeStamp;
    known.columns.push_back({column.sName, bTime ? dialect::Content::Time : dialect::Content::Other,
                             column.sDefault, column.bGenerated,
                             column.type == platform::DataType::WChar});
  }
  return known;
}

const CatalogRecord& KnownSchema::Record(const Text& sName) const {
  return *std::ranges::find(m_records, sName, &CatalogRecord::sName);
}

}  // namespace orvane::provider
