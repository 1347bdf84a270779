#include "tests/snapin/random_console.h"

#include <algorithm>
#include <utility>

#include "nodes/servers_node.h"

namespace orvane::snapin {

using fakes::FakeForm;
using fakes::FakeHistorian;
using fakes::FakeRecordset;
using model::ItemPtr;
using platform::Long;
using platform::RecordsetPtr;
using platform::SchemaNumber;
using platform::Text;

namespace {

// Names that collide: in letter case, beyond ASCII, and by the dots that join a key.
constexpr const char* kServers[] = {"S1", "S2", "s2", "Öfen", "öfen", "S1.Catalogs", "nowhere"};
constexpr const char* kCatalogs[] = {"Plant", "PLANT", "Lab",       "Lab.A",  "Orvane",
                                     "New",   "new",   "Functions", "Straße", "STRASSE"};
constexpr const char* kTables[] = {"Data", "Pumps", "A.B", "B", "data", "Orv_Data"};
constexpr const char* kColumns[] = {"Tag", "Timestamp", "Value", "Status", "value"};
constexpr const char* kQueryNames[] = {"Q", "q", "R", "Q.1", "Ö", "ö", "", "S"};
constexpr const char* kSql[] = {"SELECT * FROM Plant..Data", "SELECT * FROM Plant..Pumps",
                                "SELECT * FROM Lab..Data", "nonsense"};
constexpr const char* kGridSteps[] = {"Requery",       "Execute",         "DeleteSelectedRows",
                                      "SortAscending", "DetachRecordset", "AttachRecordset none 0",
                                      "MoveFirst",     "Recordset none"};

scenarios::TableSetup NewTable(const Text& sName) {
  scenarios::TableSetup table{sName, {}, {{"a", "b"}, {"c", "d"}}};
  for (const char* const sColumn : {"Tag", "Value"}) table.columns.push_back({sColumn});
  return table;
}

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

// ---- events of the console

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
  m_model.ForeignCommand(item);
  Click(sCommand, item);
}

// ---- commands

/// What the server says to a statement that is not a table's rows.
RecordsetPtr RandomConsole::Answer(const Text& sStatement) {
  const auto rows = [this](std::vector<FakeRecordset::Row> values) {
    auto rs = std::make_shared<FakeRecordset>(std::vector<fakes::FakeColumn>{{"Identity"}},
                                              std::move(values));
    See(rs);
    return rs;
  };
  const bool bCreate = sStatement.starts_with("CREATE DATABASE ");
  const bool bDrop = sStatement.starts_with("DROP DATABASE ");
  const bool bLookup = sStatement.starts_with("SELECT Identity FROM ");
  if (!bCreate && !bDrop && !bLookup) return nullptr;
  m_statements.push_back(sStatement);
  if (bLookup) {
    if (m_world.bRefuseLookup) throw platform::Failure(3805, "The lookup failed.");
    std::vector<FakeRecordset::Row> found;
    if (m_world.sIdentity) found.push_back({*m_world.sIdentity});
    return rows(std::move(found));
  }
  const std::size_t nBegin = sStatement.find('"') + 1;
  const Text sName = sStatement.substr(nBegin, sStatement.find('"', nBegin) - nBegin);
  auto& catalogs = m_driver.historian->Server(m_sServer)->catalogs;
  const bool bThere = FakeHistorian::Find(catalogs, sName) != nullptr;
  if (m_world.bRefuseStatement || bThere == bCreate) {
    throw platform::Failure(3805, "The server refused.");
  }
  if (bCreate) {
    catalogs.push_back({sName, {NewTable("Data")}});
  } else {
    std::erase_if(catalogs, [&](const auto& catalog) { return catalog.sName == sName; });
  }
  return rows({});
}

void RandomConsole::AddServer() {
  const Text sChosen = Any(kServers);
  Note("add the server " + sChosen);
  m_model.AddServer(sChosen);
  m_driver.historian->sChosenServer = sChosen;
  Click("m_mnuServersConnect", m_model.rootItem);
}

void RandomConsole::Connect(const ItemPtr& item) {
  Note("connect " + item->sKey);
  m_model.Connect(item);
  Click("m_mnuConnect", item);
}

void RandomConsole::Disconnect(const ItemPtr& item) {
  Note("disconnect " + item->sKey);
  m_model.Disconnect(item);
  Click("m_mnuDisconnect", item);
}

void RandomConsole::RemoveServer(const ItemPtr& item) {
  Note("remove the server " + item->sKey);
  const Text sKey = item->sKey;
  m_model.RemoveServer(item);
  m_driver.Click("m_mnuRemoveServer", sKey);
}

void RandomConsole::SetOptions() {
  Note("options");
  std::optional<model::TypedOptions> typed;
  bool bShown = false;
  m_driver.forms->WhenShown("OptionsDlg", [&](FakeForm& form) {
    bShown = true;
    constexpr const char* kTexts[] = {"", "7", "-1", "12x", "2147483648", "2147483647"};
    constexpr const char* kTimes[] = {"", "*-1h", "'y'", "*"};
    for (const char* const sBox : {"m_txtMaxRows", "m_txtTimeout"}) {
      if (OneIn(2)) form.TextBox(sBox).Text(Any(kTexts));
    }
    for (const char* const sBox : {"m_txtDefStartTime", "m_txtDefEndTime"}) {
      if (OneIn(2)) form.TextBox(sBox).Text(Any(kTimes));
    }
    if (OneIn(4)) return form.Button("m_btnCancel").Click();
    typed = {form.TextBox("m_txtMaxRows").Text(), form.TextBox("m_txtTimeout").Text(),
             form.TextBox("m_txtDefStartTime").Text(), form.TextBox("m_txtDefEndTime").Text()};
    form.Button("m_btnOK").Click();
  });
  Click("m_mnuOptions", m_model.rootItem);
  Same("the options dialog came up", bShown, m_model.root != nullptr);
  m_model.SetOptions(typed);
}

void RandomConsole::AddCatalog(const ItemPtr& folder) {
  constexpr const char* kPaths[] = {"", "", "/data"};
  constexpr const char* kSizes[] = {"", "", "5", "-3", "big", "2147483648"};
  std::optional<model::TypedCatalog> typed;
  if (!OneIn(6)) typed = {OneIn(8) ? "" : Any(kCatalogs), Any(kPaths), Any(kSizes)};
  Note("add the catalog " +
       (typed ? typed->sName + "," + typed->sPath + "," + typed->sSize : Text("and cancel")) +
       " to " + folder->sKey);
  m_driver.forms->WhenShown("AddCatalogDlg", [&](FakeForm& form) {
    Same("the name in the new dialog", form.TextBox("m_txtName").Text(), Text());
    if (!typed) return form.Button("m_btnCancel").Click();
    form.TextBox("m_txtName").Text(typed->sName);
    form.TextBox("m_txtPath").Text(typed->sPath);
    form.TextBox("m_txtSize").Text(typed->sSize);
    form.Button("m_btnOk").Click();
  });
  m_model.AddCatalog(folder, typed);
  Click("m_mnuAddCatalog", folder);
}

void RandomConsole::RemoveCatalog(const ItemPtr& item) {
  Note("remove the catalog " + item->sKey);
  const Text sKey = item->sKey;
  m_model.RemoveCatalog(item);
  m_driver.Click("m_mnuCatalogRemove", sKey);
}

void RandomConsole::Build(const ItemPtr& item) {
  Note("the query of " + item->sKey);
  const bool bComesUp = m_model.BuilderComesUp(item);
  bool bShown = false;
  std::optional<model::Built> built;
  m_driver.forms->WhenShown("TableQueryDlg", [&](FakeForm& form) {
    bShown = true;
    if (const auto table = std::dynamic_pointer_cast<model::Table>(item->tag)) {
      UseBuilder(form, *table, built);
    }
  });
  Click("m_mnuQuery", item);
  Same("the query builder came up", bShown, bComesUp);
  m_model.Build(item, built);
}

void RandomConsole::UseBuilder(FakeForm& form, const model::Table& table,
                               std::optional<model::Built>& built) {
  auto& available = form.ListView("m_lvAvailableCols");
  auto& chosen = form.ListView("m_lvSelCols");
  auto& filter = form.TextBox("m_txtFilterCond");
  auto& useDefault = form.CheckBox("m_chkDefaultFilterCond");
  auto& none = form.CheckBox("m_chkNoSortingCriteria");
  auto& sortColumn = form.DropDownList("m_cmbSortCol");
  auto& order = form.DropDownList("m_cmbSortOrder");
  Same("the columns chosen in the builder", chosen.Texts(), table.columns);
  Same("the builder's use of the default filter", useDefault.Checked(), table.bDefaultFilter);
  const Text sFilter = table.bDefaultFilter
                           ? model::DefaultFilter(*m_model.root, table.sCatalog, table.sName)
                           : table.sFilter;
  Same("the filter in the builder", filter.Text(), sFilter);
  Same("the builder's lack of an order", none.Checked(), !table.sort.has_value());
  for (unsigned n = Number(5); n > 0; --n) {
    const Text sColumn = Any(kColumns);
    switch (Number(8)) {
      case 0:
        form.Button("m_btnSelectAllCols").Click();
        break;
      case 1:
        form.Button("m_btnDeselectAllCols").Click();
        break;
      case 2:
      case 3:
        available.Click(sColumn);
        form.Button("m_btnSelectCol").Click();
        break;
      case 4:
        chosen.Click(sColumn);
        form.Button("m_btnDeselectCol").Click();
        break;
      case 5:
        useDefault.Checked(!useDefault.Checked());
        if (!filter.Locked()) filter.Text(sColumn + " = 1");
        break;
      case 6:
        none.Checked(!none.Checked());
        break;
      default:
        if (order.Enabled()) order.ListIndex(static_cast<Long>(Number(2)));
        if (sortColumn.Enabled() && sortColumn.Count() > 0) {
          sortColumn.ListIndex(
              static_cast<Long>(Number(static_cast<unsigned>(sortColumn.Count()))));
        }
    }
  }
  if (OneIn(4)) return form.PressEscape();
  if (form.Button("m_btnOk").Enabled()) {
    built.emplace();
    built->columns = chosen.Texts();
    built->bDefaultFilter = useDefault.Checked();
    built->sFilter = filter.Text();
    if (!none.Checked()) {
      const Long lColumn = sortColumn.ListIndex();
      const Long lOrder = order.ListIndex();
      built->sort = {lColumn < 0 ? Text() : sortColumn.Item(lColumn), lOrder == 0};
    }
  }
  form.PressEnter();
}

/// Types up to three names with their texts, and gives up behind the last one.
std::vector<model::Typed> RandomConsole::AnswerQueryDialog() {
  std::vector<model::Typed> answers(Number(4));
  Text sTyped = "type";
  for (auto& typed : answers) {
    typed = {Any(kQueryNames), Any(kSql)};
    sTyped += " " + typed.sName + "=" + typed.sSql + ";";
  }
  Note(sTyped);
  m_driver.forms->WhenShown("QueryDlg", [answers, n = std::size_t{0}](FakeForm& form) mutable {
    if (n == answers.size()) return form.PressEscape();
    form.TextBox("m_txtName").Text(answers[n].sName);
    form.TextBox("m_txtSqlStatement").Text(answers[n].sSql);
    ++n;
    form.Button("m_btnOk").Click();
  });
  return answers;
}

void RandomConsole::NewQuery(const ItemPtr& folder) {
  Note("new query in " + folder->sKey);
  const auto answers = AnswerQueryDialog();
  m_model.NewQuery(folder, answers);
  Click("m_mnuNewQuery", folder);
}

void RandomConsole::EditQuery(const ItemPtr& item) {
  Note("edit " + item->sKey);
  const auto answers = AnswerQueryDialog();
  const Text sKey = item->sKey;
  m_model.EditQuery(item, answers);
  m_driver.Click("m_mnuEdit", sKey);
}

void RandomConsole::RemoveQuery(const ItemPtr& item) {
  Note("remove the query " + item->sKey);
  const Text sKey = item->sKey;
  m_model.RemoveQuery(item);
  m_driver.Click("m_mnuRemove", sKey);
}

}  // namespace orvane::snapin
