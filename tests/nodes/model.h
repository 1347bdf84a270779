// A model to test: a root with an owner that counts, over data access in memory.
#pragma once

#include <gtest/gtest.h>

#include "nodes/catalog_nodes_collection.h"
#include "nodes/query_nodes_collection.h"
#include "nodes/server_nodes_collection.h"
#include "nodes/servers_node.h"
#include "nodes/table_nodes_collection.h"
#include "platform/failure.h"
#include "tests/fakes/historian.h"
#include "tests/fakes/property_bag.h"

namespace orvane::nodes {

class CountingOwner : public ServersNodeOwner {
 public:
  void ServersNodeChanged() override { ++nChanges; }
  int nChanges = 0;
};

/// The number of the failure that the step raises, 0 when it raises none.
template <class Step>
platform::Long FailureOf(Step&& step) {
  try {
    step();
  } catch (const platform::Failure& failure) {
    EXPECT_FALSE(failure.Description().empty());
    return failure.Number();
  }
  return 0;
}

class Model : public testing::Test {
 protected:
  Model() {
    historian->servers = {{"localhost", {}}, {"S1", {}}, {"S2", {}}};
    root->Parent(owner);
    bag.Creates(platform::kTableQueryProgId,
                [] { return std::make_shared<fakes::FakeTableQuery>(); });
  }

  /// A server of that name in the root's list.
  ServerNodePtr AddServer(const platform::Text& sServer) {
    auto server = ServerNode::Create(objects);
    server->Server(sServer);
    root->ServerNodes()->Add(server);
    return server;
  }
  /// How often the owner is told while the step runs.
  template <class Step>
  int ChangesDuring(Step&& step) {
    const int nBefore = owner->nChanges;
    step();
    return owner->nChanges - nBefore;
  }
  static platform::RecordsetPtr Rows() {
    return std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{{"Name"}},
                                                  std::vector<fakes::FakeRecordset::Row>{});
  }

  fakes::FakeHistorianPtr historian = std::make_shared<fakes::FakeHistorian>();
  platform::ObjectFactoryPtr objects = std::make_shared<fakes::FakeObjects>(historian);
  std::shared_ptr<CountingOwner> owner = std::make_shared<CountingOwner>();
  ServersNodePtr root = ServersNode::Create(objects);
  fakes::FakePropertyBag bag;
};

}  // namespace orvane::nodes
