#include "console/look/drawn_icon.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <QWidget>
#include <algorithm>
#include <array>
#include <utility>

namespace orvane::console {

namespace {

/// How much is left to see of what cannot be used.
constexpr qreal kFaded = 0.38;

/// The drawings' colours, and what stands for each on a dark ground.
constexpr std::array<std::pair<const char*, const char*>, 11> kColors = {{
    {"#44546a", "#e3e9f0"},   // lines
    {"#2f6db5", "#8cc0f7"},   // what the drawing is about
    {"#fff\"", "#36424f\""},  // paper
    {"#dce8f5", "#435467"},   // shade
    {"#bcd4ee", "#54718f"},   // deeper shade
    {"#9fb0c3", "#7f90a3"},   // fine lines
    {"#8593a5", "#a9b7c6"},   // lines of what is left out
    {"#3e8e5a", "#7fd49b"},   // good
    {"#c0392b", "#f58a7b"},   // taking away
    {"#f6d5d1", "#5d3b38"},   // what is taken away
    {"#96690f", "#e9bd62"},   // key
}};

/// The pictures of rows have bodies, which stand out on the mark of any palette as they are drawn.
bool IsOnDark(const QPalette& palette, QIcon::Mode mode) {
  return mode != QIcon::Selected &&
         palette.windowText().color().lightness() > palette.window().color().lightness();
}

}  // namespace

DrawnIcon::DrawnIcon(QString sName, Mark mark) : m_sName(std::move(sName)), m_mark(mark) {}

QString DrawnIcon::FileOf(const QString& sName) {
  return QStringLiteral(":/console/%1.svg").arg(sName);
}

QByteArray DrawnIcon::Drawing(bool bOnDark) const {
  QFile file(FileOf(m_sName));
  if (!file.open(QIODevice::ReadOnly)) return {};
  auto drawing = file.readAll();
  if (bOnDark) {
    for (const auto& [sLight, sDark] : kColors) drawing.replace(sLight, sDark);
  }
  return drawing;
}

QPixmap DrawnIcon::Picture(const QSize& size, QIcon::Mode mode, bool bOnDark) const {
  const auto sKey = QStringLiteral("orvane-drawing/%1/%2/%3x%4/%5/%6")
                        .arg(m_sName)
                        .arg(static_cast<int>(m_mark))
                        .arg(size.width())
                        .arg(size.height())
                        .arg(mode == QIcon::Disabled ? 1 : 0)
                        .arg(bOnDark ? 1 : 0);
  QPixmap picture;
  if (QPixmapCache::find(sKey, &picture)) return picture;
  picture = QPixmap(size);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  if (mode == QIcon::Disabled) painter.setOpacity(kFaded);
  const qreal dSide = std::min(size.width(), size.height());
  const QRectF square((size.width() - dSide) / 2, (size.height() - dSide) / 2, dSide, dSide);
  QSvgRenderer(Drawing(bOnDark)).render(&painter, square);
  if (m_mark != Mark::None) {
    const qreal dMark = dSide * 5 / 8;
    QSvgRenderer(
        FileOf(m_mark == Mark::Failed ? QStringLiteral("failed") : QStringLiteral("connected")))
        .render(&painter, {square.right() - dMark, square.bottom() - dMark, dMark, dMark});
  }
  painter.end();
  QPixmapCache::insert(sKey, picture);
  return picture;
}

void DrawnIcon::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
                      QIcon::State /*state*/) {
  auto* device = painter->device();
  const auto palette = device->devType() == QInternal::Widget
                           ? static_cast<const QWidget*>(device)->palette()
                           : QGuiApplication::palette();
  const qreal dRatio = device->devicePixelRatioF();
  auto picture = Picture((QSizeF(rect.size()) * dRatio).toSize(), mode, IsOnDark(palette, mode));
  picture.setDevicePixelRatio(dRatio);
  painter->drawPixmap(rect.topLeft(), picture);
}

QPixmap DrawnIcon::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) {
  return Picture(size, mode, IsOnDark(QGuiApplication::palette(), mode));
}

QIconEngine* DrawnIcon::clone() const {
  return new DrawnIcon(*this);
}

}  // namespace orvane::console
