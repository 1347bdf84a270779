// A console of fakes with one server, for the tests of single handlers.
#pragma once

#include <gtest/gtest.h>

#include "nodes/catalog_nodes_collection.h"
#include "nodes/query_nodes_collection.h"
#include "nodes/server_nodes_collection.h"
#include "nodes/servers_node.h"
#include "nodes/table_nodes_collection.h"
#include "tests/snapin/fake_driver.h"

namespace orvane::snapin {

class SnapInTest : public testing::Test {
 protected:
  using Text = platform::Text;
  using Long = platform::Long;

  SnapInTest() {
    using platform::DataType;
    driver.AddServer(
        {"S1",
         {{"Plant",
           {{"Pumps",
             {{"Name", DataType::WChar, false, true}, {"Speed", DataType::Double, true, false}},
             {{"P1", 1.5}, {"P2", 2.5}, {"P3", 3.5}}},
            {"Data", {{"Tag", DataType::WChar, false, true}}, {}}}}}});
    driver.AddServer({"S2", {}});
  }

  nodes::ServersNodePtr Root() {
    return std::dynamic_pointer_cast<nodes::ServersNode>(driver.console->staticItem->Tag());
  }
  nodes::ServerNodePtr AddServer(const Text& sServer) {
    auto server = nodes::ServerNode::Create(driver.objects);
    server->Server(sServer);
    Root()->ServerNodes()->Add(server);
    return server;
  }
  /// Server S1 with everything expanded down to its tables and queries.
  nodes::ServerNodePtr ExpandAll() {
    auto server = AddServer("S1");
    server->QueryNodes()->Add("Q1", "SELECT Name FROM Plant..Pumps");
    for (const char* sKey : {"", "S1", "S1.Catalogs", "S1.Catalogs.Plant", "S1.Queries"}) {
      driver.Expand(sKey);
    }
    ExpectNoBoxes();
    return server;
  }
  nodes::TableNodePtr Pumps() {
    return std::dynamic_pointer_cast<nodes::TableNode>(
        driver.Item("S1.Catalogs.Plant.Pumps")->Tag());
  }
  nodes::QueryNodePtr Query() {
    return std::dynamic_pointer_cast<nodes::QueryNode>(driver.Item("S1.Queries.Q1")->Tag());
  }
  void ExpectNoBoxes() {
    for (const auto& box : driver.TakeBoxes()) ADD_FAILURE() << box.sText;
  }
  /// Expects one "Error" box with only an OK button and no icon, and gives its text.
  Text ErrorBox() {
    const auto boxes = driver.TakeBoxes();
    EXPECT_EQ(boxes.size(), 1U);
    if (boxes.size() != 1) return {};
    EXPECT_EQ(boxes[0].sTitle, "Error");
    EXPECT_EQ(boxes[0].buttons, platform::MsgBoxButtons::OkOnly);
    EXPECT_EQ(driver.ui->icons.back(), platform::MsgBoxIcon::None);
    return boxes[0].sText;
  }

  FakeDriver driver;
};

}  // namespace orvane::snapin
