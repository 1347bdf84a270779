// CREATE, ALTER and DROP of tables, indexes and views.
#include "provider/dialect/statement_reader.h"

namespace orvane::provider::dialect {

void StatementReader::ReadDefinition() {
  m_tree.kind = StatementKind::Define;
  const bool bCreate = TakeWord("CREATE");
  const bool bAlter = !bCreate && TakeWord("ALTER");
  if (!bCreate && !bAlter) Expect("DROP");
  if (IsAt("TEMP") || IsAt("TEMPORARY")) {
    FailHere(Peek().sUpper + " is not possible", "tables live in catalogs; write catalog..table");
  }
  const bool bUnique = TakeWord("UNIQUE");
  const bool bTable = IsAt("TABLE");
  const bool bIndex = IsAt("INDEX");
  const bool bView = IsAt("VIEW");
  if (!(bTable || bIndex || bView) || (bUnique && !(bIndex && bCreate)) || (bAlter && !bTable)) {
    FailHere("This cannot be created, altered or dropped",
             "create and drop a TABLE, an INDEX, a VIEW or a DATABASE, or alter a TABLE");
  }
  ++m_i;
  if (!TakeWords({"IF", "NOT", "EXISTS"})) TakeWords({"IF", "EXISTS"});
  m_tree.target = ReadTableName();
  m_tree.bView = bView && bCreate;
  m_tree.bIndex = bIndex && bCreate;
  m_tree.bOfIndex = bIndex;
  m_tree.bCreate = bCreate;
  Scope* const scope = NewScope(nullptr);
  if (bCreate && bTable) ReadCreateTable(scope);
  if (bCreate && bIndex) ReadCreateIndex(scope);
  if (bCreate && bView) ReadCreateView();
  if (bAlter) ReadAlterTable(scope);
}

void StatementReader::ReadCreateTable(Scope* scope) {
  if (TakeWord("AS")) {
    m_tree.mainQuery = ReadQuery(nullptr);
    return;
  }
  // What is defined can be named in the definition.
  m_tree.changeScope = scope;
  Source& source = AddSource(scope);
  source.table = *m_tree.target;
  source.bTarget = true;
  ExpectSymbol("(");
  do {
    if (IsAt("CONSTRAINT") || IsAt("PRIMARY") || IsAt("UNIQUE") || IsAt("CHECK") ||
        IsAt("FOREIGN")) {
      ReadConstraints(scope, nullptr);
    } else {
      ReadColumnDefinition(scope);
    }
  } while (TakeSymbol(","));
  ExpectSymbol(")");
  m_tree.storage.begin = m_i;
  do {
    if (!TakeWords({"WITHOUT", "ROWID"})) TakeWord("STRICT");
  } while (TakeSymbol(","));
  m_tree.storage.end = m_i;
}

void StatementReader::ReadColumnDefinition(Scope* scope) {
  ColumnDefinition column;
  column.range.begin = m_i;
  m_tree.names.push_back(m_i);
  column.sName = At(ExpectName()).sText;
  column.type = DeclaredType(m_sStatement, m_tree.tokens, ReadType());
  ReadConstraints(scope, &column);
  column.range.end = m_i;
  m_tree.columns.push_back(std::move(column));
}

// Of a column, or of the whole table when there is none. Only what holds expressions is read; the
// rest is skipped up to the comma or bracket behind it.
void StatementReader::ReadConstraints(Scope* scope, ColumnDefinition* column) {
  while (!Peek().IsSymbol(",") && !Peek().IsSymbol(")") && Peek().kind != TokenKind::End) {
    if (TakeWord("CHECK")) {
      ExpectSymbol("(");
      scope->conditions.push_back(ReadExpr(scope));
      ExpectSymbol(")");
    } else if (column != nullptr && IsAt("AS") && IsOpen(1)) {
      ++m_i;
      ExpectSymbol("(");
      column->computed = ReadExpr(scope);
      ExpectSymbol(")");
    } else if (column != nullptr && TakeWord("DEFAULT")) {
      column->initial = ReadOperand(scope);
    } else if (TakeWord("REFERENCES")) {
      if (Peek().IsIdentifier()) ReadReferred();
    } else if (IsOpen()) {
      // Columns of a key.
      const std::size_t behind = m_partners[m_i] + 1;
      for (++m_i; m_i < behind; ++m_i) {
        if (Peek().IsIdentifier() && !IsAt("ASC") && !IsAt("DESC")) m_tree.names.push_back(m_i);
      }
    } else {
      ++m_i;
    }
  }
}

// What a foreign key refers to: a table, and columns of it.
void StatementReader::ReadReferred() {
  ReferredTable referred{m_i++, {}};
  if (IsOpen()) {
    const std::size_t behind = m_partners[m_i] + 1;
    for (++m_i; m_i < behind; ++m_i) {
      if (Peek().IsIdentifier()) referred.columns.push_back(m_i);
    }
  }
  m_tree.referredTables.push_back(std::move(referred));
}

void StatementReader::ReadCreateIndex(Scope* scope) {
  if (!TakeWord("ON")) FailHere("ON is missing", "write CREATE INDEX name ON table");
  m_tree.indexedTable = ReadTableName();
  m_tree.changeScope = scope;
  Source& source = AddSource(scope);
  source.table = *m_tree.indexedTable;
  source.bTarget = true;
  m_tree.targetSource = &source;
  ExpectSymbol("(");
  do {
    scope->conditions.push_back(ReadExpr(scope));
    if (!TakeWord("ASC")) TakeWord("DESC");
  } while (TakeSymbol(","));
  ExpectSymbol(")");
  if (TakeWord("WHERE")) scope->conditions.push_back(ReadExpr(scope));
}

void StatementReader::ReadCreateView() {
  if (TakeSymbol("(")) {
    do {
      m_tree.names.push_back(ExpectName());
    } while (TakeSymbol(","));
    ExpectSymbol(")");
  }
  Expect("AS");
  m_tree.mainQuery = ReadQuery(nullptr);
}

void StatementReader::ReadAlterTable(Scope* scope) {
  m_tree.changeScope = scope;
  Source& source = AddSource(scope);
  source.table = *m_tree.target;
  source.bTarget = true;
  m_tree.targetSource = &source;
  if (TakeWord("ADD")) {
    TakeWord("COLUMN");
    ReadColumnDefinition(scope);
    return;
  }
  if (TakeWords({"RENAME", "TO"})) {
    m_tree.newName = ExpectName();
    return;
  }
  // Other RENAMEs and DROP hold names only.
  if (!TakeWord("RENAME")) TakeWord("DROP");
  TakeWord("COLUMN");
  while (Peek().IsIdentifier()) {
    if (!IsAt("TO")) m_tree.names.push_back(m_i);
    ++m_i;
  }
}

}  // namespace orvane::provider::dialect
