#include "console/window/selection_menus.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <algorithm>

#include "console/look/shown_text.h"
#include "console/results/result_pane.h"
#include "console/scope/scope_pane.h"
#include "console/session/console_session.h"
#include "console/window/window_menus.h"

namespace orvane::console {

SelectionMenus::SelectionMenus(ConsoleSession& session, ScopePane& scope, ResultPane& results,
                               const WindowMenus& menus, QWidget* window)
    : QObject(window),
      m_session(session),
      m_scope(scope),
      m_results(results),
      m_menus(menus),
      m_window(window) {
  connect(qApp, &QApplication::focusChanged, this,
          [this](const QWidget*, const QWidget* now) { NotePane(now); });
  connect(m_menus.mnuAction, &QMenu::aboutToHide, this, [this] { emit StatusText({}); });
  connect(m_menus.mnuAction, &QMenu::aboutToShow, this, [this] {
    m_menus.mnuAction->clear();
    if (m_session.IsBusy()) return;
    Fill(*m_menus.mnuAction, Current(), IsAboutList() ? Origin::List : Origin::Tree);
  });
  // By what the user reads: the names of the entries differ from one kind of item to another.
  AddKey(m_scope, Qt::Key_F2, "Edit...", Origin::Tree);
  AddKey(m_scope, Qt::Key_Delete, "Remove", Origin::Tree);
  AddKey(m_results.List(), Qt::Key_F2, "Edit...", Origin::List);
  AddKey(m_results.List(), Qt::Key_Delete, "Remove", Origin::List);
}

void SelectionMenus::AddKey(QWidget& pane, Qt::Key key, const char* sCaption, Origin origin) {
  auto* action = new QAction(this);
  action->setShortcut(key);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  action->setAutoRepeat(false);
  pane.addAction(action);
  connect(
      action, &QAction::triggered, this,
      [this, sCaption = platform::Text(sCaption), origin] { Choose(sCaption, origin); },
      Qt::QueuedConnection);
}

void SelectionMenus::Choose(const platform::Text& sCaption, Origin origin) {
  if (m_session.IsBusy()) return;
  const auto selection = origin == Origin::List ? OfList() : OfTree();
  if (selection.Type() == platform::kSelectionNothing) return;
  for (const auto& menu : m_session.MenusOf(selection)) {
    for (std::size_t n = 0; n < menu.items.size(); ++n) {
      const auto& entry = menu.items[n];
      if (entry.sCaption != sCaption) continue;
      if (entry.bEnabled) Click(entry, static_cast<platform::Long>(n + 1), selection, origin);
      return;
    }
  }
}

void SelectionMenus::NotePane(const QWidget* focus) {
  const auto isIn = [&](const QWidget& pane) { return &pane == focus || pane.isAncestorOf(focus); };
  // Menu bar, toolbar and tabs are no panes: whoever goes there comes with what is marked.
  if (!focus) return;
  if (isIn(m_results.List())) {
    m_bInList = true;
  } else if (isIn(m_scope) || m_results.IsInControl(focus)) {
    m_bInList = false;
  }
}

HostedSelection SelectionMenus::OfList() const {
  auto items = m_results.List().SelectedItems();
  if (!items.empty()) return HostedSelection(std::move(items));
  return HostedSelection::OfListItems(m_results.List().SelectedRows());
}

bool SelectionMenus::IsAboutList() const {
  return m_results.IsListShown() && m_bInList && OfList().Type() != platform::kSelectionNothing;
}

HostedSelection SelectionMenus::Current() const {
  return IsAboutList() ? OfList() : OfTree();
}

HostedSelection SelectionMenus::OfTree() const {
  // The item that typing has come to may not be shown yet, but it is the one that is marked.
  auto item = m_scope.Marked();
  if (!item) item = m_session.Selected();
  return item ? HostedSelection({item}) : HostedSelection();
}

void SelectionMenus::AddOpen(QMenu& menu, const ScopeTreeItemPtr& item) {
  const bool bListed = IsListed(*item);
  const bool bElsewhere = item != m_session.Selected();
  const bool bFailed = item->State() == NodeState::Failed;
  if (!bElsewhere && !(bListed && (item->State() == NodeState::NotLoaded || bFailed))) return;
  auto* open = menu.addAction(bFailed ? tr("Try A&gain") : tr("&Open"));
  open->setObjectName("actOpenItem");
  connect(
      open, &QAction::triggered, this,
      [this, item, bElsewhere] {
        if (bElsewhere) {
          emit OpenRequested(item);
        } else {
          emit ExpandRequested(item);
        }
      },
      Qt::QueuedConnection);
}

void SelectionMenus::AddCommands(QMenu& menu, const platform::Menu& commands,
                                 const HostedSelection& selection, Origin origin) {
  if (!commands.sCaption.empty()) {
    menu.addSection(Shown(commands.sCaption));
  } else if (!menu.isEmpty()) {
    menu.addSeparator();
  }
  platform::Long lIndex = 0;
  for (const auto& entry : commands.items) {
    ++lIndex;
    auto* action = menu.addAction(Shown(entry.sCaption));
    action->setObjectName(Shown(entry.sName));
    action->setEnabled(entry.bEnabled);
    connect(
        action, &QAction::triggered, this,
        [this, entry, lIndex, selection, origin] { Click(entry, lIndex, selection, origin); },
        Qt::QueuedConnection);
    connect(action, &QAction::hovered, this,
            [this, sText = Shown(entry.sStatusText)] { emit StatusText(sText); });
  }
}

void SelectionMenus::Click(const platform::MenuItem& entry, platform::Long lIndex,
                           const HostedSelection& selection, Origin origin) {
  if (m_session.IsBusy()) return;
  const auto& items = selection.Items();
  // A command on a server or its catalogs finds no grid of another one shown. A table or a query is
  // not shown for its command, since showing runs it, whatever came of the command.
  if (origin == Origin::Tree && items.size() == 1 && IsListed(*items.front())) {
    m_session.Select(items.front());
  }
  emit StatusText(Shown(entry.sStatusText));
  m_session.ClickMenu(entry.sName, lIndex, selection);
  emit StatusText({});
}

bool SelectionMenus::IsListed(const ScopeTreeItem& item) const {
  const auto* type = m_session.Tree().NodeType(item.Type());
  return type && !type->resultViews.empty() && type->resultViews.front().sControlProgId.empty();
}

bool SelectionMenus::IsTable(const ScopeTreeItem& item) const {
  const auto* type = m_session.Tree().NodeType(item.Type());
  return type && !type->resultViews.empty() &&
         type->resultViews.front().sControlProgId == platform::kTableEditorProgId;
}

void SelectionMenus::AddImport(QMenu& menu, const HostedSelection& selection) {
  const auto& items = selection.Items();
  if (items.size() != 1 || !IsTable(*items.front())) return;
  if (!menu.isEmpty()) menu.addSeparator();
  auto* action = menu.addAction(tr("&Import Rows\u2026"));
  action->setObjectName("actImportRows");
  action->setStatusTip(tr("Takes the rows of a file of comma-separated values into the table."));
  connect(
      action, &QAction::triggered, this, [this, item = items.front()] { Import(item); },
      Qt::QueuedConnection);
}

// Its rows are shown when they are in, so the table is shown for this command.
void SelectionMenus::Import(const ScopeTreeItemPtr& item) {
  if (m_session.IsBusy() || item->IsRemoved()) return;
  m_session.Select(item);
  if (m_session.Selected() != item) return;
  m_session.ShowView(0);
  // Showing handles events, and one of them may have led elsewhere.
  const auto* view = m_session.CurrentResultView();
  if (m_session.Selected() != item || !view) return;
  if (const auto control = view->HostedControl()) control->Import();
}

void SelectionMenus::AddRefresh(QMenu& menu, const HostedSelection& selection) {
  const auto& items = selection.Items();
  const auto shown = m_session.Selected();
  const bool bMarkedElsewhere = m_scope.Marked() && m_scope.Marked() != shown;
  // The window's own actions are about the marked item.
  if (items.size() != 1 || (items.front() == shown && !bMarkedElsewhere)) {
    if (!menu.isEmpty()) menu.addSeparator();
    menu.addAction(m_menus.actReload->isEnabled() ? m_menus.actReload : m_menus.actRefresh);
    return;
  }
  const auto& item = items.front();
  if (!m_session.CanReload(*item)) return;
  menu.addSeparator();
  auto* reload = menu.addAction(m_menus.actReload->text());
  reload->setObjectName("actReloadItem");
  connect(
      reload, &QAction::triggered, this,
      [this, item] {
        if (!m_session.IsBusy()) m_session.Reload(item);
      },
      Qt::QueuedConnection);
}

void SelectionMenus::Fill(QMenu& menu, const HostedSelection& selection, Origin origin) {
  if (selection.Items().size() == 1) AddOpen(menu, selection.Items().front());
  for (const auto& commands : m_session.MenusOf(selection))
    AddCommands(menu, commands, selection, origin);
  AddImport(menu, selection);
  AddRefresh(menu, selection);
}

void SelectionMenus::Show(const HostedSelection& selection, Origin origin, const QPoint& position) {
  if (m_session.IsBusy()) {
    m_awaited = {selection, origin, position};
    return;
  }
  const auto& items = selection.Items();
  if (std::any_of(items.begin(), items.end(), [](const auto& item) { return item->IsRemoved(); })) {
    m_scope.MenuClosed();
    return;
  }
  auto* menu = new QMenu(m_window);
  menu->setObjectName("contextMenu");
  menu->setAttribute(Qt::WA_DeleteOnClose);
  Fill(*menu, selection, origin);
  connect(menu, &QMenu::aboutToHide, this, [this] {
    m_scope.MenuClosed();
    emit StatusText({});
  });
  menu->popup(position);
}

void SelectionMenus::ShowForList(const QPoint& position) {
  auto selection = OfList();
  if (selection.Type() == platform::kSelectionNothing && m_session.Selected()) {
    selection = HostedSelection({m_session.Selected()});
  }
  Show(selection, Origin::List, position);
}

void SelectionMenus::ShowAwaited() {
  if (const auto awaited = std::exchange(m_awaited, {})) {
    Show(awaited->selection, awaited->origin, awaited->position);
  }
}

void SelectionMenus::ForgetAwaited() {
  m_awaited.reset();
  m_scope.MenuClosed();
}

}  // namespace orvane::console
