// What screen readers are told goes through here, so that it can also be heard without one. Used by
// the view of the rows and the strip beneath; user-interface thread.
#pragma once

#include <QAccessible>
#include <functional>

namespace orvane::controls {

/// False where nobody listens: what would be told need not be worked out.
bool IsHeard();
/// Tells whoever listens.
void Speak(QAccessibleEvent& event);
/// Has a handler told instead of screen readers; none gives it back to these.
void HearInstead(std::function<void(const QAccessibleEvent&)> handler);

}  // namespace orvane::controls
