#include "controls/statements/column_names.h"

#include <utility>

#include "platform/failure.h"

namespace orvane::controls {

using platform::Failure;
using platform::Long;
using platform::Text;

Long ColumnNames::Count() const {
  return static_cast<Long>(m_names.size());
}

Text ColumnNames::Item(Long lIndex) const {
  return m_names[CheckedPosition(lIndex)];
}

void ColumnNames::Add(const Text& sColumn) {
  if (!m_known.insert(sColumn).second) {
    throw Failure(platform::failure::kKeyExists,
                  "The column \"" + sColumn +
                      "\" is already in the query; each column can be "
                      "selected once.");
  }
  m_names.push_back(sColumn);
  m_changed();
}

void ColumnNames::Remove(Long lIndex) {
  const auto position = m_names.begin() + static_cast<std::ptrdiff_t>(CheckedPosition(lIndex));
  m_known.erase(*position);
  m_names.erase(position);
  m_changed();
}

void ColumnNames::Clear() {
  m_names.clear();
  m_known.clear();
  m_changed();
}

void ColumnNames::Restore(std::vector<Text> names) {
  m_known = {names.begin(), names.end()};
  m_names = std::move(names);
}

std::size_t ColumnNames::CheckedPosition(Long lIndex) const {
  if (lIndex < 1 || lIndex > Count()) {
    throw Failure(platform::failure::kOutOfRange, "The query has no column number " +
                                                      std::to_string(lIndex) + "; it has " +
                                                      std::to_string(Count()) + ".");
  }
  return static_cast<std::size_t>(lIndex) - 1;
}

}  // namespace orvane::controls
