// Undo and redo of what was edited and not sent yet: for each step what lay over its rows before
// and behind it. Owned by the editing of a grid, and kept with the rows while they are hidden;
// user-interface thread.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/ado/recordset.h"

namespace orvane::controls {

class UndoSteps {
 public:
  /// Steps beyond this number push out the oldest.
  static constexpr std::size_t kMostSteps = 1000;

  /// Runs the change, which touches no other rows than these, and keeps it as one step. A row
  /// behind the last one is one that the change adds. What was undone can no longer be redone. A
  /// change that fails is kept as far as it went.
  void Change(platform::Recordset& rs, std::span<const platform::RowIndex> rows,
              const std::function<void()>& change);

  /// The same of many rows, one after the other, while the window goes on: begins a step, ...
  void Begin() { m_open.emplace(); }
  /// ... takes one more row into it, of a higher number than those before, ...
  void ChangeRow(platform::Recordset& rs, platform::RowIndex row,
                 const std::function<void()>& change);
  /// ... and keeps it, or takes back so many rows of it; true when none is left, and it is none.
  void End();
  bool TakeBack(platform::Recordset& rs, std::size_t nMost);

  bool CanUndo() const { return !m_done.empty(); }
  bool CanRedo() const { return !m_undone.empty(); }
  /// Takes the last step back and gives its rows; of a row that came back the number it has now.
  std::vector<platform::RowIndex> Undo(platform::Recordset& rs);
  std::vector<platform::RowIndex> Redo(platform::Recordset& rs);
  /// The same of many rows: begins with the last step that was done, or undone, of which there is
  /// one; ...
  void BeginMove(bool bUndo);
  /// ... moves so many of its rows; true when none is left; ...
  bool MoveSome(platform::Recordset& rs, std::size_t nMost);
  /// ... turns back: what was moved is to be moved the other way, and nothing else; ...
  void TurnBack();
  /// ... and gives the rows of the step, or of what of it was moved.
  std::vector<platform::RowIndex> EndMove();
  /// Rows of the step that Undo, or Redo, would move.
  std::size_t RowsOfNext(bool bUndo) const;
  /// The rows were stored, or their edits were replaced by others: no step touches them any more.
  /// In ascending order.
  void Forget(std::span<const platform::RowIndex> rows);
  void Clear();

  /// The rows that steps touch, in the order of their numbers.
  std::set<platform::RowIndex> Rows() const;
  /// The steps over other rows: each row and column has its new number. A row without one is
  /// touched by no step then; where a column has none, no step is left.
  UndoSteps Moved(const std::unordered_map<platform::RowIndex, platform::RowIndex>& rows,
                  const std::vector<std::optional<platform::ColumnIndex>>& columns) const;

 private:
  struct Overlay {
    bool bThere = false;  ///< false of a new row that was not added yet, or was taken away
    platform::RowState state = platform::RowState::Fetched;
    std::vector<std::pair<platform::ColumnIndex, platform::Value>> edits;
    friend bool operator==(const Overlay&, const Overlay&) = default;
  };
  struct Overlays {
    Overlay before;
    Overlay behind;
  };
  /// By the row: many rows can be changed at once, and are stored one after the other.
  using Step = std::map<platform::RowIndex, Overlays>;

  static Overlay OverlayOf(const platform::Recordset& rs, platform::RowIndex row);
  /// A step that is being undone or redone; it lies among those that it comes to already.
  struct Moving {
    std::vector<platform::RowIndex> rows;  ///< by the numbers that they have now
    std::size_t nNext;                     ///< the first one that is not moved yet
    bool bUndo;
  };
  std::vector<Step>& Steps(bool bUndone) { return bUndone ? m_undone : m_done; }
  void Push(Step step);
  /// Gives the number that the row has now.
  static platform::RowIndex Lay(platform::Recordset& rs, platform::RowIndex row,
                                const Overlay& overlay);
  /// Rows by their numbers before, in ascending order, with those that they have now.
  void Renumber(std::span<const std::pair<platform::RowIndex, platform::RowIndex>> rows);

  std::optional<Step> m_open;
  std::optional<Moving> m_moving;
  std::vector<Step> m_done;
  std::vector<Step> m_undone;
};

}  // namespace orvane::controls
