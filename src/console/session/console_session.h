// One snap-in at work in one document: creates it, hands it the console's events, and keeps what it
// makes of them: the scope tree (ScopeTree, Branches), and the selected item with its view, toolbar
// and verbs (ShownItem). Knows no window; panes follow its signals, which come while the session is
// at work. User-interface thread.
#pragma once

#include <QObject>
#include <functional>

#include "console/session/branches.h"
#include "console/session/shown_item.h"

namespace orvane::console {

class HostedConsole;

class ConsoleSession final : public QObject {
  Q_OBJECT

 public:
  /// Makes an object of the class of that progid with the services; fails with a sentence.
  using Creator = std::function<platform::ObjectPtr(const platform::Text& sProgId,
                                                    const platform::Services& services)>;

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
  bool IsOpen() const noexcept { return m_calls.IsOpen(); }
  /// True while a handler of the snap-in runs, or a control waits for a server on its own: what
  /// would hide the view has to come afterwards.
  bool IsBusy() const {
    return m_calls.IsRunning() ||
           (m_services.longOperation && m_services.longOperation->IsRunning());
  }
  /// Asks the snap-in for what is to be saved. False when it could not give all of it.
  bool Write(platform::PropertyBag& pb);

  /// How the controls of items are laid out now, by the items' places.
  const KeptLayouts::Layouts& Layouts() { return m_shown.Layouts().All(); }
  /// How they are to be laid out when they are shown next; given before the session starts.
  void Layouts(KeptLayouts::Layouts layouts) { m_shown.LayoutsToCome().All(std::move(layouts)); }

  ScopeTree& Tree() noexcept { return m_tree; }
  const platform::SnapInDescription& Description() const noexcept { return m_description; }
  /// What the snap-in and the controls are created with.
  const platform::Services& Services() const noexcept { return m_services; }
  const ScopeTreeItemPtr& Selected() const noexcept { return m_shown.Item(); }
  HostedResultView* CurrentResultView() const noexcept { return m_shown.View().get(); }
  /// The views that the selected item's type offers, the default one first.
  std::vector<platform::ResultViewDescription> ViewsOfSelected() const { return m_shown.Views(); }
  const HostedControlBar& ControlBar() const noexcept { return m_shown.ControlBar(); }
  bool IsRefreshEnabled() const { return m_shown.IsRefreshEnabled(); }

  /// Makes the item the selected one and shows its default view. While another view is being
  /// shown, this is done when that has ended.
  void Select(const ScopeTreeItemPtr& item) { m_shown.Select(item); }
  /// Shows another view of the selected item; does nothing when there is none of that position.
  void ShowView(std::size_t nView) { m_shown.ShowView(nView); }
  /// Expands an item that is not loaded, or failed to load; returns when that is done.
  void Expand(const ScopeTreeItemPtr& item) { m_branches.Expand(item); }
  /// True for an item whose list was read from a server, or could not be, and for a loaded one with
  /// an item right beneath it whose list can be read.
  bool CanReload(const ScopeTreeItem& item) const { return m_branches.CanReload(item); }
  /// Takes away what was read from the server beneath the item and expands it anew; what the
  /// document alone knows stays. The selection stays as far as it is found again.
  void Reload(const ScopeTreeItemPtr& item) { m_branches.Reload(item); }
  /// Brings verbs, commands and lists in line with the selected item.
  void RefreshSelection() { m_shown.Refresh(); }
  std::vector<platform::Menu> MenusOf(const HostedSelection& selection);
  void ClickMenu(const platform::Text& sMenuItem, platform::Long lIndex,
                 const HostedSelection& selection);
  void ClickButton(const platform::Text& sKey);
  /// What F5 does for the selected item: another try of a failed expansion, the snap-in's Refresh
  /// where its verb is enabled, else Reload.
  void Refresh();

 signals:
  /// An event begins that the snap-in will hear of; nothing has happened yet.
  void EventBegins(orvane::console::EventKind kind);
  /// The outermost handler has returned.
  void EventEnded(orvane::console::EventKind kind);
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

  Creator m_creator;
  platform::Services m_services;
  ScopeTree m_tree;
  SnapInCalls m_calls;
  ShownItem m_shown;
  Branches m_branches;
  std::shared_ptr<HostedConsole> m_console;
  platform::SnapInDescription m_description;
};

}  // namespace orvane::console
