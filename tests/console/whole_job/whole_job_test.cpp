// The whole job of an administrator on a historian that was never used: servers, options, catalogs,
// a table's query, named queries, the grids, the document; once with the mouse and once with the
// keyboard alone, on a real screen.
#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <chrono>

#include "console/document/document.h"
#include "console/scope/scope_pane.h"
#include "console/window/toolbar_view.h"
#include "provider/historian/data_folder.h"
#include "provider/historian/historian.h"
#include "tests/console/whole_job/hands.h"
#include "tests/console/whole_job/new_user.h"
#include "tests/console/whole_job/saved_document.h"

namespace orvane::console {
namespace {

using platform::Text;

enum class Device { Mouse, Keyboard };

/// Names the device where the test program lists its cases.
void PrintTo(Device device, std::ostream* out) {
  *out << (device == Device::Mouse ? "mouse" : "keyboard");
}

constexpr int kRows = 120;
constexpr int kPatienceMilliseconds = 60'000;
const Text kSql = "SELECT Tag, COUNT(*) AS Samples FROM Boiler..Data GROUP BY Tag";

class WholeJobTest : public testing::TestWithParam<Device> {
 protected:
  WholeJobTest()
      : m_stage(qgetenv("DISPLAY").toStdString(),
                RegisterComponents(m_folder.path().toStdString())) {
    // Every historian begins as it does for a new user.
    qputenv("XDG_DATA_HOME", m_folder.filePath("data").toUtf8());
    qputenv("XDG_STATE_HOME", m_folder.filePath("state").toUtf8());
    if (GetParam() == Device::Mouse) {
      m_hands = std::make_unique<MouseHands>(m_stage);
    } else {
      m_hands = std::make_unique<KeyboardHands>(m_stage);
    }
  }

  Text Document() const { return m_folder.filePath("plant.orvc").toStdString(); }

  template <class W>
  W* In(QDialog* dialog, const char* sName) {
    auto* widget = m_stage.Ask([&] { return dialog->findChild<W*>(sName); });
    if (!widget) throw Stopped(Text("The dialog has no ") + sName + ".");
    return widget;
  }
  void Expect(const Text& sWhat, const Stage::Condition& condition) {
    m_stage.WaitFor(sWhat, condition);
  }

  void AddsServers();
  void SetsOptions();
  void MakesAndRemovesCatalogs();
  void RecordSamples();
  void LooksAtATable();
  void BuildsTheTablesQuery();
  void KeepsNamedQueries();
  void SavesUnderAName();
  void RemovesAServerAndDisconnects();
  void EndsTheProgram();
  void OpensTheDocumentAgain();
  void FindsEverythingAsItWas();

  void NewQuery(const Text& sName, const Text& sSql);
  void LogsOn(const Text& sServer);
  void TypesFileName(QDialog* dialog);
  void WaitUntilOpened(const Text& sKey);

  QTemporaryDir m_folder;
  Stage m_stage;
  std::unique_ptr<Hands> m_hands;
};

void WholeJobTest::LogsOn(const Text& sServer) {
  auto* logon = m_stage.WaitForDialog("logonDialog");
  auto* cmbServer = In<QComboBox>(logon, "m_cmbServer");
  if (m_stage.Ask([&] { return cmbServer->isEnabled(); })) {
    m_hands->Enter(cmbServer, sServer);
  } else {
    EXPECT_EQ(m_stage.Ask([&] { return cmbServer->currentText(); }).toStdString(), sServer);
  }
  m_hands->PressIn(logon, "m_btnOk");
}

void WholeJobTest::WaitUntilOpened(const Text& sKey) {
  Expect(sKey + " is open", [&] {
    const auto item = m_stage.Item(sKey);
    return item && item->State() == NodeState::Loaded && m_stage.IsIdle() &&
           (item->Children().empty() || m_stage.Window().Scope().isExpanded(m_stage.Index(sKey)));
  });
}

void WholeJobTest::AddsServers() {
  for (const char* sServer : {"localhost", "annex"}) {
    m_hands->Command("", "m_mnuServersConnect");
    LogsOn(sServer);
    Expect("the new server is in the tree", [&] {
      const auto item = m_stage.Item(sServer);
      return item && m_stage.Window().Session().Selected() == item && m_stage.IsIdle();
    });
  }
  // Nothing comes of a logon that was given up, but a sentence.
  m_hands->Command("", "m_mnuServersConnect");
  m_hands->PressIn(m_stage.WaitForDialog("logonDialog"), "m_btnCancel");
  m_hands->Answer("Error", "The logon was cancelled.", "OK");
  m_stage.WaitUntilIdle();
  EXPECT_EQ(m_stage.Ask([&] { return m_stage.Item("")->Children().size(); }), 2u);
}

void WholeJobTest::SetsOptions() {
  m_hands->Command("", "m_mnuOptions");
  auto* options = m_stage.WaitForDialog("Options");
  // As the dialog says it, with nothing of the program's added.
  EXPECT_EQ(m_stage.Input().Title(m_stage.Ask([&] { return options->winId(); })), "Options");
  auto* maxRows = In<QLineEdit>(options, "m_txtMaxRows");
  m_stage.Input().ListenForBells();
  m_hands->Enter(maxRows, "100");
  m_stage.Input().Type('x');
  EXPECT_TRUE(m_stage.Input().WaitForBell(kPatienceMilliseconds)) << "a letter is refused aloud";
  Expect("the letter is gone", [=] { return maxRows->text() == "100"; });
  m_hands->Enter(In<QWidget>(options, "m_txtTimeout"), "30");
  m_hands->Enter(In<QWidget>(options, "m_txtDefStartTime"), "*-2h");
  m_hands->Enter(In<QWidget>(options, "m_txtDefEndTime"), "*");
  m_hands->PressIn(options, "m_btnOK");
  m_stage.WaitUntilIdle();
  EXPECT_FALSE(m_stage.Input().WaitForBell(0)) << "what is accepted is accepted in silence";
}

void WholeJobTest::MakesAndRemovesCatalogs() {
  m_hands->Expand("localhost");
  WaitUntilOpened("localhost");
  m_hands->Expand("localhost.Catalogs");
  WaitUntilOpened("localhost.Catalogs");
  for (const char* sName : {"Scratch", "Boiler"}) {
    m_hands->Command("localhost.Catalogs", "m_mnuAddCatalog");
    auto* dialog = m_stage.WaitForDialog("Add Catalog");
    m_hands->Enter(In<QWidget>(dialog, "m_txtName"), sName);
    m_hands->Enter(In<QWidget>(dialog, "m_txtSize"), "2048");
    m_hands->PressIn(dialog, "m_btnOk");
    Expect("the catalog is in the tree",
           [&] { return m_stage.Item(Text("localhost.Catalogs.") + sName) && m_stage.IsIdle(); });
  }
  for (const char* sAnswer : {"&No", "&Yes"}) {
    EXPECT_TRUE(m_stage.Ask([&] { return m_stage.Item("localhost.Catalogs.Scratch") != nullptr; }));
    m_hands->Command("localhost.Catalogs.Scratch", "m_mnuCatalogRemove");
    m_hands->Answer("Confirm Catalog Removal",
                    "Are you sure you want to remove the \"Scratch\" catalog?", sAnswer);
    m_stage.WaitUntilIdle();
  }
  EXPECT_FALSE(m_stage.Ask([&] { return m_stage.Item("localhost.Catalogs.Scratch") != nullptr; }));
}

/// Two tags, of which one has a sample every ten seconds, the last one just now.
void WholeJobTest::RecordSamples() {
  using namespace std::chrono;
  Text sSql = "INSERT INTO Data (Tag, Timestamp, Value) VALUES ('pressure', 0, 4.5)";
  const auto llNow =
      duration_cast<microseconds>(system_clock::now().time_since_epoch()).count() - 1'000'000;
  for (int i = 0; i < kRows; ++i) {
    sSql += ", ('flow', " + std::to_string(llNow - i * 10'000'000LL) + ", " +
            std::to_string(i % 7) + ".5)";
  }
  WriteToCatalog("localhost", "Boiler", sSql);
}

void WholeJobTest::LooksAtATable() {
  m_hands->Expand("localhost.Catalogs.Boiler");
  WaitUntilOpened("localhost.Catalogs.Boiler");
  m_hands->Select("localhost.Catalogs.Boiler.Data");
  Expect("the grid shows as many rows as the options allow", [&] {
    const auto* rows = m_stage.Rows();
    return rows && rows->model()->rowCount() == 100 && m_stage.SqlBox();
  });
  const auto currentRow = [&] { return m_stage.Rows()->currentIndex().row(); };
  m_hands->ToolbarButton("MoveLast");
  Expect("the last row is current", [&] { return currentRow() == 99; });
  m_hands->ToolbarButton("MoveFirst");
  Expect("the first row is current", [&] { return currentRow() == 0; });
  m_hands->ToolbarButton("Sql");
  Expect("the statement is hidden", [&] { return !m_stage.SqlBox(); });
  m_hands->Tab("Structure");
  Expect("the structure is shown", [&] { return !m_stage.Rows(); });
  m_hands->Tab("Data");
  Expect("the rows are back, without the statement",
         [&] { return m_stage.Rows() && !m_stage.SqlBox(); });
  EXPECT_EQ(m_stage.Ask([&] { return m_stage.Rows()->model()->rowCount(); }), 100);
}

void WholeJobTest::BuildsTheTablesQuery() {
  m_hands->Command("localhost.Catalogs.Boiler.Data", "m_mnuQuery");
  auto* builder = m_stage.WaitForDialog("Table Query");
  auto* available = In<QAbstractItemView>(builder, "m_lvAvailableCols");
  auto* btnOk = In<QPushButton>(builder, "m_btnOk");
  // A table begins with all its columns.
  m_hands->PressIn(builder, "m_btnDeselectAllCols");
  EXPECT_FALSE(m_stage.Ask([&] { return btnOk->isEnabled(); }));
  auto* add = In<QAbstractButton>(builder, "m_btnSelectCol");
  for (const char* sColumn : {"Value", "Timestamp", "Tag"}) {
    m_hands->MoveColumn(available, sColumn, add);
  }
  m_hands->MoveColumn(In<QAbstractItemView>(builder, "m_lvSelCols"), "Tag",
                      In<QAbstractButton>(builder, "m_btnDeselectCol"));
  // The default condition is there and locked until it is switched off.
  auto* filter = In<QWidget>(builder, "m_txtFilterCond");
  EXPECT_EQ(m_stage.Ask([&] { return filter->property("plainText").toString(); }).toStdString(),
            "Timestamp BETWEEN '*-2h' AND '*'");
  m_hands->PressIn(builder, "m_chkDefaultFilterCond");
  m_hands->Enter(filter, "Tag = 'flow' AND Value > 1");
  m_hands->PressIn(builder, "m_chkNoSortingCriteria");
  m_hands->Choose(In<QComboBox>(builder, "m_cmbSortCol"), "Timestamp");
  m_hands->Choose(In<QComboBox>(builder, "m_cmbSortOrder"), "Descending");
  m_hands->Press(btnOk);
  Expect("the grid shows the chosen columns", [&] {
    const auto* rows = m_stage.Rows();
    return rows && rows->model()->columnCount() == 2 && m_stage.IsIdle();
  });
  m_hands->Refresh();
  Expect("the columns are as chosen after the rows were read again", [&] {
    const auto* model = m_stage.Rows()->model();
    return m_stage.IsIdle() && model->headerData(0, Qt::Horizontal).toString() == "Value" &&
           model->headerData(1, Qt::Horizontal).toString() == "Timestamp";
  });
}

void WholeJobTest::NewQuery(const Text& sName, const Text& sSql) {
  m_hands->Command("localhost.Queries", "m_mnuNewQuery");
  auto* dialog = m_stage.WaitForDialog("Query");
  m_hands->Enter(In<QWidget>(dialog, "m_txtName"), sName);
  m_hands->Enter(In<QWidget>(dialog, "m_sqlView"), sSql);
  m_hands->PressIn(dialog, "m_btnOk");
}

void WholeJobTest::KeepsNamedQueries() {
  NewQuery("Samples", kSql);
  m_stage.WaitUntilIdle();
  m_hands->Expand("localhost.Queries");
  WaitUntilOpened("localhost.Queries");
  NewQuery("Gone", "SELECT 1 AS One");
  Expect("the query is in the tree",
         [&] { return m_stage.Item("localhost.Queries.Gone") && m_stage.IsIdle(); });
  // A name that is there is refused; what was typed stays.
  NewQuery("SAMPLES", "SELECT 2 AS Two");
  m_hands->Answer("Error", "Query with the specified name already exists.", "OK");
  auto* again = m_stage.WaitForDialog("Query");
  EXPECT_EQ(
      m_stage.Ask([&] { return again->findChild<QLineEdit*>("m_txtName")->text(); }).toStdString(),
      "SAMPLES");
  m_hands->Enter(In<QWidget>(again, "m_txtName"), "Constant");
  m_hands->PressIn(again, "m_btnOk");
  Expect("the query is in the tree under its other name",
         [&] { return m_stage.Item("localhost.Queries.Constant") && m_stage.IsIdle(); });

  m_hands->Select("localhost.Queries.Samples");
  Expect("the query's rows are shown", [&] {
    const auto* rows = m_stage.Rows();
    return rows && rows->model()->rowCount() == 2 && m_stage.IsIdle();
  });
  m_hands->ToolbarButton("MoveLast");
  Expect("the last row is current", [&] { return m_stage.Rows()->currentIndex().row() == 1; });

  m_hands->Command("localhost.Queries.Samples", "m_mnuEdit");
  auto* edit = m_stage.WaitForDialog("Query");
  m_hands->Enter(In<QWidget>(edit, "m_txtName"), "Samples per tag");
  m_hands->Enter(In<QWidget>(edit, "m_sqlView"), kSql + "\nORDER BY Samples");
  m_hands->PressIn(edit, "m_btnOk");
  Expect("the query has its new name", [&] {
    return m_stage.Item("localhost.Queries.Samples per tag") &&
           !m_stage.Item("localhost.Queries.Samples") && m_stage.IsIdle();
  });
  m_hands->Command("localhost.Queries.Gone", "m_mnuRemove");
  m_hands->Answer("Confirm Query Removal", "Are you sure you want to remove the \"Gone\" query?",
                  "&Yes");
  Expect("the query is gone",
         [&] { return !m_stage.Item("localhost.Queries.Gone") && m_stage.IsIdle(); });
}

void WholeJobTest::TypesFileName(QDialog* dialog) {
  // Otherwise a dialog begins where the process's last one ended.
  m_stage.Ask([&] { qobject_cast<QFileDialog*>(dialog)->setDirectory(m_folder.path()); });
  m_hands->Enter(In<QWidget>(dialog, "fileNameEdit"), "plant.orvc");
  // The list of names that might be meant is in front of the button.
  m_stage.Input().Key("Return");
}

void WholeJobTest::SavesUnderAName() {
  m_hands->Save();
  TypesFileName(m_stage.WaitForDialog("saveDialog"));
  Expect("the document is saved",
         [&] { return m_stage.Window().Document().Path() == Document() && m_stage.IsIdle(); });
  EXPECT_FALSE(m_stage.Ask([&] { return m_stage.Window().IsModified(); }));
}

void WholeJobTest::RemovesAServerAndDisconnects() {
  m_hands->Command("annex", "m_mnuRemoveServer");
  m_hands->Answer("Confirm Server Removal",
                  "Are you sure you want to remove the \"annex\" server from the tree?", "&Yes");
  Expect("the server is gone", [&] { return !m_stage.Item("annex") && m_stage.IsIdle(); });
  m_hands->Command("localhost", "m_mnuDisconnect");
  Expect("the server has nothing beneath it",
         [&] { return m_stage.Item("localhost")->Children().empty() && m_stage.IsIdle(); });
  m_hands->Save();
  Expect("everything is saved", [&] {
    return m_stage.IsIdle() && !m_stage.Window().IsModified() &&
           !m_stage.Window().isWindowModified();
  });
}

void WholeJobTest::EndsTheProgram() {
  m_hands->MenuBar("mnuFile", "actExit");
  Expect("the window has closed", [&] { return !m_stage.Window().isVisible(); });
  m_stage.EndProgram();
}

void WholeJobTest::OpensTheDocumentAgain() {
  m_stage.StartProgram();
  m_hands->MenuBar("mnuFile", "actOpen");
  TypesFileName(m_stage.WaitForDialog("openDialog"));
  Expect("the document is open",
         [&] { return m_stage.Window().Document().Path() == Document() && m_stage.IsIdle(); });
}

void WholeJobTest::FindsEverythingAsItWas() {
  m_hands->Expand("");
  WaitUntilOpened("");
  EXPECT_EQ(m_stage.Ask([&] { return m_stage.Item("")->Children().size(); }), 1u);
  EXPECT_TRUE(m_stage.Ask([&] { return m_stage.Item("localhost")->Children().empty(); }));
  EXPECT_FALSE(m_stage.Ask([&] { return m_stage.Window().IsModified(); }));
  m_hands->Command("", "m_mnuOptions");
  auto* options = m_stage.WaitForDialog("Options");
  for (const auto& [sBox, sText] : {std::pair{"m_txtMaxRows", "100"},
                                    {"m_txtTimeout", "30"},
                                    {"m_txtDefStartTime", "*-2h"},
                                    {"m_txtDefEndTime", "*"}}) {
    auto* box = In<QLineEdit>(options, sBox);
    EXPECT_EQ(m_stage.Ask([&] { return box->text(); }).toStdString(), sText) << sBox;
  }
  m_hands->PressIn(options, "m_btnCancel");
  m_stage.WaitUntilIdle();
  // The server was disconnected: it is connected by its command, through the logon dialog.
  m_hands->Command("localhost", "m_mnuConnect");
  LogsOn("localhost");
  m_stage.WaitUntilIdle();
  m_hands->Expand("localhost");
  WaitUntilOpened("localhost");
  for (const char* sKey :
       {"localhost.Queries", "localhost.Catalogs", "localhost.Catalogs.Boiler"}) {
    m_hands->Expand(sKey);
    WaitUntilOpened(sKey);
  }
  EXPECT_FALSE(m_stage.Ask([&] { return m_stage.Item("localhost.Catalogs.Scratch") != nullptr; }));
  m_hands->Select("localhost.Catalogs.Boiler.Data");
  Expect("the table's grid shows what its query says, without the statement", [&] {
    const auto* rows = m_stage.Rows();
    return rows && rows->model()->columnCount() == 2 && rows->model()->rowCount() > 0 &&
           !m_stage.SqlBox();
  });
  m_hands->Select("localhost.Queries.Samples per tag");
  Expect("the query's rows are shown", [&] {
    const auto* rows = m_stage.Rows();
    return rows && rows->model()->rowCount() == 2 &&
           rows->model()->index(0, 0).data() == "pressure";
  });
  EXPECT_FALSE(m_stage.Ask([&] { return m_stage.Window().IsModified(); }));
}

Text TableQueryOf(const char* sTable, const char* sRest) {
  return Text("ORVOLEDBCtls.TableQuery {\"catalog\":\"Boiler\",") +
         "\"class\":\"ORVOLEDBCtls.TableQuery\"," + sRest + ",\"table\":\"" + sTable +
         "\",\"version\":1}";
}

/// Every key that the document holds for the snap-in, and every value.
std::map<Text, Text> ExpectedProperties() {
  const Text sServer = "ServersNode_ServerNodes_ServerNode1_";
  const Text sBoiler = sServer + "CatalogNodes_CatalogNode3_";
  const Text sLimits = "\"maxRows\":100,\"queryTimeout\":30";
  const Text sDefault =
      "\"columns\":[\"Tag\",\"Timestamp\",\"Value\",\"Status\"],\"filterCondition\":\"Timestamp "
      "BETWEEN '*-2h' AND '*'\"," +
      sLimits + ",\"sort\":null";
  return {
      {"ServersNode", "true"},
      {"ServersNode_MaxRows", "100"},
      {"ServersNode_QueryTimeout", "30"},
      {"ServersNode_DefaultStartTime", "\"*-2h\""},
      {"ServersNode_DefaultEndTime", "\"*\""},
      {"ServersNode_SqlStatements", "false"},
      {"ServersNode_Context", "false"},
      {"ServersNode_ServerNodes_ServerNodeCount", "1"},
      {sServer + "Provider", "\"ORVOLEDB\""},
      {sServer + "Server", "\"localhost\""},
      {sServer + "User", "\"orvanesnapin\""},
      {sServer + "ExtendedOptions", "\"\""},
      {sServer + "CatalogNodes_CatalogNodeCount", "3"},
      {sServer + "CatalogNodes_CatalogNode1_Catalog", "\"Functions\""},
      {sServer + "CatalogNodes_CatalogNode1_TableNodes_TableNodeCount", "0"},
      {sServer + "CatalogNodes_CatalogNode2_Catalog", "\"Orvane\""},
      {sServer + "CatalogNodes_CatalogNode2_TableNodes_TableNodeCount", "0"},
      {sBoiler + "Catalog", "\"Boiler\""},
      {sBoiler + "TableNodes_TableNodeCount", "3"},
      {sBoiler + "TableNodes_TableNode1_Query",
       TableQueryOf("Data",
                    "\"columns\":[\"Value\",\"Timestamp\"],"
                    "\"filterCondition\":\"Tag = 'flow' AND Value > 1\",\"maxRows\":100,"
                    "\"queryTimeout\":30,\"sort\":{\"ascending\":false,\"column\":\"Timestamp\"}")},
      {sBoiler + "TableNodes_TableNode1_DefaultFilterCondition", "false"},
      {sBoiler + "TableNodes_TableNode2_Query", TableQueryOf("Data2", sDefault.c_str())},
      {sBoiler + "TableNodes_TableNode2_DefaultFilterCondition", "true"},
      {sBoiler + "TableNodes_TableNode3_Query",
       TableQueryOf(
           "Tags",
           ("\"columns\":[\"Tag\",\"Description\",\"Unit\",\"Type\"],\"filterCondition\":\"\"," +
            sLimits + ",\"sort\":null")
               .c_str())},
      {sBoiler + "TableNodes_TableNode3_DefaultFilterCondition", "true"},
      {sServer + "QueryNodes_QueryNodeCount", "2"},
      {sServer + "QueryNodes_QueryNode1_QueryName", "\"Samples per tag\""},
      {sServer + "QueryNodes_QueryNode1_Query", "\"" + kSql + "\\nORDER BY Samples\""},
      {sServer + "QueryNodes_QueryNode2_QueryName", "\"Constant\""},
      {sServer + "QueryNodes_QueryNode2_Query", "\"SELECT 2 AS Two\""},
  };
}

TEST_P(WholeJobTest, is_done_saved_and_found_again_with_one_device) {
  // One of the two servers was made by somebody else.
  provider::historian::Historian::Make(provider::historian::DefaultRoot(), "annex");
  const auto sStopped = m_stage.Play([this] {
    m_stage.StartProgram();
    AddsServers();
    SetsOptions();
    MakesAndRemovesCatalogs();
    RecordSamples();
    LooksAtATable();
    BuildsTheTablesQuery();
    KeepsNamedQueries();
    SavesUnderAName();
    RemovesAServerAndDisconnects();
    EndsTheProgram();
    EXPECT_EQ(ReadSavedProperties(Document()), ExpectedProperties());
    OpensTheDocumentAgain();
    FindsEverythingAsItWas();
  });
  EXPECT_EQ(sStopped, "");
}

INSTANTIATE_TEST_SUITE_P(Hands, WholeJobTest, testing::Values(Device::Mouse, Device::Keyboard),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace orvane::console
