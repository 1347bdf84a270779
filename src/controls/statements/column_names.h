// The column list of a table query: names in the order in which they are selected.
// Owned by its query, which learns of every change; user-interface thread.
#pragma once

#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/grids/table_query.h"

namespace orvane::controls {

class ColumnNames : public platform::ColumnList {
 public:
  /// Calls `changed` after every change; it may destroy the list.
  explicit ColumnNames(std::function<void()> changed) : m_changed(std::move(changed)) {}

  platform::Long Count() const override;
  platform::Text Item(platform::Long lIndex) const override;
  void Add(const platform::Text& sColumn) override;
  void Remove(platform::Long lIndex) override;
  void Clear() override;

  const std::vector<platform::Text>& Names() const { return m_names; }
  /// Replaces all names, which the caller knows to be unique, and tells nobody.
  void Restore(std::vector<platform::Text> names);

 private:
  std::size_t CheckedPosition(platform::Long lIndex) const;

  std::vector<platform::Text> m_names;
  std::unordered_set<platform::Text> m_known;
  std::function<void()> m_changed;
};

}  // namespace orvane::controls
