#include "controls/editing/unsent_stash.h"

#include "ado/recordset_builder.h"
#include "controls/editing/carried_edits.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Recordset;
using platform::RowIndex;
using platform::RowsPlace;

void UnsentStash::Tell(const RowsPlace& place, RowIndex rows) const {
  if (m_host && !place.sTable.empty()) m_host->Tell(place, rows);
}

void UnsentStash::Keep(const RowsPlace& place, const Recordset& rs, const RowTable& table,
                       const EditNotes& notes) {
  const auto pending = rs.PendingRows();
  if (place.sTable.empty()) return;
  if (pending.empty()) {
    Drop(place);
  } else {
    // A recordset of this library's own: the provider's may go with its connection.
    std::vector<ado::ColumnDescription> columns;
    for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
      const auto& field = rs.FieldAt(column);
      columns.push_back({field.Name(), field.Type(), field.Nullable()});
    }
    UnsentEdits edits{ado::RecordsetBuilder(std::move(columns)).Finish(), table};
    edits.notes = KeepEdits(rs, table, notes, *edits.rs);
    m_kept[place] = {std::move(edits), Round(place)};
  }
  Tell(place, static_cast<RowIndex>(pending.size()));
}

const UnsentEdits* UnsentStash::Find(const RowsPlace& place) const {
  const auto found = m_kept.find(place);
  if (found == m_kept.end() || found->second.lRound != Round(place)) return nullptr;
  return &found->second.edits;
}

}  // namespace orvane::controls
