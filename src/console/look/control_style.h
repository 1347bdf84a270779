// How the controls of all windows are drawn: as the Fusion style does, but the focus can be seen on
// every one of them, however it came there, and drop-down lists and buttons are the same in every
// window. Set for the application before its first window; user-interface thread.
#pragma once

#include <QProxyStyle>

namespace orvane::console {

class ControlStyle : public QProxyStyle {
 public:
  ControlStyle();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  /// Drop-down lists open under their box, with as many entries as the box allows; the buttons of
  /// boxes have no pictures and stand in one order on every desktop.
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returnData) const override;
  /// The toolkit's own pictures, where they are black, in a colour that is seen.
  QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                     const QWidget* widget) const override;
  /// A button leaves room beside its text, however large the letters are.
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
};

}  // namespace orvane::console
