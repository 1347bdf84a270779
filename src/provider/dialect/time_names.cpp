// What a name in a statement stands for: a column that a source puts out, or an item of the query.
#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

using platform::Text;

std::optional<std::size_t> TimeAnalysis::FindPlace(const OutputColumns& columns,
                                                   const Text& sName) const {
  auto place = columns.Find(sName);
  if (!place && m_place.names.Prefixes()) place = columns.Find(WithoutPrefix(sName));
  return place;
}

TimeAnalysis::Found TimeAnalysis::FindIn(const Chain& chain, const Scope& scope) {
  const Text& sColumn = Part(chain, chain.parts.size() - 1);
  const std::size_t nQualifiers = chain.parts.size() - 1;
  for (const auto* const source : scope.sources) {
    Step();
    // The row that an INSERT could not put in goes by a name of its own.
    const bool bRefused =
        nQualifiers == 1 && source->bTarget && SameName(Part(chain, 0), "excluded");
    if (nQualifiers > 0 && !bRefused && !m_place.names.IsQualifier(*source, chain, nQualifiers)) {
      continue;
    }
    const OutputColumns& columns = ColumnsOf(*source);
    if (const auto place = FindPlace(columns, sColumn)) return {&columns[*place], nullptr};
  }
  if (nQualifiers > 0) return {};
  // What the items put out has no name yet while they are worked out.
  const bool bInItems = !scope.items.empty() &&
                        chain.range.begin >= scope.items.front().range.begin &&
                        chain.range.begin < scope.items.back().range.end;
  if (bInItems) return {};
  return {nullptr, ItemNamed(scope, sColumn)};
}

// The first of that name.
const Item* TimeAnalysis::ItemNamed(const Scope& scope, const Text& sName) {
  const auto [known, bNew] = m_itemNames.try_emplace(&scope);
  if (bNew) {
    for (const auto& item : scope.items) {
      if (item.expr == nullptr || item.sAlias.empty()) continue;
      known->second.try_emplace(UpperCase(item.sAlias), &item);
    }
  }
  const auto found = known->second.find(UpperCase(sName));
  return found == known->second.end() ? nullptr : found->second;
}

// True for the number that each row of a table has, under any of its names.
bool TimeAnalysis::NumbersRows(const Chain& chain, const Scope* scope) {
  const Text& sName = Part(chain, chain.parts.size() - 1);
  if (!SameName(sName, "rowid") && !SameName(sName, "oid") && !SameName(sName, "_rowid_")) {
    return false;
  }
  const std::size_t nQualifiers = chain.parts.size() - 1;
  for (; scope != nullptr && !scope->bClosed; scope = scope->parent) {
    for (const auto* const source : scope->sources) {
      const FoundTable* const found = m_place.names.TableOf(*source);
      const bool bTable =
          source->bTarget || source->bFunction || (found != nullptr && !found->table.bView);
      const bool bRefused =
          nQualifiers == 1 && source->bTarget && SameName(Part(chain, 0), "excluded");
      if (bTable && (nQualifiers == 0 || bRefused ||
                     m_place.names.IsQualifier(*source, chain, nQualifiers))) {
        return true;
      }
    }
  }
  return false;
}

TimeAnalysis::Found TimeAnalysis::Find(const Chain& chain, const Scope* scope) {
  for (; scope != nullptr && !scope->bClosed; scope = scope->parent) {
    const Found found = FindIn(chain, *scope);
    if (found.column != nullptr || found.alias != nullptr) return found;
  }
  return {};
}

Text TimeAnalysis::ColumnName(const Chain& chain, const Scope* scope) {
  const Found found = Find(chain, scope);
  return found.column != nullptr ? found.column->sName : Text();
}

Text TimeAnalysis::GivenName(const Chain& chain, const Scope* scope) {
  const Found found = Find(chain, scope);
  if (found.column != nullptr) return found.column->sName;
  return found.alias != nullptr ? found.alias->sAlias : Text();
}

Text TimeAnalysis::NameIn(const Source& source, const Text& sColumn) {
  const OutputColumns& columns = ColumnsOf(source);
  const auto place = FindPlace(columns, sColumn);
  return place ? columns[*place].sName : Text();
}

}  // namespace orvane::provider::dialect
