// How the driver of the scenarios gives commands: menus and the toolbar.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTest>
#include <QWindow>
#include <map>

#include "console/window/toolbar_view.h"
#include "tests/console/scenarios/host_driver.h"
#include "tests/console/scenarios/shown_qt_form.h"
#include "tests/console/window/panes.h"

namespace orvane::console {

using platform::Text;

namespace {

/// The drawings of the toolbar's buttons, by their keys.
const std::map<Text, const char*> kButtonDrawings{{"MoveFirst", "move-first"},
                                                  {"MoveLast", "move-last"},
                                                  {"SortAsc", "sort-ascending"},
                                                  {"SortDesc", "sort-descending"},
                                                  {"CellQuery", "cell-query"},
                                                  {"Delete", "delete"},
                                                  {"Sql", "sql"}};

QImage Picture(const QIcon& icon) {
  return icon.pixmap(20, 20).toImage();
}

}  // namespace

QMenu* HostDriver::OpenMenu(const Text& sKey, scenarios::MenuWay way) {
  if (!HasItem(sKey)) {
    ADD_FAILURE() << "no item " << sKey;
    return nullptr;
  }
  Activate();
  auto& pane = ScopeOf(*m_window);
  QMenu* menu = nullptr;
  const auto shown = m_window->Session().Selected();
  if (way == scenarios::MenuWay::RightClick) {
    const auto at = RectOf(Item(sKey)).center();
    ClickAt(*pane.viewport(), at, Qt::RightButton);
  } else {
    Select(sKey);
    EXPECT_EQ(QApplication::focusWidget(), &pane);
  }
  if (way == scenarios::MenuWay::Keyboard) {
    QTest::keyClick(m_window->windowHandle(), Qt::Key_F10, Qt::ShiftModifier);
  }
  if (way == scenarios::MenuWay::MenuBar) {
    menu = m_window->findChild<QMenu*>("mnuAction");
    auto* bar = m_window->menuBar();
    ClickAt(*bar, bar->actionGeometry(menu->menuAction()).center());
    WaitFor([&] { return menu->isVisible(); });
    return menu;
  }
  WaitFor([&] {
    menu = m_window->findChild<QMenu*>("contextMenu");
    return menu && menu->isVisible();
  });
  if (way == scenarios::MenuWay::RightClick) {
    EXPECT_EQ(m_window->Session().Selected(), shown) << "the menu showed something else";
  } else {
    EXPECT_EQ(Selected(), sKey);
  }
  return menu;
}

QList<QAction*> HostDriver::EntriesOf(const QMenu& menu) {
  const auto actions = menu.actions();
  EXPECT_FALSE(actions.empty());
  bool bAfterSeparator = true;
  bool bOwn = false;
  QList<QAction*> entries;
  for (auto* action : actions) {
    if (action->isSeparator()) {
      // A heading may come first.
      EXPECT_TRUE(!bAfterSeparator || !action->text().isEmpty())
          << "a separator that separates nothing";
      bAfterSeparator = true;
      continue;
    }
    const bool bWasOwn = std::exchange(bOwn, action->objectName().startsWith("act"));
    if (bOwn != bWasOwn) {
      EXPECT_TRUE(bAfterSeparator) << action->text().toStdString() << " is not set apart";
    }
    bAfterSeparator = false;
    if (!bOwn) entries.append(action);
  }
  EXPECT_FALSE(bAfterSeparator) << "a separator that separates nothing";
  return entries;
}

std::vector<scenarios::MenuEntry> HostDriver::Menu(const Text& sKey, scenarios::MenuWay way) {
  std::vector<scenarios::MenuEntry> entries;
  const QPointer menu = OpenMenu(sKey, way);
  if (!menu) return entries;
  for (const auto* action : EntriesOf(*menu)) {
    entries.push_back({action->text().toStdString(), action->isEnabled()});
  }
  QTest::keyClick(menu->windowHandle(), Qt::Key_Escape);
  WaitFor([&] { return !menu || !menu->isVisible(); });
  // The menu bar keeps the keys until they are taken back.
  if (m_window->menuBar()->hasFocus()) QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
  return entries;
}

void HostDriver::Choose(const Text& sKey, const Text& sCaption, scenarios::MenuWay way) {
  const QPointer menu = OpenMenu(sKey, way);
  if (!menu) return;
  QAction* chosen = nullptr;
  for (auto* action : EntriesOf(*menu)) {
    if (action->text().toStdString() == sCaption) chosen = action;
  }
  if (!chosen || !chosen->isEnabled()) {
    ADD_FAILURE() << "nothing to choose as " << sCaption << " in the menu of " << sKey;
    QTest::keyClick(menu->windowHandle(), Qt::Key_Escape);
    return;
  }
  ClickAt(*menu, menu->actionGeometry(chosen).center());
  // The command comes from the event loop, and its dialogs have loops of their own.
  QCoreApplication::processEvents();
  WaitFor([&] { return !menu || !menu->isVisible(); });
}

std::vector<scenarios::ButtonSeen> HostDriver::Toolbar() const {
  std::vector<scenarios::ButtonSeen> seen;
  const auto& bar = *m_window->findChild<QToolBar*>("snapInToolbar");
  const auto attached = m_window->Session().ControlBar().Attached();
  EXPECT_EQ(bar.isVisible(), attached != nullptr);
  EXPECT_EQ(bar.actions().isEmpty(), attached == nullptr);
  if (!attached) return seen;
  const auto shown = bar.actions();
  EXPECT_EQ(static_cast<std::size_t>(shown.size()), attached->All().size());
  for (const auto* action : shown) {
    const Text sKey = action->data().toString().toStdString();
    const auto& button = *attached->All().at(seen.size());
    EXPECT_EQ(button.Key(), sKey);
    seen.push_back({sKey, action->isSeparator() ? Text() : action->toolTip().toStdString(),
                    button.Image(), action->isEnabled(), action->isChecked()});
    if (action->isSeparator()) continue;
    const QImage drawing = Picture(ImageList::Named(kButtonDrawings.at(sKey)));
    EXPECT_FALSE(drawing.isNull()) << sKey;
    EXPECT_EQ(Picture(action->icon()), drawing) << sKey;
  }
  return seen;
}

void HostDriver::Press(const Text& sButton) {
  auto& bar = *m_window->findChild<QToolBar*>("snapInToolbar");
  auto* action = bar.findChild<QAction*>(QString::fromStdString(sButton));
  ASSERT_NE(action, nullptr) << sButton;
  auto* button = bar.widgetForAction(action);
  // A button that has just come finds its place in the event loop.
  QCoreApplication::processEvents();
  ClickAt(*button, button->rect().center());
  QCoreApplication::processEvents();
  WaitFor([] { return true; });
}

}  // namespace orvane::console
