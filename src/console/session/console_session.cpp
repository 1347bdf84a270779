#include "console/session/console_session.h"

#include <algorithm>

#include "console/session/hosted_console.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Failure;
using platform::Long;
using platform::SnapIn;
using platform::Text;
namespace failure = platform::failure;

namespace {

Failure AsFailure(const std::exception& e) {
  const auto* failure = dynamic_cast<const Failure*>(&e);
  return failure ? *failure : Failure(failure::kComponent, e.what(), "console");
}

}  // namespace

/// One event for the snap-in, from the first handler to the last that it leads to.
class ConsoleSession::Event {
 public:
  Event(ConsoleSession& session, EventKind kind) : m_session(session), m_kind(kind) {
    if (m_session.m_iDepth++ == 0) emit m_session.EventBegins(kind);
  }
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  ~Event() { m_session.EndEvent(m_kind); }

 private:
  ConsoleSession& m_session;
  EventKind m_kind;
};

template <class F>
void ConsoleSession::Call(EventKind kind, F&& handler) {
  if (!m_snapIn) return;
  const auto snapIn = m_snapIn;
  const Event event(*this, kind);
  // Handlers let no failure out; should one slip, it is shown and nothing else is lost.
  try {
    handler(*snapIn);
  } catch (const std::exception& e) {
    ShowError(e);
  }
}

void ConsoleSession::ShowError(const std::exception& e) {
  NoteFailure(e);
  m_services.ui->MsgBox(e.what(), platform::MsgBoxButtons::OkOnly, platform::MsgBoxIcon::None,
                        "Error");
}

void ConsoleSession::NoteFailure(const std::exception& e) {
  if (m_services.failures) m_services.failures->Note(AsFailure(e));
}

void ConsoleSession::EndEvent(EventKind kind) {
  if (m_iDepth == 1) {
    m_tree->FollowServers();
    m_tree->Flush();
    if (m_bRefreshSelection) RefreshNow();
  }
  if (--m_iDepth > 0) return;
  const bool bFinding = std::exchange(m_bFinding, false);
  emit EventEnded(bFinding && kind == EventKind::Browsing ? EventKind::Finding : kind);
}

ConsoleSession::ConsoleSession(Creator creator, platform::Services services, const ItemLook* look)
    : m_creator(std::move(creator)),
      m_services(std::move(services)),
      m_tree(std::make_unique<ScopeTree>(look)) {
  m_tree->OnExpandInNameSpace([this](const ScopeTreeItemPtr& item) {
    Expand(item);
    emit Expanded(item);
  });
  m_tree->OnRemoving(
      [this](const ScopeTreeItemPtr& item, bool bChildrenOnly) { Removing(item, bChildrenOnly); });
  m_controlBar.OnChange([this] { FollowToolbar(); });
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
  m_snapIn = std::move(snapIn);
  m_tree->Reset(m_description);

  const Event event(*this, EventKind::Browsing);
  bool bWhole = true;
  Call(EventKind::Browsing, [](SnapIn& it) { it.SnapIn_Initialize(); });
  if (pb) {
    Call(EventKind::Browsing, [&](SnapIn& it) { bWhole = it.SnapIn_ReadProperties(*pb); });
  }
  const auto item = m_tree->StaticItem();
  Call(EventKind::Browsing, [&](SnapIn& it) { it.ScopeItems_Initialize(item); });
  Select(item);
  return bWhole;
}

void ConsoleSession::Close() {
  if (!m_snapIn) return;
  if (m_selected) {
    const HostedSelection selection({m_selected});
    Call(EventKind::Browsing, [&](SnapIn& it) {
      it.Views_Select(*m_console, selection, false, m_verbs);
      it.Views_UpdateControlbar(*m_console, selection, false, m_controlBar);
    });
  }
  HideView();
  m_selected.reset();
  m_next.reset();
  m_bRefreshSelection = false;
  m_controlBar.Reset();
  m_verbs.Reset();
  Call(EventKind::Browsing, [](SnapIn& it) { it.SnapIn_Unload(); });
  m_tree->Clear();
  Call(EventKind::Browsing, [](SnapIn& it) { it.SnapIn_Terminate(); });
  m_snapIn.reset();
  m_services.console.reset();
  m_console->LetGo();
  m_console.reset();
}

bool ConsoleSession::Write(platform::PropertyBag& pb) {
  if (!m_snapIn) return false;
  try {
    return m_snapIn->SnapIn_WriteProperties(pb);
  } catch (const std::exception& e) {
    ShowError(e);
    return false;
  }
}

std::vector<platform::ResultViewDescription> ConsoleSession::ViewsOfSelected() const {
  const auto* type = m_selected ? m_tree->NodeType(m_selected->Type()) : nullptr;
  return type ? type->resultViews : std::vector<platform::ResultViewDescription>();
}

void ConsoleSession::Select(const ScopeTreeItemPtr& item) {
  if (!m_snapIn || !item || item->IsRemoved()) return;
  m_tree->Flush();
  if (item == m_selected && !m_bShowing) return;
  ShowItem(item, 0);
}

void ConsoleSession::ShowView(std::size_t nView) {
  if (!m_snapIn || !m_selected || nView >= ViewsOfSelected().size()) return;
  ShowItem(m_selected, nView);
}

void ConsoleSession::ShowItem(const ScopeTreeItemPtr& item, std::size_t nView) {
  if (m_bShowing) {
    m_next = {item, nView};
    return;
  }
  const Event event(*this, EventKind::Browsing);
  m_bShowing = true;
  ShowNow(item, nView);
  while (m_next) {
    const auto next = *std::exchange(m_next, {});
    if (!next.first->IsRemoved()) ShowNow(next.first, next.second);
  }
  m_bShowing = false;
}

void ConsoleSession::ShowNow(const ScopeTreeItemPtr& item, std::size_t nView) {
  if (m_selected) {
    // The control bar is not told: moving from one grid to the next keeps the toolbar, and the
    // selection below takes it away where none belongs.
    const HostedSelection deselected({m_selected});
    Call(EventKind::Browsing,
         [&](SnapIn& it) { it.Views_Select(*m_console, deselected, false, m_verbs); });
  }
  HideView();
  m_selected = item;
  emit Selecting(item);
  const auto views = ViewsOfSelected();
  if (nView < views.size()) MakeView(views[nView]);
  const HostedSelection selection({item});
  Call(EventKind::Browsing, [&](SnapIn& it) {
    it.Views_Select(*m_console, selection, true, m_verbs);
    it.Views_UpdateControlbar(*m_console, selection, true, m_controlBar);
  });
  emit SelectionChanged();
}

void ConsoleSession::MakeView(const platform::ResultViewDescription& description) {
  m_view = std::make_shared<HostedResultView>(description, m_selected);
  const auto view = m_view;
  if (view->IsControl()) {
    try {
      auto control = std::dynamic_pointer_cast<platform::Control>(
          m_creator(description.sControlProgId, m_services));
      if (!control) {
        throw Failure(failure::kComponent,
                      "The component \"" + description.sControlProgId +
                          "\" is no control; register the right one.",
                      "console");
      }
      view->HostedControl(std::move(control));
    } catch (const std::exception& e) {
      NoteFailure(e);
      view->ControlFailure(e.what());
    }
    emit ViewMade(view.get());
  }
  Call(EventKind::Browsing, [&](SnapIn& it) { it.ResultViews_Initialize(*view); });
  emit ViewReady(view.get());
  if (view->HostedControl()) {
    Call(EventKind::Browsing, [&](SnapIn& it) { it.ResultViews_InitializeControl(*view); });
  }
  Call(EventKind::Browsing, [&](SnapIn& it) { it.ResultViews_Activate(*view); });
}

void ConsoleSession::HideView() {
  if (!m_view) return;
  const auto view = m_view;
  Call(EventKind::Browsing, [&](SnapIn& it) { it.ResultViews_Deactivate(*view); });
  emit ViewGone(view.get());
  m_view.reset();
}

void ConsoleSession::Expand(const ScopeTreeItemPtr& item) {
  if (!m_snapIn || !item || item->IsRemoved()) return;
  if (item->State() == NodeState::Loaded || item->State() == NodeState::Loading) return;
  {
    const Event event(*this, EventKind::Finding);
    m_bFinding = true;
    if (item->State() == NodeState::Failed) {
      // Beginning anew removes what the failed try left behind, and a view of that goes first.
      Removing(item, true);
      if (item->IsRemoved() || item->State() != NodeState::Failed) return;
    }
    m_tree->BeginExpansion(*item);
    bool bWhole = false;
    Call(EventKind::Finding, [&](SnapIn& it) { bWhole = it.ScopeItems_Expand(item); });
    m_tree->EndExpansion(*item, !bWhole);
  }
  if (item->State() == NodeState::Failed) emit ExpansionFailed(item);
}

bool ConsoleSession::CanReload(const ScopeTreeItem& item) const {
  if (item.IsRemoved() || !item.Parent() || item.State() != NodeState::Loaded) return false;
  if (IsReadFromServer(item)) return true;
  const auto& children = item.Children();
  return std::any_of(children.begin(), children.end(), [this](const auto& child) {
    return IsReadFromServer(*child) &&
           (child->State() == NodeState::Loaded || child->State() == NodeState::Failed);
  });
}

bool ConsoleSession::IsReadFromServer(const ScopeTreeItem& item) const {
  const auto* type = m_tree->NodeType(item.Type());
  return type && type->bReadFromServer;
}

void ConsoleSession::ReloadChildren(const ScopeTreeItemPtr& item) {
  const auto children = item->Children();
  for (const auto& child : children) {
    if (!IsReadFromServer(*child) || child->IsRemoved()) continue;
    if (child->State() == NodeState::Failed) {
      Expand(child);
    } else {
      Reload(child);
    }
  }
}

void ConsoleSession::Reload(const ScopeTreeItemPtr& item) {
  if (!m_snapIn || !item || !CanReload(*item)) return;
  const Event event(*this, EventKind::Finding);
  m_bFinding = true;
  if (!IsReadFromServer(*item)) {
    ReloadChildren(item);
    return;
  }
  std::vector<Text> keys;  // from the selected item up to, but not with, the one reloaded
  if (m_selected && m_selected->IsWithin(*item)) {
    for (const auto* at = m_selected.get(); at != item.get(); at = at->Parent()) {
      keys.push_back(at->Key());
    }
  }
  const auto sView = m_view ? m_view->Description().sName : Text();
  m_tree->RemoveChildren(item->ScopeNode());
  Expand(item);
  SelectAlong(keys);
  const auto views = ViewsOfSelected();
  for (std::size_t n = 1; !keys.empty() && n < views.size(); ++n) {
    if (m_selected->Key() == keys.front() && views[n].sName == sView) ShowView(n);
  }
}

void ConsoleSession::SelectAlong(const std::vector<Text>& keys) {
  ScopeTreeItemPtr last;
  for (auto at = keys.rbegin(); at != keys.rend(); ++at) {
    const auto next = m_tree->Find(*at);
    if (!next) break;
    last = next;
    if (std::next(at) != keys.rend()) Expand(next);
  }
  if (last) Select(last);
}

void ConsoleSession::RefreshSelection() {
  // Within a handler the snap-in may go on changing things; what counts is how it leaves them.
  if (m_iDepth > 0) {
    m_bRefreshSelection = true;
    return;
  }
  const Event event(*this, EventKind::Browsing);
  RefreshNow();
}

void ConsoleSession::RefreshNow() {
  m_bRefreshSelection = false;
  if (!m_selected || !m_snapIn) return;
  const HostedSelection selection({m_selected});
  Call(EventKind::Browsing, [&](SnapIn& it) {
    it.Views_Select(*m_console, selection, true, m_verbs);
    it.Views_UpdateControlbar(*m_console, selection, true, m_controlBar);
  });
  emit SelectionChanged();
}

std::vector<platform::Menu> ConsoleSession::MenusOf(const HostedSelection& selection) {
  HostedContextMenu menu;
  if (selection.ScopeItemCount() > 0) {
    Call(EventKind::Browsing,
         [&](SnapIn& it) { it.Views_AddTopMenuItems(*m_console, selection, menu, true); });
  }
  return menu.Menus();
}

void ConsoleSession::ClickMenu(const Text& sMenuItem, Long lIndex,
                               const HostedSelection& selection) {
  Call(EventKind::Command, [&](SnapIn& it) { it.Menu_Click(sMenuItem, lIndex, selection); });
}

void ConsoleSession::ClickButton(const Text& sKey) {
  const auto toolbar = m_controlBar.Attached();
  if (!toolbar) return;
  Call(EventKind::Command, [&](SnapIn& it) { it.Toolbar_ButtonClick(toolbar->Item(sKey)); });
}

void ConsoleSession::Refresh() {
  if (!m_selected) return;
  if (m_selected->State() == NodeState::Failed) {
    Expand(m_selected);
    return;
  }
  if (!IsRefreshEnabled()) {
    Reload(m_selected);
    return;
  }
  Call(EventKind::Browsing, [&](SnapIn& it) { it.Views_Refresh(*m_console); });
}

void ConsoleSession::FollowToolbar() {
  if (m_followed) m_followed->OnChange({});
  m_followed = m_controlBar.Attached();
  if (m_followed) {
    m_followed->OnChange([this](bool /*bButtons*/) { emit ToolbarChanged(); });
  }
  emit ToolbarChanged();
}

void ConsoleSession::Removing(const ScopeTreeItemPtr& item, bool bChildrenOnly) {
  if (!m_selected || !m_selected->IsWithin(*item)) return;
  if (bChildrenOnly && m_selected == item) return;
  const auto above = bChildrenOnly    ? item
                     : item->Parent() ? item->Parent()->shared_from_this()
                                      : ScopeTreeItemPtr();
  if (above) ShowItem(above, 0);
}

}  // namespace orvane::console
