// Moving about in a grid: finding, going to a row, sorting and filtering by keys and by the menu.
// Owned by the grid's window; user-interface thread.
#pragma once

#include <QObject>
#include <functional>

#include "controls/view/filter_row.h"
#include "controls/view/find_bar.h"
#include "controls/view/row_view.h"

namespace orvane::controls {

class GridSeeking final : public QObject {
 public:
  /// Adds its commands to the view's. Says what went wrong, or nothing, through `remark`.
  GridSeeking(RowView& rows, QWidget* parent, std::function<void(const QString&)> remark);

  /// To be placed beneath the rows; hidden until something is sought.
  FindBar* Bar() const { return m_bar; }
  /// Shows what the rows are filtered by, also where that came with their state.
  void ShowArrangement();

 private:
  void AddFinding();
  void AddSorting();
  void AddFiltering();
  void GoToRow();
  void ShowFilterRow(bool bShow);
  void FilterByCurrent();
  void ClearFilter();

  RowView& m_rows;
  FindBar* m_bar;
  FilterRow* m_filter;
  std::function<void(const QString&)> m_remark;
};

}  // namespace orvane::controls
