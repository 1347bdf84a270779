#include "exports/row_export.h"

namespace orvane::exports {

using platform::Recordset;
using platform::RowIndex;
using platform::Text;

namespace {

constexpr std::size_t kBufferBytes = std::size_t{1} << 18;

}  // namespace

Text CutMark(RowIndex rows) {
  Text sNumber = std::to_string(rows);
  for (auto n = static_cast<std::ptrdiff_t>(sNumber.size()) - 3; n > 0; n -= 3) {
    sNumber.insert(static_cast<std::size_t>(n), ",");
  }
  return "first " + sNumber + (rows == 1 ? " row" : " rows");
}

RowExport::RowExport(WriterOptions options, std::filesystem::path path)
    : m_writer(MakeRowWriter(std::move(options))), m_path(std::move(path)), m_file(m_path) {}

void RowExport::Begin(const Recordset& rs,
                      std::optional<std::vector<platform::ColumnIndex>> columns) {
  m_bBegun = true;
  m_writer->Begin(rs, columns ? std::move(*columns) : AllColumns(rs), m_sBuffer);
}

void RowExport::Row(const Recordset& rs, RowIndex row) {
  if (!m_bBegun) Begin(rs);
  m_writer->Row(rs, row, m_sBuffer);
  ++m_rows;
  if (m_sBuffer.size() >= kBufferBytes) Flush();
}

void RowExport::Rows(const Recordset& rs) {
  if (!m_bBegun) Begin(rs);
  for (RowIndex row = 0; row < rs.RecordCount(); ++row) Row(rs, row);
}

Exported RowExport::Finish(bool bCut, const std::stop_token& stop) {
  m_writer->End(m_sBuffer);
  Flush();
  if (bCut) return {m_rows, m_file.FinishMarked(" (" + CutMark(m_rows) + ")", stop), true};
  m_file.Finish(stop);
  return {m_rows, m_path, false};
}

void RowExport::Flush() {
  m_file.Write(m_sBuffer);
  m_sBuffer.clear();
}

}  // namespace orvane::exports
