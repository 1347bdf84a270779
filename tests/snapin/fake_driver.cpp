#include "tests/snapin/fake_driver.h"

#include <gtest/gtest.h>

#include <utility>

#include "platform/conversions.h"

namespace orvane::snapin {

using fakes::FakeResultView;
using fakes::FakeScopeItemPtr;
using platform::Boolean;
using platform::Long;
using platform::Text;
using platform::Value;

FakeDriver::FakeDriver() {
  NewDocument();
}

FakeDriver::~FakeDriver() {
  EXPECT_TRUE(m_formUsers.empty()) << "a dialog that was answered never came up";
  Close();
}

void FakeDriver::AddServer(const scenarios::ServerSetup& server) {
  historian->servers.push_back(server);
}

void FakeDriver::AppendRow(const Text& sServer, const Text& sCatalog, const Text& sTable,
                           const std::vector<Value>& values) {
  historian->Table(sServer, sCatalog, sTable)->rows.push_back(values);
}

void FakeDriver::AnswerLogon(scenarios::LogonAnswer answer) {
  historian->bCancelLogon = answer == scenarios::LogonAnswer::Cancel;
}

void FakeDriver::ChooseServer(const Text& sServer) {
  historian->sChosenServer = sServer;
}

Long FakeDriver::LogonsSeen() const {
  return historian->nLogons;
}

Long FakeDriver::StatementsSent() const {
  return historian->nStatements;
}

void FakeDriver::Start() {
  Close();
  console = std::make_shared<fakes::FakeConsole>();
  platform::Services services;
  services.console = console;
  services.objects = objects;
  services.ui = ui;
  services.fileVersion = fileVersion;
  services.forms = forms;
  services.unsentRows = unsentRows;
  snapIn = std::dynamic_pointer_cast<platform::SnapIn>(SnapInFactory().CreateInstance(services));
  m_description = snapIn->Description();
  for (const auto& type : m_description.nodeTypes) {
    console->ScopeItems().typeNames[type.sName] = type.sDisplayName;
  }
  console->ScopeItems().onExpand = [this](const FakeScopeItemPtr& item) { Expand(item->Key()); };
  console->staticItem->node->onExpand = [this] { Expand(scenarios::kStaticNode); };
  snapIn->SnapIn_Initialize();
}

void FakeDriver::Click(const Text& sMenuItem, const Text& sKey) {
  snapIn->Menu_Click(sMenuItem, 0, fakes::FakeSelection(Item(sKey)));
}

void FakeDriver::Open(platform::PropertyBag* pb) {
  Start();
  if (pb != nullptr) snapIn->SnapIn_ReadProperties(*pb);
  snapIn->ScopeItems_Initialize(console->staticItem);
}

void FakeDriver::Close() {
  if (!snapIn) return;
  Hide();
  m_selected.reset();
  snapIn->SnapIn_Unload();
  snapIn->SnapIn_Terminate();
  snapIn.reset();
  console.reset();
  controlBar.attached.reset();
  verbs.verbs.clear();
}

void FakeDriver::NewDocument() {
  Open(nullptr);
}

std::unique_ptr<fakes::FakePropertyBag> FakeDriver::NewBag() const {
  auto bag = std::make_unique<fakes::FakePropertyBag>();
  bag->Creates(platform::kTableQueryProgId,
               [] { return std::make_shared<fakes::FakeTableQuery>(); });
  return bag;
}

void FakeDriver::OpenDocument(const Fill& fill) {
  const auto bag = NewBag();
  fill(*bag, *objects);
  Open(bag.get());
}

void FakeDriver::SaveAndReopen() {
  m_saved = NewBag();
  snapIn->SnapIn_WriteProperties(*m_saved);
  Open(m_saved.get());
}

Value FakeDriver::SavedValue(const Text& sName) const {
  return m_saved->At(sName);
}

FakeScopeItemPtr FakeDriver::Item(const Text& sKey) const {
  return sKey == scenarios::kStaticNode ? console->staticItem : console->ScopeItems().Find(sKey);
}

Boolean FakeDriver::HasItem(const Text& sKey) const {
  return Item(sKey) != nullptr;
}

void FakeDriver::Expand(const Text& sKey) {
  const auto item = Item(sKey);
  if (item->node->bExpandedOnce) return;
  item->node->bExpandedOnce = true;
  snapIn->ScopeItems_Expand(item);
}

void FakeDriver::Collapse(const Text&) {}

void FakeDriver::Select(const Text& sKey) {
  Hide();
  m_selected = Item(sKey);
  Show(NodeType(m_selected->NodeTypeName()).resultViews.front().sName);
}

void FakeDriver::ShowView(const Text& sViewName) {
  Hide();
  Show(sViewName);
}

const platform::NodeTypeDescription& FakeDriver::NodeType(const Text& sName) const {
  for (const auto& type : m_description.nodeTypes) {
    if (type.sName == sName) return type;
  }
  throw platform::Failure(5, "Unknown node type.");
}

void FakeDriver::Show(const Text& sViewName) {
  console->resultView = std::make_shared<FakeResultView>(sViewName, m_selected);
  FakeResultView& view = *console->resultView;
  Text sControl;
  for (const auto& described : NodeType(m_selected->NodeTypeName()).resultViews) {
    if (described.sName == sViewName) sControl = described.sControlProgId;
  }
  if (otherControl && !sControl.empty()) {
    view.control = otherControl;
  } else if (sControl == platform::kTableEditorProgId) {
    view.control = std::make_shared<fakes::FakeTableEditor>();
  } else if (sControl == platform::kQueryResultsProgId) {
    view.control = std::make_shared<fakes::FakeQueryResults>();
  }
  snapIn->ResultViews_Initialize(view);
  if (view.control) snapIn->ResultViews_InitializeControl(view);
  snapIn->ResultViews_Activate(view);
  TellSelected();
}

void FakeDriver::TellSelected() {
  const fakes::FakeSelection selection(m_selected);
  snapIn->Views_Select(console->CurrentView(), selection, true, verbs);
  snapIn->Views_UpdateControlbar(console->CurrentView(), selection, true, controlBar);
}

Text FakeDriver::Selected() const {
  return m_selected ? m_selected->Key() : scenarios::kStaticNode;
}

void FakeDriver::FollowTree() {
  console->ScopeItems().onRemoving = [this](const FakeScopeItemPtr& item, bool bChildrenOnly) {
    Removing(item, bChildrenOnly);
  };
  console->CurrentView().onSelect = [this](const platform::ScopeItemPtr& item) {
    ShowSelected(std::dynamic_pointer_cast<fakes::FakeScopeItem>(item));
  };
}

void FakeDriver::ShowSelected(const FakeScopeItemPtr& item) {
  if (item == m_selected) {
    TellSelected();
  } else {
    Select(item->Key());
  }
}

void FakeDriver::Removing(const FakeScopeItemPtr& item, bool bChildrenOnly) {
  for (auto above = m_selected; above; above = console->ScopeItems().Above(above)) {
    if (above != item) continue;
    if (!bChildrenOnly) {
      Select(console->ScopeItems().Above(item)->Key());
    } else if (m_selected != item) {
      Select(item->Key());
    }
    return;
  }
}

void FakeDriver::Hide() {
  if (!console->resultView) return;
  const fakes::FakeSelection selection(m_selected);
  snapIn->ResultViews_Deactivate(*console->resultView);
  snapIn->Views_Select(console->CurrentView(), selection, false, verbs);
  console->resultView.reset();
}

Boolean FakeDriver::HasExpandMark(const Text& sKey) const {
  const auto& node = *Item(sKey)->node;
  return node.bHasChildren || !node.children.empty();
}

std::vector<Text> FakeDriver::Children(const Text& sKey) const {
  std::vector<Text> keys;
  for (const auto& child : Item(sKey)->node->children) keys.push_back(child->Key());
  return keys;
}

Text FakeDriver::DisplayName(const Text& sKey) const {
  return Item(sKey)->DisplayName();
}

void FakeDriver::AppendTree(const fakes::FakeScopeItem& item, const Text& sIndent,
                            Text& sTree) const {
  sTree += sIndent + item.DisplayName() + "\n";
  for (const auto& child : item.node->children) AppendTree(*child, sIndent + "  ", sTree);
}

Text FakeDriver::Tree() const {
  Text sTree;
  AppendTree(*console->staticItem, "", sTree);
  return sTree;
}

std::vector<scenarios::ListRow> FakeDriver::ListRows() const {
  std::vector<scenarios::ListRow> rows;
  if (!console->resultView || console->resultView->control) return rows;
  if (console->resultView->Name() == "TableStructureListView") {
    for (const auto& item : console->resultView->ListItems().items) {
      rows.push_back({item->sText, item->lIcon, item->ListSubItems().Texts()});
    }
    return rows;
  }
  for (const auto& child : m_selected->node->children) {
    const auto texts = child->ListSubItems().Texts();
    rows.push_back({texts.at(0), NodeType(child->NodeTypeName()).lFolderImage, texts});
  }
  return rows;
}

std::shared_ptr<fakes::FakeTableEditor> FakeDriver::TableEditor() const {
  if (!console->resultView) return nullptr;
  return std::dynamic_pointer_cast<fakes::FakeTableEditor>(console->resultView->control);
}

std::shared_ptr<fakes::FakeQueryResults> FakeDriver::QueryResults() const {
  if (!console->resultView) return nullptr;
  return std::dynamic_pointer_cast<fakes::FakeQueryResults>(console->resultView->control);
}

scenarios::GridSnapshot FakeDriver::Grid() const {
  scenarios::GridSnapshot grid;
  platform::RecordsetPtr rs;
  if (const auto editor = TableEditor()) {
    grid.bShown = true;
    grid.bSqlStatements = editor->ShowSqlStatements();
    rs = editor->recordset;
  } else if (const auto results = QueryResults()) {
    grid.bShown = true;
    grid.bSqlStatements = results->ShowSqlStatements();
    rs = results->recordset;
  }
  if (!rs) return grid;
  for (platform::ColumnIndex c = 0; c < rs->FieldCount(); ++c) {
    grid.columns.push_back(rs->FieldAt(c).Name());
  }
  for (platform::RowIndex r = 0; r < rs->RecordCount(); ++r) {
    auto& row = grid.rows.emplace_back();
    for (platform::ColumnIndex c = 0; c < rs->FieldCount(); ++c) {
      row.push_back(platform::ToText(rs->ValueAt(r, c)));
    }
  }
  return grid;
}

}  // namespace orvane::snapin

namespace orvane::scenarios {

std::unique_ptr<Driver> MakeDriver() {
  return std::make_unique<snapin::FakeDriver>();
}

}  // namespace orvane::scenarios
