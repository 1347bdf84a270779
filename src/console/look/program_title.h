// The name of the program as titles of its windows and boxes show it, whoever opens them.
// Any thread.
#pragma once

#include <QString>

namespace orvane::console {

/// Not set as the toolkit's display name of the application: it would be added to every title, and
/// a dialog's title is what the component that asked for it says.
inline QString ProgramTitle() {
  return QStringLiteral("ORVANE Console");
}

}  // namespace orvane::console
