// Writes every name of a statement in quotes and as it really is, for an engine that tells names in
// quotes apart letter by letter: to historian SQL "Value" and "value" are the same column.
// Used by the translator, once for each statement.
#pragma once

#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

class ExactNames {
 public:
  ExactNames(StatementTree& tree, TableNames& names, TimeAnalysis& times, StatementEdits& edits)
      : m_tree(tree), m_names(names), m_times(times), m_edits(edits) {}

  void Write();

 private:
  void WriteName(std::size_t token, const platform::Text& sName);
  void WriteReference(const Reference& reference);
  void WriteQualifier(const Chain& chain, const Scope* scope);
  bool IsOfKeptRow(const Chain& chain) const;
  platform::Text KeptRow() const;
  void WriteUsed(const Source& source);
  const platform::Text& DefinedName(std::size_t token) const;

  StatementTree& m_tree;
  TableNames& m_names;
  TimeAnalysis& m_times;
  StatementEdits& m_edits;
};

}  // namespace orvane::provider::dialect
