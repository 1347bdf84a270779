// The drawing of a trend: lines over one time axis, a value axis for each unit, and a cursor that
// stands at an instant. Looked at with mouse and keys. Part of the trend's view; user-interface
// thread.
#pragma once

#include <qcustomplot.h>

#include <functional>
#include <optional>

#include "trend/marked_times.h"
#include "trend/plot_hands.h"
#include "trend/trend_data.h"
#include "trend/trend_line_plot.h"
#include "trend/value_axes.h"
#include "zones/time_zone.h"

namespace orvane::trend {

class TrendAxisTicker;

class TrendPlot : public QCustomPlot {
 public:
  explicit TrendPlot(QWidget* parent = nullptr);

  /// Draws the lines, which the caller keeps as long as they are drawn, all of their times in
  /// sight.
  void Lines(const std::vector<TrendLine>& lines, const zones::TimeZone& zone);
  /// Draws nothing, and looks at no lines any more.
  void NoLines();
  void LineShown(std::size_t line, bool bShown);
  bool LineShown(std::size_t line) const { return m_plots[line]->visible(); }
  void Kind(LineKind kind);
  /// Draws every point: what the drawing is held against.
  void DrawAllPoints(bool bAll);

  /// The times in sight.
  QCPRange Times() const { return xAxis->range(); }
  void Times(const QCPRange& range);
  /// Times that count as all of them, with or without points. Before the lines.
  void Reach(const std::optional<QCPRange>& times) { m_reach = times; }
  /// The times from the first point to the last one, and all that are within reach.
  QCPRange AllTimes() const;
  /// By a factor, below 1 to see less; the time stays where it is on the screen.
  void Zoom(double factor, double around);
  /// By a part of what is in sight, above 0 to later times.
  void Pan(double part);

  /// The value axes, which are fitted to what is in sight unless a range was chosen.
  const ValueAxes& Values() const { return m_values; }
  void ChooseValues(const ValueRanges& ranges);
  /// All times and all values, whatever was chosen.
  void ShowAll();

  /// The times that are marked. Marking them tells nobody.
  const std::optional<QCPRange>& Marked() const { return m_mark.Times(); }
  void Mark(const std::optional<QCPRange>& times);
  /// Called when the user has marked times, or takes the mark away.
  void OnMarked(std::function<void()> handler) { m_marked = std::move(handler); }

  std::optional<double> Cursor() const { return m_cursor; }
  void Cursor(double time);
  /// To the next time later, or the one before, at which a line in sight has a point.
  void StepCursor(bool bLater);

  /// The time at a column of pixels, as exactly as pixels tell it.
  double TimeAtPixel(int nColumn) const;

  // What the hands do, beside the above: they mark from one instant on, unless there is a beginning
  // to go on from, to another, and tell when they are done; and show the values that they have
  // moved.
  void MarkFrom(double time, bool bAnew);
  void MarkTo(double time);
  void TellOfMark();
  void ShowValues();

  void OnCursor(std::function<void()> handler) { m_cursorMoved = std::move(handler); }
  void OnTimes(std::function<void()> handler) { m_timesChanged = std::move(handler); }

  QSize minimumSizeHint() const override {
    // Some lines of the drawing above those of the times.
    constexpr QSize kLetters(23, 7);
    return {kLetters.width() * fontMetrics().averageCharWidth(),
            kLetters.height() * fontMetrics().height()};
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void ApplyLook();
  void LookOf(QCPAxis* axis, const QColor& grid) const;
  /// The value axes from the lowest to the highest value in sight.
  void FitValues();
  void ShowCursor();

  const std::vector<TrendLine>* m_lines = nullptr;
  std::vector<TrendLinePlot*> m_plots;
  ValueAxes m_values;
  QSharedPointer<TrendAxisTicker> m_ticker;
  QCPItemStraightLine* m_cursorLine;
  MarkedTimes m_mark;
  std::optional<QCPRange> m_reach;
  PlotHands m_hands;
  int m_nWidthForMarks = 0;
  bool m_bAgain = false;  ///< drawing once more, with the marks of time that there is room for
  std::optional<double> m_cursor;
  LineKind m_kind = LineKind::Straight;
  std::function<void()> m_cursorMoved;
  std::function<void()> m_timesChanged;
  std::function<void()> m_marked;
};

}  // namespace orvane::trend
