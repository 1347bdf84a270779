// How the program looks: one calm style with its colours, light or dark as the desktop is.
// Applied once, before the first window; user-interface thread.
#pragma once

class QApplication;
class QPalette;

namespace orvane::console {

/// Sets style, palette and names of the application.
void PrepareApplication(QApplication& application);

/// The program's own colours, for desktops that are not dark.
QPalette LightPalette();

/// Gives texts that stand back, such as the time a query took, and those of what cannot be used a
/// colour that can be read where the desktop's palette has none. Part of PrepareApplication.
void SeeToFaintText();

}  // namespace orvane::console
