// The console's window: menus, toolbar, the two panes and the status bar around one document.
// User-interface thread.
#pragma once

#include <QMainWindow>
#include <optional>

#include "console/document/document.h"
#include "console/look/image_list.h"
#include "console/scope/scope_look.h"
#include "console/session/console_session.h"
#include "console/window/window_menus.h"

class QLabel;
class QMenu;
class QSettings;
class QSplitter;

namespace orvane::console {

class MessageBoxes;
class NoticeBar;
class RecentDocuments;
class ResultPane;
class ScopePane;
class ToolbarView;
class UnsavedWork;
struct ViewParts;

/// What the program hands its window.
struct WindowParts {
  ConsoleSession::Creator create;
  /// Makes the objects that lie in a document; those of create when there is none.
  DocumentBag::ObjectCreator createStored;
  platform::Services services;    ///< without the console
  MessageBoxes* boxes = nullptr;  ///< those behind services.ui, to be silenced; or null
  /// Texts that the connections opened so far add to what is saved.
  std::function<std::vector<platform::Text>()> optionTexts;
  /// Called when the snap-in has done with an event, a document's reading included; or none.
  std::function<void()> eventEnded;
  QSettings* settings = nullptr;  ///< outlives the window
  platform::Text sSnapInProgId = platform::kSnapInProgId;
};

class MainWindow final : public QMainWindow {
  Q_OBJECT

 public:
  explicit MainWindow(WindowParts parts, QWidget* parent = nullptr);
  ~MainWindow() override;

  /// Each asks about unsaved work first, and returns false when the user cancelled or it failed,
  /// which was shown.
  bool NewDocument();
  /// Taken by value: the path is often that of the document, or of the menu item, that goes.
  bool OpenDocument(platform::Text sPath);
  /// Returns false when nothing was saved; the document then stays as it was, unsaved mark too.
  bool Save();
  bool SaveTo(const platform::Text& sPath);

  console::Document& Document() noexcept { return *m_document; }
  ConsoleSession& Session() noexcept { return *m_session; }
  /// Why the snap-in could not be loaded; empty when it was.
  const platform::Text& SnapInFailure() const noexcept { return m_sSnapInFailure; }
  ScopePane& Scope() noexcept { return *m_scope; }
  ResultPane& Results() noexcept { return *m_results; }
  ToolbarView& SnapInToolbar() noexcept { return *m_toolbar; }
  /// True while there is unsaved work; looks when it may have changed.
  bool IsModified();
  /// Fills a menu with the commands for the selection, as the Action menu and context menus have.
  void FillActionMenu(QMenu& menu, const HostedSelection& selection);

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ConnectMenus();
  void MakePanes();
  void FollowSession();
  /// Starts a session on the document that is there now.
  void StartSession();
  void CloseSession();
  bool MayDropWork();
  bool SaveAs();
  /// What a save would write, the view included; null when the snap-in could not give all of it.
  std::unique_ptr<DocumentContent> ContentToSave();
  bool Written(const std::function<void()>& write);
  /// Notes the failure and shows its sentence.
  void ShowFailure(const std::exception& e);
  void NoteFailure(const std::exception& e);

  void RequestSelect(const ScopeTreeItemPtr& item);
  void RequestExpand(const ScopeTreeItemPtr& item);
  void OpenItem(const ScopeTreeItemPtr& item);
  void ShowMenu(const HostedSelection& selection, const QPoint& position);
  HostedSelection SelectionOfList() const;
  HostedSelection CurrentSelection() const;
  /// Remembers the pane that the focus came to.
  void NotePane(const QWidget* focus);

  void ShowTitle();
  void ShowStatus();
  void ShowNotice();
  void UpdateActions();
  void FillRecent();
  void ShowAbout();
  ViewParts ViewOfWindow();

  WindowParts m_parts;
  ImageList m_images;
  ScopeLook m_look{m_images};
  std::unique_ptr<RecentDocuments> m_recent;
  std::unique_ptr<ConsoleSession> m_session;
  std::unique_ptr<console::Document> m_document;
  UnsavedWork* m_unsaved;
  WindowMenus m_menus;
  bool m_bReadWhole = true;  // false: saving would lose what could not be read
  platform::Text m_sSnapInFailure;

  QSplitter* m_splitter = nullptr;
  ScopePane* m_scope = nullptr;
  ResultPane* m_results = nullptr;
  ToolbarView* m_toolbar = nullptr;
  NoticeBar* m_notice = nullptr;
  QLabel* m_lblItems = nullptr;
  QLabel* m_lblReadOnly = nullptr;
  // Asked for while the snap-in was busy; done when it has ended.
  struct WantedMenu {
    HostedSelection selection;
    QPoint position;
  };
  ScopeTreeItemPtr m_wantedSelection;
  std::optional<WantedMenu> m_wantedMenu;
  bool m_bInList = false;  // of the panes, the list had the focus last
};

}  // namespace orvane::console
