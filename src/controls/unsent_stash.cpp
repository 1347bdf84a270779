#include "controls/unsent_stash.h"

#include "ado/recordset_builder.h"
#include "controls/carried_edits.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Recordset;
using platform::RowIndex;
using platform::Text;

void UnsentStash::Tell(const Text& sPlace, const RowTable& table, RowIndex rows) const {
  if (m_host && !sPlace.empty()) m_host->Tell(sPlace, table.sTable, rows);
}

void UnsentStash::Keep(const Text& sPlace, const Recordset& rs, const RowTable& table) {
  const auto pending = rs.PendingRows();
  if (sPlace.empty()) return;
  if (pending.empty()) {
    Drop(sPlace);
  } else {
    // A recordset of this library's own: the provider's may go with its connection.
    std::vector<ado::ColumnDescription> columns;
    for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
      const auto& field = rs.FieldAt(column);
      columns.push_back({field.Name(), field.Type(), field.Nullable()});
    }
    UnsentEdits edits{ado::RecordsetBuilder(std::move(columns)).Finish(), table};
    CarryEdits(rs, table, {}, *edits.rs, table);
    m_kept[sPlace] = {std::move(edits), Round()};
  }
  Tell(sPlace, table, static_cast<RowIndex>(pending.size()));
}

const UnsentEdits* UnsentStash::Find(const Text& sPlace) const {
  const auto found = m_kept.find(sPlace);
  if (found == m_kept.end() || found->second.lRound != Round()) return nullptr;
  return &found->second.edits;
}

}  // namespace orvane::controls
