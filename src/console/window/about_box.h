// Tells what the program is and which snap-in is at work. User-interface thread; runs until the box
// is closed.
#pragma once

class QWidget;

namespace orvane::console {

class ConsoleSession;

void ShowAboutBox(const ConsoleSession& session, QWidget* window);

}  // namespace orvane::console
