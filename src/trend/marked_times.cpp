#include "trend/marked_times.h"

namespace orvane::trend {

MarkedTimes::MarkedTimes(QCustomPlot& plot, const QString& sLayer)
    : m_band(new QCPItemRect(&plot)) {
  m_band->setLayer(sLayer);
  m_band->setVisible(false);
  for (QCPItemPosition* corner : {m_band->topLeft, m_band->bottomRight}) {
    corner->setTypeX(QCPItemPosition::ptPlotCoords);
    corner->setTypeY(QCPItemPosition::ptAxisRectRatio);
  }
}

void MarkedTimes::Times(const std::optional<QCPRange>& times) {
  m_times = times;
  if (!times) m_begin.reset();
  m_band->setVisible(times.has_value());
  if (!times) return;
  m_band->topLeft->setCoords(times->lower, 0);
  m_band->bottomRight->setCoords(times->upper, 1);
}

void MarkedTimes::Begin(double time, bool bAnew) {
  if (bAnew || !m_begin || !m_times) m_begin = time;
}

void MarkedTimes::To(double time) {
  // A range puts the lower end first.
  if (m_begin) Times(QCPRange(*m_begin, time));
}

void MarkedTimes::Look(const QPalette& palette) {
  QColor color = palette.color(QPalette::Highlight);
  m_band->setPen(QPen(color, 1));
  color.setAlphaF(0.25F);
  m_band->setBrush(color);
}

}  // namespace orvane::trend
