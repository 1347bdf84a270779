// A console made of fakes around a real snap-in object: opens documents, expands and selects as
// the console does, in its order of events. Also what the tests of single handlers start from.
#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "platform/console/snap_in.h"
#include "snapin/class_factory.h"
#include "tests/fakes/console.h"
#include "tests/fakes/fake_forms.h"
#include "tests/fakes/file_version.h"
#include "tests/fakes/grids.h"
#include "tests/fakes/historian.h"
#include "tests/fakes/property_bag.h"
#include "tests/fakes/unsent_rows.h"
#include "tests/fakes/user_interface.h"
#include "tests/scenarios/driver.h"

namespace orvane::snapin {

class FakeDriver : public scenarios::Driver {
 public:
  using Text = platform::Text;
  using Long = platform::Long;
  using Boolean = platform::Boolean;

  FakeDriver();
  ~FakeDriver() override;

  void AddServer(const scenarios::ServerSetup& server) override;
  void AppendRow(const Text& sServer, const Text& sCatalog, const Text& sTable,
                 const std::vector<platform::Value>& values) override;
  void AnswerLogon(scenarios::LogonAnswer answer) override;
  void ChooseServer(const Text& sServer) override;
  Long LogonsSeen() const override;
  Long StatementsSent() const override;

  void NewDocument() override;
  void OpenDocument(const Fill& fill) override;
  void SaveAndReopen() override;
  platform::Value SavedValue(const Text& sName) const override;

  Boolean HasItem(const Text& sKey) const override;
  void Expand(const Text& sKey) override;
  void Collapse(const Text& sKey) override;
  void Select(const Text& sKey) override;
  Text Selected() const override;
  Boolean HasExpandMark(const Text& sKey) const override;
  std::vector<Text> Children(const Text& sKey) const override;
  Text DisplayName(const Text& sKey) const override;
  Text Tree() const override;

  void ShowView(const Text& sViewName) override;
  std::vector<scenarios::ListRow> ListRows() const override;
  scenarios::GridSnapshot Grid() const override;

  std::vector<scenarios::MenuEntry> Menu(const Text& sKey, scenarios::MenuWay way) override;
  void Choose(const Text& sKey, const Text& sCaption, scenarios::MenuWay way) override;
  std::vector<scenarios::ButtonSeen> Toolbar() const override;
  void Press(const Text& sButton) override;
  Boolean CanRefresh() const override;
  void Refresh() override;
  Boolean IsHourglassShown() const override;
  void AnswerForm(scenarios::FormUser user) override;
  void AnswerBox(scenarios::BoxAnswer answer) override;
  std::vector<scenarios::BoxSeen> TakeBoxes() override;

  // ---- for the tests of single handlers
  /// The item of that key; the static item for kStaticNode.
  fakes::FakeScopeItemPtr Item(const Text& sKey) const;
  /// A console and a snap-in object of its own, initialized, without a document.
  void Start();
  /// The grid in the result pane, none when it shows another kind.
  std::shared_ptr<fakes::FakeTableEditor> TableEditor() const;
  std::shared_ptr<fakes::FakeQueryResults> QueryResults() const;
  std::unique_ptr<fakes::FakePropertyBag> NewBag() const;

  fakes::FakeHistorianPtr historian = std::make_shared<fakes::FakeHistorian>();
  std::shared_ptr<fakes::FakeObjects> objects = std::make_shared<fakes::FakeObjects>(historian);
  std::shared_ptr<fakes::FakeUserInterface> ui = std::make_shared<fakes::FakeUserInterface>();
  std::shared_ptr<fakes::FakeUnsentRows> unsentRows = std::make_shared<fakes::FakeUnsentRows>();
  std::shared_ptr<fakes::FakeFileVersion> fileVersion = std::make_shared<fakes::FakeFileVersion>();
  std::shared_ptr<fakes::FakeConsole> console;
  std::shared_ptr<platform::SnapIn> snapIn;
  /// Picks the menu item with the scope item of the key as the single selection.
  void Click(const Text& sMenuItem, const Text& sKey);

  std::shared_ptr<fakes::FakeForms> forms = std::make_shared<fakes::FakeForms>();
  fakes::FakeControlBar controlBar;
  fakes::FakeVerbs verbs;
  /// What the next control views get in place of their grid, when it is set.
  platform::ObjectPtr otherControl;

 private:
  void Open(platform::PropertyBag* pb);
  void Close();
  void Show(const Text& sViewName);
  void Hide();
  /// Lets the selection follow what a command does to the tree, as a console does. The tests of
  /// single handlers look at the handler alone.
  void FollowTree();
  /// Selects what is left when the item, or everything beneath it, goes.
  void Removing(const fakes::FakeScopeItemPtr& item, bool bChildrenOnly);
  void ShowSelected(const fakes::FakeScopeItemPtr& item);
  void TellSelected();
  std::vector<platform::MenuItem> MenuItems(const Text& sKey);
  void FormShown(fakes::FakeForm& form);
  const platform::NodeTypeDescription& NodeType(const Text& sName) const;
  void AppendTree(const fakes::FakeScopeItem& item, const Text& sIndent, Text& sTree) const;

  platform::SnapInDescription m_description;
  fakes::FakeScopeItemPtr m_selected;
  std::deque<scenarios::FormUser> m_formUsers;
  std::unique_ptr<fakes::FakePropertyBag> m_saved;
};

}  // namespace orvane::snapin
