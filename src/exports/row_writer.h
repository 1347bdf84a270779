// Rows written in a form that others read: comma-separated values, JSON Lines, or SQL that inserts
// them. Fed with rows as they come, it keeps none.
// Used by the export of grids and by programs without a window; one thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/ado/recordset.h"
#include "zones/time_zone.h"

namespace orvane::exports {

enum class Form : std::uint8_t { Csv, JsonLines, Sql, AlignedText };

struct WriterOptions {
  Form form = Form::Csv;
  char cSeparator = ',';  ///< of comma-separated values
  bool bNames = true;     ///< of comma-separated values: column names in the first line
  zones::TimeZone zone = zones::TimeZone::Utc();  ///< in which times are told
  /// Of SQL: the table into which the statements insert, quoted as they need it.
  platform::Text sInto{};
};

class RowWriter {
 public:
  RowWriter() = default;
  RowWriter(const RowWriter&) = delete;
  RowWriter& operator=(const RowWriter&) = delete;
  virtual ~RowWriter() = default;

  /// Appends what stands before the rows. The columns, by their numbers in the recordset and in the
  /// order in which they are written, are those of every row from then on.
  virtual void Begin(const platform::Recordset& rs, std::vector<platform::ColumnIndex> columns,
                     platform::Text& sOut) = 0;
  /// Appends one row of a recordset with the fields of the one given to Begin.
  virtual void Row(const platform::Recordset& rs, platform::RowIndex row, platform::Text& sOut) = 0;
  /// Appends what stands behind the rows, and rows that were kept back.
  virtual void End(platform::Text& /*sOut*/) {}
};

/// Comma-separated values: lines end in CR LF (RFC 4180); null is a field of nothing, the empty
/// text one of two quotes; texts with a separator, a quote, a line break, a zero byte, or a blank
/// at either end stand between quotes. JSON Lines: an object a row, in the order of the columns; of
/// columns with one name the later ones are numbered. Numbers are written whole, however long;
/// infinities, NaN, times, bytes and GUIDs are texts; a text that is no UTF-8 is {"bytes":
/// "0x..."}. SQL: an INSERT a row, in historian SQL. Aligned text: as MakeAlignedText has it.
std::unique_ptr<RowWriter> MakeRowWriter(WriterOptions options);

/// All columns of a recordset, in order.
std::vector<platform::ColumnIndex> AllColumns(const platform::Recordset& rs);

}  // namespace orvane::exports
