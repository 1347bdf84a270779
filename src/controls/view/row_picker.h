// The current cell and the selection of a grid, by keys and mouse. A selection is kept in ranges
// and made from the cell where it began to the cell where it ends, by their numbers: neither the
// number of rows between them nor the pixels matter.
// Base of the view of the rows; user-interface thread.
#pragma once

#include <QPersistentModelIndex>

#include "controls/view/row_area.h"

namespace orvane::controls {

class RowPicker : public RowArea {
 public:
  RowPicker(QAbstractItemModel* model, QWidget* parent);

  bool HasRows() const { return model()->rowCount() > 0; }
  /// True when whole rows are selected; the empty one at the end is none. In a grid of one column a
  /// selected cell is no row.
  bool RowsSelected() const;
  /// Whether the selection was made of whole rows.
  bool RowsChosen() const { return m_bRowsChosen; }
  void RowsChosen(bool bChosen) { m_bRowsChosen = bChosen; }
  /// Makes the row's cell in the current column the current one and selects the row.
  void SelectRow(int nRow);
  /// Makes the column's cell in the current row the current one and selects the column.
  void SelectColumn(int nColumn, Qt::KeyboardModifiers modifiers = {});
  /// Makes the cell the only one that is selected, and shows it; in place of one of a hidden column
  /// that of the current column.
  void GoTo(int nRow, int nColumn);

  void selectAll() override;
  /// Does nothing: a search would read every row.
  void keyboardSearch(const QString&) override {}

 protected:
  /// Rows that are there; behind them stands at most an empty one.
  virtual int Places() const { return model()->rowCount(); }
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                   const QList<int>& roles = {}) override;
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  QItemSelectionModel::SelectionFlags selectionCommand(
      const QModelIndex& index, const QEvent* event = nullptr) const override;
  void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;

 private:
  void PressNumber(int nRow, Qt::KeyboardModifiers modifiers, bool bDragged);
  /// The cells between two, in the order in which the columns stand.
  QItemSelection Between(const QModelIndex& one, const QModelIndex& other) const;
  int NextVisible(int nVisual, int nStep) const;
  int ColumnHere() const;

  QPersistentModelIndex m_anchor;
  bool m_bRowsChosen = false;
};

}  // namespace orvane::controls
