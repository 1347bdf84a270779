// A calm page in place of contents that are not there: a picture, a sentence, and perhaps one
// button with what can be done about it. User-interface thread.
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace orvane::console {

class MessagePage final : public QWidget {
  Q_OBJECT

 public:
  explicit MessagePage(QWidget* parent = nullptr);

  /// Without a button text there is no button; without a detail no second line.
  void Show(const QIcon& icon, const QString& sText, const QString& sDetail = {},
            const QString& sButton = {});
  QString Text() const;

 signals:
  void ButtonPressed();

 private:
  QLabel* m_lblPicture;
  QLabel* m_lblText;
  QLabel* m_lblDetail;
  QPushButton* m_btnAction;
  QString m_sText;
};

}  // namespace orvane::console
