// What views put out, and what tables compute, from the statements that made them.
#include <optional>

#include "platform/failure.h"
#include "provider/dialect/refused_names.h"
#include "provider/dialect/statement_reader.h"
#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

using platform::Failure;
using platform::Text;

// A statement that is kept, read anew.
struct ViewKinds::Definition {
  StatementTree tree;
  std::optional<StatementEdits> edits{};
  std::optional<TableNames> names{};
};

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

// None when it was made by another program in words that are not known here, or over a table that
// is gone: what it holds could be anything.
std::unique_ptr<ViewKinds::Definition> ViewKinds::ReadDefinition(const FoundTable& found) {
  const Text& sText = found.table.sDefinition;
  try {
    auto tokens = ReadTokens(sText, m_work);
    RefuseNames(sText, tokens, m_settings.refusedNames, m_work);
    auto read = std::make_unique<Definition>(
        Definition{StatementReader(sText, std::move(tokens), m_work).Read()});
    read->edits.emplace(sText, read->tree.tokens);
    read->names.emplace(sText, read->tree, m_cache, false, *read->edits, found.catalog);
    read->names->Resolve();
    return read;
  } catch (const Failure& failed) {
    if (failed.Number() != platform::failure::kSqlError) throw;
    return nullptr;
  }
}

ViewKinds::View ViewKinds::Read(const FoundTable& found) {
  View view;
  const auto read = ReadDefinition(found);
  if (!read || read->tree.mainQuery == nullptr) return view;
  try {
    TimeAnalysis times({found.table.sDefinition, read->tree, *read->names, *read->edits, m_settings,
                        m_work, *this, "a view", true});
    times.Run();
    for (const auto& column : times.OutputOf(*read->tree.mainQuery)) {
      view.kinds.push_back(column.kinds);
      view.shapes.push_back(column.sShape);
    }
    view.nSelects = times.SelectsOf(*read->tree.mainQuery);
    view.relied = times.ReliesOn();
    view.shown = times.Shows(*read->tree.mainQuery);
  } catch (const Failure& failed) {
    if (failed.Number() != platform::failure::kSqlError) throw;
    view.kinds.clear();
    view.sFailure = failed.Description();
    // It ends another sentence.
    if (view.sFailure.ends_with('.')) view.sFailure.pop_back();
  }
  return view;
}

const ViewKinds::ComputedColumns& ViewKinds::Computed(const FoundTable& found) {
  const auto [known, bNew] = m_computed.try_emplace(&found);
  if (!bNew) return known->second;
  if (const auto read = ReadDefinition(found)) {
    TimeAnalysis times({found.table.sDefinition, read->tree, *read->names, *read->edits, m_settings,
                        m_work, *this, "the definition of a table", true});
    known->second = times.Computed();
  }
  return known->second;
}

}  // namespace orvane::provider::dialect
