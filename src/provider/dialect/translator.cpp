#include "provider/dialect/translator.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>

#include "platform/failure.h"
#include "provider/dialect/statement_tree.h"
#include "provider/dialect/time_expression.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;
using platform::Timestamp;
using platform::Value;

class Translator {
 public:
  Translator(std::string_view sStatement, SchemaSource& schema, const TranslationSettings& settings)
      : m_sStatement(sStatement),
        m_schema(schema),
        m_settings(settings),
        m_tree(ReadStatement(sStatement, ReadTokens(sStatement))),
        m_brackets(MatchBrackets(sStatement, m_tree.tokens)) {}

  Translation Run() {
    ResolveTarget();
    for (auto& source : m_tree.sources) {
      if (!source.bTarget) Resolve(source);
    }
    for (const auto& reference : m_tree.references) RewriteReference(reference);
    for (const auto& comparison : m_tree.comparisons) {
      if (HoldsTime(comparison.left, comparison.scope)) ReplaceTime(comparison.right);
      if (HoldsTime(comparison.right, comparison.scope)) ReplaceTime(comparison.left);
    }
    ReplaceAssignedTimes();
    // How a statement would run is told in columns that are not those of the statement.
    if (m_tree.mainQuery != nullptr && !m_tree.bExplain) {
      for (const auto& column : OutputOf(*m_tree.mainQuery)) {
        m_result.columns.push_back(column.content);
      }
    }
    WriteSql();
    return std::move(m_result);
  }

 private:
  struct Edit {
    std::size_t length = 0;
    Text sText;
    std::optional<Value> parameter;
  };

  // A source together with what it turned out to be.
  struct ResolvedTable {
    KnownCatalog catalog;
    KnownTable table;
  };

  const Token& At(std::size_t i) const { return m_tree.tokens[i]; }
  const Text& Part(const Chain& chain, std::size_t part) const {
    return At(chain.parts[part]).sText;
  }
  [[noreturn]] void Fail(std::size_t token, const Text& sWhat, const Text& sAdvice) const {
    FailAt(m_sStatement, At(token).position, sWhat, sAdvice);
  }

  // --- edits ---

  void Replace(std::size_t firstToken, std::size_t endToken, Text sText,
               std::optional<Value> parameter = std::nullopt) {
    const std::size_t begin = At(firstToken).position;
    const Token& last = At(endToken - 1);
    m_edits[begin] = {last.position + last.length - begin, std::move(sText), std::move(parameter)};
  }

  void WriteSql() {
    std::size_t position = 0;
    for (auto& [begin, edit] : m_edits) {
      m_result.sSql += m_sStatement.substr(position, begin - position);
      m_result.sSql += edit.sText;
      if (edit.parameter) m_result.parameters.push_back(std::move(*edit.parameter));
      position = begin + edit.length;
    }
    m_result.sSql += m_sStatement.substr(position);
  }

  // --- catalogs and tables ---

  KnownCatalog ResolveCatalog(const Chain& chain) {
    auto catalog = m_schema.FindCatalog(Part(chain, 0));
    if (!catalog) {
      Fail(chain.parts[0], "There is no catalog \"" + Part(chain, 0) + "\"",
           "write the name of one that the server lists");
    }
    return *catalog;
  }

  void Need(const KnownCatalog& catalog) {
    auto& catalogs = m_result.catalogs;
    if (std::find(catalogs.begin(), catalogs.end(), catalog.sName) == catalogs.end()) {
      catalogs.push_back(catalog.sName);
    }
  }

  [[noreturn]] void FailWithoutCatalog(const Chain& chain) const {
    const Text& sTable = Part(chain, 0);
    Fail(chain.parts[0], "The name \"" + sTable + "\" stands without a catalog",
         "write catalog.." + sTable + ", for example Plant1.." + sTable);
  }

  void ResolveTarget() {
    if (!m_tree.target) return;
    const Chain* named = &*m_tree.target;
    // CREATE INDEX: either name may carry the catalog.
    if (m_tree.indexedTable && named->parts.size() < 2) named = &*m_tree.indexedTable;
    if (named->parts.size() < 2) FailWithoutCatalog(*named);
    const KnownCatalog catalog = ResolveCatalog(*named);
    if (!catalog.sReadOnlyAdvice.empty()) {
      Fail(named->parts[0], "The catalog " + catalog.sName + " cannot be changed",
           catalog.sReadOnlyAdvice);
    }
    Need(catalog);
    m_result.changedCatalog = catalog.sName;
    if (m_tree.targetSource != nullptr) {
      const ResolvedTable& resolved = ResolveTable(*m_tree.targetSource, catalog);
      WriteTableName(*m_tree.target, catalog, resolved.table.sName);
    } else {
      WriteDefinedNames(catalog);
    }
    if (m_tree.bView) m_viewCatalog = catalog.sName;
  }

  void WriteDefinedNames(const KnownCatalog& catalog) {
    WriteTableName(*m_tree.target, catalog, NameOfDefined(catalog, *m_tree.target));
    if (!m_tree.indexedTable) return;
    const Chain& indexed = *m_tree.indexedTable;
    if (indexed.parts.size() == 2 && ResolveCatalog(indexed).sName != catalog.sName) {
      Fail(indexed.parts[0], "An index names another catalog than its table",
           "write the catalog once");
    }
    Replace(indexed.range.begin, indexed.range.end,
            QuoteIdentifier(NameOfDefined(catalog, indexed)));
  }

  // A table that exists is known under its prefixed name too; a new name is taken as written.
  Text NameOfDefined(const KnownCatalog& catalog, const Chain& chain) {
    const Text& sName = Part(chain, chain.parts.size() - 1);
    if (!m_settings.bPrefixes) return sName;
    return m_schema.FindTable(catalog, sName) ? sName : WithoutPrefix(sName);
  }

  void WriteTableName(const Chain& chain, const KnownCatalog& catalog, const Text& sTable) {
    Text sName = QuoteIdentifier(sTable);
    // A view is kept with its catalog, which may be reached by any name: no catalog in its text.
    if (!(m_viewCatalog && !IsTarget(chain))) sName = QuoteIdentifier(catalog.sName) + "." + sName;
    Replace(chain.parts.front(), chain.parts[chain.parts.size() - 1] + 1, std::move(sName));
  }

  bool IsTarget(const Chain& chain) const {
    return m_tree.target && m_tree.target->range.begin == chain.range.begin;
  }

  const ResolvedTable& ResolveTable(const Source& source, const KnownCatalog& catalog) {
    const Chain& chain = source.table;
    const std::size_t nName = chain.parts.size() - 1;
    auto table = m_schema.FindTable(catalog, Part(chain, nName));
    if (!table && m_settings.bPrefixes) {
      table = m_schema.FindTable(catalog, WithoutPrefix(Part(chain, nName)));
    }
    if (!table) {
      Fail(chain.parts[nName],
           "There is no table \"" + Part(chain, nName) + "\" in the catalog " + catalog.sName,
           "write the name of one that the catalog lists");
    }
    return m_tables.insert_or_assign(&source, ResolvedTable{catalog, std::move(*table)})
        .first->second;
  }

  void Resolve(Source& source) {
    if (source.query != nullptr || source.bFunction) return;
    if (source.table.parts.size() < 2) {
      if (FindNamedQuery(source) == nullptr) FailWithoutCatalog(source.table);
      return;
    }
    const KnownCatalog catalog = ResolveCatalog(source.table);
    if (m_viewCatalog && *m_viewCatalog != catalog.sName) {
      Fail(source.table.parts[0], "A view reads another catalog than its own",
           "read tables of " + *m_viewCatalog + " only");
    }
    Need(catalog);
    const ResolvedTable& resolved = ResolveTable(source, catalog);
    WriteTableName(source.table, catalog, resolved.table.sName);
  }

  const NamedQuery* FindNamedQuery(const Source& source) const {
    if (source.query != nullptr || source.bFunction || source.table.parts.size() != 1) {
      return nullptr;
    }
    for (const Scope* scope = source.scope; scope != nullptr; scope = scope->parent) {
      for (const auto& named : scope->namedQueries) {
        if (SameName(named.sName, Part(source.table, 0))) return &named;
      }
    }
    return nullptr;
  }

  // --- columns ---

  const std::vector<KnownColumn>& ColumnsOf(const Source& source) {
    if (const auto known = m_columns.find(&source); known != m_columns.end()) {
      return known->second;
    }
    std::vector<KnownColumn> columns;
    if (source.query != nullptr) {
      columns = OutputOf(*source.query);
    } else if (const auto* const named = FindNamedQuery(source)) {
      if (named->query != nullptr) columns = OutputOf(*named->query);
      for (std::size_t i = 0; i < columns.size() && i < named->columns.size(); ++i) {
        columns[i].sName = named->columns[i];
      }
    } else if (const auto table = m_tables.find(&source); table != m_tables.end()) {
      columns = table->second.table.columns;
    }
    return m_columns[&source] = std::move(columns);
  }

  // The names are those of the first SELECT. A query that reads itself sees what its SELECTs
  // before put out.
  std::vector<KnownColumn> OutputOf(const Query& query) {
    const auto [reading, bBegun] = m_reading.try_emplace(&query);
    std::vector<KnownColumn>& columns = reading->second;
    if (!bBegun) return columns;
    for (const auto* const core : query.cores) {
      std::vector<KnownColumn> further;
      for (const auto& item : core->items) AppendItem(item, *core, further);
      if (core == query.cores.front()) {
        columns = std::move(further);
        continue;
      }
      for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i].content =
            Joined(columns[i].content, i < further.size() ? further[i].content : Content::Other);
      }
    }
    auto output = std::move(columns);
    m_reading.erase(&query);
    return output;
  }

  static Content Joined(Content left, Content right) {
    if (left == right || right == Content::Null) return left;
    if (left == Content::Null) return right;
    return Content::Mixed;
  }

  void AppendItem(TokenRange item, const Scope& scope, std::vector<KnownColumn>& columns) {
    if (item.empty()) return;
    if (At(item.begin).IsSymbol("*")) {
      for (const auto* const source : scope.sources) Append(columns, ColumnsOf(*source));
      return;
    }
    const Chain chain = ReadChain(m_tree.tokens, item.begin);
    if (chain.bStar) {
      for (const auto* const source : scope.sources) {
        if (IsQualifier(*source, chain, chain.parts.size())) Append(columns, ColumnsOf(*source));
      }
      return;
    }
    const auto [expression, sAlias] = SplitAlias(item, chain);
    KnownColumn column;
    column.content = ContentOf(expression, &scope);
    if (!sAlias.empty()) {
      column.sName = sAlias;
    } else if (!chain.parts.empty() && chain.range.end == expression.end) {
      column.sName = At(chain.parts.back()).sText;
    }
    columns.push_back(std::move(column));
  }

  static void Append(std::vector<KnownColumn>& to, const std::vector<KnownColumn>& from) {
    to.insert(to.end(), from.begin(), from.end());
  }

  std::pair<TokenRange, Text> SplitAlias(TokenRange item, const Chain& chain) const {
    const std::size_t last = item.end - 1;
    if (last <= item.begin || !At(last).IsIdentifier()) return {item, {}};
    if (At(last - 1).IsWord("AS")) return {{item.begin, last - 1}, At(last).sText};
    const bool bBehindChain = !chain.parts.empty() && chain.range.end == last;
    const bool bBehindWindow = last - item.begin > 2 && At(last - 2).IsWord("OVER");
    if (bBehindChain || bBehindWindow || At(last - 1).IsSymbol(")")) {
      return {{item.begin, last}, At(last).sText};
    }
    return {item, {}};
  }

  // The first nParts names of the chain, read as the name of this source.
  bool IsQualifier(const Source& source, const Chain& chain, std::size_t nParts) const {
    const Text& sName = Part(chain, nParts - 1);
    if (!source.sAlias.empty()) return nParts == 1 && SameName(source.sAlias, sName);
    if (source.query != nullptr) return false;
    const auto table = m_tables.find(&source);
    const Text& sOwn = table != m_tables.end() ? table->second.table.sName
                                               : Part(source.table, source.table.parts.size() - 1);
    return SameName(sOwn, sName) || (m_settings.bPrefixes && SameName(sOwn, WithoutPrefix(sName)));
  }

  const KnownColumn* FindColumn(const Source& source, const Text& sName) {
    for (const auto& column : ColumnsOf(source)) {
      if (SameName(column.sName, sName)) return &column;
    }
    if (!m_settings.bPrefixes) return nullptr;
    for (const auto& column : ColumnsOf(source)) {
      if (SameName(column.sName, WithoutPrefix(sName))) return &column;
    }
    return nullptr;
  }

  const KnownColumn* FindColumn(const Chain& chain, const Scope* scope) {
    const Text& sColumn = Part(chain, chain.parts.size() - 1);
    for (; scope != nullptr; scope = scope->parent) {
      for (const auto* const source : scope->sources) {
        if (chain.parts.size() > 1 && !IsQualifier(*source, chain, chain.parts.size() - 1)) {
          continue;
        }
        if (const auto* const column = FindColumn(*source, sColumn)) return column;
      }
    }
    return nullptr;
  }

  // Of a name that a SELECT gives to one of its own columns.
  Content ContentOfAlias(const Text& sName, const Scope* scope) {
    if (scope == nullptr || !m_readingAliases.insert(scope).second) return Content::Other;
    Content content = Content::Other;
    for (const auto& item : scope->items) {
      const auto [expression, sAlias] = SplitAlias(item, ReadChain(m_tree.tokens, item.begin));
      if (!sAlias.empty() && SameName(sAlias, sName)) content = ContentOf(expression, scope);
    }
    m_readingAliases.erase(scope);
    return content;
  }

  bool HoldsTime(TokenRange range, const Scope* scope) {
    return ContentOf(range, scope) == Content::Time;
  }

  // Time for a column of times, and for a function that picks one of its arguments.
  Content ContentOf(TokenRange range, const Scope* scope) {
    while (!range.empty() && At(range.begin).IsSymbol("(")) {
      if (m_brackets[range.begin] != range.end - 1) return Content::Other;
      range = {range.begin + 1, range.end - 1};
    }
    if (range.empty()) return Content::Other;
    if (range.end - range.begin == 1 && At(range.begin).IsWord("NULL")) return Content::Null;
    const Chain chain = ReadChain(m_tree.tokens, range.begin);
    if (chain.parts.empty() || chain.bStar) return Content::Other;
    if (chain.range.end == range.end) {
      if (const auto* const column = FindColumn(chain, scope)) return column->content;
      return chain.parts.size() == 1 ? ContentOfAlias(Part(chain, 0), scope) : Content::Other;
    }
    return ContentOfCall(range, scope);
  }

  Content ContentOfCall(TokenRange range, const Scope* scope) {
    const std::size_t open = range.begin + 1;
    if (!At(open).IsSymbol("(") || EndOfCall(open) != range.end) return Content::Other;
    TokenRange inner{open + 1, m_brackets[open]};
    if (At(inner.begin).IsWord("DISTINCT") || At(inner.begin).IsWord("ALL")) ++inner.begin;
    auto arguments = SplitAtCommas(m_tree.tokens, m_brackets, inner);
    const auto isOneOf = [&](std::initializer_list<std::string_view> names) {
      return std::any_of(names.begin(), names.end(),
                         [&](std::string_view sName) { return At(range.begin).IsWord(sName); });
    };
    if (isOneOf({"LAG", "LEAD", "NTH_VALUE"})) {
      // The second argument is a number of rows.
      if (arguments.size() > 1) arguments.erase(arguments.begin() + 1);
    } else if (!isOneOf({"MIN", "MAX", "FIRST_VALUE", "LAST_VALUE", "COALESCE", "IFNULL"})) {
      return Content::Other;
    }
    Content content = Content::Null;
    for (const auto& argument : arguments) content = Joined(content, ContentOf(argument, scope));
    // A function has no declared type: what it mixes is a number to the engine.
    return content == Content::Time ? content : Content::Other;
  }

  // Behind the arguments, and behind FILTER and OVER where they follow.
  std::size_t EndOfCall(std::size_t open) const {
    std::size_t end = m_brackets[open] + 1;
    if (At(end).IsWord("FILTER") && At(end + 1).IsSymbol("(")) end = m_brackets[end + 1] + 1;
    if (At(end).IsWord("OVER")) {
      ++end;
      end = At(end).IsSymbol("(") ? m_brackets[end] + 1 : end + 1;
    }
    return end;
  }

  // --- names in expressions ---

  void RewriteReference(const Reference& reference) {
    const Chain& chain = reference.chain;
    const std::size_t nQualifiers = chain.bStar ? chain.parts.size() : chain.parts.size() - 1;
    if (nQualifiers > 2 || (chain.bDoubleDot && nQualifiers < 2)) {
      Fail(chain.range.begin, "A column is not named as it should be",
           "write catalog..table.column, alias.column or column");
    }
    if (nQualifiers == 2) RewriteQualifiers(chain);
    if (!m_settings.bPrefixes) return;
    if (nQualifiers == 1) RewritePrefixedQualifier(chain, reference.scope);
    if (!chain.bStar) RewritePrefixedColumn(chain, reference.scope);
  }

  void RewriteQualifiers(const Chain& chain) {
    const KnownCatalog catalog = ResolveCatalog(chain);
    Text sTable = Part(chain, 1);
    if (m_settings.bPrefixes && !m_schema.FindTable(catalog, sTable))
      sTable = WithoutPrefix(sTable);
    Text sName = QuoteIdentifier(sTable);
    if (!m_viewCatalog) sName = QuoteIdentifier(catalog.sName) + "." + sName;
    Replace(chain.parts[0], chain.parts[1] + 1, std::move(sName));
  }

  void RewritePrefixedQualifier(const Chain& chain, const Scope* scope) {
    for (; scope != nullptr; scope = scope->parent) {
      for (const auto* const source : scope->sources) {
        if (!IsQualifier(*source, chain, 1)) continue;
        const auto table = m_tables.find(source);
        if (source->sAlias.empty() && table != m_tables.end()) {
          Replace(chain.parts[0], chain.parts[0] + 1, QuoteIdentifier(table->second.table.sName));
        }
        return;
      }
    }
  }

  void RewritePrefixedColumn(const Chain& chain, const Scope* scope) {
    const std::size_t token = chain.parts.back();
    if (WithoutPrefix(At(token).sText) == At(token).sText) return;
    if (const auto* const column = FindColumn(chain, scope)) {
      if (!column->sName.empty()) Replace(token, token + 1, QuoteIdentifier(column->sName));
    }
  }

  // --- times ---

  void ReplaceAssignedTimes() {
    if (m_tree.targetSource == nullptr) return;
    const auto& columns = ColumnsOf(*m_tree.targetSource);
    for (const auto& assignment : m_tree.assignments) {
      const KnownColumn* column = nullptr;
      if (m_tree.targetColumns.empty()) {
        if (assignment.column < columns.size()) column = &columns[assignment.column];
      } else if (assignment.column < m_tree.targetColumns.size()) {
        column = FindColumn(*m_tree.targetSource, m_tree.targetColumns[assignment.column]);
      }
      if (column != nullptr && column->content == Content::Time) ReplaceTime(assignment.value);
    }
  }

  void ReplaceTime(TokenRange range) {
    while (!range.empty() && At(range.begin).IsSymbol("(") &&
           m_brackets[range.begin] == range.end - 1) {
      range = {range.begin + 1, range.end - 1};
    }
    const std::size_t nTokens = range.empty() ? 0 : range.end - range.begin;
    const Token& last = nTokens == 0 ? m_tree.tokens.back() : At(range.end - 1);
    if (nTokens == 1 && last.kind == TokenKind::String) {
      Bind(range, ReadTime(range.begin));
    } else if (m_settings.bTimeAsDouble && last.kind == TokenKind::Number &&
               (nTokens == 1 || (nTokens == 2 && (At(range.begin).IsSymbol("-") ||
                                                  At(range.begin).IsSymbol("+"))))) {
      Bind(range, ReadDays(range));
    }
  }

  void Bind(TokenRange range, Timestamp time) {
    if (m_viewCatalog) {
      Fail(range.begin, "A time stands in a view", "compare times in the statements that read it");
    }
    Replace(range.begin, range.end, "?", Value(time));
  }

  Timestamp ReadTime(std::size_t token) const {
    const auto time = ReadTimeExpression(At(token).sText, m_settings.zone, m_settings.now);
    if (const auto* const error = std::get_if<TimeExpressionError>(&time)) {
      Fail(token, "'" + At(token).sText + "' is no time",
           "at its character " + CharacterNumber(At(token).sText, error->position) + " " +
               error->sReason);
    }
    return std::get<Timestamp>(time);
  }

  Timestamp ReadDays(TokenRange range) const {
    const Token& number = At(range.end - 1);
    double dDays = 0;
    const char* const end = number.sText.data() + number.sText.size();
    const auto read = std::from_chars(number.sText.data(), end, dDays);
    const bool bNegative = At(range.begin).IsSymbol("-");
    const auto time = read.ec == std::errc() && read.ptr == end
                          ? m_settings.zone.FromDays(bNegative ? -dDays : dDays)
                          : std::nullopt;
    if (!time) {
      Fail(range.begin, number.sText + " is no time", "write a number of days since 1899-12-30");
    }
    return *time;
  }

  std::string_view m_sStatement;
  SchemaSource& m_schema;
  const TranslationSettings& m_settings;
  StatementTree m_tree;
  std::vector<std::size_t> m_brackets;
  std::optional<Text> m_viewCatalog;
  std::map<const Source*, ResolvedTable> m_tables;
  std::map<const Source*, std::vector<KnownColumn>> m_columns;
  std::map<const Query*, std::vector<KnownColumn>> m_reading;
  std::set<const Scope*> m_readingAliases;
  std::map<std::size_t, Edit> m_edits;  ///< by place in the statement
  Translation m_result;
};

}  // namespace

Text WithoutPrefix(const Text& sName) {
  const std::size_t nPrefix = kIdentifierPrefix.size();
  if (sName.size() > nPrefix && SameName(sName.substr(0, nPrefix), kIdentifierPrefix)) {
    return sName.substr(nPrefix);
  }
  return sName;
}

Translation Translate(std::string_view sStatement, SchemaSource& schema,
                      const TranslationSettings& settings) {
  return Translator(sStatement, schema, settings).Run();
}

}  // namespace orvane::provider::dialect
