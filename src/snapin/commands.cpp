// What the commands of all nodes share.
#include "access/connecting.h"
#include "snapin/snap_in.h"

namespace orvane::snapin {

using platform::Boolean;
using platform::ScopeItemPtr;
using platform::Text;

Boolean SnapIn::Confirmed(const Text& sQuestion, const Text& sTitle) {
  return m_services.ui->MsgBox(sQuestion, platform::MsgBoxButtons::YesNo,
                               platform::MsgBoxIcon::None, sTitle) == platform::MsgBoxResult::Yes;
}

platform::RowsPlace SnapIn::PlaceOf(const nodes::ServerNode& server, const Text& sCatalog) {
  const auto& cn = server.Connection();
  const bool bNamed = !server.Server().empty() || !cn;
  return {bNamed ? server.Server() : access::DataSource(*cn), sCatalog};
}

Boolean SnapIn::MayLoseRows(const platform::RowsPlace& place) {
  // Without a server the place would be everything.
  return !m_services.unsentRows || place.sServer.empty() || m_services.unsentRows->MayLose(place);
}

void SnapIn::LoseRows(const platform::RowsPlace& place) {
  if (m_services.unsentRows && !place.sServer.empty()) m_services.unsentRows->Lose(place);
}

Boolean SnapIn::IsShown(const platform::ScopeItem& item) const {
  const auto view = m_services.console->CurrentResultView();
  const ScopeItemPtr shown = view ? view->ScopeItem() : nullptr;
  return shown && shown->Key() == item.Key();
}

}  // namespace orvane::snapin
