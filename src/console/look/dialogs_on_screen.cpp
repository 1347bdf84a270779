#include "console/look/dialogs_on_screen.h"

#include <QDialog>
#include <QEvent>

#include "widgets/window_place.h"

namespace orvane::console {

bool DialogsOnScreen::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Show || event->spontaneous()) return false;
  auto* dialog = qobject_cast<QDialog*>(watched);
  if (dialog && dialog->isWindow()) {
    // The dialog still has to hear of the event, and may place itself then.
    QMetaObject::invokeMethod(
        dialog,
        [dialog] {
          if (dialog->isVisible()) widgets::KeepOnScreen(*dialog);
        },
        Qt::QueuedConnection);
  }
  return false;
}

}  // namespace orvane::console
