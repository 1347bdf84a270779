// What was edited in rows that are not shown, or not there any more: a disconnection, a lost
// connection or a fresh grid loses no edit. One for the library, which tells the host how many rows
// there are; user-interface thread.
#pragma once

#include <map>
#include <memory>
#include <optional>

#include "controls/editing/carried_edits.h"
#include "platform/unsent_rows.h"

namespace orvane::controls {

/// Rows that are not stored, in a recordset of their own, and of which table they are.
struct UnsentEdits {
  platform::RecordsetPtr rs;
  RowTable table;
  std::shared_ptr<EditNotes> notes = {};  ///< what is known of them
};

class UnsentStash {
 public:
  /// Whom to tell; the last one that was named counts, or nobody.
  void Host(std::shared_ptr<platform::UnsentRows> host) {
    if (host) m_host = std::move(host);
  }
  /// Tells that so many rows of the table are pending in a grid.
  void Tell(const platform::RowsPlace& place, platform::RowIndex rows) const;
  /// Keeps a copy of what lies over the rows and of what is known of them; of rows without edits
  /// nothing, and what was kept of the place goes. Many rows are copied beside the window, where
  /// that is given; then the grid may be gone afterwards.
  void Keep(const platform::RowsPlace& place, const platform::Recordset& rs, const RowTable& table,
            const EditNotes& notes, const Beside& beside = {});
  /// What is kept of the place, or none. Valid until it is kept anew or dropped.
  const UnsentEdits* Find(const platform::RowsPlace& place) const;
  /// What is kept of the place, laid over these rows as CarryEdits does; it is kept on. Fails where
  /// it cannot be laid over them; null where nothing is kept. The grid that asked may be gone
  /// afterwards.
  std::shared_ptr<EditNotes> LaidOver(const platform::RowsPlace& place, platform::Recordset& rs,
                                      const Updatability& updatability, const Waits& waits) const;
  /// The edits have come into a grid.
  void Drop(const platform::RowsPlace& place) { m_kept.erase(place); }
  /// How often what was pending there was given up.
  platform::Long Round(const platform::RowsPlace& place) const {
    return m_host ? m_host->Round(place) : 0;
  }

 private:
  struct Kept {
    UnsentEdits edits;
    platform::Long lRound = 0;
  };

  std::shared_ptr<platform::UnsentRows> m_host;
  std::map<platform::RowsPlace, Kept> m_kept;
};

}  // namespace orvane::controls
