#include "controls/view/status_strip.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLocale>
#include <QStyle>
#include <algorithm>
#include <array>
#include <utility>

#include "controls/view/giving_label.h"
#include "controls/view/spoken_events.h"

namespace orvane::controls {

namespace {

/// As high as the letters beside it.
int IconSize(const QWidget& strip) {
  return strip.fontMetrics().height();
}

/// The notice of the row limit has no more.
constexpr int kCharactersOfSentence = 50;
/// What of an order or a filter is in sight beside a long notice.
constexpr int kCharactersOfArrangement = 16;

QString Grouped(platform::RowIndex number) {
  return QLocale(QLocale::English, QLocale::UnitedStates).toString(static_cast<qlonglong>(number));
}

template <class Label>
QLabel* AddLabel(QWidget* parent, const char* sName, const char* sAccessibleName) {
  auto* label = new Label(parent);
  label->setObjectName(sName);
  label->setAccessibleName(sAccessibleName);
  label->setTextFormat(Qt::PlainText);
  return label;
}

}  // namespace

QString RowsText(platform::RowIndex rows) {
  return rows == 1 ? QStringLiteral("1 row") : Grouped(rows) + QStringLiteral(" rows");
}

QString TimeText(std::chrono::microseconds elapsed) {
  using namespace std::chrono_literals;
  if (elapsed < 1ms) return QStringLiteral("under 1 ms");
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(elapsed);
  if (ms < 1s) return QStringLiteral("%1 ms").arg(ms.count());
  if (ms < 1min) {
    return QStringLiteral("%1 s").arg(static_cast<double>(ms.count()) / 1000.0, 0, 'f', 2);
  }
  const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(ms);
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(ms - minutes);
  return QStringLiteral("%1 min %2 s").arg(minutes.count()).arg(seconds.count());
}

QString TookText(std::chrono::microseconds elapsed, const QString& sFetched) {
  return sFetched.isEmpty() ? TimeText(elapsed)
                            : TimeText(elapsed) + QStringLiteral(", ") + sFetched;
}

QString FetchedText(zones::LocalTime fetched, zones::LocalTime now) {
  const auto day = date::floor<date::days>(fetched);
  const QString sTime =
      QStringLiteral("at ") +
      QString::fromStdString(date::format("%T", date::floor<std::chrono::seconds>(fetched)));
  if (day == date::floor<date::days>(now)) return sTime;
  return QStringLiteral("on ") + QString::fromStdString(date::format("%F", day)) + u' ' + sTime;
}

StatusStrip::StatusStrip(QWidget* parent)
    : QWidget(parent),
      m_rows(AddLabel<GivingLabel>(this, "rowCount", "Number of rows")),
      m_time(AddLabel<QLabel>(this, "elapsed", "Time taken")),
      m_cancel(new QPushButton("&Stop", this)),
      m_arrangement(AddLabel<GivingLabel>(this, "arrangement", "Order and filter")),
      m_warning(new QLabel(this)),
      m_notice(AddLabel<GivingLabel>(this, "notice", "Notice")),
      m_pending(new QPushButton(this)),
      m_readOnly(AddLabel<GivingLabel>(this, "readOnly", "Read-only")),
      m_offer(new QToolButton(this)),
      m_position(AddLabel<QLabel>(this, "position", "Current row")) {
  setObjectName("status");
  setAccessibleName("Rows");
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(8, 3, 8, 3);
  layout->setSpacing(16);
  // A narrow window cuts the strip; the strip does not hold the window open.
  layout->setSizeConstraint(QLayout::SetNoConstraint);
  m_time->setForegroundRole(QPalette::PlaceholderText);
  m_position->setForegroundRole(QPalette::PlaceholderText);
  m_readOnly->setForegroundRole(QPalette::PlaceholderText);
  QFont strong = m_notice->font();
  strong.setWeight(QFont::DemiBold);
  m_notice->setFont(strong);
  m_cancel->setObjectName("stopFetch");
  // A button of the usual height would make the strip higher when rows come.
  m_cancel->setFixedHeight(fontMetrics().height() + 6);
  connect(m_cancel, &QPushButton::clicked, this, [this] {
    m_cancel->setEnabled(false);
    const auto cancelled = m_cancelled;
    if (cancelled) cancelled();
  });
  m_warning->setObjectName("warning");
  m_warning->setAccessibleName("Warning");
  SetWarningIcon();

  m_pending->setObjectName("pending");
  m_pending->setFlat(true);
  m_pending->setFont(strong);
  m_pending->setFocusPolicy(Qt::NoFocus);
  m_pending->setToolTip("Shows the rows that are not stored");
  connect(m_pending, &QPushButton::clicked, this, [this] {
    if (const std::function<void()> pressed = m_pendingPressed) pressed();
  });

  auto* notice = new QHBoxLayout;
  notice->setSpacing(6);
  notice->addWidget(m_warning);
  notice->addWidget(m_notice);
  m_offer->setObjectName("offer");
  m_offer->setAutoRaise(true);
  m_offer->setFocusPolicy(Qt::TabFocus);
  notice->addWidget(m_offer);
  connect(m_offer, &QToolButton::clicked, this, [this] {
    if (const std::function<void()> offered = m_offered) offered();
  });
  layout->addWidget(m_rows);
  layout->addWidget(m_time);
  layout->addWidget(m_cancel);
  layout->addWidget(m_arrangement);
  layout->addWidget(m_pending);
  layout->addLayout(notice);
  layout->addWidget(m_readOnly);
  layout->addStretch(1);
  layout->addWidget(m_position);
  setFixedHeight(fontMetrics().height() + 10);
  Empty();
  ReadOnly({});
  Pending(0);
}

void StatusStrip::Offer(const QString& sButton, const QString& sTip, std::function<void()> action) {
  m_offered = std::move(action);
  m_offer->setText(sButton);
  m_offer->setToolTip(sTip);
  m_offer->show();
  setFixedHeight(std::max(height(), m_offer->sizeHint().height() + 2));
}

void StatusStrip::Abandon() {
  m_offered = nullptr;
  m_offer->hide();
  m_cancelled = nullptr;
  m_pendingPressed = nullptr;
  m_pending->hide();
}

void StatusStrip::AddSwitch(std::initializer_list<QWidget*> buttons) {
  auto* place = new QHBoxLayout;
  place->setSpacing(0);
  for (QWidget* button : buttons) {
    place->addWidget(button);
    setFixedHeight(std::max(height(), button->sizeHint().height() + 2));
  }
  static_cast<QHBoxLayout*>(layout())->addLayout(place);
}

QSize StatusStrip::minimumSizeHint() const {
  return {0, height()};
}

void StatusStrip::Empty() {
  Message({});
}

void StatusStrip::Message(const QString& sMessage) {
  m_rows->setText(sMessage);
  m_rows->setMinimumWidth(0);
  m_time->clear();
  m_sNotice.clear();
  ShowNotice({});
  m_time->hide();
  m_cancel->hide();
  Arrangement({});
  m_offer->hide();
  m_position->clear();
}

void StatusStrip::Rows(platform::RowIndex rows, std::chrono::microseconds elapsed,
                       const QString& sFetched, const QString& sNotice) {
  if (!m_bWorking) m_cancel->hide();
  m_rows->setText(RowsText(rows));
  m_rows->setMinimumWidth(m_rows->sizeHint().width());
  m_time->setText(TookText(elapsed, sFetched));
  m_time->show();
  m_sNotice = sNotice;
  ShowNotice(sNotice);
  m_offer->hide();
}

void StatusStrip::Working(const QString& sWhat, const QString& sStopTip,
                          std::function<void()> stop) {
  Arrangement(sWhat);
  m_bWorking = true;
  m_cancelled = std::move(stop);
  m_cancel->setToolTip(sStopTip);
  m_cancel->setEnabled(true);
  m_cancel->show();
}

void StatusStrip::Arrangement(const QString& sArrangement) {
  if (std::exchange(m_bWorking, false)) {
    m_cancelled = nullptr;
    m_cancel->hide();
  }
  m_arrangement->setText(sArrangement);
  m_arrangement->setToolTip(sArrangement);
  m_arrangement->setVisible(!sArrangement.isEmpty());
  m_arrangement->setMinimumWidth(
      std::min(m_arrangement->sizeHint().width(),
               kCharactersOfArrangement * fontMetrics().averageCharWidth()));
}

void StatusStrip::Coming(platform::RowIndex rows, std::chrono::microseconds elapsed) {
  QString sTime = TimeText(elapsed);
  // In the first moment a rate would be a guess.
  if (elapsed >= std::chrono::milliseconds(100)) {
    const auto rate = static_cast<double>(rows) / std::chrono::duration<double>(elapsed).count();
    sTime += QStringLiteral(", %1 a second").arg(Grouped(static_cast<platform::RowIndex>(rate)));
  }
  m_rows->setText(RowsText(rows) + QStringLiteral(" so far\u2026"));
  m_rows->setMinimumWidth(m_rows->sizeHint().width());
  m_time->setText(sTime);
  m_time->show();
  if (m_cancel->isHidden()) m_cancel->setEnabled(true);
  m_cancel->setToolTip("Stops the fetch and keeps the rows that came");
  m_cancel->setVisible(static_cast<bool>(m_cancelled));
  m_sNotice.clear();
  ShowNotice({});
}

void StatusStrip::Remark(const QString& sRemark, bool bWarning) {
  if (sRemark.isEmpty()) return ShowNotice(m_sNotice);
  ShowNotice(sRemark, bWarning);
}

void StatusStrip::ShowNotice(const QString& sNotice, bool bWarning) {
  // What is said again and again, as while rows are followed, is spoken once, and of what goes on
  // the end alone: it counts several times a second.
  const bool bSpoken = !sNotice.isEmpty() && sNotice != m_notice->text() &&
                       !sNotice.endsWith(QStringLiteral("\u2026"));
  m_notice->setText(sNotice);
  m_notice->setToolTip(sNotice);
  m_notice->setVisible(!sNotice.isEmpty());
  m_notice->setAccessibleDescription(sNotice);
  m_warning->setVisible(bWarning && !sNotice.isEmpty());
  ShowReadOnly();
  if (!bSpoken) return;
  QAccessibleEvent event(m_notice, QAccessible::Alert);
  Speak(event);
}

void StatusStrip::ReadOnly(const QString& sWhy) {
  m_readOnly->setText(sWhy);
  m_readOnly->setToolTip(sWhy);
  ShowReadOnly();
}

void StatusStrip::ShowReadOnly() {
  // Whoever tries to edit is told so in the notice; once is enough.
  m_readOnly->setVisible(!m_readOnly->text().isEmpty() && m_readOnly->text() != m_notice->text());
}

void StatusStrip::Pending(platform::RowIndex rows) {
  m_pending->setText(RowsText(rows) + QStringLiteral(" not stored"));
  m_pending->setVisible(rows > 0);
}

void StatusStrip::Position(int nRow, int nRows) {
  m_position->setText(nRow < 0 ? QString()
                      : nRow == nRows
                          ? QStringLiteral("New row")
                          : QStringLiteral("Row %1 of %2").arg(Grouped(nRow + 1), Grouped(nRows)));
}

bool StatusStrip::event(QEvent* event) {
  const bool bDone = QWidget::event(event);
  if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize) Fit();
  return bDone;
}

void StatusStrip::Fit() {
  const std::array folding = {m_position, m_time};
  const auto isFolded = [](const QLabel* label) { return label->maximumWidth() == 0; };
  // Each label by itself: a layout asks for nothing where its widget may have no width.
  int nNeeded = layout()->sizeHint().width();
  // A sentence that is long for a line ends in an ellipsis wherever it stands.
  for (const QLabel* label : {m_arrangement, m_notice, m_readOnly}) {
    const int nSentence = kCharactersOfSentence * label->fontMetrics().averageCharWidth();
    if (!label->isHidden()) nNeeded -= std::max(0, label->sizeHint().width() - nSentence);
  }
  for (const QLabel* label : folding) {
    if (!label->isHidden() && isFolded(label)) nNeeded += label->sizeHint().width();
  }
  for (QLabel* label : folding) {
    if (label->isHidden()) continue;
    const bool bFold = nNeeded > width();
    if (bFold) nNeeded -= label->sizeHint().width();
    if (bFold != isFolded(label)) label->setMaximumWidth(bFold ? 0 : QWIDGETSIZE_MAX);
  }
}

void StatusStrip::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::StyleChange || event->type() == QEvent::PaletteChange) {
    SetWarningIcon();
  }
}

void StatusStrip::SetWarningIcon() {
  m_warning->setPixmap(
      style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(IconSize(*this)));
}

}  // namespace orvane::controls
