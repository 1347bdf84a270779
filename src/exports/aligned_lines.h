// Lines of cells in columns that stand one above the other, for terminals. The widths are those of
// the first lines, so that as many lines as there are take no more memory than those.
// Used by the writer of aligned text and by programs; one thread at a time.
#pragma once

#include <vector>

#include "platform/types.h"

namespace orvane::exports {

class AlignedLines {
 public:
  /// A column for each mark, which tells whether its cells stand at the right.
  explicit AlignedLines(std::vector<bool> right) : m_right(std::move(right)) {}

  /// Appends the line, or keeps it back until the widths are known. It has a cell for each column.
  void Add(std::vector<platform::Text> cells, platform::Text& sOut);
  /// The characters of the text.
  static std::size_t WidthOf(const platform::Text& sText);
  /// Appends what was kept back.
  void End(platform::Text& sOut);

 private:
  static constexpr std::size_t kKept = 1000;

  void Append(const std::vector<platform::Text>& cells, platform::Text& sOut) const;

  std::vector<bool> m_right;
  std::vector<std::size_t> m_nWidths;  // in characters, once they are known
  std::vector<std::vector<platform::Text>> m_kept;
};

}  // namespace orvane::exports
