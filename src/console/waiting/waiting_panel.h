// The calm panel of a long wait: what is being done, for how long, and Cancel.
// Shown by Waiting over the active window; user-interface thread.
#pragma once

#include <QElapsedTimer>
#include <QFrame>

class QLabel;
class QPushButton;

namespace orvane::console {

class WaitingPanel : public QFrame {
  Q_OBJECT

 public:
  /// Lies centred over the window, or, when that is too small or there is none, stands as a window
  /// of its own.
  WaitingPanel(const QString& sWhat, QWidget* window);

  /// Shows that the stop was requested; the button cannot be pressed again.
  void ShowCancelling();
  /// True for the panel and everything in it.
  bool Contains(const QObject* object) const;

 signals:
  void Cancelled();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowElapsed();
  void Centre();

  QElapsedTimer m_elapsed;
  QLabel* m_lblElapsed;
  QPushButton* m_btnCancel;
};

}  // namespace orvane::console
