#include "console/session/hosted_result_view.h"

#include "platform/failure.h"

namespace orvane::console {

using platform::Long;
using platform::Text;

platform::ListItem& HostedListItems::Add(const Text& sText, Long lIcon) {
  auto& row = m_rows.emplace_back(sText, lIcon, [this] {
    if (m_changed) m_changed();
  });
  if (m_changed) m_changed();
  return row;
}

platform::ObjectPtr HostedResultView::Control() const {
  if (!m_sControlFailure.empty()) {
    throw platform::Failure(platform::failure::kComponent, m_sControlFailure, "console");
  }
  return m_control;
}

}  // namespace orvane::console
