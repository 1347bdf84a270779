#include "controls/row_view.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>

#include "controls/cell_delegate.h"
#include "controls/clipboard_text.h"
#include "controls/header_view.h"
#include "controls/status_strip.h"

namespace orvane::controls {

namespace {

constexpr int kRowPadding = 8;
constexpr int kLeastColumnWidth = 48;
constexpr int kMostFirstWidth = 360;
constexpr int kMostColumnWidth = 1000;
constexpr int kRowsMeasured = 100;
constexpr int kCharactersMeasured = 250;

}  // namespace

RowView::RowView(QWidget* parent) : QTableView(parent), m_model(new RowModel(this)) {
  setHorizontalHeader(new HeaderView(Qt::Horizontal, this));
  setVerticalHeader(new HeaderView(Qt::Vertical, this));
  setModel(m_model);
  setItemDelegate(new CellDelegate(*m_model, this));
  setObjectName("rows");
  setAccessibleName("Rows");
  setFrameShape(QFrame::NoFrame);
  setSelectionMode(ExtendedSelection);
  setSelectionBehavior(SelectItems);
  setEditTriggers(NoEditTriggers);
  setHorizontalScrollMode(ScrollPerPixel);
  setVerticalScrollMode(ScrollPerItem);
  setWordWrap(false);
  setTabKeyNavigation(false);  // Tab leaves the grid: a keyboard must not be caught in it

  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setObjectName("rowNumbers");
  verticalHeader()->setAccessibleName("Row numbers");
  verticalHeader()->viewport()->installEventFilter(this);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
  horizontalHeader()->setObjectName("columnNames");
  horizontalHeader()->setAccessibleName("Column names");
  horizontalHeader()->setMinimumSectionSize(kLeastColumnWidth);
  horizontalHeader()->setTextElideMode(Qt::ElideRight);
  FitRowHeight();

  const auto forgetScroll = [this] { m_scroll.reset(); };
  connect(verticalScrollBar(), &QScrollBar::actionTriggered, this, forgetScroll);
  connect(verticalScrollBar(), &QScrollBar::sliderPressed, this, forgetScroll);
  connect(horizontalScrollBar(), &QScrollBar::actionTriggered, this, forgetScroll);
  connect(horizontalScrollBar(), &QScrollBar::sliderPressed, this, forgetScroll);
}

void RowView::ShowRows(platform::RecordsetPtr rs, CellFormat format, const RowsState* state) {
  const QSignalBlocker quiet(selectionModel());
  if (m_model->columnCount() > 0) {
    m_lastColumns = ColumnSignature();
    m_lastWidths = ColumnWidths();
  }
  m_scroll.reset();
  m_bRowsChosen = false;
  m_model->Recordset(std::move(rs), std::move(format));
  if (m_model->columnCount() > 0) {
    const bool bKnown = state ? ColumnWidths(state->columnWidths)
                              : m_lastColumns == ColumnSignature() && ColumnWidths(m_lastWidths);
    if (!bKnown) FitColumns();
  }
  if (state) {
    Restore(*state);
  } else if (HasRows() && m_model->columnCount() > 0) {
    selectionModel()->setCurrentIndex(m_model->index(0, 0), QItemSelectionModel::NoUpdate);
  }
  viewport()->update();
  verticalHeader()->viewport()->update();
  horizontalHeader()->viewport()->update();
}

void RowView::Restore(const RowsState& state) {
  QItemSelection selection;
  for (const CellRange& range : state.selection) {
    const QModelIndex topLeft = m_model->index(range.nTop, range.nLeft);
    const QModelIndex bottomRight = m_model->index(range.nBottom, range.nRight);
    if (topLeft.isValid() && bottomRight.isValid()) selection.select(topLeft, bottomRight);
  }
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  selectionModel()->setCurrentIndex(m_model->index(state.nCurrentRow, state.nCurrentColumn),
                                    QItemSelectionModel::NoUpdate);
  m_bRowsChosen = state.bRowsSelected;
  m_scroll = Scroll{state.nTopRow, state.nLeftOffset};
  updateGeometries();
}

RowsState RowView::State() const {
  RowsState state;
  state.nCurrentRow = currentIndex().row();
  state.nCurrentColumn = currentIndex().column();
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    state.selection.push_back({range.top(), range.left(), range.bottom(), range.right()});
  }
  state.bRowsSelected = m_bRowsChosen;
  state.nTopRow = m_scroll ? m_scroll->nTopRow : verticalScrollBar()->value();
  state.nLeftOffset = m_scroll ? m_scroll->nLeftOffset : horizontalScrollBar()->value();
  state.columnWidths = ColumnWidths();
  return state;
}

bool RowView::RowsSelected() const {
  const int nColumns = m_model->columnCount();
  if (nColumns == 1 && !m_bRowsChosen) return false;
  return std::ranges::any_of(selectionModel()->selection(), [nColumns](const auto& range) {
    return range.left() == 0 && range.right() == nColumns - 1;
  });
}

void RowView::SelectRow(int nRow) {
  const QModelIndex index = m_model->index(nRow, std::max(0, currentIndex().column()));
  if (!index.isValid()) return;
  m_scroll.reset();
  m_bRowsChosen = true;
  selectionModel()->setCurrentIndex(
      index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  scrollTo(index);
}

void RowView::Copy(bool bNames) const {
  QItemSelection selection = selectionModel()->selection();
  if (selection.isEmpty() && currentIndex().isValid()) {
    selection.select(currentIndex(), currentIndex());
  }
  if (selection.isEmpty()) return;
  const platform::RowIndex rows = SelectedRows(selection);
  std::optional<QString> text;
  if (rows <= kMostCopiedRows) {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    text = ClipboardText(*m_model, selection, bNames);
    QGuiApplication::restoreOverrideCursor();
  }
  if (!text) {
    return Copied(rows > kMostCopiedRows
                      ? QStringLiteral("Not copied: %1 are selected, and at most %2 can be copied "
                                       "at once. Select fewer.")
                            .arg(RowsText(rows), RowsText(kMostCopiedRows))
                      : QStringLiteral("Not copied: the selection has more than 32 million "
                                       "characters. Select fewer cells."));
  }
  // One cell goes without its line end, so that it can be put into the middle of a line.
  const bool bOneCell =
      selection.size() == 1 && selection.first().width() == 1 && selection.first().height() == 1;
  if (bOneCell && !bNames) text->chop(1);
  QGuiApplication::clipboard()->setText(*text);
  Copied({});
}

void RowView::Copied(const QString& sWhyNot) const {
  if (m_copied) m_copied(sWhyNot);
}

void RowView::selectAll() {
  m_bRowsChosen = true;
  QTableView::selectAll();
}

void RowView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return Copy(false);
  const bool bControlShift = event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
  if (bControlShift && event->key() == Qt::Key_C) return Copy(true);
  m_scroll.reset();
  if (event->key() == Qt::Key_Space && event->modifiers() == Qt::ShiftModifier) {
    return SelectRow(currentIndex().row());
  }
  if (!event->matches(QKeySequence::SelectAll)) m_bRowsChosen = false;
  QTableView::keyPressEvent(event);
}

void RowView::mousePressEvent(QMouseEvent* event) {
  m_scroll.reset();
  // The secondary button opens the menu on what is selected already.
  const QModelIndex index = indexAt(event->pos());
  if (event->button() == Qt::RightButton && selectionModel()->isSelected(index)) return;
  m_bRowsChosen = false;
  QTableView::mousePressEvent(event);
}

void RowView::wheelEvent(QWheelEvent* event) {
  m_scroll.reset();
  QTableView::wheelEvent(event);
}

void RowView::contextMenuEvent(QContextMenuEvent* event) {
  if (!HasRows()) return;
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const auto add = [&](const QString& sLabel, const QKeySequence& keys, auto handler) {
    menu->addAction(sLabel + u'\t' + keys.toString(QKeySequence::NativeText), this, handler);
  };
  add("&Copy", QKeySequence::Copy, [this] { Copy(false); });
  add("Copy with Column &Names", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C),
      [this] { Copy(true); });
  menu->addSeparator();
  add("Select &All", QKeySequence::SelectAll, [this] { selectAll(); });
  menu->popup(event->globalPos());
}

void RowView::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) FitRowHeight();
}

void RowView::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (!hasFocus() || currentIndex().isValid()) return;
  // No cell can show that the keys are here.
  QPainter painter(viewport());
  DrawFocus(painter, viewport()->rect(), palette().color(QPalette::Highlight));
}

bool RowView::eventFilter(QObject* watched, QEvent* event) {
  // Seen before the header tells of the press, and so before the selection changes.
  if (event->type() == QEvent::MouseButtonPress && watched == verticalHeader()->viewport()) {
    m_scroll.reset();
    m_bRowsChosen = true;
  }
  return QTableView::eventFilter(watched, event);
}

void RowView::updateGeometries() {
  QTableView::updateGeometries();
  if (!m_scroll) return;
  verticalScrollBar()->setValue(m_scroll->nTopRow);
  horizontalScrollBar()->setValue(m_scroll->nLeftOffset);
}

int RowView::sizeHintForColumn(int nColumn) const {
  const int nFirst = std::max(0, rowAt(0));
  const int nEnd = std::min(nFirst + kRowsMeasured, m_model->rowCount());
  const QFontMetrics metrics(font());
  int nWidth = 0;
  for (int nRow = nFirst; nRow < nEnd; ++nRow) {
    const QString sText = m_model->CellAt(nRow, nColumn).sText.left(kCharactersMeasured);
    nWidth = std::max(nWidth, metrics.horizontalAdvance(sText));
  }
  return std::min(nWidth + 2 * CellDelegate::kMargin + 2, kMostColumnWidth);
}

void RowView::FitRowHeight() {
  const int nHeight = fontMetrics().height() + kRowPadding;
  verticalHeader()->setMinimumSectionSize(nHeight);
  verticalHeader()->setDefaultSectionSize(nHeight);
}

void RowView::FitColumns() {
  for (int n = 0; n < m_model->columnCount(); ++n) {
    const int nWidth = std::max(sizeHintForColumn(n), horizontalHeader()->sectionSizeHint(n));
    setColumnWidth(n, std::clamp(nWidth, kLeastColumnWidth, kMostFirstWidth));
  }
}

std::vector<int> RowView::ColumnWidths() const {
  std::vector<int> widths;
  for (int n = 0; n < m_model->columnCount(); ++n) widths.push_back(columnWidth(n));
  return widths;
}

bool RowView::ColumnWidths(const std::vector<int>& widths) {
  if (widths.size() != static_cast<std::size_t>(m_model->columnCount())) return false;
  for (std::size_t n = 0; n < widths.size(); ++n) setColumnWidth(static_cast<int>(n), widths[n]);
  return true;
}

QStringList RowView::ColumnSignature() const {
  QStringList names;
  for (int n = 0; n < m_model->columnCount(); ++n) names << m_model->ColumnName(n);
  return names;
}

}  // namespace orvane::controls
