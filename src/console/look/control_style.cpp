#include "console/look/control_style.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>
#include <QToolButton>
#include <optional>

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

/// The edge of a box that is empty: on dark ground the style's own is darker still, and not seen.
void DrawEdge(QPainter& painter, const QRect& rect, const QPalette& palette, bool bRound) {
  constexpr float kShare = 0.45F;
  QColor edge = palette.color(QPalette::WindowText);
  edge.setAlphaF(kShare);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(edge);
  painter.setBrush(Qt::NoBrush);
  const QRectF line = QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
  if (bRound) {
    painter.drawEllipse(line);
  } else {
    painter.drawRoundedRect(line, 2, 2);
  }
  painter.restore();
}

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 128;
}

/// As high as a small letter of the button's text, however large that is.
void DrawArrow(QPainter& painter, const QStyleOption& option, Qt::ArrowType arrow) {
  const qreal dSide = option.fontMetrics.height() * 0.6;
  QTransform place;
  place.translate(QRectF(option.rect).center().x(), QRectF(option.rect).center().y());
  place.rotate(arrow == Qt::UpArrow      ? 0
               : arrow == Qt::RightArrow ? 90
               : arrow == Qt::DownArrow  ? 180
                                         : 270);
  place.scale(dSide, dSide);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(option.palette.brush(QPalette::ButtonText));
  painter.drawPolygon(place.map(QPolygonF({{-0.5, 0.3}, {0.5, 0.3}, {0.0, -0.3}})));
  painter.restore();
}

std::optional<Qt::ArrowType> ArrowOf(QStyle::PrimitiveElement element) {
  switch (element) {
    case QStyle::PE_IndicatorArrowUp:
      return Qt::UpArrow;
    case QStyle::PE_IndicatorArrowDown:
      return Qt::DownArrow;
    case QStyle::PE_IndicatorArrowLeft:
      return Qt::LeftArrow;
    case QStyle::PE_IndicatorArrowRight:
      return Qt::RightArrow;
    default:
      return std::nullopt;
  }
}

/// What can be told from the ground on either side of it.
QColor ThumbColor(const QPalette& palette) {
  constexpr double kShare = 0.55;
  const auto ground = palette.color(QPalette::Button);
  const auto ink = palette.color(QPalette::ButtonText);
  const auto mixed = [](int iGround, int iInk) {
    return iGround + static_cast<int>((iInk - iGround) * kShare);
  };
  return {mixed(ground.red(), ink.red()), mixed(ground.green(), ink.green()),
          mixed(ground.blue(), ink.blue())};
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
  if (const auto arrow = ArrowOf(element); arrow && qobject_cast<const QToolButton*>(widget)) {
    DrawArrow(*painter, *option, *arrow);
    return;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  const bool bBox = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton ||
                    element == PE_FrameLineEdit;
  if (bBox && IsDark(option->palette)) {
    DrawEdge(*painter, option->rect, option->palette, element == PE_IndicatorRadioButton);
  }
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
  if (const auto* asTab = qstyleoption_cast<const QStyleOptionTab*>(option);
      asTab && element == CE_TabBarTab && HasFocus(*option)) {
    auto tab = *asTab;
    tab.state &= ~State_HasFocus;
    QProxyStyle::drawControl(element, &tab, painter, widget);
    DrawRing(*painter, option->rect, option->palette, 2);
    return;
  }
  if (const auto* asTab = qstyleoption_cast<const QStyleOptionTab*>(option);
      asTab && element == CE_TabBarTab && IsDark(asTab->palette) &&
      asTab->state.testFlag(State_Selected)) {
    // On dark ground the style's own tabs look the same, whichever is the current one.
    QProxyStyle::drawControl(element, option, painter, widget);
    painter->fillRect(asTab->rect.adjusted(2, 0, -2, 2 - asTab->rect.height()),
                      RingColor(asTab->palette));
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
  if (const auto* asSlider = qstyleoption_cast<const QStyleOptionSlider*>(option);
      asSlider && control == CC_ScrollBar && asSlider->subControls.testFlag(SC_ScrollBarSlider)) {
    // The style's own thumb is lighter than its ground, so that the ground passes for the thumb.
    auto ground = *asSlider;
    ground.subControls &= ~SC_ScrollBarSlider;
    QProxyStyle::drawComplexControl(control, &ground, painter, widget);
    auto thumb = *asSlider;
    thumb.subControls = SC_ScrollBarSlider;
    thumb.palette.setColor(QPalette::Button, ThumbColor(thumb.palette));
    QProxyStyle::drawComplexControl(control, &thumb, painter, widget);
    return;
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (control == CC_SpinBox && HasFocus(*option)) {
    DrawRing(*painter, option->rect, option->palette, 2);
  }
}

int ControlStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returnData) const {
  switch (hint) {
    case SH_ComboBox_Popup:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_MessageBox_CenterButtons:
      return 0;
    case SH_Menu_Scrollable:
      // A menu higher than the screen is scrolled; a second column could stand beyond its edge.
      return 1;
    case SH_DialogButtonLayout:
      return QDialogButtonBox::WinLayout;
    default:
      return QProxyStyle::styleHint(hint, option, widget, returnData);
  }
}

QIcon ControlStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                                 const QWidget* widget) const {
  const QIcon drawn = QProxyStyle::standardIcon(icon, option, widget);
  const QPalette palette = option ? option->palette : QApplication::palette();
  if (icon != SP_ToolBarHorizontalExtensionButton || !IsDark(palette)) return drawn;
  // The style's own is black on any ground.
  constexpr int kSide = 16;
  QPixmap seen = drawn.pixmap(kSide);
  QPainter painter(&seen);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(seen.rect(), palette.color(QPalette::ButtonText));
  painter.end();
  return seen;
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
