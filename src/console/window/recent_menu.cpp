#include "console/window/recent_menu.h"

#include <QMenu>

#include "console/look/shown_text.h"
#include "console/window/document_keeper.h"

namespace orvane::console {

RecentMenu::RecentMenu(QMenu& menu, DocumentKeeper& keeper)
    : QObject(&menu), m_menu(menu), m_keeper(keeper) {
  connect(&menu, &QMenu::aboutToShow, this, &RecentMenu::Fill);
}

void RecentMenu::Fill() {
  m_menu.clear();
  const auto paths = m_keeper.Recent();
  int iNumber = 0;
  for (const auto& sPath : paths) {
    auto sShown = Shown(sPath);
    sShown.replace('&', "&&");
    auto* action = m_menu.addAction(
        ++iNumber < 10 ? QStringLiteral("&%1  %2").arg(iNumber).arg(sShown) : sShown);
    action->setData(Shown(sPath));
    connect(
        action, &QAction::triggered, this, [this, sPath] { m_keeper.Open(sPath); },
        Qt::QueuedConnection);
  }
  if (paths.empty()) m_menu.addAction(tr("No documents yet"))->setEnabled(false);
}

}  // namespace orvane::console
