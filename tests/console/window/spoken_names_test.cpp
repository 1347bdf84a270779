// How the window is read out.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabBar>
#include <QToolButton>
#include <set>

#include "console/window/notice_bar.h"
#include "console/window/toolbar_view.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

class SpokenNamesTest : public MainWindowTest {
 protected:
  /// What a screen reader is told of each control on the screen.
  std::set<QString> CheckNames() {
    std::set<QString> names;
    for (auto* widget : m_window->findChildren<QWidget*>()) {
      if (!widget->isVisible()) continue;
      const bool bControl =
          widget->focusPolicy() != Qt::NoFocus || qobject_cast<QAbstractButton*>(widget) ||
          qobject_cast<QAbstractItemView*>(widget) || qobject_cast<QTabBar*>(widget) ||
          qobject_cast<QToolBar*>(widget) || qobject_cast<QMenuBar*>(widget) ||
          qobject_cast<QStatusBar*>(widget) || qobject_cast<NoticeBar*>(widget) ||
          widget->parentWidget() == m_window->statusBar();
      // The control's own window is named by who made it; headers are read with their lists.
      if (!bControl || widget->objectName() == "fakeControl" || widget->inherits("QSizeGrip") ||
          widget->inherits("QHeaderView")) {
        continue;
      }
      auto* accessible = QAccessible::queryAccessibleInterface(widget);
      if (!accessible) {
        ADD_FAILURE() << widget->objectName().toStdString();
        continue;
      }
      const auto sName = accessible->text(QAccessible::Name);
      EXPECT_FALSE(sName.isEmpty())
          << widget->metaObject()->className() << " " << widget->objectName().toStdString();
      EXPECT_FALSE(sName.contains('&')) << sName.toStdString();
      names.insert(sName);
      if (!qobject_cast<QTabBar*>(widget)) continue;
      for (int i = 0; i < accessible->childCount(); ++i) {
        auto* child = accessible->child(i);
        if (child->state().invisible) continue;
        EXPECT_FALSE(child->text(QAccessible::Name).isEmpty()) << i;
        names.insert(child->text(QAccessible::Name));
      }
    }
    return names;
  }
};

TEST_F(SpokenNamesTest, controls_have_names_while_a_table_is_shown) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  const auto names = CheckNames();
  // The toolkit reads the tab shown in its place.
  EXPECT_EQ(ViewTabs().accessibleName(), "Views");
  for (const char* sName :
       {"Scope", "Toolbar", "Move to First Row", "Move to Last Row", "Show/Hide SQL Statement",
        "Refresh", "Data", "Structure", "Menus", "Status"}) {
    EXPECT_TRUE(names.contains(sName)) << sName;
  }
}

TEST_F(SpokenNamesTest, controls_have_names_while_a_list_is_shown) {
  ClickExpandMark("");
  m_window->findChild<NoticeBar*>()->Show("This document is read-only.");
  Settle();
  const auto names = CheckNames();
  for (const char* sName :
       {"Scope", "Contents", "Refresh", "Menus", "Status", "2 items", "Notice", "Dismiss"}) {
    EXPECT_TRUE(names.contains(sName)) << sName;
  }
  Action("actIcons")->trigger();
  Settle();
  EXPECT_TRUE(CheckNames().contains("Contents"));
}

TEST_F(SpokenNamesTest, button_for_what_does_not_fit_the_toolbar_has_a_name) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto& toolbar = Toolbar();
  toolbar.setFixedWidth(30);
  auto* more = toolbar.findChild<QToolButton*>("qt_toolbar_ext_button");
  ASSERT_TRUE(Waits([&] { return more->isVisible(); }));
  EXPECT_TRUE(CheckNames().contains("More Buttons"));
}

}  // namespace
}  // namespace orvane::console
