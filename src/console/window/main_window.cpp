#include "console/window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QResizeEvent>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>
#include <algorithm>

#include "console/document/user_views.h"
#include "console/look/shown_text.h"
#include "console/results/result_pane.h"
#include "console/scope/scope_pane.h"
#include "console/window/about_box.h"
#include "console/window/guide_key.h"
#include "console/window/guide_window.h"
#include "console/window/kept_view.h"
#include "console/window/last_session.h"
#include "console/window/menu_key.h"
#include "console/window/notice_bar.h"
#include "console/window/recent_menu.h"
#include "console/window/row_memory_question.h"
#include "console/window/selection_menus.h"
#include "console/window/toolbar_view.h"
#include "console/window/window_status.h"
#include "widgets/window_place.h"

namespace orvane::console {

using platform::Text;

namespace {

constexpr int kCatchUpMilliseconds = 50;
// In letters, so that larger ones have as much room; the screen bounds it.
constexpr QSize kUsualSize(156, 41);
constexpr int kTreeCharacters = 28;
constexpr int kTreeLevels = 4;
constexpr int kLeastTreeCharacters = 17;
constexpr int kLeastResultCharacters = 28;

QSize UsualSize(const QFontMetrics& letters) {
  return {kUsualSize.width() * letters.averageCharWidth(),
          kUsualSize.height() * letters.lineSpacing()};
}

}  // namespace

MainWindow::MainWindow(WindowParts parts, QWidget* parent)
    : QMainWindow(parent),
      m_parts(std::move(parts)),
      m_images(ImageList::ImagesAButton(m_parts.services.fileVersion.get())),
      m_look(m_images),
      m_session(m_parts.create, m_parts.services, &m_look),
      m_keeper(m_parts, m_session, this),
      m_menus(*menuBar(), this) {
  if (m_parts.settings) m_views = std::make_unique<UserViews>(*m_parts.settings);
  setObjectName("mainWindow");
  setWindowIcon(ImageList::Badge("orvane-console"));
  MakePanes();
  m_status = new WindowStatus(*statusBar());
  m_results->StatusBar(statusBar());
  menuBar()->setAccessibleName(tr("Menus"));
  m_selectionMenus = new SelectionMenus(m_session, *m_scope, *m_results, m_menus, this);
  FollowPanes();
  ConnectMenus();
  FollowSession();
  FollowDocument();
  resize(UsualSize(fontMetrics()));
  widgets::KeepOnScreen(*this);
  new MenuKey(this);
  new GuideKey(*this);
  qApp->installEventFilter(this);
  ShowTitle();
}

MainWindow::~MainWindow() {
  qApp->removeEventFilter(this);
  disconnect(qApp, nullptr, m_selectionMenus, nullptr);
  m_keeper.Close();
  m_results->Follow(nullptr);
  m_toolbar->Follow(nullptr);
  m_scope->ShowTree(nullptr);
}

bool MainWindow::OpenLast() {
  if (!m_parts.settings) return false;
  const LastSession last(*m_parts.settings);
  const Text sDocument = last.Document();
  if (sDocument.empty() || !OpenDocument(sDocument)) return false;
  RequestExpand(m_session.Tree().StaticItem());
  RequestSelect(last.Item(m_session.Tree()));
  return true;
}

void MainWindow::MakePanes() {
  auto* central = new QWidget(this);
  auto* layout = new QVBoxLayout(central);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  m_notice = new NoticeBar(central);
  layout->addWidget(m_notice);
  m_splitter = new QSplitter(Qt::Horizontal, central);
  m_splitter->setObjectName("splitter");
  m_splitter->setChildrenCollapsible(false);
  m_splitter->setHandleWidth(5);
  m_scope = new ScopePane(m_splitter);
  const int iCharacter = fontMetrics().averageCharWidth();
  m_scope->setMinimumWidth(kLeastTreeCharacters * iCharacter);
  m_results = new ResultPane(m_images, m_splitter);
  m_results->setMinimumWidth(kLeastResultCharacters * iCharacter);
  m_splitter->setStretchFactor(0, 0);
  m_splitter->setStretchFactor(1, 1);
  connect(m_splitter, &QSplitter::splitterMoved, this, [this] { m_bTreeChosen = true; });
  layout->addWidget(m_splitter, 1);
  setCentralWidget(central);

  m_toolbar = new ToolbarView(m_images, m_results);
  m_results->PlaceToolbar(m_toolbar);
  setContextMenuPolicy(Qt::NoContextMenu);
}

void MainWindow::FitTree() {
  // Whoever has moved the border wants it there.
  if (m_bTreeChosen) return;
  // Room for a server's name, in letters of any size, and no more than the rows can spare.
  const int iTree = std::min(kTreeCharacters * fontMetrics().averageCharWidth() +
                                 kTreeLevels * style()->pixelMetric(QStyle::PM_TreeViewIndentation),
                             width() / 3);
  m_splitter->setSizes({iTree, width() - iTree});
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (event->size().width() != event->oldSize().width()) FitTree();
}

void MainWindow::FollowPanes() {
  m_catchUp.setSingleShot(true);
  m_catchUp.setInterval(kCatchUpMilliseconds);
  connect(&m_catchUp, &QTimer::timeout, this, &MainWindow::CatchUp);
  connect(m_scope, &ScopePane::SelectRequested, this, &MainWindow::RequestSelect);
  connect(m_scope, &ScopePane::MarkMoved, this, &MainWindow::UpdateActions);
  connect(m_scope, &ScopePane::ExpandRequested, this, &MainWindow::RequestExpand);
  connect(m_scope, &ScopePane::MenuRequested, this,
          [this](const ScopeTreeItemPtr& item, const QPoint& position) {
            m_selectionMenus->Show(HostedSelection({item}), SelectionMenus::Origin::Tree, position);
            if (m_session.IsBusy()) m_catchUp.start();
          });
  connect(m_results, &ResultPane::ViewChosen, this, [this](int iView) {
    if (!m_session.IsBusy() && iView >= 0) m_session.ShowView(static_cast<std::size_t>(iView));
  });
  connect(m_results, &ResultPane::ExpandRequested, this,
          [this] { RequestExpand(m_session.Selected()); });
  connect(m_results, &ResultPane::RowsChanged, this, &MainWindow::ShowStatus);
  connect(&m_results->List(), &ResultList::SelectionChanged, this, &MainWindow::ShowStatus);
  connect(&m_results->List(), &ResultList::ItemOpened, this, &MainWindow::OpenItem);
  connect(&m_results->List(), &ResultList::UpRequested, this, [this] {
    const auto item = m_session.Selected();
    if (item && item->Parent()) RequestSelect(item->Parent()->shared_from_this());
  });
  connect(&m_results->List(), &ResultList::MenuRequested, m_selectionMenus,
          &SelectionMenus::ShowForList);
  connect(m_selectionMenus, &SelectionMenus::OpenRequested, this, &MainWindow::OpenItem);
  connect(m_selectionMenus, &SelectionMenus::ExpandRequested, this, &MainWindow::RequestExpand);
}

void MainWindow::ConnectMenus() {
  const auto on = [this](QAction* action, auto&& handler) {
    connect(action, &QAction::triggered, this, handler);
  };
  on(m_menus.actNew, [this] { m_keeper.New(); });
  on(m_menus.actOpen, [this] { m_keeper.AskAndOpen(); });
  new RecentMenu(*m_menus.mnuRecent, m_keeper);
  m_menus.actReopen->setEnabled(m_parts.settings != nullptr);
  if (m_parts.settings) {
    m_menus.actReopen->setChecked(LastSession(*m_parts.settings).IsWanted());
    on(m_menus.actReopen,
       [this](bool bChecked) { LastSession(*m_parts.settings).Wanted(bChecked); });
  }
  on(m_menus.actSave, [this] { m_keeper.Save(); });
  on(m_menus.actSaveAs, [this] { m_keeper.SaveAs(); });
  on(m_menus.actExit, [this] { close(); });
  on(m_menus.actRefresh, [this] { RefreshMarked(); });
  m_results->RefreshAction(m_menus.actRefresh);
  on(m_menus.actReload, [this] { RefreshMarked(); });
  connect(m_selectionMenus, &SelectionMenus::StatusText, statusBar(),
          [this](const QString& sText) { statusBar()->showMessage(sText); });
  on(m_menus.actDetails, [this] { m_results->List().Style(ListStyle::Details); });
  on(m_menus.actIcons, [this] { m_results->List().Style(ListStyle::Icons); });
  on(m_menus.actToolbar, [this](bool bChecked) { m_toolbar->Wanted(bChecked); });
  on(m_menus.actSmallImages, [this] { m_toolbar->Images(ButtonImages::Small); });
  on(m_menus.actLargeImages, [this] { m_toolbar->Images(ButtonImages::Large); });
  on(m_menus.actStatusBar, [this](bool bChecked) {
    statusBar()->setVisible(bChecked);
    m_results->StatusBar(bChecked ? statusBar() : nullptr);
  });
  // Without a home there is nowhere to keep it.
  m_menus.actRowMemory->setEnabled(m_parts.settings != nullptr);
  on(m_menus.actRowMemory, [this] { AskForRowMemory(*this, *m_parts.settings); });
  on(m_menus.actGuide, [this] { GuideWindow::Open(this); });
  on(m_menus.actAbout, [this] { ShowAboutBox(m_session, this); });
}

void MainWindow::FollowSession() {
  auto* session = &m_session;
  m_scope->ShowTree(&session->Tree());
  m_results->Follow(session);
  m_toolbar->Follow(session);
  connect(session, &ConsoleSession::Selecting, m_scope, &ScopePane::ShowSelected);
  connect(session, &ConsoleSession::Expanded, m_scope, &ScopePane::ShowExpanded);
  connect(session, &ConsoleSession::ExpansionFailed, m_scope, &ScopePane::ShowCollapsed);
  connect(session, &ConsoleSession::SelectionChanged, this, &MainWindow::UpdateActions);
  connect(session, &ConsoleSession::SelectionChanged, this, &MainWindow::ShowStatus);
  connect(session, &ConsoleSession::EventEnded, this, [this] {
    if (m_parts.eventEnded) m_parts.eventEnded();
    UpdateActions();
    ShowStatus();
    QMetaObject::invokeMethod(this, &MainWindow::CatchUp, Qt::QueuedConnection);
  });
}

void MainWindow::FollowDocument() {
  connect(&m_keeper, &DocumentKeeper::Closing, this, [this] {
    KeepView();
    // What was said of one document is not said of the next.
    statusBar()->clearMessage();
    m_wantedSelection.reset();
    m_wantedExpansion.reset();
    m_selectionMenus->ForgetAwaited();
  });
  connect(&m_keeper, &DocumentKeeper::ViewRead, this, [this](const DocumentBag& view) {
    const auto usual =
        m_parts.settings ? m_parts.settings->value("Window/Geometry").toByteArray() : QByteArray();
    // Also of documents of before, which tell of somebody's window: only what the user has kept.
    DocumentBag own;
    const Text& sPath = m_keeper.Document().Path();
    if (m_views && !sPath.empty()) m_views->Read(sPath, own);
    if (ReadView(ViewOfWindow(), own, usual)) m_bTreeChosen = true;
    m_session.Layouts(ReadLayouts(view));
  });
  connect(&m_keeper, &DocumentKeeper::ViewAsked, this,
          [this](DocumentBag& view) { WriteLayouts(m_session.Layouts(), view); });
  connect(&m_keeper, &DocumentKeeper::Started, this, &MainWindow::ShowStarted);
  connect(&m_keeper, &DocumentKeeper::Saved, this, [this] {
    ShowTitle();
    ShowNotice();
    KeepView();
    statusBar()->showMessage(tr("Saved."), 3000);
  });
  connect(&m_keeper, &DocumentKeeper::ModifiedChanged, this, &MainWindow::ShowTitle);
  connect(&m_keeper, &DocumentKeeper::Refused, this, [this] {
    statusBar()->showMessage(tr("Wait until the current operation has ended, or cancel it."), 5000);
    QApplication::beep();
  });
}

void MainWindow::ShowStarted() {
  if (m_keeper.SnapInFailure().empty()) {
    m_scope->setFocus();
  } else {
    m_results->ShowSentence(ImageList::Badge("failed"), tr("The snap-in cannot be loaded."),
                            Shown(m_keeper.SnapInFailure()));
  }
  ShowTitle();
  ShowNotice();
  UpdateActions();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!m_keeper.MayDropWork()) {
    event->ignore();
    return;
  }
  if (m_parts.settings) {
    m_parts.settings->setValue("Window/Geometry", saveGeometry());
    LastSession(*m_parts.settings).Keep(m_keeper.Document().Path(), m_session.Selected().get());
  }
  m_keeper.Close();
  event->accept();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  if ((event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress) &&
      m_results->IsInControl(watched)) {
    m_keeper.ControlInput();
  }
  return QMainWindow::eventFilter(watched, event);
}

void MainWindow::RequestSelect(const ScopeTreeItemPtr& item) {
  if (!item) return;
  if (m_session.IsBusy()) {
    m_wantedSelection = item;
    m_catchUp.start();
    return;
  }
  m_session.Select(item);
  // The mark may be back at what is shown, and then nothing else tells.
  UpdateActions();
}

void MainWindow::RequestExpand(const ScopeTreeItemPtr& item) {
  if (!item) return;
  if (m_session.IsBusy()) {
    m_wantedExpansion = item;
    m_catchUp.start();
    return;
  }
  m_session.Expand(item);
  if (!item->Children().empty()) m_scope->ShowExpanded(item);
}

void MainWindow::CatchUp() {
  if (m_session.IsBusy()) {
    m_catchUp.start();
    return;
  }
  m_catchUp.stop();
  RequestSelect(std::exchange(m_wantedSelection, nullptr));
  RequestExpand(std::exchange(m_wantedExpansion, nullptr));
  m_selectionMenus->ShowAwaited();
}

void MainWindow::OpenItem(const ScopeTreeItemPtr& item) {
  if (m_session.IsBusy() || item->IsRemoved()) return;
  m_session.Select(item);
  // Who opens an item from the list wants to see what it holds.
  const auto* view = m_session.CurrentResultView();
  if (view && !view->IsControl()) RequestExpand(item);
}

void MainWindow::ShowTitle() {
  setWindowTitle(tr("%1[*] - ORVANE Console").arg(Shown(m_keeper.Document().Name())));
  setWindowModified(m_keeper.IsKnownModified());
}

void MainWindow::ShowNotice() {
  m_status->ShowDocument(m_keeper.Document());
  if (!m_keeper.IsReadWhole()) {
    m_notice->Show(
        tr("This document could not be read whole. It cannot be saved, so that nothing "
           "of it is lost."));
  } else {
    m_notice->Show(Shown(m_keeper.Document().ReadOnlyReason()));
  }
}

void MainWindow::ShowStatus() {
  m_status->ShowItem(m_session.Selected());
  m_status->ShowRows(*m_results);
}

void MainWindow::UpdateActions() {
  const auto item = m_session.Selected();
  // What can be done with an item that is marked only is known when it is shown.
  const bool bElsewhere = MarkedElsewhere() != nullptr;
  // Where one of the two can be done, the other cannot, so that they share a key and a button.
  const bool bReload = !bElsewhere && item && m_session.CanReload(*item);
  m_menus.actReload->setEnabled(bReload);
  m_menus.actRefresh->setEnabled(bElsewhere || m_session.IsRefreshEnabled() ||
                                 (item && item->State() == NodeState::Failed && !bReload));
  m_results->RefreshAction(m_menus.actReload->isEnabled() ? m_menus.actReload : m_menus.actRefresh);
  const bool bCanSave = m_keeper.CanSave();
  m_menus.actSave->setEnabled(bCanSave);
  m_menus.actSaveAs->setEnabled(bCanSave);
}

ScopeTreeItemPtr MainWindow::MarkedElsewhere() const {
  auto item = m_scope->Marked();
  return item != m_session.Selected() ? item : nullptr;
}

void MainWindow::RefreshMarked() {
  if (m_session.IsBusy()) return;
  if (const auto item = MarkedElsewhere()) m_session.Select(item);
  m_session.Refresh();
}

ViewParts MainWindow::ViewOfWindow() {
  return {*this, *m_splitter, *m_toolbar, *m_results, m_menus};
}

void MainWindow::KeepView() {
  const Text& sPath = m_keeper.Document().Path();
  // A window that nobody has seen yet looks like no choice of his.
  if (!m_views || sPath.empty() || !isVisible()) return;
  DocumentBag view;
  WriteView(ViewOfWindow(), view);
  m_views->Keep(sPath, view);
}

}  // namespace orvane::console
