#include "trend/trend_look.h"

#include <QPainter>
#include <QPixmap>
#include <array>

namespace orvane::trend {

namespace {

/// Told apart with each of the common weaknesses of colour vision, and far enough from their
/// ground.
constexpr std::array<QRgb, TrendLook::kColors> kOnLight = {
    0xff188cff, 0xfff14404, 0xff5f0970, 0xff9f86b1, 0xff020402, 0xffac4d49, 0xff1202be};
constexpr std::array<QRgb, TrendLook::kColors> kOnDark = {
    0xff42fcfd, 0xfffdc003, 0xffbb39b4, 0xff5a967b, 0xffe5ffaf, 0xffcc1903, 0xff8b27f9};
constexpr std::array<Qt::PenStyle, 4> kDashes = {Qt::SolidLine, Qt::DashLine, Qt::DotLine,
                                                 Qt::DashDotLine};
constexpr std::size_t kMarks = 5;
constexpr qreal kMarkRadius = 3.5;

}  // namespace

TrendLook::TrendLook(const QPalette& palette)
    : m_ground(palette.color(QPalette::Base)),
      m_text(palette.color(QPalette::Text)),
      m_bDark(m_ground.lightness() < 128) {}

QColor TrendLook::Grid() const {
  QColor color = m_text;
  color.setAlphaF(0.15F);
  return color;
}

QPen TrendLook::Pen(std::size_t line) const {
  const auto& colors = m_bDark ? kOnDark : kOnLight;
  const QColor color(colors[line % colors.size()]);
  QPen pen(color);
  // Neighbours differ in both: who sees no colour has the pattern.
  pen.setStyle(kDashes[line % kDashes.size()]);
  pen.setWidth(1);
  pen.setCosmetic(true);
  return pen;
}

void TrendLook::DrawMark(QPainter& painter, std::size_t line, QPointF at) const {
  QPen pen = Pen(line);
  pen.setStyle(Qt::SolidLine);
  painter.setPen(pen);
  painter.setBrush(pen.color());
  const qreal r = kMarkRadius;
  switch (line % kMarks) {
    case 0:
      painter.drawEllipse(at, r, r);
      break;
    case 1:
      painter.drawRect(QRectF(at.x() - r, at.y() - r, 2 * r, 2 * r));
      break;
    case 2:
      painter.drawPolygon(
          QPolygonF({at + QPointF(0, -r), at + QPointF(r, r), at + QPointF(-r, r)}));
      break;
    case 3:
      painter.drawPolygon(QPolygonF({at + QPointF(0, -r - 1), at + QPointF(r + 1, 0),
                                     at + QPointF(0, r + 1), at + QPointF(-r - 1, 0)}));
      break;
    default:
      painter.drawLine(at + QPointF(-r, -r), at + QPointF(r, r));
      painter.drawLine(at + QPointF(-r, r), at + QPointF(r, -r));
      break;
  }
}

QPixmap TrendLook::Sample(std::size_t line, QSize size, qreal ratio) const {
  QPixmap pixmap(size * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  QPen pen = Pen(line);
  pen.setWidth(2);
  painter.setPen(pen);
  const int nMiddle = size.height() / 2;
  painter.drawLine(0, nMiddle, size.width(), nMiddle);
  painter.setRenderHint(QPainter::Antialiasing);
  DrawMark(painter, line, QPointF(size.width() / 2.0, nMiddle));
  return pixmap;
}

}  // namespace orvane::trend
