#include "tools/orvane/row_output.h"

#include <utility>

namespace orvane::tools {

RowOutput::RowOutput(exports::WriterOptions options, Output& output)
    : m_writer(exports::MakeRowWriter(std::move(options))), m_output(output) {}

void RowOutput::Begin(const platform::Recordset& rs) {
  if (m_bBegun) return;
  m_bBegun = true;
  m_writer->Begin(rs, exports::AllColumns(rs), m_output.Buffer());
}

void RowOutput::Rows(const platform::Recordset& rs) {
  Begin(rs);
  for (platform::RowIndex row = 0; row < rs.RecordCount(); ++row) {
    m_writer->Row(rs, row, m_output.Buffer());
    ++m_rows;
    m_output.FlushLarge();
  }
  // Whoever reads along sees what has come.
  m_output.Flush();
}

void RowOutput::End(const platform::Recordset& rs, bool /*bCut*/) {
  if (rs.FieldCount() > 0) Begin(rs);
  m_writer->End(m_output.Buffer());
  m_output.Flush();
}

}  // namespace orvane::tools
