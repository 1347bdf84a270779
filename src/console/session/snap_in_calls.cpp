#include "console/session/snap_in_calls.h"

#include <utility>

#include "platform/failure.h"

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
  NoteFailure(e);
  m_services.ui->MsgBox(e.what(), platform::MsgBoxButtons::OkOnly, platform::MsgBoxIcon::None,
                        "Error");
}

void SnapInCalls::NoteFailure(const std::exception& e) {
  if (!m_services.failures) return;
  const auto* failure = dynamic_cast<const platform::Failure*>(&e);
  m_services.failures->Note(
      failure ? *failure : platform::Failure(platform::failure::kComponent, e.what(), "console"));
}

}  // namespace orvane::console
