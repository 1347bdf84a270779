// The commands with their dialogs, done to both sides.
#include <algorithm>
#include <utility>

#include "nodes/servers_node.h"
#include "tests/snapin/random_console.h"
#include "tests/snapin/random_console_names.h"

namespace orvane::snapin {

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
