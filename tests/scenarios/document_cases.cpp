// What a document keeps of names in any script and with any characters that may stand in them.
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

// As much as a real historian lets stand in a name: that of a server no line break, that of a
// catalog no double quote either.
const Text kOddServer = "Север \"北\" v1.2";
const Text kOddCatalog = "Цех 工場 v1-2";
const Text kOddTable = "Насос\"泵\"\nv1.2";
const Text kOddColumn = "Имя\"名\"\nv1.2";
const Text kOddQuery = "Запрос \"查询\"\nv1.2";
const Text kOddSql = "SELECT 'Ответ \"答\"\nv1.2'";
const Text kOddFilter = "1 = 1 OR 'Нет \"无\"\nv1.2' = ''";

const Text kOddCatalogs = kOddServer + ".Catalogs";
const Text kOddCatalogKey = kOddCatalogs + "." + kOddCatalog;
const Text kOddTableKey = kOddCatalogKey + "." + kOddTable;
const Text kOddQueries = kOddServer + ".Queries";

void WriteOddDocument(PropertyBag& pb, platform::ObjectFactory& objects) {
  const Text sServer = "ServersNode_ServerNodes_ServerNode1_";
  const Text sCatalogs = sServer + "CatalogNodes_";
  const Text sTables = sCatalogs + "CatalogNode1_TableNodes_";
  WriteDocument(pb, objects);
  pb.WriteProperty(sServer + "Server", kOddServer);
  pb.WriteProperty(sServer + "QueryNodes_QueryNodeCount", Long{1});
  pb.WriteProperty(sServer + "QueryNodes_QueryNode1_QueryName", kOddQuery);
  pb.WriteProperty(sServer + "QueryNodes_QueryNode1_Query", kOddSql);
  const platform::TableQueryPtr query = objects.CreateTableQuery();
  query->Catalog(kOddCatalog);
  query->Table(kOddTable);
  query->Columns().Add(kOddColumn);
  query->FilterCondition(kOddFilter);
  query->SortCriterion(platform::SortCriterion{kOddColumn, false});
  query->MaxRows(7);
  query->QueryTimeout(8);
  pb.WriteProperty(sCatalogs + "CatalogNodeCount", Long{1});
  pb.WriteProperty(sCatalogs + "CatalogNode1_Catalog", kOddCatalog);
  pb.WriteProperty(sTables + "TableNodeCount", Long{1});
  pb.WriteProperty(sTables + "TableNode1_Query", query);
  pb.WriteProperty(sTables + "TableNode1_DefaultFilterCondition", false);
}

class odd_names : public command_scenario {
 protected:
  odd_names() {
    driver->AddServer(
        {kOddServer,
         {{kOddCatalog,
           {{kOddTable, {{kOddColumn, DataType::WChar, false, true}}, {{"Насос 1"}, {"泵 2"}}}}}}});
  }

  void ExpandTables() {
    for (const Text& sKey :
         {Text(kStaticNode), kOddServer, kOddCatalogs, kOddCatalogKey, kOddQueries}) {
      driver->Expand(sKey);
    }
  }
  /// Saves, and expects every value of the document as it was written, and no node twice.
  void ExpectSaved() {
    Boolean bDefaultFilter = true;
    const auto query = SavedTable(kOddTable, &bDefaultFilter);
    EXPECT_EQ(Saved("MaxRows"), Value(Long{100}));
    EXPECT_EQ(Saved("QueryTimeout"), Value(Long{20}));
    EXPECT_EQ(Saved("DefaultStartTime"), Value("*-2h"));
    EXPECT_EQ(Saved("DefaultEndTime"), Value("*"));
    EXPECT_EQ(Saved("SqlStatements"), Value(false));
    EXPECT_EQ(Saved("ServerNodes_ServerNodeCount"), Value(Long{1}));
    const Text sServer = "ServerNodes_ServerNode1_";
    EXPECT_EQ(Saved(sServer + "Provider"), Value("ORVOLEDB"));
    EXPECT_EQ(Saved(sServer + "Server"), Value(kOddServer));
    EXPECT_EQ(Saved(sServer + "User"), Value("orvanesnapin"));
    EXPECT_EQ(Saved(sServer + "QueryNodes_QueryNodeCount"), Value(Long{1}));
    EXPECT_EQ(Saved(sServer + "QueryNodes_QueryNode1_QueryName"), Value(kOddQuery));
    EXPECT_EQ(Saved(sServer + "QueryNodes_QueryNode1_Query"), Value(kOddSql));
    EXPECT_EQ(Named(sServer + "CatalogNodes_CatalogNode", "_Catalog", kOddCatalog), 1);
    ASSERT_NE(query, nullptr);
    EXPECT_EQ(query->Catalog(), kOddCatalog);
    EXPECT_EQ(query->Table(), kOddTable);
    ASSERT_EQ(query->Columns().Count(), 1);
    EXPECT_EQ(query->Columns().Item(1), kOddColumn);
    EXPECT_EQ(query->FilterCondition(), kOddFilter);
    EXPECT_EQ(query->SortCriterion(), (platform::SortCriterion{kOddColumn, false}));
    EXPECT_EQ(query->MaxRows(), 7);
    EXPECT_EQ(query->QueryTimeout(), 8);
    EXPECT_FALSE(bDefaultFilter);
  }
  /// How many of the numbered nodes were saved under the name.
  Long Named(const Text& sNode, const Text& sProperty, const Text& sName) {
    Long lFound = 0;
    for (Long l = 1;; ++l) {
      const Value vtName = Saved(sNode + std::to_string(l) + sProperty);
      if (vtName.IsNull()) return lFound;
      if (vtName == Value(sName)) ++lFound;
    }
  }
};

TEST_F(odd_names, are_saved_and_found_again_as_they_were) {
  driver->OpenDocument(WriteOddDocument);
  for (int i = 0; i < 2; ++i) {
    // Never connected, the document is what it was; connected, what the server has comes to it.
    ExpectSaved();
    ExpandTables();
    EXPECT_EQ(driver->Children(kStaticNode), Texts{kOddServer});
    EXPECT_EQ(driver->Children(kOddQueries), Texts{kOddQueries + "." + kOddQuery});
    EXPECT_EQ(driver->DisplayName(kOddCatalogKey), kOddCatalog);
    EXPECT_EQ(driver->DisplayName(kOddTableKey), kOddTable);
    driver->Select(kOddTableKey);
    EXPECT_EQ(driver->Grid().columns, Texts{kOddColumn});
    EXPECT_EQ(FirstColumn(), (Texts{"泵 2", "Насос 1"}));
    ExpectSaved();
    ExpectNoBoxes();
  }
}

}  // namespace
}  // namespace orvane::scenarios::commands
