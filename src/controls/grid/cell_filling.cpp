#include "controls/grid/cell_filling.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>
#include <algorithm>
#include <utility>

#include "controls/editing/cell_query_dialog.h"
#include "controls/grid/grid_window.h"
#include "controls/view/copied_cells.h"
#include "controls/view/header_view.h"
#include "controls/view/status_strip.h"
#include "platform/conversions.h"
#include "platform/failure.h"
#include "widgets/message_box.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Failure;
using platform::RecordsetPtr;
using platform::RowIndex;
using platform::Text;
using platform::Value;
using platform::ValueKind;

CellFilling::CellFilling(GridWindow& window, EditSession& session, Asker asker,
                         std::shared_ptr<QStringList> last)
    : QObject(&window),
      m_window(window),
      m_session(session),
      m_asker(std::move(asker)),
      m_last(std::move(last)) {}

bool CellFilling::CanFill() const {
  const QModelIndex index = m_window.Rows().currentIndex();
  return index.isValid() && index.flags().testFlag(Qt::ItemIsEditable);
}

Text CellFilling::WhyNotFilled() const {
  const QModelIndex index = m_window.Rows().currentIndex();
  if (!index.isValid()) return "There is no cell to be filled from a query; go to one first.";
  const RowIndex row = m_window.Rows().Model().RecordRow(index.row());
  const QString sWhyNot = m_session.WhyNotEdited(row, index.column());
  if (!sWhyNot.isEmpty()) return sWhyNot.toStdString();
  return "Filling a cell from a query is not possible in this grid; its rows can only be looked "
         "at.";
}

Value CellFilling::Fitting(const Value& vtValue, ColumnIndex column) const {
  const platform::DataType type = m_session.Recordset()->FieldAt(column).Type();
  const ValueKind kind = KindOf(type);
  if (vtValue.IsNull() || kind == ValueKind::Null || vtValue.Kind() == kind) return vtValue;
  return m_session.Input().Read(m_session.Input().Shown(vtValue), type);
}

// ---- from a query

void CellFilling::CellQuery() {
  if (!CanFill() || m_window.findChild<CellQueryDialog*>()) return;
  const RowModel& model = m_window.Rows().Model();
  const QModelIndex index = m_window.Rows().currentIndex();
  const RowIndex row = model.RecordRow(index.row());
  auto* dialog = new CellQueryDialog(
      QStringLiteral("\"%1\" in row %2").arg(model.ColumnName(index.column())).arg(index.row() + 1),
      *m_last, &m_window);
  connect(dialog, &CellQueryDialog::RunAsked, this,
          [this, dialog, row, nColumn = index.column()] { Run(*dialog, row, nColumn); });
  dialog->open();
}

void CellFilling::Run(CellQueryDialog& dialog, RowIndex row, ColumnIndex column) {
  const QPointer<CellQueryDialog> asked(&dialog);
  const QPointer<CellFilling> self(this);
  const RecordsetPtr rs = m_session.Recordset();
  std::vector<Value> values;
  QString sWrong;
  try {
    const RecordsetPtr answer = m_asker(dialog.Statement().toStdString());
    if (!self || !asked || m_session.Recordset() != rs) return;
    if (!answer) {
      sWrong = "There is no connection to the server; connect it first.";
    } else if (answer->FieldCount() == 0 || answer->RecordCount() == 0) {
      sWrong = "The statement gave no value; the cell stays as it is.";
    } else if (answer->Truncated()) {
      sWrong = QStringLiteral("The statement gives more than %L1 values; narrow it down.")
                   .arg(kMostValues);
    } else if (m_window.Rows().Model().PlaceOf(row) < 0) {
      sWrong = "The row is not in sight any more; take the filter away.";
    } else {
      for (RowIndex n = 0; n < answer->RecordCount(); ++n) {
        values.push_back(Fitting(answer->ValueAt(n, 0), column));
      }
    }
  } catch (const Failure& failure) {
    if (!self || !asked) return;
    sWrong = failure.Number() == platform::failure::kWouldChange
                 ? QStringLiteral(
                       "The statement would change data; only one that reads can fill "
                       "a cell.")
                 : QString::fromStdString(failure.Description());
  }
  if (!sWrong.isEmpty()) return dialog.Say(sWrong);
  *m_last = WithLast(*m_last, dialog.Statement());
  dialog.accept();
  RowView& rows = m_window.Rows();
  rows.GoTo(rows.Model().PlaceOf(row), column);
  Fill(std::move(values));
}

void CellFilling::Fill(std::vector<Value> values) {
  const RowModel& model = m_window.Rows().Model();
  const QModelIndex index = m_window.Rows().currentIndex();
  const RecordsetPtr rs = m_session.Recordset();
  const auto fill = [this, rs, index = QPersistentModelIndex(index), values](std::size_t nValues) {
    if (m_session.Recordset() != rs || !index.isValid()) return;
    std::vector<CellEdit> edits;
    for (std::size_t n = 0; n < nValues; ++n) {
      const RowIndex row = m_window.Rows().Model().RecordRow(index.row() + static_cast<int>(n));
      edits.push_back({row, index.column(), values[n]});
    }
    const auto nLeft = std::ranges::count_if(
        edits, [&](const CellEdit& edit) { return !m_session.CanEdit(edit.row, edit.column); });
    m_session.Edit(edits);
    if (nLeft == 0) return;
    m_window.Remark(QStringLiteral("%L1 of %L2 cells were left as they are: they cannot be edited.")
                        .arg(nLeft)
                        .arg(nValues),
                    true);
  };
  const auto nRoom = static_cast<std::size_t>(std::max(1, model.Places() - index.row()));
  const std::size_t nFilled = std::min(values.size(), nRoom);
  if (nFilled == 1) return fill(1);
  auto* box = new widgets::MessageBox(&m_window);
  box->setObjectName("fillDown");
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setIcon(QMessageBox::Question);
  box->setWindowTitle("Fill from a Query");
  box->setText(QStringLiteral("The statement gave %1 values. Fill %2 cells from here down?")
                   .arg(values.size())
                   .arg(nFilled));
  const auto* all = box->addButton("&Fill Down", QMessageBox::AcceptRole);
  auto* first = box->addButton("First &Only", QMessageBox::AcceptRole);
  box->addButton(QMessageBox::Cancel);
  box->setDefaultButton(first);
  connect(box, &QMessageBox::buttonClicked, this, [box, all, first, fill, nFilled] {
    if (box->clickedButton() == all) fill(nFilled);
    if (box->clickedButton() == first) fill(1);
  });
  box->open();
}

// ---- from the clipboard

std::vector<int> CellFilling::ColumnsFrom(int nColumn) const {
  const HeaderView& names = m_window.Rows().Names();
  std::vector<int> columns;
  for (int nVisual = names.visualIndex(nColumn); nVisual < names.count(); ++nVisual) {
    const int nLogical = names.logicalIndex(nVisual);
    if (!names.isSectionHidden(nLogical)) columns.push_back(nLogical);
  }
  return columns;
}

void CellFilling::Paste() {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  const auto cells = data ? ReadCells(*data) : std::nullopt;
  if (!CanFill() || !cells || cells->empty()) return;
  try {
    Lay(*cells);
    m_window.Remark({}, false);
  } catch (const Failure& failure) {
    m_window.Remark("Nothing was pasted. " + QString::fromStdString(failure.Description()), true);
  }
}

void CellFilling::Lay(const CopiedCells& block) {
  const RowModel& model = m_window.Rows().Model();
  const QModelIndex index = m_window.Rows().currentIndex();
  const std::vector<int> columns = ColumnsFrom(index.column());
  const RecordsetPtr rs = m_session.Recordset();
  std::size_t nCells = 0;
  for (const auto& row : block) nCells += row.size();
  if (nCells > static_cast<std::size_t>(kMostCells)) {
    throw Failure(platform::failure::kInvalidArgument,
                  "The block has more than 100,000 cells; copy fewer, or import them from a file.");
  }
  std::vector<CellEdit> edits;
  for (std::size_t nRow = 0; nRow < block.size(); ++nRow) {
    const int nPlace = index.row() + static_cast<int>(nRow);
    // Behind the last row new ones are added, one for each.
    const RowIndex row = nPlace < model.Places() ? model.RecordRow(nPlace)
                                                 : rs->RecordCount() + (nPlace - model.Places());
    for (std::size_t n = 0; n < block[nRow].size(); ++n) {
      const auto& [text, kind] = block[nRow][n];
      if (n >= columns.size()) {
        throw Failure(platform::failure::kInvalidArgument,
                      "The block has more columns than there are from here on; go further to the "
                      "left, or copy fewer.");
      }
      const int nColumn = columns[n];
      if (const QString sWhyNot = m_session.WhyNotEdited(nColumn); !sWhyNot.isEmpty()) {
        throw Failure(platform::failure::kNotSupported, sWhyNot.toStdString());
      }
      if (!m_session.CanEdit(row, nColumn)) {
        throw Failure(platform::failure::kNotSupported,
                      "The block reaches rows that cannot be edited; paste it elsewhere.");
      }
      const Value vtCurrent = row < rs->RecordCount() ? rs->ValueAt(row, nColumn) : Value();
      const platform::DataType type = rs->FieldAt(nColumn).Type();
      Value vtPasted;
      if (text && kind) {
        vtPasted = m_session.Input().ReadCopied(*text, *kind, type, vtCurrent);
      } else if (text) {
        vtPasted = m_session.Input().Read(*text, type, vtCurrent);
      }
      // Of null and of the empty text the same is shown.
      if (text && text->empty() && vtPasted.IsNull() && KindOf(type) == ValueKind::Text) {
        vtPasted = Text();
      }
      edits.push_back({row, nColumn, std::move(vtPasted)});
    }
  }
  m_session.Edit(edits);
}

}  // namespace orvane::controls
