// What an administrator sees of the snap-in, whatever console shows it.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/conversions.h"
#include "tests/scenarios/driver.h"
#include "tests/scenarios/written_document.h"

namespace orvane::scenarios {
namespace {

using platform::DataType;
using platform::PropertyBag;
using platform::Value;

constexpr const char* kServer = "localhost";
constexpr const char* kCatalogs = "localhost.Catalogs";
constexpr const char* kPlant = "localhost.Catalogs.Plant";
constexpr const char* kPumps = "localhost.Catalogs.Plant.Pumps";
constexpr const char* kFans = "localhost.Catalogs.Plant.Fans";
constexpr const char* kData = "localhost.Catalogs.Plant.Data";
constexpr const char* kQueries = "localhost.Queries";
constexpr const char* kAllPumps = "localhost.Queries.All pumps";

ServerSetup Localhost() {
  return {kServer,
          {{"Plant",
            {{"Pumps",
              {{"Name", DataType::WChar, false, true}, {"Speed", DataType::Double, true, false}},
              {{"P1", 1.5}, {"P2", 2.5}, {"P3", 3.5}, {"P4", Value()}}},
             {"Fans", {{"Name", DataType::WChar, false, true}}, {{"F1"}}},
             {"Data",
              {{"Tag", DataType::WChar, false, true},
               {"Timestamp", DataType::DBTimeStamp, false, true},
               {"Value", DataType::Double, true, false}},
              {}}}}}};
}

/// A document with the server, one named query and, when told so, the table Pumps as known.
struct DocumentSetup {
  Long lMaxRows = 100;
  Boolean bKnownPumps = false;
  Long lPumpsMaxRows = 3;
};

Driver::Fill Document(const DocumentSetup& setup = {}) {
  return [setup](PropertyBag& pb, platform::ObjectFactory& objects) {
    Write(pb, {.sServer = kServer,
               .lMaxRows = setup.lMaxRows,
               .sExtendedOptions = "Log Level = 1;",
               .queries = {{"All pumps", "SELECT Name FROM Plant..Pumps"},
                           {"v1.2 of \"it\"", "SELECT Name FROM Plant..Fans"}}});
    if (!setup.bKnownPumps) return;
    const Text sCatalog = kWrittenServer + "CatalogNodes_";
    const Text sTable = sCatalog + "CatalogNode1_TableNodes_";
    const platform::TableQueryPtr query = objects.CreateTableQuery();
    query->Catalog("Plant");
    query->Table("Pumps");
    query->MaxRows(setup.lPumpsMaxRows);
    query->QueryTimeout(5);
    query->FilterCondition("Name <> 'none'");
    pb.WriteProperty(sCatalog + "CatalogNodeCount", Long{1});
    pb.WriteProperty(sCatalog + "CatalogNode1_Catalog", "Plant");
    pb.WriteProperty(sTable + "TableNodeCount", Long{1});
    pb.WriteProperty(sTable + "TableNode1_Query", query);
    pb.WriteProperty(sTable + "TableNode1_DefaultFilterCondition", false);
  };
}

class scenario : public testing::Test {
 protected:
  scenario() { driver->AddServer(Localhost()); }

  void ExpandTables() {
    for (const char* sKey : {kStaticNode, kServer, kCatalogs, kPlant}) driver->Expand(sKey);
  }
  bool IsBefore(const Text& sParent, const Text& sFirst, const Text& sSecond) {
    const auto keys = driver->Children(sParent);
    const auto first = std::find(keys.begin(), keys.end(), sFirst);
    return first != keys.end() && std::find(first, keys.end(), sSecond) != keys.end();
  }
  /// The table's query as the last save wrote it; none when the table was not saved.
  platform::TableQueryPtr SavedQuery(const Text& sCatalog, const Text& sTable) {
    const Text sCatalogs = "ServersNode_ServerNodes_ServerNode1_CatalogNodes_";
    for (Long c = 1; c <= SavedCount(sCatalogs + "CatalogNodeCount"); ++c) {
      const Text sNode = sCatalogs + "CatalogNode" + std::to_string(c) + "_";
      if (driver->SavedValue(sNode + "Catalog") != Value(sCatalog)) continue;
      const Text sTables = sNode + "TableNodes_";
      for (Long t = 1; t <= SavedCount(sTables + "TableNodeCount"); ++t) {
        const Value vtQuery =
            driver->SavedValue(sTables + "TableNode" + std::to_string(t) + "_Query");
        const auto* object = vtQuery.As<platform::ObjectPtr>();
        const auto query =
            object ? std::dynamic_pointer_cast<platform::TableQuery>(*object) : nullptr;
        if (query && query->Table() == sTable) return query;
      }
    }
    return nullptr;
  }
  Long SavedCount(const Text& sName) {
    const Value vtCount = driver->SavedValue(sName);
    return vtCount.IsNull() ? 0 : platform::ToLong(vtCount);
  }
  std::vector<Text> FirstColumn() {
    std::vector<Text> texts;
    for (const auto& row : driver->Grid().rows) texts.push_back(row.at(0));
    return texts;
  }
  void ExpectNoBoxes() {
    for (const BoxSeen& box : driver->TakeBoxes()) ADD_FAILURE() << box.sText;
  }

  std::unique_ptr<Driver> driver = MakeDriver();
};

TEST_F(scenario, a_new_document_shows_the_root_without_servers) {
  driver->NewDocument();
  driver->Expand(kStaticNode);
  EXPECT_EQ(driver->Tree(), "ORVANE Servers\n");
  EXPECT_TRUE(driver->Children(kStaticNode).empty());
  ExpectNoBoxes();
}

TEST_F(scenario, a_document_opens_with_a_collapsed_tree_and_no_connection) {
  driver->OpenDocument(Document());
  EXPECT_FALSE(driver->HasItem(kServer));
  driver->Expand(kStaticNode);
  EXPECT_EQ(driver->Children(kStaticNode), (std::vector<Text>{kServer}));
  EXPECT_TRUE(driver->HasExpandMark(kServer));
  EXPECT_EQ(driver->LogonsSeen(), 0);
  ExpectNoBoxes();
}

TEST_F(scenario, the_first_expansion_of_a_server_connects_once_and_shows_its_folders) {
  driver->OpenDocument(Document());
  driver->Expand(kStaticNode);
  driver->Expand(kServer);
  EXPECT_EQ(driver->LogonsSeen(), 1);
  EXPECT_EQ(driver->Children(kServer), (std::vector<Text>{kCatalogs, kQueries}));
  EXPECT_EQ(driver->DisplayName(kCatalogs), "Catalogs");
  EXPECT_EQ(driver->DisplayName(kQueries), "Queries");
  EXPECT_TRUE(driver->HasExpandMark(kCatalogs));
  ExpectNoBoxes();
}

TEST_F(scenario, closing_and_opening_a_connected_server_does_not_connect_again) {
  driver->OpenDocument(Document());
  driver->Expand(kStaticNode);
  driver->Expand(kServer);
  driver->Collapse(kServer);
  driver->Expand(kServer);
  driver->Expand(kCatalogs);
  EXPECT_EQ(driver->LogonsSeen(), 1);
  EXPECT_EQ(driver->Children(kServer), (std::vector<Text>{kCatalogs, kQueries}));
  ExpectNoBoxes();
}

TEST_F(scenario, a_cancelled_logon_leaves_a_server_without_folders_and_shows_the_error) {
  driver->OpenDocument(Document());
  driver->AnswerLogon(LogonAnswer::Cancel);
  driver->Expand(kStaticNode);
  driver->Expand(kServer);
  EXPECT_TRUE(driver->Children(kServer).empty());
  EXPECT_FALSE(driver->HasExpandMark(kServer));
  const auto boxes = driver->TakeBoxes();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].sTitle, "Error");
  EXPECT_EQ(boxes[0].buttons, platform::MsgBoxButtons::OkOnly);
  EXPECT_FALSE(boxes[0].sText.empty());
}

TEST_F(scenario, expanding_lists_catalogs_and_their_tables) {
  driver->OpenDocument(Document());
  ExpandTables();
  EXPECT_TRUE(driver->HasItem(kPlant));
  EXPECT_EQ(driver->DisplayName(kPlant), "Plant");
  EXPECT_TRUE(driver->HasItem(kPumps));
  EXPECT_TRUE(driver->HasItem(kFans));
  EXPECT_EQ(driver->DisplayName(kPumps), "Pumps");
  EXPECT_FALSE(driver->HasExpandMark(kPumps));
  ExpectNoBoxes();
}

TEST_F(scenario, the_queries_folder_has_no_mark_and_lists_its_queries_in_order) {
  driver->OpenDocument(Document());
  driver->Expand(kStaticNode);
  driver->Expand(kServer);
  EXPECT_FALSE(driver->HasExpandMark(kQueries));
  driver->Expand(kQueries);
  EXPECT_EQ(driver->Children(kQueries),
            (std::vector<Text>{kAllPumps, "localhost.Queries.v1.2 of \"it\""}));
  driver->Select(kQueries);
  const auto rows = driver->ListRows();
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].sText, "All pumps");
  ASSERT_EQ(rows[0].sSubItems.size(), 2U);
  EXPECT_EQ(rows[0].sSubItems[1], "SELECT Name FROM Plant..Pumps");
  EXPECT_EQ(rows[1].sText, "v1.2 of \"it\"");
  ExpectNoBoxes();
}

TEST_F(scenario, a_folder_lists_its_children_once_it_was_expanded) {
  driver->OpenDocument(Document());
  driver->Expand(kStaticNode);
  driver->Expand(kServer);
  driver->Select(kCatalogs);
  EXPECT_TRUE(driver->ListRows().empty());
  driver->Expand(kCatalogs);
  driver->Select(kServer);
  driver->Select(kCatalogs);
  const auto rows = driver->ListRows();
  EXPECT_TRUE(std::any_of(rows.begin(), rows.end(),
                          [](const ListRow& row) { return row.sText == "Plant"; }));
  ExpectNoBoxes();
}

TEST_F(scenario, a_new_table_takes_the_limits_and_the_default_filter) {
  driver->OpenDocument(Document());
  ExpandTables();
  EXPECT_TRUE(driver->HasItem(kData));
  driver->SaveAndReopen();
  const auto data = SavedQuery("Plant", "Data");
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->MaxRows(), 100);
  EXPECT_EQ(data->QueryTimeout(), 20);
  EXPECT_EQ(data->FilterCondition(), "Timestamp BETWEEN '*-2h' AND '*'");
  const auto pumps = SavedQuery("Plant", "Pumps");
  ASSERT_NE(pumps, nullptr);
  EXPECT_EQ(pumps->MaxRows(), 100);
  EXPECT_EQ(pumps->FilterCondition(), "");
  ASSERT_EQ(pumps->Columns().Count(), 2);
  EXPECT_EQ(pumps->Columns().Item(1), "Name");
  EXPECT_EQ(pumps->Columns().Item(2), "Speed");
  ExpectNoBoxes();
}

TEST_F(scenario, a_known_table_keeps_its_limits_and_its_filter) {
  driver->OpenDocument(Document({.bKnownPumps = true}));
  ExpandTables();
  driver->SaveAndReopen();
  const auto pumps = SavedQuery("Plant", "Pumps");
  ASSERT_NE(pumps, nullptr);
  EXPECT_EQ(pumps->MaxRows(), 3);
  EXPECT_EQ(pumps->QueryTimeout(), 5);
  EXPECT_EQ(pumps->FilterCondition(), "Name <> 'none'");
  ExpectNoBoxes();
}

TEST_F(scenario, selecting_a_table_shows_its_rows) {
  driver->OpenDocument(Document());
  ExpandTables();
  driver->Select(kPumps);
  const GridSnapshot grid = driver->Grid();
  ASSERT_TRUE(grid.bShown);
  EXPECT_EQ(grid.columns, (std::vector<Text>{"Name", "Speed"}));
  EXPECT_EQ(grid.rows, (std::vector<std::vector<Text>>{
                           {"P1", "1.5"}, {"P2", "2.5"}, {"P3", "3.5"}, {"P4", ""}}));
  EXPECT_FALSE(grid.bSqlStatements);
  ExpectNoBoxes();
}

TEST_F(scenario, returning_to_a_table_shows_the_same_rows_without_a_new_query) {
  driver->OpenDocument(Document());
  ExpandTables();
  driver->Select(kPumps);
  const auto before = FirstColumn();
  driver->Select(kFans);
  EXPECT_EQ(FirstColumn(), (std::vector<Text>{"F1"}));
  driver->AppendRow(kServer, "Plant", "Pumps", {"P5", 5.5});
  const Long lStatements = driver->StatementsSent();
  driver->Select(kPumps);
  EXPECT_EQ(FirstColumn(), before);
  EXPECT_EQ(driver->StatementsSent(), lStatements);
  ExpectNoBoxes();
}

TEST_F(scenario, returning_to_a_query_shows_the_same_rows_without_running_it_again) {
  driver->OpenDocument(Document());
  driver->Expand(kStaticNode);
  driver->Expand(kServer);
  driver->Expand(kQueries);
  driver->Select(kAllPumps);
  const auto before = FirstColumn();
  EXPECT_EQ(before, (std::vector<Text>{"P1", "P2", "P3", "P4"}));
  driver->Select(kQueries);
  EXPECT_FALSE(driver->Grid().bShown);
  const Long lStatements = driver->StatementsSent();
  driver->Select(kAllPumps);
  EXPECT_EQ(FirstColumn(), before);
  EXPECT_EQ(driver->StatementsSent(), lStatements);
  ExpectNoBoxes();
}

TEST_F(scenario, a_query_takes_the_roots_limit_and_a_known_table_its_own) {
  driver->OpenDocument(Document({.lMaxRows = 2, .bKnownPumps = true}));
  ExpandTables();
  driver->Expand(kQueries);
  driver->Select(kAllPumps);
  EXPECT_EQ(FirstColumn(), (std::vector<Text>{"P1", "P2"}));
  driver->Select(kPumps);
  EXPECT_EQ(FirstColumn(), (std::vector<Text>{"P1", "P2", "P3"}));
  ExpectNoBoxes();
}

TEST_F(scenario, the_structure_view_lists_columns_with_type_null_and_key) {
  driver->OpenDocument(Document());
  ExpandTables();
  driver->Select(kPumps);
  driver->ShowView("TableStructureListView");
  EXPECT_FALSE(driver->Grid().bShown);
  const auto rows = driver->ListRows();
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].sText, "Name");
  EXPECT_EQ(rows[0].lIcon, 6);
  ASSERT_EQ(rows[0].sSubItems.size(), 3U);
  EXPECT_EQ(rows[0].sSubItems[0], "Name");
  EXPECT_FALSE(rows[0].sSubItems[1].empty());
  EXPECT_EQ(rows[0].sSubItems[2], "no");
  EXPECT_EQ(rows[1].sText, "Speed");
  EXPECT_EQ(rows[1].lIcon, 5);
  ASSERT_EQ(rows[1].sSubItems.size(), 3U);
  EXPECT_EQ(rows[1].sSubItems[2], "yes");
  driver->ShowView("TableEditorOcxView");
  EXPECT_EQ(FirstColumn(), (std::vector<Text>{"P1", "P2", "P3", "P4"}));
  ExpectNoBoxes();
}

TEST_F(scenario, a_saved_document_opens_configured_as_it_was_and_disconnected) {
  driver->OpenDocument(Document({.bKnownPumps = true}));
  driver->SaveAndReopen();
  const auto queryCount =
      driver->SavedValue("ServersNode_ServerNodes_ServerNode1_QueryNodes_QueryNodeCount");
  EXPECT_EQ(queryCount, Value(Long{2}));
  EXPECT_EQ(driver->SavedValue("ServersNode_MaxRows"), Value(Long{100}));
  EXPECT_EQ(driver->SavedValue("ServersNode_QueryTimeout"), Value(Long{20}));
  EXPECT_EQ(driver->SavedValue("ServersNode_DefaultStartTime"), Value("*-2h"));
  EXPECT_EQ(driver->SavedValue("ServersNode_SqlStatements"), Value(false));
  EXPECT_EQ(driver->SavedValue("ServersNode_ServerNodes_ServerNode1_ExtendedOptions"),
            Value("Log Level = 1;"));
  EXPECT_FALSE(driver->HasItem(kServer));
  ExpandTables();
  EXPECT_EQ(driver->LogonsSeen(), 1);
  driver->SaveAndReopen();
  ExpandTables();
  EXPECT_EQ(driver->LogonsSeen(), 2);
  driver->Expand(kQueries);
  EXPECT_TRUE(driver->HasItem(kAllPumps));
  driver->Select(kPumps);
  EXPECT_EQ(FirstColumn(), (std::vector<Text>{"P1", "P2", "P3"}));
  ExpectNoBoxes();
}

TEST_F(scenario, saving_while_connected_puts_the_options_in_effect_behind_the_stored_ones) {
  driver->OpenDocument(Document());
  driver->Expand(kStaticNode);
  driver->Expand(kServer);
  driver->SaveAndReopen();
  const Text sOptions =
      platform::ToText(driver->SavedValue("ServersNode_ServerNodes_ServerNode1_ExtendedOptions"));
  EXPECT_TRUE(sOptions.starts_with("Log Level = 1;Log File = ")) << sOptions;
  EXPECT_NE(sOptions.find(";Historians By GUID = "), Text::npos) << sOptions;
  ExpectNoBoxes();
}

TEST_F(scenario, the_tree_reads_from_the_root_down_in_order) {
  driver->OpenDocument(Document());
  ExpandTables();
  driver->Expand(kQueries);
  const Text sTree = driver->Tree();
  EXPECT_TRUE(sTree.starts_with("ORVANE Servers\n  localhost\n    Catalogs\n")) << sTree;
  EXPECT_NE(sTree.find("\n      Plant\n"), Text::npos) << sTree;
  EXPECT_NE(sTree.find("\n        Pumps\n"), Text::npos) << sTree;
  EXPECT_TRUE(sTree.ends_with("\n    Queries\n      All pumps\n      v1.2 of \"it\"\n")) << sTree;
  EXPECT_TRUE(IsBefore(kServer, kCatalogs, kQueries));
  ExpectNoBoxes();
}

}  // namespace
}  // namespace orvane::scenarios
