#include "controls/grid/row_questions.h"

#include <QItemSelectionModel>
#include <QPushButton>
#include <set>
#include <utility>

#include "controls/editing/conflict_dialog.h"
#include "controls/editing/pending_review.h"
#include "controls/grid/grid_window.h"
#include "controls/values/tip_text.h"
#include "controls/view/status_strip.h"
#include "widgets/message_box.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::RecordsetPtr;
using platform::RowIndex;
using platform::RowState;

namespace {

/// The row by its key as it was fetched: "Tag: TIC201.PV, Timestamp: 2026-05-31 12:00:00".
QString KeyText(const EditSession& session, RowIndex row, const CellFormat& format) {
  const platform::Recordset& rs = *session.Recordset();
  QStringList parts;
  for (const ColumnIndex column : session.Updatability().table.key) {
    parts << QString::fromStdString(rs.FieldAt(column).Name()) + QStringLiteral(": ") +
                 Brief(format.Shown(rs.OriginalAt(row, column)));
  }
  return parts.join(QStringLiteral(", "));
}

}  // namespace

RowQuestions::RowQuestions(GridWindow& window, EditSession& session, Actions actions,
                           QObject* parent)
    : QObject(parent), m_window(window), m_session(session), m_actions(std::move(actions)) {}

void RowQuestions::AskToSettle(RowIndex row) {
  const RowConflict* conflict = m_session.ConflictOf(row);
  // One question at a time; the others wait in the list.
  if (!conflict || m_window.findChild<ConflictDialog*>()) return;
  const RecordsetPtr rs = m_session.Recordset();
  const CellFormat& format = m_window.Rows().Model().Format();
  auto* dialog = new ConflictDialog(*conflict, *rs, rs->StateAt(row) == RowState::Deleted,
                                    KeyText(m_session, row, format), format, &m_window);
  dialog->OfferNewRow(m_session.OffersNewRow());
  connect(dialog, &QDialog::finished, this, [this, dialog, rs, row](int nAnswer) {
    if (nAnswer == ConflictDialog::kLater || m_session.Recordset() != rs) return;
    const RowConflict* settled = m_session.ConflictOf(row);
    const bool bGone = settled && settled->IsGone();
    if (nAnswer == ConflictDialog::kAddAsNew) {
      AddAsNew(row);
    } else {
      m_session.Settle(row, dialog->Mine(), nAnswer == ConflictDialog::kDelete);
    }
    m_actions.leave(row);
    if (m_review) m_review->Refresh();
    // Whoever hears of it may be the end of the grid.
    const auto deleted = m_actions.deleted;
    if (bGone) deleted();
  });
  dialog->open();
}

void RowQuestions::AddAsNew(RowIndex row) {
  // The row that is gone holds what was typed until there is another one for it.
  if (!m_session.OffersNewRow()) return;
  const RecordsetPtr rs = m_session.Recordset();
  std::vector<CellEdit> edits;
  for (ColumnIndex column = 0; column < rs->FieldCount(); ++column) {
    edits.push_back({rs->RecordCount(), column, rs->ValueAt(row, column)});
  }
  m_session.Settle(row, {}, false);
  m_session.Edit(edits);
  m_actions.leave(edits.front().row);
}

void RowQuestions::RowsStored() {
  if (m_review) m_review->Refresh();
}

void RowQuestions::Review() {
  if (m_session.PendingCount() == 0 || m_review) return;
  m_review = new PendingReview(
      m_session, m_window.Rows().Model().Format(),
      {m_actions.storeAll, m_actions.goTo, [this](RowIndex row) { AskToSettle(row); }}, &m_window);
  m_review->open();
}

std::vector<RowIndex> RowQuestions::SelectedRecordRows() const {
  RowView& rows = m_window.Rows();
  const int nLast = rows.model()->columnCount() - 1;
  std::set<RowIndex> selected;
  for (const QItemSelectionRange& range : rows.selectionModel()->selection()) {
    if (range.left() != 0 || range.right() != nLast) continue;
    for (int nRow = range.top(); nRow <= range.bottom(); ++nRow) {
      if (!rows.Model().IsEmptyRow(nRow)) selected.insert(rows.Model().RecordRow(nRow));
    }
  }
  return {selected.begin(), selected.end()};
}

platform::Text RowQuestions::WhyNotDeleted() const {
  if (!m_session.Recordset()) return "There are no rows to delete; fetch them first.";
  const QString& sWhyNot = m_session.Updatability().sWhyNot;
  if (!sWhyNot.isEmpty()) return sWhyNot.toStdString();
  return "Deleting rows is not possible in this grid; its rows can only be looked at.";
}

void RowQuestions::DeleteSelectedRows() {
  RowIndex selected = 0;
  const auto& selection = m_window.Rows().selectionModel()->selection();
  for (const QItemSelectionRange& range : selection) selected += range.height();
  if (selected > kMostDeleted + 1) {
    return m_window.Status().Remark(
        QStringLiteral("Nothing was deleted: more than %L1 rows are selected; select fewer, or "
                       "delete them by a query.")
            .arg(static_cast<qlonglong>(kMostDeleted)));
  }
  const auto rows = SelectedRecordRows();
  if (rows.empty() || !m_session.Updatability().bDelete) return;
  auto* box = new widgets::MessageBox(&m_window);
  box->setObjectName("deleteRows");
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setIcon(QMessageBox::Question);
  box->setWindowTitle("Delete Rows");
  box->setText(QStringLiteral("Delete %1?").arg(RowsText(static_cast<RowIndex>(rows.size()))));
  box->setInformativeText(
      QStringLiteral("The server deletes %1 at once; that cannot be undone.")
          .arg(rows.size() == 1 ? QStringLiteral("it") : QStringLiteral("them")));
  const auto* yes = box->addButton("&Delete", QMessageBox::AcceptRole);
  box->setDefaultButton(box->addButton(QMessageBox::Cancel));
  const RecordsetPtr rs = m_session.Recordset();
  connect(box, &QMessageBox::buttonClicked, this, [this, box, yes, rs, rows] {
    if (box->clickedButton() == yes && m_session.Recordset() == rs) m_actions.deleteRows(rows);
  });
  box->open();
}

}  // namespace orvane::controls
