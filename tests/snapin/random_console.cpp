#include "tests/snapin/random_console.h"

#include <algorithm>
#include <utility>

#include "tests/snapin/random_console_names.h"

namespace orvane::snapin {

namespace {

constexpr const char* kGridSteps[] = {"Requery",       "Execute",         "DeleteSelectedRows",
                                      "SortAscending", "DetachRecordset", "AttachRecordset none 0",
                                      "MoveFirst",     "Recordset none"};

}  // namespace

RandomConsole::RandomConsole(unsigned nSeed) : m_nState(nSeed * 2654435761U + 1) {
  m_driver.AddServer({"S1", {{"Plant", {NewTable("Pumps"), NewTable("Data")}}, {"Lab.A", {}}}});
  m_driver.AddServer({"S2", {{"Orvane", {NewTable("Historians")}}, {"Functions", {}}}});
  m_driver.AddServer({"s2", {{"Plant", {NewTable("Data")}}}});
  m_driver.AddServer({"Öfen", {{"Lab", {NewTable("Data"), NewTable("A.B")}}}});
  m_driver.AddServer({"öfen", {{"Lab", {NewTable("Data")}}, {"Orvane", {NewTable("Data")}}}});
  m_driver.AddServer({"S1.Catalogs", {{"Plant", {}}}});
  m_driver.historian->onExecute = [this](const Text& sText) { return Answer(sText); };
}

RandomConsole::~RandomConsole() {
  ClearFaults();
}

unsigned RandomConsole::Number(unsigned nBelow) {
  m_nState = m_nState * 6364136223846793005U + 1442695040888963407U;
  return static_cast<unsigned>((m_nState >> 33U) % nBelow);
}

void RandomConsole::Note(const Text& sCommand) {
  m_sHistory += sCommand + "\n";
}

Text RandomConsole::History() const {
  return m_sHistory;
}

// ---- one step

bool RandomConsole::Step() {
  m_world.boxes.clear();
  m_world.statements.clear();
  m_world.nCloses = 0;
  m_driver.ui->boxes.clear();
  m_driver.historian->log.clear();
  m_statements.clear();
  if (m_model.rootItem->bExpandedOnce || OneIn(3)) {
    PlanFaults();
    Command();
    ClearFaults();
  } else {
    Expand(m_model.rootItem);
  }
  Settle();
  Compare();
  return m_sDifferences.empty();
}

/// Now and then something refuses; the sentence behind the command in the history says what.
void RandomConsole::PlanFaults() {
  FakeHistorian& historian = *m_driver.historian;
  m_world.bAnswerYes = !OneIn(4);
  m_driver.ui->answer =
      m_world.bAnswerYes ? platform::MsgBoxResult::Yes : platform::MsgBoxResult::No;
  if (!m_world.bAnswerYes) Note("# No to questions");
  historian.options.back().second = OneIn(4);  // historians by GUID
  m_world.sIdentity.reset();
  if (!OneIn(3)) m_world.sIdentity = Text("{") + std::to_string(Number(4)) + "}";
  if (!OneIn(5)) return;
  switch (Number(9)) {
    case 0:
      historian.bCancelLogon = true;
      Note("# the logon is cancelled");
      break;
    case 1:
      historian.bFailClose = true;
      Note("# connections cannot be closed");
      break;
    case 2:
      historian.bFailDataSource = true;
      Note("# the data source cannot be read");
      break;
    case 3:
      m_world.bRefuseStatement = true;
      Note("# CREATE and DROP are refused");
      break;
    case 4:
      m_world.bRefuseLookup = true;
      Note("# the identity lookup is refused");
      break;
    case 5:
      m_world.bNoProperties = true;
      historian.options.clear();
      Note("# the provider has no properties");
      break;
    case 6:
      m_world.bRootCannotExpand = true;
      m_driver.console->staticItem->node->onExpand = [] {
        throw platform::Failure(5, "The root cannot be expanded.");
      };
      Note("# the root cannot be expanded");
      break;
    default: {
      const std::string sStep = Any(kGridSteps);
      // Only a grid that is shown: one left over by an earlier failure is out of reach here.
      if (m_model.tblEditor && m_model.tblEditor->bShown) {
        m_model.tblEditor->sFailing = sStep;
        m_faultyEditor = m_driver.TableEditor();
        m_faultyEditor->sFailing = sStep;
      }
      if (m_model.qrResults && m_model.qrResults->bShown) {
        m_model.qrResults->sFailing = sStep;
        m_faultyResults = m_driver.QueryResults();
        m_faultyResults->sFailing = sStep;
      }
      Note("# the grid refuses " + sStep);
    }
  }
}

void RandomConsole::PlanSchemaFault(const ItemPtr& item) {
  if (!OneIn(5)) return;
  const auto schema = item->sType == "Catalogs"               ? SchemaNumber::Catalogs
                      : item->sType == "Catalog" && !OneIn(3) ? SchemaNumber::Tables
                                                              : SchemaNumber::Columns;
  const int nRow = static_cast<int>(Number(4)) - 1;
  m_world.schemaFault = {schema, nRow};
  Note("# schema rowset " + std::to_string(static_cast<int>(schema)) + " fails at row " +
       std::to_string(nRow));
  m_driver.historian->schemas[schema] = [this, schema,
                                         nRow](FakeHistorian::Restrictions wanted) -> RecordsetPtr {
    if (nRow < 0) throw platform::Failure(3801, "The rowset is refused.");
    const auto text = [&](std::size_t n) { return platform::ToText(wanted[n]); };
    auto& catalogs = m_driver.historian->Server(m_sServer)->catalogs;
    std::vector<FakeRecordset::Row> rows;
    Text sField = "CATALOG_NAME";
    if (schema == SchemaNumber::Catalogs) {
      for (const auto& catalog : catalogs) rows.push_back({catalog.sName});
    } else if (schema == SchemaNumber::Tables) {
      sField = "TABLE_NAME";
      if (const auto* catalog = FakeHistorian::Find(catalogs, text(0))) {
        for (const auto& table : catalog->tables) rows.push_back({table.sName});
      }
    } else {
      sField = "COLUMN_NAME";
      if (const auto* table = m_driver.historian->Table(m_sServer, text(0), text(2))) {
        for (const auto& column : table->columns) rows.push_back({column.sName, Long{130}, true});
      }
    }
    auto rs = std::make_shared<FakeRecordset>(
        std::vector<fakes::FakeColumn>{{sField}, {"DATA_TYPE"}, {"IS_NULLABLE"}}, rows);
    rs->failing.insert({nRow, 0});
    See(rs);
    return rs;
  };
}

void RandomConsole::ClearFaults() {
  FakeHistorian& historian = *m_driver.historian;
  historian.bCancelLogon = historian.bFailClose = historian.bFailDataSource = false;
  historian.schemas.clear();
  if (historian.options.empty()) historian.options = FakeHistorian().options;
  m_world.schemaFault.reset();
  m_world.bRefuseStatement = m_world.bRefuseLookup = m_world.bNoProperties = false;
  if (m_model.tblEditor) m_model.tblEditor->sFailing.clear();
  if (m_model.qrResults) m_model.qrResults->sFailing.clear();
  if (m_faultyEditor) std::exchange(m_faultyEditor, {})->sFailing.clear();
  if (m_faultyResults) std::exchange(m_faultyResults, {})->sFailing.clear();
  if (std::exchange(m_world.bRootCannotExpand, false)) {
    m_driver.console->staticItem->node->onExpand = [this] {
      m_driver.Expand(scenarios::kStaticNode);
    };
  }
}

void RandomConsole::Command() {
  const ItemPtr item = AnyItem();
  const unsigned n = Number(200);
  if (n < 150) return ItemCommand(item);
  if (n < 162) return Press();
  if (n < 170) return Refresh();
  if (n < 176) return ShowStructure();
  if (n < 184) return ChangeWorld();
  if (n < 186) return ChangeRoot();
  if (n < 189) return SaveOnly();
  if (n < 191) return SaveAndReopen();
  if (n < 192) return UnloadAndStartAnew();
  if (n < 196) return ClickManyItems(item);
  ForeignCommand(item);
}

/// An item of any type that the tree has, the deeper the likelier.
ItemPtr RandomConsole::AnyItem() {
  constexpr const char* kTypes[] = {"Servers", "Server", "Catalogs", "Catalog", "Catalog", "Table",
                                    "Table",   "Table",  "Queries",  "Query",   "Query",   "Query"};
  const Text sType = Any(kTypes);
  std::vector<ItemPtr> items = m_model.Items();
  const bool bThere = std::any_of(items.begin(), items.end(),
                                  [&](const auto& item) { return item->sType == sType; });
  if (bThere) std::erase_if(items, [&](const auto& item) { return item->sType != sType; });
  return items[Number(static_cast<unsigned>(items.size()))];
}

void RandomConsole::ItemCommand(const ItemPtr& item) {
  m_sServer = ServerOf(*item);
  if (item->sType == "Catalogs" || item->sType == "Catalog" || item->sType == "Table") {
    PlanSchemaFault(item);
  }
  const bool bFolder = item->sType != "Table" && item->sType != "Query";
  if (bFolder && !item->bExpandedOnce && !OneIn(4)) return Expand(item);
  const unsigned n = Number(10);
  if (n < 3) return Select(item);
  if (n == 3 && OneIn(3)) return ExpandAgain(item);
  MenuCommand(item);
}

void RandomConsole::MenuCommand(const ItemPtr& item) {
  const Text& sType = item->sType;
  if (sType == "Servers") return OneIn(3) ? SetOptions() : AddServer();
  if (sType == "Server") {
    // A disabled item cannot be clicked, but a handler must not rely on that.
    const auto server = std::dynamic_pointer_cast<model::Server>(item->tag);
    const bool bConnect = (server->line == nullptr) != OneIn(8);
    if (OneIn(8)) return RemoveServer(item);
    if (bConnect) return Connect(item);
    return OneIn(2) ? Disconnect(item) : Select(item);
  }
  if (sType == "Catalogs") return AddCatalog(item);
  if (sType == "Catalog") {
    if (model::TreeModel::MenuOf(*item).empty() || OneIn(2)) return Select(item);
    return RemoveCatalog(item);
  }
  if (sType == "Table") return Build(item);
  if (sType == "Queries") return NewQuery(item);
  if (OneIn(5)) return RemoveQuery(item);
  EditQuery(item);
}

/// An item that goes takes the selection up to the next one that is left, as in every console.
void RandomConsole::Settle() {
  auto& view = m_driver.console->CurrentView();
  if (view.selected) {
    const auto item = m_driver.console->ScopeItems().Find(view.selected->Key());
    if (item != view.selected) view.selected.reset();
  }
  if (!m_selected) return;
  const auto items = m_model.Items();
  if (std::find(items.begin(), items.end(), m_selected) != items.end()) return;
  for (const Text& sKey : m_pathOfSelected) {
    if (const ItemPtr item = m_model.Find(sKey)) return Select(item);
  }
}

/// The server that answers what is asked for the item, empty without a connection.
Text RandomConsole::ServerOf(const model::Item& item) {
  std::shared_ptr<model::Server> server;
  if (const auto table = std::dynamic_pointer_cast<model::Table>(item.tag)) {
    if (const auto catalog = table->catalog.lock()) server = catalog->server.lock();
  } else if (const auto catalog = std::dynamic_pointer_cast<model::Catalog>(item.tag)) {
    server = catalog->server.lock();
  } else {
    server = std::dynamic_pointer_cast<model::Server>(item.tag);
  }
  return server && server->line ? server->line->sServer : Text();
}

void RandomConsole::Click(const char* sMenuItem, const ItemPtr& item) {
  m_driver.Click(sMenuItem, item->sKey);
}

}  // namespace orvane::snapin
