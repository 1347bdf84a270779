#include "console/window/toolbar_view.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QStatusTipEvent>
#include <QToolButton>
#include <algorithm>

#include "console/look/image_list.h"
#include "console/session/console_session.h"
#include "widgets/tool_tip.h"

namespace orvane::console {

ToolbarView::ToolbarView(const ImageList& images, QWidget* parent)
    : QToolBar(parent), m_images(images) {
  setObjectName("snapInToolbar");
  setWindowTitle(tr("Toolbar"));
  setAccessibleName(tr("Toolbar"));
  setMovable(false);
  SizeImages();
  setContextMenuPolicy(Qt::PreventContextMenu);
  // What does not fit is behind this one.
  if (auto* more = findChild<QToolButton*>("qt_toolbar_ext_button")) {
    more->setAccessibleName(tr("More Buttons"));
  }
}

void ToolbarView::Images(ButtonImages images) {
  m_size = images;
  SizeImages();
}

void ToolbarView::SizeImages() {
  constexpr int kSmallest = 16;
  constexpr int kAroundText = 4;
  const int iSmall = std::max(kSmallest, fontMetrics().height() + kAroundText);
  const int iSize = m_size == ButtonImages::Large ? iSmall * 8 / 5 : iSmall;
  setIconSize({iSize, iSize});
}

void ToolbarView::changeEvent(QEvent* event) {
  QToolBar::changeEvent(event);
  if (event->type() == QEvent::FontChange) SizeImages();
}

void ToolbarView::Follow(ConsoleSession* session) {
  if (m_session) disconnect(m_session, nullptr, this, nullptr);
  m_session = session;
  if (session) connect(session, &ConsoleSession::ToolbarChanged, this, &ToolbarView::Sync);
  Sync();
}

void ToolbarView::Wanted(bool bWanted) {
  m_bWanted = bWanted;
  Sync();
}

bool ToolbarView::ShowsSameButtons() const {
  const auto& buttons = m_session->ControlBar().Attached()->All();
  const auto shown = actions();
  if (static_cast<std::size_t>(shown.size()) != buttons.size()) return false;
  for (std::size_t n = 0; n < buttons.size(); ++n) {
    const auto* action = shown[static_cast<qsizetype>(n)];
    if (action->isSeparator() != (buttons[n]->Style() == platform::ButtonStyle::Separator) ||
        action->data().toString().toStdString() != buttons[n]->Key()) {
      return false;
    }
  }
  return true;
}

// Taken out of the bar, an action would stay with it for ever.
void ToolbarView::RemoveButtons() {
  const auto removed = actions();
  clear();
  for (auto* action : removed) {
    action->setObjectName({});
    action->deleteLater();
  }
}

void ToolbarView::Rebuild() {
  RemoveButtons();
  for (const auto& button : m_session->ControlBar().Attached()->All()) {
    if (button->Style() == platform::ButtonStyle::Separator) {
      addSeparator()->setData(QString::fromStdString(button->Key()));
      continue;
    }
    auto* action =
        addAction(m_images.Button(button->Image()), QString::fromStdString(button->ToolTip()));
    action->setToolTip(widgets::ToolTipOf(QString::fromStdString(button->ToolTip())));
    action->setStatusTip(QString::fromStdString(button->ToolTip()));
    action->setData(QString::fromStdString(button->Key()));
    action->setObjectName(action->data().toString());
    action->setCheckable(button->Style() == platform::ButtonStyle::Check);
    // No menu has what these buttons do, so the keyboard must get at them. A click leaves the
    // focus where it is.
    widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
    // The click may rebuild the toolbar, so it comes from the event loop.
    connect(
        action, &QAction::triggered, this,
        [this, sKey = button->Key()] {
          if (!m_session) return;
          // The tip in the status bar covers what the click has come to.
          QStatusTipEvent over{QString()};
          QCoreApplication::sendEvent(this, &over);
          if (!m_session->IsBusy()) m_session->ClickButton(sKey);
          // The button shows what the snap-in made of the click, not what the click did to it,
          // also when the snap-in never heard of it.
          Sync();
        },
        Qt::QueuedConnection);
  }
}

void ToolbarView::Sync() {
  if (!m_session || !m_session->ControlBar().Attached()) {
    RemoveButtons();
    hide();
    return;
  }
  if (!ShowsSameButtons()) Rebuild();
  const auto& buttons = m_session->ControlBar().Attached()->All();
  for (std::size_t n = 0; n < buttons.size(); ++n) {
    auto* action = actions()[static_cast<qsizetype>(n)];
    if (action->isSeparator()) continue;
    action->setEnabled(buttons[n]->Enabled());
    if (action->isCheckable()) action->setChecked(buttons[n]->Pressed());
  }
  setVisible(m_bWanted);
}

}  // namespace orvane::console
