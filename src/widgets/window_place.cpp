#include "widgets/window_place.h"

#include <QApplication>
#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace orvane::widgets {

QMargins FrameOver(const QWidget* window) {
  constexpr int kUsualBorder = 4;
  if (!window || !window->isVisible()) {
    const int iTitle = QApplication::style()->pixelMetric(QStyle::PM_TitleBarHeight);
    return {kUsualBorder, iTitle + kUsualBorder, kUsualBorder, kUsualBorder};
  }
  const QRect outside = window->frameGeometry();
  const QRect inside = window->geometry();
  return {inside.left() - outside.left(), inside.top() - outside.top(),
          outside.right() - inside.right(), outside.bottom() - inside.bottom()};
}

QRect MovedInto(const QRect& room, QRect frame) {
  frame.moveLeft(qMax(room.left(), qMin(frame.left(), room.right() + 1 - frame.width())));
  frame.moveTop(qMax(room.top(), qMin(frame.top(), room.bottom() + 1 - frame.height())));
  return frame;
}

void KeepOnScreen(QWidget& window) {
  const auto state = window.windowState();
  const auto shown = state & ~(Qt::WindowFullScreen | Qt::WindowMinimized);
  if (shown != state) window.setWindowState(shown);
  if (shown.testFlag(Qt::WindowMaximized)) return;
  const QRect room = window.screen()->availableGeometry();
  const QMargins around = FrameOver(&window);
  const QSize size = window.size().boundedTo(room.marginsRemoved(around).size());
  const QRect frame =
      MovedInto(room, QRect(window.geometry().topLeft(), size).marginsAdded(around));
  window.setGeometry(frame.marginsRemoved(around));
}

}  // namespace orvane::widgets
