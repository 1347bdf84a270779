// An icon made of a drawing whose colours follow the ground it is put on: dark lines on light
// windows, light ones on dark windows, as it is drawn on marked rows, faded where it cannot be
// used. User-interface thread.
#pragma once

#include <QIconEngine>
#include <QString>

namespace orvane::console {

class DrawnIcon final : public QIconEngine {
 public:
  enum class Mark : std::uint8_t { None, Failed, Connected };

  /// The name is that of a drawing of the program.
  explicit DrawnIcon(QString sName, Mark mark = Mark::None);

  /// On a widget, for the widget's palette; the mode Selected means a row that is marked.
  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
  /// For the application's palette.
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
  QIconEngine* clone() const override;

  /// The file of a drawing among the program's resources.
  static QString FileOf(const QString& sName);

 private:
  QPixmap Picture(const QSize& size, QIcon::Mode mode, bool bOnDark) const;
  QByteArray Drawing(bool bOnDark) const;

  QString m_sName;
  Mark m_mark;
};

}  // namespace orvane::console
