// What somebody at the keyboard sees of a window: where the focus is, and all of its texts. For the
// tests of looks; user-interface thread.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QTest>
#include <QToolButton>
#include <QWidget>
#include <vector>

#include "console/look/contrast.h"
#include "tests/fakes/until.h"

namespace orvane::console {

/// Shows the window in front of those that are there, with the keys in it.
inline bool BringForward(QWidget& window) {
  window.show();
  window.activateWindow();
  return tests::Until([&] { return QApplication::activeWindow() == &window; });
}

inline QImage SeenOf(QWidget& widget) {
  QApplication::processEvents();
  return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// How many dots can be told from what they were.
inline int ChangedDots(const QImage& before, const QImage& after) {
  int nChanged = 0;
  for (int y = 0; y < before.height(); ++y) {
    for (int x = 0; x < before.width(); ++x) {
      if (Contrast(before.pixelColor(x, y), after.pixelColor(x, y)) >= kLeastContrast) ++nChanged;
    }
  }
  return nChanged;
}

/// The controls of the active window that can have the focus, in the order of Shift+Tab: Tab itself
/// is a letter to boxes of several lines.
inline std::vector<QWidget*> ControlsByTab() {
  constexpr std::size_t kMost = 60;
  std::vector<QWidget*> controls;
  QWidget* const first = QApplication::focusWidget();
  if (!first) return controls;
  QWidget* focus = first;
  do {
    controls.push_back(focus);
    QTest::keyClick(focus, Qt::Key_Backtab, Qt::ShiftModifier);
    focus = QApplication::focusWidget();
  } while (focus && focus != first && controls.size() < kMost);
  EXPECT_LT(controls.size(), kMost) << "Tab does not come back to where it began";
  return controls;
}

/// Expects that the focus can be seen on every control of the active window, however it came there.
inline void ExpectFocusSeen(QWidget& window, std::size_t nLeast) {
  const auto controls = ControlsByTab();
  std::string sNames;
  for (const QWidget* control : controls) {
    sNames += std::string(control->metaObject()->className()) + " " +
              control->objectName().toStdString() + "\n";
  }
  ASSERT_GE(controls.size(), nLeast) << sNames;
  for (QWidget* const control : controls) {
    QWidget* const other = control == controls[0] ? controls[1] : controls[0];
    for (QWidget* above = control->parentWidget(); above; above = above->parentWidget()) {
      if (auto* area = qobject_cast<QScrollArea*>(above)) area->ensureWidgetVisible(control);
    }
    other->setFocus(Qt::OtherFocusReason);
    const QImage without = SeenOf(window);
    control->setFocus(Qt::MouseFocusReason);
    const QImage with = SeenOf(window);
    const QRect place(control->mapTo(&window, QPoint()), control->size());
    // What lies behind the button for more is not in this picture.
    if (!window.rect().contains(place)) continue;
    // At least a line under the whole of it, or around its text.
    EXPECT_GE(ChangedDots(without.copy(place), with.copy(place)), control->width())
        << window.objectName().toStdString() << ": " << control->metaObject()->className() << " "
        << control->objectName().toStdString();
  }
}

inline bool InScrollArea(const QWidget& widget) {
  const QWidget* above = widget.parentWidget();
  while (above && !qobject_cast<const QScrollArea*>(above)) above = above->parentWidget();
  return above != nullptr;
}

/// Expects that the window is on the screen with its frame, and that no text of it is cut.
inline void ExpectFits(const QWidget& window) {
  const QRect room = window.screen()->availableGeometry();
  const QRect frame = window.frameGeometry();
  EXPECT_TRUE(room.contains(frame))
      << window.objectName().toStdString() << " " << frame.width() << "x" << frame.height();
  for (const QWidget* const widget : window.findChildren<QWidget*>()) {
    const auto* const label = qobject_cast<const QLabel*>(widget);
    const auto* const button = qobject_cast<const QAbstractButton*>(widget);
    const QString sText = label ? label->text() : button ? button->text() : QString();
    // What is scrolled out of sight can be scrolled into it.
    if (!widget->isVisible() || sText.isEmpty() || InScrollArea(*widget)) continue;
    const bool bWraps = label && label->wordWrap();
    const int iHeight =
        bWraps ? label->heightForWidth(label->width()) : widget->fontMetrics().height();
    EXPECT_GE(widget->height(), iHeight) << sText.toStdString();
    if (!bWraps) EXPECT_GE(widget->width(), widget->sizeHint().width()) << sText.toStdString();
    const QRect place(widget->mapTo(&window, QPoint()), widget->size());
    EXPECT_TRUE(window.rect().contains(place)) << sText.toStdString();
  }
}

}  // namespace orvane::console
