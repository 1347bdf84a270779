#include "ado/recordset_builder.h"

#include "ado/columnar_recordset.h"
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
    : m_descriptions(std::move(columns)), m_columns(m_descriptions.size()) {}

void RecordsetBuilder::AppendRow(std::span<const platform::Value> vtValues) {
  // Refused before the first cell is in, so that all columns stay equally long.
  RequireRowOf(m_columns.size(), vtValues);
  for (std::size_t i = 0; i < vtValues.size(); ++i) m_columns[i].AppendValue(vtValues[i]);
}

std::size_t RecordsetBuilder::Bytes() const {
  std::size_t bytes = 0;
  for (const Column& column : m_columns) bytes += column.Bytes();
  return bytes;
}

platform::RecordsetPtr RecordsetBuilder::Finish(platform::Boolean bTruncated,
                                                std::chrono::microseconds elapsed) {
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    m_columns[i].Seal();
    if (m_descriptions[i].type == platform::DataType::Empty) {
      m_descriptions[i].type = m_columns[i].FittingType();
    }
  }
  auto recordset = std::make_shared<ColumnarRecordset>(std::move(m_descriptions),
                                                       std::move(m_columns), bTruncated, elapsed);
  m_descriptions.clear();
  m_columns.clear();
  return recordset;
}

}  // namespace orvane::ado
