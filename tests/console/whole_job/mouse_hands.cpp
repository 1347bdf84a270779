#include <QAbstractItemView>
#include <QComboBox>
#include <QMenuBar>
#include <QTabBar>
#include <QTimer>
#include <QToolButton>
#include <chrono>

#include "tests/console/whole_job/hands.h"
#include "tests/console/window/panes.h"

namespace orvane::console {

namespace {

/// The desktop's speed of double clicks is set to that of this user.
constexpr std::chrono::milliseconds kDoubleClick(120);
/// In pixels: clicks that are this far apart are two clicks, however soon one follows the other.
constexpr int kApart = 20;

/// Counts the clicks that came to the program's windows. The window manager looks at each before
/// it lets them through, while keys come at once.
class ClickCount final : public QObject {
 public:
  explicit ClickCount(int& iClicks) : m_iClicks(iClicks) { qApp->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonRelease && watched->isWindowType()) ++m_iClicks;
    return false;
  }

 private:
  int& m_iClicks;
};

}  // namespace

MouseHands::MouseHands(Stage& stage)
    : Hands(stage), m_count(std::make_unique<ClickCount>(m_iClicks)) {
  QApplication::setDoubleClickInterval(static_cast<int>(kDoubleClick.count()));
}

void MouseHands::Click(const Place& place, Button button, int iTimes) {
  const auto at = m_stage.Ask(place);
  if ((at - m_last).manhattanLength() < kApart) {
    // Another click soon after the last might be taken for a double click.
    bool bOver = false;
    m_stage.Ask(
        [&] { QTimer::singleShot(kDoubleClick + kDoubleClick / 4, [&] { bOver = true; }); });
    m_stage.WaitFor("a click is a new one", [&] { return bOver; });
  }
  m_last = at;
  auto& input = m_stage.Input();
  input.MoveTo(at.x(), at.y());
  const int iWanted = m_stage.Ask([&] { return m_iClicks; }) + iTimes;
  m_stage.WaitFor(
      "the click has come", [&] { return m_iClicks >= iWanted; },
      [&] { input.Click(button, iTimes); });
}

MouseHands::Place MouseHands::MiddleOf(QWidget* widget) {
  return [=] {
    if (!widget->isVisible()) throw Stopped("What is to be clicked is not in sight.");
    return widget->mapToGlobal(widget->rect().center());
  };
}

MouseHands::Place MouseHands::MiddleOfItem(const Text& sKey) {
  return [this, sKey] {
    auto& pane = ScopeOf(m_stage.Window());
    const auto rect = pane.visualRect(m_stage.Index(sKey));
    if (!pane.viewport()->rect().contains(rect.center())) {
      throw Stopped("The item " + sKey + " is not in sight.");
    }
    return pane.viewport()->mapToGlobal(rect.center());
  };
}

MouseHands::Place MouseHands::MiddleOfRow(QAbstractItemView* list, int iRow) {
  return [=] {
    const auto rect = list->visualRect(list->model()->index(iRow, 0));
    return list->viewport()->mapToGlobal(QPoint(rect.left() + 20, rect.center().y()));
  };
}

void MouseHands::Select(const Text& sKey) {
  m_stage.WaitUntilIdle();
  Click(MiddleOfItem(sKey));
  m_stage.WaitFor("the item is selected", [&] {
    return m_stage.Window().Session().Selected() == m_stage.Item(sKey) && m_stage.IsIdle();
  });
}

void MouseHands::Expand(const Text& sKey) {
  m_stage.WaitUntilIdle();
  const bool bMark = m_stage.Ask([&] { return m_stage.Item(sKey)->HasExpandMark(); });
  if (!bMark) {
    Click(MiddleOfItem(sKey), Button::Left, 2);
    return;
  }
  Click([&] {
    auto& pane = ScopeOf(m_stage.Window());
    const auto rect = pane.visualRect(m_stage.Index(sKey));
    return pane.viewport()->mapToGlobal(
        QPoint(rect.left() - pane.indentation() / 2, rect.center().y()));
  });
}

void MouseHands::PickFrom(QWidget* menu, const char* sAction) {
  Click([&] {
    auto* action = menu->findChild<QAction*>(sAction);
    if (!action) {
      for (auto* one : menu->actions()) {
        if (IsEntry(*one, sAction)) action = one;
      }
    }
    if (!action || !action->isEnabled()) throw Stopped(Text("The menu lacks ") + sAction + ".");
    return menu->mapToGlobal(static_cast<QMenu*>(menu)->actionGeometry(action).center());
  });
  m_stage.WaitFor("the menu has gone", [] { return !QApplication::activePopupWidget(); });
}

void MouseHands::Command(const Text& sKey, const char* sMenuItem) {
  m_stage.WaitUntilIdle();
  Click(MiddleOfItem(sKey), Button::Right);
  PickFrom(WaitForPopup(), sMenuItem);
}

void MouseHands::MenuBar(const char* sMenu, const char* sAction) {
  m_stage.WaitUntilIdle();
  auto* bar = m_stage.Window().menuBar();
  Click([&] {
    for (auto* action : bar->actions()) {
      if (action->menu() && action->menu()->objectName() == sMenu) {
        return bar->mapToGlobal(bar->actionGeometry(action).center());
      }
    }
    throw Stopped(Text("There is no menu ") + sMenu + ".");
  });
  PickFrom(WaitForPopup(), sAction);
}

void MouseHands::Refresh() {
  MenuBar("mnuView", "actRefresh");
}

void MouseHands::Save() {
  MenuBar("mnuFile", "actSave");
}

void MouseHands::PressToolbar(const char* sKey) {
  m_stage.WaitUntilIdle();
  Press(m_stage.Ask([&] { return ToolbarButtonOf(sKey); }));
}

void MouseHands::GoToCell(QAbstractItemView* rows, int iRow, int iColumn) {
  Click([=] {
    const auto rect = rows->visualRect(rows->model()->index(iRow, iColumn));
    if (!rows->viewport()->rect().contains(rect.center())) {
      throw Stopped("The cell is not in sight.");
    }
    return rows->viewport()->mapToGlobal(rect.center());
  });
  m_stage.WaitFor("the cell is current",
                  [=] { return rows->currentIndex() == rows->model()->index(iRow, iColumn); });
}

void MouseHands::MarkRow(QAbstractItemView* rows, int iRow) {
  constexpr int kIntoNumbers = 8;
  Click([=] {
    const auto rect = rows->visualRect(rows->model()->index(iRow, 0));
    return rows->viewport()->mapToGlobal(QPoint(-kIntoNumbers, rect.center().y()));
  });
  m_stage.WaitFor("the row is selected",
                  [=] { return rows->selectionModel()->isRowSelected(iRow, {}); });
}

void MouseHands::MenuOfCell(QAbstractItemView* rows, const char* sEntry) {
  Click(
      [=] {
        const auto rect = rows->visualRect(rows->currentIndex());
        return rows->viewport()->mapToGlobal(rect.center());
      },
      Button::Right);
  PickFrom(WaitForPopup(), sEntry);
}

void MouseHands::PointInto(QWidget* plot) {
  Click(MiddleOf(plot));
}

void MouseHands::Tab(const char* sTab) {
  m_stage.WaitUntilIdle();
  auto* tabs = m_stage.Ask([&] { return m_stage.Window().findChild<QTabBar*>("viewTabs"); });
  Click([&] {
    int iTab = 0;
    while (iTab < tabs->count() && tabs->tabText(iTab) != sTab) ++iTab;
    return tabs->mapToGlobal(tabs->tabRect(iTab).center());
  });
  m_stage.WaitFor("the tab is shown",
                  [&] { return tabs->tabText(tabs->currentIndex()) == sTab && m_stage.IsIdle(); });
}

void MouseHands::Press(QAbstractButton* button) {
  // A check box is pressed where its mark and text are.
  Clicked(button, [&] {
    Click([&] {
      if (!button->isVisible()) throw Stopped("The button is not in sight.");
      const int iX = std::min(button->width() / 2, 30);
      return button->mapToGlobal(QPoint(iX, button->height() / 2));
    });
  });
}

void MouseHands::Enter(QWidget* box, const Text& sText) {
  Click(MiddleOf(box));
  m_stage.WaitFor("the box takes keys", [&] {
    return box->isAncestorOf(QApplication::focusWidget()) || box->hasFocus();
  });
  m_stage.Input().Key("a", "Control_L");
  Type(sText);
  m_stage.WaitFor("the box holds " + sText, [&] { return TextOf(box) == sText; });
}

void MouseHands::Choose(QWidget* dropDown, const Text& sText) {
  auto* combo = qobject_cast<QComboBox*>(dropDown);
  Click(MiddleOf(combo));
  WaitForPopup();
  const int iRow = RowOf(combo->view(), sText);
  Click(MiddleOfRow(combo->view(), iRow));
  m_stage.WaitFor(sText + " is chosen",
                  [&] { return TextOf(combo) == sText && !QApplication::activePopupWidget(); });
}

void MouseHands::MoveColumn(QAbstractItemView* list, const Text& sColumn,
                            QAbstractButton* /*move*/) {
  // A double click does what marking and pressing the button would.
  const int iRow = RowOf(list, sColumn);
  const int iRows = m_stage.Ask([&] { return list->model()->rowCount(); });
  Click(MiddleOfRow(list, iRow), Button::Left, 2);
  m_stage.WaitFor(sColumn + " is in the other list",
                  [&] { return list->model()->rowCount() == iRows - 1; });
}

}  // namespace orvane::console
