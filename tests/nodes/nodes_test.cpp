// The nodes by themselves: initial values and settings.
#include "tests/nodes/initial_options.h"
#include "tests/nodes/model.h"

namespace orvane::nodes {
namespace {

using platform::Long;
using platform::Text;

using nodes_test = Model;

TEST_F(nodes_test, a_new_root_has_the_initial_options_and_no_servers) {
  const auto node = ServersNode::Create(objects);
  ExpectInitialOptionsAndNoServers(*node);
}

TEST_F(nodes_test, a_new_server_is_the_local_one_disconnected_and_empty) {
  const auto node = ServerNode::Create(objects);
  EXPECT_EQ(node->Provider(), "ORVOLEDB");
  EXPECT_EQ(node->Server(), "localhost");
  EXPECT_EQ(node->User(), "orvanesnapin");
  EXPECT_EQ(node->ExtendedOptions(), "");
  EXPECT_EQ(node->Connection(), nullptr);
  EXPECT_EQ(node->CatalogNodes()->Count(), 0);
  EXPECT_EQ(node->QueryNodes()->Count(), 0);
  EXPECT_EQ(node->ParentServersNode(), nullptr);
}

TEST_F(nodes_test, a_new_catalog_is_unnamed_and_empty) {
  const auto node = CatalogNode::Create(objects);
  EXPECT_EQ(node->Catalog(), "");
  EXPECT_EQ(node->TableNodes()->Count(), 0);
  EXPECT_EQ(node->ParentServerNode(), nullptr);
}

TEST_F(nodes_test, a_new_table_has_an_empty_query_and_no_cached_rows) {
  const auto node = TableNode::Create(objects);
  Long lUpdatability = -1;
  EXPECT_TRUE(node->DefaultFilterCondition());
  EXPECT_EQ(node->GetRecordset(lUpdatability), nullptr);
  EXPECT_EQ(lUpdatability, 0);
  ASSERT_NE(node->Query(), nullptr);
  EXPECT_EQ(node->Query()->Catalog(), "");
  EXPECT_EQ(node->Query()->Table(), "");
  EXPECT_EQ(node->Query()->Columns().Count(), 0);
  EXPECT_EQ(node->ParentCatalogNode(), nullptr);
}

TEST_F(nodes_test, a_new_query_is_unnamed_and_empty) {
  const QueryNode node;
  EXPECT_EQ(node.QueryName(), "");
  EXPECT_EQ(node.Query(), "");
  EXPECT_EQ(node.Recordset(), nullptr);
  EXPECT_EQ(node.ParentServerNode(), nullptr);
}

TEST_F(nodes_test, settings_are_stored_unchanged) {
  root->MaxRows(-5);
  root->QueryTimeout(0);
  root->SetDefaultTimeRange(" no time ", "");
  root->SqlStatements(false);
  root->Context(true);
  Text sStart;
  Text sEnd;
  root->GetDefaultTimeRange(sStart, sEnd);
  EXPECT_EQ(root->MaxRows(), -5);
  EXPECT_EQ(root->QueryTimeout(), 0);
  EXPECT_EQ(sStart, " no time ");
  EXPECT_EQ(sEnd, "");
  EXPECT_FALSE(root->SqlStatements());
  EXPECT_TRUE(root->Context());
}

TEST_F(nodes_test, a_table_gives_back_the_rows_and_updatability_it_was_given) {
  const auto node = TableNode::Create(objects);
  const auto rows = Rows();
  Long lUpdatability = 0;
  node->SetRecordset(rows, 7);
  EXPECT_EQ(node->GetRecordset(lUpdatability), rows);
  EXPECT_EQ(lUpdatability, 7);
  node->SetRecordset(nullptr, 0);
  EXPECT_EQ(node->GetRecordset(lUpdatability), nullptr);
  EXPECT_EQ(lUpdatability, 0);
}

TEST_F(nodes_test, releasing_a_servers_rows_drops_those_of_tables_and_keeps_those_of_queries) {
  const auto server = AddServer("S1");
  const auto first = server->CatalogNodes()->Add("C1")->TableNodes()->Add("T1");
  const auto second = server->CatalogNodes()->Add("C2")->TableNodes()->Add("T2");
  const auto query = server->QueryNodes()->Add("Q", "SELECT 1");
  first->SetRecordset(Rows(), 1);
  second->SetRecordset(Rows(), 2);
  query->Recordset(Rows());
  EXPECT_EQ(ChangesDuring([&] { server->ReleaseCachedRecordsets(); }), 0);
  Long lUpdatability = -1;
  EXPECT_EQ(first->GetRecordset(lUpdatability), nullptr);
  EXPECT_EQ(lUpdatability, 0);
  EXPECT_EQ(second->GetRecordset(lUpdatability), nullptr);
  EXPECT_EQ(lUpdatability, 0);
  EXPECT_NE(query->Recordset(), nullptr);
}

TEST_F(nodes_test, releasing_the_rows_of_a_server_without_tables_does_nothing) {
  const auto server = AddServer("S1");
  server->ReleaseCachedRecordsets();
  server->CatalogNodes()->Add("C");
  server->ReleaseCachedRecordsets();
  EXPECT_EQ(server->CatalogNodes()->Count(), 1);
}

TEST_F(nodes_test, the_root_forms_the_default_filter_from_its_time_range) {
  root->SetDefaultTimeRange("y", "t");
  EXPECT_EQ(root->FormDefaultFilterCondition("Plant1", "Data"), "Timestamp BETWEEN 'y' AND 't'");
  root->SetDefaultTimeRange("", "");
  EXPECT_EQ(root->FormDefaultFilterCondition("Plant1", "Data"), "");
}

}  // namespace
}  // namespace orvane::nodes
