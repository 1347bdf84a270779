#include "console/forms/form_dialog.h"

#include <QKeyEvent>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QVariant>
#include <QWindow>
#include <utility>

#include "console/look/pointer_rest.h"

namespace orvane::console {
namespace {

constexpr char kEnterKey[] = "orvaneEnterKey";

void Press(QPushButton* button) {
  if (button && button->isEnabled()) button->click();
}

}  // namespace

FormDialog::FormDialog() {
  // The form is an episode of the console: the program does not end with it.
  setAttribute(Qt::WA_QuitOnClose, false);
}

FormDialog::~FormDialog() {
  m_bDying = true;
  // While this is still a FormDialog: controls hear of what their widgets do in dying.
  qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
}

void FormDialog::DefaultButton(QPushButton& button) {
  m_defaultButton = &button;
  button.setDefault(true);
}

void FormDialog::CancelButton(QPushButton& button) {
  m_cancelButton = &button;
}

void FormDialog::Watch(QWidget& control, EnterKey enter) {
  control.setProperty(kEnterKey, static_cast<int>(enter));
  control.installEventFilter(this);
}

void FormDialog::TakeFocus(QWidget& control) {
  if (isVisible()) {
    control.setFocus(Qt::OtherFocusReason);
  } else {
    m_nextFocus = &control;
  }
}

void FormDialog::ShowModal(QWidget* owner) {
  if (isVisible()) return;
  const PointerRest rest;
  PlaceOver(owner);
  if (QWidget* const first = m_nextFocus ? m_nextFocus : m_initialFocus) {
    first->setFocus(Qt::OtherFocusReason);
    if (auto* const txt = qobject_cast<QLineEdit*>(first)) txt->selectAll();
  }
  m_nextFocus = nullptr;
  exec();
  if (m_failure) std::rethrow_exception(std::exchange(m_failure, nullptr));
}

void FormDialog::Hide() {
  if (isVisible()) done(QDialog::Rejected);
}

void FormDialog::EvenWidths() {
  for (const std::vector<QWidget*>& controls : m_sameWidths) {
    int iWidest = 0;
    for (const QWidget* const control : controls) {
      iWidest = qMax(iWidest, control->sizeHint().width());
    }
    for (QWidget* const control : controls) control->setMinimumWidth(iWidest);
  }
}

void FormDialog::PlaceOver(QWidget* owner) {
  QWidget* const window = owner ? owner->window() : nullptr;
  winId();
  // A transient parent, not a parent: the form belongs to whoever loaded it.
  windowHandle()->setTransientParent(window ? window->windowHandle() : nullptr);

  ensurePolished();
  EvenWidths();
  layout()->activate();
  const QScreen* const onScreen = window ? window->screen() : screen();
  const QRect available = onScreen->availableGeometry();
  // Later displays keep the size that the user gave the form.
  const QSize wanted = m_bSized ? size() : sizeHint();
  m_bSized = true;
  resize(wanted.boundedTo(available.size()).expandedTo(minimumSize()));
  QRect place(QPoint(), size());
  place.moveCenter(window && window->isVisible() ? window->frameGeometry().center()
                                                 : available.center());
  move(qMax(available.left(), qMin(place.left(), available.right() - place.width())),
       qMax(available.top(), qMin(place.top(), available.bottom() - place.height())));
}

void FormDialog::Run(const std::function<void()>& handler) {
  if (m_bDying) return;
  try {
    handler();
  } catch (...) {
    if (!m_failure) m_failure = std::current_exception();
    Hide();
  }
}

platform::Subscription FormDialog::OnPaletteChange(std::function<void()> handler) {
  return m_paletteChange.Connect(std::move(handler));
}

bool FormDialog::TakeKey(const QKeyEvent& event, EnterKey enter) {
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  if (event.key() == Qt::Key_Escape) {
    if (modifiers == Qt::NoModifier) Press(m_cancelButton);
    return true;
  }
  if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter) return false;
  if (enter == EnterKey::BreaksLine && !(modifiers & Qt::ControlModifier)) return false;
  if (enter == EnterKey::ShiftBreaksLine && modifiers == Qt::ShiftModifier) return false;
  // A key still held down from the menu that opened the form was not meant for it.
  const bool bPlain = modifiers == Qt::NoModifier || modifiers == Qt::ControlModifier;
  if (bPlain && !event.isAutoRepeat()) Press(m_defaultButton);
  return true;
}

bool FormDialog::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto enter = static_cast<EnterKey>(watched->property(kEnterKey).toInt());
    if (TakeKey(*static_cast<QKeyEvent*>(event), enter)) return true;
  }
  return QDialog::eventFilter(watched, event);
}

void FormDialog::keyPressEvent(QKeyEvent* event) {
  if (!TakeKey(*event, EnterKey::PressesDefault)) QDialog::keyPressEvent(event);
}

void FormDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::FontChange && isVisible()) EvenWidths();
  if (event->type() == QEvent::PaletteChange) m_paletteChange.Raise();
}

}  // namespace orvane::console
