// Which catalogs and tables the names in a statement mean. Looks each up once, and writes them as
// the engine knows them.
// Used by the translator and its analysis of times, once for each statement or view.
#pragma once

#include <map>
#include <optional>
#include <unordered_map>

#include "provider/dialect/statement_edits.h"
#include "provider/dialect/translator.h"

namespace orvane::provider::dialect {

/// A table together with the catalog in which it lies.
struct FoundTable {
  KnownCatalog catalog;
  KnownTable table;
};

/// Looks up tables, each once in a statement however often it is named.
class TableCache {
 public:
  explicit TableCache(SchemaSource& schema) : m_schema(schema) {}
  std::optional<KnownCatalog> FindCatalog(const platform::Text& sName);
  /// Null when there is none. Stays where it is.
  const FoundTable* Find(const KnownCatalog& catalog, const platform::Text& sName);

 private:
  SchemaSource& m_schema;
  std::map<platform::Text, std::optional<KnownCatalog>> m_catalogs;
  std::map<std::pair<platform::Text, platform::Text>, std::optional<FoundTable>> m_tables;
};

class TableNames {
 public:
  /// In a view that is kept, names without a catalog mean its own, which is then given as home. For
  /// an engine that tells names apart letter by letter they are written exactly.
  TableNames(std::string_view sStatement, StatementTree& tree, TableCache& cache, bool bPrefixes,
             StatementEdits& edits, std::optional<KnownCatalog> home, bool bExact = false);

  /// Looks up and writes all tables. Fails with failure::kSqlError for what there is not.
  void Resolve();
  /// Writes the qualifiers, and where prefixes are on the names, of a reference. The column is the
  /// name that the column really has, empty when that is not known.
  void Rewrite(const Chain& chain, const Scope* scope, const platform::Text& sColumn);

  const std::vector<platform::Text>& Catalogs() const { return m_catalogs; }
  const std::optional<platform::Text>& ChangedCatalog() const { return m_changed; }

  /// The table that a source reads, null for a subquery, a named query, a function and what is new.
  const FoundTable* TableOf(const Source& source) const;
  const NamedQuery* FindNamedQuery(const Source& source) const;
  /// True when the first nParts names of the chain mean this source.
  bool IsQualifier(const Source& source, const Chain& chain, std::size_t nParts);
  /// The name without a prefix, when prefixes are on.
  platform::Text Plain(const platform::Text& sName) const {
    return m_bPrefixes ? WithoutPrefix(sName) : sName;
  }
  bool Prefixes() const { return m_bPrefixes; }

 private:
  const Token& At(std::size_t i) const { return m_tree.tokens[i]; }
  const platform::Text& Part(const Chain& chain, std::size_t part) const {
    return At(chain.parts[part]).sText;
  }
  [[noreturn]] void Fail(std::size_t token, const platform::Text& sWhat,
                         const platform::Text& sAdvice) const;
  [[noreturn]] void FailWithoutCatalog(const Chain& chain) const;
  KnownCatalog ResolveCatalog(const Chain& chain);
  void ResolveTarget();
  void ResolveSource(const Source& source);
  const FoundTable* FindTable(const KnownCatalog& catalog, const platform::Text& sName);
  const FoundTable& ResolveTable(const Source& source, const KnownCatalog& catalog);
  void WriteTableName(const Chain& chain, const KnownCatalog& catalog,
                      const platform::Text& sTable);
  void WriteQuery(const Source& source, const FoundTable& found);
  void WriteReferredTables(const KnownCatalog& catalog);
  platform::Text NameOfDefined(const KnownCatalog& catalog, const Chain& chain);
  bool IsTarget(const Chain& chain) const;

  std::string_view m_sStatement;
  StatementTree& m_tree;
  TableCache& m_cache;
  bool m_bPrefixes;
  StatementEdits& m_edits;
  std::optional<KnownCatalog> m_home;
  bool m_bExact;
  std::optional<platform::Text> m_viewCatalog;  ///< of the view that the statement makes
  std::map<const Source*, const FoundTable*> m_tables;
  // Of each scope the first named query of each name, in capitals.
  mutable std::map<const Scope*, std::unordered_map<platform::Text, const NamedQuery*>> m_named;
  std::vector<platform::Text> m_catalogs;
  std::optional<platform::Text> m_changed;
};

}  // namespace orvane::provider::dialect
