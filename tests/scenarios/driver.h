// What a scenario does to the console and sees of it, whatever console that is: the fakes around
// the snap-in object, or the real window with the snap-in loaded as a component. The cases are
// written once, in the files beside this one; each test program that lists them among its sources
// defines MakeDriver for its own console. One thread.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/property_bag.h"
#include "platform/services.h"

namespace orvane::scenarios {

using platform::Boolean;
using platform::Long;
using platform::Text;

/// A server's contents, as they are before the case begins. A server may hold more than is asked
/// for (system catalogs, tables that every catalog has); the cases look for what they asked for.
struct ColumnSetup {
  Text sName;
  platform::DataType type = platform::DataType::WChar;
  Boolean bNullable = true;
  Boolean bKey = false;
};
struct TableSetup {
  Text sName;
  std::vector<ColumnSetup> columns;
  std::vector<std::vector<platform::Value>> rows;  ///< values in the order of the columns
};
struct CatalogSetup {
  Text sName;
  std::vector<TableSetup> tables;
};
struct ServerSetup {
  Text sName;
  std::vector<CatalogSetup> catalogs;
};

/// How the logon dialog is answered, each time it comes up.
enum class LogonAnswer { Ok, Cancel };

/// One row of a list view.
struct ListRow {
  Text sText;
  Long lIcon = 0;               ///< image number from 1; that of the node type for a scope item
  std::vector<Text> sSubItems;  ///< the texts from position 1 on
};

/// The grid in the result pane.
struct GridSnapshot {
  Boolean bShown = false;  ///< false: the result pane shows no grid
  std::vector<Text> columns;
  std::vector<std::vector<Text>> rows;  ///< as platform::ToText gives the values
  Boolean bSqlStatements = false;       ///< the SQL statement is shown
};

/// A message box that came up.
struct BoxSeen {
  Text sText;
  Text sTitle;
  platform::MsgBoxButtons buttons = platform::MsgBoxButtons::OkOnly;
};

/// How a message box with Yes and No is answered.
enum class BoxAnswer { Yes, No };

/// An entry that the snap-in has put into a menu.
struct MenuEntry {
  Text sCaption;
  Boolean bEnabled = true;
  friend bool operator==(const MenuEntry&, const MenuEntry&) = default;
};

/// The ways to an item's menu. A console with one way only takes it for all.
enum class MenuWay { RightClick, Keyboard, MenuBar };

/// A button of the toolbar; a separator has no key.
struct ButtonSeen {
  Text sKey;
  Text sToolTip;
  Long lImage = 0;
  Boolean bEnabled = true;
  Boolean bPressed = false;
};

/// A dialog as the user has it before him. Controls go by their member names; what a control does
/// not let the user do, it refuses here as well.
class ShownForm {
 public:
  ShownForm() = default;
  ShownForm(const ShownForm&) = delete;
  ShownForm& operator=(const ShownForm&) = delete;
  virtual ~ShownForm() = default;

  virtual Text Title() const = 0;
  virtual Boolean Enabled(const Text& sControl) const = 0;
  virtual Text Label(const Text& sControl) const = 0;
  virtual Text BoxText(const Text& sTextBox) const = 0;
  /// Types over the whole text of the box, key by key; an empty text clears it.
  virtual void Type(const Text& sTextBox, const Text& sText) = 0;
  virtual Boolean Checked(const Text& sCheckBox) const = 0;
  virtual void Click(const Text& sButtonOrCheckBox) = 0;
  /// The entries of a list view or a drop-down list, in their order.
  virtual std::vector<Text> Entries(const Text& sList) const = 0;
  /// The entry that a drop-down list shows; empty when it shows none.
  virtual Text Chosen(const Text& sDropDownList) const = 0;
  /// Highlights the entry of a list view, alone, or chooses that of a drop-down list.
  virtual void Choose(const Text& sList, const Text& sEntry) = 0;
};

/// What the user does in a dialog; the last thing is to press a button that closes it.
using FormUser = std::function<void(ShownForm&)>;

/// Key under which the driver knows the static node, whatever key its console gives it.
constexpr const char* kStaticNode = "";

class Driver {
 public:
  /// Writes a document as a console would have saved it; the factory makes its table queries.
  using Fill = std::function<void(platform::PropertyBag&, platform::ObjectFactory&)>;

  Driver() = default;
  Driver(const Driver&) = delete;
  Driver& operator=(const Driver&) = delete;
  virtual ~Driver() = default;

  // ---- the servers -------------------------------------------------------------------------
  virtual void AddServer(const ServerSetup& server) = 0;
  /// Appends a row to a table on the server, behind the console's back.
  virtual void AppendRow(const Text& sServer, const Text& sCatalog, const Text& sTable,
                         const std::vector<platform::Value>& values) = 0;
  /// Ok when never called.
  virtual void AnswerLogon(LogonAnswer answer) = 0;
  /// The server that the user enters in logon dialogs that let him choose; the one proposed when
  /// never called.
  virtual void ChooseServer(const Text& sServer) = 0;
  /// Logon dialogs that came up since the driver was made.
  virtual Long LogonsSeen() const = 0;
  /// SQL statements sent through commands since the driver was made; schema rowsets do not count.
  virtual Long StatementsSent() const = 0;

  // ---- the document ------------------------------------------------------------------------
  virtual void NewDocument() = 0;
  virtual void OpenDocument(const Fill& fill) = 0;
  /// Saves the document, closes it, and opens what was saved in a fresh snap-in.
  virtual void SaveAndReopen() = 0;
  /// What the last save wrote under the name, Null when it wrote nothing there. A stored object
  /// is created anew.
  virtual platform::Value SavedValue(const Text& sName) const = 0;

  // ---- the tree ----------------------------------------------------------------------------
  virtual Boolean HasItem(const Text& sKey) const = 0;
  /// Opens the item as the user does with its expand mark or the keyboard.
  virtual void Expand(const Text& sKey) = 0;
  virtual void Collapse(const Text& sKey) = 0;
  virtual void Select(const Text& sKey) = 0;
  /// Key of the selected item.
  virtual Text Selected() const = 0;
  /// True when the item shows an expand mark.
  virtual Boolean HasExpandMark(const Text& sKey) const = 0;
  /// Keys of the items beneath, in their order.
  virtual std::vector<Text> Children(const Text& sKey) const = 0;
  virtual Text DisplayName(const Text& sKey) const = 0;
  /// Display names of the whole tree as far as it was ever expanded, one a line, two blanks a
  /// level, the static node first.
  virtual Text Tree() const = 0;

  // ---- the result pane ---------------------------------------------------------------------
  /// Shows another view of the selected item, by its name ("TableStructureListView").
  virtual void ShowView(const Text& sViewName) = 0;
  /// Rows of the list shown; none when the result pane shows a grid.
  virtual std::vector<ListRow> ListRows() const = 0;
  virtual GridSnapshot Grid() const = 0;

  // ---- commands ----------------------------------------------------------------------------
  /// What the snap-in offers in the item's menu, which is then closed again. The item is selected
  /// first, unless a right click does that.
  virtual std::vector<MenuEntry> Menu(const Text& sKey, MenuWay way = MenuWay::RightClick) = 0;
  /// Chooses the entry of that caption; returns when the command has ended.
  virtual void Choose(const Text& sKey, const Text& sCaption,
                      MenuWay way = MenuWay::RightClick) = 0;
  /// The buttons of the toolbar in their order; none when there is no toolbar.
  virtual std::vector<ButtonSeen> Toolbar() const = 0;
  /// Clicks the button; a disabled one does nothing.
  virtual void Press(const Text& sButton) = 0;
  virtual Boolean CanRefresh() const = 0;
  /// Refreshes the selected item, where that is possible.
  virtual void Refresh() = 0;
  virtual Boolean IsHourglassShown() const = 0;

  // ---- dialogs and message boxes -----------------------------------------------------------
  /// What the user does in the next dialog that is not answered yet. A dialog that comes up
  /// without an answer, or an answer whose dialog never does, fails the case.
  virtual void AnswerForm(FormUser user) = 0;
  /// Answers the next Yes/No boxes, one each; Yes is pressed once no answer is left.
  virtual void AnswerBox(BoxAnswer answer) = 0;
  /// The boxes that came up since the last call, in their order.
  virtual std::vector<BoxSeen> TakeBoxes() = 0;
};

/// Defined by each test program: a console of its own with an empty new document.
std::unique_ptr<Driver> MakeDriver();

}  // namespace orvane::scenarios
