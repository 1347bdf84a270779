#include "console/waiting/waiting_panel.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "console/look/breakable_text.h"
#include "console/waiting/busy_bar.h"

namespace orvane::console {

namespace {

constexpr int kCharactersInLine = 54;
constexpr int kMargin = 16;

/// The part of a widget with which the panel would leave half a text in sight.
QRect PartOf(QWidget* widget, const QRect& panel) {
  const QRect covered = panel & widget->rect();
  const auto* view = qobject_cast<QAbstractItemView*>(widget->parentWidget());
  if (!view || view->viewport() != widget) return covered.isEmpty() ? QRect() : widget->rect();
  if (covered.isEmpty()) return {};
  // Of rows those that the panel touches.
  QRect rows(0, covered.top(), widget->width(), covered.height());
  for (const int y : {covered.top(), covered.bottom()}) {
    const QRect row = view->visualRect(view->indexAt({1, y}));
    if (row.isValid()) rows |= QRect(0, row.top(), widget->width(), row.height());
  }
  return rows & widget->rect();
}

/// Whether it may show a text itself: it has nothing in it, or is the inside of a list.
bool HasText(const QWidget& widget) {
  if (qobject_cast<QAbstractItemView*>(widget.parentWidget())) return true;
  const auto inside = widget.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
  return std::ranges::none_of(inside, &QWidget::isVisible);
}

}  // namespace

/// Lies over a window whose controls cannot be used. What the panel covers a part of is not seen at
/// all: the rest of a text would read as another.
class WaitingPanel::Veil : public QWidget {
 public:
  explicit Veil(QWidget* window) : QWidget(window) { show(); }

  void LieOver(const QWidget& panel) {
    setGeometry(parentWidget()->rect());
    m_hidden = {};
    for (QWidget* widget : parentWidget()->findChildren<QWidget*>()) {
      const bool bOwn = widget == this || widget == &panel || panel.isAncestorOf(widget);
      if (bOwn || !widget->isVisible() || widget->isWindow() || !HasText(*widget)) continue;
      const QPoint at = widget->mapTo(parentWidget(), QPoint());
      m_hidden += PartOf(widget, panel.geometry().translated(-at)).translated(at);
    }
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QColor color = palette().color(QPalette::Window);
    QPainter painter(this);
    painter.setClipRegion(m_hidden);
    painter.fillRect(rect(), color);
    color.setAlphaF(0.6F);
    painter.setClipRegion(QRegion(rect()) - m_hidden);
    painter.fillRect(rect(), color);
  }

 private:
  QRegion m_hidden;
};

WaitingPanel::WaitingPanel(const QString& sWhat, QWidget* window)
    : QFrame(window), m_lblElapsed(new QLabel), m_btnCancel(new QPushButton(tr("Cancel"))) {
  setObjectName("waitingPanel");
  setAccessibleName(sWhat);
  setFrameStyle(static_cast<int>(QFrame::StyledPanel) | static_cast<int>(QFrame::Raised));
  setAutoFillBackground(true);
  setWindowTitle(tr("Please Wait"));

  auto* lblWhat = new QLabel(Breakable(sWhat, kCharactersInLine / 2));
  lblWhat->setObjectName("m_lblWhat");
  lblWhat->setTextFormat(Qt::PlainText);
  lblWhat->setWordWrap(true);
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
  layout->addWidget(new BusyBar);
  layout->addLayout(foot);

  const int iWidth = fontMetrics().averageCharWidth() * kCharactersInLine + 2 * kMargin;
  setFixedSize(iWidth, layout->totalHeightForWidth(iWidth));
  if (window && (window->width() < width() || window->height() < height())) {
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setWindowModality(Qt::ApplicationModal);
  }
  if (!isWindow()) {
    window->installEventFilter(this);
    m_veil = new Veil(window);
    LieOver();
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

WaitingPanel::~WaitingPanel() {
  delete m_veil;
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
  if (event->type() == QEvent::Resize) LieOver();
  return QFrame::eventFilter(watched, event);
}

void WaitingPanel::ShowElapsed() {
  const qint64 nSeconds = m_elapsed.elapsed() / 1000;
  const QString sSeconds =
      nSeconds % 60 == 1 ? tr("1 second") : tr("%1 seconds").arg(nSeconds % 60);
  const qint64 nMinutes = nSeconds / 60;
  const QString sMinutes = nMinutes == 1 ? tr("1 minute") : tr("%1 minutes").arg(nMinutes);
  m_lblElapsed->setText(nMinutes == 0 ? sSeconds : sMinutes + u' ' + sSeconds);
}

void WaitingPanel::LieOver() {
  const QRect area = parentWidget()->rect();
  move((area.width() - width()) / 2, (area.height() - height()) / 2);
  if (m_veil) m_veil->LieOver(*this);
}

}  // namespace orvane::console
