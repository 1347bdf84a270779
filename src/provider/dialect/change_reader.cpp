// INSERT, REPLACE, UPDATE and DELETE.
#include "provider/dialect/statement_reader.h"

namespace orvane::provider::dialect {

void StatementReader::ReadChange(Scope* parent) {
  m_tree.kind = StatementKind::Change;
  Scope* const scope = NewScope(parent);
  m_tree.changeScope = scope;
  if (TakeWord("INSERT") || TakeWord("REPLACE")) {
    ReadInsert(scope);
  } else if (TakeWord("UPDATE")) {
    ReadUpdate(scope);
  } else if (TakeWord("DELETE")) {
    ReadDelete(scope);
  } else {
    RefuseStatement();
  }
}

void StatementReader::ReadTarget(Scope* scope) {
  m_tree.target = ReadTableName();
  Source& source = AddSource(scope);
  source.table = *m_tree.target;
  source.bTarget = true;
  m_tree.targetSource = &source;
  if (!TakeWord("AS")) return;
  m_tree.names.push_back(m_i);
  source.sAlias = At(ExpectName()).sText;
}

void StatementReader::SkipConflictRule() {
  if (TakeWord("OR")) ++m_i;
}

void StatementReader::ReadInsert(Scope* scope) {
  m_tree.bInsert = true;
  SkipConflictRule();
  if (!TakeWord("INTO")) FailHere("INTO is missing", "write INSERT INTO");
  ReadTarget(scope);
  if (IsOpen() && !StartsQuery(1)) {
    ++m_i;
    do {
      if (!Peek().IsIdentifier() || IsReserved(Peek())) {
        FailHere("The name of a column is missing", "list names of columns only");
      }
      m_tree.targetColumns.push_back(m_i);
      AddReference(ReadChain(), scope);
      if (!Peek().IsSymbol(",") && !Peek().IsSymbol(")")) {
        FailHere("The name of a column is missing", "list names of columns only");
      }
    } while (TakeSymbol(","));
    ExpectSymbol(")");
  }
  if (!TakeWords({"DEFAULT", "VALUES"})) {
    if (!StartsQuery()) FailHere("The values are missing", "write VALUES (...) or SELECT");
    m_tree.mainQuery = ReadQuery(scope->parent);
  }
  while (IsAt("ON")) ReadUpsert(scope);
  ReadReturning(scope);
}

void StatementReader::ReadUpsert(Scope* scope) {
  Expect("ON");
  Expect("CONFLICT");
  if (TakeSymbol("(")) {
    do {
      scope->sorts.push_back(ReadExpr(scope));
      if (!TakeWord("ASC")) TakeWord("DESC");
    } while (TakeSymbol(","));
    ExpectSymbol(")");
    if (TakeWord("WHERE")) scope->conditions.push_back(ReadExpr(scope));
  }
  Expect("DO");
  if (TakeWord("NOTHING")) return;
  Expect("UPDATE");
  ReadSet(scope);
  if (TakeWord("WHERE")) scope->conditions.push_back(ReadExpr(scope));
}

void StatementReader::ReadUpdate(Scope* scope) {
  SkipConflictRule();
  ReadTarget(scope);
  if (TakeWords({"INDEXED", "BY"})) {
    ExpectName();
  } else {
    TakeWords({"NOT", "INDEXED"});
  }
  ReadSet(scope);
  if (TakeWord("FROM")) ReadFrom(scope);
  ReadEndOfChange(scope);
}

void StatementReader::ReadDelete(Scope* scope) {
  if (!TakeWord("FROM")) FailHere("FROM is missing", "write DELETE FROM");
  ReadTarget(scope);
  if (TakeWords({"INDEXED", "BY"})) {
    ExpectName();
  } else {
    TakeWords({"NOT", "INDEXED"});
  }
  ReadEndOfChange(scope);
}

void StatementReader::ReadSet(Scope* scope) {
  Expect("SET");
  do {
    Assignment assignment;
    const bool bRow = TakeSymbol("(");
    do {
      assignment.columns.push_back(m_i);
      if (IsReserved(Peek())) FailUnexpected();
      const Chain chain = ReadChain();
      if (chain.parts.size() != 1) FailUnexpected();
      AddReference(chain, scope);
    } while (bRow && TakeSymbol(","));
    if (bRow) ExpectSymbol(")");
    ExpectSymbol("=");
    assignment.value = ReadExpr(scope);
    m_tree.assignments.push_back(std::move(assignment));
  } while (TakeSymbol(","));
}

void StatementReader::ReadEndOfChange(Scope* scope) {
  if (TakeWord("WHERE")) scope->conditions.push_back(ReadExpr(scope));
  ReadReturning(scope);
  if (IsAt("ORDER")) ReadOrder(scope->sorts, scope);
  ReadLimit(scope);
}

void StatementReader::ReadReturning(Scope* scope) {
  if (TakeWord("RETURNING")) ReadItems(scope);
}

}  // namespace orvane::provider::dialect
