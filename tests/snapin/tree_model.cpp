#include "tests/snapin/tree_model.h"

#include <algorithm>
#include <utility>

namespace orvane::snapin::model {

using platform::MsgBoxButtons;

namespace {

constexpr const char* kStructureView = "TableStructureListView";
constexpr const char* kEditorView = "TableEditorOcxView";
constexpr const char* kResultsView = "QueryResultsOcxView";
constexpr const char* kNotConnected = "The server is not connected; connect it first.";
constexpr const char* kItemTaken = "The item is already in the tree.";
constexpr const char* kNameTaken = "Query with the specified name already exists.";
constexpr Long kHourglass = 11;

Text InQuotes(const Text& sText) {
  return "\"" + sText + "\"";
}
[[noreturn]] void StopKeyTaken(const Text& sKey) {
  throw Stop{"The key " + InQuotes(sKey) + " is already in the collection; choose another name."};
}
[[noreturn]] void StopNoKey(const Text& sKey) {
  throw Stop{"The argument is invalid: the collection has no key " + InQuotes(sKey) +
             "; check the name."};
}

template <class T>
auto Position(std::vector<std::shared_ptr<T>>& list, const Text& sName) {
  return std::find_if(list.begin(), list.end(),
                      [&](const auto& node) { return Folded(node->sName) == Folded(sName); });
}
template <class T>
std::shared_ptr<T> Lookup(std::vector<std::shared_ptr<T>>& list, const Text& sName) {
  const auto position = Position(list, sName);
  return position == list.end() ? nullptr : *position;
}
void Refuse(const GridPtr& grid, const std::string& sStep) {
  if (grid->sFailing == sStep) throw Stop{"The grid cannot do that."};
}

template <class T>
void Append(std::vector<std::shared_ptr<T>>& list, const std::shared_ptr<T>& node) {
  if (Lookup(list, node->sName)) StopKeyTaken(node->sName);
  list.push_back(node);
}
template <class T>
void Drop(std::vector<std::shared_ptr<T>>& list, const Text& sName) {
  const auto position = Position(list, sName);
  if (position == list.end()) StopNoKey(sName);
  list.erase(position);
}

template <class T>
std::shared_ptr<T> TagOf(const Item& item) {
  if (!item.tag) {
    throw Stop{InQuotes(item.sName) + " stands for nothing any more; refresh the tree."};
  }
  auto node = std::dynamic_pointer_cast<T>(item.tag);
  if (!node) throw Stop{InQuotes(item.sName) + " stands for something else; refresh the tree."};
  return node;
}
template <class T>
std::shared_ptr<T> Alive(const std::weak_ptr<T>& node) {
  auto strong = node.lock();
  if (!strong) throw Stop{"The item is no longer in the tree; select another one."};
  return strong;
}

Long NumberOf(const Text& sText) {
  const bool bDigits = sText.find_first_not_of("0123456789- ") == Text::npos;
  if (!bDigits) throw Stop{InQuotes(sText) + " is not a number; enter digits only."};
  const long long llNumber = std::stoll(sText);
  if (llNumber != static_cast<Long>(llNumber)) {
    throw Stop{InQuotes(sText) + " is too large; enter a number from -2147483648 to 2147483647."};
  }
  return static_cast<Long>(llNumber);
}

void Collect(const ItemPtr& item, std::vector<ItemPtr>& items) {
  items.push_back(item);
  for (const auto& child : item->children) Collect(child, items);
}

/// Catalog and table of "SELECT * FROM catalog..table"; empty for another text.
std::pair<Text, Text> Source(const Text& sSql) {
  const Text sStart = "SELECT * FROM ";
  const std::size_t nDots = sSql.find("..");
  if (!sSql.starts_with(sStart) || nDots == Text::npos) return {};
  return {sSql.substr(sStart.size(), nDots - sStart.size()), sSql.substr(nDots + 2)};
}

}  // namespace

Text Folded(const Text& sName) {
  Text sFolded;
  for (std::size_t i = 0; i < sName.size(); ++i) {
    if (sName.compare(i, 2, "Ö") == 0) {
      sFolded += "ö";
      ++i;
    } else if (sName.compare(i, 2, "ß") == 0) {
      sFolded += "ss";
      ++i;
    } else {
      const char c = sName[i];
      sFolded += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
  }
  return sFolded;
}

Text DefaultFilter(const Root& root, const Text& sCatalog, const Text& sTable) {
  const bool bTimed = sTable == "Data" || sTable == "Data2" || sTable == "Orv_Data";
  if (!bTimed || sCatalog.empty() || sCatalog == "Orvane" || sCatalog == "Orv_Orvane") return {};
  if (root.sStart.empty() && root.sEnd.empty()) return {};
  if (root.sEnd.empty()) return "Timestamp >= '" + root.sStart + "'";
  if (root.sStart.empty()) return "Timestamp <= '" + root.sEnd + "'";
  return "Timestamp BETWEEN '" + root.sStart + "' AND '" + root.sEnd + "'";
}

// ---- the world

bool World::ByGuid() const {
  if (bNoProperties)
    throw Stop{"The provider has no property \"Historians By GUID\"; check its name."};
  return historian.options.back().second == platform::Value(true);
}

void World::Show(const Text& sText, const Text& sTitle, MsgBoxButtons buttons) {
  boxes.push_back({sText, sTitle, buttons});
}

void World::ForEachName(SchemaNumber schema, const LinePtr& line, const Text& sCatalog,
                        const Text& sTable, const std::function<void(const Text&)>& use) const {
  if (!line) throw Stop{kNotConnected};
  if (!line->bOpen) throw Stop{"The connection is closed."};
  const bool bFault = schemaFault && schemaFault->schema == schema;
  if (bFault && schemaFault->nRow < 0) throw Stop{"The rowset is refused."};
  Texts names;
  if (schema == SchemaNumber::Catalogs) {
    for (const auto& catalog : historian.Server(line->sServer)->catalogs) {
      names.push_back(catalog.sName);
    }
  } else if (schema == SchemaNumber::Columns) {
    if (const auto* table = historian.Table(line->sServer, sCatalog, sTable)) {
      for (const auto& column : table->columns) names.push_back(column.sName);
    }
  } else if (const auto* catalog =
                 fakes::FakeHistorian::Find(historian.Server(line->sServer)->catalogs, sCatalog)) {
    for (const auto& table : catalog->tables) names.push_back(table.sName);
  }
  int nRow = 0;
  for (const Text& sName : names) {
    if (bFault && nRow == schemaFault->nRow) throw Stop{"The cell cannot be read."};
    use(sName);
    ++nRow;
  }
}

void World::Run(const LinePtr& line, const Text& sCatalog, const Text& sTable) {
  if (!line) throw Stop{"The grid has no connection; connect the server."};
  if (!line->bOpen) throw Stop{"The connection is closed."};
  ++nStatements;
  if (!historian.Table(line->sServer, sCatalog, sTable)) throw Stop{"The statement cannot be run."};
}

void World::Close(Line& line) {
  ++nCloses;
  if (historian.bFailClose) throw Stop{"The connection cannot be closed."};
  line.bOpen = false;
}

Server::~Server() {
  try {
    if (line) world.Close(*line);
  } catch (const Stop&) {
    // Nobody is told.
  }
}

// ---- events of the console

TreeModel::TreeModel(World& world) : m_world(world) {
  NewDocument();
}

template <class Body>
void TreeModel::Guard(Body&& body) {
  try {
    body();
  } catch (const Stop& stop) {
    m_world.Show(stop.sText, "Error", MsgBoxButtons::OkOnly);
  }
}

Root& TreeModel::NeedRoot() const {
  if (!root) throw Stop{"No servers are loaded; open a document or create a new one."};
  return *root;
}

std::vector<ItemPtr> TreeModel::Items() const {
  std::vector<ItemPtr> items;
  Collect(rootItem, items);
  return items;
}

ItemPtr TreeModel::Find(const Text& sKey) const {
  for (const auto& item : Items()) {
    if (item->sKey == sKey) return item;
  }
  return nullptr;
}

ItemPtr TreeModel::AddItem(const char* sType, const Text& sKey, Item& parent, const Text& sName,
                           bool bMark) {
  // The static node is known under the empty key here, and is in nobody's way.
  const ItemPtr other = Find(sKey);
  if (other && other != rootItem) throw Stop{kItemTaken};
  auto item = std::make_shared<Item>();
  item->sType = sType;
  item->sKey = sKey;
  item->sName = sName;
  item->texts = {sName};
  item->bMark = bMark;
  parent.children.push_back(item);
  return item;
}

void TreeModel::RemoveItem(const Text& sKey) {
  for (const auto& parent : Items()) {
    if (std::erase_if(parent->children, [&](const auto& child) { return child->sKey == sKey; })) {
      return;
    }
  }
  throw Stop{"The item is not in the tree."};
}

void TreeModel::Expand(const ItemPtr& item) {
  if (std::exchange(item->bExpandedOnce, true)) return;
  ExpandAgain(item);
}

void TreeModel::ExpandAgain(const ItemPtr& item) {
  Guard([&] { ExpandBody(*item); });
}

void TreeModel::ExpandBody(Item& item) {
  if (item.sType == "Servers") {
    for (const auto& server : NeedRoot().servers) {
      AddItem("Server", server->sName, item, server->sName, true)->tag = server;
    }
  } else if (item.sType == "Server") {
    ExpandServer(item);
  } else if (item.sType == "Catalogs") {
    const auto server = TagOf<Server>(item);
    m_world.ForEachName(SchemaNumber::Catalogs, server->line, "", "", [&](const Text& sName) {
      const auto child = AddItem("Catalog", item.sKey + "." + sName, item, sName, true);
      auto catalog = Lookup(server->catalogs, sName);
      if (!catalog) {
        catalog = std::make_shared<Catalog>();
        catalog->sName = sName;
        catalog->server = server;
        server->catalogs.push_back(catalog);
      }
      child->tag = catalog;
    });
  } else if (item.sType == "Catalog") {
    const auto catalog = TagOf<Catalog>(item);
    const auto line = Alive(catalog->server)->line;
    m_world.ForEachName(SchemaNumber::Tables, line, catalog->sName, "",
                        [&](const Text& sTable) { AddTableItem(item, catalog, line, sTable); });
  } else if (item.sType == "Queries") {
    for (const auto& query : TagOf<Server>(item)->queries) AddQueryItem(item, query);
  }
}

void TreeModel::OpenLine(Server& server, const Text& sName) {
  ++m_world.nLogons;
  if (m_world.historian.bCancelLogon) throw Stop{"The logon was cancelled."};
  if (!m_world.historian.Server(sName)) {
    throw Stop{"The server " + InQuotes(sName) + " is unknown; check its name."};
  }
  server.line = std::make_shared<Line>(Line{sName});
}

void TreeModel::ExpandServer(Item& item) {
  const auto server = TagOf<Server>(item);
  if (!server->line) {
    try {
      OpenLine(*server, server->sName);
    } catch (const Stop&) {
      item.bMark = false;
      throw;
    }
  }
  AddItem("Catalogs", item.sKey + ".Catalogs", item, "Catalogs", true)->tag = server;
  AddItem("Queries", item.sKey + ".Queries", item, "Queries", false)->tag = server;
}

void TreeModel::AddTableItem(Item& item, const CatalogPtr& catalog, const LinePtr& line,
                             const Text& sTable) {
  const auto child = AddItem("Table", item.sKey + "." + sTable, item, sTable, false);
  auto table = Lookup(catalog->tables, sTable);
  if (!table) {
    table = std::make_shared<Table>();
    table->sCatalog = catalog->sName;
    table->sName = sTable;
    table->catalog = catalog;
    catalog->tables.push_back(table);
    ApplyDefaults(*table);
  }
  Texts names;
  m_world.ForEachName(SchemaNumber::Columns, line, table->sCatalog, table->sName,
                      [&](const Text& sName) { names.push_back(sName); });
  if (table->columns.empty()) {
    table->columns = names;
  } else {
    // The deliberate walk: up to the count of before, past the one behind a removed one.
    const std::size_t nCount = table->columns.size();
    for (std::size_t i = 0; i < nCount; ++i) {
      if (i >= table->columns.size()) throw Stop{"No such column."};
      if (std::find(names.begin(), names.end(), table->columns[i]) == names.end()) {
        table->columns.erase(table->columns.begin() + static_cast<std::ptrdiff_t>(i));
      }
    }
  }
  child->tag = table;
}

void TreeModel::ApplyDefaults(Table& table) {
  table.lMaxRows = NeedRoot().lMaxRows;
  table.lTimeout = root->lTimeout;
  if (table.bDefaultFilter) table.sFilter = DefaultFilter(*root, table.sCatalog, table.sName);
}

void TreeModel::AddQueryItem(Item& folder, const QueryPtr& query) {
  const auto item = AddItem("Query", folder.sKey + "." + query->sName, folder, query->sName, false);
  item->texts = {query->sName, query->sSql};
  item->tag = query;
}

// ---- the result pane

void TreeModel::Select(const ItemPtr& item, bool bGrid) {
  Hide();
  Text sDefault = "DefaultListView";
  if (item->sType == "Table") sDefault = kEditorView;
  if (item->sType == "Query") sDefault = kResultsView;
  if (item->sType == "Queries") sDefault = "QueriesListView";
  Show(item, sDefault, bGrid);
}

void TreeModel::ShowView(const Text& sViewName, bool bGrid) {
  const ItemPtr item = viewItem;
  Hide();
  Show(item, sViewName, bGrid);
}

void TreeModel::Show(const ItemPtr& item, const Text& sViewName, bool bGrid) {
  viewItem = item;
  sView = sViewName;
  if (item->sType == "Table" && sViewName == kStructureView) {
    Guard([&] {
      const auto table = TagOf<Table>(*item);
      const auto line = Alive(Alive(table->catalog)->server)->line;
      if (!line || !line->bOpen) return;
      if (m_world.schemaFault && m_world.schemaFault->nRow < 0 &&
          m_world.schemaFault->schema == SchemaNumber::Columns) {
        return;
      }
      m_world.ForEachName(SchemaNumber::Columns, line, table->sCatalog, table->sName,
                          [](const Text&) {});
    });
  }
  const bool bEditor = sViewName == kEditorView;
  const bool bResults = sViewName == kResultsView;
  if (bEditor) Guard([&] { TagOf<Table>(*item); });
  Guard([&] {
    if (item->sType == "Table") {
      const auto table = TagOf<Table>(*item);
      tblEditor = bEditor && bGrid ? std::make_shared<Grid>() : nullptr;
      if (!tblEditor) return;
      tblEditor->bSql = NeedRoot().bSql;
      tblEditor->line = Alive(Alive(table->catalog)->server)->line;
      tblEditor->sCatalog = table->sCatalog;
      tblEditor->sTable = table->sName;
      if (table->bRows) {
        tblEditor->bRows = true;
      } else {
        RequeryTable();
      }
    } else if (item->sType == "Query") {
      const auto query = TagOf<Query>(*item);
      qrResults = bResults && bGrid ? std::make_shared<Grid>() : nullptr;
      if (!qrResults) return;
      qrResults->bSql = NeedRoot().bSql;
      qrResults->line = Alive(query->server)->line;
      qrResults->sName = query->sName;
      qrResults->sSql = query->sSql;
      if (query->bRows) {
        qrResults->bRows = true;
      } else {
        ExecuteQuery();
      }
    }
  });
  m_bRefreshOffered = tblEditor || qrResults;
  m_nToolbarKind = tblEditor ? 1 : qrResults ? 2 : 0;
}

void TreeModel::Hide() {
  if (!viewItem) return;
  Guard([&] {
    if (viewItem->sType == "Table" && tblEditor) {
      Refuse(tblEditor, "DetachRecordset");
      TagOf<Table>(*viewItem)->bRows = tblEditor->bRows;
      Refuse(tblEditor, "AttachRecordset none 0");
      tblEditor.reset();
    } else if (viewItem->sType == "Query" && qrResults) {
      TagOf<Query>(*viewItem)->bRows = qrResults->bRows;
      Refuse(qrResults, "Recordset none");
      qrResults.reset();
    }
  });
  viewItem.reset();
  for (const GridPtr& left : {tblEditor, qrResults}) {
    if (left) left->bShown = false;
  }
}

void TreeModel::RequeryTable() {
  Refuse(tblEditor, "Requery");
  m_world.Run(tblEditor->line, tblEditor->sCatalog, tblEditor->sTable);
  tblEditor->bRows = true;
}

void TreeModel::ExecuteQuery() {
  Refuse(qrResults, "Execute");
  const auto [sCatalog, sTable] = Source(qrResults->sSql);
  m_world.Run(qrResults->line, sCatalog, sTable);
  qrResults->bRows = true;
}

void TreeModel::Refresh() {
  Guard([&] {
    if (tblEditor) RequeryTable();
    if (qrResults) ExecuteQuery();
  });
}

void TreeModel::Press(const Text& sKey) {
  Guard([&] {
    if (sKey == "Sql") {
      NeedRoot().bSql = !NeedRoot().bSql;
      if (tblEditor) {
        tblEditor->bSql = root->bSql;
      } else if (qrResults) {
        qrResults->bSql = root->bSql;
      }
    } else if (sKey == "Context") {
      NeedRoot().bContext = !NeedRoot().bContext;
    } else if (tblEditor || qrResults) {
      const GridPtr& grid = tblEditor ? tblEditor : qrResults;
      if (sKey == "Delete") Refuse(grid, "DeleteSelectedRows");
      if (sKey == "MoveFirst") Refuse(grid, "MoveFirst");
      if (sKey == "SortAsc" && tblEditor) Refuse(grid, "SortAscending");
    }
  });
}

// ---- the document

bool TreeModel::Save() {
  if (!root || !m_world.bNoProperties) return true;
  for (const auto& server : root->servers) {
    if (!server->line) continue;
    Guard([] { throw Stop{"The provider has no property \"Log File\"; check its name."}; });
    return false;
  }
  return true;
}

void TreeModel::Reopen() {
  // What a document keeps: settings, lists and their order; no connection and no rows.
  auto loaded = std::make_shared<Root>();
  loaded->lMaxRows = root->lMaxRows;
  loaded->lTimeout = root->lTimeout;
  loaded->sStart = root->sStart;
  loaded->sEnd = root->sEnd;
  loaded->bSql = root->bSql;
  loaded->bContext = root->bContext;
  for (const auto& old : root->servers) {
    auto server = std::make_shared<Server>(m_world);
    server->sName = old->sName;
    server->sOptions = old->sOptions;
    if (old->line) {
      for (const auto& [sName, vtValue] : m_world.historian.options) {
        server->sOptions += sName + " = " + platform::ToText(vtValue) + ";";
      }
    }
    for (const auto& oldCatalog : old->catalogs) {
      auto catalog = std::make_shared<Catalog>();
      catalog->sName = oldCatalog->sName;
      catalog->server = server;
      for (const auto& oldTable : oldCatalog->tables) {
        auto table = std::make_shared<Table>();
        table->sCatalog = oldTable->sCatalog;
        table->sName = oldTable->sName;
        table->columns = oldTable->columns;
        table->sFilter = oldTable->sFilter;
        table->sort = oldTable->sort;
        table->lMaxRows = oldTable->lMaxRows;
        table->lTimeout = oldTable->lTimeout;
        table->bDefaultFilter = oldTable->bDefaultFilter;
        table->catalog = catalog;
        catalog->tables.push_back(table);
      }
      server->catalogs.push_back(catalog);
    }
    for (const auto& oldQuery : old->queries) {
      auto query = std::make_shared<Query>();
      query->sName = oldQuery->sName;
      query->sSql = oldQuery->sSql;
      query->server = server;
      server->queries.push_back(query);
    }
    loaded->servers.push_back(server);
  }
  NewDocument();
  root = loaded;
  rootItem->tag = root;
}

void TreeModel::Unload() {
  tblEditor.reset();
  qrResults.reset();
  root.reset();  // the static node's tag keeps it
}

void TreeModel::NewDocument() {
  Hide();
  Unload();
  rootItem = std::make_shared<Item>();
  rootItem->sType = "Servers";
  rootItem->sName = "ORVANE Servers";
  rootItem->bMark = true;
  root = std::make_shared<Root>();
  rootItem->tag = root;
  m_nToolbarKind = 0;
  m_bRefreshOffered = false;
}

// ---- commands

bool TreeModel::Confirmed(const Text& sQuestion, const Text& sTitle) {
  m_world.Show(sQuestion, sTitle, MsgBoxButtons::YesNo);
  return m_world.bAnswerYes;
}

void TreeModel::ForeignCommand(const ItemPtr& item) {
  Guard([&] {
    if (!item->tag) {
      throw Stop{InQuotes(item->sName) + " stands for nothing any more; refresh the tree."};
    }
    throw Stop{InQuotes(item->sName) + " stands for something else; refresh the tree."};
  });
}

void TreeModel::AddServer(const Text& sChosen) {
  Guard([&] {
    const auto server = std::make_shared<Server>(m_world);
    OpenLine(*server, sChosen);
    if (m_world.historian.bFailDataSource) {
      server->line.reset();  // never stored, so nobody closes it
      throw Stop{"The data source cannot be read."};
    }
    server->sName = sChosen;
    bool bItem = true;
    if (!rootItem->bExpandedOnce) {
      if (m_world.bRootCannotExpand) {
        bItem = false;
      } else {
        Expand(rootItem);
      }
    }
    Append(NeedRoot().servers, server);
    if (bItem) AddItem("Server", sChosen, *rootItem, sChosen, true)->tag = server;
  });
}

void TreeModel::Connect(const ItemPtr& item) {
  Guard([&] {
    const auto server = TagOf<Server>(*item);
    OpenLine(*server, server->sName);
    if (item->bExpandedOnce) {
      ExpandServer(*item);
    } else {
      item->bMark = true;
    }
  });
}

void TreeModel::Disconnect(const ItemPtr& item) {
  Guard([&] {
    const auto server = TagOf<Server>(*item);
    if (tblEditor) {
      Refuse(tblEditor, "AttachRecordset none 0");
      tblEditor->bRows = false;
    }
    for (const auto& catalog : server->catalogs) {
      for (const auto& table : catalog->tables) table->bRows = false;
    }
    if (server->line) {
      m_world.Close(*server->line);
      server->line.reset();
    }
    item->children.clear();
    item->bMark = false;
  });
}

void TreeModel::RemoveServer(const ItemPtr& item) {
  Guard([&] {
    const auto server = TagOf<Server>(*item);
    if (!Confirmed("Are you sure you want to remove the " + InQuotes(server->sName) +
                       " server from the tree?",
                   "Confirm Server Removal")) {
      return;
    }
    Drop(NeedRoot().servers, server->sName);
    RemoveItem(item->sKey);
  });
}

void TreeModel::SetOptions(const std::optional<TypedOptions>& typed) {
  Guard([&] {
    NeedRoot();
    if (!typed) return;
    if (!typed->sMaxRows.empty()) root->lMaxRows = NumberOf(typed->sMaxRows);
    if (!typed->sTimeout.empty()) root->lTimeout = NumberOf(typed->sTimeout);
    root->sStart = typed->sStart;
    root->sEnd = typed->sEnd;
    for (const auto& server : root->servers) {
      for (const auto& catalog : server->catalogs) {
        for (const auto& table : catalog->tables) {
          ApplyDefaults(*table);
          table->bRows = false;
        }
      }
      for (const auto& query : server->queries) query->bRows = false;
    }
  });
}

void TreeModel::AddCatalog(const ItemPtr& folder, const std::optional<TypedCatalog>& typed) {
  Guard([&] {
    const auto server = TagOf<Server>(*folder);
    if (!typed || typed->sName.empty()) return;
    const Long lSize = typed->sSize.empty() ? 0 : NumberOf(typed->sSize);
    m_world.lPointer = kHourglass;
    if (!server->line) throw Stop{kNotConnected};
    Text sStatement = "CREATE DATABASE " + InQuotes(typed->sName) + " ";
    if (lSize > 0) {
      sStatement += "ON (SIZE=" + std::to_string(lSize) + ")";
    } else if (!typed->sPath.empty()) {
      sStatement += "ON (PATH='" + typed->sPath + "')";
    }
    m_world.statements.push_back(sStatement);
    ++m_world.nStatements;
    auto& catalogs = m_world.historian.Server(server->line->sServer)->catalogs;
    if (m_world.bRefuseStatement || fakes::FakeHistorian::Find(catalogs, typed->sName)) {
      throw Stop{"The server refused."};
    }
    m_world.lPointer = 0;
    const auto catalog = std::make_shared<Catalog>();
    catalog->sName = typed->sName;
    if (m_world.ByGuid()) {
      m_world.statements.push_back("SELECT Identity FROM Orvane..Historians WHERE Name = '" +
                                   typed->sName + "'");
      ++m_world.nStatements;
      if (m_world.bRefuseLookup) throw Stop{"The lookup failed."};
      if (!m_world.sIdentity) {
        m_world.Show("Historian GUID not found.", "", MsgBoxButtons::OkOnly);
      }
      catalog->sName = m_world.sIdentity.value_or("");
    }
    catalog->server = server;
    Append(server->catalogs, catalog);
    if (!folder->bExpandedOnce) return;
    AddItem("Catalog", folder->sKey + "." + catalog->sName, *folder, catalog->sName, true)->tag =
        catalog;
  });
}

void TreeModel::RemoveCatalog(const ItemPtr& item) {
  Guard([&] {
    const auto catalog = TagOf<Catalog>(*item);
    if (!Confirmed("Are you sure you want to remove the " + InQuotes(catalog->sName) + " catalog?",
                   "Confirm Catalog Removal")) {
      return;
    }
    const auto server = Alive(catalog->server);
    if (!server->line) throw Stop{kNotConnected};
    m_world.statements.push_back("DROP DATABASE " + InQuotes(catalog->sName));
    ++m_world.nStatements;
    auto& catalogs = m_world.historian.Server(server->line->sServer)->catalogs;
    if (m_world.bRefuseStatement || !fakes::FakeHistorian::Find(catalogs, catalog->sName)) {
      throw Stop{"The server refused."};
    }
    Drop(server->catalogs, catalog->sName);
    RemoveItem(item->sKey);
  });
}

bool TreeModel::BuilderComesUp(const ItemPtr& item) {
  bool bUp = false;
  Guard([&] {
    const auto table = TagOf<Table>(*item);
    m_world.ForEachName(SchemaNumber::Columns, Alive(Alive(table->catalog)->server)->line,
                        table->sCatalog, table->sName, [](const Text&) {});
    NeedRoot();
    bUp = true;
  });
  return bUp;
}

void TreeModel::Build(const ItemPtr& item, const std::optional<Built>& built) {
  if (!built) return;
  Guard([&] {
    const auto table = TagOf<Table>(*item);
    table->columns = built->columns;
    table->bDefaultFilter = built->bDefaultFilter;
    table->sFilter = built->sFilter;
    table->sort = built->sort;
    table->bRows = false;
    if (tblEditor && IsShown(*item)) RequeryTable();
  });
}

void TreeModel::NewQuery(const ItemPtr& folder, const std::vector<Typed>& answers) {
  Guard([&] {
    const auto server = TagOf<Server>(*folder);
    QueryPtr query;
    for (const Typed& typed : answers) {
      if (typed.sName.empty()) return;
      if (!Lookup(server->queries, typed.sName)) {
        query = std::make_shared<Query>();
        query->sName = typed.sName;
        query->sSql = typed.sSql;
        query->server = server;
        server->queries.push_back(query);
        break;
      }
      m_world.Show(kNameTaken, "Error", MsgBoxButtons::OkOnly);
    }
    if (!query) return;
    if (folder->bExpandedOnce) AddQueryItem(*folder, query);
    folder->bMark = true;
  });
}

void TreeModel::EditQuery(const ItemPtr& item, const std::vector<Typed>& answers) {
  Guard([&] {
    const auto query = TagOf<Query>(*item);
    const auto server = Alive(query->server);
    const Typed* accepted = nullptr;
    for (const Typed& typed : answers) {
      if (typed.sName.empty()) return;
      const bool bTaken = std::any_of(server->queries.begin(), server->queries.end(),
                                      [&](const auto& q) { return q->sName == typed.sName; });
      if (typed.sName == query->sName || !bTaken) {
        accepted = &typed;
        break;
      }
      m_world.Show(kNameTaken, "Error", MsgBoxButtons::OkOnly);
    }
    if (!accepted) return;
    if (accepted->sName != query->sName) {
      Rename(*server, query, *accepted);
      const Text sFolder = item->sKey.substr(0, item->sKey.size() - item->sName.size());
      if (const auto other = Find(sFolder + accepted->sName); other && other != item) {
        throw Stop{kItemTaken};
      }
      item->sKey = sFolder + accepted->sName;
      item->sName = accepted->sName;
    } else {
      query->sSql = accepted->sSql;
    }
    query->bRows = false;
    item->texts = {query->sName, query->sSql};
    if (!qrResults || !IsShown(*item)) return;
    qrResults->sName = query->sName;
    qrResults->sSql = query->sSql;
    ExecuteQuery();
  });
}

void TreeModel::Rename(Server& server, const QueryPtr& query, const Typed& typed) {
  auto& list = server.queries;
  // The place is that of the exact name; what goes is whatever the list files under it. The two
  // differ for a query that an earlier renaming has lost.
  const auto place = std::find_if(list.begin(), list.end(),
                                  [&](const auto& q) { return q->sName == query->sName; });
  const auto nPlace = place == list.end() ? -1 : place - list.begin();
  Drop(list, query->sName);
  query->sName = typed.sName;
  query->sSql = typed.sSql;
  if (nPlace < 0) {
    throw Stop{"The position -1 is out of range; " +
               (list.empty() ? Text("the collection is empty.")
                             : "choose a position from 1 to " + std::to_string(list.size()) + ".")};
  }
  if (Lookup(list, typed.sName)) StopKeyTaken(typed.sName);
  list.insert(list.begin() + nPlace, query);
}

void TreeModel::RemoveQuery(const ItemPtr& item) {
  Guard([&] {
    const auto query = TagOf<Query>(*item);
    if (!Confirmed("Are you sure you want to remove the " + InQuotes(query->sName) + " query?",
                   "Confirm Query Removal")) {
      return;
    }
    const auto server = Alive(query->server);
    Drop(server->queries, query->sName);
    const Text sFolder = item->sKey.substr(0, item->sKey.size() - item->sName.size() - 1);
    RemoveItem(item->sKey);
    if (server->queries.empty()) Find(sFolder)->bMark = false;
  });
}

Texts TreeModel::MenuOf(const Item& item) {
  if (item.sType == "Servers") return {"m_mnuServersConnect", "m_mnuOptions"};
  if (item.sType == "Server") {
    const bool bConnected = dynamic_cast<const Server&>(*item.tag).line != nullptr;
    return {bConnected ? "-m_mnuConnect" : "m_mnuConnect",
            bConnected ? "m_mnuDisconnect" : "-m_mnuDisconnect", "m_mnuRemoveServer"};
  }
  if (item.sType == "Catalogs") return {"m_mnuAddCatalog"};
  if (item.sType == "Catalog") {
    const Text& sName = dynamic_cast<const Catalog&>(*item.tag).sName;
    return sName == "Functions" || sName == "Orvane" ? Texts{} : Texts{"m_mnuCatalogRemove"};
  }
  if (item.sType == "Table") return {"m_mnuQuery"};
  if (item.sType == "Queries") return {"m_mnuNewQuery"};
  return {"m_mnuEdit", "m_mnuRemove"};
}

}  // namespace orvane::snapin::model
