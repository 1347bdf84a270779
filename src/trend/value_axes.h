// The value axes of a trend, one for each unit: each as wide as the values in sight, unless
// somebody has chosen a range for it. Part of the plot; user-interface thread.
#pragma once

#include <qcustomplot.h>

#include <map>
#include <optional>
#include <set>
#include <vector>

#include "trend/trend_data.h"

namespace orvane::trend {

class ValueAxes {
 public:
  /// More than these would leave no room; further units share the last one.
  static constexpr int kMostAxes = 6;

  explicit ValueAxes(QCPAxisRect& rect) : m_rect(rect) {}

  /// Forgets all units, and their ranges.
  void Clear();
  /// The axis of the unit, which is made when it is asked for first.
  QCPAxis* For(const platform::Text& sUnit);
  /// Shows as many axes as leave half of the width to the lines; two at least. The others keep
  /// their ranges.
  void LeaveRoom(int nWidth, const QFontMetrics& metrics);
  /// Those in use, from the first unit on.
  std::vector<QCPAxis*> InUse() const;
  /// The axis beside the lines at the pixel; null where there is none.
  QCPAxis* At(QPoint pixel) const;

  /// Shows what is to be seen, unless a range was chosen.
  void Fit(QCPAxis* axis, const Extremes& seen) const;
  /// By a factor, below 1 to see less; the value at the pixel stays, or else the middle. Of all
  /// axes where none is named.
  void Zoom(double factor, QCPAxis* only = nullptr, std::optional<int> pixel = std::nullopt);
  /// By a part of what is in sight, above 0 to higher values.
  void Pan(double part, QCPAxis* only = nullptr);
  /// Chosen ranges are chosen no more.
  void LetFit(QCPAxis* only = nullptr);

  /// The ranges that were chosen, by unit.
  ValueRanges Chosen() const;
  void Choose(const ValueRanges& ranges);

 private:
  void Choose(QCPAxis* axis, QCPRange range);
  template <class Act>
  void ForEach(QCPAxis* only, Act&& act);

  QCPAxisRect& m_rect;
  std::map<platform::Text, QCPAxis*> m_axes;
  std::vector<QCPAxis*> m_inUse;
  std::set<QCPAxis*> m_chosen;
};

}  // namespace orvane::trend
