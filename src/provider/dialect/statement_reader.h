// Reads the tokens of a statement into a tree, one function for each rule of the grammar. What it
// takes in, the embedded engine reads the same way; what it does not know, it refuses.
// Used once for each statement and each view that a statement reads.
// The rules stand in expression_reader.cpp, call_reader.cpp, query_reader.cpp, change_reader.cpp
// and definition_reader.cpp.
#pragma once

#include <initializer_list>

#include "provider/dialect/statement_tree.h"
#include "provider/dialect/statement_work.h"

namespace orvane::provider::dialect {

class StatementReader {
 public:
  StatementReader(std::string_view sStatement, std::vector<Token> tokens, StatementWork& work);

  /// Reads one statement. Fails with failure::kSqlError for brackets that do not match, for what
  /// the grammar does not know, and for statements that are not let through; and at the deadline.
  StatementTree Read();

 private:
  enum class Level : std::uint8_t;
  // One step deeper into brackets, queries or cases while it lives.
  class Deeper {
   public:
    explicit Deeper(StatementReader& reader) : m_reader(reader) {
      if (m_reader.m_nDepth >= kMostNested) {
        m_reader.FailHere("The statement is nested too deeply", "nest fewer brackets and queries");
      }
      ++m_reader.m_nDepth;
    }
    Deeper(const Deeper&) = delete;
    Deeper& operator=(const Deeper&) = delete;
    ~Deeper() { --m_reader.m_nDepth; }

   private:
    StatementReader& m_reader;
  };

  // --- tokens (statement_reader.cpp) ---
  void CheckTokens();
  const Token& At(std::size_t i) const { return m_tree.tokens[i < m_nEnd ? i : m_nEnd]; }
  const Token& Peek(std::size_t nAhead = 0) const { return At(m_i + nAhead); }
  bool IsAt(std::string_view sWord) const { return Peek().IsWord(sWord); }
  bool IsOpen(std::size_t nAhead = 0) const { return Peek(nAhead).IsSymbol("("); }
  bool StartsQuery(std::size_t nAhead = 0) const;
  bool TakeWord(std::string_view sWord);
  bool TakeWords(std::initializer_list<std::string_view> words);
  bool TakeSymbol(std::string_view sSymbol);
  void Expect(std::string_view sWord);
  void ExpectSymbol(std::string_view sSymbol);
  std::size_t ExpectName();
  void ExpectEnd();
  [[noreturn]] void FailHere(const platform::Text& sWhat, const platform::Text& sAdvice) const;
  [[noreturn]] void FailUnexpected() const;
  Scope* NewScope(Scope* parent);
  Chain ReadChain();
  Chain ReadTableName();
  void AddReference(const Chain& chain, Scope* scope);

  // --- statements ---
  void ReadMain();
  void ReadChange(Scope* parent);
  [[noreturn]] void RefuseStatement() const;
  void ReadTarget(Scope* scope);
  void SkipConflictRule();
  void ReadInsert(Scope* scope);
  void ReadUpsert(Scope* scope);
  void ReadUpdate(Scope* scope);
  void ReadDelete(Scope* scope);
  void ReadSet(Scope* scope);
  void ReadEndOfChange(Scope* scope);
  void ReadReturning(Scope* scope);
  void ReadDefinition();
  void ReadCreateTable(Scope* scope);
  void ReadReferred();
  void ReadCreateIndex(Scope* scope);
  void ReadCreateView();
  void ReadAlterTable(Scope* scope);
  void ReadColumnDefinition(Scope* scope);
  void ReadConstraints(Scope* scope, ColumnDefinition* column);

  // --- queries ---
  void ReadWith(Scope* scope);
  Query* ReadQuery(Scope* parent);
  Query* ReadBracketedQuery(Scope* parent);
  void ReadCore(Scope* scope);
  void ReadItems(Scope* scope);
  void ReadFrom(Scope* scope);
  void ReadSource(Scope* scope, bool bNatural);
  void ReadJoinCondition(Scope* scope, std::size_t firstBeside, std::size_t firstSource);
  void ReadSelectClauses(Scope* scope);
  void ReadOrder(std::vector<Expr*>& sorts, Scope* scope);
  void ReadLimit(Scope* scope);
  Source& AddSource(Scope* scope);
  bool IsBareAlias() const;

  // --- expressions ---
  Expr* ReadExpr(Scope* scope);
  Expr* ReadExpr(Scope* scope, Level least);
  Expr* ReadBound(Scope* scope);
  Expr* ReadOperand(Scope* scope);
  Expr* ReadBehind(Expr* left, Scope* scope, Level level);
  Expr* ReadNegatable(Expr* left, Scope* scope);
  Expr* ReadIn(Expr* in, Scope* scope);
  Expr* ReadBracket(Scope* scope);
  Expr* ReadCase(Scope* scope);
  std::vector<Expr*> ReadList(Scope* scope);
  Level LevelHere() const;
  Expr* New(ExprKind kind, std::size_t begin, Scope* scope);
  Expr* Done(Expr* expr);

  // --- names, calls and types ---
  Expr* ReadCast(Scope* scope);
  Expr* ReadNameOrCall(Scope* scope);
  void ReadCall(Expr* call, Scope* scope);
  void ReadWindow(std::vector<Expr*>& sorts, std::vector<Expr*>& conditions, Scope* scope);
  void ReadFrameBound(std::vector<Expr*>& conditions, Scope* scope);
  TokenRange ReadType();

  std::string_view m_sStatement;
  StatementWork& m_work;
  StatementTree m_tree;
  std::vector<std::size_t> m_partners;  ///< of a bracket the other one
  std::size_t m_nEnd = 0;
  std::size_t m_i = 0;
  int m_nDepth = 0;
  int m_nHighest = 0;        ///< of the expressions of the query that is read
  Query* m_query = nullptr;  ///< that is read; the whole statement outside of one
};

/// True for a word that can only be a part of the language, never a bare name.
bool IsReserved(const Token& token);

}  // namespace orvane::provider::dialect
