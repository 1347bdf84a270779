#include "console/forms/form_dialog.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <QVariant>
#include <QWindow>
#include <utility>

#include "console/forms/form_area.h"
#include "console/look/pointer_rest.h"
#include "widgets/window_place.h"

namespace orvane::console {
namespace {

constexpr char kEnterKey[] = "orvaneEnterKey";

void Press(QPushButton* button) {
  if (button && button->isEnabled()) button->click();
}

}  // namespace

FormDialog::FormDialog(const QString& sName, std::shared_ptr<FormPlaces> places)
    : m_places(std::move(places)), m_area(new FormArea(this)) {
  setObjectName(sName);
  // The form is an episode of the console: the program does not end with it.
  setAttribute(Qt::WA_QuitOnClose, false);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(m_area, 1);
}

QWidget& FormDialog::Body() const {
  return *m_area->widget();
}

void FormDialog::Foot(QLayout* row) {
  auto* const rows = static_cast<QVBoxLayout*>(layout());
  rows->addSpacing(fontMetrics().height() / 2);
  rows->addLayout(row);
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

void FormDialog::BeforeDisabling(QPushButton& button) {
  if (focusWidget() != &button) return;
  const auto refuge = m_refuges.find(&button);
  if (refuge != m_refuges.end()) refuge->second->setFocus(Qt::OtherFocusReason);
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
  const QMargins frame = widgets::FrameOver(window);
  const QSize most = available.size().shrunkBy(frame);
  FitInto(most);

  const bool bOver = window && window->isVisible();
  m_origin = bOver ? window->frameGeometry().topLeft() : available.topLeft();
  const auto last = m_places->find(objectName());
  const bool bStood = last != m_places->end();
  resize((bStood ? last->second.size : sizeHint()).boundedTo(most).expandedTo(minimumSize()));
  QRect place(QPoint(), size().grownBy(frame));
  if (bStood) {
    place.moveTopLeft(m_origin + last->second.offset);
  } else {
    place.moveCenter(bOver ? window->frameGeometry().center() : available.center());
  }
  move(widgets::MovedInto(available, place).topLeft());
}

void FormDialog::FitInto(const QSize& most) {
  m_area->Most({QWIDGETSIZE_MAX, QWIDGETSIZE_MAX});
  layout()->activate();
  // What stands around the area: the buttons under it and the margins.
  const QMargins margins = layout()->contentsMargins();
  const int iBeside = margins.left() + margins.right();
  const int iUnder = layout()->totalMinimumSize().height() - m_area->minimumSizeHint().height();
  m_area->Most(most - QSize(iBeside, iUnder));
  layout()->activate();
}

void FormDialog::done(int iResult) {
  if (isVisible()) (*m_places)[objectName()] = {pos() - m_origin, size()};
  QDialog::done(iResult);
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

bool FormDialog::TakeKey(QObject* focus, const QKeyEvent& event, EnterKey enter) {
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  if (event.key() == Qt::Key_Escape) {
    if (modifiers == Qt::NoModifier) Press(m_cancelButton);
    return true;
  }
  if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter) return false;
  if (enter == EnterKey::BreaksLine && !(modifiers & Qt::ControlModifier)) return false;
  if (enter == EnterKey::ShiftBreaksLine && modifiers == Qt::ShiftModifier) return false;
  // A key still held down from the menu that opened the form was not meant for it.
  if (event.isAutoRepeat()) return true;
  auto* const button = qobject_cast<QPushButton*>(focus);
  if (modifiers == Qt::NoModifier) Press(button ? button : m_defaultButton);
  if (modifiers == Qt::ControlModifier) Press(m_defaultButton);
  return true;
}

void FormDialog::ShowEnterButton(QPushButton* button) {
  for (auto* const other : findChildren<QPushButton*>()) {
    other->setDefault(other == (button ? button : m_defaultButton));
  }
}

bool FormDialog::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto enter = static_cast<EnterKey>(watched->property(kEnterKey).toInt());
    if (TakeKey(watched, *static_cast<QKeyEvent*>(event), enter)) return true;
  }
  if (auto* const button = qobject_cast<QPushButton*>(watched)) {
    if (event->type() == QEvent::FocusIn) ShowEnterButton(button);
    if (event->type() == QEvent::FocusOut) ShowEnterButton(nullptr);
  }
  return QDialog::eventFilter(watched, event);
}

void FormDialog::keyPressEvent(QKeyEvent* event) {
  if (!TakeKey(nullptr, *event, EnterKey::PressesDefault)) QDialog::keyPressEvent(event);
}

void FormDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::FontChange && isVisible()) EvenWidths();
  if (event->type() == QEvent::PaletteChange) m_paletteChange.Raise();
}

}  // namespace orvane::console
