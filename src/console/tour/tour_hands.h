// Somebody's hands at a window: clicks, keys, menus, pictures, the answers to dialogs, and the
// patience until something is seen. Real events, so that it works wherever a window can be drawn,
// also without a screen. For the tour; user-interface thread.
#pragma once

#include <QDir>
#include <QTimer>
#include <functional>

class QDialog;
class QMenu;
class QMenuBar;
class QWidget;

namespace orvane::console {

class TourHands final : public QObject {
  Q_OBJECT

 public:
  /// Pictures go into the folder. The window outlives the hands.
  TourHands(QWidget& window, const QDir& folder);

  void Press(QWidget& widget, Qt::Key key);
  void Click(QWidget& widget, const QPoint& at);
  /// Fails when the menu bar has no such menu or entry, or the entry is disabled.
  void Choose(QMenuBar& bar, const QString& sMenu, const QString& sEntry);
  /// What the next file dialog is answered with.
  void NextFile(const QString& sPath) { m_sNextFile = sPath; }

  /// Lets the window work until the condition holds. Fails when a message comes up instead, with
  /// what it says, and when it takes too long.
  void WaitFor(const char* sWhat, const std::function<bool()>& condition);
  /// Fails when a message has come up since.
  void Check(const char* sWhat) const;
  /// Lets everything happen that waits to.
  void Rest();
  void Picture(const char* sName);

 private:
  void AnswerDialogs();
  void AnswerFileDialog(QDialog& dialog);
  void PressDefault(QDialog& dialog);
  void GiveUp(QDialog& dialog);
  void Type(QWidget& widget, const QString& sText);

  QWidget& m_window;
  QDir m_folder;
  QTimer m_answers;
  QString m_sNextFile;
  int m_nFileTries = 0;
  std::string m_sMessage;  // what a dialog said that should not have come up
};

}  // namespace orvane::console
