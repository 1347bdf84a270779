#include "provider/dialect/exact_names.h"

#include <algorithm>

#include "platform/quoting.h"

namespace orvane::provider::dialect {

using platform::Text;

void ExactNames::Write() {
  for (const std::size_t token : m_tree.names) WriteName(token, DefinedName(token));
  for (const auto& reference : m_tree.references) WriteReference(reference);
  for (const auto& source : m_tree.sources) {
    if (const auto* const named = m_names.FindNamedQuery(source)) {
      WriteName(source.table.parts.front(), named->sName);
    }
    WriteUsed(source);
  }
}

void ExactNames::WriteName(std::size_t token, const Text& sName) {
  m_edits.Replace({token, token + 1}, platform::QuotedName(sName));
}

void ExactNames::WriteReference(const Reference& reference) {
  const Chain& chain = reference.chain;
  const std::size_t nQualifiers = chain.bStar ? chain.parts.size() : chain.parts.size() - 1;
  if (nQualifiers == 1) WriteQualifier(chain, reference.scope);
  if (chain.bStar) return;
  const Text sName = m_times.GivenName(chain, reference.scope);
  // TRUE and FALSE are none.
  if (sName.empty()) return;
  WriteName(chain.parts.back(), sName);
  if (nQualifiers == 0 && IsOfKeptRow(chain)) {
    m_edits.WrapAround(chain.range, platform::QuotedName(KeptRow()) + ".", "");
  }
}

// Behind ON CONFLICT a bare name means the row that is there, which others ask to be told.
bool ExactNames::IsOfKeptRow(const Chain& chain) const {
  if (!m_tree.bInsert || m_tree.assignments.empty()) return false;
  const std::size_t begin = m_tree.assignments.front().columns.front();
  const auto holds = [&](const Expr* expr) {
    return expr->range.begin >= begin && chain.range.begin >= expr->range.begin &&
           chain.range.end <= expr->range.end;
  };
  return std::ranges::any_of(m_tree.assignments,
                             [&](const Assignment& one) { return holds(one.value); }) ||
         std::ranges::any_of(m_tree.changeScope->conditions, holds);
}

Text ExactNames::KeptRow() const {
  const Source& target = *m_tree.targetSource;
  return target.sAlias.empty() ? m_names.TableOf(target)->table.sName : target.sAlias;
}

void ExactNames::WriteQualifier(const Chain& chain, const Scope* scope) {
  for (; scope != nullptr; scope = scope->parent) {
    const auto meant = std::ranges::find_if(scope->sources, [&](const Source* source) {
      return m_names.IsQualifier(*source, chain, 1);
    });
    if (meant == scope->sources.end()) continue;
    const FoundTable* const found = m_names.TableOf(**meant);
    const NamedQuery* const named = m_names.FindNamedQuery(**meant);
    if (!(*meant)->sAlias.empty()) {
      WriteName(chain.parts.front(), (*meant)->sAlias);
    } else if (found != nullptr) {
      WriteName(chain.parts.front(), found->table.sName);
    } else if (named != nullptr) {
      WriteName(chain.parts.front(), named->sName);
    }
    return;
  }
}

// By the name that the first of the tables before knows it.
void ExactNames::WriteUsed(const Source& source) {
  for (const UsedName& used : source.usedNames) {
    for (std::size_t i = used.first; i < used.behind; ++i) {
      const Text sName = m_times.NameIn(*source.scope->sources[i], m_tree.tokens[used.token].sText);
      if (sName.empty()) continue;
      WriteName(used.token, sName);
      break;
    }
  }
}

// What keys name, and what ALTER TABLE renames, is a column of the table.
const Text& ExactNames::DefinedName(std::size_t token) const {
  const Text& sName = m_tree.tokens[token].sText;
  if (m_tree.kind != StatementKind::Define || m_tree.bView) return sName;
  for (const auto& column : m_tree.columns) {
    if (SameName(column.sName, sName)) return column.sName;
  }
  const FoundTable* const found =
      m_tree.targetSource != nullptr ? m_names.TableOf(*m_tree.targetSource) : nullptr;
  if (found == nullptr) return sName;
  for (const auto& column : found->table.columns) {
    if (SameName(column.sName, sName)) return column.sName;
  }
  return sName;
}

}  // namespace orvane::provider::dialect
