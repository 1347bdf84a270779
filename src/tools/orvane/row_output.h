// Rows on the standard output as they come, in the form that was asked for; none is kept.
// Used by the commands that print rows; one thread at a time.
#pragma once

#include "exports/row_writer.h"
#include "tools/orvane/output.h"
#include "tools/orvane/row_target.h"

namespace orvane::tools {

class RowOutput final : public RowTarget {
 public:
  RowOutput(exports::WriterOptions options, Output& output);

  /// Fails as the output does.
  void Rows(const platform::Recordset& rs) override;
  /// Ends the output, which has the names of the columns also where there were no rows.
  void End(const platform::Recordset& rs, bool bCut) override;
  platform::RowIndex Count() const override { return m_rows; }

 private:
  void Begin(const platform::Recordset& rs);

  std::unique_ptr<exports::RowWriter> m_writer;
  Output& m_output;
  platform::RowIndex m_rows = 0;
  bool m_bBegun = false;
};

}  // namespace orvane::tools
