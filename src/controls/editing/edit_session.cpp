#include "controls/editing/edit_session.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::RecordsetPtr;
using platform::RowIndex;
using platform::RowState;
using platform::Text;
using platform::Value;

void EditSession::Show(RecordsetPtr rs, controls::Updatability updatability, ValueInput input,
                       std::shared_ptr<EditNotes> notes) {
  m_recordset = std::move(rs);
  m_updatability = std::move(updatability);
  m_input = std::move(input);
  m_notes = notes ? std::move(notes) : std::make_shared<EditNotes>();
}

void EditSession::ShowNothing() {
  Show({}, {}, ValueInput(), {});
}

bool EditSession::CanEdit(RowIndex row, ColumnIndex column) const {
  if (!m_recordset || column < 0 || column >= m_recordset->FieldCount()) return false;
  if (m_updatability.table.NameOf(*m_recordset, column).empty()) return false;
  if (m_updatability.computed.contains(column)) return false;
  if (row >= m_recordset->RecordCount()) return OffersNewRow();
  switch (m_recordset->StateAt(row)) {
    case RowState::New:
      return m_updatability.bInsert;
    case RowState::Fetched:
    case RowState::Edited:
      return m_updatability.bUpdate;
    case RowState::Deleted:
      break;
  }
  return false;
}

QString EditSession::WhyNotEdited(ColumnIndex column) const {
  if (!m_recordset) return {};
  if (!m_updatability.bUpdate) return m_updatability.sWhyNot;
  if (column < 0 || column >= m_recordset->FieldCount()) return {};
  if (m_updatability.table.NameOf(*m_recordset, column).empty()) {
    return QStringLiteral(
        "This value cannot be edited: the query works it out, or shows the column twice.");
  }
  if (!m_updatability.computed.contains(column)) return {};
  return QStringLiteral(
             "\"%1\" takes no value, as the table computes it from other columns; change those.")
      .arg(QString::fromStdString(m_recordset->FieldAt(column).Name()));
}

QString EditSession::WhyNotEdited(RowIndex row, ColumnIndex column) const {
  if (m_recordset && row >= 0 && row < m_recordset->RecordCount() && m_updatability.bUpdate &&
      m_recordset->StateAt(row) == RowState::Deleted) {
    return QStringLiteral(
        "The row is deleted and takes no values: discard the deletion, or edit another row.");
  }
  return WhyNotEdited(column);
}

bool EditSession::OffersNewRow() const {
  return m_recordset && m_updatability.bInsert &&
         m_recordset->State() != platform::FetchState::Running;
}

const std::set<RowIndex>& EditSession::GoneRows() const {
  static const std::set<RowIndex> kNone;
  return m_notes ? m_notes->gone : kNone;
}

QString EditSession::RemarkOf(RowIndex row) const {
  if (!m_notes) return {};
  const auto found = m_notes->remarks.find(row);
  return found == m_notes->remarks.end() ? QString() : found->second;
}

void EditSession::Edit(RowIndex row, ColumnIndex column, const Value& vtValue) {
  const CellEdit edit{row, column, vtValue};
  Edit(std::span(&edit, 1));
}

bool EditSession::Edit(std::span<const CellEdit> edits) {
  std::vector<const CellEdit*> ordered;
  for (const CellEdit& edit : edits) {
    if (CanEdit(edit.row, edit.column)) ordered.push_back(&edit);
  }
  std::ranges::stable_sort(ordered, {}, &CellEdit::row);
  std::vector<RowIndex> rows;
  std::size_t nNext = 0;
  const auto layNext = [&] {
    std::size_t nEnd = nNext + 1;
    while (nEnd < ordered.size() && ordered[nEnd]->row == ordered[nNext]->row) ++nEnd;
    const std::span<const CellEdit* const> ofRow(&ordered[nNext], nEnd - nNext);
    nNext = nEnd;
    rows.push_back(ofRow.front()->row);
    m_notes->steps.ChangeRow(*m_recordset, rows.back(), [&] { LayRow(ofRow); });
  };
  return Change(ordered.size(), "Changing cells", rows, [&] {
    const std::size_t nEnd = std::min(ordered.size(), nNext + kInSlice);
    while (nNext < nEnd) layNext();
    return nNext == ordered.size();
  });
}

bool EditSession::Change(std::size_t nThings, const char* sWhat, const std::vector<RowIndex>& rows,
                         const std::function<bool()>& slice) {
  if (nThings == 0) {
    Follow(rows);
    return true;
  }
  const RecordsetPtr rs = m_recordset;
  const auto notes = m_notes;
  const std::weak_ptr<void> life = m_life;
  const auto isOver = [&] { return life.expired() || m_recordset != rs; };
  notes->steps.Begin();
  bool bDone = false;
  try {
    bDone = RunSlices(nThings, sWhat, [&] { return isOver() || slice(); });
  } catch (...) {
    notes->steps.End();
    if (!isOver()) Follow(rows);
    throw;
  }
  if (isOver()) return false;
  if (bDone) {
    notes->steps.End();
    Follow(rows);
    return true;
  }
  RunAllSlices(rows.size(), "Taking back what was changed",
               [&] { return isOver() || notes->steps.TakeBack(*rs, kInSlice); });
  if (isOver()) return false;
  // What was known of the rows holds on, save that new ones have come back as others.
  NoteGone(rows);
  m_changed(rows);
  return false;
}

bool EditSession::ChangeRows(std::vector<RowIndex> rows, const char* sWhat,
                             const std::function<void(RowIndex)>& change) {
  // A step takes its rows in the order of their numbers.
  std::ranges::sort(rows);
  std::vector<RowIndex> changed;
  return Change(rows.size(), sWhat, changed, [&] {
    const std::size_t nEnd = std::min(rows.size(), changed.size() + kInSlice);
    while (changed.size() < nEnd) {
      const RowIndex row = rows[changed.size()];
      changed.push_back(row);
      m_notes->steps.ChangeRow(*m_recordset, row, [&] { change(row); });
    }
    return changed.size() == rows.size();
  });
}

void EditSession::LayRow(std::span<const CellEdit* const> edits) {
  while (edits.front()->row >= m_recordset->RecordCount()) m_recordset->AddNew();
  for (const CellEdit* edit : edits) {
    if (CanEdit(edit->row, edit->column)) LayOver(*edit);
  }
}

bool EditSession::RunSlices(std::size_t nThings, const char* sWhat,
                            const std::function<bool()>& slice) const {
  // It may go with the session while it runs.
  const Slices slices = m_slices;
  if (slices && nThings > kInSlice) return slices(sWhat, slice);
  while (!slice()) {
  }
  return true;
}

void EditSession::RunAllSlices(std::size_t nThings, const char* sWhat,
                               const std::function<bool()>& slice) const {
  if (RunSlices(nThings, sWhat, slice)) return;
  while (!slice()) {
  }
}

void EditSession::LayOver(const CellEdit& edit) {
  const bool bAsFetched = m_recordset->StateAt(edit.row) != RowState::New &&
                          SameValue(m_recordset->OriginalAt(edit.row, edit.column), edit.vtValue);
  if (bAsFetched) {
    m_recordset->Restore(edit.row, edit.column);
  } else {
    m_recordset->ValueAt(edit.row, edit.column, edit.vtValue);
  }
}

std::optional<std::vector<RowIndex>> EditSession::Delete(std::span<const RowIndex> rows) {
  std::vector<RowIndex> deleted;
  if (!m_recordset) return deleted;
  const bool bDone = ChangeRows({rows.begin(), rows.end()}, "Marking rows", [&](RowIndex row) {
    const bool bNew = m_recordset->StateAt(row) == RowState::New;
    if (!bNew && !m_updatability.bDelete) return;
    m_recordset->Delete(row);
    if (!bNew) deleted.push_back(row);
  });
  return bDone ? std::optional(std::move(deleted)) : std::nullopt;
}

bool EditSession::Discard(std::span<const RowIndex> rows) {
  if (!m_recordset) return true;
  return ChangeRows({rows.begin(), rows.end()}, "Discarding changes",
                    [this](RowIndex row) { m_recordset->CancelUpdate(row); });
}

void EditSession::Forget(std::span<const RowIndex> rows) {
  for (const RowIndex row : rows) {
    m_notes->remarks.erase(row);
    m_notes->conflicts.erase(row);
  }
  NoteGone(rows);
}

void EditSession::NoteGone(std::span<const RowIndex> rows) {
  for (const RowIndex row : rows) {
    if (row >= m_recordset->RecordCount()) continue;
    const bool bGone =
        m_recordset->StateAt(row) == RowState::Deleted && !m_recordset->IsPending(row);
    if (bGone) m_notes->gone.insert(row);
  }
}

void EditSession::Follow(std::span<const RowIndex> rows) {
  Forget(rows);
  m_changed(rows);
}

std::optional<RowIndex> EditSession::Undo(std::optional<RowIndex> current) {
  if (!m_recordset || !m_notes->steps.CanUndo()) return std::nullopt;
  return Move(true, current);
}

std::optional<RowIndex> EditSession::Redo(std::optional<RowIndex> current) {
  if (!m_recordset || !m_notes->steps.CanRedo()) return std::nullopt;
  return Move(false, current);
}

std::optional<RowIndex> EditSession::Move(bool bUndo, std::optional<RowIndex> current) {
  const RecordsetPtr rs = m_recordset;
  const auto notes = m_notes;
  const std::weak_ptr<void> life = m_life;
  const auto isOver = [&] { return life.expired() || m_recordset != rs; };
  const std::size_t nRows = notes->steps.RowsOfNext(bUndo);
  const auto slice = [&] { return isOver() || notes->steps.MoveSome(*rs, kInSlice); };
  notes->steps.BeginMove(bUndo);
  const bool bDone = RunSlices(nRows, bUndo ? "Undoing changes" : "Redoing changes", slice);
  if (!isOver() && !bDone) {
    notes->steps.TurnBack();
    RunAllSlices(nRows, "Taking back what was changed", slice);
  }
  const std::vector<RowIndex> rows = notes->steps.EndMove();
  if (isOver()) return std::nullopt;
  Follow(rows);
  if (!bDone || rows.empty()) return std::nullopt;
  // A row of the step that is left would be sent, and could not be taken back with the others.
  const bool bStays = current && std::ranges::find(rows, *current) != rows.end();
  return bStays ? *current : rows.front();
}

std::vector<RowIndex> EditSession::Pending() const {
  return m_recordset ? m_recordset->PendingRows() : std::vector<RowIndex>();
}

QString EditSession::WhyNotFit(RowIndex row) const {
  if (m_recordset->StateAt(row) == RowState::Deleted) return {};
  for (ColumnIndex column = 0; column < m_recordset->FieldCount(); ++column) {
    if (!m_recordset->IsEdited(row, column)) continue;
    const ColumnTakes takes(m_recordset->FieldAt(column));
    const platform::ValueKind kind = KindOf(takes.type);
    const Value vtValue = m_recordset->ValueAt(row, column);
    const Text* sTyped = vtValue.As<Text>();
    // A text in another column is what was typed there and could not be read.
    if (!sTyped || kind == platform::ValueKind::Text || kind == platform::ValueKind::Null) continue;
    try {
      m_input.Read(*sTyped, takes);
    } catch (const platform::Failure& failure) {
      return QString::fromStdString(m_recordset->FieldAt(column).Name() + ": " +
                                    failure.Description());
    }
  }
  return {};
}

void EditSession::Remark(RowIndex row, const QString& sSentence) {
  const RowIndex rows[] = {row};
  Remark(rows, sSentence);
}

void EditSession::Remark(std::span<const RowIndex> rows, const QString& sSentence) {
  for (const RowIndex row : rows) {
    if (sSentence.isEmpty()) {
      m_notes->remarks.erase(row);
    } else {
      m_notes->remarks[row] = sSentence;
    }
  }
  m_changed(rows);
}

void EditSession::Conflict(RowIndex row, RowConflict conflict) {
  const QString sSentence = QString::fromStdString(conflict.sSentence);
  m_notes->conflicts[row] = std::move(conflict);
  Remark(row, sSentence);
}

const RowConflict* EditSession::ConflictOf(RowIndex row) const {
  const auto found = m_notes->conflicts.find(row);
  return found == m_notes->conflicts.end() ? nullptr : &found->second;
}

void EditSession::Settle(RowIndex row, std::span<const ColumnIndex> mine, bool bDelete) {
  const RowConflict* conflict = ConflictOf(row);
  if (!conflict) return;
  controls::Settle(*m_recordset, row, RowConflict(*conflict), mine, bDelete);
  const RowIndex rows[] = {row};
  m_notes->steps.Forget(rows);
  Follow(rows);
}

void EditSession::Stored(RowIndex row, std::span<const Value> stored) {
  m_recordset->Accept(row, stored);
  const RowIndex rows[] = {row};
  m_notes->steps.Forget(rows);
  Follow(rows);
}

void EditSession::Deleted(std::span<const RowIndex> rows) {
  const RecordsetPtr rs = m_recordset;
  const std::weak_ptr<void> life = m_life;
  const auto isOver = [&] { return life.expired() || m_recordset != rs; };
  std::vector<RowIndex> ordered(rows.begin(), rows.end());
  std::ranges::sort(ordered);
  std::size_t nNext = 0;
  const auto slice = [&] {
    if (isOver()) return true;
    const auto next = std::span<const RowIndex>(ordered).subspan(
        nNext, std::min(kInSlice, ordered.size() - nNext));
    nNext += next.size();
    for (const RowIndex row : next) rs->Accept(row);
    m_notes->steps.Forget(next);
    Forget(next);
    return nNext == ordered.size();
  };
  RunAllSlices(ordered.size(), "Taking the deleted rows out", slice);
  if (!isOver()) m_changed(ordered);
}

}  // namespace orvane::controls
