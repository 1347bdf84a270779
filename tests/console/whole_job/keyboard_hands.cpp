#include <QAbstractItemView>
#include <QComboBox>
#include <QMenuBar>
#include <QTabBar>
#include <QToolButton>

#include "tests/console/whole_job/hands.h"
#include "tests/console/window/panes.h"

namespace orvane::console {

namespace {

constexpr int kMostSteps = 40;

bool HasFocus(const QWidget* widget) {
  const auto* focus = QApplication::focusWidget();
  return focus &&
         (focus == widget || focus->focusProxy() == widget || widget->focusProxy() == focus);
}

}  // namespace

void KeyboardHands::GoTo(QWidget* widget) {
  for (int i = 0; i < kMostSteps; ++i) {
    QWidget* before = m_stage.Ask([] { return QApplication::focusWidget(); });
    if (m_stage.Ask([&] { return HasFocus(widget); })) return;
    m_stage.WaitFor(
        "Tab leaves " + m_stage.Ask([&] {
          return before
                     ? before->objectName().toStdString() + " " + before->metaObject()->className()
                     : Text("nothing");
        }),
        [&] { return QApplication::focusWidget() != before; }, [&] { m_stage.Input().Key("Tab"); });
  }
  throw Stopped("Tab does not lead to " +
                m_stage.Ask([&] { return widget->objectName().toStdString(); }) + ".");
}

void KeyboardHands::Select(const Text& sKey) {
  m_stage.WaitUntilIdle();
  auto* pane = &ScopeOf(m_stage.Window());
  GoTo(pane);
  const auto current = [pane] { return pane->currentIndex(); };
  for (int i = 0; i < kMostSteps; ++i) {
    const bool bBelow = m_stage.Ask([&] {
      return pane->visualRect(current()).top() < pane->visualRect(m_stage.Index(sKey)).top();
    });
    if (m_stage.Ask([&] { return current() == m_stage.Index(sKey); })) break;
    const QPersistentModelIndex next = m_stage.Ask([&] {
      return QPersistentModelIndex(bBelow ? pane->indexBelow(current())
                                          : pane->indexAbove(current()));
    });
    m_stage.WaitFor(
        "the next item is selected",
        [&] {
          const auto selected = m_stage.Window().Session().Selected();
          return current() == next && selected &&
                 m_stage.Window().Session().Tree().IndexOf(*selected) == next && m_stage.IsIdle();
        },
        [&] { m_stage.Input().Key(bBelow ? "Down" : "Up"); });
  }
  m_stage.WaitFor("the item is selected", [&] {
    return m_stage.Window().Session().Selected() == m_stage.Item(sKey) && m_stage.IsIdle();
  });
}

void KeyboardHands::Expand(const Text& sKey) {
  Select(sKey);
  m_stage.Input().Key("Right");
}

void KeyboardHands::PickFrom(QWidget* popup, const char* sAction) {
  auto* menu = qobject_cast<QMenu*>(popup);
  for (int i = 0; i < kMostSteps; ++i) {
    const auto* active = m_stage.Ask([&] { return menu->activeAction(); });
    if (active && m_stage.Ask([&] { return IsEntry(*active, sAction); })) {
      m_stage.WaitFor(
          "the menu has gone", [] { return !QApplication::activePopupWidget(); },
          [&] { m_stage.Input().Key("Return"); });
      return;
    }
    m_stage.WaitFor(
        "the menu's next item is marked", [&] { return menu->activeAction() != active; },
        [&] { m_stage.Input().Key("Down"); });
  }
  throw Stopped(Text("The menu lacks ") + sAction + ".");
}

void KeyboardHands::Command(const Text& sKey, const char* sMenuItem) {
  Select(sKey);
  if (++m_iMenus % 2 == 0) {
    m_stage.Input().Key("Menu");
  } else {
    m_stage.Input().Key("F10", "Shift_L");
  }
  PickFrom(WaitForPopup(), sMenuItem);
}

void KeyboardHands::MenuBar(const char* sMenu, const char* sAction) {
  m_stage.WaitUntilIdle();
  const auto sTitle = m_stage.Ask([&] {
    auto* menu = m_stage.Window().menuBar()->findChild<QMenu*>(sMenu);
    return menu ? menu->title().toLower() : QString();
  });
  const auto nAt = sTitle.indexOf('&');
  if (nAt < 0) throw Stopped(Text("The menu has no access key: ") + sMenu);
  m_stage.Input().Key(sTitle.mid(nAt + 1, 1).toStdString(), "Alt_L");
  PickFrom(WaitForPopup(), sAction);
}

void KeyboardHands::Refresh() {
  m_stage.WaitUntilIdle();
  m_stage.Input().Key("F5");
}

void KeyboardHands::Save() {
  m_stage.WaitUntilIdle();
  m_stage.Input().Key("s", "Control_L");
}

void KeyboardHands::PressToolbar(const char* sKey) {
  m_stage.WaitUntilIdle();
  auto* button = m_stage.Ask([&] { return ToolbarButtonOf(sKey); });
  GoTo(button);
  Clicked(button, [&] { m_stage.Input().Key("space"); });
}

void KeyboardHands::GoToCell(QAbstractItemView* rows, int iRow, int iColumn) {
  GoTo(rows);
  for (int i = 0; i < kMostSteps; ++i) {
    const QPersistentModelIndex at =
        m_stage.Ask([&] { return QPersistentModelIndex(rows->currentIndex()); });
    if (at.row() == iRow && at.column() == iColumn) return;
    const char* sKey = at.row() < iRow         ? "Down"
                       : at.row() > iRow       ? "Up"
                       : at.column() > iColumn ? "Left"
                                               : "Right";
    m_stage.WaitFor(
        "the next cell is current", [&] { return rows->currentIndex() != at && m_stage.IsIdle(); },
        [&] { m_stage.Input().Key(sKey); });
  }
  throw Stopped("The arrow keys do not lead to the cell.");
}

void KeyboardHands::MarkRow(QAbstractItemView* rows, int iRow) {
  GoToCell(rows, iRow, m_stage.Ask([&] { return rows->currentIndex().column(); }));
  m_stage.WaitFor(
      "the row is selected", [=] { return rows->selectionModel()->isRowSelected(iRow, {}); },
      [&] { m_stage.Input().Key("space", "Shift_L"); });
}

void KeyboardHands::MenuOfCell(QAbstractItemView* rows, const char* sEntry) {
  GoTo(rows);
  m_stage.Input().Key("Menu");
  PickFrom(WaitForPopup(), sEntry);
}

void KeyboardHands::PointInto(QWidget* plot) {
  GoTo(plot);
  m_stage.Input().Key("End");
}

void KeyboardHands::Tab(const char* sTab) {
  m_stage.WaitUntilIdle();
  auto* tabs = m_stage.Ask([&] { return m_stage.Window().findChild<QTabBar*>("viewTabs"); });
  GoTo(tabs);
  for (int i = 0; i < kMostSteps; ++i) {
    const int iShown = m_stage.Ask([&] { return tabs->currentIndex(); });
    const int iWanted = m_stage.Ask([&] {
      int iTab = 0;
      while (iTab < tabs->count() && tabs->tabText(iTab) != sTab) ++iTab;
      return iTab;
    });
    if (iShown == iWanted) break;
    m_stage.WaitFor(
        "the next tab is shown", [&] { return tabs->currentIndex() != iShown && m_stage.IsIdle(); },
        [&] { m_stage.Input().Key(iShown < iWanted ? "Right" : "Left"); });
  }
  m_stage.WaitUntilIdle();
}

void KeyboardHands::Press(QAbstractButton* button) {
  const auto sText = m_stage.Ask([&] { return button->text().toLower(); });
  const auto nAt = sText.indexOf('&');
  if (nAt >= 0) {
    Clicked(button, [&] { m_stage.Input().Key(sText.mid(nAt + 1, 1).toStdString(), "Alt_L"); });
    return;
  }
  GoTo(button);
  Clicked(button, [&] { m_stage.Input().Key("space"); });
}

void KeyboardHands::Enter(QWidget* box, const Text& sText) {
  GoTo(box);
  m_stage.Input().Key("a", "Control_L");
  Type(sText);
  m_stage.WaitFor("the box holds " + sText, [&] { return TextOf(box) == sText; });
}

void KeyboardHands::Choose(QWidget* dropDown, const Text& sText) {
  auto* combo = qobject_cast<QComboBox*>(dropDown);
  GoTo(combo);
  // Asking for the list of entries would make it, in the wrong thread.
  const int iWanted = combo->findText(QString::fromStdString(sText));
  for (int i = 0; i < kMostSteps; ++i) {
    const int iShown = m_stage.Ask([&] { return combo->currentIndex(); });
    if (iShown == iWanted) return;
    m_stage.WaitFor(
        "the next entry is chosen", [&] { return combo->currentIndex() != iShown; },
        [&] { m_stage.Input().Key(iShown < iWanted ? "Down" : "Up"); });
  }
  throw Stopped("The arrow keys do not lead to " + sText + ".");
}

void KeyboardHands::MoveColumn(QAbstractItemView* list, const Text& sColumn,
                               QAbstractButton* move) {
  GoTo(list);
  const int iRows = m_stage.Ask([&] { return list->model()->rowCount(); });
  const int iWanted = RowOf(list, sColumn);
  m_stage.Input().Key("Home");
  m_stage.WaitFor("the list is at its first column",
                  [&] { return list->currentIndex().row() == 0; });
  for (int i = 0; i < iWanted; ++i) {
    m_stage.WaitFor(
        "the list is at its next column", [&] { return list->currentIndex().row() == i + 1; },
        [&] { m_stage.Input().Key("Down"); });
  }
  const auto isMarked = [&] { return list->selectionModel()->isSelected(list->currentIndex()); };
  // A list that just got the focus has a current column, but none that is marked.
  if (!m_stage.Ask(isMarked)) m_stage.Input().Key("space");
  m_stage.WaitFor("the column is marked", isMarked);
  Press(move);
  m_stage.WaitFor(sColumn + " is in the other list",
                  [&] { return list->model()->rowCount() == iRows - 1; });
}

}  // namespace orvane::console
