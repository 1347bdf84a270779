// The changes that turn a statement into the engine's: names, parameters and conversions, by the
// tokens where they stand. Everything between them stays as it was written.
// Used by the translator, once for each statement.
#pragma once

#include <map>
#include <string_view>
#include <vector>

#include "platform/value.h"
#include "provider/dialect/statement_tree.h"

namespace orvane::provider::dialect {

class StatementEdits {
 public:
  StatementEdits(std::string_view sStatement, const std::vector<Token>& tokens)
      : m_sStatement(sStatement), m_tokens(tokens) {}

  /// Puts a text in the place of the tokens; a second one for the same place replaces the first.
  void Replace(TokenRange range, platform::Text sText);
  /// Puts a parameter in the place of the tokens.
  void Bind(TokenRange range, platform::Value vtValue);
  /// Puts one text before the tokens and one behind them; what is wider stands outside.
  void Wrap(TokenRange range, const platform::Text& sBefore, const platform::Text& sBehind);
  /// The same around all that was wrapped before.
  void WrapAround(TokenRange range, const platform::Text& sBefore, const platform::Text& sBehind);
  /// True when anything within the tokens changes.
  bool Touches(TokenRange range) const;
  /// True when anything within the tokens is wrapped.
  bool Wraps(TokenRange range) const { return Lies(range, m_before); }
  /// As it was written.
  platform::Text TextOf(TokenRange range) const;

  /// The statement with all changes, and the parameters in the order of their places.
  platform::Text Write(std::vector<platform::Value>& parameters) const;
  /// Also where its pieces begin, and where in the statement they stand.
  platform::Text Write(std::vector<platform::Value>& parameters,
                       std::vector<std::pair<std::size_t, std::size_t>>& pieces) const;

 private:
  struct Replaced {
    std::size_t end = 0;
    platform::Text sText;
    bool bParameter = false;
    platform::Value vtValue;
  };
  bool Lies(TokenRange range, const auto& edits) const {
    const auto first = edits.lower_bound(Begin(range));
    return first != edits.end() && first->first < End(range);
  }
  std::size_t Begin(TokenRange range) const { return m_tokens[range.begin].position; }
  std::size_t End(TokenRange range) const {
    const Token& last = m_tokens[range.end - 1];
    return last.position + last.length;
  }

  std::string_view m_sStatement;
  const std::vector<Token>& m_tokens;
  std::map<std::size_t, Replaced> m_replaced;
  // Before a place: by the end of what is wrapped. Behind a place: in any order by its beginning.
  std::map<std::size_t, std::multimap<std::size_t, platform::Text, std::greater<>>> m_before;
  std::map<std::size_t, std::multimap<std::size_t, platform::Text, std::greater<>>> m_behind;
};

}  // namespace orvane::provider::dialect
