// The console's own events, and what happens around it, done to both sides.
#include <algorithm>
#include <utility>

#include "nodes/servers_node.h"
#include "tests/snapin/random_console.h"
#include "tests/snapin/random_console_names.h"

namespace orvane::snapin {

void RandomConsole::Expand(const ItemPtr& item) {
  Note("expand " + item->sKey);
  m_model.Expand(item);
  m_driver.Expand(item->sKey);
  m_driver.Collapse(item->sKey);
}

void RandomConsole::ExpandAgain(const ItemPtr& item) {
  Note("expand again " + item->sKey);
  m_model.ExpandAgain(item);
  m_driver.snapIn->ScopeItems_Expand(m_driver.Item(item->sKey));
}

void RandomConsole::Select(const ItemPtr& item) {
  const bool bGrid = !OneIn(12);
  Note("select " + item->sKey + (bGrid ? "" : " # its control is no grid"));
  m_model.Select(item, bGrid);
  if (!bGrid) m_driver.otherControl = std::make_shared<fakes::FakeTableQuery>();
  m_driver.Select(item->sKey);
  m_driver.otherControl.reset();
  m_selected = item;
  m_pathOfSelected.clear();
  for (const auto& above : m_model.Items()) {
    const bool bAbove = item->sKey.starts_with(above->sKey + ".") || above == m_model.rootItem;
    if (bAbove && above != item) m_pathOfSelected.insert(m_pathOfSelected.begin(), above->sKey);
  }
}

void RandomConsole::ShowStructure() {
  if (!m_model.viewItem || m_model.viewItem->sType != "Table") return;
  const Text sView = OneIn(3) ? "TableEditorOcxView" : "TableStructureListView";
  m_sServer = ServerOf(*m_model.viewItem);
  PlanSchemaFault(m_model.viewItem);
  Note("show " + sView);
  m_model.ShowView(sView, true);
  m_driver.ShowView(sView);
}

void RandomConsole::Refresh() {
  Note("refresh");
  m_model.Refresh();
  m_driver.snapIn->Views_Refresh(m_driver.console->CurrentView());
}

void RandomConsole::Press() {
  constexpr const char* kKeys[] = {"MoveFirst", "MoveLast", "SortAsc", "SortDesc", "CellQuery",
                                   "Delete",    "Sql",      "Context", "sql",      ""};
  const Text sKey = Any(kKeys);
  Note("press " + sKey);
  m_model.Press(sKey);
  // The button of that key, or one that is on no toolbar.
  fakes::FakeToolbarButton loose(sKey, 1, "", platform::ButtonStyle::Default);
  fakes::FakeToolbarButton* button = &loose;
  if (m_driver.controlBar.attached) {
    for (const auto& own : m_driver.console->toolbar->Buttons().buttons) {
      if (own->Key() == sKey && own->style != platform::ButtonStyle::Separator) button = own.get();
    }
  }
  m_driver.snapIn->Toolbar_ButtonClick(*button);
}

/// The servers change behind the console's back.
void RandomConsole::ChangeWorld() {
  auto& servers = m_driver.historian->servers;
  auto& catalogs = servers[Number(static_cast<unsigned>(servers.size()))].catalogs;
  const Text sCatalog = Any(kCatalogs);
  auto* const catalog = FakeHistorian::Find(catalogs, sCatalog);
  if (!catalog) {
    Note("# a server gets the catalog " + sCatalog);
    catalogs.push_back({sCatalog, {NewTable("Data")}});
    return;
  }
  const Text sTable = Any(kTables);
  auto* const table = FakeHistorian::Find(catalog->tables, sTable);
  if (!table) {
    Note("# a server's " + sCatalog + " gets the table " + sTable);
    catalog->tables.push_back(NewTable(sTable));
    return;
  }
  const Text sColumn = Any(kColumns);
  Note("# a server's " + sCatalog + " " + sTable + " gets or loses the column " + sColumn);
  if (std::erase_if(table->columns, [&](const auto& c) { return c.sName == sColumn; }) == 0) {
    table->columns.push_back({sColumn});
  }
  for (auto& row : table->rows) row.resize(table->columns.size());
  if (OneIn(4)) std::erase_if(catalogs, [&](const auto& c) { return c.sName == sCatalog; });
}

void RandomConsole::ChangeRoot() {
  const auto root =
      std::dynamic_pointer_cast<nodes::ServersNode>(m_driver.console->staticItem->Tag());
  m_model.root->lMaxRows = static_cast<Long>(Number(1000));
  m_model.root->sStart = OneIn(2) ? "" : "t";
  m_model.root->sEnd = OneIn(2) ? "" : "*";
  Note("set the root's row limit and times");
  root->MaxRows(m_model.root->lMaxRows);
  root->SetDefaultTimeRange(m_model.root->sStart, m_model.root->sEnd);
}

void RandomConsole::SaveOnly() {
  Note("save");
  const bool bSaved = m_model.Save();
  const auto bag = m_driver.NewBag();
  Same("saved", m_driver.snapIn->SnapIn_WriteProperties(*bag), bSaved);
}

void RandomConsole::SaveAndReopen() {
  ClearFaults();
  Note("save and open again");
  m_model.Reopen();
  // A window of its own comes with the document.
  m_driver.controlBar.attached.reset();
  m_driver.verbs.verbs.clear();
  m_driver.SaveAndReopen();
  m_selected.reset();
}

void RandomConsole::UnloadAndStartAnew() {
  ClearFaults();
  Note("unload, go on for a moment, start anew");
  m_model.Unload();
  m_driver.snapIn->SnapIn_Unload();
  Press();
  SetOptions();
  ExpandAgain(m_model.rootItem);
  m_driver.historian->sChosenServer = "S1";
  m_model.AddServer("S1");
  m_driver.Click("m_mnuServersConnect", scenarios::kStaticNode);
  const auto bag = m_driver.NewBag();
  m_driver.snapIn->SnapIn_WriteProperties(*bag);
  Same("what is saved without a root", bag->order, std::vector<Text>{"ServersNode"});
  m_model.NewDocument();
  m_driver.controlBar.attached.reset();
  m_driver.verbs.verbs.clear();
  m_driver.NewDocument();
  m_selected.reset();
}

/// A selection that is not one scope item: every command leaves everything alone.
void RandomConsole::ClickManyItems(const ItemPtr& item) {
  constexpr const char* kCommands[] = {
      "m_mnuServersConnect", "m_mnuOptions",       "m_mnuConnect", "m_mnuDisconnect",
      "m_mnuRemoveServer",   "m_mnuAddCatalog",    "m_mnuQuery",   "m_mnuNewQuery",
      "m_mnuEdit",           "m_mnuCatalogRemove", "m_mnuRemove"};
  fakes::FakeSelection selection(m_driver.Item(item->sKey));
  selection.items.push_back(m_driver.console->staticItem);
  selection.lType = static_cast<Long>(1 + Number(5));
  const char* const sCommand = Any(kCommands);
  Note(Text(sCommand) + " on many items");
  m_driver.snapIn->Menu_Click(sCommand, 0, selection);
}

/// A command that the item's menu does not have.
void RandomConsole::ForeignCommand(const ItemPtr& item) {
  const bool bServer = std::dynamic_pointer_cast<model::Server>(item->tag) != nullptr;
  const bool bQuery = item->sType == "Query";
  const char* const sCommand = bServer ? "m_mnuEdit" : bQuery ? "m_mnuQuery" : "m_mnuConnect";
  Note(Text(sCommand) + " on the " + item->sType + " " + item->sKey);
  m_model.ForeignCommand();
  Click(sCommand, item);
}

}  // namespace orvane::snapin
