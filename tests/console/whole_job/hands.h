// How the program is used: by the mouse or by the keyboard alone. Each act is done with the
// devices of the screen and ends when its effect is there. For the story's thread.
#pragma once

#include "tests/console/whole_job/stage.h"

class QAbstractItemView;

namespace orvane::console {

class Hands {
 public:
  using Text = platform::Text;

  explicit Hands(Stage& stage) : m_stage(stage) {}
  virtual ~Hands() = default;

  /// Selects an item of the tree; the empty key is the root's.
  virtual void Select(const Text& sKey) = 0;
  /// Opens an item's branch; what that leads to, a dialog say, is the story's to wait for.
  virtual void Expand(const Text& sKey) = 0;
  /// Picks a command of the item's context menu by the name of its menu item.
  virtual void Command(const Text& sKey, const char* sMenuItem) = 0;
  /// Picks a command of the menu bar by the names of menu and action.
  virtual void MenuBar(const char* sMenu, const char* sAction) = 0;
  virtual void Refresh() = 0;
  virtual void Save() = 0;
  /// Presses a button of the toolbar; what that leads to is the story's to wait for.
  virtual void PressToolbar(const char* sKey) = 0;
  /// The same, and waits until it is done.
  void ToolbarButton(const char* sKey);
  virtual void Tab(const char* sTab) = 0;

  virtual void Press(QAbstractButton* button) = 0;
  /// What the box holds is replaced.
  virtual void Enter(QWidget* box, const Text& sText) = 0;
  virtual void Choose(QWidget* dropDown, const Text& sText) = 0;
  /// Moves one column between the builder's lists, marking it in the list first.
  virtual void MoveColumn(QAbstractItemView* list, const Text& sColumn, QAbstractButton* move) = 0;
  /// Makes a cell of a grid in sight the current one.
  virtual void GoToCell(QAbstractItemView* rows, int iRow, int iColumn) = 0;
  /// Selects one whole row of a grid.
  virtual void MarkRow(QAbstractItemView* rows, int iRow) = 0;
  /// Picks an entry of the menu of a grid's current cell by its words.
  virtual void MenuOfCell(QAbstractItemView* rows, const char* sEntry) = 0;
  /// Brings a plot's cursor to where lines are.
  virtual void PointInto(QWidget* plot) = 0;
  /// Types into what has the focus.
  void Type(const Text& sText);
  /// Does what Escape or the window's own closing does not need: ends a dialog by its buttons.
  void PressIn(QDialog* dialog, const char* sButton);
  /// The button of a message box: "&Yes", "&No", "OK".
  void Answer(const char* sTitle, const Text& sText, const char* sButton);

 protected:
  /// Where the context menu's or drop-down's popup is, once it is there.
  QWidget* WaitForPopup();
  Text TextOf(QWidget* box);
  /// The button's click is what act leads to.
  void Clicked(QAbstractButton* button, const std::function<void()>& act);
  int RowOf(QAbstractItemView* list, const Text& sText);
  /// Asked on the user-interface thread: by its name, or by its words.
  static bool IsEntry(const QAction& action, const char* sEntry);
  /// On the user-interface thread.
  QAbstractButton* ToolbarButtonOf(const char* sKey);

  Stage& m_stage;
};

class MouseHands final : public Hands {
 public:
  /// On the user-interface thread.
  explicit MouseHands(Stage& stage);
  void Select(const Text& sKey) override;
  void Expand(const Text& sKey) override;
  void Command(const Text& sKey, const char* sMenuItem) override;
  void MenuBar(const char* sMenu, const char* sAction) override;
  void Refresh() override;
  void Save() override;
  void PressToolbar(const char* sKey) override;
  void Tab(const char* sTab) override;
  void Press(QAbstractButton* button) override;
  void Enter(QWidget* box, const Text& sText) override;
  void Choose(QWidget* dropDown, const Text& sText) override;
  void MoveColumn(QAbstractItemView* list, const Text& sColumn, QAbstractButton* move) override;
  void GoToCell(QAbstractItemView* rows, int iRow, int iColumn) override;
  void MarkRow(QAbstractItemView* rows, int iRow) override;
  void MenuOfCell(QAbstractItemView* rows, const char* sEntry) override;
  void PointInto(QWidget* plot) override;

 private:
  using Button = XInput::Button;
  /// Asked on the user-interface thread, in coordinates of the screen.
  using Place = std::function<QPoint()>;
  void Click(const Place& place, Button button = Button::Left, int iTimes = 1);
  Place MiddleOf(QWidget* widget);
  Place MiddleOfItem(const Text& sKey);
  Place MiddleOfRow(QAbstractItemView* list, int iRow);
  void PickFrom(QWidget* menu, const char* sAction);

  QPoint m_last;  ///< where the last click was
  int m_iClicks = 0;
  std::unique_ptr<QObject> m_count;
};

class KeyboardHands final : public Hands {
 public:
  using Hands::Hands;
  void Select(const Text& sKey) override;
  void Expand(const Text& sKey) override;
  void Command(const Text& sKey, const char* sMenuItem) override;
  void MenuBar(const char* sMenu, const char* sAction) override;
  void Refresh() override;
  void Save() override;
  void PressToolbar(const char* sKey) override;
  void Tab(const char* sTab) override;
  void Press(QAbstractButton* button) override;
  void Enter(QWidget* box, const Text& sText) override;
  void Choose(QWidget* dropDown, const Text& sText) override;
  void MoveColumn(QAbstractItemView* list, const Text& sColumn, QAbstractButton* move) override;
  void GoToCell(QAbstractItemView* rows, int iRow, int iColumn) override;
  void MarkRow(QAbstractItemView* rows, int iRow) override;
  void MenuOfCell(QAbstractItemView* rows, const char* sEntry) override;
  void PointInto(QWidget* plot) override;

 private:
  void GoTo(QWidget* widget);
  void PickFrom(QWidget* popup, const char* sAction);

  int m_iMenus = 0;  // the Menu key and Shift+F10 take turns
};

}  // namespace orvane::console
