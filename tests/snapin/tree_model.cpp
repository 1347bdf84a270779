// The events of the console, as the model answers them.
#include <algorithm>
#include <utility>

#include "tests/snapin/tree_model_rules.h"

namespace orvane::snapin::model {

namespace {

void Collect(const ItemPtr& item, std::vector<ItemPtr>& items) {
  items.push_back(item);
  for (const auto& child : item->children) Collect(child, items);
}

}  // namespace

TreeModel::TreeModel(World& world) : m_world(world) {
  NewDocument();
}

Root& TreeModel::NeedRoot() const {
  if (!root) throw Stop{};
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
  if (other && other != rootItem) throw Stop{};
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
  throw Stop{};
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
    if (const auto nameless = Lookup(server->catalogs, "")) {
      if (!Find(item.sKey + ".")) {
        AddItem("Catalog", item.sKey + ".", item, "", true)->tag = nameless;
      }
    }
  } else if (item.sType == "Catalog") {
    const auto catalog = TagOf<Catalog>(item);
    if (catalog->sName.empty()) return;
    const auto line = Alive(catalog->server)->line;
    m_world.ForEachName(SchemaNumber::Tables, line, catalog->sName, "",
                        [&](const Text& sTable) { AddTableItem(item, catalog, line, sTable); });
  } else if (item.sType == "Queries") {
    for (const auto& query : TagOf<Server>(item)->queries) AddQueryItem(item, query);
  }
}

void TreeModel::OpenLine(Server& server, const Text& sName) {
  ++m_world.nLogons;
  if (m_world.historian.bCancelLogon) throw Stop{};
  if (!m_world.historian.Server(sName)) throw Stop{};
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
      if (i >= table->columns.size()) throw Stop{};
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

// ---- the document

bool TreeModel::Save() {
  if (!root || !m_world.bNoProperties) return true;
  for (const auto& server : root->servers) {
    if (!server->line) continue;
    Guard([] { throw Stop{}; });
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
