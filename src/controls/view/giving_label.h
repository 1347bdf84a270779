// A label that gives way: it ends in an ellipsis where there is no room for all of its text. Used
// by the strip and the bars around a grid's rows; user-interface thread.
#pragma once

#include <QLabel>

namespace orvane::controls {

class GivingLabel : public QLabel {
 public:
  using QLabel::QLabel;

  /// What of the text is in sight.
  QString Seen() const;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace orvane::controls
