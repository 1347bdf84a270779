// The commands, as the model carries them out.
#include <algorithm>
#include <utility>

#include "tests/snapin/tree_model_rules.h"

namespace orvane::snapin::model {

using platform::MsgBoxButtons;

namespace {

constexpr Long kHourglass = 11;

Text InQuotes(const Text& sText) {
  return "\"" + sText + "\"";
}

Long NumberOf(const Text& sText) {
  const bool bDigits = sText.find_first_not_of("0123456789- ") == Text::npos;
  if (!bDigits) throw Stop{};
  const long long llNumber = std::stoll(sText);
  if (llNumber != static_cast<Long>(llNumber)) throw Stop{};
  return static_cast<Long>(llNumber);
}

}  // namespace

bool TreeModel::Confirmed(const Text& sTitle) {
  m_world.Show(sTitle, MsgBoxButtons::YesNo);
  return m_world.bAnswerYes;
}

void TreeModel::ForeignCommand() {
  Guard([] { throw Stop{}; });
}

void TreeModel::AddServer(const Text& sChosen) {
  Guard([&] {
    const auto server = std::make_shared<Server>(m_world);
    OpenLine(*server, sChosen);
    if (m_world.historian.bFailDataSource) {
      server->line.reset();  // never stored, so nobody closes it
      throw Stop{};
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
    if (!Confirmed("Confirm Server Removal")) return;
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
    if (!server->line) throw Stop{};
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
      throw Stop{};
    }
    m_world.lPointer = 0;
    const auto catalog = std::make_shared<Catalog>();
    catalog->sName = typed->sName;
    if (m_world.ByGuid()) {
      m_world.statements.push_back("SELECT Identity FROM Orvane..Historians WHERE Name = '" +
                                   typed->sName + "'");
      ++m_world.nStatements;
      if (m_world.bRefuseLookup) throw Stop{};
      if (!m_world.sIdentity) m_world.Show("", MsgBoxButtons::OkOnly);
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
    if (!Confirmed("Confirm Catalog Removal")) return;
    const auto server = Alive(catalog->server);
    if (!catalog->sName.empty()) DropOnServer(*server, *catalog);
    Drop(server->catalogs, catalog->sName);
    RemoveItem(item->sKey);
  });
}

void TreeModel::DropOnServer(const Server& server, const Catalog& catalog) {
  if (!server.line) throw Stop{};
  m_world.statements.push_back("DROP DATABASE " + InQuotes(catalog.sName));
  ++m_world.nStatements;
  auto& catalogs = m_world.historian.Server(server.line->sServer)->catalogs;
  const bool bThere = fakes::FakeHistorian::Find(catalogs, catalog.sName) != nullptr;
  if (m_world.bRefuseStatement || !bThere) throw Stop{};
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
      m_world.Show(kError, MsgBoxButtons::OkOnly);
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
      m_world.Show(kError, MsgBoxButtons::OkOnly);
    }
    if (!accepted) return;
    const auto held = std::find(server->queries.begin(), server->queries.end(), query);
    const bool bRenamed = accepted->sName != query->sName;
    const Text sFolder = item->sKey.substr(0, item->sKey.size() - item->sName.size());
    const auto other = Find(sFolder + accepted->sName);
    const bool bTaken = other && other != item;
    if (bRenamed || held == server->queries.end()) {
      File(server->queries, query, *accepted);
      if (const auto folder = Find(sFolder.substr(0, sFolder.size() - 1))) folder->bMark = true;
      if (bTaken) throw Stop{};
    } else {
      query->sSql = accepted->sSql;
    }
    if (!bTaken) {
      item->sKey = sFolder + accepted->sName;
      item->sName = accepted->sName;
    }
    query->bRows = false;
    item->texts = {query->sName, query->sSql};
    if (!qrResults || !IsShown(*item)) return;
    qrResults->sName = query->sName;
    const bool bNewText = std::exchange(qrResults->sSql, query->sSql) != query->sSql;
    if (bNewText || !bRenamed) ExecuteQuery();
  });
}

void TreeModel::File(std::vector<QueryPtr>& list, const QueryPtr& query, const Typed& typed) {
  // One that was left out by an earlier refusal comes back at the end.
  auto place = std::find(list.begin(), list.end(), query);
  if (place != list.end()) place = list.erase(place);
  query->sName = typed.sName;
  query->sSql = typed.sSql;
  if (Lookup(list, typed.sName)) throw Stop{};
  list.insert(place, query);
}

void TreeModel::RemoveQuery(const ItemPtr& item) {
  Guard([&] {
    const auto query = TagOf<Query>(*item);
    if (!Confirmed("Confirm Query Removal")) return;
    const auto server = Alive(query->server);
    std::erase(server->queries, query);
    const Text sFolder = item->sKey.substr(0, item->sKey.size() - item->sName.size() - 1);
    RemoveItem(item->sKey);
    if (server->queries.empty()) Find(sFolder)->bMark = false;
  });
}

}  // namespace orvane::snapin::model
