#include "console/session/console_session.h"

#include "console/session/hosted_console.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Failure;
using platform::Long;
using platform::SnapIn;
using platform::Text;
namespace failure = platform::failure;

ConsoleSession::ConsoleSession(Creator creator, platform::Services services, const ItemLook* look)
    : m_creator(std::move(creator)),
      m_services(std::move(services)),
      m_tree(look),
      m_calls(m_services),
      m_shown(m_calls, m_tree,
              [this](const Text& sProgId) { return m_creator(sProgId, m_services); }),
      m_branches(m_calls, m_tree, m_shown) {
  m_tree.OnExpandInNameSpace([this](const ScopeTreeItemPtr& item) {
    Expand(item);
    emit Expanded(item);
  });
  m_tree.OnRemoving([this](const ScopeTreeItemPtr& item, bool bChildrenOnly) {
    m_shown.Removing(item, bChildrenOnly);
    // What is read from a server comes back when it is read anew; a single item that goes was
    // removed from the document.
    if (!bChildrenOnly) m_shown.LayoutsToCome().Forget(KeptLayouts::PlaceOf(*item));
  });
  m_tree.OnRekeying([this](const ScopeTreeItem& item, const Text& sKey) {
    m_shown.LayoutsToCome().Carry(KeptLayouts::PlaceOf(item), KeptLayouts::PlaceOf(item, sKey));
  });
  connect(&m_calls, &SnapInCalls::Ending, this, [this] {
    m_tree.FollowServers();
    m_tree.Flush();
    m_shown.RefreshIfDue();
  });
  connect(&m_calls, &SnapInCalls::Begins, this, &ConsoleSession::EventBegins);
  connect(&m_calls, &SnapInCalls::Ended, this, &ConsoleSession::EventEnded);
  connect(&m_branches, &Branches::ExpansionFailed, this, &ConsoleSession::ExpansionFailed);
  connect(&m_shown, &ShownItem::Selecting, this, &ConsoleSession::Selecting);
  connect(&m_shown, &ShownItem::ViewMade, this, &ConsoleSession::ViewMade);
  connect(&m_shown, &ShownItem::ViewReady, this, &ConsoleSession::ViewReady);
  connect(&m_shown, &ShownItem::ViewGone, this, &ConsoleSession::ViewGone);
  connect(&m_shown, &ShownItem::ToolbarChanged, this, &ConsoleSession::ToolbarChanged);
  connect(&m_shown, &ShownItem::Changed, this, &ConsoleSession::SelectionChanged);
}

ConsoleSession::~ConsoleSession() {
  Close();
}

bool ConsoleSession::Start(const Text& sProgId, platform::PropertyBag* pb) {
  Close();
  auto console = std::make_shared<HostedConsole>(*this);
  m_services.console = console;
  std::shared_ptr<SnapIn> snapIn;
  try {
    snapIn = std::dynamic_pointer_cast<SnapIn>(m_creator(sProgId, m_services));
    if (!snapIn) {
      throw Failure(failure::kComponent,
                    "The component \"" + sProgId + "\" is no snap-in; register the right one.",
                    "console");
    }
    m_description = snapIn->Description();
  } catch (...) {
    snapIn.reset();
    m_services.console.reset();
    console->LetGo();
    throw;
  }
  m_console = std::move(console);
  m_calls.Target(std::move(snapIn));
  m_shown.ShowIn(m_console.get());
  m_tree.Reset(m_description);

  const SnapInCalls::Event event(m_calls, EventKind::Browsing);
  bool bWhole = true;
  m_calls.Call(EventKind::Browsing, [](SnapIn& it) { it.SnapIn_Initialize(); });
  if (pb) {
    m_calls.Call(EventKind::Browsing, [&](SnapIn& it) { bWhole = it.SnapIn_ReadProperties(*pb); });
  }
  const auto item = m_tree.StaticItem();
  m_calls.Call(EventKind::Browsing, [&](SnapIn& it) { it.ScopeItems_Initialize(item); });
  Select(item);
  return bWhole;
}

void ConsoleSession::Close() {
  if (!IsOpen()) return;
  m_shown.Close();
  m_calls.Call(EventKind::Browsing, [](SnapIn& it) { it.SnapIn_Unload(); });
  m_tree.Clear();
  m_calls.Call(EventKind::Browsing, [](SnapIn& it) { it.SnapIn_Terminate(); });
  m_calls.Target(nullptr);
  m_shown.ShowIn(nullptr);
  m_services.console.reset();
  m_console->LetGo();
  m_console.reset();
}

bool ConsoleSession::Write(platform::PropertyBag& pb) {
  if (!IsOpen()) return false;
  try {
    return m_calls.Target()->SnapIn_WriteProperties(pb);
  } catch (const std::exception& e) {
    m_calls.ShowError(e);
    return false;
  }
}

std::vector<platform::Menu> ConsoleSession::MenusOf(const HostedSelection& selection) {
  HostedContextMenu menu;
  if (selection.ScopeItemCount() > 0) {
    m_calls.Call(EventKind::Browsing,
                 [&](SnapIn& it) { it.Views_AddTopMenuItems(*m_console, selection, menu, true); });
  }
  return menu.Menus();
}

void ConsoleSession::ClickMenu(const Text& sMenuItem, Long lIndex,
                               const HostedSelection& selection) {
  m_calls.Call(EventKind::Command,
               [&](SnapIn& it) { it.Menu_Click(sMenuItem, lIndex, selection); });
}

void ConsoleSession::ClickButton(const Text& sKey) {
  const auto toolbar = ControlBar().Attached();
  if (!toolbar) return;
  m_calls.Call(EventKind::Command,
               [&](SnapIn& it) { it.Toolbar_ButtonClick(toolbar->Item(sKey)); });
}

void ConsoleSession::Refresh() {
  const auto item = Selected();
  if (!item) return;
  if (item->State() == NodeState::Failed) {
    Expand(item);
    return;
  }
  if (!IsRefreshEnabled()) {
    Reload(item);
    return;
  }
  m_calls.Call(EventKind::Browsing, [&](SnapIn& it) { it.Views_Refresh(*m_console); });
}

}  // namespace orvane::console
