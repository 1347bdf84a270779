// The window that the user is looking at: what the program has to say comes up over it. Used by
// whatever opens a window of its own; user-interface thread.
#pragma once

class QWidget;

namespace orvane::console {

/// The modal window on top, else the active one, else one that is shown: right after a form has
/// closed none is active. Null when there is none.
QWidget* WindowInFront();

}  // namespace orvane::console
