// The bar beneath a grid's rows in which a text is sought, among the rows that are here.
// Made by whoever moves about in the grid; user-interface thread.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QWidget>

#include "controls/view/row_finder.h"
#include "controls/view/row_view.h"

namespace orvane::controls {

class FindBar final : public QWidget {
 public:
  FindBar(RowView& rows, QWidget* parent);

  /// Shows the bar and gives it the keys.
  void Open();
  /// Goes on with what was sought last; opens the bar where that is nothing.
  void FindNext(bool bForward);
  bool IsLooking() const { return m_finder.Busy(); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Close();
  bool StopLooking();
  void Tell(const QString& sOutcome);
  QString Scope() const;

  RowView& m_rows;
  RowFinder m_finder;
  QLineEdit* m_text;
  QLabel* m_outcome;
};

}  // namespace orvane::controls
