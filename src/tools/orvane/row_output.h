// Rows on the standard output as they come, in the form that was asked for; none is kept.
// Used by the commands that fetch rows; one thread at a time.
#pragma once

#include <cstdint>

#include "exports/row_writer.h"
#include "tools/orvane/output.h"

namespace orvane::tools {

enum class RowForm : std::uint8_t { Text, Csv, JsonLines, Sql };

class RowOutput {
 public:
  /// The writer options are those of an export; the form in them is not looked at.
  RowOutput(RowForm form, exports::WriterOptions options, Output& output);

  /// Writes rows of a recordset that has the fields of all of them. Fails as the output does.
  void Rows(const platform::Recordset& rs);
  /// Ends the output, which has the names of the columns also where there were no rows.
  void End(const platform::Recordset& rs);
  platform::RowIndex Count() const { return m_rows; }

 private:
  void Begin(const platform::Recordset& rs);

  std::unique_ptr<exports::RowWriter> m_writer;
  Output& m_output;
  platform::RowIndex m_rows = 0;
  bool m_bBegun = false;
};

}  // namespace orvane::tools
