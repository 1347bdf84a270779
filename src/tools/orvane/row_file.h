// Rows in a file, which is there when all of them are: the export of the grids.
// Used by the command that exports; one thread at a time.
#pragma once

#include <optional>

#include "exports/row_export.h"
#include "tools/orvane/row_target.h"

namespace orvane::tools {

/// Ends the program with kFailed where the file cannot be made or written: no server refused it.
class RowFile final : public RowTarget {
 public:
  RowFile(const exports::WriterOptions& options, const std::filesystem::path& path);

  void Rows(const platform::Recordset& rs) override;
  void End(const platform::Recordset& rs, bool bCut) override;
  platform::RowIndex Count() const override { return m_export ? m_export->RowCount() : 0; }
  /// What came of it, once it has ended.
  const std::optional<exports::Exported>& Done() const { return m_exported; }

 private:
  std::optional<exports::RowExport> m_export;
  std::optional<exports::Exported> m_exported;
  bool m_bBegun = false;
};

}  // namespace orvane::tools
