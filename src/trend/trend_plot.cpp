#include "trend/trend_plot.h"

#include <algorithm>
#include <cmath>

#include "trend/trend_axis_ticker.h"
#include "trend/trend_look.h"

namespace orvane::trend {

namespace {

/// A millisecond in sight is as near as it gets, and all times there are as far.
constexpr double kLeastTimes = 1'000;
constexpr double kMostTimes = 4e17;
constexpr const char* kCursorLayer = "cursor";

/// Above the lines, and drawn without them.
void AddCursorLayer(QCustomPlot& plot) {
  plot.addLayer(kCursorLayer, plot.layer("main"), QCustomPlot::limAbove);
  plot.layer(kCursorLayer)->setMode(QCPLayer::lmBuffered);
}

/// The time as exactly as pixels tell it, in digits that can be read.
double Rounded(double time, double perPixel) {
  const double unit = std::pow(10, std::floor(std::log10(std::max(1.0, perPixel))));
  return std::round(time / unit) * unit;
}

}  // namespace

TrendPlot::TrendPlot(QWidget* parent)
    : QCustomPlot(parent),
      m_values(*axisRect()),
      m_cursorLine((AddCursorLayer(*this), new QCPItemStraightLine(this))),
      m_mark(*this, kCursorLayer),
      m_hands(*this, m_values) {
  setObjectName("trendPlot");
  setAccessibleName("Trend");
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setNoAntialiasingOnDrag(true);
  setAntialiasedElements(QCP::aeNone);
  m_cursorLine->setLayer(kCursorLayer);
  m_cursorLine->setVisible(false);
  yAxis->setVisible(false);
  connect(this, &QCustomPlot::beforeReplot, this, [this] {
    m_values.LeaveRoom(width(), fontMetrics());
    m_nWidthForMarks = axisRect()->width();
    if (!m_ticker) return;
    m_ticker->Room(m_nWidthForMarks / fontMetrics().horizontalAdvance(" 2026-11-22 "));
  });
  connect(this, &QCustomPlot::afterReplot, this, [this] {
    // Other numbers at the sides have left other room for the times: once more, with as many.
    if (m_bAgain || axisRect()->width() == m_nWidthForMarks) return;
    m_bAgain = true;
    replot();
    m_bAgain = false;
  });
  // Room for most numbers from the start: what is zoomed must not move aside.
  axisRect()->setMinimumMargins(
      {fontMetrics().averageCharWidth() * 10, 0, fontMetrics().averageCharWidth() * 4, 0});
  ApplyLook();
}

void TrendPlot::Lines(const std::vector<TrendLine>& lines, const zones::TimeZone& zone) {
  clearPlottables();
  m_plots.clear();
  m_values.Clear();
  m_lines = &lines;
  m_ticker.reset(new TrendAxisTicker(zone));
  xAxis->setTicker(m_ticker);
  for (std::size_t n = 0; n < lines.size(); ++n) {
    auto* plot = new TrendLinePlot(xAxis, m_values.For(lines[n].sUnit), lines[n].series, n);
    plot->setName(QString::fromStdString(lines[n].sName));
    plot->Kind(m_kind);
    m_plots.push_back(plot);
  }
  ApplyLook();
  m_cursor.reset();
  m_cursorLine->setVisible(false);
  Times(AllTimes());
}

void TrendPlot::NoLines() {
  clearPlottables();
  m_plots.clear();
  m_lines = nullptr;
}

void TrendPlot::ApplyLook() {
  const TrendLook look(palette());
  setBackground(look.Ground());
  for (QCPAxis* axis : axisRect()->axes()) LookOf(axis, look.Grid());
  for (TrendLinePlot* plot : m_plots) plot->Look(look);
  m_cursorLine->setPen(QPen(look.Text(), 1, Qt::DashLine));
  m_mark.Look(palette());
}

void TrendPlot::LookOf(QCPAxis* axis, const QColor& grid) const {
  const QColor text = palette().color(QPalette::Text);
  axis->setBasePen(QPen(text));
  axis->setTickPen(QPen(text));
  axis->setSubTickPen(QPen(text));
  axis->setTickLabelColor(text);
  axis->setLabelColor(text);
  axis->setTickLabelFont(font());
  axis->setLabelFont(font());
  axis->grid()->setPen(QPen(grid));
  axis->grid()->setZeroLinePen(QPen(grid));
}

void TrendPlot::LineShown(std::size_t line, bool bShown) {
  m_plots[line]->setVisible(bShown);
  FitValues();
  replot();
}

void TrendPlot::Kind(LineKind kind) {
  m_kind = kind;
  for (TrendLinePlot* plot : m_plots) plot->Kind(kind);
  replot();
}

void TrendPlot::DrawAllPoints(bool bAll) {
  for (TrendLinePlot* plot : m_plots) plot->DrawAllPoints(bAll);
  replot();
}

QCPRange TrendPlot::AllTimes() const {
  double first = std::numeric_limits<double>::infinity();
  double last = -first;
  for (const TrendLine& line : *m_lines) {
    if (line.series.Size() == 0) continue;
    first = std::min(first, line.series.TimeAt(0));
    last = std::max(last, line.series.TimeAt(line.series.Size() - 1));
  }
  if (first > last) return m_reach.value_or(QCPRange(0, kLeastTimes));
  // The last point on the right edge would be half out of sight.
  const double margin = std::max((last - first) * 0.01, kLeastTimes);
  if (!m_reach) return {first - margin, last + margin};
  return {std::min(first - margin, m_reach->lower), std::max(last, m_reach->upper)};
}

void TrendPlot::Times(const QCPRange& range) {
  const double size = std::clamp(range.size(), kLeastTimes, kMostTimes);
  const double centre = std::clamp(range.center(), -kMostTimes, kMostTimes);
  xAxis->setRange(centre - size / 2, centre + size / 2);
  FitValues();
  replot();
  if (m_timesChanged) m_timesChanged();
}

void TrendPlot::Zoom(double factor, double around) {
  const QCPRange range = Times();
  Times({around - (around - range.lower) * factor, around + (range.upper - around) * factor});
}

void TrendPlot::Pan(double part) {
  const QCPRange range = Times();
  Times({range.lower + range.size() * part, range.upper + range.size() * part});
}

void TrendPlot::FitValues() {
  if (m_lines == nullptr) return;
  const QCPRange times = Times();
  for (QCPAxis* axis : m_values.InUse()) {
    Extremes seen;
    for (std::size_t n = 0; n < m_plots.size(); ++n) {
      if (m_plots[n]->valueAxis() != axis || !m_plots[n]->visible()) continue;
      seen.Take((*m_lines)[n].series.Seen(times.lower, times.upper));
    }
    m_values.Fit(axis, seen);
  }
}

void TrendPlot::ShowValues() {
  FitValues();
  replot();
}

void TrendPlot::ChooseValues(const ValueRanges& ranges) {
  m_values.Choose(ranges);
  ShowValues();
}

void TrendPlot::ShowAll() {
  m_values.LetFit();
  Times(AllTimes());
}

void TrendPlot::Mark(const std::optional<QCPRange>& times) {
  m_mark.Times(times);
  layer(kCursorLayer)->replot();
}

void TrendPlot::MarkFrom(double time, bool bAnew) {
  m_mark.Begin(time, bAnew);
}

void TrendPlot::MarkTo(double time) {
  m_mark.To(time);
  layer(kCursorLayer)->replot();
}

void TrendPlot::TellOfMark() {
  if (m_marked) m_marked();
}

void TrendPlot::Cursor(double time) {
  m_cursor = time;
  ShowCursor();
  if (m_cursorMoved) m_cursorMoved();
}

double TrendPlot::TimeAtPixel(int nColumn) const {
  return Rounded(xAxis->pixelToCoord(nColumn), Times().size() / std::max(1, axisRect()->width()));
}

void TrendPlot::ShowCursor() {
  m_cursorLine->setVisible(true);
  m_cursorLine->point1->setCoords(*m_cursor, 0);
  m_cursorLine->point2->setCoords(*m_cursor, 1);
  layer(kCursorLayer)->replot();
}

void TrendPlot::StepCursor(bool bLater) {
  const QCPRange times = Times();
  const double from = m_cursor.value_or(bLater ? times.lower : times.upper);
  std::optional<double> next;
  for (std::size_t n = 0; n < m_plots.size(); ++n) {
    const TrendSeries& series = (*m_lines)[n].series;
    if (!LineShown(n)) continue;
    if (bLater) {
      const auto until = series.LastUntil(from);
      const std::size_t point = until ? *until + 1 : 0;
      if (point >= series.Size()) continue;
      next = std::min(next.value_or(series.TimeAt(point)), series.TimeAt(point));
    } else {
      const std::size_t point = series.From(from);
      if (point == 0) continue;
      next = std::max(next.value_or(series.TimeAt(point - 1)), series.TimeAt(point - 1));
    }
  }
  if (!next) return;
  if (!times.contains(*next)) {
    const double half = times.size() / 2;
    Times({*next - half, *next + half});
  }
  Cursor(*next);
}

void TrendPlot::keyPressEvent(QKeyEvent* event) {
  if (m_lines == nullptr || !m_hands.Press(*event)) QCustomPlot::keyPressEvent(event);
}

void TrendPlot::wheelEvent(QWheelEvent* event) {
  event->accept();
  if (m_lines != nullptr) m_hands.Wheel(*event);
}

void TrendPlot::mousePressEvent(QMouseEvent* event) {
  if (m_lines != nullptr && event->button() == Qt::LeftButton) m_hands.Begin(*event);
}

void TrendPlot::mouseMoveEvent(QMouseEvent* event) {
  if (m_lines != nullptr) m_hands.Move(*event);
}

void TrendPlot::mouseReleaseEvent(QMouseEvent* /*event*/) {
  m_hands.End();
}

void TrendPlot::mouseDoubleClickEvent(QMouseEvent* event) {
  if (m_lines == nullptr) return;
  QCPAxis* axis = m_values.At(event->pos());
  if (!axis) return ShowAll();
  m_values.LetFit(axis);
  ShowValues();
}

void TrendPlot::changeEvent(QEvent* event) {
  QCustomPlot::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    ApplyLook();
    replot(rpQueuedReplot);
  }
}

void TrendPlot::focusInEvent(QFocusEvent* event) {
  QCustomPlot::focusInEvent(event);
  axisRect()->setBackground(QBrush(Qt::NoBrush));
  xAxis->setBasePen(QPen(palette().color(QPalette::Highlight), 2));
  replot(rpQueuedReplot);
}

void TrendPlot::focusOutEvent(QFocusEvent* event) {
  QCustomPlot::focusOutEvent(event);
  xAxis->setBasePen(QPen(palette().color(QPalette::Text)));
  replot(rpQueuedReplot);
}

}  // namespace orvane::trend
