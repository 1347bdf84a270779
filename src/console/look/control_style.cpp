#include "console/look/control_style.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

#include "console/look/contrast.h"

namespace orvane::console {
namespace {

constexpr int kRingWidth = 2;
/// More than the least contrast: buttons are drawn a shade lighter or darker than their colour.
constexpr double kRingContrast = 4.5;

/// The desktop's own mark, where it can be told from what lies around it.
QColor RingColor(const QPalette& palette) {
  const auto mark = palette.color(QPalette::Active, QPalette::Highlight);
  for (const auto ground : {QPalette::Window, QPalette::Base, QPalette::Button}) {
    if (Contrast(mark, palette.color(ground)) < kRingContrast) {
      return palette.color(QPalette::Active, QPalette::WindowText);
    }
  }
  return mark;
}

void DrawRing(QPainter& painter, const QRect& rect, const QPalette& palette, qreal dRadius) {
  constexpr qreal kHalf = kRingWidth / 2.0;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(RingColor(palette), kRingWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(rect).adjusted(kHalf, kHalf, -kHalf, -kHalf), dRadius, dRadius);
  painter.restore();
}

bool HasFocus(const QStyleOption& option) {
  return option.state.testFlag(QStyle::State_HasFocus);
}

/// Rows of a list say by their own colours which of them is the current one.
bool IsRow(const QStyleOption& option, const QWidget* widget) {
  return !widget || option.state.testFlag(QStyle::State_Item) ||
         qobject_cast<const QAbstractItemView*>(widget);
}

/// The panes of the window have no frame: they lie edge to edge.
bool IsFramedPane(const QWidget* widget) {
  return qobject_cast<const QAbstractScrollArea*>(widget) &&
         qobject_cast<const QDialog*>(widget->window());
}

}  // namespace

ControlStyle::ControlStyle() : QProxyStyle(QStyleFactory::create("Fusion")) {}

void ControlStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
  if (element == PE_FrameFocusRect && !IsRow(*option, widget)) {
    DrawRing(*painter, option->rect, option->palette, 1);
    return;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if (element == PE_FrameLineEdit && HasFocus(*option)) {
    DrawRing(*painter, option->rect, option->palette, 2);
  }
  if (element == PE_Frame && IsFramedPane(widget)) {
    if (HasFocus(*option)) {
      DrawRing(*painter, option->rect, option->palette, 0);
    } else {
      // The room of the ring belongs to the pane while there is no ring.
      painter->setPen(option->palette.color(QPalette::Base));
      painter->setBrush(Qt::NoBrush);
      painter->drawRect(option->rect.adjusted(1, 1, -2, -2));
    }
  }
}

void ControlStyle::drawControl(ControlElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
  if (const auto* asButton = qstyleoption_cast<const QStyleOptionButton*>(option);
      asButton && element == CE_PushButton && HasFocus(*option)) {
    auto button = *asButton;
    button.state &= ~State_HasFocus;
    QProxyStyle::drawControl(element, &button, painter, widget);
    DrawRing(*painter, option->rect, option->palette, 2);
    return;
  }
  if (const auto* asComboBox = qstyleoption_cast<const QStyleOptionComboBox*>(option);
      asComboBox && element == CE_ComboBoxLabel) {
    auto comboBox = *asComboBox;
    const auto room = subControlRect(CC_ComboBox, &comboBox, SC_ComboBoxEditField, widget).width();
    comboBox.currentText = comboBox.fontMetrics.elidedText(comboBox.currentText, Qt::ElideMiddle,
                                                           room - 2 * kRingWidth);
    QProxyStyle::drawControl(element, &comboBox, painter, widget);
    return;
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

void ControlStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                      QPainter* painter, const QWidget* widget) const {
  if (const auto* asComboBox = qstyleoption_cast<const QStyleOptionComboBox*>(option);
      asComboBox && control == CC_ComboBox && HasFocus(*option)) {
    auto comboBox = *asComboBox;
    comboBox.state &= ~State_HasFocus;
    QProxyStyle::drawComplexControl(control, &comboBox, painter, widget);
    DrawRing(*painter, option->rect, option->palette, 2);
    return;
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

int ControlStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returnData) const {
  switch (hint) {
    case SH_ComboBox_Popup:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_MessageBox_CenterButtons:
      return 0;
    case SH_DialogButtonLayout:
      return QDialogButtonBox::WinLayout;
    default:
      return QProxyStyle::styleHint(hint, option, widget, returnData);
  }
}

QSize ControlStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                     const QSize& contents, const QWidget* widget) const {
  QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  if (type == CT_PushButton) {
    size.setWidth(qMax(size.width(), contents.width() + 2 * option->fontMetrics.height()));
  }
  return size;
}

int ControlStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                              const QWidget* widget) const {
  if (metric == PM_DefaultFrameWidth && IsFramedPane(widget)) return kRingWidth;
  return QProxyStyle::pixelMetric(metric, option, widget);
}

}  // namespace orvane::console
