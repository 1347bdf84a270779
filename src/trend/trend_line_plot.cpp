#include "trend/trend_line_plot.h"

#include <algorithm>
#include <cmath>

namespace orvane::trend {

namespace {

/// Fewer points than this in sight have a mark each; a line of more has some.
constexpr std::size_t kMostMarked = 60;
constexpr int kMarksOnLine = 8;
/// Higher or lower no painter can count.
constexpr double kFarAbove = 30'000;
/// Beyond it the differences of heights would be no numbers.
constexpr double kFarthestAbove = 1e12;

double Painted(double height) {
  return std::clamp(height, -kFarAbove, kFarAbove);
}

/// The places between two at which a line leaves the heights that can be painted, or comes into
/// them, so that what is painted of it has its slope.
std::vector<QPointF> Cuts(QPointF one, QPointF other) {
  std::vector<QPointF> cuts;
  const double end = Painted(other.y());
  const double begin = Painted(one.y());
  if (begin == end) return cuts;
  const auto cut = [&](double height) {
    const double part = (height - one.y()) / (other.y() - one.y());
    cuts.emplace_back(one.x() + (other.x() - one.x()) * part, height);
  };
  if (begin != one.y()) cut(begin);
  if (end != other.y()) cut(end);
  return cuts;
}

}  // namespace

TrendLinePlot::TrendLinePlot(QCPAxis* time, QCPAxis* value, const TrendSeries& series,
                             std::size_t line)
    : QCPAbstractPlottable(time, value), m_series(series), m_line(line) {
  // Pixels are columns here: a line's edge shared by two would show what no point says.
  setAntialiased(false);
}

void TrendLinePlot::Look(const TrendLook& look) {
  m_look = look;
  setPen(look.Pen(m_line));
}

QCPRange TrendLinePlot::getKeyRange(bool& bFound, QCP::SignDomain /*domain*/) const {
  bFound = m_series.Size() > 0;
  return bFound ? QCPRange(m_series.TimeAt(0), m_series.TimeAt(m_series.Size() - 1)) : QCPRange();
}

QCPRange TrendLinePlot::getValueRange(bool& bFound, QCP::SignDomain /*domain*/,
                                      const QCPRange& keyRange) const {
  const Extremes seen = keyRange == QCPRange() ? m_series.Between(0, m_series.Size())
                                               : m_series.Seen(keyRange.lower, keyRange.upper);
  bFound = seen.HasValues();
  return bFound ? QCPRange(seen.lowest, seen.highest) : QCPRange();
}

void TrendLinePlot::draw(QCPPainter* painter) {
  const QCPAxis& time = *mKeyAxis;
  const QRect rect = time.axisRect()->rect();
  const QCPRange range = time.range();
  // What is drawn is worked out for the pixels of the screen or picture: on a fine one there are
  // several for each pixel that widgets are measured in.
  const double scale = std::max(1.0, painter->deviceTransform().m11());
  const double width = rect.width() * scale;
  const PixelColumns columns{range.lower, width / range.size(),
                             static_cast<std::int32_t>(std::lround(width))};
  const std::vector<Corner> corners =
      m_bAll ? m_series.AllCorners(columns, m_kind) : m_series.Corners(columns, m_kind);
  // Dashes go along a line; without them each piece is drawn for itself, and is then the same
  // pixels whatever stands beside it.
  const bool bDashed = m_series.CountIn(columns) <= TrendSeries::kMostDashed;
  QPen pen = mPen;
  if (!bDashed) pen.setStyle(Qt::SolidLine);
  painter->save();
  painter->scale(1 / scale, 1 / scale);
  painter->setPen(pen);
  painter->setBrush(Qt::NoBrush);
  QPolygon piece;
  QPointF before;
  QVector<QLine> lines;
  const auto flush = [&] {
    // A value between two gaps is a line of no length, which a painter leaves out.
    if (piece.size() == 1) piece.append(piece.front() + QPoint(1, 0));
    if (bDashed && !piece.isEmpty()) painter->drawPolyline(piece);
    for (qsizetype n = 1; !bDashed && n < piece.size(); ++n) {
      lines.append({piece[n - 1], piece[n]});
    }
    piece.clear();
  };
  for (const Corner& corner : corners) {
    if (corner.value != corner.value) {
      flush();
      continue;
    }
    const double height = mValueAxis->coordToPixel(corner.value) * scale;
    const QPointF place(std::round(rect.left() * scale) + corner.column,
                        std::clamp(height, -kFarthestAbove, kFarthestAbove));
    if (m_kind == LineKind::Straight && !piece.isEmpty()) {
      for (const QPointF& cut : Cuts(before, place)) piece.append(cut.toPoint());
    }
    before = place;
    const QPoint at(static_cast<int>(place.x()), static_cast<int>(std::lround(Painted(place.y()))));
    if (m_kind == LineKind::Steps && !piece.isEmpty()) piece.append({at.x(), piece.back().y()});
    if (piece.isEmpty() || piece.back() != at) piece.append(at);
  }
  flush();
  if (!lines.isEmpty()) painter->drawLines(lines);
  painter->restore();
  DrawMarks(*painter, columns);
}

void TrendLinePlot::DrawMarks(QCPPainter& painter, const PixelColumns& columns) const {
  if (!m_look) return;
  const auto mark = [&](std::size_t n) {
    if (std::isnan(m_series.ValueAt(n))) return;
    m_look->DrawMark(painter, m_line, coordsToPixels(m_series.TimeAt(n), m_series.ValueAt(n)));
  };
  painter.setAntialiasing(true);
  if (m_series.CountIn(columns) <= kMostMarked) {
    const std::size_t end = m_series.From(mKeyAxis->range().upper);
    for (std::size_t n = m_series.From(mKeyAxis->range().lower); n < end; ++n) mark(n);
  } else {
    // Where lines cross, marks at the same places of all of them would lie on each other.
    const double distance = static_cast<double>(columns.nCount) / kMarksOnLine;
    const double shift = static_cast<double>(m_line % 5) / 5.0;
    for (int i = 0; i < kMarksOnLine; ++i) {
      const double column = (i + shift) * distance;
      const auto at = m_series.LastUntil(columns.start + column / columns.perUnit);
      if (at && columns.At(m_series.TimeAt(*at)) >= 0) mark(*at);
    }
  }
  painter.setAntialiasing(false);
}

void TrendLinePlot::drawLegendIcon(QCPPainter* painter, const QRectF& rect) const {
  painter->setPen(mPen);
  painter->drawLine(QLineF(rect.left(), rect.center().y(), rect.right(), rect.center().y()));
}

}  // namespace orvane::trend
