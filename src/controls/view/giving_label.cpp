#include "controls/view/giving_label.h"

#include <QPainter>
#include <QStyle>

namespace orvane::controls {

QString GivingLabel::Seen() const {
  return fontMetrics().elidedText(text(), Qt::ElideRight, width());
}

QSize GivingLabel::minimumSizeHint() const {
  return {0, QLabel::minimumSizeHint().height()};
}

void GivingLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        Seen(), foregroundRole());
}

}  // namespace orvane::controls
