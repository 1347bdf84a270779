// How the lines of a trend look: colours that are told apart by eyes that see fewer of them, on
// light and on dark ground, and beside the colour a pattern of dashes and a mark, for those who see
// none. User-interface thread.
#pragma once

#include <QIcon>
#include <QPalette>
#include <QPen>

namespace orvane::trend {

class TrendLook {
 public:
  /// Colours there are; the lines beyond have them again, with other dashes and marks.
  static constexpr std::size_t kColors = 7;

  explicit TrendLook(const QPalette& palette);

  QColor Ground() const { return m_ground; }
  QColor Text() const { return m_text; }
  /// Of the lines behind the trend.
  QColor Grid() const;
  /// Looks repeat after many lines only.
  QPen Pen(std::size_t line) const;
  /// The mark of a line, drawn around the point.
  void DrawMark(QPainter& painter, std::size_t line, QPointF at) const;
  /// A piece of the line with its mark.
  QPixmap Sample(std::size_t line, QSize size, qreal ratio) const;

 private:
  QColor m_ground;
  QColor m_text;
  bool m_bDark;
};

}  // namespace orvane::trend
