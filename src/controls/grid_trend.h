// The trend beside a grid's rows: the switch between both in the grid's strip, and the trend's
// view, which is made when it is first looked at and follows the rows from then on. Part of the
// grid's window; user-interface thread.
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

#include "trend/trend_view.h"

class QSplitter;
class QToolButton;

namespace orvane::controls {

class RowView;
class StatusStrip;

class GridTrend : public QObject {
 public:
  /// The trend stands in the splitter in the place of the rows.
  GridTrend(QSplitter& splitter, RowView& rows, StatusStrip& status);

  bool IsShown() const { return m_bShown; }
  /// Shows the trend in the place of the rows, or the rows again; the times of several selected
  /// rows are in sight.
  void Show(bool bTrend);
  void AskUnits(std::function<trend::TrendView::Units()> ask) { m_askUnits = std::move(ask); }
  /// Called with the times in sight when they are to be the rows' range.
  void OnRange(std::function<void(const trend::TrendSpan&)> handler) {
    m_range = std::move(handler);
  }

 private:
  trend::TrendView& View();
  void OfferTrend();
  void RowsChanged();
  void GiveRows();
  std::optional<trend::TrendSpan> SelectedSpan() const;

  QSplitter& m_splitter;
  RowView& m_rows;
  StatusStrip& m_status;
  QToolButton* m_asRows;
  QToolButton* m_asTrend;
  trend::TrendView* m_view = nullptr;
  QTimer m_soon;
  bool m_bShown = false;
  bool m_bStale = true;  ///< the trend has not been given the rows as they are
  std::function<trend::TrendView::Units()> m_askUnits;
  std::function<void(const trend::TrendSpan&)> m_range;
};

}  // namespace orvane::controls
