// The calm panel of a long wait: what is being done, for how long, and Cancel, over a window that
// is veiled meanwhile, since nothing in it can be used. Shown by Waiting over the active window;
// user-interface thread.
#pragma once

#include <QElapsedTimer>
#include <QFrame>
#include <QPointer>

class QLabel;
class QPushButton;

namespace orvane::console {

class WaitingPanel : public QFrame {
  Q_OBJECT

 public:
  /// Lies centred over the window, or, when that is too small or there is none, stands as a window
  /// of its own.
  WaitingPanel(const QString& sWhat, QWidget* window);

  /// Takes the veil away.
  ~WaitingPanel() override;

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
  /// Over the middle of the window, with the veil over all of it.
  void LieOver();

  class Veil;
  QPointer<Veil> m_veil;
  QElapsedTimer m_elapsed;
  QLabel* m_lblElapsed;
  QPushButton* m_btnCancel;
};

}  // namespace orvane::console
