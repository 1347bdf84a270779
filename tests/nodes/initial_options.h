// What every root begins with that was given no options, new or loaded.
#pragma once

#include <gtest/gtest.h>

#include "nodes/server_nodes_collection.h"
#include "nodes/servers_node.h"

namespace orvane::nodes {

inline void ExpectInitialOptionsAndNoServers(const ServersNode& root) {
  platform::Text sStart;
  platform::Text sEnd;
  root.GetDefaultTimeRange(sStart, sEnd);
  EXPECT_EQ(root.MaxRows(), 100);
  EXPECT_EQ(root.QueryTimeout(), 60);
  EXPECT_EQ(sStart, "*-1h");
  EXPECT_EQ(sEnd, "*");
  EXPECT_TRUE(root.SqlStatements());
  EXPECT_FALSE(root.Context());
  EXPECT_EQ(root.ServerNodes()->Count(), 0);
}

}  // namespace orvane::nodes
