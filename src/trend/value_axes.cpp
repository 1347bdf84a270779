#include "trend/value_axes.h"

#include <algorithm>
#include <cmath>

namespace orvane::trend {

namespace {

/// What an axis can show, and how little of it: of large numbers no more than digits they have.
constexpr double kMostValue = 1e200;
constexpr double kLeastPart = 1e-12;
constexpr double kLeastSize = 1e-200;
constexpr double kValueMargin = 0.05;

double LargestOf(double lowest, double highest) {
  return std::max(std::abs(lowest), std::abs(highest));
}

QCPRange Widened(double lowest, double highest) {
  lowest = std::clamp(lowest, -kMostValue, kMostValue);
  highest = std::clamp(highest, -kMostValue, kMostValue);
  double size = highest - lowest;
  const double large = LargestOf(lowest, highest);
  if (size <= large * kLeastPart) size = large > kLeastSize ? large * 0.1 : 1;
  return {lowest - size * kValueMargin, highest + size * kValueMargin};
}

}  // namespace

void ValueAxes::Clear() {
  for (QCPAxis* axis : m_rect.axes(QCPAxis::atLeft | QCPAxis::atRight)) {
    if (axis != m_rect.axis(QCPAxis::atLeft) && axis != m_rect.axis(QCPAxis::atRight)) {
      m_rect.removeAxis(axis);
    }
  }
  m_axes.clear();
  m_inUse.clear();
  m_chosen.clear();
}

QCPAxis* ValueAxes::For(const platform::Text& sUnit) {
  if (const auto found = m_axes.find(sUnit); found != m_axes.end()) return found->second;
  const QString sLabel = QString::fromStdString(sUnit);
  QCPAxis* axis = nullptr;
  if (m_inUse.size() == kMostAxes) {
    axis = m_inUse.back();
    axis->setLabel(axis->label() + QStringLiteral(", ") + sLabel);
  } else {
    if (m_inUse.empty()) {
      axis = m_rect.axis(QCPAxis::atLeft);
      axis->setVisible(true);
    } else {
      axis = m_rect.addAxis(m_inUse.size() % 2 == 1 ? QCPAxis::atRight : QCPAxis::atLeft);
      axis->setLayer("axes");
      axis->grid()->setVisible(false);
    }
    axis->setLabel(sLabel);
    m_inUse.push_back(axis);
  }
  return m_axes[sUnit] = axis;
}

void ValueAxes::LeaveRoom(int nWidth, const QFontMetrics& metrics) {
  // Numbers, marks, and the unit that stands upright beside them.
  const int nAxis = metrics.horizontalAdvance("-0000.00") + 2 * metrics.height();
  const auto most = static_cast<std::size_t>(std::max(2, nWidth / 2 / std::max(1, nAxis)));
  for (std::size_t n = 0; n < m_inUse.size(); ++n) m_inUse[n]->setVisible(n < most);
}

std::vector<QCPAxis*> ValueAxes::InUse() const {
  return m_inUse;
}

QCPAxis* ValueAxes::At(QPoint pixel) const {
  const auto found = std::ranges::find_if(m_inUse, [&](const QCPAxis* axis) {
    return axis->visible() && !m_rect.rect().contains(pixel) && axis->selectTest(pixel, false) >= 0;
  });
  return found == m_inUse.end() ? nullptr : *found;
}

void ValueAxes::Fit(QCPAxis* axis, const Extremes& seen) const {
  if (seen.HasValues() && !m_chosen.contains(axis)) {
    axis->setRange(Widened(seen.lowest, seen.highest));
  }
}

template <class Act>
void ValueAxes::ForEach(QCPAxis* only, Act&& act) {
  for (QCPAxis* axis : m_inUse) {
    if (only == nullptr || only == axis) act(axis);
  }
}

void ValueAxes::Choose(QCPAxis* axis, QCPRange range) {
  const double least = std::max(LargestOf(range.lower, range.upper) * kLeastPart, kLeastSize);
  if (!(range.size() >= least) || LargestOf(range.lower, range.upper) > 2 * kMostValue) return;
  axis->setRange(range);
  m_chosen.insert(axis);
}

void ValueAxes::Zoom(double factor, QCPAxis* only, std::optional<int> pixel) {
  ForEach(only, [&](QCPAxis* axis) {
    const QCPRange range = axis->range();
    const double around = pixel ? axis->pixelToCoord(*pixel) : range.center();
    Choose(axis,
           {around - (around - range.lower) * factor, around + (range.upper - around) * factor});
  });
}

void ValueAxes::Pan(double part, QCPAxis* only) {
  ForEach(only, [&](QCPAxis* axis) {
    const QCPRange range = axis->range();
    Choose(axis, {range.lower + range.size() * part, range.upper + range.size() * part});
  });
}

void ValueAxes::LetFit(QCPAxis* only) {
  ForEach(only, [&](QCPAxis* axis) { m_chosen.erase(axis); });
}

ValueRanges ValueAxes::Chosen() const {
  ValueRanges ranges;
  for (const auto& [sUnit, axis] : m_axes) {
    if (m_chosen.contains(axis)) ranges[sUnit] = {axis->range().lower, axis->range().upper};
  }
  return ranges;
}

void ValueAxes::Choose(const ValueRanges& ranges) {
  for (const auto& [sUnit, range] : ranges) {
    const auto found = m_axes.find(sUnit);
    if (found != m_axes.end()) Choose(found->second, QCPRange(range.lowest, range.highest));
  }
}

}  // namespace orvane::trend
