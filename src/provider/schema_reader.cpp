#include "provider/schema_reader.h"

#include <unordered_map>

#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::provider {

using platform::Failure;
using platform::RecordsetPtr;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

class SchemaReader::Restrictions {
 public:
  explicit Restrictions(std::span<const Value> vtRestrictions) : m_restrictions(vtRestrictions) {}

  Value At(std::size_t place) const {
    if (place >= m_restrictions.size()) return {};
    const Value& vtValue = m_restrictions[place];
    const auto* const sText = vtValue.As<Text>();
    return sText != nullptr && sText->empty() ? Value() : vtValue;
  }
  // Tables have no schema: only an unset one lets any through.
  bool AllowsSchema() const { return At(1).IsNull(); }
  bool AllowsText(std::size_t place, const Text& sText) const {
    const Value vtValue = At(place);
    return vtValue.IsNull() || platform::ToText(vtValue) == sText;
  }

 private:
  std::span<const Value> m_restrictions;
};

struct SchemaReader::Listing {
  Text sCatalog;  ///< as it was asked for
  ShownCatalog shown;
  platform::Timestamp lastUse;
  std::unordered_map<Text, engines::TableSchema> tables{};  ///< by the name that is shown
};

SchemaReader::SchemaReader(const SessionPlace& place, const SessionOptions& options,
                           const ShownNames& names)
    : m_place(place), m_options(options), m_names(names) {}

SchemaReader::~SchemaReader() = default;

void SchemaReader::Forget() {
  m_listing.reset();
}

RecordsetPtr SchemaReader::Open(platform::SchemaNumber schema,
                                std::span<const Value> vtRestrictions, const SchemaReach& reach) {
  const Restrictions restrictions(vtRestrictions);
  if (schema != platform::SchemaNumber::Columns) Forget();
  switch (schema) {
    case platform::SchemaNumber::Catalogs:
      return OpenCatalogs(restrictions, reach);
    case platform::SchemaNumber::Tables:
      return OpenTables(restrictions, reach);
    case platform::SchemaNumber::Columns:
      return OpenColumns(restrictions, reach);
    case platform::SchemaNumber::PrimaryKeys:
      return OpenPrimaryKeys(restrictions, reach);
    case platform::SchemaNumber::Indexes:
      return OpenIndexes(restrictions, reach);
    case platform::SchemaNumber::ProviderTypes:
      return ProviderTypesRowset(reach.session.Types(), restrictions.At(0), restrictions.At(1));
  }
  throw Failure(failure::kNotSupported, "The provider has no schema rowset of the number " +
                                            std::to_string(static_cast<int>(schema)) +
                                            "; ask for another one.");
}

std::vector<engines::Catalog> SchemaReader::Catalogs(const Value& vtCatalog,
                                                     const SchemaReach& reach) const {
  auto catalogs = reach.session.Catalogs(reach.stop);
  if (vtCatalog.IsNull()) return catalogs;
  const Text sCatalog = platform::ToText(vtCatalog);
  if (const auto* const found = m_names.Find(catalogs, sCatalog)) return {*found};
  throw Failure(failure::kInvalidArgument, "There is no catalog \"" + sCatalog +
                                               "\" on this server; reload the list of catalogs.");
}

std::vector<engines::TableSchema> SchemaReader::Tables(const engines::Catalog& catalog,
                                                       const Value& vtTable,
                                                       const SchemaReach& reach,
                                                       platform::Boolean bIndexes) const {
  const auto read = [&](std::optional<Text> sName) {
    return reach.session.Schema(catalog, {std::move(sName), true, bIndexes}, reach.stop);
  };
  if (vtTable.IsNull()) return read(std::nullopt);
  const Text sTable = platform::ToText(vtTable);
  const Text sPlain = m_names.Plain(sTable);
  auto tables = read(sPlain);
  if (tables.empty() && sPlain != sTable) tables = read(sTable);
  return tables;
}

RecordsetPtr SchemaReader::OpenCatalogs(const Restrictions& restrictions,
                                        const SchemaReach& reach) {
  const auto all = reach.session.Catalogs(reach.stop);
  std::vector<ShownCatalog> catalogs;
  if (const Value vtName = restrictions.At(0); vtName.IsNull()) {
    for (const auto& catalog : all) catalogs.push_back(m_names.Catalog(catalog));
  } else if (const auto* const found = m_names.Find(all, platform::ToText(vtName))) {
    catalogs.push_back(m_names.Catalog(*found));
  }
  return CatalogsRowset(catalogs);
}

RecordsetPtr SchemaReader::OpenTables(const Restrictions& restrictions, const SchemaReach& reach) {
  TablesRowset rowset;
  if (!restrictions.AllowsSchema()) return rowset.Finish();
  const bool bWholeCatalog = !restrictions.At(0).IsNull() && restrictions.At(2).IsNull();
  for (const auto& catalog : Catalogs(restrictions.At(0), reach)) {
    const ShownCatalog shown = m_names.Catalog(catalog);
    auto tables = Tables(catalog, restrictions.At(2), reach);
    if (bWholeCatalog) {
      m_listing = std::make_unique<Listing>(
          Listing{platform::ToText(restrictions.At(0)), shown, m_place.clock()});
    }
    for (auto& table : tables) {
      const Text sShown = m_names.Table(table.sName);
      if (restrictions.AllowsText(3, TablesRowset::TypeOf(shown, table))) {
        rowset.Append(shown, sShown, table);
      }
      if (bWholeCatalog) m_listing->tables.emplace(sShown, std::move(table));
    }
  }
  return rowset.Finish();
}

SchemaReader::Listing* SchemaReader::ListingOf(const Text& sCatalog) {
  // Whoever asks for the columns of a whole catalog does not rest so long between two tables.
  constexpr std::chrono::seconds kLongestPause{2};
  if (m_listing == nullptr || m_listing->sCatalog != sCatalog) return nullptr;
  const auto pause = m_place.clock() - m_listing->lastUse;
  return pause >= std::chrono::seconds(0) && pause <= kLongestPause ? m_listing.get() : nullptr;
}

RecordsetPtr SchemaReader::OpenColumns(const Restrictions& restrictions, const SchemaReach& reach) {
  ColumnsRowset rowset(m_options.TimeAsDouble());
  if (!restrictions.AllowsSchema()) return rowset.Finish();
  const Value vtColumn = restrictions.At(3);
  const Text sColumn = platform::ToText(vtColumn);
  const Text* const column = vtColumn.IsNull() ? nullptr : &sColumn;
  if (Listing* const listing = ListingOf(platform::ToText(restrictions.At(0)))) {
    // Once a table: who asks again wants to know what it is like now.
    const auto listed = listing->tables.extract(platform::ToText(restrictions.At(2)));
    if (!listed.empty()) {
      rowset.Append(listing->shown, listed.key(), listed.mapped(), column);
      listing->lastUse = m_place.clock();
      return rowset.Finish();
    }
  }
  m_listing.reset();
  for (const auto& catalog : Catalogs(restrictions.At(0), reach)) {
    for (const auto& table : Tables(catalog, restrictions.At(2), reach)) {
      rowset.Append(m_names.Catalog(catalog), m_names.Table(table.sName), table, column);
    }
  }
  return rowset.Finish();
}

RecordsetPtr SchemaReader::OpenPrimaryKeys(const Restrictions& restrictions,
                                           const SchemaReach& reach) {
  PrimaryKeysRowset rowset;
  if (!restrictions.AllowsSchema()) return rowset.Finish();
  for (const auto& catalog : Catalogs(restrictions.At(0), reach)) {
    for (const auto& table : Tables(catalog, restrictions.At(2), reach)) {
      rowset.Append(m_names.Catalog(catalog), m_names.Table(table.sName), table);
    }
  }
  return rowset.Finish();
}

RecordsetPtr SchemaReader::OpenIndexes(const Restrictions& restrictions, const SchemaReach& reach) {
  IndexesRowset rowset;
  if (!restrictions.AllowsSchema()) return rowset.Finish();
  const Value vtType = restrictions.At(3);
  if (!vtType.IsNull() && platform::ToLong(vtType) != kBalancedTree) return rowset.Finish();
  for (const auto& catalog : Catalogs(restrictions.At(0), reach)) {
    for (const auto& table : Tables(catalog, restrictions.At(4), reach, true)) {
      for (const auto& index : table.indexes) {
        if (!restrictions.AllowsText(2, index.sName)) continue;
        rowset.Append(m_names.Catalog(catalog), m_names.Table(table.sName), index);
      }
    }
  }
  return rowset.Finish();
}

}  // namespace orvane::provider
