// The tree at the left of the window. Turns mouse and keys into requests; what they lead to is the
// session's. An item that keys pass on their way is not asked for; the one on which they rest is.
// Requests come from the event loop, never from within a handler of the tree view, since
// an expansion may open dialogs and wait. User-interface thread.
#pragma once

#include <QPersistentModelIndex>
#include <QTimer>
#include <QTreeView>

#include "console/session/scope_tree.h"

namespace orvane::console {

class ScopePane final : public QTreeView {
  Q_OBJECT

 public:
  explicit ScopePane(QWidget* parent = nullptr);

  /// Shows the tree, which outlives the pane or is taken away with null.
  void ShowTree(ScopeTree* tree);
  /// Marks the item as selected and brings it into sight; no request follows.
  void ShowSelected(const ScopeTreeItemPtr& item);
  /// Opens the item's branch; no request follows.
  void ShowExpanded(const ScopeTreeItemPtr& item);
  /// Closes the item's branch, so that it can be opened again.
  void ShowCollapsed(const ScopeTreeItemPtr& item);
  /// The item that the user has marked, which may not have been asked for yet; or null.
  ScopeTreeItemPtr Marked() const;
  /// The menu asked for has closed: its item need not be told from the others any more.
  void MenuClosed();

 signals:
  /// Typing or a held key has marked another item, which is not shown yet.
  void MarkMoved();
  void SelectRequested(const orvane::console::ScopeTreeItemPtr& item);
  /// The user wants to see what lies beneath the item.
  void ExpandRequested(const orvane::console::ScopeTreeItemPtr& item);
  /// Right click, Menu key or Shift+F10 on the item; the position is on the screen. The selection
  /// stays where it is.
  void MenuRequested(const orvane::console::ScopeTreeItemPtr& item, const QPoint& position);

 protected:
  int sizeHintForColumn(int iColumn) const override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyboardSearch(const QString& sTyped) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  /// The expand mark, as dark as the row's text: the style's own is lost on a marked row.
  void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override;
  /// Marks a selected row from edge to edge, and frames the one whose menu is open.
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

 private:
  void RequestExpansion(const QModelIndex& index);
  void RequestSelected();
  /// The same, once the keys rest and no menu or dialog is open.
  void RequestSelectedLater();
  /// Selects the item just collapsed when the one selected lies beneath it, out of sight.
  void SelectIfHidden(const QModelIndex& collapsed);

  ScopeTree* m_tree = nullptr;
  bool m_bFollowing = false;  // the pane is told what to show, and asks for nothing
  bool m_bSelectPosted = false;
  bool m_bPassing = false;  // the current item changes under a key that may be one of several
  QTimer m_rest;            // runs while keys may follow
  QPersistentModelIndex m_menuOf;
};

}  // namespace orvane::console
