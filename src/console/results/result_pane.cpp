#include "console/results/result_pane.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "console/look/elided_label.h"
#include "console/look/image_list.h"
#include "console/look/picture_side.h"
#include "console/results/message_page.h"
#include "console/session/console_session.h"
#include "widgets/tool_tip.h"

namespace orvane::console {

namespace {

/// What the tab of a view says: a view without a name of its own is called by its kind.
QString TabText(const platform::ResultViewDescription& view) {
  if (!view.sDisplayName.empty()) return QString::fromStdString(view.sDisplayName);
  return view.sControlProgId.empty() ? ResultPane::tr("List") : ResultPane::tr("Data");
}

}  // namespace

ResultPane::ResultPane(const ImageList& images, QWidget* parent)
    : QWidget(parent),
      m_images(images),
      m_lblPicture(new QLabel(this)),
      m_lblName(new ElidedLabel(this)),
      m_tabs(new QTabBar(this)),
      m_refresh(new QToolButton(this)),
      m_stack(new QStackedWidget(this)),
      m_list(new ResultList(this)),
      m_message(new MessagePage(this)) {
  setObjectName("resultPane");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);

  auto* head = new QWidget(this);
  head->setObjectName("resultHead");
  auto* headLayout = new QHBoxLayout(head);
  headLayout->setContentsMargins(10, 6, 8, 0);
  headLayout->setSpacing(7);
  auto font = m_lblName->font();
  font.setBold(true);
  m_lblName->setFont(font);
  m_lblName->setObjectName("resultName");
  headLayout->addWidget(m_lblPicture);
  headLayout->addWidget(m_lblName, 1);
  m_tabs->setObjectName("viewTabs");
  m_tabs->setAccessibleName(tr("Views"));
  m_tabs->setDrawBase(false);
  m_tabs->setExpanding(false);
  m_tabs->setFocusPolicy(Qt::TabFocus);
  headLayout->addWidget(m_tabs, 0, Qt::AlignBottom);
  m_refresh->setObjectName("refreshButton");
  m_refresh->setAutoRaise(true);
  // The keyboard has the menu and a key of its own; a click leaves the focus where it is.
  m_refresh->setFocusPolicy(Qt::NoFocus);
  headLayout->addWidget(m_refresh, 0, Qt::AlignVCenter);
  layout->addWidget(head);
  auto* line = new QFrame(this);
  line->setFrameShape(QFrame::HLine);
  line->setForegroundRole(QPalette::Mid);
  line->setFixedHeight(1);
  layout->addWidget(line);

  m_stack->setObjectName("resultStack");
  m_stack->addWidget(m_list);
  m_stack->addWidget(m_message);
  layout->addWidget(m_stack, 1);

  // A control's window is destroyed when its view goes: not while it handles an event of its own.
  connect(m_tabs, &QTabBar::currentChanged, this, &ResultPane::ViewChosen, Qt::QueuedConnection);
  connect(m_message, &MessagePage::ButtonPressed, this, &ResultPane::ExpandRequested);
  connect(m_list, &ResultList::RowsChanged, this, [this] {
    if (m_bListView) ShowListOrSentence();
  });
  SizeImages();
}

ResultPane::~ResultPane() {
  Follow(nullptr);
}

void ResultPane::SizeImages() {
  constexpr int kBeside = 4;
  constexpr int kAround = 12;
  const int iSide = PictureSide(fontMetrics());
  m_lblPicture->setFixedSize(iSide + kBeside, iSide + kAround);
  m_refresh->setIconSize({iSide, iSide});
  ShowHead();
}

void ResultPane::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) SizeImages();
}

void ResultPane::PlaceToolbar(QWidget* toolbar) {
  auto* rows = static_cast<QVBoxLayout*>(layout());
  rows->insertWidget(rows->indexOf(m_stack), toolbar);
}

void ResultPane::StatusBar(QStatusBar* bar) {
  if (bar == m_statusBar) return;
  GiveStatusLineBack();
  m_statusBar = bar;
  const auto* view = m_session ? m_session->CurrentResultView() : nullptr;
  if (view && m_control) TakeStatusLine(view->HostedControl());
}

void ResultPane::TakeStatusLine(const std::shared_ptr<platform::Control>& control) {
  if (!m_statusBar || m_lender) return;
  m_statusLine = static_cast<QWidget*>(control->LendStatusLine());
  if (!m_statusLine) return;
  m_lender = control;
  m_statusBar->insertWidget(0, m_statusLine, 1);
  m_statusLine->show();
}

void ResultPane::GiveStatusLineBack() {
  if (!m_lender) return;
  if (m_statusBar && m_statusLine) m_statusBar->removeWidget(m_statusLine);
  m_statusLine = nullptr;
  std::exchange(m_lender, nullptr)->TakeStatusLineBack();
}

void ResultPane::RefreshAction(QAction* action) {
  auto* former = m_refresh->defaultAction();
  if (former == action) return;
  // A button of two actions would be one with a menu.
  if (former) m_refresh->removeAction(former);
  m_refresh->setDefaultAction(action);
}

void ResultPane::Follow(ConsoleSession* session) {
  if (m_session) {
    disconnect(m_session, nullptr, this, nullptr);
    disconnect(&m_session->Tree(), nullptr, this, nullptr);
  }
  m_bListView = false;
  m_list->ShowModel(nullptr);
  GiveStatusLineBack();
  if (m_control) m_control->setParent(nullptr);
  m_control = nullptr;
  m_session = session;
  ShowHead();
  if (!session) return;
  connect(session, &ConsoleSession::Selecting, this, [this] {
    ShowHead();
    const QSignalBlocker block(m_tabs);
    while (m_tabs->count() > 0) m_tabs->removeTab(0);
    const auto views = m_session->ViewsOfSelected();
    for (const auto& view : views) {
      const int iTab = m_tabs->addTab(TabText(view));
      m_tabs->setTabToolTip(iTab, widgets::ToolTipOf(QString::fromStdString(view.sDescription)));
    }
    m_tabs->setVisible(views.size() > 1);
  });
  connect(session, &ConsoleSession::ViewMade, this,
          [this](HostedResultView* view) { TakeControl(*view); });
  connect(session, &ConsoleSession::ViewReady, this,
          [this](HostedResultView* view) { ShowReady(*view); });
  connect(session, &ConsoleSession::ViewGone, this,
          [this](HostedResultView* view) { LetViewGo(*view); });
  connect(session, &ConsoleSession::SelectionChanged, this, [this] { ShowHead(); });
  connect(&session->Tree(), &QAbstractItemModel::dataChanged, this, [this] {
    ShowHead();
    if (m_bListView) ShowListOrSentence();
  });
}

void ResultPane::ShowHead() {
  const auto item = m_session ? m_session->Selected() : nullptr;
  m_lblName->setText(item ? QString::fromStdString(item->Name()) : QString());
  m_lblPicture->setPixmap(
      item ? m_images.Folder(item->Image()).pixmap(m_refresh->iconSize(), devicePixelRatioF())
           : QPixmap());
  m_tabs->setVisible(item && m_tabs->count() > 1);
}

void ResultPane::TakeControl(HostedResultView& view) {
  const auto& control = view.HostedControl();
  auto* window = control ? static_cast<QWidget*>(control->Window()) : nullptr;
  if (!window) {
    m_message->Show(ImageList::Badge("failed"), tr("This view cannot be shown."),
                    QString::fromStdString(view.ControlFailure()));
    m_stack->setCurrentWidget(m_message);
    emit RowsChanged();
    return;
  }
  m_control = window;
  m_stack->addWidget(window);
  m_stack->setCurrentWidget(window);
  TakeStatusLine(control);
  emit RowsChanged();
}

void ResultPane::ShowReady(HostedResultView& view) {
  {
    const QSignalBlocker block(m_tabs);
    const auto views = m_session->ViewsOfSelected();
    for (std::size_t n = 0; n < views.size(); ++n) {
      if (views[n].sName == view.Description().sName) m_tabs->setCurrentIndex(static_cast<int>(n));
    }
  }
  if (view.IsControl()) return;
  m_bListView = true;
  m_list->ShowModel(std::make_unique<ResultListModel>(m_session->Tree(), view));
  if (const auto at = m_widths.find(view.Description().sName); at != m_widths.end()) {
    m_list->ColumnWidths(at->second);
  }
}

void ResultPane::LetViewGo(HostedResultView& view) {
  if (m_bListView && m_list->HasChosenWidths()) {
    m_widths[view.Description().sName] = m_list->ColumnWidths();
  }
  m_bListView = false;
  m_list->ShowModel(nullptr);
  GiveStatusLineBack();
  if (m_control) {
    // The control owns its window and takes it along.
    // Not the pane's own last focus: whoever walks through the tree stays there.
    const auto* focus = QApplication::focusWidget();
    const bool bHadFocus = focus && (focus == m_control || m_control->isAncestorOf(focus));
    m_stack->removeWidget(m_control);
    m_control->setParent(nullptr);
    m_control = nullptr;
    if (bHadFocus) m_tabs->setFocus();
  }
  m_stack->setCurrentWidget(m_list);
  emit RowsChanged();
}

void ResultPane::ShowSentence(const QIcon& icon, const QString& sText, const QString& sDetail) {
  m_message->Show(icon, sText, sDetail);
  m_stack->setCurrentWidget(m_message);
  emit RowsChanged();
}

void ResultPane::ShowListOrSentence() {
  const auto item = m_session ? m_session->Selected() : nullptr;
  if (!item || m_list->RowCount() > 0) {
    m_stack->setCurrentWidget(m_list);
    emit RowsChanged();
    return;
  }
  const auto sName = QString::fromStdString(item->Name());
  const auto icon = m_images.Folder(item->Image());
  // A view beside the default one lists what the snap-in put into it.
  const auto views = m_session->ViewsOfSelected();
  const auto* view = m_session->CurrentResultView();
  if (view && !views.empty() && views.front().sName != view->Description().sName) {
    m_message->Show(icon, tr("There is nothing to list."));
  } else if (item->State() == NodeState::NotLoaded && item->Server() != ServerState::None) {
    const bool bConnected = item->Server() == ServerState::Connected;
    m_message->Show(icon,
                    (bConnected ? tr("%1 is connected.") : tr("%1 is not connected.")).arg(sName),
                    bConnected ? tr("Open it to see its catalogs and queries.")
                               : tr("Opening it connects it first."),
                    tr("&Open It"));
  } else if (item->State() == NodeState::NotLoaded) {
    m_message->Show(icon, tr("Not opened yet: %1").arg(sName), {}, tr("&Open It"));
  } else if (item->State() == NodeState::Loading) {
    m_message->Show(icon, tr("Opening %1…").arg(sName));
  } else if (item->State() == NodeState::Failed) {
    m_message->Show(ImageList::Badge("failed"), tr("%1 could not be opened.").arg(sName), {},
                    tr("&Try Again"));
  } else {
    m_message->Show(icon, tr("There is nothing in \"%1\" yet.").arg(sName),
                    tr("What can be done here is in the Action menu."));
  }
  m_stack->setCurrentWidget(m_message);
  emit RowsChanged();
}

std::map<platform::Text, std::vector<int>> ResultPane::ColumnWidths() const {
  auto widths = m_widths;
  const auto* view = m_session ? m_session->CurrentResultView() : nullptr;
  if (m_bListView && view && m_list->HasChosenWidths()) {
    widths[view->Description().sName] = m_list->ColumnWidths();
  }
  return widths;
}

void ResultPane::ColumnWidths(std::map<platform::Text, std::vector<int>> widths) {
  m_widths = std::move(widths);
}

bool ResultPane::IsListShown() const {
  return m_bListView;
}

QString ResultPane::Sentence() const {
  return m_stack->currentWidget() == m_message ? m_message->Text() : QString();
}

bool ResultPane::IsInControl(const QObject* object) const {
  for (auto* at = object; at && m_control; at = at->parent()) {
    if (at == m_control) return true;
  }
  return false;
}

}  // namespace orvane::console
