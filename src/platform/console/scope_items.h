// The console's tree items, as the snap-in adds and describes them.
// Items and nodes belong to the console; references stay safe after a removal, and then do nothing.
#pragma once

#include <memory>

#include "platform/value.h"

namespace orvane::platform {

/// Column headers of a list, positions from 1. Widths are in pixels at 96 dots an inch.
class ColumnHeaders {
 public:
  ColumnHeaders() = default;
  ColumnHeaders(const ColumnHeaders&) = delete;
  ColumnHeaders& operator=(const ColumnHeaders&) = delete;
  virtual ~ColumnHeaders() = default;

  virtual void Clear() = 0;
  virtual void Add(Long lIndex, const Text& sKey, const Text& sText, Long lWidth) = 0;
};

/// The texts behind a list row, positions from 1.
class ListSubItems {
 public:
  ListSubItems() = default;
  ListSubItems(const ListSubItems&) = delete;
  ListSubItems& operator=(const ListSubItems&) = delete;
  virtual ~ListSubItems() = default;

  virtual void Clear() = 0;
  /// Adds, or replaces, the text at the position.
  virtual void Add(Long lIndex, const Text& sKey, const Text& sText) = 0;
};

/// The console's own node behind a scope item.
class ScopeNode {
 public:
  ScopeNode() = default;
  ScopeNode(const ScopeNode&) = delete;
  ScopeNode& operator=(const ScopeNode&) = delete;
  virtual ~ScopeNode() = default;

  /// True once the node has been expanded, whether or not it is open now.
  virtual Boolean ExpandedOnce() const = 0;
  virtual Boolean HasChildren() const = 0;
  virtual void HasChildren(Boolean bHasChildren) = 0;
  /// Expands the node in the console's name space, as if the user had opened it. What the
  /// snap-in reports while doing so has been reported when this returns.
  virtual void ExpandInNameSpace() = 0;
};

using ScopeNodePtr = std::shared_ptr<ScopeNode>;

class ScopeItem {
 public:
  ScopeItem() = default;
  ScopeItem(const ScopeItem&) = delete;
  ScopeItem& operator=(const ScopeItem&) = delete;
  virtual ~ScopeItem() = default;

  virtual Text NodeTypeName() const = 0;
  virtual Text Key() const = 0;
  /// Files the item under another key. Fails with 457 when the key is taken.
  virtual void Key(const Text& sKey) = 0;
  virtual Text NodeId() const = 0;
  virtual void NodeId(const Text& sNodeId) = 0;
  virtual Text DisplayName() const = 0;
  virtual void DisplayName(const Text& sDisplayName) = 0;
  /// The model node that the item shows.
  virtual ObjectPtr Tag() const = 0;
  virtual void Tag(const ObjectPtr& tag) = 0;
  virtual platform::ColumnHeaders& ColumnHeaders() = 0;
  virtual platform::ListSubItems& ListSubItems() = 0;
  virtual ScopeNodePtr ScopeNode() = 0;
};

using ScopeItemPtr = std::shared_ptr<ScopeItem>;

/// All scope items of the snap-in, by key.
class ScopeItems {
 public:
  ScopeItems() = default;
  ScopeItems(const ScopeItems&) = delete;
  ScopeItems& operator=(const ScopeItems&) = delete;
  virtual ~ScopeItems() = default;

  /// Adds an item as the last child of the parent node; its display name starts as that of its
  /// node type. Fails with 457 when the key is taken.
  virtual ScopeItemPtr Add(const Text& sNodeTypeName, const Text& sKey, const ScopeNodePtr& parent,
                           Boolean bHasChildren) = 0;
  /// The item of that key, or none.
  virtual ScopeItemPtr Item(const Text& sKey) = 0;
  /// Removes the item and everything beneath it. Fails with 5 when there is none.
  virtual void Remove(const Text& sKey) = 0;
  /// Removes everything beneath the node.
  virtual void RemoveChildren(const ScopeNodePtr& parent) = 0;
};

}  // namespace orvane::platform
