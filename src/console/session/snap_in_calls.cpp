#include "console/session/snap_in_calls.h"

#include <utility>

#include "platform/told_failure.h"

namespace orvane::console {

void SnapInCalls::Begin(EventKind kind) {
  if (m_iDepth++ == 0) emit Begins(kind);
}

void SnapInCalls::End(EventKind kind) {
  if (m_iDepth == 1) emit Ending();
  if (--m_iDepth > 0) return;
  const bool bFinding = std::exchange(m_bFinding, false);
  emit Ended(bFinding && kind == EventKind::Browsing ? EventKind::Finding : kind);
}

void SnapInCalls::ShowError(const std::exception& e) {
  m_services.ui->MsgBox(NoteFailure(e), platform::MsgBoxButtons::OkOnly, platform::MsgBoxIcon::None,
                        "Error");
}

platform::Text SnapInCalls::NoteFailure(const std::exception& e) {
  const auto told = platform::ToldFailure(e, platform::failure::kComponent, "console");
  if (m_services.failures) m_services.failures->Note(told);
  return told.Description();
}

}  // namespace orvane::console
