// A box with a text and buttons that holds any text: it breaks words that are too long for a line,
// and scrolls what is too long for the screen. Used by whatever asks or tells the user something;
// user-interface thread.
#pragma once

#include <QMessageBox>

namespace orvane::widgets {

class MessageBox : public QMessageBox {
 public:
  explicit MessageBox(QWidget* parent);

  void setVisible(bool bVisible) override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  /// Shows the box's texts in place of the toolkit's labels, which cut what they cannot break.
  void LayOutText();
  void EvenButtons();
  /// The toolkit places the box before it knows how large the text makes it.
  void Centre();
};

}  // namespace orvane::widgets
