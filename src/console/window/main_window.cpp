#include "console/window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>
#include <algorithm>

#include "console/document/recent_documents.h"
#include "console/look/tool_tip.h"
#include "console/results/result_pane.h"
#include "console/scope/scope_pane.h"
#include "console/window/document_questions.h"
#include "console/window/menu_key.h"
#include "console/window/notice_bar.h"
#include "console/window/toolbar_view.h"
#include "console/window/unsaved_work.h"
#include "console/window/view_state.h"

namespace orvane::console {

using platform::Failure;
using platform::Text;

namespace {

QString Shown(const Text& sText) {
  return QString::fromStdString(sText);
}

}  // namespace

MainWindow::MainWindow(WindowParts parts, QWidget* parent)
    : QMainWindow(parent),
      m_parts(std::move(parts)),
      m_session(std::make_unique<ConsoleSession>(m_parts.create, m_parts.services, &m_look)),
      m_document(std::make_unique<console::Document>()),
      m_unsaved(new UnsavedWork(m_parts.boxes, m_parts.optionTexts, this)),
      m_menus(*menuBar(), this) {
  setObjectName("mainWindow");
  setWindowIcon(ImageList::Badge("orvane-console"));
  if (m_parts.settings) m_recent = std::make_unique<RecentDocuments>(*m_parts.settings);
  MakePanes();
  ConnectMenus();
  FollowSession();
  resize(1100, 700);
  connect(m_unsaved, &UnsavedWork::ModifiedChanged, this, [this] { ShowTitle(); });
  connect(qApp, &QApplication::focusChanged, this,
          [this](const QWidget*, const QWidget* now) { NotePane(now); });
  new MenuKey(this);
  qApp->installEventFilter(this);
  ShowTitle();
}

MainWindow::~MainWindow() {
  qApp->removeEventFilter(this);
  disconnect(qApp, nullptr, this, nullptr);
  CloseSession();
  m_results->Follow(nullptr);
  m_toolbar->Follow(nullptr);
  m_scope->ShowTree(nullptr);
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
  m_scope->setMinimumWidth(120);
  m_results = new ResultPane(m_images, m_splitter);
  m_results->setMinimumWidth(200);
  m_splitter->setStretchFactor(0, 0);
  m_splitter->setStretchFactor(1, 1);
  m_splitter->setSizes({280, 820});
  layout->addWidget(m_splitter, 1);
  setCentralWidget(central);

  m_toolbar = new ToolbarView(m_images, this);
  addToolBar(Qt::TopToolBarArea, m_toolbar);
  setContextMenuPolicy(Qt::NoContextMenu);

  m_lblItems = new QLabel(this);
  m_lblReadOnly = new QLabel(this);
  m_lblReadOnly->setObjectName("readOnlyMark");
  statusBar()->addPermanentWidget(m_lblReadOnly);
  statusBar()->addPermanentWidget(m_lblItems);
  m_lblItems->setObjectName("itemCount");
  m_lblItems->setContentsMargins(0, 0, 6, 0);
  statusBar()->setAccessibleName(tr("Status"));
  menuBar()->setAccessibleName(tr("Menus"));

  connect(m_scope, &ScopePane::SelectRequested, this, &MainWindow::RequestSelect);
  connect(m_scope, &ScopePane::ExpandRequested, this, &MainWindow::RequestExpand);
  connect(m_scope, &ScopePane::MenuRequested, this,
          [this](const ScopeTreeItemPtr& item, const QPoint& position) {
            RequestSelect(item);
            ShowMenu(HostedSelection({item}), position);
          });
  connect(m_results, &ResultPane::ViewChosen, this, [this](int iView) {
    if (!m_session->IsBusy() && iView >= 0) m_session->ShowView(static_cast<std::size_t>(iView));
  });
  connect(m_results, &ResultPane::ExpandRequested, this,
          [this] { RequestExpand(m_session->Selected()); });
  connect(m_results, &ResultPane::RowsChanged, this, &MainWindow::ShowStatus);
  connect(&m_results->List(), &ResultList::SelectionChanged, this, &MainWindow::ShowStatus);
  connect(&m_results->List(), &ResultList::ItemOpened, this, &MainWindow::OpenItem);
  connect(&m_results->List(), &ResultList::UpRequested, this, [this] {
    const auto item = m_session->Selected();
    if (item && item->Parent()) RequestSelect(item->Parent()->shared_from_this());
  });
  connect(&m_results->List(), &ResultList::MenuRequested, this, [this](const QPoint& position) {
    auto selection = SelectionOfList();
    if (selection.Type() == platform::kSelectionNothing && m_session->Selected()) {
      selection = HostedSelection({m_session->Selected()});
    }
    ShowMenu(selection, position);
  });
}

void MainWindow::ConnectMenus() {
  const auto on = [this](QAction* action, auto&& handler) {
    connect(action, &QAction::triggered, this, handler);
  };
  on(m_menus.actNew, [this] { NewDocument(); });
  on(m_menus.actOpen, [this] {
    if (auto sPath = AskForFileToOpen(*m_document, this)) OpenDocument(std::move(*sPath));
  });
  connect(m_menus.mnuRecent, &QMenu::aboutToShow, this, &MainWindow::FillRecent);
  on(m_menus.actSave, [this] { Save(); });
  on(m_menus.actSaveAs, [this] { SaveAs(); });
  on(m_menus.actExit, [this] { close(); });
  connect(m_menus.mnuAction, &QMenu::aboutToShow, this, [this] {
    m_menus.mnuAction->clear();
    if (m_session->IsBusy()) return;
    FillActionMenu(*m_menus.mnuAction, CurrentSelection());
  });
  on(m_menus.actRefresh, [this] {
    if (!m_session->IsBusy()) m_session->Refresh();
  });
  m_results->RefreshAction(m_menus.actRefresh);
  on(m_menus.actDetails, [this] { m_results->List().Style(ListStyle::Details); });
  on(m_menus.actIcons, [this] { m_results->List().Style(ListStyle::Icons); });
  on(m_menus.actToolbar, [this](bool bChecked) { m_toolbar->Wanted(bChecked); });
  on(m_menus.actSmallImages, [this] { m_toolbar->Images(ButtonImages::Small); });
  on(m_menus.actLargeImages, [this] { m_toolbar->Images(ButtonImages::Large); });
  on(m_menus.actStatusBar, [this](bool bChecked) { statusBar()->setVisible(bChecked); });
  on(m_menus.actAbout, [this] { ShowAbout(); });
}

void MainWindow::FollowSession() {
  auto* session = m_session.get();
  m_scope->ShowTree(&session->Tree());
  m_results->Follow(session);
  m_toolbar->Follow(session);
  connect(session, &ConsoleSession::Selecting, m_scope, &ScopePane::ShowSelected);
  connect(session, &ConsoleSession::Expanded, m_scope, &ScopePane::ShowExpanded);
  connect(session, &ConsoleSession::ExpansionFailed, m_scope, &ScopePane::ShowCollapsed);
  connect(session, &ConsoleSession::SelectionChanged, this, &MainWindow::UpdateActions);
  connect(session, &ConsoleSession::EventEnded, this, [this] {
    if (m_parts.eventEnded) m_parts.eventEnded();
    UpdateActions();
    if (!m_wantedSelection && !m_wantedMenu) return;
    QMetaObject::invokeMethod(
        this,
        [this] {
          RequestSelect(std::exchange(m_wantedSelection, nullptr));
          if (const auto menu = std::exchange(m_wantedMenu, {})) {
            ShowMenu(menu->selection, menu->position);
          }
        },
        Qt::QueuedConnection);
  });
}

void MainWindow::StartSession() {
  m_bReadWhole = true;
  m_sSnapInFailure.clear();
  const auto& sProgId = m_parts.sSnapInProgId;
  // A document that never held this snap-in is as good as a new one.
  const bool bStored = m_document->Content().FindSnapIn(sProgId) != nullptr;
  const auto usual =
      m_parts.settings ? m_parts.settings->value("Window/Geometry").toByteArray() : QByteArray();
  ReadView(ViewOfWindow(), m_document->Content().View(), usual);
  try {
    m_bReadWhole =
        m_session->Start(sProgId, bStored ? &m_document->Content().SnapIn(sProgId) : nullptr);
    m_unsaved->Watch(m_session.get());
    m_scope->setFocus();
  } catch (const std::exception& e) {
    m_sSnapInFailure = e.what();
    m_unsaved->Watch(nullptr);
    NoteFailure(e);
    m_results->ShowSentence(ImageList::Badge("failed"), tr("The snap-in cannot be loaded."),
                            Shown(m_sSnapInFailure));
  }
  ShowTitle();
  ShowNotice();
  UpdateActions();
}

void MainWindow::CloseSession() {
  // What was said of one document is not said of the next.
  statusBar()->clearMessage();
  m_wantedSelection.reset();
  m_wantedMenu.reset();
  m_unsaved->Watch(nullptr);
  m_session->Close();
}

bool MainWindow::NewDocument() {
  if (!MayDropWork()) return false;
  CloseSession();
  m_document = std::make_unique<console::Document>();
  StartSession();
  return true;
}

bool MainWindow::OpenDocument(Text sPath) {
  if (!MayDropWork()) return false;
  const auto create = m_parts.createStored ? m_parts.createStored : [this](const Text& sProgId) {
    return m_parts.create(sProgId, m_session->Services());
  };
  std::unique_ptr<console::Document> document;
  try {
    // Read whole before anything is let go; for the document that is open, its hold passes over.
    document = console::Document::Open(sPath, create, m_document.get());
  } catch (const std::exception& e) {
    if (m_recent) m_recent->RemoveIfGone(sPath);
    if (!m_session->IsOpen()) StartSession();
    ShowFailure(e);
    return false;
  }
  CloseSession();
  m_document = std::move(document);
  if (m_recent) m_recent->Add(m_document->Path());
  StartSession();
  return true;
}

bool MainWindow::IsModified() {
  return m_session->IsOpen() && m_unsaved->IsModified();
}

bool MainWindow::MayDropWork() {
  if (m_session->IsBusy()) {
    statusBar()->showMessage(tr("Wait until the current operation has ended, or cancel it."), 5000);
    QApplication::beep();
    return false;
  }
  if (!IsModified()) return true;
  switch (AskAboutUnsavedWork(*m_document, this)) {
    case UnsavedAnswer::Save:
      return Save();
    case UnsavedAnswer::Discard:
      return true;
    case UnsavedAnswer::Cancel:
      break;
  }
  return false;
}

std::unique_ptr<DocumentContent> MainWindow::ContentToSave() {
  auto content = m_document->NewContent();
  // What other snap-ins keep in the document stays in it.
  for (const auto& section : m_document->Content().SnapIns()) {
    auto& bag = content->SnapIn(section.sProgId);
    if (section.sProgId == m_parts.sSnapInProgId) continue;
    for (const auto& entry : section.bag->Entries()) bag.Add(entry.sName, entry.value);
  }
  if (!m_session->Write(content->SnapIn(m_parts.sSnapInProgId))) return nullptr;
  WriteView(ViewOfWindow(), content->View());
  return content;
}

bool MainWindow::Written(const std::function<void()>& write) {
  try {
    write();
  } catch (const std::exception& e) {
    ShowFailure(e);
    return false;
  }
  const auto* bag = m_document->Content().FindSnapIn(m_parts.sSnapInProgId);
  if (bag) m_unsaved->Saved(*bag);
  if (m_recent) m_recent->Add(m_document->Path());
  ShowTitle();
  ShowNotice();
  statusBar()->showMessage(tr("Saved."), 3000);
  return true;
}

bool MainWindow::Save() {
  if (m_session->IsBusy() || !m_menus.actSave->isEnabled()) return false;
  if (m_document->Path().empty() || m_document->IsReadOnly()) return SaveAs();
  auto content = ContentToSave();
  if (!content) return false;
  const bool bChanged = m_document->IsChangedOnDisk();
  if (bChanged && !AskToReplaceChanged(*m_document, this)) return false;
  return Written([&] { m_document->Save(std::move(content), bChanged); });
}

bool MainWindow::SaveAs() {
  if (m_session->IsBusy() || !m_menus.actSaveAs->isEnabled()) return false;
  const auto sPath = AskForFileToSave(*m_document, this);
  return sPath && SaveTo(*sPath);
}

bool MainWindow::SaveTo(const Text& sPath) {
  if (m_session->IsBusy() || !m_menus.actSaveAs->isEnabled()) return false;
  auto content = ContentToSave();
  if (!content) return false;
  const bool bChanged = m_document->IsOwnFile(sPath) && m_document->IsChangedOnDisk();
  if (bChanged && !AskToReplaceChanged(*m_document, this)) return false;
  return Written([&] { m_document->SaveAs(sPath, std::move(content), bChanged); });
}

void MainWindow::NoteFailure(const std::exception& e) {
  if (!m_parts.services.failures) return;
  const auto* failure = dynamic_cast<const Failure*>(&e);
  m_parts.services.failures->Note(
      failure ? *failure : Failure(platform::failure::kDocument, e.what(), "console"));
}

void MainWindow::ShowFailure(const std::exception& e) {
  NoteFailure(e);
  ShowFailureBox(e.what(), this);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!MayDropWork()) {
    event->ignore();
    return;
  }
  if (m_parts.settings) m_parts.settings->setValue("Window/Geometry", saveGeometry());
  CloseSession();
  event->accept();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  if ((event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress) &&
      m_results->IsInControl(watched)) {
    m_unsaved->ControlInput();
  }
  return QMainWindow::eventFilter(watched, event);
}

void MainWindow::RequestSelect(const ScopeTreeItemPtr& item) {
  if (!item) return;
  if (m_session->IsBusy()) {
    m_wantedSelection = item;
    return;
  }
  m_session->Select(item);
}

void MainWindow::RequestExpand(const ScopeTreeItemPtr& item) {
  if (!item || m_session->IsBusy()) return;
  m_session->Expand(item);
  if (!item->Children().empty()) m_scope->ShowExpanded(item);
}

void MainWindow::OpenItem(const ScopeTreeItemPtr& item) {
  if (m_session->IsBusy() || item->IsRemoved()) return;
  m_session->Select(item);
  // Who opens an item from the list wants to see what it holds.
  const auto* view = m_session->CurrentResultView();
  if (view && !view->IsControl()) RequestExpand(item);
}

void MainWindow::NotePane(const QWidget* focus) {
  const auto isIn = [&](const QWidget& pane) { return &pane == focus || pane.isAncestorOf(focus); };
  // Menu bar, toolbar and tabs are no panes: whoever goes there comes with what is marked.
  if (!focus) return;
  if (isIn(m_results->List())) {
    m_bInList = true;
  } else if (isIn(*m_scope) || m_results->IsInControl(focus)) {
    m_bInList = false;
  }
}

HostedSelection MainWindow::SelectionOfList() const {
  auto items = m_results->List().SelectedItems();
  if (!items.empty()) return HostedSelection(std::move(items));
  return HostedSelection::OfListItems(m_results->List().SelectedRows());
}

HostedSelection MainWindow::CurrentSelection() const {
  if (m_results->IsListShown() && m_bInList) {
    auto selection = SelectionOfList();
    if (selection.Type() != platform::kSelectionNothing) return selection;
  }
  return m_session->Selected() ? HostedSelection({m_session->Selected()}) : HostedSelection();
}

void MainWindow::FillActionMenu(QMenu& menu, const HostedSelection& selection) {
  if (selection.Items().size() == 1) {
    const auto item = selection.Items().front();
    const auto* type = m_session->Tree().NodeType(item->Type());
    const bool bListed =
        type && !type->resultViews.empty() && type->resultViews.front().sControlProgId.empty();
    const bool bElsewhere = item != m_session->Selected();
    const bool bFailed = item->State() == NodeState::Failed;
    if (bElsewhere || (bListed && (item->State() == NodeState::NotLoaded || bFailed))) {
      auto* open = menu.addAction(bFailed ? tr("Try A&gain") : tr("&Open"));
      open->setObjectName("actOpenItem");
      connect(
          open, &QAction::triggered, this,
          [this, item, bElsewhere] {
            if (bElsewhere) {
              OpenItem(item);
            } else {
              RequestExpand(item);
            }
          },
          Qt::QueuedConnection);
    }
  }
  for (const auto& top : m_session->MenusOf(selection)) {
    if (!top.sCaption.empty()) {
      menu.addSection(Shown(top.sCaption));
    } else if (!menu.isEmpty()) {
      menu.addSeparator();
    }
    platform::Long lIndex = 0;
    for (const auto& entry : top.items) {
      ++lIndex;
      auto* action = menu.addAction(Shown(entry.sCaption));
      action->setObjectName(Shown(entry.sName));
      action->setEnabled(entry.bEnabled);
      connect(
          action, &QAction::triggered, this,
          [this, sName = entry.sName, lIndex, selection] {
            if (!m_session->IsBusy()) m_session->ClickMenu(sName, lIndex, selection);
          },
          Qt::QueuedConnection);
    }
  }
  if (!menu.isEmpty()) menu.addSeparator();
  menu.addAction(m_menus.actRefresh);
}

void MainWindow::ShowMenu(const HostedSelection& selection, const QPoint& position) {
  if (m_session->IsBusy()) {
    // The click that asked for the menu also selected its item, which may take a query to show.
    m_wantedMenu = {selection, position};
    return;
  }
  const auto& items = selection.Items();
  if (std::any_of(items.begin(), items.end(), [](const auto& item) { return item->IsRemoved(); })) {
    return;
  }
  auto* menu = new QMenu(this);
  menu->setObjectName("contextMenu");
  menu->setAttribute(Qt::WA_DeleteOnClose);
  FillActionMenu(*menu, selection);
  menu->popup(position);
}

void MainWindow::ShowTitle() {
  setWindowTitle(tr("%1[*] - ORVANE Console").arg(Shown(m_document->Name())));
  setWindowModified(m_unsaved->IsKnownModified());
}

void MainWindow::ShowNotice() {
  const bool bReadOnly = m_document->IsReadOnly();
  m_lblReadOnly->setText(bReadOnly ? tr("Read-only") : QString());
  m_lblReadOnly->setVisible(bReadOnly);
  m_lblReadOnly->setToolTip(ToolTipOf(Shown(m_document->ReadOnlyReason())));
  if (!m_bReadWhole) {
    m_notice->Show(
        tr("This document could not be read whole. It cannot be saved, so that nothing "
           "of it is lost."));
  } else {
    m_notice->Show(Shown(m_document->ReadOnlyReason()));
  }
}

void MainWindow::ShowStatus() {
  const bool bList = m_results->IsListShown() && m_results->Sentence().isEmpty();
  m_lblItems->setVisible(bList);
  if (!bList) {
    m_lblItems->clear();
    return;
  }
  const int iRows = m_results->List().RowCount();
  const int iSelected = m_results->List().SelectedRows();
  const auto sRows = iRows == 1 ? tr("1 item") : tr("%L1 items").arg(iRows);
  m_lblItems->setText(iSelected > 1 ? tr("%1, %L2 selected").arg(sRows).arg(iSelected) : sRows);
}

void MainWindow::UpdateActions() {
  const auto item = m_session->Selected();
  m_menus.actRefresh->setEnabled(m_session->IsRefreshEnabled() ||
                                 (item && item->State() == NodeState::Failed));
  const bool bCanSave = m_session->IsOpen() && m_bReadWhole;
  m_menus.actSave->setEnabled(bCanSave);
  m_menus.actSaveAs->setEnabled(bCanSave);
}

ViewParts MainWindow::ViewOfWindow() {
  return {*this, *m_splitter, *m_toolbar, *m_results, m_menus};
}

void MainWindow::FillRecent() {
  m_menus.mnuRecent->clear();
  const auto paths = m_recent ? m_recent->List() : std::vector<Text>();
  int iNumber = 0;
  for (const auto& sPath : paths) {
    auto sShown = Shown(sPath);
    sShown.replace('&', "&&");
    auto* action = m_menus.mnuRecent->addAction(
        ++iNumber < 10 ? QStringLiteral("&%1  %2").arg(iNumber).arg(sShown) : sShown);
    action->setData(Shown(sPath));
    connect(
        action, &QAction::triggered, this, [this, sPath] { OpenDocument(sPath); },
        Qt::QueuedConnection);
  }
  if (paths.empty()) m_menus.mnuRecent->addAction(tr("No documents yet"))->setEnabled(false);
}

void MainWindow::ShowAbout() {
  const auto& snapIn = m_session->Description();
  QMessageBox box(this);
  box.setObjectName("aboutBox");
  box.setWindowTitle(tr("About ORVANE Console"));
  box.setIconPixmap(ImageList::Badge("orvane-console").pixmap(64, 64));
  box.setTextFormat(Qt::PlainText);
  box.setText(tr("ORVANE Console %1").arg(QApplication::applicationVersion()));
  auto sText = tr("Manages ORVANE historian servers.");
  if (m_session->IsOpen()) {
    sText += "\n\n" + tr("Snap-in: %1 %2, %3")
                          .arg(Shown(snapIn.sDisplayName), Shown(snapIn.sVersion),
                               Shown(snapIn.sDescription));
  }
  sText += "\n\n" + tr("Free software under the GNU General Public License, version 3 or later.");
  box.setInformativeText(sText);
  box.exec();
}

}  // namespace orvane::console
