// What the commands of all nodes share.
#include "snapin/snap_in.h"

namespace orvane::snapin {

using platform::Boolean;
using platform::ScopeItemPtr;
using platform::Text;

Boolean SnapIn::Confirmed(const Text& sQuestion, const Text& sTitle) {
  return m_services.ui->MsgBox(sQuestion, platform::MsgBoxButtons::YesNo,
                               platform::MsgBoxIcon::None, sTitle) == platform::MsgBoxResult::Yes;
}

Boolean SnapIn::IsShown(const platform::ScopeItem& item) const {
  const auto view = m_services.console->CurrentResultView();
  const ScopeItemPtr shown = view ? view->ScopeItem() : nullptr;
  return shown && shown->Key() == item.Key();
}

}  // namespace orvane::snapin
