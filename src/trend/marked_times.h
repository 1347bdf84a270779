// The times that are marked in a trend: a band over the lines, from one instant to another, each of
// which may come first while the band is drawn. Part of the plot; user-interface thread.
#pragma once

#include <qcustomplot.h>

#include <optional>

namespace orvane::trend {

class MarkedTimes {
 public:
  /// Drawn on the layer, which is not the lines'.
  MarkedTimes(QCustomPlot& plot, const QString& sLayer);

  const std::optional<QCPRange>& Times() const { return m_times; }
  void Times(const std::optional<QCPRange>& times);
  /// Begins at an instant, unless there is a beginning to go on from.
  void Begin(double time, bool bAnew);
  /// From where it began to the instant.
  void To(double time);
  void Look(const QPalette& palette);

 private:
  QCPItemRect* m_band;
  std::optional<QCPRange> m_times;
  std::optional<double> m_begin;
};

}  // namespace orvane::trend
