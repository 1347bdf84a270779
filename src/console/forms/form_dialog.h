// The window of a form: which key presses which button, where the focus begins, where it stands on
// the screen, and the nested loop of its modal display. User-interface thread.
//
// Enter presses the button that has the focus, else the default one: a form that binds no default
// button is not accepted by a key that only meant to end a line.
#pragma once

#include <QDialog>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/signal.h"

class QKeyEvent;
class QLayout;
class QPushButton;

namespace orvane::console {

class FormArea;

/// Where forms stood when they were last closed, by their names: seen from the corner of the window
/// that they lay over, so that they move along with it.
struct FormPlace {
  QPoint offset;
  QSize size;
};
using FormPlaces = std::map<QString, FormPlace>;

class FormDialog : public QDialog {
 public:
  /// What Enter does in a control: in some it belongs to the text, and Ctrl+Enter to the button.
  enum class EnterKey : std::uint8_t { PressesDefault, ShiftBreaksLine, BreaksLine };

  /// A form of the same name stands where the last one that was given the same places did.
  FormDialog(const QString& sName, std::shared_ptr<FormPlaces> places);
  /// No handler is called any more while the window dies.
  ~FormDialog() override;

  /// What holds the controls; it scrolls where the screen is too small for them.
  QWidget& Body() const;
  /// Puts the row of buttons under the body; it is always in sight.
  void Foot(QLayout* row);

  /// The button that Enter presses while it is enabled and no other button has the focus.
  void DefaultButton(QPushButton& button);
  /// The button that Escape presses while it is enabled.
  void CancelButton(QPushButton& button);
  /// Gives the control's Enter and Escape to the form, whatever its class makes of them.
  void Watch(QWidget& control, EnterKey enter = EnterKey::PressesDefault);

  /// Where the focus is each time the form opens; the text of a single-line box is selected.
  void InitialFocus(QWidget& control) { m_initialFocus = &control; }
  /// Gives the focus now, or, while the form is not shown, when it opens next.
  void TakeFocus(QWidget& control);

  /// Where the focus goes when the button has it and is disabled. Elsewhere it goes to whatever
  /// comes next, where the next press of the same key may do what nobody meant.
  void Refuge(QPushButton& button, QWidget& control) { m_refuges[&button] = &control; }
  void BeforeDisabling(QPushButton& button);

  /// Makes the controls as wide as the widest of them wants to be, whatever their captions become.
  void SameWidth(std::vector<QWidget*> controls) { m_sameWidths.push_back(std::move(controls)); }

  /// Shows the form, where it stood last or centred over the owner, if there is one, but always
  /// whole and on the screen, until Hide is called or the user closes the window. A failure of a
  /// handler ends the display and is thrown from here.
  void ShowModal(QWidget* owner);
  void Hide();

  /// Calls the handler of something that the user did. Nothing is thrown into the event loop.
  void Run(const std::function<void()>& handler);
  /// Called when the colours of the desktop have changed.
  [[nodiscard]] platform::Subscription OnPaletteChange(std::function<void()> handler);

  void done(int iResult) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  /// True when the key was the form's.
  bool TakeKey(QObject* focus, const QKeyEvent& event, EnterKey enter);
  /// Makes the button look as the one that Enter presses; null stands for the default button.
  void ShowEnterButton(QPushButton* button);
  void EvenWidths();
  /// The least size, within what the window may take of the screen.
  void FitInto(const QSize& most);
  void PlaceOver(QWidget* owner);

  const std::shared_ptr<FormPlaces> m_places;
  FormArea* const m_area;
  QPoint m_origin;
  QPushButton* m_defaultButton = nullptr;
  QPushButton* m_cancelButton = nullptr;
  QWidget* m_initialFocus = nullptr;
  QWidget* m_nextFocus = nullptr;
  std::map<QPushButton*, QWidget*> m_refuges;
  std::vector<std::vector<QWidget*>> m_sameWidths;
  bool m_bDying = false;
  std::exception_ptr m_failure;
  platform::Signal<> m_paletteChange;
};

}  // namespace orvane::console
