// The console's window: menus, toolbar, the two panes and the status bar around one document.
// User-interface thread.
#pragma once

#include <QMainWindow>
#include <QTimer>

#include "console/look/image_list.h"
#include "console/scope/scope_look.h"
#include "console/window/document_keeper.h"
#include "console/window/window_menus.h"

class QSplitter;

namespace orvane::console {

class NoticeBar;
class ResultPane;
class ScopePane;
class SelectionMenus;
class ToolbarView;
class UserViews;
class WindowStatus;
struct ViewParts;

class MainWindow final : public QMainWindow {
  Q_OBJECT

 public:
  explicit MainWindow(WindowParts parts, QWidget* parent = nullptr);
  ~MainWindow() override;

  /// What may be done with the document, and what it is; see DocumentKeeper.
  bool NewDocument() { return m_keeper.New(); }
  bool OpenDocument(platform::Text sPath) { return m_keeper.Open(std::move(sPath)); }
  /// Opens the document that the console was ended with, and selects its item, where the user wants
  /// that; false when there is none, or it cannot be opened, which is told.
  bool OpenLast();
  bool Save() { return m_keeper.Save(); }
  bool SaveTo(const platform::Text& sPath) { return m_keeper.SaveTo(sPath); }
  bool IsModified() { return m_keeper.IsModified(); }
  const console::Document& Document() const noexcept { return m_keeper.Document(); }

  ConsoleSession& Session() noexcept { return m_session; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void MakePanes();
  /// Gives the tree its share of the window's width.
  void FitTree();
  void ConnectMenus();
  void FollowPanes();
  void FollowSession();
  void FollowDocument();
  void ShowStarted();

  void RequestSelect(const ScopeTreeItemPtr& item);
  void RequestExpand(const ScopeTreeItemPtr& item);
  /// Does what was asked for while the session was busy, or waits on.
  void CatchUp();
  void OpenItem(const ScopeTreeItemPtr& item);

  void ShowTitle();
  void ShowStatus();
  void ShowNotice();
  void UpdateActions();
  /// The marked item when it is not the one shown yet; else none.
  ScopeTreeItemPtr MarkedElsewhere() const;
  /// F5 and its commands: about the marked item, which is shown first.
  void RefreshMarked();
  ViewParts ViewOfWindow();
  /// Keeps how the window looks with its document.
  void KeepView();

  WindowParts m_parts;
  ImageList m_images;
  ScopeLook m_look;
  ConsoleSession m_session;
  DocumentKeeper m_keeper;
  std::unique_ptr<UserViews> m_views;  // none without settings
  WindowMenus m_menus;

  QSplitter* m_splitter = nullptr;
  bool m_bTreeChosen = false;  // its share of the width, by the user
  ScopePane* m_scope = nullptr;
  ResultPane* m_results = nullptr;
  ToolbarView* m_toolbar = nullptr;
  NoticeBar* m_notice = nullptr;
  WindowStatus* m_status = nullptr;
  SelectionMenus* m_selectionMenus = nullptr;
  // Asked for while the session was busy.
  ScopeTreeItemPtr m_wantedSelection;
  ScopeTreeItemPtr m_wantedExpansion;
  QTimer m_catchUp;  // nobody tells of the end of a wait outside events
};

}  // namespace orvane::console
