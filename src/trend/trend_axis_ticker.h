// The marks of a trend's time axis: round times of a zone's clocks, days and months as a calendar
// has them. User-interface thread.
#pragma once

#include <qcustomplot.h>

#include "zones/time_zone.h"

namespace orvane::trend {

class TrendAxisTicker : public QCPAxisTicker {
 public:
  explicit TrendAxisTicker(zones::TimeZone zone) : m_zone(std::move(zone)) {}

  const zones::TimeZone& Zone() const { return m_zone; }
  /// About this many marks fit.
  void Room(int nMarks) { m_nMarks = std::max(2, nMarks); }

  void generate(const QCPRange& range, const QLocale& locale, QChar formatChar, int precision,
                QVector<double>& ticks, QVector<double>* subTicks,
                QVector<QString>* tickLabels) override;

 private:
  zones::TimeZone m_zone;
  int m_nMarks = 6;
};

}  // namespace orvane::trend
