// How a provider makes a recordset: name the columns, append rows, finish.
// Rows go in either whole (AppendRow) or cell by cell through the columns, which is the fast way;
// then every column gets exactly one cell a row. One thread at a time.
#pragma once

#include <chrono>
#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

#include "ado/column.h"
#include "platform/ado/recordset.h"

namespace orvane::ado {

/// A column before it has rows.
struct ColumnDescription {
  platform::Text sName;
  /// Empty leaves the type to the values that come.
  platform::DataType type = platform::DataType::Empty;
  platform::Boolean bNullable = true;
};

/// Fails with failure::kTypeMismatch for an object, which no recordset holds.
void RequirePlain(const platform::Value& vtValue);
/// Fails as RequirePlain does, and with failure::kInvalidArgument unless there is a value for each
/// column.
void RequireRowOf(std::size_t columns, std::span<const platform::Value> vtValues);

class RecordsetBuilder {
 public:
  explicit RecordsetBuilder(std::vector<ColumnDescription> columns);

  platform::ColumnIndex ColumnCount() const {
    return static_cast<platform::ColumnIndex>(m_columns.size());
  }
  platform::RowIndex RowCount() const {
    return m_columns.empty() ? 0 : m_columns.front().RowCount();
  }
  /// Memory that the rows take.
  std::size_t Bytes() const;
  /// Takes the cells of one column. The reference lives until Finish.
  Column& ColumnAt(platform::ColumnIndex column) {
    return m_columns[static_cast<std::size_t>(column)];
  }
  /// Appends one row; fails with failure::kInvalidArgument unless there is a value for each
  /// column. Kinds are kept as they are given.
  void AppendRow(std::span<const platform::Value> vtValues);
  void AppendRow(std::initializer_list<platform::Value> vtValues) {
    AppendRow(std::span(vtValues.begin(), vtValues.size()));
  }

  /// The recordset, at its first row. The builder is empty afterwards.
  platform::RecordsetPtr Finish(platform::Boolean bTruncated = false,
                                std::chrono::microseconds elapsed = {});

 private:
  std::vector<ColumnDescription> m_descriptions;
  std::vector<Column> m_columns;
};

}  // namespace orvane::ado
