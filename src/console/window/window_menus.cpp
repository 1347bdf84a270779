#include "console/window/window_menus.h"

#include <QActionGroup>
#include <QMenuBar>
#include <initializer_list>

#include "console/look/image_list.h"

namespace orvane::console {

namespace {

QMenu* AddMenu(QMenuBar& menuBar, const char* sName, const QString& sText) {
  auto* menu = menuBar.addMenu(sText);
  menu->setObjectName(QLatin1String(sName));
  return menu;
}

QMenu* AddMenu(QMenu& within, const char* sName, const QString& sText) {
  auto* menu = within.addMenu(sText);
  menu->setObjectName(QLatin1String(sName));
  return menu;
}

QAction* Add(QMenu& menu, const char* sName, const QString& sText, const QKeySequence& keys = {}) {
  auto* action = menu.addAction(sText);
  action->setObjectName(QLatin1String(sName));
  action->setShortcut(keys);
  return action;
}

/// The first of them is marked to begin with.
void LetOneBeMarked(std::initializer_list<QAction*> actions, QObject* parent) {
  auto* group = new QActionGroup(parent);
  for (auto* action : actions) {
    action->setCheckable(true);
    group->addAction(action);
  }
  (*actions.begin())->setChecked(true);
}

void BeginMarked(QAction* action) {
  action->setCheckable(true);
  action->setChecked(true);
}

}  // namespace

WindowMenus::WindowMenus(QMenuBar& menuBar, QObject* parent) : QObject(parent) {
  MakeFileMenu(menuBar);
  mnuAction = AddMenu(menuBar, "mnuAction", tr("&Action"));
  MakeViewMenu(menuBar);
  auto* help = AddMenu(menuBar, "mnuHelp", tr("&Help"));
  actGuide = Add(*help, "actGuide", tr("User &Guide"), QKeySequence(Qt::Key_F1));
  help->addSeparator();
  actAbout = Add(*help, "actAbout", tr("&About ORVANE Console"));
}

void WindowMenus::MakeFileMenu(QMenuBar& menuBar) {
  auto* file = AddMenu(menuBar, "mnuFile", tr("&File"));
  actNew = Add(*file, "actNew", tr("&New"), QKeySequence::New);
  actNew->setIcon(ImageList::Named("document-new"));
  actOpen = Add(*file, "actOpen", tr("&Open…"), QKeySequence::Open);
  actOpen->setIcon(ImageList::Named("document-open"));
  mnuRecent = AddMenu(*file, "mnuRecent", tr("Open &Recent"));
  actReopen = Add(*file, "actReopen", tr("Reopen Last at S&tart"));
  actReopen->setCheckable(true);
  actReopen->setStatusTip(
      tr("Started without a document, the console opens the one that it was ended with."));
  file->addSeparator();
  actSave = Add(*file, "actSave", tr("&Save"), QKeySequence::Save);
  actSave->setIcon(ImageList::Named("document-save"));
  actSaveAs = Add(*file, "actSaveAs", tr("Save &As…"), QKeySequence(tr("Ctrl+Shift+S")));
  file->addSeparator();
  actExit = Add(*file, "actExit", tr("E&xit"), QKeySequence(tr("Ctrl+Q")));
}

void WindowMenus::MakeViewMenu(QMenuBar& menuBar) {
  auto* view = AddMenu(menuBar, "mnuView", tr("&View"));
  actRefresh = Add(*view, "actRefresh", tr("&Refresh"), QKeySequence(Qt::Key_F5));
  actRefresh->setIcon(ImageList::Named("refresh"));
  // It is all lines, in the colour of a menu's mark.
  actRefresh->setIconVisibleInMenu(false);
  actRefresh->setToolTip(
      tr("Refresh (%1)").arg(actRefresh->shortcut().toString(QKeySequence::NativeText)));
  actReload = Add(*view, "actReload", tr("Re&load"), QKeySequence(Qt::Key_F5));
  actReload->setIcon(ImageList::Named("refresh"));
  actReload->setIconVisibleInMenu(false);
  actReload->setToolTip(
      tr("Reload (%1)").arg(actReload->shortcut().toString(QKeySequence::NativeText)));
  actReload->setStatusTip(tr("Reads anew from the server what lies beneath the item."));
  actReload->setEnabled(false);
  view->addSeparator();
  actDetails = Add(*view, "actDetails", tr("&Details"));
  actIcons = Add(*view, "actIcons", tr("&Icons"));
  LetOneBeMarked({actDetails, actIcons}, this);
  view->addSeparator();
  auto* toolbar = AddMenu(*view, "mnuToolbar", tr("&Toolbar"));
  actToolbar = Add(*toolbar, "actToolbar", tr("&Show"));
  BeginMarked(actToolbar);
  toolbar->addSeparator();
  actSmallImages = Add(*toolbar, "actSmallImages", tr("S&mall Icons"));
  actLargeImages = Add(*toolbar, "actLargeImages", tr("&Large Icons"));
  LetOneBeMarked({actSmallImages, actLargeImages}, this);
  actStatusBar = Add(*view, "actStatusBar", tr("&Status Bar"));
  BeginMarked(actStatusBar);
  view->addSeparator();
  actRowMemory = Add(*view, "actRowMemory", tr("&Memory for Rows…"));
}

}  // namespace orvane::console
