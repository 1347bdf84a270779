#include "exports/aligned_text.h"

#include <algorithm>

#include "exports/aligned_lines.h"
#include "exports/value_text.h"
#include "platform/one_line.h"

namespace orvane::exports {

using platform::ColumnIndex;
using platform::DataType;
using platform::Recordset;
using platform::Text;

namespace {

bool IsNumber(DataType type) {
  return type == DataType::Integer || type == DataType::BigInt || type == DataType::Double ||
         type == DataType::Numeric;
}

class AlignedText final : public RowWriter {
 public:
  explicit AlignedText(zones::TimeZone zone) : m_zone(std::move(zone)) {}

  void Begin(const Recordset& rs, std::vector<ColumnIndex> columns, Text& sOut) override {
    m_columns = std::move(columns);
    std::vector<bool> right;
    std::vector<Text> names;
    std::vector<Text> marks;
    for (const ColumnIndex column : m_columns) {
      right.push_back(IsNumber(rs.FieldAt(column).Type()));
      names.push_back(platform::OneLine(rs.FieldAt(column).Name()));
      marks.emplace_back(std::max<std::size_t>(1, AlignedLines::WidthOf(names.back())), '-');
    }
    m_lines = AlignedLines(std::move(right));
    if (m_columns.empty()) return;
    m_lines.Add(std::move(names), sOut);
    m_lines.Add(std::move(marks), sOut);
  }

  void Row(const Recordset& rs, platform::RowIndex row, Text& sOut) override {
    std::vector<Text> cells;
    cells.reserve(m_columns.size());
    for (const ColumnIndex column : m_columns) {
      const platform::Value vtValue = rs.ValueAt(row, column);
      if (vtValue.IsNull()) {
        cells.emplace_back("NULL");
        continue;
      }
      Text sText;
      AppendValue(sText, vtValue, m_zone);
      cells.push_back(platform::OneLine(sText));
    }
    m_lines.Add(std::move(cells), sOut);
  }

  void End(Text& sOut) override { m_lines.End(sOut); }

 private:
  zones::TimeZone m_zone;
  std::vector<ColumnIndex> m_columns;
  AlignedLines m_lines{{}};
};

}  // namespace

std::unique_ptr<RowWriter> MakeAlignedText(zones::TimeZone zone) {
  return std::make_unique<AlignedText>(std::move(zone));
}

}  // namespace orvane::exports
