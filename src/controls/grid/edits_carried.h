// What is not stored, and what can be undone, when a grid exchanges its rows: kept while there are
// none, and laid over those that come. It waits as the grid's statements do. Owned by the grid's
// core; user-interface thread.
#pragma once

#include <memory>

#include "controls/editing/unsent_stash.h"
#include "controls/grid/grid_statements.h"
#include "controls/order/rows_states.h"

namespace orvane::controls {

class EditsCarried {
 public:
  EditsCarried(const GridStatements& statements, std::shared_ptr<UnsentStash> unsent)
      : m_statements(statements), m_unsent(std::move(unsent)) {}

  /// How much work with rows is waited for; what is done on another thread under this name. Good
  /// also when the grid has gone.
  Waits WaitsFor(const char* sWhat) const;

  /// Keeps what lies over the rows of the session; with bWait many of them while the window goes
  /// on, and the grid may be gone afterwards.
  void Keep(const platform::RowsPlace& place, const EditSession& session, bool bWait) const;

  /// What is not stored of the rows before, or where there were none, what was kept of the place,
  /// laid over these. Fails where that cannot be, and where it was cancelled. The grid may be gone
  /// afterwards.
  std::shared_ptr<EditNotes> LaidOver(const platform::RecordsetPtr& before, const RowsState& state,
                                      const platform::RowsPlace& place, platform::Recordset& rs,
                                      const Updatability& updatability) const;

  /// What can be undone and redone of the rows of the session, for others without edits. It gives
  /// way to the user, and fails with failure::kCancelled then. The grid may be gone afterwards.
  std::shared_ptr<EditNotes> Steps(const EditSession& session, platform::Recordset& rs,
                                   const Updatability& updatability) const;

 private:
  const GridStatements& m_statements;
  std::shared_ptr<UnsentStash> m_unsent;
};

}  // namespace orvane::controls
