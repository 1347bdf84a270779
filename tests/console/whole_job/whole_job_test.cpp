// The whole job of an administrator on a historian that was never used: servers, options, catalogs,
// a table's query, named queries, the grids, the document; once with the mouse and once with the
// keyboard alone, on a real screen.
#include "tests/console/whole_job/whole_job.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QFileDialog>
#include <QLineEdit>

#include "console/document/document.h"
#include "provider/historian/data_folder.h"
#include "provider/historian/historian.h"
#include "tests/console/whole_job/saved_document.h"

namespace orvane::console {

using platform::Text;

void WholeJobTest::TypesFileName(QDialog* dialog, const char* sName) {
  // Otherwise a dialog begins where the process's last one ended.
  m_stage.Ask([&] { qobject_cast<QFileDialog*>(dialog)->setDirectory(m_folder.path()); });
  m_hands->Enter(In<QWidget>(dialog, "fileNameEdit"), sName);
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

namespace {

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
      {sServer + "QueryNodes_QueryNode1_Query", "\"" + kSamplesSql + "\\nORDER BY Samples\""},
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
    WorksOnRows();
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
