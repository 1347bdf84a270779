#include "tools/orvane/row_output.h"

#include "exports/aligned_text.h"

namespace orvane::tools {

namespace {

std::unique_ptr<exports::RowWriter> WriterOf(RowForm form, exports::WriterOptions options) {
  switch (form) {
    case RowForm::Text:
      return exports::MakeAlignedText(options.zone);
    case RowForm::Csv:
      options.form = exports::Form::Csv;
      break;
    case RowForm::JsonLines:
      options.form = exports::Form::JsonLines;
      break;
    case RowForm::Sql:
      options.form = exports::Form::Sql;
      break;
  }
  return exports::MakeRowWriter(std::move(options));
}

}  // namespace

RowOutput::RowOutput(RowForm form, exports::WriterOptions options, Output& output)
    : m_writer(WriterOf(form, std::move(options))), m_output(output) {}

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

void RowOutput::End(const platform::Recordset& rs) {
  if (rs.FieldCount() > 0) Begin(rs);
  m_writer->End(m_output.Buffer());
  m_output.Flush();
}

}  // namespace orvane::tools
