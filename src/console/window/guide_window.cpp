#include "console/window/guide_window.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QKeyEvent>
#include <QPointer>
#include <QTextCursor>
#include <QTextDocument>

#include "console/window/document_questions.h"
#include "widgets/window_place.h"

namespace orvane::console {

QString GuideFor(const QString& sProgramFolder) {
  const QDir folder(sProgramFolder);
  for (const char* sPlace : {"../share/orvane/guide", "../guide"}) {
    const QFileInfo guide(folder, QString(sPlace) + "/user-guide.html");
    if (guide.isFile()) return QDir::cleanPath(guide.absoluteFilePath());
  }
  return {};
}

GuideWindow::GuideWindow(QWidget* owner) : QTextBrowser(owner) {
  setObjectName("guideWindow");
  setWindowFlags(Qt::Window);
  setAttribute(Qt::WA_DeleteOnClose);
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowTitle(tr("User Guide - ORVANE Console"));
  setAccessibleName(tr("User Guide"));
  setFrameShape(QFrame::NoFrame);
  setOpenExternalLinks(false);
  document()->setDocumentMargin(2 * fontMetrics().averageCharWidth());
  resize(90 * fontMetrics().averageCharWidth(), 45 * fontMetrics().lineSpacing());
  widgets::KeepOnScreen(*this);
  connect(this, &QTextBrowser::sourceChanged, this, [this] { FitPictures(); });
}

void GuideWindow::StandBeside(QWidget* owner) {
  if (parentWidget() == owner) return;
  const QRect place = geometry();
  setParent(owner, windowFlags());
  setGeometry(place);
  show();
}

void GuideWindow::Open(QWidget* window) {
  Open(GuideFor(QCoreApplication::applicationDirPath()), window);
}

void GuideWindow::Open(const QString& sFile, QWidget* window) {
  auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  QWidget* const owner = dialog ? dialog : window;
  GuideWindow* guide = nullptr;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (auto* shown = qobject_cast<GuideWindow*>(widget)) guide = shown;
  }
  if (!guide) {
    if (!QFileInfo(sFile).isReadable()) {
      ShowFailureBox(
          tr("The guide is not there: user-guide.html is looked for in share/orvane/guide beside "
             "the program's folder, or in guide where it was built. Install the program again.")
              .toStdString(),
          owner);
      return;
    }
    guide = new GuideWindow(owner);
    guide->show();
    guide->setSource(QUrl::fromLocalFile(sFile));
  }
  guide->StandBeside(owner);
  if (dialog) {
    // Another dialog may be open beneath that one, which brings the guide home when it ends.
    connect(dialog, &QDialog::finished, guide, [guide, home = QPointer(window)] {
      QWidget* beneath = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!beneath) beneath = home;
      if (beneath) guide->StandBeside(beneath);
    });
  }
  guide->setWindowState(guide->windowState() & ~Qt::WindowMinimized);
  guide->raise();
  guide->activateWindow();
}

QSize GuideWindow::Fitting(const QTextImageFormat& format) const {
  const auto image =
      document()->resource(QTextDocument::ImageResource, QUrl(format.name())).value<QImage>();
  const int iRoom = viewport()->width() - 2 * static_cast<int>(document()->documentMargin());
  if (image.width() <= iRoom) return image.size();
  return image.size().scaled(iRoom, image.height(), Qt::KeepAspectRatio);
}

void GuideWindow::FitPictures() {
  QTextCursor cursor(document());
  while (!cursor.atEnd()) {
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
    auto format = cursor.charFormat().toImageFormat();
    const auto size = format.isValid() ? Fitting(format) : QSize();
    if (!size.isEmpty() && size.width() != qRound(format.width())) {
      format.setWidth(size.width());
      format.setHeight(size.height());
      cursor.setCharFormat(format);
    }
    cursor.clearSelection();
  }
}

QVariant GuideWindow::loadResource(int iType, const QUrl& name) {
  auto resource = QTextBrowser::loadResource(iType, name);
  const bool bBytes = resource.userType() == QMetaType::QByteArray;
  if (iType != QTextDocument::ImageResource || !bBytes) return resource;
  return QImage::fromData(resource.toByteArray());
}

void GuideWindow::resizeEvent(QResizeEvent* event) {
  QTextBrowser::resizeEvent(event);
  FitPictures();
}

void GuideWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
    return;
  }
  QTextBrowser::keyPressEvent(event);
}

}  // namespace orvane::console
