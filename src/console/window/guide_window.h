// The user guide in a window of its own, which stays open beside the console. Opened by the main
// window for F1 and the Help menu. User-interface thread.
#pragma once

#include <QString>
#include <QTextBrowser>

namespace orvane::console {

/// Where the guide lies for a program in that folder: with what is installed, or in the tree that
/// the program was built in. Empty when it is in neither place.
QString GuideFor(const QString& sProgramFolder);

class GuideWindow final : public QTextBrowser {
  Q_OBJECT

 public:
  /// Shows the guide, over the owner and beside it; the window that shows it already comes to the
  /// front. A guide that is not there is told of in one sentence.
  static void Open(const QString& sFile, QWidget* owner);

 protected:
  QVariant loadResource(int iType, const QUrl& name) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  explicit GuideWindow(QWidget* owner);
  /// Pictures wider than the window are shown as wide as it is.
  void FitPictures();
  /// The size of the picture when it is no wider than the window; empty when it is not there.
  QSize Fitting(const QTextImageFormat& format) const;
};

}  // namespace orvane::console
