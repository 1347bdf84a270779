// Menu, selection and verbs as the session hands them to the snap-in's handlers.
// User-interface thread.
#pragma once

#include <unordered_map>
#include <vector>

#include "console/session/scope_tree_item.h"
#include "platform/console/menus.h"
#include "platform/console/views.h"

namespace orvane::console {

class HostedContextMenu final : public platform::ContextMenu {
 public:
  void AddMenu(const platform::Menu& menu) override { m_menus.push_back(menu); }
  const std::vector<platform::Menu>& Menus() const noexcept { return m_menus; }

 private:
  std::vector<platform::Menu> m_menus;
};

/// A copy of what was selected: it does not follow the selection, and keeps its items.
class HostedSelection final : public platform::Selection {
 public:
  HostedSelection() = default;
  explicit HostedSelection(std::vector<ScopeTreeItemPtr> items) : m_items(std::move(items)) {}
  HostedSelection(const HostedSelection& other)
      : Selection(), m_items(other.m_items), m_lListItems(other.m_lListItems) {}
  HostedSelection& operator=(const HostedSelection& other) {
    m_items = other.m_items;
    m_lListItems = other.m_lListItems;
    return *this;
  }
  ~HostedSelection() override = default;
  /// Rows of the snap-in's own.
  static HostedSelection OfListItems(platform::Long lCount);

  platform::Long Type() const override;
  platform::Long ScopeItemCount() const override {
    return static_cast<platform::Long>(m_items.size());
  }
  platform::ScopeItemPtr ScopeItem(platform::Long lIndex) const override;

  const std::vector<ScopeTreeItemPtr>& Items() const noexcept { return m_items; }

 private:
  std::vector<ScopeTreeItemPtr> m_items;
  platform::Long m_lListItems = 0;
};

class HostedVerbs final : public platform::ConsoleVerbs {
 public:
  platform::Boolean Enabled(platform::Long lVerb) const override;
  void Enabled(platform::Long lVerb, platform::Boolean bEnabled) override {
    m_enabled[lVerb] = bEnabled;
  }
  void Reset() { m_enabled.clear(); }

 private:
  std::unordered_map<platform::Long, platform::Boolean> m_enabled;
};

}  // namespace orvane::console
