#include "controls/grid/grid_window.h"

#include <QApplication>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <utility>

#include "controls/grid/grid_teller.h"
#include "controls/grid/grid_trend.h"
#include "controls/grid/strip_texts.h"
#include "controls/grid/view_switch.h"
#include "controls/view/column_commands.h"
#include "controls/view/empty_notice.h"
#include "controls/view/grid_seeking.h"
#include "controls/view/header_view.h"
#include "controls/view/hidden_columns.h"
#include "controls/view/row_form.h"
#include "controls/view/sql_pane.h"
#include "controls/view/status_strip.h"
#include "platform/failure.h"
#include "platform/long_operation.h"

namespace orvane::controls {

namespace {

constexpr std::chrono::milliseconds kPatience(200);

QFrame* AddLine(QWidget* parent) {
  auto* line = new QFrame(parent);
  line->setFrameShape(QFrame::HLine);
  line->setFrameShadow(QFrame::Plain);
  line->setForegroundRole(QPalette::Midlight);
  return line;
}

}  // namespace

GridWindow::GridWindow(const QString& sName, std::shared_ptr<GridEvents> events,
                       std::shared_ptr<void> life)
    : m_life(std::move(life)),
      m_beside(new QSplitter(Qt::Horizontal, this)),
      m_splitter(new QSplitter(Qt::Vertical, m_beside)),
      m_sqlPane(new SqlPane(m_splitter)),
      m_rows(new RowView(m_splitter)),
      m_notice(new EmptyNotice(m_rows->viewport())),
      m_seeking(
          new GridSeeking(*m_rows, this, [this](const QString& sWhy) { m_status->Remark(sWhy); })),
      m_lineOverStatus(AddLine(this)),
      m_status(new StatusStrip(this)) {
  setAccessibleName(sName);
  m_notice->OnMenu([this] { return m_rows->Model().columnCount() > 0; });
  m_splitter->addWidget(m_sqlPane);
  m_splitter->addWidget(m_rows);
  m_splitter->setStretchFactor(0, 0);
  m_splitter->setStretchFactor(1, 1);
  m_splitter->setChildrenCollapsible(false);
  m_sqlPane->hide();
  m_beside->addWidget(m_splitter);
  m_form = new RowForm(*m_rows, m_beside);
  m_beside->addWidget(m_form);
  m_beside->setStretchFactor(0, 3);
  m_beside->setStretchFactor(1, 2);
  m_beside->setChildrenCollapsible(false);
  auto* overRows = new QVBoxLayout(m_rows->viewport());
  overRows->setContentsMargins(0, 0, 0, 0);
  overRows->addWidget(m_notice);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(m_beside, 1);
  layout->addWidget(m_seeking->Bar());
  layout->addWidget(m_lineOverStatus);
  layout->addWidget(m_status);
  // Rows can be looked at, and their fetch stopped, while they come.
  for (QWidget* part : {static_cast<QWidget*>(this), static_cast<QWidget*>(m_status)}) {
    part->setProperty(platform::LongOperation::kOwnInput, true);
  }

  connect(&m_rows->Names(), &QHeaderView::sectionClicked, this,
          [this] { Raise(&GridEvents::headClick); });
  connect(m_rows->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this] { ShowPosition(); });
  m_teller = new GridTeller(*m_rows, std::move(events), this);
  new ColumnCommands(*m_rows, this);
  m_trend = new GridTrend(*m_splitter, *m_rows, *m_status);
  m_status->AddSwitch({new HiddenColumns(*m_rows)});
  new ViewSwitch(*this, *m_rows, *m_form, *m_trend, *m_status);
  m_rows->OnArranged([this](const QString& sWhyNot) {
    TellOfArrangement(sWhyNot);
    if (!sWhyNot.isEmpty()) m_seeking->ShowArrangement();
    if (m_rows->Arranging() || m_bExchanging) return;
    TellOfNoRows();
    ShowPosition();
    if (m_arranged) m_arranged();
    m_teller->Exchanged();
  });
  m_rows->OnArrangingStopped([this] {
    m_seeking->ShowArrangement();
    TellOfArrangement("Stopped: the rows stand as they did before.");
    ShowPosition();
  });
  m_rows->OnArrowClicked([this] { Raise(&GridEvents::headClick); });
  m_rows->Copier().KeepAlive(m_life);
  m_rows->Copier().OnCopied([this](const QString& sWhyNot) { m_status->Remark(sWhyNot); });
  m_rows->Copier().OnProgress([this](platform::RowIndex done, platform::RowIndex of) {
    Working(CopyingText(done, of), "Stops it and leaves the clipboard as it is (Esc)",
            [this] { m_rows->Copier().Stop(); });
  });
  connect(m_splitter, &QSplitter::splitterMoved, this, [this] { m_bSplitByUser = true; });
  // Not within the layout that has just given the pane its place.
  m_sqlPane->OnRewrapped([this] {
    QMetaObject::invokeMethod(
        this, [this] { FitSqlPane(); }, Qt::QueuedConnection);
  });
  m_patience.setSingleShot(true);
  m_patience.setInterval(kPatience);
  connect(&m_patience, &QTimer::timeout, this, [this] { StopWaiting(); });
}

void GridWindow::Lost(const QString& sSentence) {
  m_sLost = sSentence;
  TellOfRows();
}

void GridWindow::Above(QWidget* bar) {
  static_cast<QVBoxLayout*>(layout())->insertWidget(0, bar);
}

void GridWindow::Working(const QString& sWhat, const QString& sStopTip,
                         std::function<void()> stop) {
  if (!sWhat.isEmpty()) return m_status->Working(sWhat, sStopTip, std::move(stop));
  TellOfArrangement({});
}

void GridWindow::OnCancel(std::function<void()> handler) {
  m_status->OnCancel(std::move(handler));
}

QWidget* GridWindow::LendStatusLine() {
  m_lineOverStatus->hide();
  layout()->removeWidget(m_status);
  return m_status;
}

void GridWindow::TakeStatusLineBack() {
  m_lineOverStatus->show();
  layout()->addWidget(m_status);
  m_status->show();
}

void GridWindow::SqlShown(bool bShow) {
  m_bSqlShown = bShow;
  m_sqlPane->setVisible(bShow);
  FitSqlPane();
}

void GridWindow::Sql(const QString& sSql) {
  m_sqlPane->Sql(sSql);
  FitSqlPane();
}

void GridWindow::LetGoOfRows() {
  // A button that had the focus is about to go: the keys stay in the grid.
  if (m_notice->isAncestorOf(QApplication::focusWidget())) m_rows->setFocus();
  m_bComing = false;
  m_rows->ShowRows({}, CellFormat());
}

void GridWindow::ShowNothing() {
  StopWaiting();
  LetGoOfRows();
  m_notice->Say({}, {});
  m_status->Empty();
  m_teller->Exchanged();
}

void GridWindow::ShowRunning(const QString& sMessage) {
  m_rows->setUpdatesEnabled(false);
  m_patience.start();
  m_sinceSent.start();
  LetGoOfRows();
  m_notice->Say(sMessage, {});
  m_status->Message(sMessage);
}

void GridWindow::Ask(const QString& sTitle, const QString& sSentence, const QString& sButton,
                     std::function<void()> action) {
  StopWaiting();
  LetGoOfRows();
  m_notice->Ask(sTitle, sSentence, sButton, std::move(action));
  m_status->Message(sTitle);
  m_teller->Exchanged();
}

void GridWindow::ShowComing(const platform::RecordsetPtr& rs, const CellFormat& format) {
  if (m_rows->Model().Recordset() == rs) {
    m_rows->Model().TakeRowsIn();
  } else {
    StopWaiting();
    m_notice->Say({}, {});
    m_rows->ShowRows(rs, format);
  }
  m_bComing = true;
  m_status->Coming(rs->RecordCount(), std::chrono::microseconds(m_sinceSent.nsecsElapsed() / 1000));
  ShowPosition();
}

void GridWindow::ShowRows(const platform::RecordsetPtr& rs, const CellFormat& format,
                          const RowsState* state, const Fetching& fetching,
                          const QString& sNoRowsTitle, const QString& sNoRowsSentence) {
  StopWaiting();
  // Who looked at rows while they came goes on where he is.
  const bool bCame = std::exchange(m_bComing, false) && !state;
  const RowsState present = m_rows->State();
  // An order is part of the exchange, and an exchange is told of once.
  m_bExchanging = true;
  m_rows->ShowRows(rs, format, bCame && m_rows->HasRows() ? &present : state);
  m_bExchanging = false;
  if (m_rows->Model().Places() > 0) {
    m_notice->Say({}, {});
  } else if (m_rows->HasRows()) {
    // Only the empty row at the end, which the notice covers until it is wanted.
    m_notice->Ask(sNoRowsTitle, sNoRowsSentence, "&Add a Row", [this] { GoToNewRow(); });
  } else {
    m_notice->Say(sNoRowsTitle, sNoRowsSentence);
    TellOfNoRows();
  }
  m_fetching = fetching;
  m_seeking->ShowArrangement();
  m_sLost.clear();
  TellOfRows();
  TellOfArrangement({});
  ShowPosition();
  m_teller->Exchanged();
}

void GridWindow::GoToNewRow() {
  m_notice->Say({}, {});
  m_rows->setFocus();
  m_rows->GoTo(m_rows->Model().Places(), m_rows->FirstShown());
}

void GridWindow::TellOfNoRows() {
  const auto& rs = m_rows->Model().Recordset();
  if (!rs || rs->RecordCount() == 0) return;
  if (m_rows->HasRows()) return m_notice->Say({}, {});
  m_notice->Say(
      "No rows",
      QStringLiteral("The filter leaves none of the %1 here.").arg(RowsText(rs->RecordCount())));
}

void GridWindow::TellOfArrangement(const QString& sWhyNot) {
  if (m_rows->Arranging()) {
    m_status->Working(m_rows->Arranged().sort.empty() ? QStringLiteral("Filtering\u2026")
                                                      : QStringLiteral("Sorting\u2026"),
                      "Stops it and leaves the rows as they are (Esc)",
                      [this] { m_rows->StopArranging(); });
  } else {
    m_status->Arrangement(ArrangementText(m_rows->Arranged(), m_rows->Model()));
  }
  if (!sWhyNot.isEmpty()) m_status->Remark(sWhyNot);
}

void GridWindow::TellOfRows() {
  const auto& rs = *m_rows->Model().Recordset();
  QStringList notices;
  if (const QString sLimit = LimitNotice(rs, m_rows->Model()); !sLimit.isEmpty()) notices << sLimit;
  m_bToldOfClosing = m_fetching.origin && m_fetching.origin->IsConnectionClosed();
  if (!m_sLost.isEmpty()) {
    // Where there is room for the beginning alone, it is what happened.
    notices.prepend(m_sLost);
  } else if (m_bToldOfClosing) {
    notices << QStringLiteral("Fetched over a connection since closed.");
  }
  m_sToldWhen = m_fetching.when ? m_fetching.when() : QString();
  m_status->Rows(rs.RecordCount(), rs.Elapsed(), m_sToldWhen, notices.join(u' '));
  m_sqlPane->Took(TookText(rs.Elapsed(), m_sToldWhen));
  FitSqlPane();
  const bool bLost = !m_sLost.isEmpty() || m_bToldOfClosing ||
                     platform::failure::IsLostConnection(rs.FetchFailure());
  if (bLost && m_reconnect) {
    m_status->Offer("Reconnect", "Connects to the server again and fetches the rows", m_reconnect);
  } else if (rs.Truncated() && m_count) {
    m_status->Offer("Count Rows", "Asks the server how many rows there are", m_count);
  }
}

bool GridWindow::IsToldOtherwise() const {
  // What is known of the rows before is not told of those that come.
  if (m_bComing || !m_rows->Model().Recordset() || !m_fetching.origin) return false;
  return m_fetching.origin->IsConnectionClosed() != m_bToldOfClosing ||
         m_fetching.when() != m_sToldWhen;
}

QSize GridWindow::minimumSizeHint() const {
  constexpr QSize kLetters(24, 8);
  return {kLetters.width() * fontMetrics().averageCharWidth(),
          kLetters.height() * fontMetrics().height()};
}

bool GridWindow::event(QEvent* event) {
  // Nobody tells of a connection that closes, or of midnight; but whoever comes to look at the rows
  // is told.
  const bool bLooked = event->type() == QEvent::Enter || event->type() == QEvent::Show ||
                       event->type() == QEvent::WindowActivate;
  if (bLooked && IsToldOtherwise()) TellOfRows();
  return QWidget::event(event);
}

void GridWindow::Remark(const QString& sRemark, bool bWarning) {
  m_status->Remark(sRemark, bWarning);
}

void GridWindow::ShowFailure(const QString& sTitle, const QString& sSentence, bool bLost) {
  StopWaiting();
  LetGoOfRows();
  if (bLost && m_reconnect) {
    m_notice->Ask(sTitle, sSentence, "&Reconnect", m_reconnect);
  } else {
    m_notice->Say(sTitle, sSentence);
  }
  m_status->Message("No rows");
  m_teller->Exchanged();
}

void GridWindow::Abandon() {
  m_teller->Abandon();
  m_notice->Say({}, {});
  // What can be pressed leads to the grid, which is no more; the strip may even have been lent.
  m_count = nullptr;
  m_reconnect = nullptr;
  m_status->Abandon();
  m_rows->Abandon();
}

bool GridWindow::Raising() const {
  return m_teller->Raising();
}

void GridWindow::Raise(platform::Signal<> GridEvents::*event) {
  m_teller->Raise(event);
}

void GridWindow::Edited() {
  // A row was added without a press of the notice's button: by a paste.
  if (m_rows->Model().Places() > 0 && !m_rows->Arranging()) m_notice->Say({}, {});
  m_teller->Edited();
}

bool GridWindow::WorksOnRows() const {
  return m_rows->Arranging() || m_rows->Copier().Busy() || m_seeking->Bar()->IsLooking();
}

void GridWindow::ShowPosition() {
  m_status->Position(m_rows->currentIndex().row(), m_rows->Model().Places());
}

void GridWindow::FitSqlPane() {
  if (m_bSplitByUser || !m_bSqlShown) return;
  const int nPane = m_sqlPane->sizeHint().height();
  m_splitter->setSizes({nPane, std::max(1, m_splitter->height() - nPane)});
}

void GridWindow::StopWaiting() {
  m_patience.stop();
  m_rows->setUpdatesEnabled(true);
}

}  // namespace orvane::controls
