#include "console/window/window_status.h"

#include <QEvent>
#include <QLabel>
#include <QStatusBar>
#include <algorithm>

#include "console/document/document.h"
#include "console/look/shown_text.h"
#include "console/results/result_pane.h"
#include "console/session/server_of.h"
#include "widgets/tool_tip.h"

namespace orvane::console {

namespace {

/// Room for the server's name and its user.
constexpr int kServerCharacters = 40;

}  // namespace

WindowStatus::WindowStatus(QStatusBar& bar)
    : QObject(&bar),
      m_bar(bar),
      m_lblReadOnly(AddLabel(bar, "readOnlyMark")),
      m_lblServer(AddLabel(bar, "shownServer")),
      m_lblItems(AddLabel(bar, "itemCount")) {
  bar.setAccessibleName(tr("Status"));
  bar.installEventFilter(this);
  m_lblServer->setContentsMargins(12, 0, 12, 0);
  m_lblServer->setTextFormat(Qt::PlainText);
  m_lblItems->setContentsMargins(0, 0, 6, 0);
}

QLabel* WindowStatus::AddLabel(QStatusBar& bar, const char* sName) {
  auto* label = new QLabel(&bar);
  label->setObjectName(QLatin1String(sName));
  bar.addPermanentWidget(label);
  return label;
}

void WindowStatus::ShowDocument(const Document& document) {
  m_lblReadOnly->setText(document.IsReadOnly() ? tr("Read-only") : QString());
  m_lblReadOnly->setVisible(document.IsReadOnly());
  m_lblReadOnly->setToolTip(widgets::ToolTipOf(Shown(document.ReadOnlyReason())));
}

void WindowStatus::ShowItem(const ScopeTreeItemPtr& item) {
  const auto server = item ? ServerOf(*item) : std::nullopt;
  const auto sServer = !server               ? QString()
                       : !server->bConnected ? tr("%1, not connected").arg(Shown(server->sName))
                       : server->sUser.empty()
                           ? Shown(server->sName)
                           : tr("%1 as %2").arg(Shown(server->sName), Shown(server->sUser));
  const auto sLink = server && !server->sLink.empty() ? ", " + Shown(server->sLink) : QString();
  // No name holds the window open; of the link the beginning says the most.
  m_sServer = sServer;
  m_sLink = sLink;
  FitServer();
  m_lblServer->setVisible(server.has_value());
}

void WindowStatus::FitServer() {
  const auto metrics = m_lblServer->fontMetrics();
  // What is told of the rows has more to say than where they are.
  const int iWidth = std::min(kServerCharacters * metrics.averageCharWidth(), m_bar.width() / 4);
  m_lblServer->setText(metrics.elidedText(m_sServer, Qt::ElideMiddle, iWidth) +
                       metrics.elidedText(m_sLink, Qt::ElideRight, iWidth));
  const auto sWhole = m_sServer + m_sLink;
  m_lblServer->setToolTip(m_lblServer->text() == sWhole ? QString() : widgets::ToolTipOf(sWhole));
}

bool WindowStatus::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) FitServer();
  return QObject::eventFilter(watched, event);
}

void WindowStatus::ShowRows(ResultPane& results) {
  const bool bList = results.IsListShown() && results.Sentence().isEmpty();
  m_lblItems->setVisible(bList);
  if (!bList) {
    m_lblItems->clear();
    return;
  }
  const int iRows = results.List().RowCount();
  const int iSelected = results.List().SelectedRows();
  const auto sRows = iRows == 1 ? tr("1 item") : tr("%L1 items").arg(iRows);
  m_lblItems->setText(iSelected > 1 ? tr("%1, %L2 selected").arg(sRows).arg(iSelected) : sRows);
}

}  // namespace orvane::console
