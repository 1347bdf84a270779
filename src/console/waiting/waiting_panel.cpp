#include "console/waiting/waiting_panel.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace orvane::console {

namespace {

constexpr int kWidth = 380;
constexpr int kMargin = 16;

}  // namespace

WaitingPanel::WaitingPanel(const QString& sWhat, QWidget* window)
    : QFrame(window), m_lblElapsed(new QLabel), m_btnCancel(new QPushButton(tr("Cancel"))) {
  setObjectName("waitingPanel");
  setAccessibleName(sWhat);
  setFrameStyle(static_cast<int>(QFrame::StyledPanel) | static_cast<int>(QFrame::Raised));
  setAutoFillBackground(true);
  setWindowTitle(tr("Please Wait"));

  auto* lblWhat = new QLabel(sWhat);
  lblWhat->setObjectName("m_lblWhat");
  lblWhat->setTextFormat(Qt::PlainText);
  lblWhat->setWordWrap(true);
  auto* bar = new QProgressBar;
  bar->setRange(0, 0);
  bar->setTextVisible(false);
  bar->setFixedHeight(8);
  m_lblElapsed->setObjectName("m_lblElapsed");
  m_lblElapsed->setForegroundRole(QPalette::PlaceholderText);
  m_btnCancel->setObjectName("m_btnCancel");
  // The focus stays where it was: a cell that loses it would send its edit.
  m_btnCancel->setFocusPolicy(Qt::NoFocus);
  const int iTextWidth = m_btnCancel->fontMetrics().horizontalAdvance(tr("Cancelling…"));
  m_btnCancel->setMinimumWidth(iTextWidth + 2 * kMargin);
  m_btnCancel->setToolTip(tr("Stop and go back (Esc)"));
  connect(m_btnCancel, &QPushButton::clicked, this, &WaitingPanel::Cancelled);

  auto* foot = new QHBoxLayout;
  foot->addWidget(m_lblElapsed, 1);
  foot->addWidget(m_btnCancel);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(10);
  layout->addWidget(lblWhat);
  layout->addWidget(bar);
  layout->addLayout(foot);

  setFixedWidth(kWidth);
  setFixedHeight(layout->heightForWidth(kWidth) > 0 ? layout->heightForWidth(kWidth)
                                                    : sizeHint().height());
  if (window && (window->width() < width() || window->height() < height())) {
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setWindowModality(Qt::ApplicationModal);
  }
  if (!isWindow()) {
    window->installEventFilter(this);
    Centre();
  }

  m_elapsed.start();
  ShowElapsed();
  auto* timer = new QTimer(this);
  connect(timer, &QTimer::timeout, this, [this] { ShowElapsed(); });
  timer->start(1000);

  show();
  raise();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void WaitingPanel::ShowCancelling() {
  m_btnCancel->setEnabled(false);
  m_btnCancel->setText(tr("Cancelling…"));
}

bool WaitingPanel::Contains(const QObject* object) const {
  for (; object; object = object->parent()) {
    if (object == this) return true;
  }
  return false;
}

bool WaitingPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) Centre();
  return QFrame::eventFilter(watched, event);
}

void WaitingPanel::ShowElapsed() {
  const qint64 nSeconds = m_elapsed.elapsed() / 1000;
  m_lblElapsed->setText(
      nSeconds < 60 ? tr("%1 s").arg(nSeconds)
                    : tr("%1 min %2 s").arg(nSeconds / 60).arg(nSeconds % 60, 2, 10, QChar('0')));
}

void WaitingPanel::Centre() {
  const QRect area = parentWidget()->rect();
  move((area.width() - width()) / 2, (area.height() - height()) / 2);
}

}  // namespace orvane::console
