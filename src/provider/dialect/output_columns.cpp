#include "provider/dialect/output_columns.h"

#include "provider/dialect/lexer.h"

namespace orvane::provider::dialect {

void OutputColumns::Add(OutputColumn column) {
  m_places.try_emplace(UpperCase(column.sName), m_columns.size());
  m_columns.push_back(std::move(column));
}

std::optional<std::size_t> OutputColumns::Find(const platform::Text& sName) const {
  const auto found = m_places.find(UpperCase(sName));
  if (found == m_places.end() || sName.empty()) return std::nullopt;
  return found->second;
}

}  // namespace orvane::provider::dialect
