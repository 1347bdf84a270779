#include "controls/view/row_view.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>

#include "controls/view/cell_delegate.h"
#include "controls/view/header_view.h"
#include "controls/view/row_numbers.h"
#include "controls/view/row_places.h"

namespace orvane::controls {

namespace {

// In characters: what is enough for one size of letters is half a word for another.
constexpr int kMostFirstWidth = 52;
constexpr int kMostColumnWidth = 144;
constexpr int kRowsMeasured = 100;
constexpr int kCharactersMeasured = 250;

std::vector<platform::Text> ColumnTexts(const RowModel& model) {
  std::vector<platform::Text> names;
  for (int n = 0; n < model.columnCount(); ++n) {
    names.push_back(model.Recordset()->FieldAt(n).Name());
  }
  return names;
}

}  // namespace

RowView::RowView(QWidget* parent)
    : RowPicker(new RowModel, parent),
      m_model(static_cast<RowModel*>(model())),
      m_columns(new KeptColumns(Names(), this)),
      m_arranger(this) {
  auto* delegate = new CellDelegate(*m_model, this);
  // Something wider than what was measured has come into sight.
  delegate->OnTooNarrow([this](int nColumn, const Cell& cell, const QFontMetrics& metrics) {
    const int nMost = WidthOf(cell.bNumber ? kMostColumnWidth : kMostFirstWidth);
    if (!m_columns->MayGrow(nColumn, nMost)) return;
    const int nText = metrics.horizontalAdvance(cell.sText.left(kCharactersMeasured));
    m_columns->Grow(nColumn, std::min(CellDelegate::WidthFor(nText), nMost));
  });
  setItemDelegate(delegate);
  // An order would tear what is being typed in two.
  m_arranger.HoldWhile([this] { return state() == EditingState; });
  Names().setContextMenuPolicy(Qt::CustomContextMenu);
  connect(&Names(), &QWidget::customContextMenuRequested, this,
          [this](QPoint at) { OpenNamesMenu(at); });
  setObjectName("rows");
  setAccessibleName("Rows");
  Names().setObjectName("columnNames");
  Names().setAccessibleName("Column names");
  setEditTriggers(NoEditTriggers);
  setTabKeyNavigation(false);  // Tab leaves the grid: a keyboard must not be caught in it
  AddCommands();
  Names().OnArrow([this](int nColumn, Qt::KeyboardModifiers modifiers) {
    Sort(SortedByArrow(m_arrangement.sort, nColumn, modifiers.testFlag(Qt::ShiftModifier)));
    const auto clicked = m_arrowClicked;
    if (clicked) clicked();
  });
  connect(&Numbers(), &RowNumbers::MenuAsked, this, [this](int nRow, QPoint where) {
    if (!selectionModel()->isSelected(m_model->index(nRow, 0)) || !RowsSelected()) SelectRow(nRow);
    OpenMenu(where);
  });
}

void RowView::AddCommands() {
  const auto hasRows = [this] { return HasRows(); };
  m_commands.Add({CommandGroup::Copy, "&Copy", QKeySequence::Copy, [this] { Copy(false); }});
  m_commands.Add({CommandGroup::Copy, "Copy with Column &Names",
                  QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C), [this] { Copy(true); }});
  const auto addForm = [this](const char* sLabel, exports::Form form) {
    m_commands.Add(
        {CommandGroup::Copy, sLabel, {}, [this, form] { CopyAs(form); }, {}, {}, "Cop&y As"});
  };
  addForm("CS&V", exports::Form::Csv);
  addForm("&JSON Lines", exports::Form::JsonLines);
  addForm("SQL &INSERT", exports::Form::Sql);
  m_commands.Add({CommandGroup::Select, "Select &All", QKeySequence::SelectAll,
                  [this] { selectAll(); }, hasRows});
}

void RowView::ShowRows(platform::RecordsetPtr rs, CellFormat format, const RowsState* state) {
  const QSignalBlocker quiet(selectionModel());
  if (m_model->columnCount() > 0) {
    m_lastColumns = ColumnSignature();
    m_lastWidths = ColumnWidths();
    m_columns->Remember();
    if (currentIndex().isValid()) m_nLastColumn = currentIndex().column();
  }
  ForgetScroll();
  RowsChosen(false);
  m_arranger.Cancel();
  m_model->Recordset(std::move(rs), std::move(format));
  m_model->FitTimes(0, kRowsMeasured);
  if (m_model->columnCount() > 0) {
    if (state) m_columns->Layout(state->layout);
    m_columns->Show(ColumnTexts(*m_model), [&] {
      const bool bKnown = state ? ColumnWidths(state->columnWidths)
                                : m_lastColumns == ColumnSignature() && ColumnWidths(m_lastWidths);
      if (!bKnown) FitColumns();
    });
    // Rows of the same columns stand as those before them did.
    if (m_lastColumns != ColumnSignature()) m_arrangement = {};
    if (state) m_arrangement = state->arrangement;
  }
  m_standing = {};
  if (m_arrangement.bSortedByServer) m_standing = {m_arrangement.sort, true, {}};
  if (state) {
    Restore(*state);
  } else if (HasRows() && m_model->columnCount() > 0) {
    BeginInFirstRow();
  }
  LeaveHidden();
  Names().Offer(currentIndex().column());
  Names().Sorted(m_arrangement.sort);
  updateGeometries();
  viewport()->update();
  Numbers().update();
  Names().viewport()->update();
  // A state without an order is of rows that have not been put into one yet.
  if (!HasRows()) return;
  if (!state) {
    ArrangeNow(true);
  } else if (!state->order && !state->bOrderLost) {
    Arrange(false, state->first);
  }
}

void RowView::paintEvent(QPaintEvent* event) {
  // Those that have more digits than any before them take the whole column along.
  if (m_model->FitTimes(TopRow(), TopRow() + RowsInSight() + 1)) viewport()->update();
  RowPicker::paintEvent(event);
}

void RowView::Restore(const RowsState& state) {
  // Without the order, what is said of places is about other rows.
  if (state.bOrderLost) {
    BeginInFirstRow();
    return ArrangeNow(true);
  }
  if (state.order) {
    m_model->Order(state.order);
    m_standing = m_arrangement;
  }
  QItemSelection selection;
  for (const CellRange& range : state.selection) {
    const QModelIndex topLeft = m_model->index(range.nTop, range.nLeft);
    const QModelIndex bottomRight = m_model->index(range.nBottom, range.nRight);
    if (topLeft.isValid() && bottomRight.isValid()) selection.select(topLeft, bottomRight);
  }
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  selectionModel()->setCurrentIndex(m_model->index(state.nCurrentRow, state.nCurrentColumn),
                                    QItemSelectionModel::NoUpdate);
  RowsChosen(state.bRowsSelected);
  ScrollBackTo({state.nTopRow, state.nLeftOffset});
}

RowsState RowView::State() const {
  RowsState state;
  state.nCurrentRow = currentIndex().row();
  state.nCurrentColumn = currentIndex().column();
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    state.selection.push_back({range.top(), range.left(), range.bottom(), range.right()});
  }
  state.bRowsSelected = RowsChosen();
  state.nTopRow = ScrolledTo().nTopRow;
  state.nLeftOffset = ScrolledTo().nLeftOffset;
  state.columnWidths = ColumnWidths();
  state.layout = m_columns->Layout();
  state.arrangement = m_arrangement;
  state.order = m_model->Order();
  if (m_arranger.Busy()) {
    // The order is that of before, and what was being worked out begins anew.
    state.order = nullptr;
    state.bOrderLost = true;
  }
  return state;
}

// ---- order

void RowView::Sort(std::vector<SortColumn> columns) {
  // It may be taken away while it runs.
  const auto elsewhere = m_sortElsewhere;
  if (elsewhere && elsewhere(columns)) return;
  m_arrangement.sort = std::move(columns);
  m_arrangement.bSortedByServer = false;
  ArrangeNow();
}

void RowView::SortBy(int nColumn, bool bAscending, bool bAdd) {
  Sort(SortedBy(m_arrangement.sort, {nColumn, bAscending}, bAdd));
}

void RowView::SortedByServer(std::vector<SortColumn> columns) {
  m_arrangement.sort = std::move(columns);
  m_arrangement.bSortedByServer = !m_arrangement.sort.empty();
}

void RowView::Filter(std::vector<ColumnFilter> filters) {
  for (ColumnFilter& filter : filters) {
    const auto& rs = m_model->Recordset();
    if (rs && filter.Column() < rs->FieldCount())
      filter.Order(rs->FieldAt(filter.Column()).TextOrder());
  }
  m_arrangement.filters = std::move(filters);
  ArrangeNow();
}

void RowView::Arrange(bool bFromTop, const std::optional<FirstInSight>& first) {
  Names().Sorted(m_arrangement.sort);
  const auto& rs = m_model->Recordset();
  if (rs && rs->State() == platform::FetchState::Running && !m_arrangement.NeedsNoWork()) {
    if (m_arranged) m_arranged("The rows are sorted and filtered when all have come.");
    return;
  }
  if (m_arrangement.NeedsNoWork() && !m_model->Order() && !m_arranger.Busy()) {
    m_standing = m_arrangement;
    return;
  }
  m_arranger.Arrange(m_model->Recordset(), m_arrangement, m_model->Format(),
                     // Who has gone elsewhere in the meantime stays with his row.
                     [this, bFromTop, at = currentIndex(), nTop = TopRow(), first](
                         std::shared_ptr<const RowOrder> order, const QString& sWhyNot) {
                       if (sWhyNot.isEmpty()) {
                         m_standing = m_arrangement;
                         const bool bStayed = currentIndex() == at && TopRow() == nTop;
                         TakeOrder(std::move(order), bFromTop && bStayed,
                                   bStayed ? first : std::nullopt);
                       } else {
                         m_arrangement = m_standing;
                         Names().Sorted(m_arrangement.sort);
                       }
                       if (m_arranged) m_arranged(sWhyNot);
                     });
  if (m_arranger.Busy() && m_arranged) m_arranged({});
}

void RowView::TakeOrder(std::shared_ptr<const RowOrder> order, bool bFromTop,
                        const std::optional<FirstInSight>& first) {
  const RowPlaces places(*this, *m_model);
  const QSignalBlocker quiet(selectionModel());
  m_model->Order(std::move(order));
  ForgetScroll();
  updateGeometries();
  if (bFromTop) {
    BeginInFirstRow();
    verticalScrollBar()->setValue(0);
  } else {
    places.Restore(*this, *m_model, first);
  }
  viewport()->update();
  Numbers().update();
}

bool RowView::StopArranging() {
  if (!m_arranger.Busy()) return false;
  m_arranger.Cancel();
  m_arrangement = m_standing;
  Names().Sorted(m_arrangement.sort);
  if (m_stopped) m_stopped();
  return true;
}

void RowView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  RowPicker::currentChanged(current, previous);
  Names().Offer(current.column());
}

void RowView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && (StopArranging() || m_copier.Stop())) return;
  if (!m_commands.Press(*event)) RowPicker::keyPressEvent(event);
}

void RowView::contextMenuEvent(QContextMenuEvent* event) {
  // Without rows there is still something to be done: to add or paste one, to import some.
  if (m_model->columnCount() == 0) return event->ignore();
  OpenMenu(event->globalPos());
}

void RowView::OpenMenu(QPoint where, void (GridCommands::*fill)(QMenu&) const) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  (m_commands.*fill)(*menu);
  menu->popup(where);
}

void RowView::OpenNamesMenu(QPoint at) {
  const int nColumn = Names().ColumnAt(at.x());
  if (Names().count() == 0) return;
  const bool bSelected =
      nColumn >= 0 && HasRows() && selectionModel()->isSelected(m_model->index(0, nColumn)) &&
      selectionModel()->isSelected(m_model->index(m_model->rowCount() - 1, nColumn));
  if (nColumn >= 0 && !(bSelected && currentIndex().column() == nColumn)) SelectColumn(nColumn);
  OpenMenu(Names().mapToGlobal(at), &GridCommands::FillForColumn);
}

void RowView::Abandon() {
  m_sortElsewhere = nullptr;
  m_stopped = nullptr;
  m_commands = {};
  for (auto* menu : findChildren<QMenu*>()) menu->close();
}

int RowView::sizeHintForColumn(int nColumn) const {
  const int nFirst = TopRow();
  const int nEnd = std::min(nFirst + kRowsMeasured, m_model->rowCount());
  const QFontMetrics metrics(font());
  int nWidth = 0;
  for (int nRow = nFirst; nRow < nEnd; ++nRow) {
    const QString sText = m_model->CellAt(nRow, nColumn).sText.left(kCharactersMeasured);
    nWidth = std::max(nWidth, metrics.horizontalAdvance(sText));
  }
  return std::min(CellDelegate::WidthFor(nWidth), WidthOf(kMostColumnWidth));
}

void RowView::FitColumns() {
  for (int n = 0; n < m_model->columnCount(); ++n) {
    const int nWidth = std::max(sizeHintForColumn(n), Names().sectionSizeHint(n));
    ColumnWidth(n, std::clamp(nWidth, kLeastColumnWidth, WidthOf(kMostFirstWidth)));
  }
}

std::vector<int> RowView::ColumnWidths() const {
  std::vector<int> widths;
  for (int n = 0; n < m_model->columnCount(); ++n) widths.push_back(m_columns->WidthOf(n));
  return widths;
}

void RowView::Layout(ColumnLayout layout) {
  m_columns->Layout(std::move(layout));
  if (Names().count() == 0) return;
  m_columns->Show(ColumnTexts(*m_model), [this] { FitColumns(); });
  LeaveHidden();
  updateGeometries();
  viewport()->update();
}

std::vector<bool> RowView::HiddenColumns() const {
  std::vector<bool> hidden;
  for (int n = 0; n < Names().count(); ++n) hidden.push_back(Names().isSectionHidden(n));
  return hidden;
}

void RowView::HiddenColumns(const std::vector<bool>& hidden) {
  m_columns->Hide(hidden);
  LeaveHidden();
  updateGeometries();
  viewport()->update();
}

void RowView::HoldColumns(int nUpTo) {
  m_columns->HoldUpTo(nUpTo);
  updateGeometries();
  viewport()->update();
}

void RowView::Reveal(int nColumn) {
  std::vector<bool> hidden = HiddenColumns();
  const auto n = static_cast<std::size_t>(nColumn);
  if (n >= hidden.size() || !hidden[n]) return;
  hidden[n] = false;
  HiddenColumns(hidden);
}

void RowView::LeaveHidden() {
  const QModelIndex current = currentIndex();
  if (!current.isValid() || !Names().isSectionHidden(current.column())) return;
  // To the next one at the right that is seen, else to the last.
  const std::vector<int> shown = Names().Shown();
  const int nAt = Names().visualIndex(current.column());
  const auto next =
      std::ranges::find_if(shown, [&](int nColumn) { return Names().visualIndex(nColumn) > nAt; });
  if (shown.empty()) return;
  selectionModel()->setCurrentIndex(
      m_model->index(current.row(), next == shown.end() ? shown.back() : *next),
      QItemSelectionModel::NoUpdate);
}

bool RowView::ColumnWidths(const std::vector<int>& widths) {
  if (widths.size() != static_cast<std::size_t>(m_model->columnCount())) return false;
  for (std::size_t n = 0; n < widths.size(); ++n) ColumnWidth(static_cast<int>(n), widths[n]);
  return true;
}

QStringList RowView::ColumnSignature() const {
  QStringList names;
  for (int n = 0; n < m_model->columnCount(); ++n) names << m_model->ColumnName(n);
  return names;
}

}  // namespace orvane::controls
