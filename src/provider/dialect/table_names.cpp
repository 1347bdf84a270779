#include "provider/dialect/table_names.h"

#include <algorithm>

#include "platform/failure.h"
#include "platform/quoting.h"

namespace orvane::provider::dialect {

using platform::Text;

std::optional<KnownCatalog> TableCache::FindCatalog(const Text& sName) {
  const auto [known, bNew] = m_catalogs.try_emplace(sName);
  if (bNew) known->second = m_schema.FindCatalog(sName);
  return known->second;
}

const FoundTable* TableCache::Find(const KnownCatalog& catalog, const Text& sName) {
  const auto [known, bNew] = m_tables.try_emplace({catalog.sName, UpperCase(sName)});
  if (bNew) {
    if (auto table = m_schema.FindTable(catalog, sName)) {
      known->second = FoundTable{catalog, std::move(*table)};
    }
  }
  return known->second ? &*known->second : nullptr;
}

TableNames::TableNames(std::string_view sStatement, StatementTree& tree, TableCache& cache,
                       bool bPrefixes, StatementEdits& edits, std::optional<KnownCatalog> home,
                       bool bExact)
    : m_sStatement(sStatement),
      m_tree(tree),
      m_cache(cache),
      m_bPrefixes(bPrefixes),
      m_edits(edits),
      m_home(std::move(home)),
      m_bExact(bExact) {}

void TableNames::Resolve() {
  if (!m_home) ResolveTarget();
  for (const auto& source : m_tree.sources) {
    if (!source.bTarget) ResolveSource(source);
  }
}

void TableNames::Fail(std::size_t token, const Text& sWhat, const Text& sAdvice) const {
  FailAt(m_sStatement, At(token).position, sWhat, sAdvice);
}

KnownCatalog TableNames::ResolveCatalog(const Chain& chain) {
  if (m_home) return *m_home;
  auto catalog = m_cache.FindCatalog(Part(chain, 0));
  if (!catalog) {
    Fail(chain.parts[0], "There is no catalog \"" + Part(chain, 0) + "\"",
         "write the name of one that the server lists");
  }
  if (std::find(m_catalogs.begin(), m_catalogs.end(), catalog->sName) == m_catalogs.end()) {
    m_catalogs.push_back(catalog->sName);
  }
  return *catalog;
}

void TableNames::FailWithoutCatalog(const Chain& chain) const {
  const Text& sTable = Part(chain, 0);
  Fail(chain.parts[0], "The name \"" + sTable + "\" stands without a catalog",
       "write catalog.." + sTable + ", for example Plant1.." + sTable);
}

void TableNames::ResolveTarget() {
  if (!m_tree.target) return;
  const Chain* named = &*m_tree.target;
  // CREATE INDEX: either name may carry the catalog.
  if (m_tree.indexedTable && named->parts.size() < 2) named = &*m_tree.indexedTable;
  if (named->parts.size() < 2) FailWithoutCatalog(*named);
  const KnownCatalog catalog = ResolveCatalog(*named);
  if (!catalog.sReadOnlyAdvice.empty()) {
    Fail(named->parts[0], "The catalog " + catalog.sName + " cannot be changed",
         catalog.sReadOnlyAdvice);
  }
  m_changed = catalog.sName;
  WriteReferredTables(catalog);
  if (m_tree.bView) m_viewCatalog = catalog.sName;
  if (m_tree.indexedTable) {
    const Chain& indexed = *m_tree.indexedTable;
    if (indexed.parts.size() == 2 && ResolveCatalog(indexed).sName != catalog.sName) {
      Fail(indexed.parts[0], "An index names another catalog than its table",
           "write the catalog once");
    }
    const FoundTable& found = ResolveTable(*m_tree.targetSource, catalog);
    WriteTableName(*m_tree.target, catalog, NameOfDefined(catalog, *m_tree.target));
    m_edits.Replace(indexed.range, platform::QuotedName(found.table.sName));
    if (m_bExact) {
      // There an index lies where its table does.
      m_edits.Replace(m_tree.target->range,
                      platform::QuotedName(Part(*m_tree.target, m_tree.target->parts.size() - 1)));
      m_edits.Replace(indexed.range, platform::QuotedName(catalog.sName) + "." +
                                         platform::QuotedName(found.table.sName));
    }
  } else if (m_tree.targetSource != nullptr) {
    WriteTableName(*m_tree.target, catalog,
                   ResolveTable(*m_tree.targetSource, catalog).table.sName);
    if ((m_bPrefixes || m_bExact) && m_tree.newName) {
      m_edits.Replace({*m_tree.newName, *m_tree.newName + 1},
                      platform::QuotedName(Plain(At(*m_tree.newName).sText)));
    }
  } else {
    WriteTableName(*m_tree.target, catalog, NameOfDefined(catalog, *m_tree.target));
  }
}

// A table that is not there yet may come later, as keys are looked at when rows are stored. The one
// that is made may refer to itself.
void TableNames::WriteReferredTables(const KnownCatalog& catalog) {
  if (!m_bPrefixes && !m_bExact) return;
  const Text sCatalog = m_bExact ? platform::QuotedName(catalog.sName) + "." : Text();
  for (const auto& referred : m_tree.referredTables) {
    const Text& sName = At(referred.table).sText;
    const FoundTable* const found = FindTable(catalog, sName);
    const Text sMeant = found != nullptr ? found->table.sName : Plain(sName);
    m_edits.Replace({referred.table, referred.table + 1}, sCatalog + platform::QuotedName(sMeant));
    for (const std::size_t token : referred.columns) {
      const Text& sColumn = At(token).sText;
      const KnownColumn* column = nullptr;
      for (const Text& sAs : {sColumn, Plain(sColumn)}) {
        if (found == nullptr || column != nullptr) continue;
        const auto same = std::ranges::find_if(
            found->table.columns, [&](const auto& one) { return SameName(one.sName, sAs); });
        if (same != found->table.columns.end()) column = &*same;
      }
      const Text sReal = column != nullptr ? column->sName : sColumn;
      m_edits.Replace({token, token + 1}, platform::QuotedName(sReal));
    }
  }
}

// A new table is listed under its name with the prefix; indexes are listed without one.
Text TableNames::NameOfDefined(const KnownCatalog& catalog, const Chain& chain) {
  const Text& sName = Part(chain, chain.parts.size() - 1);
  if (m_tree.bOfIndex) return sName;
  const FoundTable* const found = m_tree.bCreate ? nullptr : FindTable(catalog, sName);
  return found != nullptr ? found->table.sName : Plain(sName);
}

// A subquery needs a name, which is that of the table unless it has another one.
void TableNames::WriteQuery(const Source& source, const FoundTable& found) {
  Text sQuery = "(" + found.table.sQuery + ")";
  if (source.sAlias.empty()) sQuery += " AS " + platform::QuotedName(found.table.sName);
  m_edits.Replace({source.table.parts.front(), source.table.parts.back() + 1}, std::move(sQuery));
}

void TableNames::WriteTableName(const Chain& chain, const KnownCatalog& catalog,
                                const Text& sTable) {
  Text sName = platform::QuotedName(sTable);
  // A view is kept with its catalog, which may be reached by any name: no catalog in its text.
  if (!(m_viewCatalog && !IsTarget(chain)))
    sName = platform::QuotedName(catalog.sName) + "." + sName;
  m_edits.Replace({chain.parts.front(), chain.parts.back() + 1}, std::move(sName));
}

bool TableNames::IsTarget(const Chain& chain) const {
  return m_tree.target && m_tree.target->range.begin == chain.range.begin;
}

// What is listed as Orv_X is X, also beside a table that is really called Orv_X.
const FoundTable* TableNames::FindTable(const KnownCatalog& catalog, const Text& sName) {
  const FoundTable* const found = m_cache.Find(catalog, Plain(sName));
  return found != nullptr ? found : m_cache.Find(catalog, sName);
}

const FoundTable& TableNames::ResolveTable(const Source& source, const KnownCatalog& catalog) {
  const std::size_t name = source.table.parts.back();
  const FoundTable* const found = FindTable(catalog, At(name).sText);
  if (found == nullptr) {
    Fail(name, "There is no table \"" + At(name).sText + "\" in the catalog " + catalog.sName,
         "write the name of one that the catalog lists");
  }
  m_tables[&source] = found;
  return *found;
}

void TableNames::ResolveSource(const Source& source) {
  if (source.query != nullptr || source.bFunction) return;
  if (source.table.parts.size() < 2) {
    if (FindNamedQuery(source) != nullptr) return;
    if (!m_home) FailWithoutCatalog(source.table);
  }
  const KnownCatalog catalog = ResolveCatalog(source.table);
  if (m_viewCatalog && *m_viewCatalog != catalog.sName) {
    Fail(source.table.parts[0], "A view reads another catalog than its own",
         "read tables of " + *m_viewCatalog + " only");
  }
  const FoundTable& found = ResolveTable(source, catalog);
  if (found.table.sQuery.empty()) {
    WriteTableName(source.table, catalog, found.table.sName);
  } else {
    WriteQuery(source, found);
  }
}

const FoundTable* TableNames::TableOf(const Source& source) const {
  const auto found = m_tables.find(&source);
  return found == m_tables.end() ? nullptr : found->second;
}

const NamedQuery* TableNames::FindNamedQuery(const Source& source) const {
  if (source.query != nullptr || source.bFunction || source.bTarget ||
      source.table.parts.size() != 1) {
    return nullptr;
  }
  const Text sName = UpperCase(Part(source.table, 0));
  for (const Scope* scope = source.scope; scope != nullptr; scope = scope->parent) {
    if (scope->namedQueries.empty()) continue;
    auto& names = m_named[scope];
    if (names.empty()) {
      for (const auto& named : scope->namedQueries)
        names.try_emplace(UpperCase(named.sName), &named);
    }
    if (const auto found = names.find(sName); found != names.end()) return found->second;
  }
  return nullptr;
}

bool TableNames::IsQualifier(const Source& source, const Chain& chain, std::size_t nParts) {
  const Text& sName = Part(chain, nParts - 1);
  if (!source.sAlias.empty()) return nParts == 1 && SameName(source.sAlias, sName);
  if (source.query != nullptr) return false;
  const FoundTable* const found = TableOf(source);
  if (nParts == 2 && !m_home && found != nullptr) {
    const auto catalog = m_cache.FindCatalog(Part(chain, 0));
    if (!catalog || catalog->sName != found->catalog.sName) return false;
  }
  if (found == nullptr) {
    const Text& sOwn = Part(source.table, source.table.parts.size() - 1);
    return SameName(sOwn, sName) || SameName(sOwn, Plain(sName));
  }
  if (SameName(found->table.sName, Plain(sName))) return true;
  return SameName(found->table.sName, sName) && FindTable(found->catalog, sName) == found;
}

void TableNames::Rewrite(const Chain& chain, const Scope* scope, const Text& sColumn) {
  const std::size_t nQualifiers = chain.bStar ? chain.parts.size() : chain.parts.size() - 1;
  if (nQualifiers > 2 || (chain.bDoubleDot && nQualifiers < 2)) {
    Fail(chain.range.begin, "A column is not named as it should be",
         "write catalog..table.column, alias.column or column");
  }
  if (nQualifiers == 2) {
    const KnownCatalog catalog = ResolveCatalog(chain);
    const FoundTable* const found = FindTable(catalog, Part(chain, 1));
    Text sName = platform::QuotedName(found != nullptr ? found->table.sName : Part(chain, 1));
    const bool bQuery = found != nullptr && !found->table.sQuery.empty();
    if (!m_viewCatalog && !bQuery) sName = platform::QuotedName(catalog.sName) + "." + sName;
    m_edits.Replace({chain.parts[0], chain.parts[1] + 1}, std::move(sName));
  }
  if (!m_bPrefixes) return;
  for (const Scope* in = scope; nQualifiers == 1 && in != nullptr; in = in->parent) {
    const auto meant = std::find_if(in->sources.begin(), in->sources.end(),
                                    [&](auto* source) { return IsQualifier(*source, chain, 1); });
    if (meant == in->sources.end()) continue;
    const FoundTable* const found = TableOf(**meant);
    if ((*meant)->sAlias.empty() && found != nullptr) {
      m_edits.Replace({chain.parts[0], chain.parts[0] + 1},
                      platform::QuotedName(found->table.sName));
    }
    break;
  }
  const std::size_t name = chain.parts.back();
  if (chain.bStar || sColumn.empty() || WithoutPrefix(At(name).sText) == At(name).sText) return;
  m_edits.Replace({name, name + 1}, platform::QuotedName(sColumn));
}

}  // namespace orvane::provider::dialect
