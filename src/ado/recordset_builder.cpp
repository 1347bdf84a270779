#include "ado/recordset_builder.h"

#include <utility>

#include "ado/columnar_recordset.h"
#include "ado/row_receiver.h"
#include "platform/failure.h"

namespace orvane::ado {

using platform::Failure;
namespace failure = platform::failure;

void RequirePlain(const platform::Value& vtValue) {
  if (vtValue.Kind() != platform::ValueKind::Object) return;
  throw Failure(failure::kTypeMismatch,
                "A recordset cannot hold an object: give it a plain value.");
}

void RequireRowOf(std::size_t columns, std::span<const platform::Value> vtValues) {
  if (vtValues.size() != columns) {
    throw Failure(failure::kInvalidArgument, "A row of " + std::to_string(vtValues.size()) +
                                                 " values does not fit a recordset of " +
                                                 std::to_string(columns) +
                                                 " columns; give it a value for each.");
  }
  for (const platform::Value& vtValue : vtValues) RequirePlain(vtValue);
}

RecordsetBuilder::RecordsetBuilder(std::vector<ColumnDescription> columns)
    : m_block(columns.size()) {
  m_rows = std::make_shared<FetchedRows>(std::move(columns), RowStorage{});
}

void RecordsetBuilder::AppendRow(std::span<const platform::Value> vtValues) {
  // Refused before the first cell is in, so that all columns stay equally long.
  RequireRowOf(m_block.size(), vtValues);
  for (std::size_t i = 0; i < vtValues.size(); ++i) {
    m_block[i].AppendValue(vtValues[i]);
    m_bytes += TextBytes(vtValues[i]);
  }
  if (m_block.empty()) return;
  if (m_bytes >= kBytesInBlock ||
      m_block.front().RowCount() == static_cast<platform::RowIndex>(kRowsInBlock)) {
    EndBlock();
  }
}

void RecordsetBuilder::EndBlock() {
  m_rows->Append(m_block);
  for (Column& column : m_block) column.Clear();
  m_bytes = 0;
}

platform::RecordsetPtr RecordsetBuilder::Finish(platform::Boolean bTruncated,
                                                std::chrono::microseconds elapsed) {
  EndBlock();
  m_rows->End(bTruncated ? platform::FetchState::Truncated : platform::FetchState::Complete,
              elapsed);
  m_block.clear();
  return std::make_shared<ColumnarRecordset>(std::exchange(m_rows, nullptr));
}

}  // namespace orvane::ado
