// Keeps every dialog within the screen, also the toolkit's own, which letters twice as large make
// larger than a small screen. Installed once in the application; user-interface thread.
#pragma once

#include <QObject>

namespace orvane::console {

class DialogsOnScreen : public QObject {
 public:
  using QObject::QObject;

  /// Bounds a dialog that is being shown, once the window system has placed it.
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace orvane::console
