#include "provider/dialect/translator.h"

#include <algorithm>
#include <iterator>
#include <new>

#include "platform/failure.h"
#include "platform/quoting.h"
#include "provider/dialect/conflict_rules.h"
#include "provider/dialect/days_and_clocks.h"
#include "provider/dialect/engine_forms.h"
#include "provider/dialect/exact_names.h"
#include "provider/dialect/refused_names.h"
#include "provider/dialect/row_source.h"
#include "provider/dialect/statement_parameters.h"
#include "provider/dialect/statement_reader.h"
#include "provider/dialect/stored_numbers.h"
#include "provider/dialect/time_analysis.h"
#include "provider/dialect/time_functions.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

Content ContentOf(Kinds kinds) {
  if (kinds == kinds::kNull) return Content::Null;
  if (kinds::IsOnly(kinds, kinds::kTimes)) return Content::Time;
  return kinds::Has(kinds, kinds::kTime) ? Content::Mixed : Content::Other;
}

Text Kept(const StatementTree& tree) {
  if (tree.kind != StatementKind::Define) return {};
  if (tree.bView) return "a view";
  return tree.bIndex ? "an index" : "the definition of a table";
}

// What is changed in a column without a name of its own would show in its heading.
// An engine of other forms has headings of its own for all that has no name.
void KeepHeadings(const StatementTree& tree, bool bAll, StatementEdits& edits) {
  const Scope* shown = tree.changeScope;  // what RETURNING puts out
  if (tree.kind == StatementKind::Query || tree.bView) shown = tree.mainQuery->cores.front();
  if (tree.kind == StatementKind::Define && !tree.bView) return;
  for (const auto& item : shown->items) {
    if (item.expr == nullptr || !item.sAlias.empty() || item.expr->kind == ExprKind::Name) continue;
    if (!bAll && !edits.Touches(item.range)) continue;
    edits.Wrap(item.range, "", " AS " + platform::QuotedName(edits.TextOf(item.range)));
  }
}

bool HasNoName(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::Null:
    case ExprKind::Number:
    case ExprKind::String:
    case ExprKind::Blob:
    case ExprKind::Time:
    case ExprKind::Sign:
    case ExprKind::Not:
    case ExprKind::Arithmetic:
    case ExprKind::Logic:
    case ExprKind::Compare:
    case ExprKind::Like:
    case ExprKind::Between:
    case ExprKind::In:
    case ExprKind::NullTest:
      return true;
    case ExprKind::Bracket:
      return HasNoName(*expr.children[0]);
    default:
      return false;
  }
}

// A star around a query shows the headings of that: an engine that has one for all that has no name
// would show several columns under it.
void KeepInnerHeadings(const StatementTree& tree, StatementEdits& edits) {
  if (tree.kind == StatementKind::Define) return;
  const auto keep = [&](const Query* query) {
    if (query == nullptr) return;
    for (const auto& item : query->cores.front()->items) {
      if (item.expr == nullptr || !item.sAlias.empty() || !HasNoName(*item.expr)) continue;
      edits.Wrap(item.range, "", " AS " + platform::QuotedName(edits.TextOf(item.range)));
    }
  };
  for (const Source& source : tree.sources) keep(source.query);
  for (const Scope& scope : tree.scopes) {
    for (const NamedQuery& named : scope.namedQueries) {
      if (named.columns.empty()) keep(named.query);
    }
  }
}

// What becomes a time takes the place of its parameter later.
void BindParameters(std::string_view sStatement, const StatementTree& tree, StatementEdits& edits,
                    std::span<const platform::Value> parameters) {
  if (tree.kind == StatementKind::Define) RefuseParameters(sStatement, tree.tokens);
  for (std::size_t i = 0; i < tree.tokens.size(); ++i) {
    const Token& token = tree.tokens[i];
    if (token.nParameter == 0) continue;
    edits.Bind({i, i + 1}, parameters[token.nParameter - 1]);
  }
}

// Not to every table: what is said here holds for the statements of its triggers as well.
void KeepOthers(const StatementTree& tree, const TableNames& names, StatementWork& work,
                StatementEdits& edits) {
  const Token& verb = tree.tokens.front();
  if ((!verb.IsWord("INSERT") && !verb.IsWord("UPDATE")) || tree.tokens[1].IsWord("OR")) return;
  const FoundTable* const target = names.TableOf(*tree.targetSource);
  if (target == nullptr || !GivesRowsUp(target->table.sConflictRules, work)) return;
  edits.Replace({0, 1}, verb.sUpper + " OR ABORT");
}

Translation TranslateTree(std::string_view sStatement, StatementTree tree, SchemaSource& schema,
                          const TranslationSettings& settings, StatementWork& work,
                          std::span<const platform::Value> parameters) {
  TableCache cache(schema);
  ViewKinds views(cache, settings, work);
  StatementEdits edits(sStatement, tree.tokens);
  TableNames names(sStatement, tree, cache, settings.bPrefixes, edits, std::nullopt,
                   settings.form != nullptr);
  names.Resolve();
  BindParameters(sStatement, tree, edits, parameters);
  if (settings.bOthersStay) KeepOthers(tree, names, work, edits);
  TimeAnalysis times({sStatement, tree, names, edits, settings, work, views, Kept(tree)});
  for (const auto& reference : tree.references) {
    const bool bPrefixed = settings.bPrefixes && !reference.chain.bStar;
    names.Rewrite(reference.chain, reference.scope,
                  bPrefixed ? times.ColumnName(reference.chain, reference.scope) : Text());
  }
  times.Run();
  times.KeepNames();
  if (settings.form != nullptr) {
    ExactNames(tree, names, times, edits).Write();
    EngineForms(sStatement, tree, *settings.form, edits).Write();
  }
  StoredNumbers numbers(sStatement, tree, names, edits);
  numbers.Look();
  KeepHeadings(tree, settings.form != nullptr, edits);
  if (settings.form != nullptr) KeepInnerHeadings(tree, edits);

  Translation translation;
  translation.sSql = edits.Write(translation.parameters, translation.places);
  translation.catalogs = names.Catalogs();
  translation.changedCatalog = names.ChangedCatalog();
  if (tree.kind != StatementKind::Define && !tree.bExplain) {
    const StoredTimes stored = times.ReliesOn();
    translation.storedTimes.assign(stored.begin(), stored.end());
  }
  if (times.CallsFunctions()) {
    translation.functions = TimeFunctions(settings);
    std::ranges::move(DayFunctions(settings), std::back_inserter(translation.functions));
    for (const auto& [sShape, sName] : times.ShapeFunctions()) {
      translation.functions.push_back(ShapeFunction(sName, sShape));
    }
  }
  if (numbers.CallsFunction()) translation.functions.push_back(StoredNumbers::Function());
  translation.given = times.Given();
  translation.source = SourceOf(tree, names, times);
  // How a statement would run is told in columns that are not those of the statement.
  if (tree.kind == StatementKind::Query && !tree.bExplain) {
    for (const auto& column : times.OutputOf(*tree.mainQuery)) {
      translation.columns.push_back(ContentOf(column.kinds));
    }
  }
  return translation;
}

}  // namespace

Text WithoutPrefix(const Text& sName) {
  const std::size_t nPrefix = kIdentifierPrefix.size();
  if (sName.size() > nPrefix && SameName(sName.substr(0, nPrefix), kIdentifierPrefix)) {
    return sName.substr(nPrefix);
  }
  return sName;
}

Translation Translate(std::string_view sStatement, std::vector<Token> tokens, SchemaSource& schema,
                      const TranslationSettings& settings, StatementWork& work,
                      std::span<const platform::Value> parameters) {
  try {
    RefuseNames(sStatement, tokens, settings.refusedNames, work);
    return TranslateTree(sStatement, StatementReader(sStatement, std::move(tokens), work).Read(),
                         schema, settings, work, parameters);
  } catch (const std::bad_alloc&) {
    throw platform::Failure(platform::failure::kStorage,
                            "There is not enough memory to read the statement: shorten it.",
                            "ORVOLEDB");
  }
}

}  // namespace orvane::provider::dialect
