#include "console/document/unsent_rows.h"

#include <set>

#include "platform/case_folding.h"
#include "platform/quoting.h"

namespace orvane::console {

using platform::RowIndex;
using platform::RowsPlace;
using platform::Text;

namespace {

/// Names of servers, catalogs and tables are the same in any case.
RowsPlace Folded(const RowsPlace& place) {
  return {platform::FoldCase(place.sServer), platform::FoldCase(place.sCatalog),
          platform::FoldCase(place.sTable), platform::FoldCase(place.sQuery)};
}

/// Both folded.
bool LiesIn(const RowsPlace& inner, const RowsPlace& outer) {
  return (outer.sServer.empty() || inner.sServer == outer.sServer) &&
         (outer.sCatalog.empty() || inner.sCatalog == outer.sCatalog) &&
         (outer.sTable.empty() || inner.sTable == outer.sTable) &&
         (outer.sQuery.empty() || inner.sQuery == outer.sQuery);
}

}  // namespace

void UnsentRows::Tell(const RowsPlace& table, RowIndex rows) {
  if (rows == 0) {
    m_tables.erase(Folded(table));
  } else {
    m_tables[Folded(table)] = {table.sTable, rows};
  }
}

platform::Long UnsentRows::Round(const RowsPlace& table) const {
  platform::Long lRound = 0;
  for (const auto& [place, lTimes] : m_lost) {
    if (LiesIn(Folded(table), place)) lRound += lTimes;
  }
  return lRound;
}

Text UnsentRows::Sentence(const RowsPlace& place) const {
  RowIndex rows = 0;
  Text sTable;
  std::set<RowsPlace> tables;
  for (const auto& [table, unsent] : m_tables) {
    if (!LiesIn(table, Folded(place))) continue;
    rows += unsent.rows;
    sTable = unsent.sTable;
    tables.insert({table.sServer, table.sCatalog, table.sTable});
  }
  if (rows == 0) return {};
  const Text sRows = rows == 1 ? "1 row" : std::to_string(rows) + " rows";
  const Text sWhere = tables.size() == 1 ? "the table " + platform::InQuotes(sTable)
                                         : std::to_string(tables.size()) + " tables";
  return sRows + " of " + sWhere + (rows == 1 ? " is" : " are") + " not stored.";
}

platform::Boolean UnsentRows::MayLose(const RowsPlace& place) {
  const Text sSentence = Sentence(place);
  return sSentence.empty() || m_ask(sSentence);
}

void UnsentRows::Lose(const RowsPlace& place) {
  std::erase_if(m_tables, [&](const auto& table) { return LiesIn(table.first, Folded(place)); });
  ++m_lost[Folded(place)];
}

}  // namespace orvane::console
