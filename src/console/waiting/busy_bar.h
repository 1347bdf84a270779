// The bar of a wait whose length nobody knows: a short piece that wanders to and fro, so that it
// can never be taken for a bar that is full. User-interface thread.
#pragma once

#include <QProgressBar>

namespace orvane::console {

class BusyBar : public QProgressBar {
 public:
  explicit BusyBar(QWidget* parent = nullptr);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  QRectF Piece() const;

  int m_iStep = 0;
};

}  // namespace orvane::console
