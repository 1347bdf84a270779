// Asks how much memory the rows of all grids may take, and keeps the answer with the user's
// settings. Opened by the window's menu; user-interface thread.
#pragma once

class QSettings;
class QWidget;

namespace orvane::console {

/// The dialog stands until it is closed; the settings must outlive the parent.
void AskForRowMemory(QWidget& parent, QSettings& settings);

}  // namespace orvane::console
