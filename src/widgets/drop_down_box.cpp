#include "widgets/drop_down_box.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

#include "widgets/tool_tip.h"

namespace orvane::widgets {
namespace {

constexpr int kDropDownCharacters = 14;
constexpr int kEntriesShown = 15;

}  // namespace

DropDownBox::DropDownBox(QWidget* parent) : WheelByFocus(parent) {
  // Wide enough for its arrow and a usual name: a catalog's longest name does not set the width.
  setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
  setMinimumContentsLength(kDropDownCharacters);
  setMaxVisibleItems(kEntriesShown);
  view()->setTextElideMode(Qt::ElideMiddle);
}

bool DropDownBox::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QComboBox::event(event);
  const bool bCut = view()->fontMetrics().horizontalAdvance(currentText()) > width();
  if (!bCut && !toolTip().isEmpty()) return QComboBox::event(event);
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                     bCut ? ToolTipOf(currentText()) : QString(), this);
  return true;
}

}  // namespace orvane::widgets
