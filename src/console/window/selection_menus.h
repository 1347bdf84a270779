// The menus of commands for what is selected: the Action menu and the menus that a right click or
// the Menu key opens. Knows which pane the commands are about. User-interface thread.
#pragma once

#include <QObject>
#include <QPoint>
#include <optional>

#include "console/session/hosted_menu.h"

class QMenu;
class QWidget;

namespace orvane::console {

class ConsoleSession;
class ResultPane;
class ScopePane;
class WindowMenus;

class SelectionMenus final : public QObject {
  Q_OBJECT

 public:
  /// Where the selection was made. Who chooses a command in the tree is taken to its item.
  enum class Origin : std::uint8_t { Tree, List };

  /// All of these outlive the menus, which come up over the window.
  SelectionMenus(ConsoleSession& session, ScopePane& scope, ResultPane& results,
                 const WindowMenus& menus, QWidget* window);

  /// The rows marked in the list when the list had the focus last, else the item marked in the
  /// tree.
  HostedSelection Current() const;
  /// Fills a menu with the commands for the selection.
  void Fill(QMenu& menu, const HostedSelection& selection, Origin origin);
  /// Opens the menu there; while the session is at work, when that has ended.
  void Show(const HostedSelection& selection, Origin origin, const QPoint& position);
  /// Opens the menu of the rows marked in the list, or of the item listed when there are none.
  void ShowForList(const QPoint& position);
  /// Opens what was asked for while the session was at work.
  void ShowAwaited();
  /// Forgets it.
  void ForgetAwaited();
  /// Does what the entry of that caption does in the menu of what is marked there, which is nothing
  /// where the menu has none, or a disabled one.
  void Choose(const platform::Text& sCaption, Origin origin);

 signals:
  /// The item is to be shown, and what lies beneath it.
  void OpenRequested(const orvane::console::ScopeTreeItemPtr& item);
  /// The item shown is to be expanded.
  void ExpandRequested(const orvane::console::ScopeTreeItemPtr& item);
  /// What the snap-in says of the command pointed at, or at work; empty when that is over.
  void StatusText(const QString& sText);

 private:
  HostedSelection OfList() const;
  HostedSelection OfTree() const;
  /// Lets a key in the pane choose the entry of that caption.
  void AddKey(QWidget& pane, Qt::Key key, const char* sCaption, Origin origin);
  bool IsAboutList() const;
  /// Remembers the pane that the focus came to.
  void NotePane(const QWidget* focus);
  /// True for an item that shows a list.
  bool IsListed(const ScopeTreeItem& item) const;
  /// True for an item that shows a table's rows.
  bool IsTable(const ScopeTreeItem& item) const;
  void AddOpen(QMenu& menu, const ScopeTreeItemPtr& item);
  /// The command that reads the item anew, whether it is the one shown or not.
  void AddRefresh(QMenu& menu, const HostedSelection& selection);
  /// The command that takes rows of a file into a table, where the item is one.
  void AddImport(QMenu& menu, const HostedSelection& selection);
  /// Shows the table, and has its grid ask for the file.
  void Import(const ScopeTreeItemPtr& item);
  void Click(const platform::MenuItem& entry, platform::Long lIndex,
             const HostedSelection& selection, Origin origin);
  void AddCommands(QMenu& menu, const platform::Menu& commands, const HostedSelection& selection,
                   Origin origin);

  struct Awaited {
    HostedSelection selection;
    Origin origin;
    QPoint position;
  };

  ConsoleSession& m_session;
  ScopePane& m_scope;
  ResultPane& m_results;
  const WindowMenus& m_menus;
  QWidget* m_window;
  std::optional<Awaited> m_awaited;
  bool m_bInList = false;  // of the panes, the list had the focus last
};

}  // namespace orvane::console
