#include "controls/grid/cell_filling.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>
#include <algorithm>
#include <memory>
#include <utility>

#include "controls/editing/cell_query_dialog.h"
#include "controls/grid/grid_window.h"
#include "controls/values/tell_box.h"
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

namespace {

/// As many bytes, or characters, are read in less time than anybody notices.
constexpr qsizetype kReadAtOnce = 50'000;

qsizetype SizeOf(const QMimeData& data) {
  qsizetype nSize = 0;
  for (const QString& sFormat : data.formats()) nSize += data.data(sFormat).size();
  return nSize;
}

Value ReadOf(const CopiedCell& cell, const ValueInput& input, const ColumnTakes& takes,
             const Value& vtCurrent) {
  if (!cell.sText) return {};
  const ValueKind kind = KindOf(takes.type);
  // What its text says by the clocks of one grid is another time by those of another.
  const bool bInstant = cell.instant && zones::IsInRange(*cell.instant);
  if (bInstant && (kind == ValueKind::Timestamp || kind == ValueKind::Null)) return *cell.instant;
  Value vtRead = cell.kind ? input.ReadCopied(*cell.sText, *cell.kind, takes, vtCurrent)
                           : input.Read(*cell.sText, takes, vtCurrent);
  // Of null and of the empty text the same is shown.
  if (cell.sText->empty() && vtRead.IsNull() && kind == ValueKind::Text) return Text();
  return vtRead;
}

}  // namespace

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
  const ColumnTakes takes(m_session.Recordset()->FieldAt(column));
  const ValueKind kind = KindOf(takes.type);
  if (vtValue.IsNull() || kind == ValueKind::Null || vtValue.Kind() == kind) return vtValue;
  return m_session.Input().Read(m_session.Input().Shown(vtValue), takes);
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
  RecordsetPtr answer;
  std::vector<Value> values;
  QString sWrong;
  try {
    answer = m_asker(dialog.Statement().toStdString());
    if (!self || !asked || m_session.Recordset() != rs) return;
    if (!answer) {
      sWrong = "There is no connection to the server; connect it first.";
    } else if (answer->FieldCount() == 0 || answer->RecordCount() == 0) {
      sWrong = "The statement gave no value; the cell stays as it is.";
    } else if (m_window.Rows().Model().PlaceOf(row) < 0) {
      sWrong = "The row is not in sight any more; take the filter away.";
    } else {
      values.push_back(Fitting(answer->ValueAt(0, 0), column));
    }
  } catch (const std::exception& exception) {
    if (!self || !asked) return;
    const auto* failure = dynamic_cast<const Failure*>(&exception);
    sWrong = failure && failure->Number() == platform::failure::kWouldChange
                 ? QStringLiteral(
                       "The statement would change data; only one that reads can fill "
                       "a cell.")
                 : SentenceOf(exception);
  }
  if (!sWrong.isEmpty()) return dialog.Say(sWrong);
  *m_last = WithLast(*m_last, dialog.Statement());
  dialog.accept();
  RowView& rows = m_window.Rows();
  rows.GoTo(rows.Model().PlaceOf(row), column);
  Fill(values);
  if (answer->RecordCount() > 1) FillDown(*answer, column);
}

void CellFilling::Fill(const std::vector<Value>& values, int nBelow) {
  const QModelIndex index = m_window.Rows().currentIndex();
  std::vector<CellEdit> edits;
  for (std::size_t n = 0; n < values.size(); ++n) {
    const int nPlace = index.row() + nBelow + static_cast<int>(n);
    edits.push_back({m_window.Rows().Model().RecordRow(nPlace), index.column(), values[n]});
  }
  const auto nLeft = std::ranges::count_if(
      edits, [&](const CellEdit& edit) { return !m_session.CanEdit(edit.row, edit.column); });
  const QPointer<CellFilling> self(this);
  const bool bLaid = m_session.Edit(edits);
  if (!self) return;
  if (!bLaid)
    return m_window.Remark("The cells beneath stay as they are: it was cancelled.", false);
  if (nLeft == 0) return;
  m_window.Remark(QStringLiteral("%L1 of %L2 cells were left as they are: they cannot be edited.")
                      .arg(nLeft)
                      .arg(values.size()),
                  true);
}

void CellFilling::FillDown(const platform::Recordset& answer, ColumnIndex column) {
  const int nRow = m_window.Rows().currentIndex().row();
  const RowIndex room = m_window.Rows().Model().Places() - nRow - 1;
  QString sWhyNot;
  std::vector<Value> others;
  if (answer.Truncated()) {
    sWhyNot = QStringLiteral("The statement gives more than %L1 values; narrow it down.")
                  .arg(kMostValues);
  } else if (room <= 0) {
    sWhyNot = QStringLiteral("The statement gave %L1, but no row stands beneath this one.")
                  .arg(answer.RecordCount());
  }
  try {
    for (RowIndex n = 1; n < answer.RecordCount() && n <= room && sWhyNot.isEmpty(); ++n) {
      others.push_back(Fitting(answer.ValueAt(n, 0), column));
    }
  } catch (const Failure& failure) {
    sWhyNot = QString::fromStdString(failure.Description());
  }
  if (!sWhyNot.isEmpty()) {
    return m_window.Remark("Only the first value was taken. " + sWhyNot, true);
  }
  AskToFillDown(std::move(others), answer.RecordCount());
}

void CellFilling::AskToFillDown(std::vector<Value> others, RowIndex given) {
  const QModelIndex index = m_window.Rows().currentIndex();
  auto* box = new widgets::MessageBox(&m_window);
  box->setObjectName("fillDown");
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setIcon(QMessageBox::Question);
  box->setWindowTitle("Fill from a Query");
  box->setText(QStringLiteral("The statement gave %L1 values, and the first is in the cell. Fill "
                              "the %2 beneath with the others?")
                   .arg(given)
                   .arg(others.size() == 1 ? QStringLiteral("cell")
                                           : QStringLiteral("%L1 cells").arg(others.size())));
  const auto* all = box->addButton("&Fill Down", QMessageBox::AcceptRole);
  auto* first = box->addButton("First &Only", QMessageBox::RejectRole);
  box->setDefaultButton(first);
  box->setEscapeButton(first);
  connect(box, &QMessageBox::buttonClicked, this,
          [this, box, all, rs = m_session.Recordset(), at = QPersistentModelIndex(index),
           others = std::move(others)] {
            if (box->clickedButton() != all || m_session.Recordset() != rs || !at.isValid()) return;
            m_window.Rows().GoTo(at.row(), at.column());
            Fill(others, 1);
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
  if (!CanFill() || !data) return;
  const RowModel& model = m_window.Rows().Model();
  const QModelIndex index = m_window.Rows().currentIndex();
  const Target target{m_session.Recordset(), index.row(), model.Places(),
                      ColumnsFrom(index.column()), model.RecordRows()};
  const QPointer<CellFilling> self(this);
  // The grid, and its session with it, may go while another thread reads.
  EditSession rules{EditSession::ChangedHandler()};
  rules.Show(target.rs, m_session.Updatability(), m_session.Input(), nullptr);
  bool bThere = false;
  std::vector<CellEdit> edits;
  QString sWhyNot;
  try {
    // The clipboard is another program's, and asked here.
    const std::unique_ptr<QMimeData> copy = CellsOn(*data);
    const auto read = [&](const std::stop_token& stop) {
      const auto cells = ReadCells(*copy);
      bThere = cells && !cells->empty();
      if (bThere) edits = EditsOf(*cells, target, rules, stop);
    };
    if (m_beside && SizeOf(*copy) > kReadAtOnce) {
      // It may go while it runs.
      const Beside beside = m_beside;
      beside(read);
    } else {
      read({});
    }
    if (!self || !bThere || m_session.Recordset() != target.rs) return;
    const bool bLaid = m_session.Edit(edits);
    if (!self) return;
    if (!bLaid) sWhyNot = "It was cancelled.";
  } catch (const Failure& failure) {
    if (!self) return;
    sWhyNot = QString::fromStdString(failure.Description());
  }
  m_window.Remark(sWhyNot.isEmpty() ? QString() : "Nothing was pasted. " + sWhyNot,
                  !sWhyNot.isEmpty());
}

std::vector<CellEdit> CellFilling::EditsOf(const CopiedCells& block, const Target& target,
                                           const EditSession& rules, const std::stop_token& stop) {
  const RecordsetPtr& rs = target.rs;
  std::size_t nCells = 0;
  for (const auto& row : block) nCells += row.size();
  if (nCells > static_cast<std::size_t>(kMostCells)) {
    throw Failure(platform::failure::kInvalidArgument,
                  "The block has more than 100,000 cells; copy fewer, or import them from a file.");
  }
  std::vector<CellEdit> edits;
  for (std::size_t nRow = 0; nRow < block.size(); ++nRow) {
    if (stop.stop_requested()) throw Failure(platform::failure::kCancelled, "It was cancelled.");
    const int nPlace = target.nRow + static_cast<int>(nRow);
    // Behind the last row new ones are added, one for each.
    const RowIndex row = nPlace < target.nPlaces ? target.recordRow(nPlace)
                                                 : rs->RecordCount() + (nPlace - target.nPlaces);
    for (std::size_t n = 0; n < block[nRow].size(); ++n) {
      const CopiedCell& cell = block[nRow][n];
      if (cell.bGap) continue;
      if (n >= target.columns.size()) {
        throw Failure(platform::failure::kInvalidArgument,
                      "The block has more columns than there are from here on; go further to the "
                      "left, or copy fewer.");
      }
      const int nColumn = target.columns[n];
      if (const QString sWhyNot = rules.WhyNotEdited(nColumn); !sWhyNot.isEmpty()) {
        throw Failure(platform::failure::kNotSupported, sWhyNot.toStdString());
      }
      if (!rules.CanEdit(row, nColumn)) {
        throw Failure(platform::failure::kNotSupported,
                      "The block reaches rows that cannot be edited; paste it elsewhere.");
      }
      const Value vtCurrent = row < rs->RecordCount() ? rs->ValueAt(row, nColumn) : Value();
      const ColumnTakes takes(rs->FieldAt(nColumn));
      edits.push_back({row, nColumn, ReadOf(cell, rules.Input(), takes, vtCurrent)});
    }
  }
  return edits;
}

}  // namespace orvane::controls
