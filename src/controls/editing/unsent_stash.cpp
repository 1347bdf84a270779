#include "controls/editing/unsent_stash.h"

#include "ado/recordset_builder.h"
#include "platform/failure.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Recordset;
using platform::RowIndex;
using platform::RowsPlace;

void UnsentStash::Tell(const RowsPlace& place, RowIndex rows) const {
  if (m_host && !place.sTable.empty()) m_host->Tell(place, rows);
}

void UnsentStash::Keep(const RowsPlace& place, const Recordset& rs, const RowTable& table,
                       const EditNotes& notes, const Beside& beside) {
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
    const auto keep = [&](const std::stop_token&) {
      edits.notes = KeepEdits(rs, table, notes, *edits.rs);
    };
    if (beside && pending.size() > kInSlice) {
      beside(keep);
    } else {
      keep({});
    }
    m_kept[place] = {std::move(edits), Round(place)};
  }
  Tell(place, static_cast<RowIndex>(pending.size()));
}

const UnsentEdits* UnsentStash::Find(const RowsPlace& place) const {
  const auto found = m_kept.find(place);
  if (found == m_kept.end() || found->second.lRound != Round(place)) return nullptr;
  return &found->second.edits;
}

std::shared_ptr<EditNotes> UnsentStash::LaidOver(const RowsPlace& place, Recordset& rs,
                                                 const Updatability& updatability,
                                                 const Waits& waits) const {
  const UnsentEdits* found = Find(place);
  if (!found) return nullptr;
  // It may be kept anew, or this may go, while the rows are looked through.
  const UnsentEdits kept = *found;
  if (CanCarryEdits(*kept.rs, kept.table, rs, updatability.table)) {
    return CarryEdits(*kept.rs, kept.table, *kept.notes, rs, updatability.table, waits);
  }
  // Where no row can be edited at all, it is not for the edited columns.
  const platform::Text sWhyNot = updatability.sWhyNot.toStdString();
  if (!updatability.bUpdate && !sWhyNot.empty()) {
    throw platform::Failure(platform::failure::kNotSupported,
                            "Rows of this table were edited and are not stored, and cannot be laid "
                            "over those that would be shown; disconnecting its server discards "
                            "them. " +
                                sWhyNot);
  }
  throw platform::Failure(platform::failure::kNotSupported,
                          "Rows of this table were edited and are not stored, in columns that "
                          "would not be shown; take these columns and the key into its query "
                          "again, or disconnect its server to discard them.");
}

}  // namespace orvane::controls
