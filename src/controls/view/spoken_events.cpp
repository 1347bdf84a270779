#include "controls/view/spoken_events.h"

#include <utility>

namespace orvane::controls {

namespace {

std::function<void(const QAccessibleEvent&)>& Hearer() {
  static std::function<void(const QAccessibleEvent&)> hearer;
  return hearer;
}

}  // namespace

bool IsHeard() {
  return Hearer() || QAccessible::isActive();
}

void Speak(QAccessibleEvent& event) {
  if (const auto& hearer = Hearer()) return hearer(event);
  QAccessible::updateAccessibility(&event);
}

void HearInstead(std::function<void(const QAccessibleEvent&)> handler) {
  Hearer() = std::move(handler);
}

}  // namespace orvane::controls
