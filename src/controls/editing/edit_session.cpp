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

void EditSession::Edit(std::span<const CellEdit> edits) {
  std::set<RowIndex> rows;
  for (const CellEdit& edit : edits) {
    if (CanEdit(edit.row, edit.column)) rows.insert(edit.row);
  }
  const std::vector<RowIndex> touched(rows.begin(), rows.end());
  Change(touched, [&] {
    for (const CellEdit& edit : edits) {
      if (!CanEdit(edit.row, edit.column)) continue;
      while (edit.row >= m_recordset->RecordCount()) m_recordset->AddNew();
      LayOver(edit);
    }
  });
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

std::vector<RowIndex> EditSession::Delete(std::span<const RowIndex> rows) {
  std::vector<RowIndex> deleted;
  if (!m_recordset) return deleted;
  Change(rows, [&] {
    for (const RowIndex row : rows) {
      const bool bNew = m_recordset->StateAt(row) == RowState::New;
      if (!bNew && !m_updatability.bDelete) continue;
      m_recordset->Delete(row);
      if (!bNew) deleted.push_back(row);
    }
  });
  return deleted;
}

void EditSession::Discard(std::span<const RowIndex> rows) {
  if (!m_recordset) return;
  Change(rows, [&] {
    for (const RowIndex row : rows) m_recordset->CancelUpdate(row);
  });
}

void EditSession::Change(std::span<const RowIndex> rows, const std::function<void()>& change) {
  m_notes->steps.Change(*m_recordset, rows, change);
  Follow(rows);
}

void EditSession::Follow(std::span<const RowIndex> rows) {
  for (const RowIndex row : rows) {
    // What was wrong with the row is no longer known of what it is now.
    m_notes->remarks.erase(row);
    m_notes->conflicts.erase(row);
    if (row >= m_recordset->RecordCount()) continue;
    const bool bGone =
        m_recordset->StateAt(row) == RowState::Deleted && !m_recordset->IsPending(row);
    if (bGone) m_notes->gone.insert(row);
  }
  m_changed(rows);
}

std::optional<RowIndex> EditSession::Undo(std::optional<RowIndex> current) {
  if (!m_recordset || !m_notes->steps.CanUndo()) return std::nullopt;
  return FollowStep(m_notes->steps.Undo(*m_recordset), current);
}

std::optional<RowIndex> EditSession::Redo(std::optional<RowIndex> current) {
  if (!m_recordset || !m_notes->steps.CanRedo()) return std::nullopt;
  return FollowStep(m_notes->steps.Redo(*m_recordset), current);
}

// A row of the step that is left would be sent, and could not be taken back with the others.
RowIndex EditSession::FollowStep(std::span<const RowIndex> rows, std::optional<RowIndex> current) {
  Follow(rows);
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
    const platform::DataType type = m_recordset->FieldAt(column).Type();
    const platform::ValueKind kind = KindOf(type);
    const Value vtValue = m_recordset->ValueAt(row, column);
    const Text* sTyped = vtValue.As<Text>();
    // A text in another column is what was typed there and could not be read.
    if (!sTyped || kind == platform::ValueKind::Text || kind == platform::ValueKind::Null) continue;
    try {
      m_input.Read(*sTyped, type);
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
  for (const RowIndex row : rows) m_recordset->Accept(row);
  std::vector<RowIndex> forgotten(rows.begin(), rows.end());
  std::ranges::sort(forgotten);
  m_notes->steps.Forget(forgotten);
  Follow(rows);
}

}  // namespace orvane::controls
