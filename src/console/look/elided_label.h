// A label for a name of any length: what does not fit is cut with an ellipsis, and the whole text
// is in the tooltip.
#pragma once

#include <QLabel>

namespace orvane::console {

class ElidedLabel : public QLabel {
 public:
  explicit ElidedLabel(QWidget* parent = nullptr);

  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;
};

}  // namespace orvane::console
