// The rows of a grid on the screen: what they show, how wide their columns are, what goes to the
// clipboard, and the state of looking at them. Nothing it does costs more for a million rows than
// for a thousand.
#pragma once

#include <functional>
#include <utility>

#include "controls/order/row_arranger.h"
#include "controls/order/rows_states.h"
#include "controls/view/accessible_rows.h"
#include "controls/view/grid_commands.h"
#include "controls/view/kept_columns.h"
#include "controls/view/row_copier.h"
#include "controls/view/row_model.h"
#include "controls/view/row_picker.h"

namespace orvane::controls {

class RowView : public RowPicker {
  Q_OBJECT

 public:
  explicit RowView(QWidget* parent = nullptr);

  RowModel& Model() { return *m_model; }
  const RowModel& Model() const { return *m_model; }
  /// What can be done to the rows, in their menu and by keys.
  GridCommands& Commands() { return m_commands; }
  /// How the columns are laid out, for the same columns and for those that come.
  const KeptColumns& Columns() const { return *m_columns; }
  KeptColumns& Columns() { return *m_columns; }
  /// Lays the columns out, those that are shown too.
  void Layout(ColumnLayout layout);
  /// Lays the columns out as they were fetched.
  void ForgetColumns() { Layout({}); }
  /// One flag for each column. What is hidden is neither copied nor gone to; the current cell goes
  /// to a column that is seen.
  std::vector<bool> HiddenColumns() const;
  void HiddenColumns(const std::vector<bool>& hidden);
  /// The columns up to this one stay in sight; none does for -1.
  void HoldColumns(int nUpTo);
  /// Shows a column that is hidden.
  void Reveal(int nColumn);

  /// Shows the rows, or none, as a state left them; without one from the first cell on, with the
  /// columns as wide as their first rows need, or as they were if they are the same columns.
  /// Raises no signal of the selection.
  void ShowRows(platform::RecordsetPtr rs, CellFormat format, const RowsState* state = nullptr);
  /// The state of looking at the rows now; its SQL text is left empty.
  RowsState State() const;

  /// How the rows stand, or are going to.
  const Arrangement& Arranged() const { return m_arrangement; }
  /// Sorts by the columns, the first one counting most; none is the order of the recordset.
  void Sort(std::vector<SortColumn> columns);
  /// Sorts by one column, or with bAdd by it after those that are sorted by.
  void SortBy(int nColumn, bool bAscending, bool bAdd = false);
  void Filter(std::vector<ColumnFilter> filters);
  /// The next rows come sorted from the server; none when they do not.
  void SortedByServer(std::vector<SortColumn> columns);
  /// Arranges the rows as they are told to stand, those that came since included; afterwards the
  /// keys are where they were, or with bFromTop in the first row.
  void ArrangeNow(bool bFromTop = false) { Arrange(bFromTop, std::nullopt); }
  bool Arranging() const { return m_arranger.Busy(); }
  /// Asked first where rows are to be sorted: true when that is done elsewhere.
  void OnSort(std::function<bool(const std::vector<SortColumn>&)> handler) {
    m_sortElsewhere = std::move(handler);
  }
  /// Nothing can be done to the rows any more, nor sorted elsewhere.
  void Abandon();
  /// Called after an arrow beside a column's name was clicked.
  void OnArrowClicked(std::function<void()> handler) { m_arrowClicked = std::move(handler); }
  /// Called when work on an arrangement begins and ends, with a sentence where nothing came of it.
  void OnArranged(std::function<void(const QString& sWhyNot)> handler) {
    m_arranged = std::move(handler);
  }

  /// Ends what is worked out for an order or a filter; the rows stand as they did. False where
  /// nothing is. Escape does it too.
  bool StopArranging();
  /// Called when it was ended so.
  void OnArrangingStopped(std::function<void()> handler) { m_stopped = std::move(handler); }

  /// What RowCopier does.
  void Copy(bool bNames) { m_copier.Copy(bNames); }
  void CopyAs(exports::Form form) { m_copier.CopyAs(form); }
  RowCopier& Copier() { return m_copier; }

 protected:
  int Places() const override { return m_model->Places(); }
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  /// Width that a column's cells need, measured in the rows in sight and a few more.
  int sizeHintForColumn(int nColumn) const override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

 private:
  /// With the row that is to be the first in sight then; without one the current row stays where it
  /// is in the window.
  void Arrange(bool bFromTop, const std::optional<FirstInSight>& first);
  void TakeOrder(std::shared_ptr<const RowOrder> order, bool bFromTop,
                 const std::optional<FirstInSight>& first);
  void AddCommands();
  void OpenMenu(QPoint where, void (GridCommands::*fill)(QMenu&) const = &GridCommands::Fill);
  void OpenNamesMenu(QPoint at);
  void LeaveHidden();
  void FitColumns();
  std::vector<int> ColumnWidths() const;
  bool ColumnWidths(const std::vector<int>& widths);
  QStringList ColumnSignature() const;
  void Restore(const RowsState& state);
  /// Where the keys begin in rows fetched anew: in their column, where the columns are the same.
  void BeginInFirstRow() {
    const bool bKnown = m_nLastColumn >= 0 && m_lastColumns == ColumnSignature();
    selectionModel()->setCurrentIndex(model()->index(0, bKnown ? m_nLastColumn : FirstShown()),
                                      QItemSelectionModel::NoUpdate);
  }

  AccessibleRowsOffer m_accessible;
  RowModel* m_model;
  KeptColumns* m_columns;
  RowCopier m_copier{*this};
  GridCommands m_commands;
  RowArranger m_arranger;
  Arrangement m_arrangement;
  Arrangement m_standing;  ///< how the rows stand while another arrangement is worked out
  std::function<bool(const std::vector<SortColumn>&)> m_sortElsewhere;
  std::function<void(const QString&)> m_arranged;
  std::function<void()> m_stopped;
  std::function<void()> m_arrowClicked;
  QStringList m_lastColumns;
  std::vector<int> m_lastWidths;
  int m_nLastColumn = -1;  ///< of the current cell among them
};

}  // namespace orvane::controls
