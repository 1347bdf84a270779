// Columns with names and kinds, found by name: what sources and queries put out.
// Used by the analysis of times, once for each query of a statement.
#pragma once

#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/types.h"
#include "provider/dialect/value_kinds.h"

namespace orvane::provider::dialect {

struct OutputColumn {
  platform::Text sName;
  Kinds kinds = kinds::kNull;
  std::size_t item = 0;       ///< of a SELECT: which of its items puts it out
  bool bHidden = false;       ///< no star stands for it
  bool bWithoutZone = false;  ///< times as clocks somewhere show them
  platform::Text sShape{};    ///< of texts that times are written in; empty when not known
};

class OutputColumns {
 public:
  void Add(OutputColumn column);
  /// The first of that name, ASCII letters without regard to case.
  std::optional<std::size_t> Find(const platform::Text& sName) const;
  std::size_t size() const { return m_columns.size(); }
  const OutputColumn& operator[](std::size_t i) const { return m_columns[i]; }
  void AddKinds(std::size_t i, Kinds kinds) { m_columns[i].kinds |= kinds; }
  /// What is put out behind it in the same column.
  void Join(std::size_t i, const OutputColumn& behind) {
    AddKinds(i, behind.kinds);
    if (m_columns[i].sShape != behind.sShape) m_columns[i].sShape.clear();
  }
  void SetKinds(std::size_t i, Kinds kinds) { m_columns[i].kinds = kinds; }
  auto begin() const { return m_columns.begin(); }
  auto end() const { return m_columns.end(); }

 private:
  std::vector<OutputColumn> m_columns;
  std::unordered_map<platform::Text, std::size_t> m_places;  ///< by name in ASCII capitals
};

}  // namespace orvane::provider::dialect
