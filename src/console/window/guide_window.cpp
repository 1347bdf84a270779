#include "console/window/guide_window.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QKeyEvent>
#include <QScrollBar>

#include "console/look/window_place.h"
#include "console/window/document_questions.h"

namespace orvane::console {

QString GuideFor(const QString& sProgramFolder) {
  constexpr const char* kInstalled = "../share/doc/orvane-console/user-guide.md";
  constexpr const char* kBuilt = "docs/user-guide.md";
  const QDir folder(sProgramFolder);
  if (QFileInfo(folder.filePath(kInstalled)).isFile()) {
    return QDir::cleanPath(folder.absoluteFilePath(kInstalled));
  }
  // Programs are built two or three folders beneath the tree's top.
  for (const char* sAbove : {"../..", "../../.."}) {
    const QDir top(folder.filePath(sAbove));
    if (QFileInfo(top.filePath(kBuilt)).isFile()) {
      return QDir::cleanPath(top.absoluteFilePath(kBuilt));
    }
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
  KeepOnScreen(*this);
}

void GuideWindow::Open(const QString& sFile, QWidget* owner) {
  auto* window = owner->findChild<GuideWindow*>("guideWindow");
  if (!window) {
    if (!QFileInfo(sFile).isReadable()) {
      ShowFailureBox(
          tr("The guide is not there: user-guide.md is looked for in share/doc/orvane-console "
             "beside the program's folder, or in docs where it was built. Put it there.")
              .toStdString(),
          owner);
      return;
    }
    window = new GuideWindow(owner);
    window->show();
    window->setSource(QUrl::fromLocalFile(sFile), QTextDocument::MarkdownResource);
  }
  window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
  window->raise();
  window->activateWindow();
}

QVariant GuideWindow::loadResource(int iType, const QUrl& name) {
  auto resource = QTextBrowser::loadResource(iType, name);
  if (iType != QTextDocument::ImageResource) return resource;
  auto image = resource.userType() == QMetaType::QByteArray
                   ? QImage::fromData(resource.toByteArray())
                   : resource.value<QImage>();
  const int iRoom = viewport()->width() - 2 * static_cast<int>(document()->documentMargin()) -
                    verticalScrollBar()->sizeHint().width();
  if (image.isNull() || image.width() <= iRoom) return resource;
  return image.scaledToWidth(iRoom, Qt::SmoothTransformation);
}

void GuideWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
    return;
  }
  QTextBrowser::keyPressEvent(event);
}

}  // namespace orvane::console
