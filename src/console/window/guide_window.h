// The user guide in a window of its own, which stays open beside the console. Opened for F1 and the
// Help menu. User-interface thread.
#pragma once

#include <QString>
#include <QTextBrowser>

namespace orvane::console {

/// Where the guide's first page lies for a program in that folder: with what is installed, or in
/// the tree that the program was built in. Empty when it is in neither place.
QString GuideFor(const QString& sProgramFolder);

class GuideWindow final : public QTextBrowser {
  Q_OBJECT

 public:
  /// Shows the guide of this program beside the window, or beside the dialog that is open over it,
  /// until that is closed; a guide that is shown already comes to the front. One that is not there
  /// is told of in one sentence.
  static void Open(QWidget* window);
  static void Open(const QString& sFile, QWidget* window);

 protected:
  QVariant loadResource(int iType, const QUrl& name) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  explicit GuideWindow(QWidget* owner);
  /// Stands beside the owner from now on. What is not a dialog's can be used by nobody while the
  /// dialog is open.
  void StandBeside(QWidget* owner);
  /// Pictures wider than the window are shown as wide as it is.
  void FitPictures();
  /// The size of the picture when it is no wider than the window; empty when it is not there.
  QSize Fitting(const QTextImageFormat& format) const;
};

}  // namespace orvane::console
