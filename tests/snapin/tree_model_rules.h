// What the files of the tree's model share: its guard, its lists of names and the ways to a node.
// Where the snap-in fails, these throw Stop. One thread.
#pragma once

#include <algorithm>

#include "tests/snapin/tree_model.h"

namespace orvane::snapin::model {

constexpr const char* kError = "Error";

template <class T>
auto Position(std::vector<std::shared_ptr<T>>& list, const Text& sName) {
  return std::find_if(list.begin(), list.end(),
                      [&](const auto& node) { return Folded(node->sName) == Folded(sName); });
}
template <class T>
std::shared_ptr<T> Lookup(std::vector<std::shared_ptr<T>>& list, const Text& sName) {
  const auto position = Position(list, sName);
  return position == list.end() ? nullptr : *position;
}
inline void Refuse(const GridPtr& grid, const std::string& sStep) {
  if (grid->sFailing == sStep) throw Stop{};
}

template <class T>
void Append(std::vector<std::shared_ptr<T>>& list, const std::shared_ptr<T>& node) {
  if (Lookup(list, node->sName)) throw Stop{};
  list.push_back(node);
}
template <class T>
void Drop(std::vector<std::shared_ptr<T>>& list, const Text& sName) {
  const auto position = Position(list, sName);
  if (position == list.end()) throw Stop{};
  list.erase(position);
}

template <class T>
std::shared_ptr<T> TagOf(const Item& item) {
  auto node = std::dynamic_pointer_cast<T>(item.tag);
  if (!node) throw Stop{};
  return node;
}
template <class T>
std::shared_ptr<T> Alive(const std::weak_ptr<T>& node) {
  auto strong = node.lock();
  if (!strong) throw Stop{};
  return strong;
}

template <class Body>
void TreeModel::Guard(Body&& body) {
  try {
    body();
  } catch (const Stop&) {
    m_world.Show(kError, platform::MsgBoxButtons::OkOnly);
  }
}

}  // namespace orvane::snapin::model
