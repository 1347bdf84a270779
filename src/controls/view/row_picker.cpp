#include "controls/view/row_picker.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>
#include <cstdint>

#include "controls/view/accessible_rows.h"
#include "controls/view/header_view.h"
#include "controls/view/row_numbers.h"

namespace orvane::controls {

using Selection = QItemSelectionModel;

RowPicker::RowPicker(QAbstractItemModel* model, QWidget* parent) : RowArea(model, parent) {
  setSelectionMode(ExtendedSelection);
  setSelectionBehavior(SelectItems);
  connect(&Numbers(), &RowNumbers::Pressed, this, &RowPicker::PressNumber);
  connect(&Numbers(), &RowNumbers::CornerPressed, this, [this] { selectAll(); });
  connect(&Names(), &QHeaderView::sectionPressed, this,
          [this](int nColumn) { SelectColumn(nColumn, QGuiApplication::keyboardModifiers()); });
  connect(&Names(), &QHeaderView::sectionEntered, this,
          [this](int nColumn) { SelectColumn(nColumn, Qt::ShiftModifier); });
}

bool RowPicker::RowsSelected() const {
  const int nColumns = model()->columnCount();
  if (nColumns == 1 && !m_bRowsChosen) return false;
  return std::ranges::any_of(selectionModel()->selection(), [&](const auto& range) {
    return range.left() == 0 && range.right() == nColumns - 1 && range.top() < Places();
  });
}

void RowPicker::SelectRow(int nRow) {
  const QModelIndex index = model()->index(nRow, ColumnHere());
  if (!index.isValid()) return;
  ForgetScroll();
  m_bRowsChosen = true;
  m_anchor = index;
  selectionModel()->setCurrentIndex(index, Selection::ClearAndSelect | Selection::Rows);
  scrollTo(index);
}

void RowPicker::SelectColumn(int nColumn, Qt::KeyboardModifiers modifiers) {
  const QModelIndex index =
      model()->index(currentIndex().isValid() ? currentIndex().row() : TopRow(), nColumn);
  if (!index.isValid()) return;
  m_bRowsChosen = false;
  const bool bExtends = modifiers.testFlag(Qt::ShiftModifier) && m_anchor.isValid();
  if (!bExtends) m_anchor = index;
  const auto command =
      modifiers.testFlag(Qt::ControlModifier) ? Selection::Toggle : Selection::ClearAndSelect;
  const int nLast = model()->rowCount() - 1;
  selectionModel()->select(
      Between(model()->index(0, m_anchor.column()), model()->index(nLast, nColumn)), command);
  selectionModel()->setCurrentIndex(index, Selection::NoUpdate);
}

int RowPicker::ColumnHere() const {
  const bool bHere = currentIndex().isValid() && !isIndexHidden(currentIndex());
  return bHere ? currentIndex().column() : FirstShown();
}

void RowPicker::GoTo(int nRow, int nColumn) {
  if (nColumn >= 0 && nColumn < Names().count() && Names().isSectionHidden(nColumn)) {
    nColumn = ColumnHere();
  }
  const QModelIndex index = model()->index(nRow, nColumn);
  if (!index.isValid()) return;
  ForgetScroll();
  m_bRowsChosen = false;
  m_anchor = index;
  selectionModel()->setCurrentIndex(index, Selection::ClearAndSelect);
  scrollTo(index);
}

void RowPicker::PressNumber(int nRow, Qt::KeyboardModifiers modifiers, bool bDragged) {
  ForgetScroll();
  setFocus(Qt::MouseFocusReason);
  const QModelIndex index = model()->index(nRow, ColumnHere());
  if (!index.isValid()) return;
  m_bRowsChosen = true;
  const bool bExtends = bDragged || modifiers.testFlag(Qt::ShiftModifier);
  if (!bExtends || !m_anchor.isValid()) m_anchor = index;
  const int nLastColumn = model()->columnCount() - 1;
  const auto [nTop, nBottom] = std::minmax({m_anchor.row(), nRow});
  const QItemSelection rows(model()->index(nTop, 0), model()->index(nBottom, nLastColumn));
  const bool bToggles = modifiers.testFlag(Qt::ControlModifier) && !bExtends;
  const auto command = bToggles                                  ? Selection::Toggle
                       : modifiers.testFlag(Qt::ControlModifier) ? Selection::SelectCurrent
                                                                 : Selection::ClearAndSelect;
  selectionModel()->select(rows, command);
  selectionModel()->setCurrentIndex(index, Selection::NoUpdate);
}

void RowPicker::selectAll() {
  if (!HasRows() || model()->columnCount() == 0) return;
  m_bRowsChosen = true;
  selectionModel()->select(
      QItemSelection(model()->index(0, 0),
                     model()->index(model()->rowCount() - 1, model()->columnCount() - 1)),
      Selection::ClearAndSelect);
}

// ---- keys and mouse

void RowPicker::keyPressEvent(QKeyEvent* event) {
  ForgetScroll();
  const int nKey = event->key();
  const bool bAlone = nKey == Qt::Key_Shift || nKey == Qt::Key_Control || nKey == Qt::Key_Alt ||
                      nKey == Qt::Key_Meta || nKey == Qt::Key_AltGr;
  if (bAlone) return event->ignore();  // what is selected stays what it is
  if (event->key() == Qt::Key_Space && event->modifiers() == Qt::ShiftModifier) {
    return SelectRow(currentIndex().row());
  }
  if (event->key() == Qt::Key_Space && event->modifiers() == Qt::ControlModifier) {
    return SelectColumn(currentIndex().column());
  }
  if (event->matches(QKeySequence::SelectAll)) return selectAll();
  m_bRowsChosen = false;
  QAbstractItemView::keyPressEvent(event);
}

void RowPicker::mousePressEvent(QMouseEvent* event) {
  ForgetScroll();
  // The secondary button opens the menu on what is selected already.
  if (event->button() == Qt::RightButton && selectionModel()->isSelected(indexAt(event->pos()))) {
    return;
  }
  m_bRowsChosen = false;
  QAbstractItemView::mousePressEvent(event);
}

QModelIndex RowPicker::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  const int nRows = model()->rowCount();
  const int nFirst = NextVisible(-1, 1);
  const int nLast = NextVisible(Names().count(), -1);
  if (nRows == 0 || nFirst < 0 || nLast < 0) return {};
  if (!currentIndex().isValid()) return model()->index(0, Names().logicalIndex(nFirst));

  const bool bControl = modifiers.testFlag(Qt::ControlModifier);
  std::int64_t row = currentIndex().row();
  int nVisual = Names().visualIndex(currentIndex().column());
  const auto step = [&](int nStep) {
    const int nNext = NextVisible(nVisual, nStep);
    if (nNext >= 0) nVisual = nNext;
    return nNext >= 0;
  };
  switch (action) {
    case MoveUp:
      row = bControl ? 0 : row - 1;
      break;
    case MoveDown:
      row = bControl ? nRows - 1 : row + 1;
      break;
    case MoveLeft:
      if (bControl) nVisual = nFirst;
      step(-1);
      break;
    case MoveRight:
      if (bControl) nVisual = nLast;
      step(1);
      break;
    case MoveHome:
      nVisual = nFirst;
      if (bControl) row = 0;
      break;
    case MoveEnd:
      nVisual = nLast;
      if (bControl) row = nRows - 1;
      break;
    case MovePageUp:
      row -= RowsInSight();
      break;
    case MovePageDown:
      row += RowsInSight();
      break;
    case MoveNext:
      if (!step(1) && row + 1 < nRows) {
        nVisual = nFirst;
        ++row;
      }
      break;
    case MovePrevious:
      if (!step(-1) && row > 0) {
        nVisual = nLast;
        --row;
      }
      break;
  }
  const auto nRow = static_cast<int>(std::clamp<std::int64_t>(row, 0, nRows - 1));
  return model()->index(nRow, Names().logicalIndex(nVisual));
}

int RowPicker::NextVisible(int nVisual, int nStep) const {
  for (nVisual += nStep; nVisual >= 0 && nVisual < Names().count(); nVisual += nStep) {
    if (!Names().isSectionHidden(Names().logicalIndex(nVisual))) return nVisual;
  }
  return -1;
}

Selection::SelectionFlags RowPicker::selectionCommand(const QModelIndex& index,
                                                      const QEvent* event) const {
  if (event && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<const QKeyEvent*>(event);
    // The toolkit would leave the selection alone with Ctrl, and Shift+Ctrl+End is to extend it.
    const bool bExtends = key->modifiers() == (Qt::ShiftModifier | Qt::ControlModifier);
    if (bExtends) return Selection::SelectCurrent;
  }
  return RowArea::selectionCommand(index, event);
}

void RowPicker::setSelection(const QRect& rect, Selection::SelectionFlags command) {
  // The toolkit tells where a selection begins in pixels, which far rows have none of: that corner
  // is not looked at. It ends at the pointer, or at the cell to which a key has just gone.
  const QPoint end = rect.bottomRight();
  const bool bAtCurrent = currentIndex().isValid() && end == visualRect(currentIndex()).center();
  const QModelIndex cell = bAtCurrent ? currentIndex() : CellNear(end);
  if (!cell.isValid()) return;
  if (!command.testFlag(Selection::Current) || !m_anchor.isValid()) m_anchor = cell;
  selectionModel()->select(Between(m_anchor, cell), command);
}

QItemSelection RowPicker::Between(const QModelIndex& one, const QModelIndex& other) const {
  const auto [nTop, nBottom] = std::minmax({one.row(), other.row()});
  const auto [nFirst, nLast] =
      std::minmax({Names().visualIndex(one.column()), Names().visualIndex(other.column())});
  std::vector<int> columns;
  for (int nVisual = nFirst; nVisual <= nLast; ++nVisual) {
    columns.push_back(Names().logicalIndex(nVisual));
  }
  std::ranges::sort(columns);
  QItemSelection cells;
  for (std::size_t n = 0; n < columns.size();) {
    std::size_t nEnd = n + 1;
    while (nEnd < columns.size() && columns[nEnd] == columns[nEnd - 1] + 1) ++nEnd;
    cells.select(model()->index(nTop, columns[n]), model()->index(nBottom, columns[nEnd - 1]));
    n = nEnd;
  }
  return cells;
}

// ---- telling

void RowPicker::focusInEvent(QFocusEvent* event) {
  QAbstractItemView::focusInEvent(event);
  if (currentIndex().isValid()) TellFocus(*this);
}

void RowPicker::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QAbstractItemView::currentChanged(current, previous);
  Numbers().update();
  if (current.isValid() && hasFocus()) TellFocus(*this);
}

void RowPicker::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                            const QList<int>& roles) {
  RowArea::dataChanged(topLeft, bottomRight, roles);
  const QModelIndex current = currentIndex();
  if (current.isValid() && hasFocus() &&
      QItemSelectionRange(topLeft, bottomRight).contains(current)) {
    TellChange(*this);
  }
}

}  // namespace orvane::controls
