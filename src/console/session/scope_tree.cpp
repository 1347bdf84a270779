#include "console/session/scope_tree.h"

#include <algorithm>

#include "console/session/item_look.h"
#include "platform/console/server_tag.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Boolean;
using platform::Failure;
using platform::Long;
using platform::ScopeItemPtr;
using platform::ScopeNodePtr;
using platform::Text;
namespace failure = platform::failure;

namespace {

ServerState StateOfServer(const platform::ObjectPtr& tag) {
  const auto* server = dynamic_cast<const platform::ServerTag*>(tag.get());
  if (!server) return ServerState::None;
  return server->OpenConnection() ? ServerState::Connected : ServerState::Disconnected;
}

[[noreturn]] void FailTaken(const Text& sKey) {
  throw Failure(failure::kKeyExists,
                "The tree already has an item with the key \"" + sKey +
                    "\"; remove or edit the item that has it, then disconnect its server and "
                    "connect it again.",
                "console");
}

}  // namespace

ScopeTree::ScopeTree(const ItemLook* look, QObject* parent)
    : QAbstractItemModel(parent), m_look(look) {}

ScopeTree::~ScopeTree() {
  if (m_static) Forget(*m_static);
}

void ScopeTree::Reset(const platform::SnapInDescription& description) {
  Clear();
  m_nodeTypes = description.nodeTypes;
  m_nodeTypeIndex.clear();
  for (std::size_t n = 0; n < m_nodeTypes.size(); ++n) {
    m_nodeTypeIndex.emplace(m_nodeTypes[n].sName, n);
  }
  const auto* type = NodeType(description.sStaticNodeType);
  const Text sName = type ? type->sDisplayName : description.sDisplayName;
  beginInsertRows({}, 0, 0);
  // The static node is not filed: no key of the snap-in's can meet it.
  m_static = std::make_shared<ScopeTreeItem>(this, description.sStaticNodeType,
                                             description.sStaticNodeType, sName,
                                             type ? type->lFolderImage : 0, true);
  m_static->m_sNodeId = description.sStaticNodeType;
  endInsertRows();
}

void ScopeTree::Clear() {
  if (!m_static) return;
  if (m_removing) m_removing(m_static, false);
  beginResetModel();
  Forget(*m_static);
  m_static.reset();
  m_pending.clear();
  endResetModel();
}

const platform::NodeTypeDescription* ScopeTree::NodeType(const Text& sName) const {
  const auto at = m_nodeTypeIndex.find(sName);
  return at == m_nodeTypeIndex.end() ? nullptr : &m_nodeTypes[at->second];
}

ScopeItemPtr ScopeTree::Add(const Text& sNodeTypeName, const Text& sKey, const ScopeNodePtr& parent,
                            Boolean bHasChildren) {
  const auto* node = dynamic_cast<ScopeTreeNode*>(parent.get());
  if (!node || node->Owner().m_tree != this) {
    throw Failure(failure::kInvalidArgument,
                  "The item \"" + sKey +
                      "\" cannot be added beneath an item that is gone; disconnect its server and "
                      "connect it again.",
                  "console");
  }
  const auto* type = NodeType(sNodeTypeName);
  if (!type) {
    throw Failure(failure::kInvalidArgument,
                  "The snap-in has no node type \"" + sNodeTypeName +
                      "\"; ask its maker for a corrected one.",
                  "console");
  }
  auto [at, bAdded] = m_index.try_emplace(sKey, nullptr);
  if (!bAdded) FailTaken(sKey);
  auto& above = node->Owner();
  auto item = std::make_shared<ScopeTreeItem>(this, sNodeTypeName, sKey, type->sDisplayName,
                                              type->lFolderImage, bHasChildren);
  at->second = item.get();
  item->m_parent = &above;
  item->m_nRow = above.m_children.size();
  above.m_children.push_back(item);
  if (!above.m_bPending) {
    above.m_bPending = true;
    m_pending.push_back(above.weak_from_this());
    if (!m_bFlushPosted) {
      m_bFlushPosted = true;
      QMetaObject::invokeMethod(
          this,
          [this] {
            m_bFlushPosted = false;
            Flush();
          },
          Qt::QueuedConnection);
    }
  }
  // A command may list an expanded node's items anew, after they went or after a failure that left
  // the node without an expand mark; the node is then as good as loaded.
  if (above.m_bExpandedOnce && (above.m_state == NodeState::NotLoaded ||
                                (above.m_state == NodeState::Failed && !above.m_bHasChildren))) {
    above.m_state = NodeState::Loaded;
    ItemChanged(above);
  }
  return item;
}

ScopeItemPtr ScopeTree::Item(const Text& sKey) {
  return Find(sKey);
}

ScopeTreeItemPtr ScopeTree::Find(const Text& sKey) const {
  const auto at = m_index.find(sKey);
  return at == m_index.end() ? nullptr : at->second->shared_from_this();
}

ScopeTreeItemPtr ScopeTree::ItemOf(const ScopeItemPtr& item) const {
  auto own = std::dynamic_pointer_cast<ScopeTreeItem>(item);
  return own && own->m_tree == this ? own : nullptr;
}

void ScopeTree::Remove(const Text& sKey) {
  const auto item = Find(sKey);
  if (!item) {
    throw Failure(failure::kInvalidArgument,
                  "The tree has no item with the key \"" + sKey + "\"; select another one.",
                  "console");
  }
  if (m_removing) m_removing(item, false);
  if (item->IsRemoved()) return;
  auto& above = *item->m_parent;
  const auto nRow = item->m_nRow;
  const bool bShown = nRow < above.m_nShown;
  const auto iRow = static_cast<int>(nRow);
  if (bShown) beginRemoveRows(IndexOf(above), iRow, iRow);
  above.m_children.erase(above.m_children.begin() + static_cast<std::ptrdiff_t>(nRow));
  for (auto n = nRow; n < above.m_children.size(); ++n) above.m_children[n]->m_nRow = n;
  if (bShown) --above.m_nShown;
  Forget(*item);
  if (bShown) endRemoveRows();
  // Without children left, the mark is what the node was said to have.
  ItemChanged(above);
}

void ScopeTree::RemoveChildren(const ScopeNodePtr& parent) {
  const auto* node = dynamic_cast<ScopeTreeNode*>(parent.get());
  if (!node || node->Owner().m_tree != this) return;
  const auto item = node->Owner().shared_from_this();
  if (m_removing) m_removing(item, true);
  if (item->IsRemoved()) return;
  RemoveAllChildren(*item);
  if (item->m_state != NodeState::Loading) item->m_state = NodeState::NotLoaded;
  ItemChanged(*item);
}

void ScopeTree::RemoveAllChildren(ScopeTreeItem& item) {
  if (item.m_children.empty()) return;
  const auto nShown = item.m_nShown;
  if (nShown) beginRemoveRows(IndexOf(item), 0, static_cast<int>(nShown) - 1);
  const auto children = std::move(item.m_children);
  item.m_children.clear();
  item.m_nShown = 0;
  for (const auto& child : children) Forget(*child);
  if (nShown) endRemoveRows();
}

void ScopeTree::Forget(ScopeTreeItem& item) {
  const auto at = m_index.find(item.m_sKey);
  if (at != m_index.end() && at->second == &item) m_index.erase(at);
  const auto children = std::move(item.m_children);
  item.m_children.clear();
  item.m_nShown = 0;
  for (const auto& child : children) Forget(*child);
  item.m_tree = nullptr;
  item.m_parent = nullptr;
  item.m_tag.reset();
}

void ScopeTree::BeginExpansion(ScopeTreeItem& item) {
  // What an expansion that failed half-way left behind would be in its own way now.
  if (item.m_state == NodeState::Failed) RemoveAllChildren(item);
  item.m_state = NodeState::Loading;
  ItemChanged(item);
}

void ScopeTree::EndExpansion(ScopeTreeItem& item, bool bFailed) {
  if (item.m_tree != this) return;
  item.m_state = bFailed ? NodeState::Failed : NodeState::Loaded;
  item.m_bExpandedOnce = true;
  // A node that turned out to be empty need not look as if there were something to open.
  if (!bFailed && item.m_children.empty()) item.m_bHasChildren = false;
  FlushItem(item);
  ItemChanged(item);
}

void ScopeTree::Flush() {
  const auto pending = std::move(m_pending);
  m_pending.clear();
  for (const auto& weak : pending) {
    const auto item = weak.lock();
    if (!item || item->m_tree != this) continue;
    if (item->m_state == NodeState::Loading) {
      m_pending.push_back(weak);
    } else {
      FlushItem(*item);
    }
  }
}

void ScopeTree::FollowServers() {
  if (!m_static) return;
  for (const auto& child : m_static->m_children) {
    const auto state = StateOfServer(child->m_tag);
    if (std::exchange(child->m_server, state) != state) ItemChanged(*child);
  }
}

void ScopeTree::FlushItem(ScopeTreeItem& item) {
  item.m_bPending = false;
  if (item.m_nShown == item.m_children.size()) return;
  // Items above that are not shown yet come first: a view must know a parent before its rows.
  if (item.m_parent && item.m_nRow >= item.m_parent->m_nShown) FlushItem(*item.m_parent);
  beginInsertRows(IndexOf(item), static_cast<int>(item.m_nShown),
                  static_cast<int>(item.m_children.size()) - 1);
  item.m_nShown = item.m_children.size();
  endInsertRows();
}

QModelIndex ScopeTree::IndexOf(const ScopeTreeItem& item) const {
  if (item.m_tree != this) return {};
  return createIndex(static_cast<int>(item.m_nRow), 0, &item);
}

ScopeTreeItem* ScopeTree::Raw(const QModelIndex& index) const {
  return index.isValid() ? static_cast<ScopeTreeItem*>(index.internalPointer()) : nullptr;
}

ScopeTreeItemPtr ScopeTree::ItemAt(const QModelIndex& index) const {
  auto* item = Raw(index);
  return item ? item->shared_from_this() : nullptr;
}

void ScopeTree::OnExpandInNameSpace(std::function<void(const ScopeTreeItemPtr&)> handler) {
  m_expand = std::move(handler);
}

void ScopeTree::OnRemoving(std::function<void(const ScopeTreeItemPtr&, bool)> handler) {
  m_removing = std::move(handler);
}

void ScopeTree::OnRekeying(std::function<void(const ScopeTreeItem&, const Text&)> handler) {
  m_rekeying = std::move(handler);
}

void ScopeTree::ExpandInNameSpace(const ScopeTreeItemPtr& item) {
  if (m_expand) m_expand(item);
}

void ScopeTree::ItemChanged(ScopeTreeItem& item) {
  // A row that no view knows yet is read when it is shown.
  if (item.m_parent && item.m_nRow >= item.m_parent->m_nShown) return;
  const auto index = IndexOf(item);
  emit dataChanged(index, index);
}

void ScopeTree::Rekey(ScopeTreeItem& item, const Text& sKey) {
  if (sKey == item.m_sKey) return;
  if (&item == m_static.get()) {
    item.m_sKey = sKey;
    return;
  }
  if (!m_index.try_emplace(sKey, &item).second) FailTaken(sKey);
  if (m_rekeying) m_rekeying(item, sKey);
  m_index.erase(item.m_sKey);
  item.m_sKey = sKey;
}

QModelIndex ScopeTree::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column != 0) return {};
  if (!parent.isValid()) return row == 0 && m_static ? IndexOf(*m_static) : QModelIndex();
  const auto* item = Raw(parent);
  const auto nRow = static_cast<std::size_t>(row);
  return nRow < item->m_nShown ? createIndex(row, 0, item->m_children[nRow].get()) : QModelIndex();
}

QModelIndex ScopeTree::parent(const QModelIndex& index) const {
  const auto* item = Raw(index);
  return item && item->m_parent ? IndexOf(*item->m_parent) : QModelIndex();
}

int ScopeTree::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return m_static ? 1 : 0;
  return parent.column() == 0 ? static_cast<int>(Raw(parent)->m_nShown) : 0;
}

int ScopeTree::columnCount(const QModelIndex& /*parent*/) const {
  return 1;
}

bool ScopeTree::hasChildren(const QModelIndex& parent) const {
  if (!parent.isValid()) return m_static != nullptr;
  const auto* item = Raw(parent);
  return item->m_bHasChildren || item->m_nShown > 0;
}

QVariant ScopeTree::data(const QModelIndex& index, int role) const {
  const auto* item = Raw(index);
  if (!item) return {};
  switch (role) {
    case Qt::DisplayRole:
      return QString::fromStdString(item->m_sDisplayName);
    case Qt::DecorationRole:
    case Qt::ToolTipRole:
    case Qt::FontRole:
    case Qt::ForegroundRole:
      return m_look ? m_look->OfItem(*item, role) : QVariant();
    case Qt::AccessibleDescriptionRole:
      if (item->m_state == NodeState::Failed) return tr("could not be opened");
      if (item->m_state == NodeState::Loading) return tr("loading");
      if (item->m_server == ServerState::Connected) return tr("connected");
      if (item->m_server == ServerState::Disconnected) return tr("not connected");
      return {};
    case StateRole:
      return static_cast<int>(item->m_state);
    case KeyRole:
      return QString::fromStdString(item->m_sKey);
    default:
      return {};
  }
}

Qt::ItemFlags ScopeTree::flags(const QModelIndex& index) const {
  return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

}  // namespace orvane::console
