// One line of a trend as the plot draws it: of its points no more than the pixels in sight can
// show. Owned by the plot; user-interface thread.
#pragma once

#include <qcustomplot.h>

#include "trend/trend_look.h"
#include "trend/trend_series.h"

namespace orvane::trend {

class TrendLinePlot : public QCPAbstractPlottable {
 public:
  /// Reads the series, which must outlive it.
  TrendLinePlot(QCPAxis* time, QCPAxis* value, const TrendSeries& series, std::size_t line);

  void Look(const TrendLook& look);
  void Kind(LineKind kind) { m_kind = kind; }
  /// Draws every point, however many fall on one pixel: what the drawing is held against.
  void DrawAllPoints(bool bAll) { m_bAll = bAll; }

  double selectTest(const QPointF&, bool, QVariant*) const override { return -1; }
  QCPRange getKeyRange(bool& bFound, QCP::SignDomain domain) const override;
  QCPRange getValueRange(bool& bFound, QCP::SignDomain domain,
                         const QCPRange& keyRange) const override;

 protected:
  void draw(QCPPainter* painter) override;
  void drawLegendIcon(QCPPainter* painter, const QRectF& rect) const override;

 private:
  /// At each point where there are few, otherwise at some.
  void DrawMarks(QCPPainter& painter, const PixelColumns& columns) const;

  const TrendSeries& m_series;
  std::size_t m_line;
  std::optional<TrendLook> m_look;
  LineKind m_kind = LineKind::Straight;
  bool m_bAll = false;
};

}  // namespace orvane::trend
