// The menu of the documents opened last, filled each time it opens. For the window's menu bar.
// User-interface thread.
#pragma once

#include <QObject>

class QMenu;

namespace orvane::console {

class DocumentKeeper;

class RecentMenu final : public QObject {
  Q_OBJECT

 public:
  /// Belongs to the menu; the keeper, which opens what is chosen, is there while the menu can open.
  RecentMenu(QMenu& menu, DocumentKeeper& keeper);

 private:
  void Fill();

  QMenu& m_menu;
  DocumentKeeper& m_keeper;
};

}  // namespace orvane::console
