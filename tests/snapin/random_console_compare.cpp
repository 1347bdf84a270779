// What can be seen of the console and of the model, side by side.
#include <algorithm>
#include <sstream>

#include "nodes/catalog_nodes_collection.h"
#include "nodes/query_nodes_collection.h"
#include "nodes/server_nodes_collection.h"
#include "nodes/servers_node.h"
#include "nodes/table_nodes_collection.h"
#include "tests/snapin/random_console.h"

namespace orvane::snapin {

using fakes::FakeScopeItemPtr;
using platform::Long;
using platform::Text;

namespace {

using Texts = std::vector<Text>;

Text Said(const Texts& texts) {
  Text sAll;
  for (const Text& sText : texts) sAll += "[" + sText + "]";
  return sAll;
}
template <class T>
Text Said(const T& value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

Text Said(const model::Box& box) {
  return box.first + "|" + std::to_string(static_cast<int>(box.second));
}

Text Said(const std::optional<platform::SortCriterion>& sort) {
  return sort ? sort->sColumn + (sort->bAscending ? " up" : " down") : "none";
}

/// Keys of the toolbar's buttons; a separator has none.
constexpr const char* kTableKeys[] = {"MoveFirst", "MoveLast",  "",       "SortAsc", "SortDesc",
                                      "",          "CellQuery", "Delete", "",        "Sql"};
constexpr const char* kQueryKeys[] = {"MoveFirst", "MoveLast", "",   "CellQuery",
                                      "Delete",    "",         "Sql"};

}  // namespace

template <class Left, class Right>
void RandomConsole::Same(const Text& sWhat, const Left& left, const Right& right) {
  if (left == right) return;
  m_sDifferences += sWhat + ": is " + Said(left) + ", must be " + Said(right) + "\n";
}

template void RandomConsole::Same(const Text&, const bool&, const bool&);
template void RandomConsole::Same(const Text&, const Text&, const Text&);
template void RandomConsole::Same(const Text&, const Texts&, const Texts&);

/// The real object that a node stands for is the same for its whole life.
void RandomConsole::Tie(model::Node& node, const platform::ObjectPtr& real, const Text& sWhat) {
  if (node.real.expired()) {
    node.real = real;
    See(real);
  }
  Same(sWhat + " is the same node", node.real.lock() == real, true);
}

void RandomConsole::Compare() {
  CompareCounts();
  CompareLists();
  if (!m_sDifferences.empty()) return;
  const auto items = m_model.Items();
  Same("number of items", m_driver.console->ScopeItems().items.size() + 1, items.size());
  CompareItem(*m_model.rootItem, m_driver.console->staticItem);
  CompareResultPane();
  CompareMenu();
}

void RandomConsole::CompareCounts() {
  Texts shown;
  Texts expected;
  for (const auto& box : m_driver.ui->boxes) {
    shown.push_back(Said(model::Box{box.sTitle, box.buttons}));
    // A box says something.
    Same("a box without a text", box.sText.empty(), false);
  }
  for (const auto& box : m_world.boxes) expected.push_back(Said(box));
  Same("boxes", shown, expected);
  Same("mouse pointer", m_driver.ui->MousePointer(), m_world.lPointer);
  Same("logons", m_driver.LogonsSeen(), m_world.nLogons);
  Same("statements", m_driver.StatementsSent(), m_world.nStatements);
  Same("statements on catalogs", m_statements, m_world.statements);
  const auto& log = m_driver.historian->log;
  Same("closed connections", std::count(log.begin(), log.end(), "Close"), m_world.nCloses);
}

void RandomConsole::CompareLists() {
  const auto root =
      std::dynamic_pointer_cast<nodes::ServersNode>(m_driver.console->staticItem->Tag());
  if (!root) return Same("there is a root", false, true);
  Tie(*m_model.root, root, "the root");
  Text sStart;
  Text sEnd;
  root->GetDefaultTimeRange(sStart, sEnd);
  Same("row limit", root->MaxRows(), m_model.root->lMaxRows);
  Same("time-out", root->QueryTimeout(), m_model.root->lTimeout);
  Same("start time", sStart, m_model.root->sStart);
  Same("end time", sEnd, m_model.root->sEnd);
  Same("SQL statements", root->SqlStatements(), m_model.root->bSql);
  Same("context", root->Context(), m_model.root->bContext);
  Texts names;
  Texts expected;
  for (const auto& server : root->ServerNodes()->NewEnum()) names.push_back(server->Server());
  for (const auto& server : m_model.root->servers) expected.push_back(server->sName);
  Same("servers", names, expected);
  if (names != expected) return;
  Long lPosition = 0;
  for (const auto& server : m_model.root->servers) {
    const auto real = root->ServerNodes()->Item(++lPosition);
    Same("server by its name", root->ServerNodes()->Item(server->sName) == real, true);
    Tie(*server, real, "server " + server->sName);
    CompareServer(*server, *real);
  }
}

void RandomConsole::CompareServer(model::Server& server, nodes::ServerNode& real) {
  See(real.Connection());
  Same(server.sName + " is connected", real.Connection() != nullptr, server.line != nullptr);
  Same("options of " + server.sName, real.ExtendedOptions(), server.sOptions);
  Texts names;
  Texts expected;
  for (const auto& catalog : real.CatalogNodes()->NewEnum()) names.push_back(catalog->Catalog());
  for (const auto& catalog : server.catalogs) expected.push_back(catalog->sName);
  Same("catalogs of " + server.sName, names, expected);
  if (names != expected) return;
  Long lPosition = 0;
  for (const auto& catalog : server.catalogs) {
    const auto realCatalog = real.CatalogNodes()->Item(++lPosition);
    Tie(*catalog, realCatalog, "catalog " + catalog->sName);
    Texts tables;
    Texts expectedTables;
    for (const auto& table : realCatalog->TableNodes()->NewEnum()) {
      tables.push_back(table->Query()->Table());
    }
    for (const auto& table : catalog->tables) expectedTables.push_back(table->sName);
    Same("tables of " + catalog->sName, tables, expectedTables);
    if (tables != expectedTables) return;
    Long lTable = 0;
    for (const auto& table : catalog->tables) {
      const auto realTable = realCatalog->TableNodes()->Item(++lTable);
      Tie(*table, realTable, "table " + table->sName);
      CompareTable(*table, *realTable);
    }
  }
  Texts queries;
  Texts expectedQueries;
  for (const auto& query : real.QueryNodes()->NewEnum()) {
    queries.push_back(query->QueryName() + "=" + query->Query() + (query->Recordset() ? "*" : ""));
    See(query->Recordset());
  }
  for (const auto& query : server.queries) {
    expectedQueries.push_back(query->sName + "=" + query->sSql + (query->bRows ? "*" : ""));
  }
  Same("queries of " + server.sName, queries, expectedQueries);
  if (queries != expectedQueries) return;
  lPosition = 0;
  for (const auto& query : server.queries) {
    Tie(*query, real.QueryNodes()->Item(++lPosition), "query " + query->sName);
    Same("position of " + query->sName, real.QueryNodes()->Find(query->sName), lPosition);
  }
}

void RandomConsole::CompareTable(model::Table& table, nodes::TableNode& real) {
  auto& query = *real.Query();
  Texts columns;
  for (Long l = 1; l <= query.Columns().Count(); ++l) columns.push_back(query.Columns().Item(l));
  const Text& sName = table.sName;
  Same("catalog of " + sName, query.Catalog(), table.sCatalog);
  Same("columns of " + sName, columns, table.columns);
  Same("filter of " + sName, query.FilterCondition(), table.sFilter);
  Same("order of " + sName, Said(query.SortCriterion()), Said(table.sort));
  Same("row limit of " + sName, query.MaxRows(), table.lMaxRows);
  Same("time-out of " + sName, query.QueryTimeout(), table.lTimeout);
  Same("default filter of " + sName, real.DefaultFilterCondition(), table.bDefaultFilter);
  Long lUpdatability = 0;
  const auto rs = real.GetRecordset(lUpdatability);
  See(rs);
  Same("rows kept for " + sName, rs != nullptr, table.bRows);
}

void RandomConsole::CompareItem(const model::Item& item, const FakeScopeItemPtr& real) {
  See(real);
  const Text sItem = "item " + item.sKey;
  Same(sItem + " key", real->Key(), item.sKey);
  if (&item != m_model.rootItem.get()) {
    Same(sItem + " node identifier", real->NodeId(), item.sKey);
    Same(sItem + " texts", real->ListSubItems().Texts(), item.texts);
    Same(sItem + " is found by its key", m_driver.Item(item.sKey) == real, true);
  }
  Same(sItem + " type", real->NodeTypeName(), item.sType);
  Same(sItem + " name", real->DisplayName(), item.sName);
  Same(sItem + " expand mark", real->node->bHasChildren, item.bMark);
  Same(sItem + " expanded", real->node->bExpandedOnce, item.bExpandedOnce);
  Same(sItem + " has a tag", real->Tag() != nullptr, item.tag != nullptr);
  if (item.tag) Same(sItem + " tag", real->Tag() == item.tag->real.lock(), true);
  Texts keys;
  Texts expected;
  for (const auto& child : real->node->children) keys.push_back(child->Key());
  for (const auto& child : item.children) expected.push_back(child->sKey);
  Same(sItem + " children", keys, expected);
  if (keys != expected) return;
  for (std::size_t n = 0; n < item.children.size(); ++n) {
    CompareItem(*item.children[n], real->node->children[n]);
  }
}

void RandomConsole::CompareResultPane() {
  const auto& view = m_driver.console->resultView;
  Same("a result view is shown", view != nullptr, m_model.viewItem != nullptr);
  if (!view || !m_model.viewItem) return;
  Same("result view", view->Name(), m_model.sView);
  const int nKind = m_model.ToolbarKind();
  Same("refresh offered", m_driver.verbs.Enabled(32774), m_model.RefreshOffered());
  Same("a toolbar is attached", m_driver.controlBar.attached != nullptr, nKind != 0);
  Texts keys;
  if (m_driver.controlBar.attached) {
    for (const auto& button : m_driver.console->toolbar->Buttons().buttons) {
      keys.push_back(button->Key());
    }
  }
  Texts expected;
  if (nKind == 1) expected.assign(std::begin(kTableKeys), std::end(kTableKeys));
  if (nKind == 2) expected.assign(std::begin(kQueryKeys), std::end(kQueryKeys));
  Same("buttons", keys, expected);
  const auto shows = [&](const auto& grid, const model::GridPtr& must) {
    if (!grid || !must || !must->bShown) return;
    Same("the grid shows rows", grid->recordset != nullptr, must->bRows);
    Same("the grid shows its SQL", grid->ShowSqlStatements(), must->bSql);
    Same("the grid has a connection", grid->connection != nullptr, must->line != nullptr);
    See(grid->connection);
    See(grid->recordset);
  };
  shows(m_driver.TableEditor(), m_model.tblEditor);
  shows(m_driver.QueryResults(), m_model.qrResults);
  if (const auto results = m_driver.QueryResults(); results && m_model.qrResults) {
    if (m_model.qrResults->bShown) {
      Same("the grid's query", results->QueryName(), m_model.qrResults->sName);
      Same("the grid's text", results->SqlText(), m_model.qrResults->sSql);
    }
  }
}

/// The menu of one item, another each time.
void RandomConsole::CompareMenu() {
  const auto items = m_model.Items();
  const auto& item = *items[Number(static_cast<unsigned>(items.size()))];
  fakes::FakeContextMenu menu;
  m_driver.snapIn->Views_AddTopMenuItems(
      m_driver.console->CurrentView(), fakes::FakeSelection(m_driver.Item(item.sKey)), menu, true);
  Texts names;
  for (const auto& top : menu.menus) {
    for (const auto& entry : top.items) names.push_back((entry.bEnabled ? "" : "-") + entry.sName);
  }
  Same("menu of " + item.sKey, names, model::TreeModel::MenuOf(item));
}

}  // namespace orvane::snapin
