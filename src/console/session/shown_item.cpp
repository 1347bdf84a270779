#include "console/session/shown_item.h"

#include "platform/failure.h"

namespace orvane::console {

using platform::Failure;
using platform::SnapIn;
using platform::Text;

ShownItem::ShownItem(SnapInCalls& calls, ScopeTree& tree, ControlMaker make)
    : m_calls(calls), m_tree(tree), m_make(std::move(make)) {
  m_controlBar.OnChange([this] { FollowToolbar(); });
}

void ShownItem::Close() {
  if (m_item) {
    const HostedSelection selection({m_item});
    m_calls.Call(EventKind::Browsing, [&](SnapIn& it) {
      it.Views_Select(*m_shownIn, selection, false, m_verbs);
      it.Views_UpdateControlbar(*m_shownIn, selection, false, m_controlBar);
    });
  }
  HideView();
  m_item.reset();
  m_next.reset();
  m_bRefreshDue = false;
  m_controlBar.Reset();
  m_verbs.Reset();
}

std::vector<platform::ResultViewDescription> ShownItem::Views() const {
  const auto* type = m_item ? m_tree.NodeType(m_item->Type()) : nullptr;
  return type ? type->resultViews : std::vector<platform::ResultViewDescription>();
}

void ShownItem::Select(const ScopeTreeItemPtr& item) {
  if (!m_calls.IsOpen() || !item || item->IsRemoved()) return;
  m_tree.Flush();
  if (item == m_item && !m_bShowing) return;
  Show(item, 0);
}

void ShownItem::ShowView(std::size_t nView) {
  if (!m_calls.IsOpen() || !m_item || nView >= Views().size()) return;
  Show(m_item, nView);
}

void ShownItem::Show(const ScopeTreeItemPtr& item, std::size_t nView) {
  if (m_bShowing) {
    m_next = {item, nView};
    return;
  }
  const SnapInCalls::Event event(m_calls, EventKind::Browsing);
  m_bShowing = true;
  ShowNow(item, nView);
  while (m_next) {
    const auto next = *std::exchange(m_next, {});
    if (!next.first->IsRemoved()) ShowNow(next.first, next.second);
  }
  m_bShowing = false;
}

void ShownItem::ShowNow(const ScopeTreeItemPtr& item, std::size_t nView) {
  if (m_item) {
    // The control bar is not told: moving from one grid to the next keeps the toolbar, and the
    // selection below takes it away where none belongs.
    const HostedSelection deselected({m_item});
    m_calls.Call(EventKind::Browsing,
                 [&](SnapIn& it) { it.Views_Select(*m_shownIn, deselected, false, m_verbs); });
  }
  HideView();
  m_item = item;
  emit Selecting(item);
  const auto views = Views();
  if (nView < views.size()) MakeView(views[nView]);
  TellSelected();
}

void ShownItem::TellSelected() {
  const HostedSelection selection({m_item});
  m_calls.Call(EventKind::Browsing, [&](SnapIn& it) {
    it.Views_Select(*m_shownIn, selection, true, m_verbs);
    it.Views_UpdateControlbar(*m_shownIn, selection, true, m_controlBar);
  });
  emit Changed();
}

void ShownItem::MakeControl(HostedResultView& view, const Text& sProgId) {
  try {
    auto control = std::dynamic_pointer_cast<platform::Control>(m_make(sProgId));
    if (!control) {
      throw Failure(platform::failure::kComponent,
                    "The component \"" + sProgId + "\" is no control; register the right one.",
                    "console");
    }
    view.HostedControl(std::move(control));
  } catch (const std::exception& e) {
    view.ControlFailure(m_calls.NoteFailure(e));
    return;
  }
  try {
    view.HostedControl()->Layout(m_layouts.Of(KeptLayouts::PlaceOf(*view.Item())));
  } catch (const std::exception& e) {
    // It is shown as a new one is.
    m_calls.NoteFailure(e);
  }
}

void ShownItem::MakeView(const platform::ResultViewDescription& description) {
  m_view = std::make_shared<HostedResultView>(description, m_item);
  const auto view = m_view;
  if (view->IsControl()) {
    MakeControl(*view, description.sControlProgId);
    emit ViewMade(view.get());
  }
  m_calls.Call(EventKind::Browsing, [&](SnapIn& it) { it.ResultViews_Initialize(*view); });
  emit ViewReady(view.get());
  if (view->HostedControl()) {
    m_calls.Call(EventKind::Browsing, [&](SnapIn& it) { it.ResultViews_InitializeControl(*view); });
  }
  m_calls.Call(EventKind::Browsing, [&](SnapIn& it) { it.ResultViews_Activate(*view); });
}

const KeptLayouts& ShownItem::Layouts() {
  KeepLayout();
  return m_layouts;
}

void ShownItem::KeepLayout() {
  if (!m_view || !m_item || !m_view->HostedControl()) return;
  try {
    m_layouts.Keep(KeptLayouts::PlaceOf(*m_item), m_view->HostedControl()->Layout());
  } catch (const std::exception& e) {
    m_calls.NoteFailure(e);
  }
}

void ShownItem::HideView() {
  if (!m_view) return;
  KeepLayout();
  const auto view = m_view;
  m_calls.Call(EventKind::Browsing, [&](SnapIn& it) { it.ResultViews_Deactivate(*view); });
  emit ViewGone(view.get());
  m_view.reset();
}

void ShownItem::Refresh() {
  // Within a handler the snap-in may go on changing things; what counts is how it leaves them.
  if (m_calls.IsRunning()) {
    m_bRefreshDue = true;
    return;
  }
  const SnapInCalls::Event event(m_calls, EventKind::Browsing);
  m_bRefreshDue = true;
  RefreshIfDue();
}

void ShownItem::RefreshIfDue() {
  if (std::exchange(m_bRefreshDue, false) && m_item && m_calls.IsOpen()) TellSelected();
}

void ShownItem::Removing(const ScopeTreeItemPtr& item, bool bChildrenOnly) {
  if (!m_item || !m_item->IsWithin(*item)) return;
  if (bChildrenOnly && m_item == item) return;
  const auto above = bChildrenOnly    ? item
                     : item->Parent() ? item->Parent()->shared_from_this()
                                      : ScopeTreeItemPtr();
  if (above) Show(above, 0);
}

void ShownItem::FollowToolbar() {
  if (m_followed) m_followed->OnChange({});
  m_followed = m_controlBar.Attached();
  if (m_followed) {
    m_followed->OnChange([this](bool /*bButtons*/) { emit ToolbarChanged(); });
  }
  emit ToolbarChanged();
}

}  // namespace orvane::console
