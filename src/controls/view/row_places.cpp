#include "controls/view/row_places.h"

#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>

namespace orvane::controls {

RowPlaces::RowPlaces(const RowPicker& view, const RowModel& model)
    : m_nColumn(view.currentIndex().column()),
      m_nTopRow(view.TopRow()),
      m_nPlaces(model.Places()),
      m_bAllRows(!model.Order() || model.Order()->Count(model.Recordset()->RecordCount()) ==
                                       model.Recordset()->RecordCount()),
      m_bRowsChosen(view.RowsChosen()) {
  if (view.currentIndex().isValid()) {
    m_current = model.RecordRow(view.currentIndex().row());
    m_nCurrentBelowTop = view.currentIndex().row() - m_nTopRow;
  }
  int nRows = 0;
  for (const QItemSelectionRange& range : view.selectionModel()->selection()) {
    const bool bAll = m_nPlaces > 1 && range.top() == 0 && range.bottom() + 1 >= m_nPlaces;
    if (bAll && (m_bAllRows || range.height() > kMostFollowing)) {
      m_wholeColumns.emplace_back(range.left(), range.right());
      continue;
    }
    if (range.height() > kMostFollowing - nRows) {
      m_selected.clear();
      m_wholeColumns.clear();
      return;
    }
    nRows += range.height();
    for (int nRow = range.top(); nRow <= range.bottom(); ++nRow) {
      m_selected.push_back({model.RecordRow(nRow), range.left(), range.right()});
    }
  }
}

QItemSelection RowPlaces::Selection(const RowModel& model) const {
  QItemSelection selection;
  const int nLast = model.rowCount() - 1;
  const bool bAreAll = m_bAllRows || model.Places() == m_nPlaces;
  for (const auto& [nLeft, nRight] : m_wholeColumns) {
    if (bAreAll && nLast >= 0) selection.select(model.index(0, nLeft), model.index(nLast, nRight));
  }
  struct Found {
    int nPlace;
    int nLeft;
    int nRight;
  };
  std::vector<Found> found;
  for (const Selected& selected : m_selected) {
    const int nPlace = model.PlaceOf(selected.row);
    if (nPlace >= 0) found.push_back({nPlace, selected.nLeft, selected.nRight});
  }
  std::ranges::sort(found, [](const Found& one, const Found& other) {
    return std::tuple(one.nLeft, one.nRight, one.nPlace) <
           std::tuple(other.nLeft, other.nRight, other.nPlace);
  });
  for (std::size_t n = 0; n < found.size();) {
    std::size_t nEnd = n + 1;
    while (nEnd < found.size() && found[nEnd].nLeft == found[n].nLeft &&
           found[nEnd].nRight == found[n].nRight &&
           found[nEnd].nPlace == found[nEnd - 1].nPlace + 1) {
      ++nEnd;
    }
    selection.select(model.index(found[n].nPlace, found[n].nLeft),
                     model.index(found[nEnd - 1].nPlace, found[n].nRight));
    n = nEnd;
  }
  return selection;
}

void RowPlaces::Restore(RowPicker& view, const RowModel& model,
                        const std::optional<FirstInSight>& first) const {
  const QSignalBlocker quiet(view.selectionModel());
  view.selectionModel()->select(Selection(model), QItemSelectionModel::ClearAndSelect);
  int nPlace = m_current < 0 ? -1 : model.PlaceOf(m_current);
  const bool bFollows = nPlace >= 0;
  // The row of the current cell was filtered out: the keys go on from the first one that is seen.
  if (nPlace < 0 && m_nColumn >= 0 && model.rowCount() > 0) nPlace = 0;
  view.selectionModel()->setCurrentIndex(model.index(nPlace, m_nColumn),
                                         QItemSelectionModel::NoUpdate);
  view.RowsChosen(m_bRowsChosen);
  if (first) {
    const int nFirst = first->row < 0 ? -1 : model.PlaceOf(first->row);
    view.verticalScrollBar()->setValue(nFirst < 0 ? first->nPlace : nFirst);
    return;
  }
  const bool bWasInSight = m_nCurrentBelowTop >= 0 && m_nCurrentBelowTop < view.RowsInSight();
  view.verticalScrollBar()->setValue(!bFollows     ? 0
                                     : bWasInSight ? nPlace - m_nCurrentBelowTop
                                                   : m_nTopRow);
}

}  // namespace orvane::controls
