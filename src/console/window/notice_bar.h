// A strip under the menus for what the user should know about the document, until it is dismissed.
// User-interface thread.
#pragma once

#include <QFrame>

class QLabel;

namespace orvane::console {

class NoticeBar final : public QFrame {
  Q_OBJECT

 public:
  explicit NoticeBar(QWidget* parent = nullptr);

  /// An empty sentence hides the bar.
  void Show(const QString& sSentence);
  QString Sentence() const;

 private:
  QLabel* m_lblSentence;
};

}  // namespace orvane::console
