// Writes operators, calls, constants and types as an engine has them whose SQL is not that of the
// embedded engine.
// Used by the translator, once for each statement.
#pragma once

#include "provider/dialect/statement_edits.h"
#include "provider/engines/sql_form.h"

namespace orvane::provider::dialect {

class EngineForms {
 public:
  EngineForms(std::string_view sStatement, const StatementTree& tree, const engines::SqlForm& form,
              StatementEdits& edits)
      : m_sStatement(sStatement), m_tree(tree), m_form(form), m_edits(edits) {}

  /// Fails with failure::kSqlError for a pattern that the engine cannot be told.
  void Write();

 private:
  const Token& At(std::size_t i) const { return m_tree.tokens[i]; }
  void NameSubqueries();
  void WriteIndex();
  void WriteExpression(const Expr& expr);
  void WriteInfinity(const Expr& cast);
  void WriteCompare(const Expr& expr);
  bool IsWordBehindIs(std::size_t i) const;
  bool IsOfColumn(const Expr& compare) const;
  void WriteSameBytes(const Expr& compare);
  bool DropBinaryOrder(const Expr& side);
  void WriteCall(const Expr& call);
  void WriteCall(const Expr& call, const engines::CallForm& form);
  void WriteChoice(const Expr& call, std::string_view sForm);
  void WritePattern(const Expr& call, const engines::PatternForm& form);
  void WriteType(TokenRange type);

  std::string_view m_sStatement;
  const StatementTree& m_tree;
  const engines::SqlForm& m_form;
  StatementEdits& m_edits;
};

}  // namespace orvane::provider::dialect
