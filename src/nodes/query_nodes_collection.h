// The named queries of a server, filed under their names. Owned by the server; one thread.
// Filled by the administrator; saved with the document.
#pragma once

#include <memory>

#include "nodes/nodes_collection.h"
#include "nodes/query_node.h"

namespace orvane::nodes {

class QueryNodesCollection : public NodesCollection<QueryNode, ServerNode> {
 public:
  QueryNodesCollection();

  /// The node at a position or of a key; fails with 9 or 5 when there is none: queries are asked
  /// for by names known to exist.
  QueryNodePtr Item(const platform::Value& vtIndexKey) const;

  /// Files a new node at the end. Fails with 457 when the name is present.
  QueryNodePtr Add(const platform::Text& sName, const platform::Text& sQuery);
  /// Position of the query of exactly that name, case included; -1 when there is none.
  platform::Long Find(const platform::Text& sQueryName) const;
  /// Whether this very node is in the list, found under the exact name that it has now: a rename
  /// that was refused leaves a node out of its list.
  platform::Boolean Holds(const QueryNodePtr& qrNode) const;
  /// Puts a node back under its current name, before the position, or at the end when the
  /// position is behind the last one. Silent, and the node's back references stay as they are.
  /// Fails with 9 for a position below 1, with 457 when the name is present and with 91 without a
  /// node.
  void Insert(const QueryNodePtr& qrNode, platform::Long lIndexBefore);

  /// Gives a node another name and text, and files it anew at its place; one that is not in the
  /// list goes to the end. Fails with 457, the node staying out of the list under that name, when
  /// the name is present.
  void Refile(const QueryNodePtr& qrNode, const platform::Text& sName,
              const platform::Text& sQuery);

  /// Called by a node when one of its settings has changed; tells the owner.
  void QueryNodeChanged();

 protected:
  NodePtr CreateNode() const override;
  void Adopt(QueryNode& node) override;
  platform::Text KeyOf(const QueryNode& node) const override;
  void NotifyOwner(ServerNode& owner) override;
};

}  // namespace orvane::nodes
