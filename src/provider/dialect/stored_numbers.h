// Sees to it that no digit of a number is lost on its way into a column of numbers, where an engine
// keeps 64-bit integers and doubles there and would round what is longer without a word.
// Used by the translator, once for each statement that changes something.
#pragma once

#include "provider/dialect/table_names.h"

namespace orvane::provider::dialect {

class StoredNumbers {
 public:
  StoredNumbers(std::string_view sStatement, const StatementTree& tree, const TableNames& names,
                StatementEdits& edits)
      : m_sStatement(sStatement), m_tree(tree), m_names(names), m_edits(edits) {}

  /// Looks at what is written into columns that round. A number in the statement that is
  /// longer than they keep fails with failure::kOverflow; texts and parameters are looked at when
  /// the statement runs, and fail then.
  void Look();
  /// True when the statement calls the function below.
  bool CallsFunction() const { return m_bCalls; }
  /// Gives a text that is a number as the number that such a column keeps.
  static engines::StatementFunction Function();

 private:
  void LookAtInsert(const FoundTable& found);
  void LookAtValue(const Expr& value);
  bool Rounds(const FoundTable& found, const platform::Text& sColumn) const;

  std::string_view m_sStatement;
  const StatementTree& m_tree;
  const TableNames& m_names;
  StatementEdits& m_edits;
  bool m_bCalls = false;
};

}  // namespace orvane::provider::dialect
