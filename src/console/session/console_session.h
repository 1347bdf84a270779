// One snap-in at work in one document: creates it, forwards the console's events to it, and keeps
// what it made of them: the scope tree, the selection, the result view shown, the toolbar and the
// verbs. Knows no window; panes follow its signals, which come while the session is at work, so
// that a control lies in its pane before the snap-in hears of it. User-interface thread.
#pragma once

#include <QObject>
#include <functional>
#include <optional>

#include "console/session/hosted_menu.h"
#include "console/session/hosted_result_view.h"
#include "console/session/hosted_toolbar.h"
#include "console/session/scope_tree.h"
#include "platform/services.h"

namespace orvane::console {

class HostedConsole;

class ConsoleSession final : public QObject {
  Q_OBJECT

 public:
  /// Makes an object of the class of that progid with the services; fails with a sentence.
  using Creator = std::function<platform::ObjectPtr(const platform::Text& sProgId,
                                                    const platform::Services& services)>;

  /// What an event means for the document: nothing, for moving about in what is known; something
  /// found by expanding, which would be found again; or work that may be worth saving.
  enum class EventKind : std::uint8_t { Browsing, Finding, Command };

  /// The services need a user interface; the console in them is the session's own. The look may
  /// be null, and outlives the session.
  ConsoleSession(Creator creator, platform::Services services, const ItemLook* look);
  ~ConsoleSession() override;

  /// Creates the snap-in and hands it the document's bag, or none for a new document; then shows
  /// the static node. Returns what SnapIn_ReadProperties returned. Fails, and the session stays
  /// closed, when the snap-in cannot be created.
  bool Start(const platform::Text& sProgId, platform::PropertyBag* pb);
  /// Hides the view, lets go of all items and of the snap-in. Does nothing when closed.
  void Close();
  bool IsOpen() const noexcept { return m_snapIn != nullptr; }
  /// True while a handler of the snap-in runs, or a control waits for a server on its own: what
  /// would hide the view has to come afterwards.
  bool IsBusy() const {
    return m_iDepth > 0 || (m_services.longOperation && m_services.longOperation->IsRunning());
  }
  /// Asks the snap-in for what is to be saved. False when it could not give all of it.
  bool Write(platform::PropertyBag& pb);

  ScopeTree& Tree() noexcept { return *m_tree; }
  const platform::SnapInDescription& Description() const noexcept { return m_description; }
  /// What the snap-in and the controls are created with.
  const platform::Services& Services() const noexcept { return m_services; }
  const ScopeTreeItemPtr& Selected() const noexcept { return m_selected; }
  HostedResultView* CurrentResultView() const noexcept { return m_view.get(); }
  /// The views that the selected item's type offers, the default one first.
  std::vector<platform::ResultViewDescription> ViewsOfSelected() const;
  const HostedControlBar& ControlBar() const noexcept { return m_controlBar; }
  bool IsRefreshEnabled() const { return m_verbs.Enabled(platform::kVerbRefresh); }

  /// Makes the item the selected one and shows its default view. While another view is being
  /// shown, this is done when that has ended.
  void Select(const ScopeTreeItemPtr& item);
  /// Shows another view of the selected item; does nothing when there is none of that position.
  void ShowView(std::size_t nView);
  /// Expands an item that is not loaded, or failed to load; returns when that is done.
  void Expand(const ScopeTreeItemPtr& item);
  /// True for an item whose list was read from a server, and for one with such an item right
  /// beneath it.
  bool CanReload(const ScopeTreeItem& item) const;
  /// Takes away what was read from the server beneath the item and expands it anew; what the
  /// document alone knows stays. The selection stays as far as it is found again.
  void Reload(const ScopeTreeItemPtr& item);
  /// Brings verbs, commands and lists in line with the selected item.
  void RefreshSelection();
  std::vector<platform::Menu> MenusOf(const HostedSelection& selection);
  void ClickMenu(const platform::Text& sMenuItem, platform::Long lIndex,
                 const HostedSelection& selection);
  void ClickButton(const platform::Text& sKey);
  /// What F5 does for the selected item: another try of a failed expansion, the snap-in's Refresh
  /// where its verb is enabled, else Reload.
  void Refresh();

 signals:
  /// An event begins that the snap-in will hear of; nothing has happened yet.
  void EventBegins(orvane::console::ConsoleSession::EventKind kind);
  /// The outermost handler has returned.
  void EventEnded(orvane::console::ConsoleSession::EventKind kind);
  /// The static node's name has changed.
  void NameChanged();
  void Selecting(const orvane::console::ScopeTreeItemPtr& item);
  /// The item was expanded in the name space, not through its expand mark.
  void Expanded(const orvane::console::ScopeTreeItemPtr& item);
  void ExpansionFailed(const orvane::console::ScopeTreeItemPtr& item);
  /// A view's control is made, or could not be; the view is not initialised yet.
  void ViewMade(orvane::console::HostedResultView* view);
  /// A view is initialised, and a list is filled.
  void ViewReady(orvane::console::HostedResultView* view);
  /// The view is hidden and about to be destroyed.
  void ViewGone(orvane::console::HostedResultView* view);
  void ToolbarChanged();
  /// The selected item shows something new: name, verbs, commands.
  void SelectionChanged();

 private:
  friend class HostedConsole;
  class Event;

  template <class F>
  void Call(EventKind kind, F&& handler);
  void ShowItem(const ScopeTreeItemPtr& item, std::size_t nView);
  void ShowNow(const ScopeTreeItemPtr& item, std::size_t nView);
  void MakeView(const platform::ResultViewDescription& description);
  void HideView();
  bool IsReadFromServer(const ScopeTreeItem& item) const;
  void ReloadChildren(const ScopeTreeItemPtr& item);
  /// Expands and selects from the last of the keys to the first, as far as there are such items.
  void SelectAlong(const std::vector<platform::Text>& keys);
  void FollowToolbar();
  void EndEvent(EventKind kind);
  void RefreshNow();
  /// Notes what came out of a handler by mistake, and shows it as the snap-in shows its failures.
  void ShowError(const std::exception& e);
  void NoteFailure(const std::exception& e);
  void Removing(const ScopeTreeItemPtr& item, bool bChildrenOnly);

  Creator m_creator;
  platform::Services m_services;
  std::unique_ptr<ScopeTree> m_tree;
  std::shared_ptr<HostedConsole> m_console;
  platform::SnapInDescription m_description;
  std::shared_ptr<platform::SnapIn> m_snapIn;
  ScopeTreeItemPtr m_selected;
  std::shared_ptr<HostedResultView> m_view;
  HostedControlBar m_controlBar;
  HostedVerbs m_verbs;
  int m_iDepth = 0;
  bool m_bFinding = false;  // an expansion belongs to the event
  bool m_bShowing = false;
  std::shared_ptr<HostedToolbar> m_followed;
  bool m_bRefreshSelection = false;
  std::optional<std::pair<ScopeTreeItemPtr, std::size_t>> m_next;
};

}  // namespace orvane::console
