// What views put out, from the statements that made them.
#include <optional>

#include "platform/failure.h"
#include "provider/dialect/statement_reader.h"
#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

const ViewKinds::View& ViewKinds::Of(const FoundTable& found) {
  if (const auto known = m_views.find(&found); known != m_views.end()) return known->second;
  // A view that reads itself, or too many in one another, is told by the engine.
  constexpr int kMostViews = 50;
  static const View kUnknown;
  if (m_nDepth >= kMostViews) return kUnknown;
  ++m_nDepth;
  View view = Read(found);
  --m_nDepth;
  return m_views[&found] = std::move(view);
}

ViewKinds::View ViewKinds::Read(const FoundTable& found) {
  using platform::Failure;
  const platform::Text& sText = found.table.sViewText;
  View view;
  std::optional<StatementTree> tree;
  std::optional<StatementEdits> edits;
  std::optional<TableNames> names;
  try {
    tree = StatementReader(sText, ReadTokens(sText), m_deadline).Read();
    edits.emplace(sText, tree->tokens);
    names.emplace(sText, *tree, m_cache, false, *edits, found.catalog);
    names->Resolve();
  } catch (const Failure& failed) {
    if (failed.Number() != platform::failure::kSqlError) throw;
    // Made by another program in words that are not known here, or over a table that is gone: what
    // it puts out could be anything.
    return view;
  }
  if (tree->mainQuery == nullptr) return view;
  try {
    TimeAnalysis times({sText, *tree, *names, *edits, m_settings, m_deadline, *this, "a view"});
    times.Run();
    for (const auto& column : times.OutputOf(*tree->mainQuery)) view.kinds.push_back(column.kinds);
    view.nSelects = times.SelectsOf(*tree->mainQuery);
  } catch (const Failure& failed) {
    if (failed.Number() != platform::failure::kSqlError) throw;
    view.kinds.clear();
    view.sFailure = failed.Description();
  }
  return view;
}

}  // namespace orvane::provider::dialect
