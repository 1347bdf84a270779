#include "console/document/unsent_rows.h"

#include "platform/quoting.h"

namespace orvane::console {

using platform::RowIndex;
using platform::Text;

void UnsentRows::Tell(const Text& sPlace, const Text& sTable, RowIndex rows) {
  if (rows == 0) {
    m_tables.erase(sPlace);
  } else {
    m_tables[sPlace] = {sTable, rows};
  }
}

Text UnsentRows::Sentence() const {
  RowIndex rows = 0;
  for (const auto& [sPlace, table] : m_tables) rows += table.second;
  const Text sRows = rows == 1 ? "1 row" : std::to_string(rows) + " rows";
  const Text sWhere = m_tables.size() == 1
                          ? "the table " + platform::InQuotes(m_tables.begin()->second.first)
                          : std::to_string(m_tables.size()) + " tables";
  return sRows + " of " + sWhere + (rows == 1 ? " is" : " are") + " not stored.";
}

void UnsentRows::Drop() {
  m_tables.clear();
  ++m_lRound;
}

}  // namespace orvane::console
