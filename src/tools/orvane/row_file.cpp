#include "tools/orvane/row_file.h"

#include "tools/orvane/statuses.h"

namespace orvane::tools {

namespace {

template <class Step>
void OnFile(Step&& step) {
  try {
    step();
  } catch (const platform::Failure& failed) {
    throw Ending(kFailed, failed.Description());
  }
}

}  // namespace

RowFile::RowFile(const exports::WriterOptions& options, const std::filesystem::path& path) {
  OnFile([&] { m_export.emplace(options, path); });
}

void RowFile::Rows(const platform::Recordset& rs) {
  m_bBegun = true;
  OnFile([&] { m_export->Rows(rs); });
}

void RowFile::End(const platform::Recordset& rs, bool bCut) {
  OnFile([&] {
    // The names of the columns, also where there were no rows.
    if (!m_bBegun && rs.FieldCount() > 0) m_export->Begin(rs);
    m_exported = m_export->Finish(bCut);
  });
}

}  // namespace orvane::tools
