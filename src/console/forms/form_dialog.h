// The window of a form: which key presses which button, where the focus begins, and the nested loop
// of its modal display. User-interface thread.
//
// Enter belongs to the default button alone, wherever the focus is, and Space to the focused one:
// a form that binds no default button is not accepted by a key that only meant to end a line.
#pragma once

#include <QDialog>
#include <cstdint>
#include <exception>
#include <functional>
#include <utility>
#include <vector>

#include "platform/signal.h"

class QKeyEvent;
class QPushButton;

namespace orvane::console {

class FormDialog : public QDialog {
 public:
  /// What Enter does in a control: in some it belongs to the text, and Ctrl+Enter to the button.
  enum class EnterKey : std::uint8_t { PressesDefault, ShiftBreaksLine, BreaksLine };

  FormDialog();
  /// No handler is called any more while the window dies.
  ~FormDialog() override;

  /// The button that Enter presses while it is enabled.
  void DefaultButton(QPushButton& button);
  /// The button that Escape presses while it is enabled.
  void CancelButton(QPushButton& button);
  /// Gives the control's Enter and Escape to the form, whatever its class makes of them.
  void Watch(QWidget& control, EnterKey enter = EnterKey::PressesDefault);

  /// Where the focus is each time the form opens; the text of a single-line box is selected.
  void InitialFocus(QWidget& control) { m_initialFocus = &control; }
  /// Gives the focus now, or, while the form is not shown, when it opens next.
  void TakeFocus(QWidget& control);

  /// Makes the controls as wide as the widest of them wants to be, whatever their captions become.
  void SameWidth(std::vector<QWidget*> controls) { m_sameWidths.push_back(std::move(controls)); }

  /// Shows the form, centred over the owner if there is one, until Hide is called or the user
  /// closes the window. A failure of a handler ends the display and is thrown from here.
  void ShowModal(QWidget* owner);
  void Hide();

  /// Calls the handler of something that the user did. Nothing is thrown into the event loop.
  void Run(const std::function<void()>& handler);
  /// Called when the colours of the desktop have changed.
  [[nodiscard]] platform::Subscription OnPaletteChange(std::function<void()> handler);

  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  /// True when the key was the form's.
  bool TakeKey(const QKeyEvent& event, EnterKey enter);
  void EvenWidths();
  void PlaceOver(QWidget* owner);

  QPushButton* m_defaultButton = nullptr;
  QPushButton* m_cancelButton = nullptr;
  QWidget* m_initialFocus = nullptr;
  QWidget* m_nextFocus = nullptr;
  std::vector<std::vector<QWidget*>> m_sameWidths;
  bool m_bSized = false;
  bool m_bDying = false;
  std::exception_ptr m_failure;
  platform::Signal<> m_paletteChange;
};

}  // namespace orvane::console
