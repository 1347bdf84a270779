// Opens context menus with Shift+F10, for keyboards without a Menu key: the toolkit knows only that
// key here. Hears every key of the program while it lives. User-interface thread.
#pragma once

#include <QObject>

namespace orvane::console {

class MenuKey final : public QObject {
 public:
  explicit MenuKey(QObject* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace orvane::console
