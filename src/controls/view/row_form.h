// The current row as a form beside the rows: names and values one below the other, for tables that
// are wider than a screen. It follows the current cell, and leads it; values are edited in it as in
// their cells. Part of the grid's window;
// user-interface thread.
#pragma once

#include <QSortFilterProxyModel>
#include <QWidget>
#include <functional>

class QLabel;
class QLineEdit;
class QTableView;
class QToolButton;

namespace orvane::controls {

class CellDelegate;
class FormDelegate;
class RowFormModel;
class RowView;

class RowForm : public QWidget {
 public:
  /// Hidden at first. Adds itself to what can be done to the rows.
  RowForm(RowView& rows, QWidget* parent);

  /// Shows the form of the current row, with the keys in it, or hides it and gives them back.
  void Show(bool bShow);
  /// What edits its values.
  CellDelegate& Cells() const;
  /// Called when it is shown, and when it is not any more.
  void OnShown(std::function<void()> handler) { m_shown = std::move(handler); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AddHead();
  void FollowRows();
  void FollowLine();
  void Step(int nRows);
  QModelIndex CurrentCell() const;
  bool CanEdit() const;
  void EditLine();
  void SetNull();
  void TakeTyped() { CloseEditors(true); }
  void CloseEditors(bool bTake);
  void GoToCell();
  void CopyValue() const;

  RowView& m_rows;
  RowFormModel* m_model;
  QSortFilterProxyModel* m_found;
  QLabel* m_which;
  QToolButton* m_previous;
  QToolButton* m_next;
  QLineEdit* m_filter;
  QTableView* m_lines;
  FormDelegate* m_cells;
  std::function<void()> m_shown;
  bool m_bFollowing = false;  ///< one of both follows the other
};

}  // namespace orvane::controls
