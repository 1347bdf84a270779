#include "console/forms/form_area.h"

#include <QApplication>
#include <QEvent>
#include <QScrollBar>

namespace orvane::console {

FormArea::FormArea(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setWidgetResizable(true);
  setWidget(new QWidget);
  // The form is drawn on the window's own ground.
  viewport()->setAutoFillBackground(false);
  widget()->setAutoFillBackground(false);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    if (now && widget()->isAncestorOf(now)) ensureWidgetVisible(now);
  });
}

void FormArea::Most(const QSize& most) {
  m_most = most;
  updateGeometry();
}

QSize FormArea::sizeHint() const {
  return Within(widget()->sizeHint().expandedTo(widget()->minimumSizeHint()));
}

QSize FormArea::minimumSizeHint() const {
  return Within(widget()->minimumSizeHint());
}

QSize FormArea::Within(QSize wanted) const {
  // A bar takes room from what it scrolls.
  const auto least = widget()->minimumSizeHint();
  if (least.height() > m_most.height()) wanted.rwidth() += verticalScrollBar()->sizeHint().width();
  if (least.width() > m_most.width())
    wanted.rheight() += horizontalScrollBar()->sizeHint().height();
  return wanted.boundedTo(m_most);
}

bool FormArea::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
}

}  // namespace orvane::console
