// Which stored columns of times a statement relies on: what compares, counts or stores their values
// takes them for numbers, while other programs may have put texts there, and those of dates and
// times of day for texts, while there may be numbers. The engine looks at those
// columns before the statement runs. What only shows a column, or asks whether it is null and of
// which type it is, does not rely on it.
#include <algorithm>
#include <array>

#include "platform/failure.h"
#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

using platform::Text;

namespace {

/// The tokens of a text that is kept; none when another program wrote it in words that are not
/// known here.
std::vector<Token> TokensOf(const Text& sDefinition, StatementWork& work) {
  try {
    return ReadTokens(sDefinition, work);
  } catch (const platform::Failure& failed) {
    if (failed.Number() != platform::failure::kSqlError) throw;
    return {};
  }
}

/// Words in capitals, signs, and texts in small letters.
bool StandsAt(const std::vector<Token>& tokens, std::size_t i,
              std::initializer_list<std::string_view> words) {
  if (i + words.size() > tokens.size()) return false;
  return std::ranges::all_of(words, [&](std::string_view sWord) {
    const Token& token = tokens[i++];
    const bool bText = sWord.front() >= 'a' && sWord.front() <= 'z';
    if (bText) return token.kind == TokenKind::String && token.sText == sWord;
    return token.IsSymbol(sWord) || token.IsWord(sWord);
  });
}

/// In capitals the columns out of which the table's own rules keep texts.
std::set<Text> Guarded(const Text& sDefinition, StatementWork& work) {
  std::set<Text> columns;
  const auto tokens = TokensOf(sDefinition, work);
  constexpr std::size_t kColumn = 4;
  for (std::size_t i = 0; i + kColumn < tokens.size(); ++i) {
    work.Step();
    if (!StandsAt(tokens, i, {"CHECK", "(", "TYPEOF", "("})) continue;
    const std::size_t behind = i + kColumn + 1;
    if (StandsAt(tokens, behind, {")", "=", "integer", ")"}) ||
        StandsAt(tokens, behind, {")", "NOT", "IN", "(", "text", ",", "blob", ")", ")"}) ||
        StandsAt(tokens, behind, {")", "IN", "(", "text", ",", "null", ")", ")"})) {
      columns.insert(UpperCase(tokens[i + kColumn].sText));
    }
  }
  return columns;
}

/// Of columns that hold times, dates or times of day.
std::optional<platform::DataType> TypeOfContent(Content content) {
  if (content == Content::Time) return platform::DataType::DBTimeStamp;
  if (content == Content::Day) return platform::DataType::DBDate;
  if (content == Content::Clock) return platform::DataType::DBTime;
  return std::nullopt;
}

bool AsksForTypeOnly(const Expr& expr, const Text& sFunction) {
  constexpr std::array<std::string_view, 3> kAsking = {"TYPEOF", "COUNT", "QUOTE"};
  return !expr.bDistinct && std::ranges::find(kAsking, sFunction) != kAsking.end();
}

}  // namespace

// A date that is cast to a number or a text is one whatever it was, and what is compared with bytes
// that are given is found whatever it is.
bool TimeAnalysis::TakesAnyDay(const Expr& expr) const {
  if (expr.kind == ExprKind::Cast) {
    return KindsOfType(DeclaredType(m_place.sStatement, m_tree.tokens, expr.type)) == kinds::kNull;
  }
  return expr.kind == ExprKind::Compare && !At(expr.operation).IsSymbol("<") &&
         !At(expr.operation).IsSymbol("<=") && !At(expr.operation).IsSymbol(">") &&
         !At(expr.operation).IsSymbol(">=") &&
         std::ranges::any_of(expr.children, [this](const Expr* child) {
           return IsAsWritten({child, nullptr, nullptr, 0, 0});
         });
}

// Names that show a column, or hand it on under its own name, under which it is looked for then.
std::set<const Expr*> TimeAnalysis::ShownNames() {
  std::set<const Expr*> shown;
  const auto show = [&](const Expr* expr) {
    expr = Inside(expr);
    if (expr->kind == ExprKind::Name) shown.insert(expr);
  };
  const auto showItems = [&](const Scope& scope, bool bAlsoNamed) {
    for (const auto& item : scope.items) {
      if (item.expr != nullptr && (bAlsoNamed || item.sAlias.empty())) show(item.expr);
    }
  };
  for (const auto& expr : m_tree.expressions) {
    Step();
    const bool bWithNull = expr.kind == ExprKind::Compare &&
                           std::ranges::any_of(expr.children, [&](const Expr* child) {
                             return Inside(child)->kind == ExprKind::Null;
                           });
    const bool bAsks =
        bWithNull || expr.kind == ExprKind::NullTest ||
        (expr.kind == ExprKind::Call && AsksForTypeOnly(expr, UpperCase(At(expr.operation).sText)));
    if (!bAsks) continue;
    for (const auto* const child : expr.children) show(child);
  }
  for (const auto& expr : m_tree.expressions) {
    if (!TakesAnyDay(expr)) continue;
    for (const auto* const child : expr.children) {
      if (kinds::IsOnly(KindsOf(*child), kinds::kDaysAndClocks)) show(child);
    }
  }
  if (m_tree.kind == StatementKind::Change) showItems(*m_tree.changeScope, true);
  for (const auto& query : m_tree.queries) {
    const bool bMain = &query == m_tree.mainQuery && m_tree.kind != StatementKind::Change;
    if (!bMain && !m_passedOn.contains(&query)) continue;
    for (const auto* const core : query.cores) {
      showItems(*core, bMain);
      if (!bMain) continue;
      for (const auto* const sort : core->sorts) show(sort);
    }
    if (!bMain) continue;
    for (const auto* const sort : query.sorts) show(sort);
  }
  return shown;
}

// In capitals. What names a column of times, whichever table has it, relies on it.
std::set<Text> TimeAnalysis::NamesReliedOn() {
  const auto passOn = [&](const Query* query) {
    if (query != nullptr && query->cores.size() == 1) m_passedOn.insert(query);
  };
  for (const auto& source : m_tree.sources) passOn(source.query);
  for (const auto& scope : m_tree.scopes) {
    for (const auto& named : scope.namedQueries) {
      if (named.columns.empty()) passOn(named.query);
    }
  }
  // Dates in a view are compared as they stand.
  const Kinds relied = kinds::kFromTimes | (m_place.bStored ? kinds::kNull : kinds::kDaysAndClocks);
  std::set<Text> names;
  const auto all = [&](const Source& source) {
    for (const auto& column : ColumnsOf(source)) {
      Step();
      if (kinds::Has(column.kinds, relied)) names.insert(UpperCase(column.sName));
    }
  };
  const auto shown = ShownNames();
  for (const auto& expr : m_tree.expressions) {
    Step();
    if (expr.kind == ExprKind::In && expr.table != nullptr) all(*expr.table);
    if (expr.kind != ExprKind::Name || shown.contains(&expr)) continue;
    if (!kinds::Has(KindsOf(expr), relied)) continue;
    const Text& sName = At(expr.chain.parts.back()).sText;
    names.insert(UpperCase(sName));
    names.insert(UpperCase(m_place.names.Plain(sName)));
  }
  for (const auto& source : m_tree.sources) {
    for (const UsedName& used : source.usedNames) names.insert(UpperCase(At(used.token).sText));
    if (source.bNatural) all(source);
  }
  for (const auto& query : m_tree.queries) {
    const bool bMain = &query == m_tree.mainQuery && m_tree.kind != StatementKind::Change;
    if (bMain || m_passedOn.contains(&query)) continue;
    for (const auto* const core : query.cores) {
      if (std::ranges::all_of(core->items, [](const Item& item) { return item.expr != nullptr; })) {
        continue;
      }
      for (const auto* const source : core->sources) all(*source);
    }
  }
  return names;
}

StoredTimes TimeAnalysis::ReliesOn() {
  if (Typed() != nullptr) return {};
  StoredTimes times;
  for (const auto& source : m_tree.sources) {
    const FoundTable* const found = m_place.names.TableOf(source);
    if (found == nullptr || !found->table.bView) continue;
    const auto& relied = m_place.views.Of(*found).relied;
    times.insert(relied.begin(), relied.end());
  }
  const auto stored = Stored();
  for (const Text& sName : NamesReliedOn()) {
    const auto known = stored.find(sName);
    if (known != stored.end()) times.insert(known->second.begin(), known->second.end());
  }
  return times;
}

// What the names of columns mean in all tables of the statement, in capitals.
std::map<Text, StoredTimes> TimeAnalysis::Stored() {
  std::map<Text, StoredTimes> stored;
  std::set<const FoundTable*> done;
  for (const auto& source : m_tree.sources) {
    // What is only written is given times.
    if (source.bTarget && m_tree.bInsert && m_tree.assignments.empty()) continue;
    const FoundTable* const found = m_place.names.TableOf(source);
    if (found == nullptr || !done.insert(found).second) continue;
    const KnownTable& table = found->table;
    const auto guarded = table.bView ? std::set<Text>() : Guarded(table.sDefinition, m_place.work);
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      Step();
      const Text sName = UpperCase(table.columns[i].sName);
      if (table.bView) {
        const auto& shown = m_place.views.Of(*found).shown;
        if (i < shown.size()) stored[sName].insert(shown[i].begin(), shown[i].end());
      } else if (const auto type = TypeOfContent(table.columns[i].content);
                 type && !guarded.contains(sName)) {
        stored[sName].insert({found->catalog.sName, table.sName, table.columns[i].sName, *type,
                              table.columns[i].bGenerated});
      }
    }
  }
  return stored;
}

std::vector<StoredTimes> TimeAnalysis::Shows(const Query& query) {
  const Output& output = ReadOutput(query);
  const auto stored = Stored();
  std::vector<StoredTimes> shows(output.columns.size());
  for (std::size_t n = 0; n < query.cores.size() && n < output.cores.size(); ++n) {
    const Scope& core = *query.cores[n];
    for (std::size_t i = 0; i < shows.size() && i < output.cores[n].size(); ++i) {
      Step();
      const OutputColumn& column = output.cores[n][i];
      if (column.item >= core.items.size()) continue;
      const Expr* const expr = core.items[column.item].expr;
      const Expr* const inside = expr != nullptr ? Inside(expr) : nullptr;
      if (inside != nullptr && inside->kind != ExprKind::Name) continue;
      const Text& sName = inside != nullptr ? At(inside->chain.parts.back()).sText : column.sName;
      const auto known = stored.find(UpperCase(sName));
      if (known != stored.end()) shows[i].insert(known->second.begin(), known->second.end());
    }
  }
  return shows;
}

}  // namespace orvane::provider::dialect
