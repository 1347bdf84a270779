// The model nodes behind scope items, and the way from a node up to its server.
// Each fails with 91 when what is asked for is not there and with 13 when it is of another kind.
#pragma once

#include "nodes/catalog_node.h"
#include "nodes/query_node.h"
#include "nodes/server_node.h"
#include "nodes/table_node.h"
#include "platform/console/scope_items.h"
#include "platform/failure.h"

namespace orvane::snapin {

template <class T>
std::shared_ptr<T> TagAs(const platform::ScopeItem& item) {
  const platform::ObjectPtr tag = item.Tag();
  if (!tag) {
    throw platform::Failure(
        platform::failure::kObjectNotSet,
        "\"" + item.DisplayName() +
            "\" stands for nothing any more; reload its server, or select another item.");
  }
  auto node = std::dynamic_pointer_cast<T>(tag);
  if (!node) {
    throw platform::Failure(
        platform::failure::kTypeMismatch,
        "\"" + item.DisplayName() +
            "\" stands for something else; reload its server, or select another item.");
  }
  return node;
}

/// The node itself, or a failure when it has left the tree.
template <class T>
std::shared_ptr<T> InTree(std::shared_ptr<T> parent) {
  if (!parent) {
    throw platform::Failure(platform::failure::kObjectNotSet,
                            "The item is no longer in the tree; select another one.");
  }
  return parent;
}

inline nodes::ServerNodePtr ServerOf(const nodes::TableNode& table) {
  return InTree(InTree(table.ParentCatalogNode())->ParentServerNode());
}

}  // namespace orvane::snapin
