#include "console/app/display_guard.h"

#include <QByteArray>
#include <QtGlobal>
#include <cstdio>
#include <cstdlib>

namespace orvane::console {

namespace {

/// What the toolkit says on its way is held back: only the sentence is of use.
void Tell(QtMsgType type, const QMessageLogContext& /*context*/, const QString& /*sMessage*/) {
  if (type != QtFatalMsg) return;
  const QByteArray sWayland = qgetenv("WAYLAND_DISPLAY");
  const QByteArray sDisplay = sWayland.isEmpty() ? qgetenv("DISPLAY") : sWayland;
  if (sDisplay.isEmpty()) {
    std::fputs(
        "orvane-console: there is no display to show a window on; start it on a desktop, or use "
        "orvane-tour, which needs none.\n",
        stderr);
  } else {
    std::fprintf(stderr,
                 "orvane-console: the display \"%s\" cannot be used; start the program on a "
                 "desktop that runs, or use orvane-tour, which needs none.\n",
                 sDisplay.constData());
  }
  std::fflush(stderr);
  std::_Exit(kNoDisplayStatus);
}

}  // namespace

DisplayGuard::DisplayGuard() {
  qInstallMessageHandler(Tell);
}

DisplayGuard::~DisplayGuard() {
  qInstallMessageHandler(nullptr);
}

}  // namespace orvane::console
