// The console as the snap-in sees it. The snap-in may hold it longer than the session lives; it
// then answers as an empty console. User-interface thread.
#pragma once

#include "platform/console/console.h"

namespace orvane::console {

class ConsoleSession;
class ScopeTree;

class HostedConsole final : public platform::Console, public platform::View {
 public:
  explicit HostedConsole(ConsoleSession& session);
  ~HostedConsole() override;

  platform::ScopeItems& ScopeItems() override;
  void StaticNodeDisplayName(const platform::Text& sDisplayName) override;
  platform::View& CurrentView() override { return *this; }
  std::shared_ptr<platform::ResultView> CurrentResultView() override;
  platform::ToolbarPtr CreateToolbar() override;

  void SelectScopeItem(const platform::ScopeItemPtr& item) override;
  void RefreshSelection() override;

  /// The session is gone.
  void LetGo();

 private:
  ConsoleSession* m_session;
  std::unique_ptr<ScopeTree> m_emptyTree;  // what is left of a session that is gone
};

}  // namespace orvane::console
