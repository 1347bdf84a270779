#include "trend/trend_plot.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "trend/trend_axis_ticker.h"
#include "trend/trend_look.h"

namespace orvane::trend {

namespace {

constexpr double kZoomStep = 0.8;
constexpr double kPanStep = 0.1;
/// A millisecond in sight is as near as it gets, and all times there are as far.
constexpr double kLeastTimes = 1'000;
constexpr double kMostTimes = 4e17;
/// What an axis can show.
constexpr double kMostValue = 1e200;
constexpr double kMargin = 0.05;
constexpr const char* kCursorLayer = "cursor";

/// The time as exactly as pixels tell it, in digits that can be read.
double Rounded(double time, double perPixel) {
  const double unit = std::pow(10, std::floor(std::log10(std::max(1.0, perPixel))));
  return std::round(time / unit) * unit;
}

QCPRange Widened(double lowest, double highest) {
  lowest = std::clamp(lowest, -kMostValue, kMostValue);
  highest = std::clamp(highest, -kMostValue, kMostValue);
  double size = highest - lowest;
  const double large = std::max(std::abs(lowest), std::abs(highest));
  if (size <= large * 1e-12) size = large > 1e-200 ? large * 0.1 : 1;
  return {lowest - size * kMargin, highest + size * kMargin};
}

}  // namespace

TrendPlot::TrendPlot(QWidget* parent) : QCustomPlot(parent) {
  setObjectName("trendPlot");
  setAccessibleName("Trend");
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setNoAntialiasingOnDrag(true);
  setAntialiasedElements(QCP::aeNone);
  addLayer(kCursorLayer, layer("main"), limAbove);
  layer(kCursorLayer)->setMode(QCPLayer::lmBuffered);
  m_cursorLine = new QCPItemStraightLine(this);
  m_cursorLine->setLayer(kCursorLayer);
  m_cursorLine->setVisible(false);
  yAxis->setVisible(false);
  connect(this, &QCustomPlot::beforeReplot, this, [this] {
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
  for (QCPAxis* axis : axisRect()->axes(QCPAxis::atLeft | QCPAxis::atRight)) {
    if (axis != yAxis && axis != yAxis2) axisRect()->removeAxis(axis);
  }
  m_axes.clear();
  m_lastAxis = yAxis;
  m_lines = &lines;
  m_ticker.reset(new TrendAxisTicker(zone));
  xAxis->setTicker(m_ticker);
  for (std::size_t n = 0; n < lines.size(); ++n) {
    auto* plot = new TrendLinePlot(xAxis, AxisFor(lines[n].sUnit), lines[n].series, n);
    plot->setName(QString::fromStdString(lines[n].sName));
    plot->Kind(m_kind);
    m_plots.push_back(plot);
  }
  ApplyLook();
  m_cursor.reset();
  m_cursorLine->setVisible(false);
  Times(AllTimes());
}

QCPAxis* TrendPlot::AxisFor(const platform::Text& sUnit) {
  if (const auto found = m_axes.find(sUnit); found != m_axes.end()) return found->second;
  QCPAxis* axis = yAxis;
  if (m_axes.empty()) {
    axis->setVisible(true);
  } else if (static_cast<int>(m_axes.size()) < kMostAxes) {
    axis = axisRect()->addAxis(m_axes.size() % 2 == 1 ? QCPAxis::atRight : QCPAxis::atLeft);
    axis->setLayer("axes");
    axis->grid()->setVisible(false);
  } else {
    axis = m_lastAxis;
  }
  const QString sLabel = QString::fromStdString(sUnit);
  const bool bShared = axis == m_lastAxis && !m_axes.empty();
  axis->setLabel(bShared ? axis->label() + QStringLiteral(", ") + sLabel : sLabel);
  m_lastAxis = axis;
  return m_axes[sUnit] = axis;
}

void TrendPlot::ApplyLook() {
  const TrendLook look(palette());
  setBackground(look.Ground());
  for (QCPAxis* axis : axisRect()->axes()) LookOf(axis, look.Grid());
  for (TrendLinePlot* plot : m_plots) plot->Look(look);
  m_cursorLine->setPen(QPen(look.Text(), 1, Qt::DashLine));
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
  if (first > last) return {0, kLeastTimes};
  // The last point on the right edge would be half out of sight.
  const double margin = std::max((last - first) * 0.01, kLeastTimes);
  return {first - margin, last + margin};
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
  for (QCPAxis* axis : axisRect()->axes(QCPAxis::atLeft | QCPAxis::atRight)) {
    Extremes seen;
    for (std::size_t n = 0; n < m_plots.size(); ++n) {
      if (m_plots[n]->valueAxis() != axis || !m_plots[n]->visible()) continue;
      seen.Take((*m_lines)[n].series.Seen(times.lower, times.upper));
    }
    if (seen.HasValues()) axis->setRange(Widened(seen.lowest, seen.highest));
  }
}

void TrendPlot::Cursor(double time) {
  m_cursor = time;
  ShowCursor();
  if (m_cursorMoved) m_cursorMoved();
}

void TrendPlot::CursorTo(QPoint pixel) {
  Cursor(
      Rounded(xAxis->pixelToCoord(pixel.x()), Times().size() / std::max(1, axisRect()->width())));
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
  if (m_lines == nullptr) return QCustomPlot::keyPressEvent(event);
  const bool bControl = event->modifiers() & Qt::ControlModifier;
  const double centre = m_cursor && Times().contains(*m_cursor) ? *m_cursor : Times().center();
  switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
      const bool bRight = event->key() == Qt::Key_Right;
      return bControl ? Pan(bRight ? kPanStep : -kPanStep) : StepCursor(bRight);
    }
    case Qt::Key_PageUp:
      return Pan(-1);
    case Qt::Key_PageDown:
      return Pan(1);
    case Qt::Key_Home:
      return Cursor(Times().lower);
    case Qt::Key_End:
      return Cursor(Times().upper);
    case Qt::Key_Plus:
    case Qt::Key_Up:
      return Zoom(kZoomStep, centre);
    case Qt::Key_Minus:
    case Qt::Key_Down:
      return Zoom(1 / kZoomStep, centre);
    case Qt::Key_0:
      return Times(AllTimes());
    default:
      QCustomPlot::keyPressEvent(event);
  }
}

void TrendPlot::wheelEvent(QWheelEvent* event) {
  event->accept();
  if (m_lines == nullptr) return;
  const QPoint delta = event->angleDelta();
  if (std::abs(delta.x()) > std::abs(delta.y()) || (event->modifiers() & Qt::ShiftModifier)) {
    const int nSteps = delta.x() != 0 ? delta.x() : delta.y();
    return Pan(-kPanStep * nSteps / 120.0);
  }
  if (delta.y() == 0) return;
  Zoom(std::pow(kZoomStep, delta.y() / 120.0), xAxis->pixelToCoord(event->position().x()));
}

void TrendPlot::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && m_lines != nullptr) {
    m_dragged = event->pos();
    CursorTo(event->pos());
  }
}

void TrendPlot::mouseMoveEvent(QMouseEvent* event) {
  if (m_lines == nullptr) return;
  if (m_dragged && (event->buttons() & Qt::LeftButton)) {
    const double from = xAxis->pixelToCoord(m_dragged->x());
    const double to = xAxis->pixelToCoord(event->pos().x());
    m_dragged = event->pos();
    const QCPRange range = Times();
    if (from != to) Times({range.lower + from - to, range.upper + from - to});
    return;
  }
  if (axisRect()->rect().contains(event->pos())) CursorTo(event->pos());
}

void TrendPlot::mouseReleaseEvent(QMouseEvent* /*event*/) {
  m_dragged.reset();
}

void TrendPlot::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
  if (m_lines != nullptr) Times(AllTimes());
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
