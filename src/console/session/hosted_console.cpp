#include "console/session/hosted_console.h"

#include "console/session/console_session.h"

namespace orvane::console {

using platform::Text;

HostedConsole::HostedConsole(ConsoleSession& session) : m_session(&session) {}

HostedConsole::~HostedConsole() = default;

platform::ScopeItems& HostedConsole::ScopeItems() {
  if (m_session) return m_session->Tree();
  if (!m_emptyTree) m_emptyTree = std::make_unique<ScopeTree>();
  return *m_emptyTree;
}

void HostedConsole::StaticNodeDisplayName(const Text& sDisplayName) {
  if (!m_session || !m_session->Tree().StaticItem()) return;
  m_session->Tree().StaticItem()->DisplayName(sDisplayName);
  emit m_session->NameChanged();
}

std::shared_ptr<platform::ResultView> HostedConsole::CurrentResultView() {
  return m_session ? m_session->m_shown.View() : nullptr;
}

platform::ToolbarPtr HostedConsole::CreateToolbar() {
  return std::make_shared<HostedToolbar>();
}

void HostedConsole::SelectScopeItem(const platform::ScopeItemPtr& item) {
  if (!m_session) return;
  const auto own = m_session->Tree().ItemOf(item);
  if (!own) return;
  if (own == m_session->Selected()) {
    m_session->RefreshSelection();
  } else {
    m_session->Select(own);
  }
}

void HostedConsole::RefreshSelection() {
  if (m_session) m_session->RefreshSelection();
}

void HostedConsole::LetGo() {
  m_session = nullptr;
}

}  // namespace orvane::console
