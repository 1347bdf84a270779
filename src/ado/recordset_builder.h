// How a recordset is made of rows that are at hand: name the columns, append rows, finish. Rows of
// a statement go to a RowReceiver instead. Used by providers for schema rowsets; one thread at a
// time.
#pragma once

#include <chrono>
#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

#include "ado/fetched_rows.h"

namespace orvane::ado {

/// Fails with failure::kTypeMismatch for an object, which no recordset holds.
void RequirePlain(const platform::Value& vtValue);
/// Fails as RequirePlain does, and with failure::kInvalidArgument unless there is a value for each
/// column.
void RequireRowOf(std::size_t columns, std::span<const platform::Value> vtValues);

class RecordsetBuilder {
 public:
  explicit RecordsetBuilder(std::vector<ColumnDescription> columns);

  platform::ColumnIndex ColumnCount() const {
    return static_cast<platform::ColumnIndex>(m_block.size());
  }
  platform::RowIndex RowCount() const {
    return m_block.empty() ? 0 : m_rows->RowCount() + m_block.front().RowCount();
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
  void EndBlock();

  std::shared_ptr<FetchedRows> m_rows;
  std::vector<Column> m_block;
  std::size_t m_bytes = 0;  // of texts in the block
};

}  // namespace orvane::ado
