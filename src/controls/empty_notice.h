// What a grid says in the place of rows: a short title and a sentence that tells what to do.
// Laid over the rows by the grid's window; user-interface thread.
#pragma once

#include <QLabel>
#include <QWidget>

namespace orvane::controls {

class EmptyNotice : public QWidget {
 public:
  explicit EmptyNotice(QWidget* parent = nullptr);

  /// Shows the texts, which can be selected and copied; an empty title hides the notice.
  void Say(const QString& sTitle, const QString& sSentence);

 private:
  QLabel* m_title;
  QLabel* m_sentence;
};

}  // namespace orvane::controls
