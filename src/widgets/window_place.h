// Where a window stands: whole on the screen, with its title. Used by whatever places a window of
// its own; user-interface thread.
#pragma once

#include <QMargins>
#include <QRect>

class QWidget;

namespace orvane::widgets {

/// What the window manager puts around a dialog over the window. It tells that for windows that are
/// shown only, so the window's own frame is taken; without one, a guess is better than a title that
/// is out of reach.
QMargins FrameOver(const QWidget* window);

/// The place of a frame of that size, as near to the wanted one as the room allows.
QRect MovedInto(const QRect& room, QRect frame);

/// Makes a window no larger than its screen has room for, title and all, and moves it there. One
/// that would fill the screen without a title, or not be seen at all, becomes a usual one.
void KeepOnScreen(QWidget& window);

}  // namespace orvane::widgets
