// The selected item and the view that is shown of it: one at a time, the old one hidden before the
// new one is made, so that a control lies in its pane before the snap-in hears of it. Part of the
// session; user-interface thread.
#pragma once

#include <functional>
#include <optional>

#include "console/session/hosted_menu.h"
#include "console/session/hosted_result_view.h"
#include "console/session/hosted_toolbar.h"
#include "console/session/kept_layouts.h"
#include "console/session/scope_tree.h"
#include "console/session/snap_in_calls.h"

namespace orvane::console {

class ShownItem final : public QObject {
  Q_OBJECT

 public:
  /// Makes a control of the class of that progid; fails with a sentence.
  using ControlMaker = std::function<platform::ObjectPtr(const platform::Text& sProgId)>;

  /// Calls and tree outlive this.
  ShownItem(SnapInCalls& calls, ScopeTree& tree, ControlMaker make);

  /// What the snap-in is handed as its view, from the session's start to its end.
  void ShowIn(platform::View* view) { m_shownIn = view; }
  /// How controls were laid out, the one that is shown included.
  const KeptLayouts& Layouts();
  KeptLayouts& LayoutsToCome() noexcept { return m_layouts; }
  /// Deselects and hides what is shown, and lets go of it.
  void Close();

  const ScopeTreeItemPtr& Item() const noexcept { return m_item; }
  const std::shared_ptr<HostedResultView>& View() const noexcept { return m_view; }
  std::vector<platform::ResultViewDescription> Views() const;
  const HostedControlBar& ControlBar() const noexcept { return m_controlBar; }
  bool IsRefreshEnabled() const { return m_verbs.Enabled(platform::kVerbRefresh); }

  /// Shows the item's default view, once what is being shown is.
  void Select(const ScopeTreeItemPtr& item);
  void ShowView(std::size_t nView);
  /// Brings verbs and toolbar in line with the item; within a handler at the event's end.
  void Refresh();
  /// The event ends: does what was asked for within it.
  void RefreshIfDue();
  /// An item, or everything beneath it, goes: what is shown of it is left for what lies above.
  void Removing(const ScopeTreeItemPtr& item, bool bChildrenOnly);

 signals:
  void Selecting(const orvane::console::ScopeTreeItemPtr& item);
  void ViewMade(orvane::console::HostedResultView* view);
  void ViewReady(orvane::console::HostedResultView* view);
  void ViewGone(orvane::console::HostedResultView* view);
  void ToolbarChanged();
  void Changed();

 private:
  void Show(const ScopeTreeItemPtr& item, std::size_t nView);
  void ShowNow(const ScopeTreeItemPtr& item, std::size_t nView);
  void MakeControl(HostedResultView& view, const platform::Text& sProgId);
  void MakeView(const platform::ResultViewDescription& description);
  void HideView();
  void KeepLayout();
  void FollowToolbar();
  void TellSelected();

  SnapInCalls& m_calls;
  ScopeTree& m_tree;
  ControlMaker m_make;
  platform::View* m_shownIn = nullptr;
  KeptLayouts m_layouts;
  ScopeTreeItemPtr m_item;
  std::shared_ptr<HostedResultView> m_view;
  HostedControlBar m_controlBar;
  HostedVerbs m_verbs;
  std::shared_ptr<HostedToolbar> m_followed;
  bool m_bShowing = false;
  bool m_bRefreshDue = false;
  std::optional<std::pair<ScopeTreeItemPtr, std::size_t>> m_next;
};

}  // namespace orvane::console
