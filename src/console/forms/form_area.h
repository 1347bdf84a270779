// What a form lays out, all of it while the screen has room; else it scrolls, and follows the
// focus. Part of the form's window; user-interface thread.
#pragma once

#include <QScrollArea>

namespace orvane::console {

class FormArea : public QScrollArea {
 public:
  explicit FormArea(QWidget* parent);

  /// The most that the area may take of the screen: below that, what it holds is never cut.
  void Most(const QSize& most);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QSize Within(QSize wanted) const;

  QSize m_most{QWIDGETSIZE_MAX, QWIDGETSIZE_MAX};
};

}  // namespace orvane::console
