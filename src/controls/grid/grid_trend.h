// The trend of a grid's rows, in their place: its view is made when it is first looked at and
// follows the rows from then on. Part of the grid's window; user-interface thread.
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

#include "controls/view/span_rows.h"
#include "trend/trend_view.h"

class QSplitter;

namespace orvane::controls {

class RowView;
class StatusStrip;

class GridTrend : public QObject {
 public:
  /// The trend stands in the splitter in the place of the rows.
  GridTrend(QSplitter& splitter, RowView& rows, StatusStrip& status);

  bool IsShown() const { return m_bShown; }
  /// The view, while it is shown.
  QWidget* Shown() const { return m_bShown ? m_view : nullptr; }
  /// True where the rows have times and numbers, and while the trend is shown.
  bool CanShow() const;
  /// Gives the keys to the trend that is shown.
  void TakeKeys() { View().setFocus(); }
  /// Called when the form is asked for from the trend.
  void OnFormKey(std::function<void()> handler) { m_formKey = std::move(handler); }
  /// Called when it is shown or not any more, and when there are other rows.
  void OnChanged(std::function<void()> handler) { m_changed = std::move(handler); }
  /// Shows the trend in the place of the rows, or the rows again; the times of several selected
  /// rows are in sight.
  void Show(bool bTrend);
  void AskUnits(std::function<trend::TrendView::Units()> ask) { m_askUnits = std::move(ask); }
  /// Asked for the times that the rows are those of, where the trend is to show all of these.
  void AskReach(std::function<std::optional<trend::TrendSpan>()> ask) {
    m_askReach = std::move(ask);
  }
  /// The units are asked for anew with the next rows.
  void ForgetUnits() {
    if (m_view) m_view->ForgetUnits();
  }
  /// Called with the times in sight when they are to be the rows' range.
  void OnRange(std::function<void(const trend::TrendSpan&)> handler) {
    m_range = std::move(handler);
  }

 private:
  trend::TrendView& View();
  void TellOfChange() const;
  void RowsChanged();
  void GiveRows();
  /// Marks the times of the rows that are selected.
  void MarkSelected();
  /// Selects the rows of the times that were marked, or none.
  void SelectMarked();
  std::optional<trend::TrendSpan> SelectedSpan() const;

  QSplitter& m_splitter;
  RowView& m_rows;
  StatusStrip& m_status;
  trend::TrendView* m_view = nullptr;
  SpanRows m_spanRows;
  std::optional<trend::TrendSpan> m_marked;  ///< by the user, in the trend
  bool m_bSelecting = false;
  QTimer m_soon;
  bool m_bShown = false;
  bool m_bStale = true;  ///< the trend has not been given the rows as they are
  std::function<void()> m_changed;
  std::function<void()> m_formKey;
  std::function<trend::TrendView::Units()> m_askUnits;
  std::function<std::optional<trend::TrendSpan>()> m_askReach;
  std::function<void(const trend::TrendSpan&)> m_range;
};

}  // namespace orvane::controls
