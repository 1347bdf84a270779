#include "console/look/elided_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include "widgets/tool_tip.h"

namespace orvane::console {
namespace {

constexpr int kLeastLabelCharacters = 12;

}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize ElidedLabel::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * kLeastLabelCharacters,
          QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QString sShown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
  style()->drawItemText(&painter, rect(), static_cast<int>(alignment()), palette(), isEnabled(),
                        sShown, foregroundRole());
}

bool ElidedLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QLabel::event(event);
  const bool bCut = fontMetrics().horizontalAdvance(text()) > width();
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                     bCut ? widgets::ToolTipOf(text()) : QString(), this);
  return true;
}

}  // namespace orvane::console
