// Opens the guide with F1 while a dialog is open, which the window's own command cannot: it hears
// no keys then. Hears every key of the program while it lives. User-interface thread.
#pragma once

#include <QObject>

class QWidget;

namespace orvane::console {

class GuideKey final : public QObject {
 public:
  /// The guide is that of the window when the dialog is closed.
  explicit GuideKey(QWidget& window);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget& m_window;
};

}  // namespace orvane::console
