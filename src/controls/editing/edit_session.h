// The editing of one recordset: what may be changed, every change as a step that can be undone, and
// what is known of rows that could not be stored. It lays values over the rows and sends nothing.
// Owned by the editing of a grid, and asked by the row model; user-interface thread.
#pragma once

#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <vector>

#include "controls/editing/undo_steps.h"
#include "controls/editing/waits.h"
#include "controls/statements/row_conflict.h"
#include "controls/statements/updatability.h"
#include "controls/values/value_input.h"
#include "controls/view/row_editing.h"

namespace orvane::controls {

/// What is known of pending rows beside what lies over them; it goes with the rows while they are
/// hidden.
struct EditNotes {
  UndoSteps steps;
  std::map<platform::RowIndex, QString> remarks;  ///< why a row was not stored, as a sentence
  std::map<platform::RowIndex, RowConflict> conflicts;
  std::set<platform::RowIndex> gone;  ///< deleted for good, or never to be added
};

/// A value for one cell.
struct CellEdit {
  platform::RowIndex row = 0;
  platform::ColumnIndex column = 0;
  platform::Value vtValue;
};

class EditSession final : public RowEditing {
 public:
  /// Called with the rows that look different now; some of them may have been added, or have gone.
  using ChangedHandler = std::function<void(std::span<const platform::RowIndex> rows)>;

  explicit EditSession(ChangedHandler changed) : m_changed(std::move(changed)) {}
  /// How many cells or rows are changed while the window goes on; without it they are at once.
  void InSlices(Slices slices) { m_slices = std::move(slices); }

  /// Takes the rows over; without notes they are as they were fetched.
  void Show(platform::RecordsetPtr rs, Updatability updatability, ValueInput input,
            std::shared_ptr<EditNotes> notes);
  void ShowNothing();
  const platform::RecordsetPtr& Recordset() const { return m_recordset; }
  const controls::Updatability& Updatability() const { return m_updatability; }
  const ValueInput& Input() const { return m_input; }
  const std::shared_ptr<EditNotes>& Notes() const { return m_notes; }

  bool CanEdit(platform::RowIndex row, platform::ColumnIndex column) const override;
  /// Why no value of the column can be edited, as a sentence; empty when that is not so.
  QString WhyNotEdited(platform::ColumnIndex column) const;
  /// The same of one cell.
  QString WhyNotEdited(platform::RowIndex row, platform::ColumnIndex column) const;
  /// A value equal to the one fetched takes the edit away.
  void Edit(platform::RowIndex row, platform::ColumnIndex column,
            const platform::Value& vtValue) override;
  void TakeTyped() override {
    if (m_takeTyped) m_takeTyped();
  }
  /// Called when that is to happen; the session knows no editors.
  void OnTakeTyped(std::function<void()> handler) { m_takeTyped = std::move(handler); }
  bool OffersNewRow() const override;
  const std::set<platform::RowIndex>& GoneRows() const override;
  QString RemarkOf(platform::RowIndex row) const override;

  /// Lays all of the values as one step; rows behind the last one are added. Cells that cannot be
  /// edited are left out. False where that was cancelled: then nothing is changed. Of many cells
  /// the grid, and with it the session, may be gone afterwards.
  bool Edit(std::span<const CellEdit> edits);
  /// Marks the rows as ones to be deleted, as one step; new ones go at once. Gives those that are
  /// to be sent; none where that was cancelled: then nothing is changed. Of many rows the grid may
  /// be gone afterwards.
  std::optional<std::vector<platform::RowIndex>> Delete(std::span<const platform::RowIndex> rows);
  /// Takes away all that lies over the rows, as Edit lays values over them.
  bool Discard(std::span<const platform::RowIndex> rows);
  /// Give a row to go to, none when there was nothing to take back: the current one where it is
  /// among those that changed. None, too, where it was cancelled: then nothing is changed; and of
  /// many rows the grid may be gone afterwards.
  std::optional<platform::RowIndex> Undo(std::optional<platform::RowIndex> current = {});
  std::optional<platform::RowIndex> Redo(std::optional<platform::RowIndex> current = {});

  std::vector<platform::RowIndex> Pending() const;
  bool IsPending(platform::RowIndex row) const {
    return m_recordset && row < m_recordset->RecordCount() && m_recordset->IsPending(row);
  }
  platform::RowIndex PendingCount() const { return m_recordset ? m_recordset->PendingCount() : 0; }
  /// Expires with the session.
  std::weak_ptr<void> Life() const { return m_life; }
  /// Why the row is not fit to be sent, as a sentence: a text that was typed is no value of its
  /// column. Empty when nothing of that kind is wrong.
  QString WhyNotFit(platform::RowIndex row) const;
  /// Keeps the sentence with the row; an empty one takes it away.
  void Remark(platform::RowIndex row, const QString& sSentence);
  void Remark(std::span<const platform::RowIndex> rows, const QString& sSentence);
  /// Somebody else has changed the row: its sentence becomes the row's remark.
  void Conflict(platform::RowIndex row, RowConflict conflict);
  /// Null when there is none; valid until the row changes.
  const RowConflict* ConflictOf(platform::RowIndex row) const;
  /// Takes theirs for what was fetched, with mine laid over these columns. A row that is gone is
  /// dropped; one that was to be deleted is so when bDelete says it again.
  void Settle(platform::RowIndex row, std::span<const platform::ColumnIndex> mine, bool bDelete);
  /// The row was stored: nothing of it is pending, and no step touches it any more.
  void Stored(platform::RowIndex row, std::span<const platform::Value> stored);
  /// The rows were deleted. Of many the grid may be gone afterwards.
  void Deleted(std::span<const platform::RowIndex> rows);

 private:
  /// Makes one step of what the slices change, of so many things; `rows` has those that they have
  /// come to. False where it was cancelled, and is taken back, or the grid has gone.
  bool Change(std::size_t nThings, const char* sWhat, const std::vector<platform::RowIndex>& rows,
              const std::function<bool()>& slice);
  /// The same of rows, each changed by itself.
  bool ChangeRows(std::vector<platform::RowIndex> rows, const char* sWhat,
                  const std::function<void(platform::RowIndex)>& change);
  void LayOver(const CellEdit& edit);
  /// The edits of one row, none of which may be refused any more.
  void LayRow(std::span<const CellEdit* const> edits);
  /// False where it was cancelled. Of few things it is not asked.
  bool RunSlices(std::size_t nThings, const char* sWhat, const std::function<bool()>& slice) const;
  /// The same, but not to be cancelled.
  void RunAllSlices(std::size_t nThings, const char* sWhat,
                    const std::function<bool()>& slice) const;
  std::optional<platform::RowIndex> Move(bool bUndo, std::optional<platform::RowIndex> current);
  /// What was known of the rows as they were is no more; those that have gone are noted.
  void Forget(std::span<const platform::RowIndex> rows);
  void NoteGone(std::span<const platform::RowIndex> rows);
  void Follow(std::span<const platform::RowIndex> rows);

  std::shared_ptr<char> m_life = std::make_shared<char>();
  ChangedHandler m_changed;
  std::function<void()> m_takeTyped;
  Slices m_slices;
  platform::RecordsetPtr m_recordset;
  controls::Updatability m_updatability;
  ValueInput m_input;
  std::shared_ptr<EditNotes> m_notes;
};

}  // namespace orvane::controls
