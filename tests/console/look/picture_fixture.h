// Pictures and palettes for the tests of looks: what is drawn, how far two pictures differ, a dark
// desktop. User-interface thread.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QImage>
#include <QPalette>

namespace orvane::console {

inline QImage Picture(const QIcon& icon) {
  return icon.pixmap(QSize(32, 32)).toImage().convertToFormat(QImage::Format_ARGB32);
}

inline QImage Drawing(const char* sName) {
  return Picture(QIcon(QStringLiteral(":/console/%1.svg").arg(QLatin1String(sName))));
}

inline int Differences(const QImage& left, const QImage& right) {
  EXPECT_EQ(left.size(), right.size());
  int iCount = 0;
  for (int y = 0; y < left.height(); ++y) {
    for (int x = 0; x < left.width(); ++x) iCount += left.pixel(x, y) != right.pixel(x, y);
  }
  return iCount;
}

inline QPalette DarkPalette() {
  QPalette palette(QColor(0x2B, 0x2F, 0x36));
  palette.setColor(QPalette::Base, QColor(0x1E, 0x21, 0x26));
  palette.setColor(QPalette::Text, Qt::white);
  return palette;
}

/// The application's font and palette as they were, when this goes.
class AppearanceBefore {
 public:
  ~AppearanceBefore() {
    QApplication::setFont(m_font);
    QApplication::setPalette(m_palette);
  }

 private:
  QFont m_font = QApplication::font();
  QPalette m_palette = QApplication::palette();
};

}  // namespace orvane::console
