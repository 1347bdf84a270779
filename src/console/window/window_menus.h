// The window's menu bar: its entries, keys and marks. What an entry does is connected by the
// window. User-interface thread.
#pragma once

#include <QObject>

class QAction;
class QMenu;
class QMenuBar;

namespace orvane::console {

class WindowMenus final : public QObject {
  Q_OBJECT

 public:
  /// Fills the menu bar, which owns the menus and outlives this.
  explicit WindowMenus(QMenuBar& menuBar, QObject* parent);

  // Owned by their menus. Names are those of the objects, which tests and pictures look for.
  QAction* actNew = nullptr;
  QAction* actOpen = nullptr;
  QMenu* mnuRecent = nullptr;
  QAction* actReopen = nullptr;
  QAction* actSave = nullptr;
  QAction* actSaveAs = nullptr;
  QAction* actExit = nullptr;
  QMenu* mnuAction = nullptr;  ///< empty; filled for the selection each time it opens
  QAction* actRefresh = nullptr;
  QAction* actReload = nullptr;
  QAction* actDetails = nullptr;
  QAction* actIcons = nullptr;
  QAction* actToolbar = nullptr;
  QAction* actSmallImages = nullptr;
  QAction* actLargeImages = nullptr;
  QAction* actStatusBar = nullptr;
  QAction* actRowMemory = nullptr;
  QAction* actGuide = nullptr;
  QAction* actAbout = nullptr;

 private:
  void MakeFileMenu(QMenuBar& menuBar);
  void MakeViewMenu(QMenuBar& menuBar);
};

}  // namespace orvane::console
