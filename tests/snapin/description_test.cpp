#include "snapin/description.h"

#include <gtest/gtest.h>

#include <set>

namespace orvane::snapin {
namespace {

using platform::Text;

const platform::NodeTypeDescription& NodeType(const platform::SnapInDescription& description,
                                              const Text& sName) {
  for (const auto& type : description.nodeTypes) {
    if (type.sName == sName) return type;
  }
  throw std::runtime_error(sName);
}

TEST(description, names_the_snap_in) {
  const auto description = StaticDescription();
  EXPECT_EQ(description.sName, "SnapIn");
  EXPECT_EQ(description.sDisplayName, "ORVANE OLE DB");
  EXPECT_EQ(description.sDescription, "Manages ORVANE System via ORVANE OLE DB");
  EXPECT_EQ(description.sVersion, "1.0");
  EXPECT_EQ(description.sProvider, "ORVANE");
  EXPECT_EQ(description.sStaticNodeType, "Servers");
  EXPECT_EQ(description.sSmallFolders, "m_imlSmallFolders");
  EXPECT_EQ(description.sSmallOpenFolders, "m_imlSmallOpenFolders");
  EXPECT_EQ(description.sLargeFolders, "m_imlLargeFolders");
}

TEST(description, says_beneath_which_items_a_server_may_have_changed_something) {
  std::vector<Text> names;
  for (const auto& type : StaticDescription().nodeTypes) {
    if (type.bReadFromServer) names.push_back(type.sName);
  }
  EXPECT_EQ(names, (std::vector<Text>{"Catalogs", "Catalog"}));
}

TEST(description, has_seven_node_types_with_identities_of_their_own) {
  const auto description = StaticDescription();
  std::vector<Text> names;
  std::set<Text> guids;
  for (const auto& type : description.nodeTypes) {
    names.push_back(type.sName);
    guids.insert(type.sGuid);
    EXPECT_EQ(type.sDisplayName, type.sName);
    EXPECT_EQ(type.sGuid.size(), 38U);
    EXPECT_GE(type.lFolderImage, 1);
    EXPECT_FALSE(type.resultViews.empty());
  }
  EXPECT_EQ(names, (std::vector<Text>{"Servers", "Server", "Catalogs", "Catalog", "Table",
                                      "Queries", "Query"}));
  EXPECT_EQ(guids.size(), 7U);
}

TEST(description, keeps_the_identities_that_documents_were_written_with) {
  const auto description = StaticDescription();
  EXPECT_EQ(NodeType(description, "Servers").sGuid, "{FE004263-8954-4924-B317-B2864CCFBF83}");
  EXPECT_EQ(NodeType(description, "Server").sGuid, "{A8CDD122-6FCE-4720-9D63-1456695C0FEF}");
  EXPECT_EQ(NodeType(description, "Catalogs").sGuid, "{ADA83B10-D8CB-4015-BEBD-DDF986E1F2AB}");
  EXPECT_EQ(NodeType(description, "Catalog").sGuid, "{73AEAB66-0A1B-4A96-9436-63CCC9CDDAF6}");
  EXPECT_EQ(NodeType(description, "Table").sGuid, "{8963E3FA-FA29-4446-A839-B60469DDCC35}");
  EXPECT_EQ(NodeType(description, "Queries").sGuid, "{D3AAC6A6-CC50-4468-9D0F-E06ECE244750}");
  EXPECT_EQ(NodeType(description, "Query").sGuid, "{E5AA782A-D69C-40C1-8C8A-3E8CCF371575}");
}

TEST(description, folders_show_the_default_list) {
  const auto description = StaticDescription();
  for (const char* sType : {"Servers", "Server", "Catalogs", "Catalog"}) {
    const auto views = NodeType(description, sType).resultViews;
    ASSERT_EQ(views.size(), 1U) << sType;
    EXPECT_EQ(views[0].sName, "DefaultListView");
    EXPECT_EQ(views[0].sDisplayName, "");
    EXPECT_EQ(views[0].sDescription, "");
    EXPECT_EQ(views[0].sControlProgId, "");
    ASSERT_EQ(views[0].columns.size(), 1U);
    EXPECT_EQ(views[0].columns[0].sText, "Name");
    EXPECT_EQ(views[0].columns[0].lWidth, 200);
  }
}

TEST(description, the_queries_folder_shows_the_queries_list) {
  const auto description = StaticDescription();
  const auto views = NodeType(description, "Queries").resultViews;
  ASSERT_EQ(views.size(), 1U);
  EXPECT_EQ(views[0].sName, "QueriesListView");
  EXPECT_EQ(views[0].sDisplayName, "");
  EXPECT_EQ(views[0].sDescription, "");
  EXPECT_EQ(views[0].sControlProgId, "");
  ASSERT_EQ(views[0].columns.size(), 1U);
  EXPECT_EQ(views[0].columns[0].sText, "Name");
  EXPECT_EQ(views[0].columns[0].lWidth, 200);
}

TEST(description, a_table_shows_its_data_first_and_its_structure_second) {
  const auto description = StaticDescription();
  const auto views = NodeType(description, "Table").resultViews;
  ASSERT_EQ(views.size(), 2U);
  EXPECT_EQ(views[0].sName, "TableEditorOcxView");
  EXPECT_EQ(views[0].sDisplayName, "Data");
  EXPECT_EQ(views[0].sDescription, "Displays table data.");
  EXPECT_EQ(views[0].sControlProgId, "ORVOLEDBCtls.TableEditor");
  EXPECT_EQ(views[1].sName, "TableStructureListView");
  EXPECT_EQ(views[1].sDisplayName, "Structure");
  EXPECT_EQ(views[1].sDescription, "Displays table structure.");
  EXPECT_EQ(views[1].sControlProgId, "");
  ASSERT_EQ(views[1].columns.size(), 3U);
  EXPECT_EQ(views[1].columns[0].sText, "Column name");
  EXPECT_EQ(views[1].columns[1].sText, "Data type");
  EXPECT_EQ(views[1].columns[2].sText, "Is nullable?");
}

TEST(description, a_query_shows_its_results) {
  const auto description = StaticDescription();
  const auto views = NodeType(description, "Query").resultViews;
  ASSERT_EQ(views.size(), 1U);
  EXPECT_EQ(views[0].sName, "QueryResultsOcxView");
  EXPECT_EQ(views[0].sDescription, "");
  EXPECT_EQ(views[0].sControlProgId, "ORVOLEDBCtls.QueryResults");
}

}  // namespace
}  // namespace orvane::snapin
