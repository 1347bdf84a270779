#include "console/waiting/busy_bar.h"

#include <QPainter>

#include "console/look/contrast.h"

namespace orvane::console {
namespace {

constexpr int kMillisecondsOfStep = 40;
constexpr int kStepsAcross = 40;
constexpr int kPiecesInBar = 4;

}  // namespace

BusyBar::BusyBar(QWidget* parent) : QProgressBar(parent) {
  setRange(0, 0);
  setTextVisible(false);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  startTimer(kMillisecondsOfStep);
}

QSize BusyBar::sizeHint() const {
  return {QProgressBar::sizeHint().width(), fontMetrics().height() / 2};
}

void BusyBar::timerEvent(QTimerEvent*) {
  m_iStep = (m_iStep + 1) % (2 * kStepsAcross);
  update();
}

QRectF BusyBar::Piece() const {
  const qreal dWidth = width() / static_cast<qreal>(kPiecesInBar);
  const int iFromStart = m_iStep <= kStepsAcross ? m_iStep : 2 * kStepsAcross - m_iStep;
  return {(width() - dWidth) * iFromStart / kStepsAcross, 0, dWidth, static_cast<qreal>(height())};
}

void BusyBar::paintEvent(QPaintEvent*) {
  const QColor ground = palette().color(QPalette::Window);
  const QColor mark = palette().color(QPalette::Active, QPalette::Highlight);
  QColor track = palette().color(QPalette::WindowText);
  track.setAlphaF(0.15F);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const qreal dRadius = height() / 2.0;
  painter.setBrush(track);
  painter.drawRoundedRect(QRectF(rect()), dRadius, dRadius);
  painter.setBrush(Contrast(mark, ground) < kLeastContrast ? palette().color(QPalette::WindowText)
                                                           : mark);
  painter.drawRoundedRect(Piece(), dRadius, dRadius);
}

}  // namespace orvane::console
