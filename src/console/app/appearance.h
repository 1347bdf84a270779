// How the program looks: one calm style with its colours, light or dark as the desktop is.
// Applied once, before the first window; user-interface thread.
#pragma once

class QApplication;

namespace orvane::console {

/// Sets style, palette and names of the application.
void PrepareApplication(QApplication& application);

}  // namespace orvane::console
